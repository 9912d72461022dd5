#include "predicate/DiscreteSplit.h"

#include <cmath>
#include <ostream>

namespace KxVeyra_940 {

namespace {

// Comparing with a few values costs less than finding one of them by its hash.
constexpr std::size_t kFewValues = 4;

}  // namespace

DiscreteSplit::DiscreteSplit(const ScoreDictVar* variable) : ScoreSplitVar(variable) {}
DiscreteSplit::~DiscreteSplit() = default;

void DiscreteSplit::PutSplit(ScoreValue* value, int child) {
  if (value == nullptr) return;
  fValues.Append(value);
  fChildren.push_back(child);
  fIndex.Append(value);
}

void DiscreteSplit::PutSplit(double code, int child) {
  if (!std::isnan(code)) fCodes.emplace(code, child);
}

std::vector<ScoreValue*> DiscreteSplit::GetSplitValuesFirst() const {
  if (fValues.Size() == 0) return {};
  return {fValues.At(0)};
}

std::vector<ScoreValue*> DiscreteSplit::GetSplitValuesForIndex(int child) const {
  std::vector<ScoreValue*> values;
  for (std::size_t i = 0; i < fChildren.size(); ++i) {
    if (fChildren[i] == child) values.push_back(fValues.At(i));
  }
  return values;
}

std::vector<ScoreValue*> DiscreteSplit::GetSplitValues() const { return fValues.All(); }

void DiscreteSplit::SetStartAndEndIndex(int start, int end) {
  fStart = start;
  fEnd = end;
}

void DiscreteSplit::GetStartAndEndIndex(int& start, int& end) const {
  start = fStart;
  end = fEnd;
}

ScoreSplitVar* DiscreteSplit::Clone() const { return new DiscreteSplit(*this); }

int DiscreteSplit::GetSplitVarType() const { return kDiscreteSplit; }

int DiscreteSplit::GetSplitChildIndex(const ScoreValue* value) const {
  if (value == nullptr) return fMissvalMap;
  const bool isString = GetSplitType() == ScoreDictVar::STRING_VAR;
  const bool noSpaceTrim = isString && fSplitVar != nullptr && fSplitVar->GetNoSpaceTrim();
  const bool emptyStringOK = isString && fSplitVar != nullptr && fSplitVar->GetEmptyStringOK();
  const auto isEqual = [&](std::size_t position) {
    const ScoreValue& held = *fValues.At(position);
    return isString ? held.Equal(value, noSpaceTrim, emptyStringOK) : held == *value;
  };
  if (fValues.Size() > kFewValues) {
    const int found =
        fIndex.FindFirst(*value, [&](int position) { return isEqual(static_cast<std::size_t>(position)); });
    return found < 0 ? kNoChild : fChildren[static_cast<std::size_t>(found)];
  }
  for (std::size_t i = 0; i < fValues.Size(); ++i) {
    if (isEqual(i)) return fChildren[i];
  }
  return kNoChild;
}

int DiscreteSplit::GetSplitChildIndex(double code) const {
  if (code < 0 && GetSplitMLevel() == ScoreDictVar::kNominal) return fMissvalMap;
  if (std::isnan(code)) return kNoChild;
  const auto found = fCodes.find(code);
  return found == fCodes.end() ? kNoChild : found->second;
}

void DiscreteSplit::Display(std::ostream& out) const {
  const bool isCategorical = GetSplitMLevel() == ScoreDictVar::kNominal;
  out << "SplitVarName = " << GetSplitName()
      << (isCategorical ? "; Var type: Categorical\n" : "; Var type: Ordinal\n")
      << "Missing Value index: " << fMissvalMap << '\n';
  if (fStart >= 0 && fEnd >= 0) out << "Split value index starts from  " << fStart << " to " << fEnd << '\n';
  for (std::size_t i = 0; i < fChildren.size(); ++i) {
    out << "Value = " << fValues.At(i)->GetString() << "; Index = " << fChildren[i] << '\n';
  }
  out << '\n';
}

}  // namespace KxVeyra_940
