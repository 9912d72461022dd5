#include "data/MissingValueSet.h"

#include <algorithm>
#include <ostream>

namespace KxVeyra_940 {

MissingValueSet::~MissingValueSet() = default;

ScoreMissingValueSet* MissingValueSet::Clone() const { return new MissingValueSet(*this); }

bool MissingValueSet::Add(ScoreValueRange* range) {
  // The same object first: a range with NaN as a bound equals nothing, itself included.
  if (range == nullptr || fRanges.Holds(range) || Contains(range)) return false;
  fRanges.Append(range);
  return true;
}

bool MissingValueSet::Remove(const ScoreValueRange* range) {
  const int position = Find(range);
  if (position < 0) return false;
  fRanges.Erase(static_cast<std::size_t>(position));
  return true;
}

int MissingValueSet::Size() const { return static_cast<int>(fRanges.Size()); }

bool MissingValueSet::Contains(const ScoreValueRange* range) const { return Find(range) >= 0; }

std::vector<ScoreValueRange*> MissingValueSet::GetMissingValues() const { return fRanges.All(); }

void MissingValueSet::Display(std::ostream& out) const {
  out << " Begin MissingValueSet Display:\n";
  for (const ScoreValueRange* range : fRanges.All()) range->Display(out);
  out << "End MissingValueSet Display.\n";
}

bool MissingValueSet::Covers(const ScoreValue* value) const {
  const auto& ranges = fRanges.All();
  return std::any_of(ranges.begin(), ranges.end(),
                     [value](const ScoreValueRange* range) { return range->IsInRange(value); });
}

int MissingValueSet::Find(const ScoreValueRange* range) const {
  if (range == nullptr) return -1;
  const auto& ranges = fRanges.All();
  const auto found = std::find_if(ranges.begin(), ranges.end(),
                                  [range](const ScoreValueRange* held) { return *held == *range; });
  return found == ranges.end() ? -1 : static_cast<int>(found - ranges.begin());
}

}  // namespace KxVeyra_940
