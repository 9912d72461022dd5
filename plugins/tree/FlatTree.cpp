#include "tree/FlatTree.h"

#include <algorithm>

#include "data/NumericValue.h"
#include "predicate/SplitPredicate.h"
#include "tree/TestPredicates.h"

namespace KxVeyra_940::Plugin {

namespace {

using Result = ScorePredicate::PredicateResult;

constexpr std::uint32_t kWordBits = 64;

Result AnswerOf(bool holds) { return holds ? ScorePredicate::kTrue : ScorePredicate::kFalse; }

// What is not known holds nothing; checked last, because it seldom happens.
Result Known(bool holds, bool isMissing) {
  if (holds) return ScorePredicate::kTrue;
  return isMissing ? ScorePredicate::kUnknown : ScorePredicate::kFalse;
}

bool IsMissingNumber(double number) { return NumericValue::IsSystemMissingValue(number); }
bool IsMissingCode(double code) { return code == SplitPredicate::kMissingCode; }

}  // namespace

std::int32_t FlatTree::AddNodes(std::size_t count) {
  const auto first = static_cast<std::int32_t>(fNodes.size());
  const std::size_t size = fNodes.size() + count;
  fNodes.resize(size);
  fAnswers.resize(size);
  fIds.resize(size);
  return first;
}

void FlatTree::SetChildren(std::int32_t node, std::int32_t first, std::int32_t count) {
  At(node).firstChild = first;
  At(node).childCount = count;
}

CodeSet FlatTree::AddCodes(const std::vector<std::int32_t>& codes) {
  const std::int32_t largest = codes.empty() ? -1 : *std::max_element(codes.begin(), codes.end());
  const auto count = static_cast<std::uint32_t>(largest + 1);
  const CodeSet set{static_cast<std::uint32_t>(fCodeBits.size()), count};
  fCodeBits.resize(fCodeBits.size() + (count + kWordBits - 1) / kWordBits, 0);
  for (const std::int32_t code : codes) {
    const auto bit = static_cast<std::uint32_t>(code);
    fCodeBits[set.firstWord + bit / kWordBits] |= std::uint64_t{1} << (bit % kWordBits);
  }
  return set;
}

bool FlatTree::IsInCodes(const CodeSet& codes, double code) const {
  if (!(code >= 0) || code >= static_cast<double>(codes.codeCount)) return false;
  const auto bit = static_cast<std::uint32_t>(code);
  return ((fCodeBits[codes.firstWord + bit / kWordBits] >> (bit % kWordBits)) & 1U) != 0;
}

Result FlatTree::Evaluate(std::int32_t node, const std::vector<double>& values,
                          const Predicates& predicates) const {
  const NodeTest& test = At(node).test;
  if (test.kind == TestKind::kInside) {  // nearly always
    const double number = values[Index(test.input)];
    return Known(test.bounds.low <= number && number <= test.bounds.high, IsMissingNumber(number));
  }
  if (test.kind >= TestKind::kPredicate) return predicates[test.predicate]->Evaluate(values);
  if (test.kind == TestKind::kAlways || test.kind == TestKind::kNever) {
    return AnswerOf(test.kind == TestKind::kAlways);
  }
  const double value = values[Index(test.input)];
  switch (test.kind) {
    case TestKind::kOutside:
      return Known(!IsMissingNumber(value) && !(test.bounds.low <= value && value <= test.bounds.high),
                   IsMissingNumber(value));
    case TestKind::kCode:
      return Known(value == test.code, IsMissingCode(value));
    case TestKind::kOtherCode:
      return Known(value != test.code && !IsMissingCode(value), IsMissingCode(value));
    case TestKind::kInCodes:
      return Known(IsInCodes(test.codes, value), IsMissingCode(value));
    case TestKind::kNotInCodes:
      return Known(!IsMissingCode(value) && !IsInCodes(test.codes, value), IsMissingCode(value));
    case TestKind::kNumberMissing:
      return AnswerOf(IsMissingNumber(value));
    case TestKind::kNumberPresent:
      return AnswerOf(!IsMissingNumber(value));
    case TestKind::kCodeMissing:
      return AnswerOf(IsMissingCode(value));
    default:
      return AnswerOf(!IsMissingCode(value));
  }
}

std::int32_t FlatTree::CountSurrogates(std::int32_t node, Result result, const std::vector<double>& values,
                                       const Predicates& predicates) const {
  const NodeTest& test = At(node).test;
  if (penalty == 1 || test.kind != TestKind::kSurrogatePredicate) return 0;
  return CountDecidingSurrogates(*predicates[test.predicate], result, values);
}

FlatTree::Ending FlatTree::Walk(const std::vector<double>& values, const Predicates& predicates) const {
  const Result root = Evaluate(0, values, predicates);
  if (!IsTrue(root)) return {Ending::kNothing, 0, 0};
  Ending ending = WalkFrom(0, values, predicates);
  ending.penalties += CountSurrogates(0, root, values, predicates);
  return ending;
}

FlatTree::Ending FlatTree::WalkFrom(std::int32_t node, const std::vector<double>& values,
                                    const Predicates& predicates) const {
  std::int32_t penalties = 0;
  while (ChildCount(node) > 0) {
    const std::int32_t end = FirstChild(node) + ChildCount(node);
    std::int32_t next = FirstChild(node);
    Result result = ScorePredicate::kFalse;
    for (; next < end; ++next) {
      result = Evaluate(next, values, predicates);
      if (IsTrue(result) || (result == ScorePredicate::kUnknown && strategy != MissingStrategy::kNone)) break;
    }
    if (next == end) return {returnsLastPrediction ? Ending::kNode : Ending::kNothing, node, penalties};
    if (result == ScorePredicate::kUnknown) {
      if (strategy == MissingStrategy::kLastPrediction) return {Ending::kNode, node, penalties};
      if (strategy == MissingStrategy::kNullPrediction) return {Ending::kNothing, node, penalties};
      if (strategy != MissingStrategy::kDefaultChild) return {Ending::kSeveral, node, penalties};
      next = Answer(node).defaultChild;
      ++penalties;
    } else {
      penalties += CountSurrogates(next, result, values, predicates);
    }
    node = next;
  }
  return {Ending::kNode, node, penalties};
}

}  // namespace KxVeyra_940::Plugin
