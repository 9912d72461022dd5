// One field of the data: its name, its type and level, and which of its values are missing, invalid or valid.
//
//   DictVar age("age", ScoreDictVar::kNUMERIC_VAR);
//   age.SetMissingValues(missing);                       // takes it
//   if (age.IsMissingValue(value)) ...                   // allocates nothing
//
// The setters of owned parts take the pointer and never delete what they replace: set each part once, or
// delete the old one yourself.  The part held already just stays.  The destructor and assignment delete the
// parts held.
// Threads: const operations may be called by any number of threads once the dictionary is built.
// Nothing throws.

#ifndef VEYRA_DATA_DICTVAR_H_
#define VEYRA_DATA_DICTVAR_H_

#include <string>

#include "data/Owned.h"
#include "veyra/Export.h"
#include "veyra/ScoreDictVar.h"

namespace KxVeyra_940 {

class VEYRA_API DictVar : public ScoreDictVar {
 public:
  DictVar(const std::string& name, VariableType type);
  // Copies clone every owned part.
  DictVar(const DictVar& other) = default;
  DictVar& operator=(const DictVar& other) = default;
  ~DictVar() override;

  ScoreDictVar* Clone() const override;
  bool operator==(const ScoreDictVar& var) const override;
  bool IsMissingValue(const ScoreValue* value) const override;
  bool IsValidValue(const ScoreValue* value) const override;
  bool SetName(const std::string& name) override;
  void SetLabel(const std::string& label) override;
  void SetVarType(VariableType type) override;
  void SetMLevel(MeasureLevel level) override;
  void SetFormat(int decimals, int width) override;
  void SetDecimal(int decimals) override;
  void SetWidth(int width) override;
  const std::string& GetName() const override;
  const std::string& GetLabel() const override;
  VariableType GetVarType() const override { return fVarType; }
  MeasureLevel GetMLevel() const override;
  int GetDecimal() const override;
  int GetWidth() const override { return fWidth; }
  ScoreVarStats* GetVarStats() const override;
  void SetVarStats(ScoreVarStats* stats) override;
  ScoreValueLabelSet* GetValueLabels() const override;
  std::string GetLabelOfValue(const ScoreValue* value) const override;
  ScoreMissingValueSet* GetMissingValues() const override;
  void SetMissingValues(ScoreMissingValueSet* values) override;
  void SetValueLabels(ScoreValueLabelSet* labels) override;
  ScoreValue* ToMyValue(const std::string& text) const override;
  void Display(std::ostream& out) const override;
  int GetNumberOfCats() const override;
  void SetValueIndex(int index) override;
  void SetEncodedValueIndex(int index) override;
  int GetValueIndex() const override;
  int GetEncodedValueIndex() const override;
  void SetNoSpaceTrim(bool noSpaceTrim) override;
  bool GetNoSpaceTrim() const override;
  void SetEmptyStringOK(bool emptyStringOK) override;
  bool GetEmptyStringOK() const override;
  const std::string& GetXMeasure() const override;
  void SetXMeasure(const std::string& measure) override;
  bool SetFlagVariable(bool flag) override;
  bool IsFlagVariable() const override;
  void SetOutlierHandleMethod(OutlierHandleMethod method) override;
  OutlierHandleMethod GetOutlierHandleMethod() const override;
  bool IsDerivedVariable() const override;
  void SetDateTimeType(DateTimeType type) override;
  DateTimeType GetDateTimeType() const override { return fDateTimeType; }
  void SetDefValue(ScoreValue* value) override;
  ScoreValue* GetDefValue() const override;
  void SetValueProbabilities(ScoreValueProbabilitySet* probabilities) override;
  ScoreValueProbabilitySet* GetValueProbabilities() const override;
  const ScoreEncoder* GetEncoder() const override;
  ScoreEncoder* GetEncoder() override;
  void SetEncoder(ScoreEncoder* encoder) override;
  void SetEmptyCateValues(bool empty) override;
  bool IsEmptyCateValues() const override;
  bool AddScoreValueLabel(ScoreValue* value, const std::string& label) override;
  void SetNumericDataType(NumericDataType type) override;
  NumericDataType GetNumericDataType() const override;
  bool IsUsageTypeEnable() const override;
  void SetUsageType(bool enable) override;
  void SetFalgTypeTrueValue(const std::string& value) override;
  std::string GetFalgTypeTrueValue() const override;

  bool IsString() const { return fVarType == STRING_VAR; }

 private:
  bool IsCategorical() const { return fMLevel == kOrdinal || fMLevel == kNominal; }

  std::string fName;
  std::string fLabel;
  VariableType fVarType;
  DateTimeType fDateTimeType = kNoDateTime;
  NumericDataType fNumericDataType = kNumericUnspecified;
  MeasureLevel fMLevel = kContinuous;
  int fDecimals = -1;
  int fWidth = -1;
  OwnedPart<ScoreMissingValueSet> fMissingValues;
  OwnedPart<ScoreValueLabelSet> fValueLabels;
  OwnedPart<ScoreVarStats> fVarStats;
  int fValueIndex = -1;
  int fEncodedValueIndex = -1;
  bool fNoSpaceTrim = false;
  bool fEmptyStringOK = false;
  std::string fXMeasure;
  bool fFlagVariable = false;
  bool fUsageTypeEnabled = true;
  OutlierHandleMethod fOutlierHandleMethod = kOutlierAsIs;
  OwnedPart<ScoreValue> fDefaultValue;
  OwnedPart<ScoreValueProbabilitySet> fValueProbabilities;
  OwnedPart<ScoreEncoder> fEncoder;
  bool fEmptyCategories = false;
  std::string fFlagTrueValue;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_DICTVAR_H_
