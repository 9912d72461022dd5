// Translates "RegressionModel" elements.

#ifndef VEYRA_PLUGINS_REGRESSION_REGRESSIONTRANSLATOR_H_
#define VEYRA_PLUGINS_REGRESSION_REGRESSIONTRANSLATOR_H_

#include <memory>
#include <vector>

#include "common/PluginTranslator.h"
#include "regression/RegressionModel.h"

namespace KxVeyra_940::Plugin {

class RegressionTranslator final : public PluginTranslator {
 public:
  RegressionTranslator();
  ~RegressionTranslator() override;

 protected:
  std::unique_ptr<PluginModel> NewModel() const override;
  void BuildModel(const xercesc::DOMElement& element, PluginModel& model) override;

 private:
  struct CategoryTables {
    std::vector<std::unique_ptr<ScoreValue>> categories;
    std::vector<RegressionTable> tables;
  };

  RegressionTable ReadTable(const xercesc::DOMElement& element, PluginModel& model);
  void ReadNumericPredictor(const xercesc::DOMElement& element, PluginModel& model, RegressionTable& table);
  void ReadProduct(const xercesc::DOMElement& element, PluginModel& model, RegressionTable& table);
  void BuildEquation(const xercesc::DOMElement& element, RegressionModel& model);
  void BuildEquations(const xercesc::DOMElement& element, RegressionModel& model);
  CategoryTables ReadCategoryTables(const xercesc::DOMElement& element, RegressionModel& model);
  static void CompleteFromDictionary(const ScoreDictVar& target, bool isOrdinal, CategoryTables& tables);
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_REGRESSION_REGRESSIONTRANSLATOR_H_
