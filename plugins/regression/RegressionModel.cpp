#include "regression/RegressionModel.h"

#include <algorithm>
#include <cmath>

#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

double RegressionTable::Evaluate(const CaseValues& values) const {
  double sum = intercept;
  for (const Linear& term : linear) {
    sum += term.coefficient * values.numbers[static_cast<std::size_t>(term.input)];
  }
  for (const Power& term : powers) {
    sum += term.coefficient * std::pow(values.numbers[static_cast<std::size_t>(term.input)], term.exponent);
  }
  for (const Category& term : categories) {
    // The codes of a missing category and of one that the table does not have are beyond every table.
    const auto code = static_cast<std::size_t>(values.codes[static_cast<std::size_t>(term.input)]);
    if (code < term.coefficients.size()) sum += term.coefficients[code];
  }
  for (const Product& term : products) {
    double product = term.coefficient;
    for (const int input : term.inputs) product *= values.numbers[static_cast<std::size_t>(input)];
    sum += product;
  }
  return sum;
}

RegressionModel::RegressionModel() : PluginModel(PMMLModelTags::XML_ELE_REGMODEL) {}
RegressionModel::~RegressionModel() = default;

ScoreModel* RegressionModel::Clone() const { return new RegressionModel(*this); }

void RegressionModel::SetEquation(RegressionTable table, Normalization normalization) {
  fTables.clear();
  fTables.push_back(std::move(table));
  fNormalization = normalization;
  fIsClassification = false;
}

void RegressionModel::SetEquations(std::vector<RegressionTable> tables, Normalization normalization,
                                   bool isOrdinal) {
  fTables = std::move(tables);
  fNormalization = normalization;
  fIsClassification = true;
  fIsOrdinal = isOrdinal;
  fProbabilities.resize(fTables.size());
  // Documents give the equation of either category; the other one is empty.
  fDecider = fTables.size() == 2 && !fTables[0].HasTerms() && fTables[1].HasTerms() ? 1 : 0;
}

CaseOutcome RegressionModel::ScoreCase(CaseValues& values, PluginResult& result) {
  const bool hasAnswer = fIsClassification ? ScoreCategories(values, result) : ScoreNumber(values, result);
  return hasAnswer ? CaseOutcome::kAnswered : CaseOutcome::kUndefined;
}

bool RegressionModel::ScoreNumber(const CaseValues& values, PluginResult& result) const {
  const double prediction = InverseLink(fNormalization, fTables.front().Evaluate(values));
  if (std::isnan(prediction)) return false;
  result.SetPredictedNumber(prediction);
  return true;
}

bool RegressionModel::ScoreCategories(const CaseValues& values, PluginResult& result) {
  for (std::size_t i = 0; i < fTables.size(); ++i) fProbabilities[i] = fTables[i].Evaluate(values);
  const bool hasAnswer = fIsOrdinal ? NormalizeOrdinal(fNormalization, fProbabilities)
                                    : NormalizeNominal(fNormalization, fDecider, fProbabilities);
  if (!hasAnswer) return false;
  for (std::size_t i = 0; i < fProbabilities.size(); ++i) {
    result.SetCategoryProbability(static_cast<int>(i), fProbabilities[i]);
  }
  const auto best = std::max_element(fProbabilities.begin(), fProbabilities.end());
  result.SetPredictedCategory(static_cast<int>(best - fProbabilities.begin()));
  return true;
}

}  // namespace KxVeyra_940::Plugin
