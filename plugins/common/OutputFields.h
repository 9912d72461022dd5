// The output fields that a document asks for, and how each is filled from a scored case.

#ifndef VEYRA_PLUGINS_OUTPUTFIELDS_H_
#define VEYRA_PLUGINS_OUTPUTFIELDS_H_

#include <memory>
#include <set>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "common/PluginResult.h"
#include "data/ResultVar.h"
#include "translate/PMMLTranslator.h"
#include "veyra/ScoreCaseRecord.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/ScoreResultField.h"

namespace KxVeyra_940::Plugin {

class OutputFields {
 public:
  // Reads the "OutputField" elements of the model's "Output" child, and the "ResultField" elements at any
  // depth below the model.  `layout` holds the model's categories.  `target` may be null.  Raises 260120 and
  // 260285 for a name, 260303 for a feature that this kind of model does not give, 260128 for a category that
  // the model does not have, 260203 for a name given twice.
  static OutputFields Read(PMMLTranslator& translator, const xercesc::DOMElement& model,
                           const PluginResult& layout, const ScoreDictVar* target);

  // A new dictionary of the fields, or null when there are none.
  std::unique_ptr<ScoreDictionary> MakeDictionary() const;
  void AddTo(PluginResult& result) const;

  // Finds the slot of the target, which may be null.
  void Prepare(const ScoreCaseRecord& layout, const ScoreDictVar* target);
  // REQUIRES: the predicted value and the probabilities of `result` are set.
  void Fill(const ScoreCaseRecord& record, PluginResult& result) const;

 private:
  enum class Feature { kNone, kValue, kDisplayValue, kProbability, kResidual, kEntityId, kConfidence };
  struct FeatureRow;
  struct Field {
    std::shared_ptr<const ResultVar> var;  // immutable, so that copies of a model share it
    Feature feature;
    int category;  // of a probability, confidence or residual; -1: the predicted one
  };

  static const FeatureRow kFeatures[];

  static const FeatureRow& FindFeature(const std::string& text, const PluginResult& layout);
  static Feature FindFeature(ScoreResultField::ResultFeature code, const PluginResult& layout);
  static bool IsGiven(const FeatureRow& row, const PluginResult& layout);
  static std::shared_ptr<const ResultVar> ReadOutputField(const PMMLTranslator& translator,
                                                          const xercesc::DOMElement& element,
                                                          ScoreResultField::ResultFeature feature);
  void Add(Field field, std::set<std::string>& names);
  void FillResidual(int index, const Field& field, const ScoreCaseRecord& record, PluginResult& result) const;

  std::vector<Field> fFields;
  std::vector<std::string> fCategoryLabels;  // by category of the model
  int fTargetSlot = -1;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_OUTPUTFIELDS_H_
