#include "transform/BinFinder.h"

#include <algorithm>
#include <cmath>

#include "data/NumericValue.h"
#include "data/Range.h"
#include "transform/SortedSearch.h"

namespace KxVeyra_940 {

namespace {

// Bins narrower than this share of their position are within reach of the tolerance of their neighbours'
// ends.
constexpr double kNarrowest = 1e-12;
// Far beyond the tolerance, which is relative for equal numbers and absolute in orderings.
double Reach(double end) { return std::isinf(end) ? 0 : 1e-10 * (1 + std::fabs(end)); }

}  // namespace

void BinFinder::Build(std::vector<const ScoreValueRange*> ranges) {
  fRanges = std::move(ranges);
  fBins.clear();
  fLows.clear();
  for (std::size_t i = 0; i < fRanges.size(); ++i) {
    const auto* const range = dynamic_cast<const Range*>(fRanges[i]);
    if (range == nullptr || range->IsSingleValue()) return fBins.clear();
    const double low = range->GetMin()->GetDouble(), high = range->GetMax()->GetDouble();
    // The missing number is in no bin, not even in one without a lower end.
    fBins.push_back(
        {low, high, i, std::max(low + Reach(low), NumericValue::gSysmisValue), high - Reach(high)});
  }
  std::ranges::sort(fBins, {}, &Bin::low);
  if (!AreSideBySide()) return fBins.clear();
  for (const Bin& bin : fBins) fLows.push_back(bin.low);
}

bool BinFinder::AreSideBySide() const {
  for (std::size_t i = 0; i < fBins.size(); ++i) {
    const double low = fBins[i].low, high = fBins[i].high;
    const bool isWide =
        high - low > kNarrowest * std::max(std::fabs(low), std::fabs(high)) || std::isinf(high - low);
    if (!isWide || (i + 1 < fBins.size() && !(high <= fBins[i + 1].low))) return false;
  }
  return true;
}

std::size_t BinFinder::Find(double number) const {
  if (fBins.empty()) {
    for (std::size_t i = 0; i < fRanges.size(); ++i)
      if (fRanges[i]->IsInRange(number)) return i;
    return kNone;
  }
  const std::size_t place = CountInFront(fLows, [number](double low) { return low <= number; });
  const Bin& bin = fBins[place - (place > 0 ? 1 : 0)];
  if (bin.innerLow < number && number < bin.innerHigh) return bin.position;
  return FindNear(place, number);
}

// Tries the bin that begins at or before the number, its predecessor and its successor: an included end
// reaches a little further than the bin.
std::size_t BinFinder::FindNear(std::size_t place, double number) const {
  std::size_t found = kNone;
  for (std::size_t i = place < 2 ? 0 : place - 2; i <= place && i < fBins.size(); ++i)
    if (fBins[i].position < found && fRanges[fBins[i].position]->IsInRange(number)) found = fBins[i].position;
  return found;
}

}  // namespace KxVeyra_940
