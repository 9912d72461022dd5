#include "tree/NodeTests.h"

#include <bit>
#include <cmath>
#include <limits>

#include "data/NumericValue.h"
#include "predicate/DiscreteSplit.h"
#include "predicate/ScaleSplit.h"
#include "predicate/SetPredicate.h"
#include "predicate/SimplePredicate.h"
#include "tree/TestPredicates.h"

namespace KxVeyra_940::Plugin {

namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
// The lowest finite number stands for a missing value.
const double kSmallest = std::nextafter(-kLargest, 0.0);
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr Bounds kNoNumber{1, 0};
// Far beyond the tolerance of a bound, in numbers that have a place of their own.
constexpr std::int64_t kFarSteps = 1 << 20;

// The place of a number in the order of all of them, and the number of a place.
std::int64_t PlaceOf(double number) {
  const auto bits = std::bit_cast<std::int64_t>(number);
  return bits >= 0 ? bits : std::numeric_limits<std::int64_t>::min() - bits;
}
double NumberAt(std::int64_t place) {
  return std::bit_cast<double>(place >= 0 ? place : std::numeric_limits<std::int64_t>::min() - place);
}

// The number farthest from `bound` in the direction (1 or -1) that the range still contains.
// REQUIRES: the range contains `bound`, and what it contains there has no gap.
double FarthestInside(const ScoreValueRange& range, double bound, std::int64_t direction) {
  const std::int64_t start = PlaceOf(bound);
  std::int64_t inside = 0;
  std::int64_t outside = 1;
  while (outside < kFarSteps && range.IsInRange(NumberAt(start + direction * outside))) outside *= 2;
  while (outside - inside > 1) {
    const std::int64_t middle = (inside + outside) / 2;
    (range.IsInRange(NumberAt(start + direction * middle)) ? inside : outside) = middle;
  }
  return NumberAt(start + direction * inside);
}

bool IsCategory(const ScoreDictVar& variable) { return variable.GetMLevel() != ScoreDictVar::kContinuous; }

std::optional<NodeTest> CompileNumber(const SimplePredicate& predicate, NodeTest test) {
  const auto& split = static_cast<const ScaleSplit&>(*predicate.GetSplit());
  const ScoreValueRange* range = split.GetSplitValueRangeFirst();
  if (range == nullptr) return std::nullopt;
  if (predicate.GetPredicateOperator() == SimplePredicate::kNotEqual) {
    const double value = range->GetMax()->GetDouble();
    test.kind = TestKind::kOutside;
    test.bounds = {value, value};
  } else {
    test.kind = TestKind::kInside;
    test.bounds = EffectiveBounds(*range);
  }
  return test;
}

// REQUIRES: every code of the split goes to the one child of what holds.
NodeTest CompileCodes(const DiscreteSplit& split, bool isComplement, NodeTest test, FlatTree& tree) {
  std::vector<std::int32_t> codes;
  split.ForEachCode([&codes](double code, int) {
    if (code >= 0) codes.push_back(static_cast<std::int32_t>(code));
  });
  if (codes.size() == 1) {
    test.kind = isComplement ? TestKind::kOtherCode : TestKind::kCode;
    test.code = codes.front();
  } else {
    test.kind = isComplement ? TestKind::kNotInCodes : TestKind::kInCodes;
    test.codes = tree.AddCodes(codes);
  }
  return test;
}

NodeTest CompileMissing(const MissingPredicate& predicate, NodeTest test) {
  if (IsCategory(*predicate.GetSplit()->GetSplitVar())) {
    test.kind = predicate.WantsMissing() ? TestKind::kCodeMissing : TestKind::kCodePresent;
  } else {
    test.kind = predicate.WantsMissing() ? TestKind::kNumberMissing : TestKind::kNumberPresent;
  }
  return test;
}

}  // namespace

Bounds EffectiveBounds(const ScoreValueRange& range) {
  const double low = range.GetMin()->GetDouble();
  const double high = range.GetMax()->GetDouble();
  Bounds bounds{kSmallest, kLargest};
  if (low == high) {
    if (!range.IsInRange(low)) return kNoNumber;
    return {FarthestInside(range, low, -1), FarthestInside(range, high, 1)};
  }
  if (std::isfinite(low)) {
    bounds.low = range.IsInRange(low) ? FarthestInside(range, low, -1) : std::nextafter(low, kInfinity);
  }
  if (std::isfinite(high)) {
    bounds.high = range.IsInRange(high) ? FarthestInside(range, high, 1) : std::nextafter(high, -kInfinity);
  }
  if (low == kInfinity) return kNoNumber;
  return bounds;
}

std::optional<NodeTest> CompileTest(const ScorePredicate& predicate, FlatTree& tree) {
  NodeTest test;
  switch (predicate.GetPredType()) {
    case ScorePredicate::kTruePredicate:
      test.kind = TestKind::kAlways;
      return test;
    case ScorePredicate::kFalsePredicate:
      test.kind = TestKind::kNever;
      return test;
    case ScorePredicate::kCompoundPredicate:
      return std::nullopt;
    default:
      break;
  }
  const ScoreSplitVar& split = *predicate.GetSplit();
  test.input = split.GetSplitVar()->GetEncodedValueIndex();
  if (const auto* missing = dynamic_cast<const MissingPredicate*>(&predicate)) {
    return CompileMissing(*missing, test);
  }
  const auto* complement = dynamic_cast<const ComplementPredicate*>(&predicate);
  if (split.GetSplitVarType() == ScoreSplitVar::kDiscreteSplit) {
    return CompileCodes(static_cast<const DiscreteSplit&>(split), complement != nullptr, test, tree);
  }
  const auto* simple = dynamic_cast<const SimplePredicate*>(&predicate);
  return simple == nullptr ? std::nullopt : CompileNumber(*simple, test);
}

}  // namespace KxVeyra_940::Plugin
