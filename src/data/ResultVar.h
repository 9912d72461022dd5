// A variable that describes one output field of a model.

#ifndef VEYRA_DATA_RESULTVAR_H_
#define VEYRA_DATA_RESULTVAR_H_

#include <string>

#include "data/DictVar.h"
#include "veyra/Export.h"
#include "veyra/ScoreResultField.h"

namespace KxVeyra_940 {

class VEYRA_API ResultVar : public DictVar {
 public:
  ResultVar(const std::string& name, VariableType type);
  ResultVar(const ResultVar& other) = default;
  ResultVar& operator=(const ResultVar& other) = default;
  ~ResultVar() override;

  ScoreDictVar* Clone() const override;
  ScoreResultField::ResultFeature GetFeature() const { return fFeature; }
  void SetFeature(ScoreResultField::ResultFeature feature) { fFeature = feature; }

 private:
  ScoreResultField::ResultFeature fFeature = ScoreResultField::kNoFeature;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_RESULTVAR_H_
