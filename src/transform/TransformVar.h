// A derived field: a variable that knows how its value is computed from the fields of a case.
//
//   TransformVar logIncome("logIncome", ScoreDictVar::kNUMERIC_VAR);
//   logIncome.AddFieldNameAndTransExpression("", TransformationDictionary::TE_APPLY);
//   logIncome.SetRoot(root);                                                          // takes it
//   const ScoreValue* value = logIncome.GetTransformedValue(&record, dictionary, nullptr);
//
// A translator builds the variable; once it has been evaluated, its description no longer changes.
// Ownership: what the setters take is owned; variables that it refers to are not, and are looked up again by
// name in the dictionaries of each call (the pointers serve where no dictionary has the name).
// Threads: a variable holds the values of the current case and the history of a lag: one thread at a time,
// also through const operations. Nothing throws.

#ifndef VEYRA_TRANSFORM_TRANSFORMVAR_H_
#define VEYRA_TRANSFORM_TRANSFORMVAR_H_

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/DictVar.h"
#include "data/Owned.h"
#include "transform/CaseContext.h"
#include "transform/FunctionTree.h"
#include "transform/MapValues.h"
#include "transform/TransformationDictionary.h"
#include "veyra/Export.h"

namespace KxVeyra_940 {

struct Operand;

class VEYRA_API TransformVar : public DictVar {
 public:
  using TransExpression = TransformationDictionary::TransExpression;

  enum OutlierTreatment : int { kAsIs = 0, kAsMissingValues = 1, kAsExtremeValues = 2 };

  struct Bin {
    OwnedPart<ScoreValueRange> range;
    OwnedPart<ScoreValue> value;  // none: the input itself
  };
  struct EncodingPair {
    OwnedPart<ScoreValue> source;
    OwnedPart<ScoreValue> encoded;
  };

  TransformVar(const std::string& name, VariableType type);
  // Copies clone every owned part, the tree, the value map and the histories included.
  TransformVar(const TransformVar& other);
  TransformVar& operator=(const TransformVar&) = delete;
  ~TransformVar() override;

  ScoreDictVar* Clone() const override;
  void Display(std::ostream& out) const override;
  bool IsDerivedVariable() const override;

  // The value for the case, computed from `input` and lent until the next call; a lag's history moves once
  // per case that `transformations` has opened (see there).  Expressions take from `transformations` what is
  // computed for its case.  Without a value: the system-missing number or the empty text.
  const ScoreValue* GetTransformedValue(const ScoreCaseRecord* input, const ScoreDictionary* dataDictionary,
                                        const ScoreDictionary* transformations) const;

  // --- What a translator sets

  void AddFieldNameAndTransExpression(const std::string& name, TransExpression expression);
  void SetRoot(FunctionTree* root);  // takes it
  void SetConstString(const std::string& text) { fConstString = text; }
  // A point of a piecewise linear function, and the line of a piece.  Points in ascending order are found by
  // bisection.
  void AddLinearNorm(double orig, double norm);
  void AddNormInfo(double slope, double intercept);
  void SetOutlierTreatMent(const std::string& text);             // an unknown text changes nothing
  void AddEncodingMap(ScoreValue* source, ScoreValue* encoded);  // takes both
  // Takes range and value; a null value stands for the input itself.  `fieldName` is what the interval's text
  // calls the field.
  void AddBinningValue(ScoreValueRange* range, ScoreValue* value, const std::string& fieldName);
  void SetMapValues(MapValues* map);  // takes it and deletes the one before
  // The variables, lent, whose change breaks the lag.  REQUIRES: n > 0.
  void SetLags(int n, const std::vector<const ScoreDictVar*>& blockVariables);
  void SetRecodeMissValueTo(ScoreValue* value);   // takes it; no copy of missing values then
  void SetRecodeDefaultValue(ScoreValue* value);  // takes it; no copy of unmatched values then
  void SetRecodeSysmisValue(ScoreValue* value);   // takes it
  void SetRecodeElseCopy(bool copy);              // deletes the default value
  void SetRecodeMissingCopy(bool copy);           // deletes the missing replacement
  void SetRecodeIntervalCopy(ScoreValueRange* range) { fRecodeIntervalCopy.Replace(range); }  // takes it

  // --- Read access: what is lent lives as long as the variable

  const std::string& GetFieldName() const { return fFieldName; }
  TransExpression GetTransExpression() const { return fExpression; }
  const std::string& GetConstString() const { return fConstString; }
  const std::vector<EncodingPair>& GetAllEncodedValues() const { return fEncodingMap; }
  const std::vector<Bin>& GetBins() const { return fBins; }
  const FunctionTree* GetRoot() const { return fRoot.Get(); }
  const MapValues* GetMapValues() const { return fMapValues.Get(); }
  int GetLagCount() const { return fLagCount; }
  const ScoreValue* GetRecodeMissValueRep() const { return fRecodeMissValueTo.Get(); }
  const ScoreValue* GetRecodeDefaultValue() const { return fRecodeDefaultValue.Get(); }
  const ScoreValue* GetRecodeSysmisValueRep() const { return fRecodeSysmisValue.Get(); }
  bool IsRecodeElseCopy() const { return fRecodeElseCopy; }
  bool IsRecodeMissingCopy() const { return fRecodeMissingCopy; }
  // The interval behind a bin value, such as "[0, 10)", or with the field's name, "0 <= age < 10"; empty for
  // an unknown value.
  std::string GetOrigIntervalForBinningValue(const std::string& binValue, bool withFieldName) const;

  // The piecewise linear function.
  bool IsOutOfContRange(double x) const;
  double GetNormValue(double x) const;
  double CalculateNormValue(double x) const;
  double CalculateNormAsIs(double x) const;
  double CalculateNormAsMissingValues(double x) const;
  double CalculateNormAsExtremeValues(double x) const;

  // --- For the evaluation

  // The names of the fields that the value depends on.
  std::vector<std::string> GetReads() const;
  // The value for the ask of `context`, computed at the first call, lent until another ask.  It is written to
  // `place` when that is a value of the variable's type, unless it is a constant or a lag; null for no such
  // place.  What the variable reads should be computed for the ask already: else it is done now, by
  // recursion.
  const ScoreValue* Compute(const CaseContext& context, ScoreValue* place = nullptr) const;
  // Whether the last result is a text without value.
  bool IsTextMissing() const;
  // What a field that reads the variable sees: null for a text without value, and for a variable whose value
  // depends on the field.
  const ScoreValue* ValueIn(const CaseContext& context) const;

 private:
  struct State;

  // Compute, after everything that the variable reads.
  const ScoreValue* Evaluate(const CaseContext& context) const;
  void BindTo(const CaseContext& context) const;
  void Bind(const CaseContext& context) const;
  void ComputeInto(Operand& out, const CaseContext& context) const;
  void SetConstant() const;
  template <class Value>
  Value& Result() const;
  void StoreResult(const Operand& value) const;
  void StoreText(std::string_view text) const;

  void ReferTo(const ScoreDictVar* source, const ScoreValue* value, Operand& out) const;
  void NormContinuous(const ScoreDictVar* source, const ScoreValue* value, Operand& out) const;
  void GetEncodedValue(const ScoreDictVar* source, const ScoreValue* value, Operand& out) const;
  void GetBinningValue(const ScoreDictVar* source, const ScoreValue* value, Operand& out) const;
  void GetMappedValue(const CaseContext& context, const ScoreValue* value, Operand& out) const;
  void ComputeLag(const CaseContext& context) const;
  void MoveLag(const CaseContext& context, const ScoreValue* value) const;
  void HandleMissingAndInvalidValue(const ScoreDictVar* source, const ScoreValue* value, Operand& out) const;
  // A recode value as it is: a system-missing number gives none to a numeric result.
  void LendRecoded(const ScoreValue* recoded, Operand& out) const;
  std::size_t SegmentOf(double x) const;
  bool HasLines() const;

  std::string fFieldName;
  TransExpression fExpression = TransformationDictionary::TE_NONE;
  std::vector<Bin> fBins;
  std::map<std::string, std::string> fIntervalOfBin;
  std::map<std::string, std::string> fNamedIntervalOfBin;
  std::vector<double> fSlopes;
  std::vector<double> fIntercepts;
  OutlierTreatment fOutlierTreatment = kAsIs;
  std::vector<double> fOrigs;
  std::vector<double> fNorms;
  bool fAreOrigsAscending = true;
  double fLowestOrig = 0;
  double fHighestOrig = 0;
  std::vector<EncodingPair> fEncodingMap;
  std::string fConstString;
  OwnedPart<FunctionTree> fRoot;
  OwnedPart<ScoreValue> fRecodeMissValueTo;
  OwnedPart<ScoreValue> fRecodeDefaultValue;
  OwnedPart<ScoreValue> fRecodeSysmisValue;
  bool fRecodeElseCopy = false;
  bool fRecodeMissingCopy = false;
  OwnedPart<ScoreValueRange> fRecodeIntervalCopy;
  OwnedPart<MapValues> fMapValues;
  int fLagCount = 1;
  std::vector<const ScoreDictVar*> fBlockVariables;
  std::vector<std::string> fBlockNames;
  std::unique_ptr<State> fState;  // what changes from case to case
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_TRANSFORMVAR_H_
