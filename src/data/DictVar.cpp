#include "data/DictVar.h"

#include <algorithm>
#include <ostream>
#include <typeinfo>
#include <vector>

#include "data/MissingValueSet.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "data/ValueLabelSet.h"
#include "data/ValueLbl.h"

namespace KxVeyra_940 {

namespace {

// The part as the library's own class, which answers without allocating or scanning; null for another one.
template <class Own, class Interface>
const Own* AsOwn(const Interface& part) {
  return typeid(part) == typeid(Own) ? static_cast<const Own*>(&part) : nullptr;
}

bool IsCovered(const ScoreMissingValueSet& set, const ScoreValue* value) {
  if (const auto* own = AsOwn<MissingValueSet>(set)) return own->Covers(value);
  const std::vector<ScoreValueRange*> ranges = set.GetMissingValues();
  return std::any_of(ranges.begin(), ranges.end(),
                     [value](const ScoreValueRange* range) { return range->IsInRange(value); });
}

// Whether some label holds this very object.
bool HoldsObject(const ScoreValueLabelSet& set, const ScoreValue* value) {
  if (const auto* own = AsOwn<ValueLabelSet>(set)) return own->HoldsObject(value);
  const std::vector<ScoreValueLabel*>& labels = set.GetAllValueLabels();
  return std::any_of(labels.begin(), labels.end(),
                     [value](const ScoreValueLabel* label) { return label->GetValue() == value; });
}

const char* LevelText(ScoreDictVar::MeasureLevel level) {
  switch (level) {
    case ScoreDictVar::kContinuous:
      return "Var level =  Continuous; ";
    case ScoreDictVar::kOrdinal:
      return "Var level =  Ordinal; ";
    case ScoreDictVar::kNominal:
      return "Var level =  Nominal; ";
  }
  return "Var level = unknown;";
}

}  // namespace

DictVar::DictVar(const std::string& name, VariableType type) : fName(name), fVarType(type) {}

DictVar::~DictVar() = default;

ScoreDictVar* DictVar::Clone() const { return new DictVar(*this); }

bool DictVar::operator==(const ScoreDictVar& var) const { return fName == var.GetName(); }

bool DictVar::IsMissingValue(const ScoreValue* value) const {
  if (value == nullptr) return true;
  const bool hasNumbers = fVarType == kNUMERIC_VAR || fVarType == kDATETIME_VAR;
  if (hasNumbers && value->IsSystemMissingValue()) return true;
  if (!fMissingValues || !IsCovered(*fMissingValues, value)) return false;
  // A category is a category even inside a missing range; texts get no such exemption.
  return !(hasNumbers && fValueLabels && fValueLabels->Contains(value));
}

bool DictVar::IsValidValue(const ScoreValue* value) const {
  if (IsMissingValue(value)) return false;
  if (!fValueLabels)
    return fVarType != kNUMERIC_VAR || value->GetType() == ScoreValue::kNumericValueType ||
           value->GetType() == ScoreValue::kDateTimeValueType;
  if (!IsCategorical()) return true;
  return IsString() ? ValueLabelSet::FindEqual(*fValueLabels, value, fNoSpaceTrim, fEmptyStringOK) >= 0
                    : fValueLabels->Contains(value);
}

bool DictVar::SetName(const std::string& name) {
  if (name.empty()) return false;
  fName = name;
  return true;
}

void DictVar::SetLabel(const std::string& label) { fLabel = label; }

void DictVar::SetVarType(VariableType type) { fVarType = type; }

void DictVar::SetMLevel(MeasureLevel level) { fMLevel = level; }

void DictVar::SetFormat(int decimals, int width) {
  fDecimals = decimals;
  fWidth = width;
}

void DictVar::SetDecimal(int decimals) { fDecimals = decimals; }

void DictVar::SetWidth(int width) { fWidth = width; }

const std::string& DictVar::GetName() const { return fName; }

const std::string& DictVar::GetLabel() const { return fLabel; }

ScoreDictVar::MeasureLevel DictVar::GetMLevel() const { return fMLevel; }

int DictVar::GetDecimal() const { return fDecimals; }

ScoreVarStats* DictVar::GetVarStats() const { return fVarStats.Get(); }

void DictVar::SetVarStats(ScoreVarStats* stats) { fVarStats.ReplaceKeepingOld(stats); }

ScoreValueLabelSet* DictVar::GetValueLabels() const { return fValueLabels.Get(); }

std::string DictVar::GetLabelOfValue(const ScoreValue* value) const {
  return fValueLabels ? fValueLabels->GetLabelOfValue(value) : std::string();
}

ScoreMissingValueSet* DictVar::GetMissingValues() const { return fMissingValues.Get(); }

void DictVar::SetMissingValues(ScoreMissingValueSet* values) { fMissingValues.ReplaceKeepingOld(values); }

void DictVar::SetValueLabels(ScoreValueLabelSet* labels) { fValueLabels.ReplaceKeepingOld(labels); }

ScoreValue* DictVar::ToMyValue(const std::string& text) const {
  if (fVarType == STRING_VAR) return new StringValue(text);
  if (fVarType == kNUMERIC_VAR) return new NumericValue(text);
  return nullptr;
}

void DictVar::Display(std::ostream& out) const {
  out << "Start ScoreDictVar Display:\nVar Name = " << fName << "; Var Lable = " << fLabel << "; ";
  if (fVarType == kNUMERIC_VAR) out << "Var Type = kNUMERIC_VAR; ";
  if (fVarType == STRING_VAR) out << "Var Type = STRING_VAR; ";
  out << LevelText(fMLevel) << '\n';
  if (fValueLabels) fValueLabels->Display(out);
  if (fMissingValues) fMissingValues->Display(out);
  if (!fXMeasure.empty()) out << "x-Measure: " << fXMeasure << '\n';
  out << "End of ScoreDictVar Display.\n\n";
}

int DictVar::GetNumberOfCats() const {
  if (!IsCategorical()) return 1;
  return fValueLabels ? fValueLabels->Size() : 0;
}

void DictVar::SetValueIndex(int index) { fValueIndex = index; }

void DictVar::SetEncodedValueIndex(int index) { fEncodedValueIndex = index; }

int DictVar::GetValueIndex() const { return fValueIndex; }

int DictVar::GetEncodedValueIndex() const { return fEncodedValueIndex; }

void DictVar::SetNoSpaceTrim(bool noSpaceTrim) {
  if (IsString()) fNoSpaceTrim = noSpaceTrim;
}

bool DictVar::GetNoSpaceTrim() const { return fNoSpaceTrim; }

void DictVar::SetEmptyStringOK(bool emptyStringOK) {
  if (IsString()) fEmptyStringOK = emptyStringOK;
}

bool DictVar::GetEmptyStringOK() const { return fEmptyStringOK; }

const std::string& DictVar::GetXMeasure() const { return fXMeasure; }

void DictVar::SetXMeasure(const std::string& measure) { fXMeasure = measure; }

bool DictVar::SetFlagVariable(bool flag) {
  if (!IsCategorical()) return false;
  fFlagVariable = flag;
  return true;
}

bool DictVar::IsFlagVariable() const { return fFlagVariable; }

void DictVar::SetOutlierHandleMethod(OutlierHandleMethod method) { fOutlierHandleMethod = method; }

ScoreDictVar::OutlierHandleMethod DictVar::GetOutlierHandleMethod() const { return fOutlierHandleMethod; }

bool DictVar::IsDerivedVariable() const { return false; }

void DictVar::SetDateTimeType(DateTimeType type) { fDateTimeType = type; }

void DictVar::SetDefValue(ScoreValue* value) { fDefaultValue.ReplaceKeepingOld(value); }

ScoreValue* DictVar::GetDefValue() const { return fDefaultValue.Get(); }

void DictVar::SetValueProbabilities(ScoreValueProbabilitySet* probabilities) {
  fValueProbabilities.ReplaceKeepingOld(probabilities);
}

ScoreValueProbabilitySet* DictVar::GetValueProbabilities() const { return fValueProbabilities.Get(); }

const ScoreEncoder* DictVar::GetEncoder() const { return fEncoder.Get(); }

ScoreEncoder* DictVar::GetEncoder() { return fEncoder.Get(); }

void DictVar::SetEncoder(ScoreEncoder* encoder) { fEncoder.ReplaceKeepingOld(encoder); }

void DictVar::SetEmptyCateValues(bool empty) { fEmptyCategories = empty; }

bool DictVar::IsEmptyCateValues() const { return fEmptyCategories; }

bool DictVar::AddScoreValueLabel(ScoreValue* value, const std::string& label) {
  if (value == nullptr || label.empty()) return false;
  if (!fValueLabels) fValueLabels.Replace(new ValueLabelSet);
  if (HoldsObject(*fValueLabels, value)) return false;
  if (fValueLabels->Contains(value)) {
    delete value;
    return false;
  }
  return fValueLabels->Add(new ValueLbl(value, label));
}

void DictVar::SetNumericDataType(NumericDataType type) { fNumericDataType = type; }

ScoreDictVar::NumericDataType DictVar::GetNumericDataType() const { return fNumericDataType; }

bool DictVar::IsUsageTypeEnable() const { return fUsageTypeEnabled; }

void DictVar::SetUsageType(bool enable) { fUsageTypeEnabled = enable; }

void DictVar::SetFalgTypeTrueValue(const std::string& value) { fFlagTrueValue = value; }

std::string DictVar::GetFalgTypeTrueValue() const { return fFlagTrueValue; }

}  // namespace KxVeyra_940
