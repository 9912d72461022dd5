// Output fields that are computed from other output fields: the feature transformedValue.
//
// Their expressions are those of derived fields; they see the output fields of other features, wherever these
// stand, and the ones of their own kind that stand before them.

#ifndef VEYRA_PLUGINS_TRANSFORMEDOUTPUTS_H_
#define VEYRA_PLUGINS_TRANSFORMEDOUTPUTS_H_

#include <memory>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "common/PluginResult.h"
#include "data/BaseDictionary.h"
#include "data/CaseRecord.h"
#include "transform/TransformVar.h"
#include "transform/TransformationDictionary.h"
#include "translate/PMMLTranslator.h"

namespace KxVeyra_940::Plugin {

class TransformedOutputs {
 public:
  TransformedOutputs() = default;
  // A copy has fields of its own.
  TransformedOutputs(const TransformedOutputs& other);
  TransformedOutputs(TransformedOutputs&& other) = default;
  TransformedOutputs& operator=(TransformedOutputs&& other) = default;
  ~TransformedOutputs() = default;

  // An output field of another feature; `output` is its index in the result.
  void AddGiven(const std::string& name, int output, bool isText);
  // One of this feature, after those that it sees.  Raises 260283 without an expression, and what the
  // translation of derived fields raises.
  void AddTransformed(PMMLTranslator& translator, const xercesc::DOMElement& outputField, int output);
  // After the last one.
  void Finish();

  // REQUIRES: the other output fields of `result` are filled.  Allocates nothing once warm.
  void Fill(PluginResult& result);

 private:
  struct Transformed {
    int output;
    const TransformVar* var;  // of fTransformations
  };

  void StoreGiven(const PluginResult& result);

  std::unique_ptr<ScoreDictionary> fGivenFields = std::make_unique<BaseDictionary>();
  std::vector<int> fGiven;  // by slot of fRecord: the index in the result
  CaseRecord fRecord;
  std::unique_ptr<TransformationDictionary> fTransformations = std::make_unique<TransformationDictionary>();
  std::vector<Transformed> fTransformed;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_TRANSFORMEDOUTPUTS_H_
