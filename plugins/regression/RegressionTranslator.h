// Translates "RegressionModel" elements.

#ifndef VEYRA_PLUGINS_REGRESSION_REGRESSIONTRANSLATOR_H_
#define VEYRA_PLUGINS_REGRESSION_REGRESSIONTRANSLATOR_H_

#include <memory>
#include <optional>
#include <vector>

#include "common/CategoryTable.h"
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
    std::unique_ptr<CategoryTable> known;                 // those that the target lists come first
    std::vector<std::optional<std::size_t>> tableOfCode;  // by code of `known`
  };

  RegressionTable ReadTable(const xercesc::DOMElement& element, PluginModel& model);
  void ReadNumericPredictor(const xercesc::DOMElement& element, PluginModel& model, RegressionTable& table);
  void ReadProduct(const xercesc::DOMElement& element, PluginModel& model, RegressionTable& table);
  void BuildEquation(const xercesc::DOMElement& element, RegressionModel& model);
  void BuildEquations(const xercesc::DOMElement& element, RegressionModel& model);
  CategoryTables ReadCategoryTables(const xercesc::DOMElement& element, RegressionModel& model);
  static void CompleteFromDictionary(bool isOrdinal, CategoryTables& read);
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_REGRESSION_REGRESSIONTRANSLATOR_H_
