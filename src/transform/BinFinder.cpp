#include "transform/BinFinder.h"

#include <algorithm>
#include <cmath>

#include "data/Range.h"

namespace KxVeyra_940 {

namespace {

// Bins narrower than this share of their position are within reach of the tolerance of their neighbours'
// ends.
constexpr double kNarrowest = 1e-12;

}  // namespace

void BinFinder::Build(std::vector<const ScoreValueRange*> ranges) {
  fRanges = std::move(ranges);
  fBins.clear();
  for (std::size_t i = 0; i < fRanges.size(); ++i) {
    const auto* const range = dynamic_cast<const Range*>(fRanges[i]);
    if (range == nullptr || range->IsSingleValue()) return fBins.clear();
    fBins.push_back({range->GetMin()->GetDouble(), range->GetMax()->GetDouble(), i});
  }
  std::ranges::sort(fBins, {}, &Bin::low);
  if (!AreSideBySide()) fBins.clear();
}

bool BinFinder::AreSideBySide() const {
  for (std::size_t i = 0; i < fBins.size(); ++i) {
    const auto [low, high, position] = fBins[i];
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
  // The bin that begins at or before the number, its predecessor and its successor: an included end reaches
  // a little further than the bin.
  const auto after = std::ranges::upper_bound(fBins, number, {}, &Bin::low);
  const auto place = static_cast<std::size_t>(after - fBins.begin());
  std::size_t found = kNone;
  for (std::size_t i = place < 2 ? 0 : place - 2; i <= place && i < fBins.size(); ++i)
    if (fBins[i].position < found && fRanges[fBins[i].position]->IsInRange(number)) found = fBins[i].position;
  return found;
}

}  // namespace KxVeyra_940
