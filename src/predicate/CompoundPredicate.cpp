#include "predicate/CompoundPredicate.h"

#include <algorithm>
#include <ostream>

namespace KxVeyra_940 {

namespace {

using Result = ScorePredicate::PredicateResult;
using Predicates = std::vector<ScorePredicate*>;

// "or" ends at the first true child, "and" at the first false one; otherwise what they have seen decides.
template <class Answer>
Result EndAt(bool end, const Predicates& predicates, Answer answer) {
  bool hasUnknown = false;
  for (const ScorePredicate* predicate : predicates) {
    const Result result = answer(*predicate);
    if (result == ScorePredicate::kUnknown) {
      hasUnknown = true;
    } else if (IsTrue(result) == end) {
      return end ? ScorePredicate::kTrue : ScorePredicate::kFalse;
    }
  }
  if (hasUnknown) return ScorePredicate::kUnknown;
  return end ? ScorePredicate::kFalse : ScorePredicate::kTrue;
}

template <class Answer>
Result CountOdd(const Predicates& predicates, Answer answer) {
  bool isOdd = false;
  for (const ScorePredicate* predicate : predicates) {
    const Result result = answer(*predicate);
    if (result == ScorePredicate::kUnknown) return ScorePredicate::kUnknown;
    isOdd = isOdd != IsTrue(result);
  }
  return isOdd ? ScorePredicate::kTrue : ScorePredicate::kFalse;
}

}  // namespace

CompoundPredicate::CompoundPredicate(CompoundBoolOperator boolOperator) : fOperator(boolOperator) {}
CompoundPredicate::~CompoundPredicate() = default;

void CompoundPredicate::AddPredicate(ScorePredicate* predicate) {
  if (predicate != nullptr) fPredicates.Append(predicate);
}

bool CompoundPredicate::RemovePredicate(const ScorePredicate* predicate) {
  const Predicates& all = fPredicates.All();
  const auto found = std::find(all.begin(), all.end(), predicate);
  if (found == all.end()) return false;
  const auto position = static_cast<std::size_t>(found - all.begin());
  static_cast<void>(fPredicates.Release(position));
  fPredicates.Erase(position);
  return true;
}

ScorePredicate* CompoundPredicate::Exchange(int position, ScorePredicate* predicate) {
  const auto place = static_cast<std::size_t>(position);
  ScorePredicate* const former = fPredicates.Release(place);
  fPredicates.Replace(place, predicate);
  return former;
}

template <class Answer>
Result CompoundPredicate::CombineSurrogates(std::size_t start, Answer answer) const {
  const Predicates& predicates = fPredicates.All();
  if (start >= predicates.size()) return kUnknown;
  const Result first = answer(*predicates[start]);
  if (first != kUnknown) return first;
  for (std::size_t i = start + 1; i < predicates.size(); ++i) {
    const Result result = answer(*predicates[i]);
    if (result != kUnknown) return IsTrue(result) ? kTrueBySurrogate : kFalse;
  }
  return kUnknown;
}

template <class Answer>
Result CompoundPredicate::Combine(Answer answer) const {
  switch (fOperator) {
    case kOr:
      return EndAt(true, fPredicates.All(), answer);
    case kAnd:
      return EndAt(false, fPredicates.All(), answer);
    case kXor:
      return CountOdd(fPredicates.All(), answer);
    case kSurrogate:
      return CombineSurrogates(0, answer);
  }
  return kUnknown;
}

Result CompoundPredicate::Evaluate(const ScoreCaseRecord* record, const ScoreCaseRecord* derived) const {
  return Combine([=](const ScorePredicate& predicate) { return predicate.Evaluate(record, derived); });
}

Result CompoundPredicate::Evaluate(const std::vector<double>& values) const {
  return Combine([&values](const ScorePredicate& predicate) { return predicate.Evaluate(values); });
}

Result CompoundPredicate::EvaluateSurrogate(const std::vector<double>& values, int start) const {
  if (fOperator != kSurrogate || start < 0 || start >= GetCount()) return kFalse;
  return CombineSurrogates(static_cast<std::size_t>(start),
                           [&values](const ScorePredicate& predicate) { return predicate.Evaluate(values); });
}

ScorePredicate* CompoundPredicate::Clone() const { return new CompoundPredicate(*this); }

ScorePredicate::PredicateType CompoundPredicate::GetPredType() const { return kCompoundPredicate; }

bool CompoundPredicate::IsDerivedPredictor() const {
  return std::any_of(fPredicates.All().begin(), fPredicates.All().end(),
                     [](const ScorePredicate* predicate) { return predicate->IsDerivedPredictor(); });
}

void CompoundPredicate::SetSplit(ScoreSplitVar*) {}

ScoreSplitVar* CompoundPredicate::GetSplit() const { return nullptr; }

void CompoundPredicate::Display(std::ostream& out) const { out << "Compound Predicate: \n"; }

}  // namespace KxVeyra_940
