// The output fields that a document asks for, and how each is filled from a scored case.

#ifndef VEYRA_PLUGINS_OUTPUTFIELDS_H_
#define VEYRA_PLUGINS_OUTPUTFIELDS_H_

#include <memory>
#include <set>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "common/PluginResult.h"
#include "common/TransformedOutputs.h"
#include "data/ResultVar.h"
#include "translate/PMMLTranslator.h"
#include "veyra/ScoreCaseRecord.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/ScoreResultField.h"

namespace KxVeyra_940::Plugin {

class OutputFields {
 public:
  // Reads the "OutputField" elements of the model's "Output" child, and the "ResultField" elements at any
  // depth below the model.  `layout` holds the model's categories.  Raises 260120 and 260285 for a name,
  // 260303 for a feature that this kind of model does not give, 260128 for a category that the model does not
  // have, 260203 for a name given twice, 260124 for a target that is none, 260182 for a rank below 1,
  // and for computed fields what TransformedOutputs raises.
  static OutputFields Read(PMMLTranslator& translator, const xercesc::DOMElement& model,
                           const PluginResult& layout, const std::vector<const ScoreDictVar*>& targets);

  // A new dictionary of the fields, or null when there are none.
  std::unique_ptr<ScoreDictionary> MakeDictionary() const;
  void AddTo(PluginResult& result) const;

  // Finds the slots of the targets.
  void Prepare(const ScoreCaseRecord& layout, const std::vector<const ScoreDictVar*>& targets);
  // REQUIRES: the predicted value and the probabilities of `result` are set.
  void Fill(const ScoreCaseRecord& record, PluginResult& result);

 private:
  enum class Feature {
    kNone,
    kValue,
    kDisplayValue,
    kProbability,
    kResidual,
    kEntityId,
    kAffinity,
    kConfidence,
    kStandardError,
    kTransformed,  // TransformedOutputs fills it
  };
  struct FeatureRow;
  struct Field {
    std::shared_ptr<const ResultVar> var;  // immutable, so that copies of a model share it
    Feature feature;
    int category;    // of a probability, confidence or residual; -1: the predicted one
    int target = 0;  // counted from 0
    int rank = 1;    // of an entity
  };
  struct Target {
    std::vector<std::string> categoryLabels;  // by category
    int slot = -1;
  };

  static const FeatureRow kFeatures[];

  // `answer` is that of the field's target, `extras` what the model gives besides.
  static const FeatureRow& FindFeature(const std::string& text, const PluginResult& answer, unsigned extras);
  static Feature FindFeature(ScoreResultField::ResultFeature code, const PluginResult& layout);
  static bool IsGiven(const FeatureRow& row, const PluginResult& answer, unsigned extras);
  static int ReadTarget(const PMMLTranslator& translator, const xercesc::DOMElement& element,
                        const std::vector<const ScoreDictVar*>& targets);
  static Field ReadField(PMMLTranslator& translator, const xercesc::DOMElement& element,
                         const PluginResult& layout, const std::vector<const ScoreDictVar*>& targets);
  static std::shared_ptr<const ResultVar> ReadOutputField(const PMMLTranslator& translator,
                                                          const xercesc::DOMElement& element,
                                                          ScoreResultField::ResultFeature feature);
  const Target& TargetOf(const Field& field) const {
    return fTargets[static_cast<std::size_t>(field.target)];
  }
  void Add(Field field, std::set<std::string>& names);
  void ReadTransformed(PMMLTranslator& translator, const xercesc::DOMElement& output,
                       const PluginResult& layout);
  // Fills the output field of that index of `result` from `answer`, which is that of the field's target.
  void FillField(int index, const PluginResult& answer, const ScoreCaseRecord& record,
                 PluginResult& result) const;
  void FillEntity(int index, PluginResult& result) const;
  void FillResidual(int index, const PluginResult& answer, const ScoreCaseRecord& record,
                    PluginResult& result) const;

  std::vector<Field> fFields;
  std::vector<Target> fTargets;
  TransformedOutputs fTransformed;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_OUTPUTFIELDS_H_
