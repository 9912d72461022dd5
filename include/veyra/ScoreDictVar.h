// One field of the data: its name, its type and level, and which of its values are missing, invalid or valid.
//
// Threads: const operations may be called by any number of threads once the dictionary is built.
// Nothing here throws.

#ifndef VEYRA_SCOREDICTVAR_H_
#define VEYRA_SCOREDICTVAR_H_

#include <iosfwd>
#include <string>

#include "veyra/Export.h"
#include "veyra/ScoreEncoder.h"
#include "veyra/ScoreMissingValueSet.h"
#include "veyra/ScoreValue.h"
#include "veyra/ScoreValueLabel.h"
#include "veyra/ScoreValueProbability.h"
#include "veyra/ScoreVarStats.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreDictVar {
 public:
  enum VariableType : int {
    kNUMERIC_VAR = 0,
    STRING_VAR = 1,
    kDATETIME_VAR = 4,
  };

  enum MeasureLevel : int {
    kContinuous = 0,
    kOrdinal = 1,
    kNominal = 2,
  };

  enum NumericDataType : int {
    kNumericUnspecified = 0,
    kInteger = 1,
    kDouble = 2,
  };

  enum DateTimeType : int {
    kNoDateTime = 0,
    kDate = 1,
    kTime = 2,
    kDateTime = 3,
    kDateDaysSince0 = 4,
    kDateDaysSince1960 = 5,
    kDateDaysSince1970 = 6,
    kDateDaysSince1980 = 7,
    kTimeSeconds = 8,
    kDateTimeSecondsSince0 = 9,
    kDateTimeSecondsSince1960 = 10,
    kDateTimeSecondsSince1970 = 11,
    kDateTimeSecondsSince1980 = 12,
  };

  // Stored and returned unchanged; plug-ins give the numbers meaning.
  enum OutlierHandleMethod : int {
    kOutlierAsIs = 0,
    kOutlierAsMissing = 1,
    kOutlierAsExtreme = 2,
  };

  virtual ~ScoreDictVar();
  virtual ScoreDictVar* Clone() const = 0;  // new; the caller owns it
  // Equal names; nothing else is compared.
  virtual bool operator==(const ScoreDictVar& var) const = 0;
  virtual bool IsMissingValue(const ScoreValue* value) const = 0;
  virtual bool IsValidValue(const ScoreValue* value) const = 0;
  virtual bool SetName(const std::string& name) = 0;  // false for an empty name
  virtual void SetLabel(const std::string& label) = 0;
  virtual void SetVarType(VariableType type) = 0;
  virtual void SetMLevel(MeasureLevel level) = 0;
  virtual void SetFormat(int decimals, int width) = 0;
  virtual void SetDecimal(int decimals) = 0;
  virtual void SetWidth(int width) = 0;
  virtual const std::string& GetName() const = 0;
  virtual const std::string& GetLabel() const = 0;
  virtual VariableType GetVarType() const = 0;
  virtual MeasureLevel GetMLevel() const = 0;
  virtual int GetDecimal() const = 0;
  virtual int GetWidth() const = 0;
  virtual ScoreVarStats* GetVarStats() const = 0;  // lent
  // The setters of owned parts take the pointer and never delete what they replace.
  virtual void SetVarStats(ScoreVarStats* stats) = 0;
  virtual ScoreValueLabelSet* GetValueLabels() const = 0;  // lent
  virtual std::string GetLabelOfValue(const ScoreValue* value) const = 0;
  virtual ScoreMissingValueSet* GetMissingValues() const = 0;  // lent
  virtual void SetMissingValues(ScoreMissingValueSet* values) = 0;
  virtual void SetValueLabels(ScoreValueLabelSet* labels) = 0;
  // A new value of the variable's type read from the text (the caller owns it); null for a date-time
  // variable.
  virtual ScoreValue* ToMyValue(const std::string& text) const = 0;
  virtual void Display(std::ostream& out) const = 0;
  // 1 for a continuous variable, else the number of labelled values.
  virtual int GetNumberOfCats() const = 0;
  // The position in case records that carry a name map, and in vectors of encoded numbers; -1 unassigned.
  virtual void SetValueIndex(int index) = 0;
  virtual void SetEncodedValueIndex(int index) = 0;
  virtual int GetValueIndex() const = 0;
  virtual int GetEncodedValueIndex() const = 0;
  virtual void SetNoSpaceTrim(bool noSpaceTrim) = 0;  // string variables only
  virtual bool GetNoSpaceTrim() const = 0;
  virtual void SetEmptyStringOK(bool emptyStringOK) = 0;  // string variables only
  virtual bool GetEmptyStringOK() const = 0;
  virtual const std::string& GetXMeasure() const = 0;
  virtual void SetXMeasure(const std::string& measure) = 0;
  virtual bool SetFlagVariable(bool flag) = 0;  // false for a continuous variable
  virtual bool IsFlagVariable() const = 0;
  virtual void SetOutlierHandleMethod(OutlierHandleMethod method) = 0;
  virtual OutlierHandleMethod GetOutlierHandleMethod() const = 0;
  virtual bool IsDerivedVariable() const = 0;
  virtual void SetDateTimeType(DateTimeType type) = 0;
  virtual DateTimeType GetDateTimeType() const = 0;
  virtual void SetDefValue(ScoreValue* value) = 0;
  virtual ScoreValue* GetDefValue() const = 0;  // lent
  virtual void SetValueProbabilities(ScoreValueProbabilitySet* probabilities) = 0;
  virtual ScoreValueProbabilitySet* GetValueProbabilities() const = 0;  // lent
  virtual const ScoreEncoder* GetEncoder() const = 0;                   // lent
  virtual ScoreEncoder* GetEncoder() = 0;                               // lent
  virtual void SetEncoder(ScoreEncoder* encoder) = 0;
  virtual void SetEmptyCateValues(bool empty) = 0;
  virtual bool IsEmptyCateValues() const = 0;
  // Adds a category.  A null value or an empty label: false, the value stays the caller's.  A value that is
  // there already: false, the value is deleted.
  virtual bool AddScoreValueLabel(ScoreValue* value, const std::string& label) = 0;
  virtual void SetNumericDataType(NumericDataType type) = 0;
  virtual NumericDataType GetNumericDataType() const = 0;
  virtual bool IsUsageTypeEnable() const = 0;
  virtual void SetUsageType(bool enable) = 0;
  virtual void SetFalgTypeTrueValue(const std::string& value) = 0;
  virtual std::string GetFalgTypeTrueValue() const = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREDICTVAR_H_
