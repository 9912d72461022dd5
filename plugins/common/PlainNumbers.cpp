#include "common/PlainNumbers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "data/NumericValue.h"

namespace KxVeyra_940::Plugin {

namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
// Far more than the tolerance with which bounds of ranges are compared.
constexpr double kMargin = 1e-12;

using Span = std::pair<double, double>;

// In ascending order; nothing when a bound is no number.
std::optional<std::vector<Span>> NumbersOf(const ScoreMissingValueSet& missingValues) {
  std::vector<Span> spans;
  for (const ScoreValueRange* range : missingValues.GetMissingValues()) {
    const ScoreValue* low = range->GetMin();
    const ScoreValue* high = range->GetMax() == nullptr ? low : range->GetMax();
    if (low == nullptr || low->GetType() != ScoreValue::kNumericValueType) return std::nullopt;
    if (high->GetType() != ScoreValue::kNumericValueType) return std::nullopt;
    spans.emplace_back(low->GetDouble(), high->GetDouble());
    if (std::isnan(spans.back().first) || std::isnan(spans.back().second)) return std::nullopt;
  }
  std::sort(spans.begin(), spans.end());
  return spans;
}

// On a scale of magnitudes: of the numbers below and above 999, those below are more.
double Width(const Span& gap) { return std::asinh(gap.second) - std::asinh(gap.first); }

Span WidestGap(const std::vector<Span>& spans) {
  Span widest{0, 0};
  double low = NumericValue::gSysmisValue;
  for (const auto& [first, last] : spans) {
    const Span gap{low, std::min(first, kLargest)};
    if (Width(gap) > Width(widest)) widest = gap;
    low = std::max(low, last);
  }
  const Span above{std::min(low, kLargest), kLargest};
  return Width(above) >= Width(widest) ? above : widest;
}

}  // namespace

PlainNumbers FindPlainNumbers(const MiningField& field) {
  std::vector<Span> spans;
  if (const ScoreMissingValueSet* missingValues = field.var->GetMissingValues()) {
    std::optional<std::vector<Span>> numbers = NumbersOf(*missingValues);
    if (!numbers.has_value()) return {};
    spans = std::move(*numbers);
  }
  const auto [low, high] = WidestGap(spans);
  PlainNumbers plain{low + std::fabs(low) * kMargin, high - std::fabs(high) * kMargin};
  if (field.outliers != OutlierTreatment::kAsIs) {
    plain.low = std::max(plain.low, field.lowValue);
    plain.high = std::min(plain.high, field.highValue);
  }
  return plain;
}

}  // namespace KxVeyra_940::Plugin
