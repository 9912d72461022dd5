#include "predicate/ScaleSplit.h"

#include <ostream>

#include "data/NumericValue.h"

namespace KxVeyra_940 {

namespace {

// The child of the first range that contains the value.
template <class Value>
int ChildOf(const std::vector<ScoreValueRange*>& ranges, const std::vector<int>& children, Value value) {
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    if (ranges[i]->IsInRange(value)) return children[i];
  }
  return ScoreSplitVar::kNoChild;
}

}  // namespace

ScaleSplit::ScaleSplit(const ScoreDictVar* variable) : ScoreSplitVar(variable) {}
ScaleSplit::~ScaleSplit() = default;

void ScaleSplit::PutSplit(ScoreValueRange* range, int child) {
  if (range == nullptr) return;
  fRanges.Append(range);
  fChildren.push_back(child);
}

ScoreValueRange* ScaleSplit::GetSplitValueRangeForIndex(int child) const {
  for (std::size_t i = 0; i < fChildren.size(); ++i) {
    if (fChildren[i] == child) return fRanges.At(i);
  }
  return nullptr;
}

ScoreValueRange* ScaleSplit::GetSplitValueRangeFirst() const {
  return fRanges.Size() == 0 ? nullptr : fRanges.At(0);
}

ScoreSplitVar* ScaleSplit::Clone() const { return new ScaleSplit(*this); }

int ScaleSplit::GetSplitVarType() const { return kScaleSplit; }

int ScaleSplit::GetSplitChildIndex(const ScoreValue* value) const {
  const bool isMissing = value == nullptr || (fSplitVar != nullptr && fSplitVar->IsMissingValue(value));
  return isMissing ? fMissvalMap : ChildOf(fRanges.All(), fChildren, value);
}

int ScaleSplit::GetSplitChildIndex(double number) const {
  if (NumericValue::IsSystemMissingValue(number)) return fMissvalMap;
  return ChildOf(fRanges.All(), fChildren, number);
}

void ScaleSplit::Display(std::ostream& out) const {
  out << "SplitVarName = " << GetSplitName() << "\nMissing Value index: " << fMissvalMap << '\n';
  for (std::size_t i = 0; i < fChildren.size(); ++i) {
    out << "Index = " << fChildren[i] << '\n';
    fRanges.At(i)->Display(out);
  }
  out << '\n';
}

}  // namespace KxVeyra_940
