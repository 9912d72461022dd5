// The derived fields of a model, in the order in which they are evaluated.

#ifndef VEYRA_TRANSFORM_TRANSFORMATIONDICTIONARY_H_
#define VEYRA_TRANSFORM_TRANSFORMATIONDICTIONARY_H_

#include <string>
#include <vector>

#include "data/BaseDictionary.h"
#include "veyra/Export.h"
#include "veyra/TransformFunction.h"

namespace KxVeyra_940 {

class VEYRA_API TransformationDictionary : public BaseDictionary {
 public:
  using TransformFunction = KxVeyra_940::TransformFunction;
  using enum KxVeyra_940::TransformFunction;

  TransformationDictionary() = default;
  TransformationDictionary(const TransformationDictionary& other) = default;
  TransformationDictionary& operator=(const TransformationDictionary& other) = default;
  ~TransformationDictionary() override;

  ScoreDictionary* Clone() const override;

  // Appends a name to the derived fields; the variable itself is added with AddVar.
  void AddDerievedVarName(const std::string& name) { fDerivedVarNames.push_back(name); }
  const std::vector<std::string>& GetDerivedVarNames() const { return fDerivedVarNames; }

 private:
  std::vector<std::string> fDerivedVarNames;  // in evaluation order
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_TRANSFORMATIONDICTIONARY_H_
