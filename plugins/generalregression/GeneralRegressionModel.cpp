#include "generalregression/GeneralRegressionModel.h"

#include <algorithm>
#include <cmath>

#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

GeneralRegressionModel::GeneralRegressionModel() : PluginModel(PMMLModelTags::XML_ELE_REGRESSMODEL) {}
GeneralRegressionModel::~GeneralRegressionModel() = default;

ScoreModel* GeneralRegressionModel::Clone() const { return new GeneralRegressionModel(*this); }

void GeneralRegressionModel::SetPredictor(Kind kind, LinearPredictor predictor, std::size_t results) {
  fKind = kind;
  fPredictor = std::move(predictor);
  fEtas.resize(results);
}

void GeneralRegressionModel::PredictMean(LinearPredictor predictor, Link link, Trials trials,
                                         StandardErrors errors) {
  SetPredictor(Kind::kMean, std::move(predictor), 1);
  fLink = link;
  fTrials = trials;
  fErrors = std::move(errors);
}

void GeneralRegressionModel::PredictOneOfTwo(LinearPredictor predictor, Link link, std::size_t category) {
  SetPredictor(Kind::kOneOfTwo, std::move(predictor), 2);
  fLink = link;
  fCategory = category;
}

void GeneralRegressionModel::PredictSoftmax(LinearPredictor predictor) {
  const std::size_t categories = predictor.GetEquations();
  SetPredictor(Kind::kSoftmax, std::move(predictor), categories);
}

void GeneralRegressionModel::PredictOrdered(LinearPredictor predictor, Link link) {
  const std::size_t categories = predictor.GetEquations() + 1;
  SetPredictor(Kind::kOrdered, std::move(predictor), categories);
  fLink = link;
}

void GeneralRegressionModel::PredictHazard(LinearPredictor predictor, BaselineHazards baseline) {
  SetPredictor(Kind::kHazard, std::move(predictor), 1);
  fBaseline = std::move(baseline);
}

unsigned GeneralRegressionModel::GetExtras() const {
  return fErrors.IsGiven() ? PluginResult::kStandardErrors : 0U;
}

CaseOutcome GeneralRegressionModel::ScoreCase(CaseValues& values, PluginResult& result) {
  fPredictor.Evaluate(values, fEtas);
  bool hasAnswer = false;
  switch (fKind) {
    case Kind::kMean:
      hasAnswer = ScoreMean(values, result);
      break;
    case Kind::kHazard:
      hasAnswer = ScoreHazard(values, result);
      break;
    case Kind::kOneOfTwo:
    case Kind::kSoftmax:
    case Kind::kOrdered:
      hasAnswer = ScoreCategories(result);
      break;
  }
  return hasAnswer ? CaseOutcome::kAnswered : CaseOutcome::kUndefined;
}

bool GeneralRegressionModel::ScoreMean(const CaseValues& values, PluginResult& result) {
  const double trials =
      fTrials.input < 0 ? fTrials.number : values.numbers[static_cast<std::size_t>(fTrials.input)];
  const double mean = trials * fLink.Mean(fEtas[0]);
  if (std::isnan(mean)) return false;
  result.SetPredictedNumber(mean);
  if (!fErrors.IsGiven()) return true;
  const double error = std::fabs(trials * fLink.Slope(fEtas[0])) * fErrors.Of(values);
  if (std::isfinite(error)) result.SetStandardError(error);
  return true;
}

bool GeneralRegressionModel::ScoreHazard(const CaseValues& values, PluginResult& result) const {
  const int stratum =
      fBaseline.strataInput < 0 ? 0 : values.codes[static_cast<std::size_t>(fBaseline.strataInput)];
  const double time = values.numbers[static_cast<std::size_t>(fBaseline.timeInput)];
  // Where nothing can have happened yet, nothing has, even if the predictor is without bounds.
  const double baseline = fBaseline.hazards.At(time, stratum);
  const double hazard = baseline == 0 ? 0 : baseline * std::exp(fEtas[0]);
  if (std::isnan(hazard)) return false;
  result.SetPredictedNumber(hazard);
  return true;
}

bool GeneralRegressionModel::ScoreCategories(PluginResult& result) {
  if (fKind == Kind::kSoftmax) {
    if (!AreNumbers(fEtas) || !Softmax(fEtas)) return false;
  } else if (fKind == Kind::kOrdered) {
    if (!DivideCumulative(fLink, fEtas)) return false;
  } else {
    const double eta = fEtas[0];
    fEtas[fCategory] = fLink.Mean(eta);
    fEtas[1 - fCategory] = fLink.Complement(eta);
    if (!AreNumbers(fEtas)) return false;
  }
  for (std::size_t i = 0; i < fEtas.size(); ++i) {
    result.SetCategoryProbability(static_cast<int>(i), fEtas[i]);
  }
  const auto best = std::max_element(fEtas.begin(), fEtas.end());
  result.SetPredictedCategory(static_cast<int>(best - fEtas.begin()));
  return true;
}

}  // namespace KxVeyra_940::Plugin
