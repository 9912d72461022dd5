// Regression equations: a number, or one equation a category and a normalisation that makes probabilities.

#ifndef VEYRA_PLUGINS_REGRESSION_REGRESSIONMODEL_H_
#define VEYRA_PLUGINS_REGRESSION_REGRESSIONMODEL_H_

#include <vector>

#include "common/PluginModel.h"
#include "regression/Normalization.h"

namespace KxVeyra_940::Plugin {

// One equation: intercept + sum of terms.  Inputs are indexes into CaseValues.
struct RegressionTable {
  struct Linear {
    int input;
    double coefficient;
  };
  struct Power {
    int input;
    int exponent;
    double coefficient;
  };
  struct Category {
    int input;
    std::vector<double> coefficients;  // by code; codes beyond it have 0
  };
  struct Product {
    double coefficient;
    std::vector<int> inputs;
  };

  double Evaluate(const CaseValues& values) const;
  bool HasTerms() const {
    return !(linear.empty() && powers.empty() && categories.empty() && products.empty());
  }

  double intercept = 0;
  std::vector<Linear> linear;
  std::vector<Power> powers;
  std::vector<Category> categories;
  std::vector<Product> products;
};

class RegressionModel final : public PluginModel {
 public:
  RegressionModel();
  ~RegressionModel() override;
  ScoreModel* Clone() const override;

  // A model that predicts a number.
  void SetEquation(RegressionTable table, Normalization normalization);
  // A model that predicts a category; one equation a category, in the order of SetCategories.
  void SetEquations(std::vector<RegressionTable> tables, Normalization normalization, bool isOrdinal);

 protected:
  CaseOutcome ScoreCase(CaseValues& values, PluginResult& result) override;

 private:
  RegressionModel(const RegressionModel& other) = default;
  bool ScoreNumber(const CaseValues& values, PluginResult& result) const;
  bool ScoreCategories(const CaseValues& values, PluginResult& result);

  std::vector<RegressionTable> fTables;
  Normalization fNormalization = Normalization::kNone;
  bool fIsClassification = false;
  bool fIsOrdinal = false;
  std::size_t fDecider = 0;  // of two categories: the one whose equation counts
  std::vector<double> fProbabilities;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_REGRESSION_REGRESSIONMODEL_H_
