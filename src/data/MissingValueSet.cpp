#include "data/MissingValueSet.h"

#include <algorithm>
#include <ostream>
#include <typeinfo>

#include "data/Range.h"

namespace KxVeyra_940 {

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
  if (fIsStale) {
    Rebuild();
  } else {
    Index(Size() - 1);
  }
  return true;
}

bool MissingValueSet::Remove(const ScoreValueRange* range) {
  const int position = Find(range);
  if (position < 0) return false;
  fRanges.Erase(static_cast<std::size_t>(position));
  Rebuild();
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
  if (value == nullptr) return false;
  if (fIsStale) {
    return std::any_of(fRanges.All().begin(), fRanges.All().end(),
                       [value](const ScoreValueRange* range) { return range->IsInRange(value); });
  }
  const auto holds = [&](int position) { return At(position).IsInRange(value); };
  return std::any_of(fIntervals.begin(), fIntervals.end(), holds) || fMinimums.FindFirst(*value, holds) >= 0;
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
  fMinimums.Append(range->GetMin());
  if (!range->IsSingleValue()) fIntervals.push_back(position);
}

void MissingValueSet::Rebuild() {
  fMinimums.Clear();
  fIntervals.clear();
  fIsStale = false;
  for (int i = 0; i < Size(); ++i) Index(i);
}

int MissingValueSet::Find(const ScoreValueRange* range) const {
  if (range == nullptr || range->GetMin() == nullptr) return -1;
  // The same object too: a range with NaN as a bound equals nothing, itself included.
  const auto isSame = [&](int position) { return &At(position) == range || At(position) == *range; };
  if (!fIsStale) return fMinimums.FindFirst(*range->GetMin(), isSame);
  for (int i = 0; i < Size(); ++i) {
    if (isSame(i)) return i;
  }
  return -1;
}

}  // namespace KxVeyra_940
