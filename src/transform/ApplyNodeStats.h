// One node of an expression tree: its function, constant or field, and how it treats missing and invalid
// values.  A plain record: copies share what its pointers point to, and it owns none of it.

#ifndef VEYRA_TRANSFORM_APPLYNODESTATS_H_
#define VEYRA_TRANSFORM_APPLYNODESTATS_H_

#include <string>
#include <vector>

#include "transform/TransformationDictionary.h"
#include "veyra/Export.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ApplyNodeStats {
 public:
  using TransformFunction = TransformationDictionary::TransformFunction;

  enum InvalidValueTreatmentMethod : int {
    kReturnInvalid = 0,
    kAsIs = 1,
    kAsMissing = 2,
    kInvalidTreatmentDefault = 3,  // not stated
  };

  ApplyNodeStats() = default;

  const std::string& GetNodeID() const { return fNodeID; }
  void SetNodeID(const std::string& id) { fNodeID = id; }
  ScoreValue* GetValue() const { return fValue; }
  void SetValue(ScoreValue* value) { fValue = value; }
  // kTransformFunctionCount stands for no function.
  TransformFunction GetTransformFunction() const { return fTransformFunction; }
  void SetTransformFunction(TransformFunction function) { fTransformFunction = function; }
  const std::string& GetParameterName() const { return fParameterName; }
  void SetParameterName(const std::string& name) { fParameterName = name; }
  const ScoreDictVar* GetVariable() const { return fVariable; }
  void SetVariable(const ScoreDictVar* variable) { fVariable = variable; }
  int GetVarIndex() const { return fVarIndex; }  // -1 unassigned
  void SetVarIndex(int index) { fVarIndex = index; }
  bool IsConstNode() const { return fConstNode; }
  void SetConstNode(bool constNode) { fConstNode = constNode; }
  const std::vector<std::vector<double>>& GetArrays() const { return fArrays; }
  void AddArray(const std::vector<double>& array) { fArrays.push_back(array); }
  void ClearArray() { fArrays.clear(); }
  ScoreValue* GetRecodeMissValueRep() const { return fRecodeMissValueTo; }
  void SetRecodeMissValueTo(ScoreValue* value) { fRecodeMissValueTo = value; }
  ScoreValue* GetDefaultValue() const { return fDefaultValue; }
  void SetDefaultValue(ScoreValue* value) { fDefaultValue = value; }
  InvalidValueTreatmentMethod GetInvalidValueTreatment() const { return fInvalidValueTreatment; }
  void SetInvalidValueTreatment(InvalidValueTreatmentMethod method) { fInvalidValueTreatment = method; }
  ScoreValue* GetFieldrefRecodeMissValueRep() const { return fFieldrefRecodeMissValueTo; }
  void SetFieldrefRecodeMissValueTo(ScoreValue* value) { fFieldrefRecodeMissValueTo = value; }

 private:
  std::string fNodeID;
  ScoreValue* fValue = nullptr;
  TransformFunction fTransformFunction = static_cast<TransformFunction>(kTransformFunctionCount);
  std::string fParameterName;
  const ScoreDictVar* fVariable = nullptr;
  int fVarIndex = -1;
  bool fConstNode = false;
  std::vector<std::vector<double>> fArrays;
  ScoreValue* fRecodeMissValueTo = nullptr;
  ScoreValue* fDefaultValue = nullptr;
  InvalidValueTreatmentMethod fInvalidValueTreatment = kInvalidTreatmentDefault;
  ScoreValue* fFieldrefRecodeMissValueTo = nullptr;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_APPLYNODESTATS_H_
