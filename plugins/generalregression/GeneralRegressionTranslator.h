// Translates "GeneralRegressionModel" elements of PMML documents and "regression-model" elements of zent-ml
// documents.  Both are read into one description, from which the model is made.

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_GENERALREGRESSIONTRANSLATOR_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_GENERALREGRESSIONTRANSLATOR_H_

#include <memory>
#include <string>

#include "common/PluginTranslator.h"
#include "generalregression/Description.h"
#include "generalregression/Settings.h"
#include "generalregression/Vocabulary.h"

namespace KxVeyra_940::Plugin {

class GeneralRegressionModel;

class GeneralRegressionTranslator final : public PluginTranslator {
 public:
  GeneralRegressionTranslator();
  ~GeneralRegressionTranslator() override;

  using PluginTranslator::ParseFromTree;
  // The root tells the formats apart.
  ScoreModel* ParseFromTree(xercesc::DOMDocument* document, const std::string& encoding) override;

  // For the readers of parts.
  using PluginTranslator::FindInput;
  using PluginTranslator::FindNumber;
  using PluginTranslator::ReadTargetCategory;

 protected:
  std::unique_ptr<PluginModel> NewModel() const override;
  void BuildModel(const xercesc::DOMElement& element, PluginModel& model) override;

 private:
  ScoreModel* ParseZent(const xercesc::DOMElement& root, const std::string& encoding);
  MiningSchema ReadZentFields(const xercesc::DOMElement& element, ScoreDictionary& dictionary) const;

  void NameTarget(const xercesc::DOMElement& element, PluginModel& model) const;
  void BuildNumber(const xercesc::DOMElement& element, const Settings& settings,
                   const Description& description, GeneralRegressionModel& model);
  void BuildCategories(const Settings& settings, const Vocabulary& words, Description description,
                       GeneralRegressionModel& model);
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_GENERALREGRESSIONTRANSLATOR_H_
