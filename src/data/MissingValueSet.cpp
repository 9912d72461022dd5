#include "data/MissingValueSet.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <typeinfo>

#include "data/Range.h"

namespace KxVeyra_940 {

namespace {

using Interval = CoveredNumbers::Interval;

// The number furthest from `number`, towards `beyond`, that equals it; what lies between equals it too.
double LastEqual(double number, double beyond) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  double outside = std::clamp(beyond, -kLargest, kLargest);
  if (NumericValue::IsEqual(outside, number)) return outside;
  double inside = number;
  for (;;) {
    const double middle = inside + (outside - inside) / 2;
    if (middle == inside || middle == outside) return inside;
    (NumericValue::IsEqual(middle, number) ? inside : outside) = middle;
  }
}

// Adds the numbers that equal an end; there are none for infinite ends and NaN.
void AddEnd(double end, std::vector<Interval>& intervals) {
  if (!NumericValue::IsEqual(end, end)) return;
  const double reach = 2 * NumericValue::fEpsilon * std::fabs(end);
  intervals.push_back({LastEqual(end, end - reach), LastEqual(end, end + reach)});
}

// The numbers that a range contains, the system-missing one aside: what lies between its ends and what equals
// those that belong to it.  One interval, unless the ends are in the wrong order.
std::vector<Interval> IntervalsOf(const Range& range) {
  std::vector<Interval> intervals;
  if (range.IsSingleValue()) return intervals;
  const double min = range.GetMinNumber();
  const double max = range.GetMaxNumber();
  if (range.GetLowEnd()) AddEnd(min, intervals);
  if (range.GetHighEnd()) AddEnd(max, intervals);
  if (!(min < max)) return intervals;
  Interval whole = {std::nextafter(min, NumericValue::gInfinity),
                    std::nextafter(max, -NumericValue::gInfinity)};
  for (const Interval& end : intervals)
    whole = {std::min(whole.low, end.low), std::max(whole.high, end.high)};
  if (whole.low > whole.high) return {};
  return {whole};
}

}  // namespace

MissingValueSet::MissingValueSet(const MissingValueSet& other)
    : ScoreMissingValueSet(other), fRanges(other.fRanges) {
  Rebuild();
}

MissingValueSet& MissingValueSet::operator=(const MissingValueSet& other) {
  if (this == &other) return *this;
  fRanges = other.fRanges;
  Rebuild();
  return *this;
}

MissingValueSet::~MissingValueSet() = default;

ScoreMissingValueSet* MissingValueSet::Clone() const { return new MissingValueSet(*this); }

bool MissingValueSet::Add(ScoreValueRange* range) {
  if (range == nullptr || Find(range) >= 0) return false;
  fRanges.Append(range);
  ++fSize;
  if (fIsStale) {
    Rebuild();
  } else {
    Index(static_cast<int>(fRanges.Size()) - 1);
  }
  return true;
}

// Leaves a gap, so that what the indexes know stays where it is, until gaps are most of the list.
bool MissingValueSet::Remove(const ScoreValueRange* range) {
  const int position = Find(range);
  if (position < 0) return false;
  const bool isForgotten = !fIsStale && Forget(position);
  fRanges.Replace(static_cast<std::size_t>(position), nullptr);
  --fSize;
  if (!isForgotten || fBounds.Size() > 2 * fSize) Rebuild();
  return true;
}

int MissingValueSet::Size() const { return fSize; }

bool MissingValueSet::Contains(const ScoreValueRange* range) const { return Find(range) >= 0; }

std::vector<ScoreValueRange*> MissingValueSet::GetMissingValues() const {
  std::vector<ScoreValueRange*> ranges = fRanges.All();
  std::erase(ranges, nullptr);
  return ranges;
}

void MissingValueSet::Display(std::ostream& out) const {
  out << " Begin MissingValueSet Display:\n";
  for (const ScoreValueRange* range : GetMissingValues()) range->Display(out);
  out << "End MissingValueSet Display.\n";
}

bool MissingValueSet::Covers(const ScoreValue* value) const {
  if (value == nullptr) return false;
  const auto holds = [value](const ScoreValueRange& range) { return range.IsInRange(value); };
  if (fIsStale) return Scan(holds) >= 0;
  if (fSingles.FindFirst(*value, [&](int position) { return holds(At(position)); }) >= 0) return true;
  return value->GetType() != ScoreValue::kStringValueType && !value->IsSystemMissingValue() &&
         fCovered.Contain(value->GetDouble());
}

const ScoreValueRange& MissingValueSet::At(int position) const {
  return *fRanges.At(static_cast<std::size_t>(position));
}

void MissingValueSet::Index(int position) {
  ScoreValueRange* const held = fRanges.At(static_cast<std::size_t>(position));
  if (typeid(*held) != typeid(Range)) {
    fIsStale = true;
    return;
  }
  auto* const range = static_cast<Range*>(held);
  range->SetHolder(&fIsStale);
  fBounds.Append(*range->GetMin(), *range->GetMax());
  fSingles.Append(range->IsSingleValue() ? range->GetMin() : nullptr);
  for (const Interval& interval : IntervalsOf(*range)) fCovered.Add(interval);
}

// Undoes Index; false when the indexes know the range otherwise than it is.
bool MissingValueSet::Forget(int position) {
  const auto& range = static_cast<const Range&>(At(position));
  bool isKnown = fBounds.Remove(position, *range.GetMin(), *range.GetMax()) &&
                 fSingles.Remove(position, range.IsSingleValue() ? range.GetMin() : nullptr);
  for (const Interval& interval : IntervalsOf(range)) isKnown = fCovered.Remove(interval) && isKnown;
  return isKnown;
}

void MissingValueSet::Rebuild() {
  fBounds.Clear();
  fSingles.Clear();
  fCovered.Clear();
  fRanges.EraseNulls();
  fSize = static_cast<int>(fRanges.Size());
  fIsStale = false;
  for (int i = 0; i < fSize; ++i) Index(i);
}

// The first position whose range `matches`, else -1.
template <class Matches>
int MissingValueSet::Scan(Matches matches) const {
  for (std::size_t i = 0; i < fRanges.Size(); ++i) {
    if (fRanges.At(i) != nullptr && matches(*fRanges.At(i))) return static_cast<int>(i);
  }
  return -1;
}

int MissingValueSet::Find(const ScoreValueRange* range) const {
  if (range == nullptr || range->GetMin() == nullptr || range->GetMax() == nullptr) return -1;
  // The same object too: a range with NaN as a bound equals nothing, itself included.
  const auto isSame = [&](const ScoreValueRange& held) { return &held == range || held == *range; };
  if (fIsStale) return Scan(isSame);
  return fBounds.FindFirst(*range->GetMin(), *range->GetMax(),
                           [&](int position) { return isSame(At(position)); });
}

}  // namespace KxVeyra_940
