// General regression models: linear predictors, and what becomes of them: a mean, probabilities of
// categories, or a cumulative hazard.
//
// Source: the scoring procedures of the PMML standard's GeneralRegressionModel.

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_GENERALREGRESSIONMODEL_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_GENERALREGRESSIONMODEL_H_

#include <vector>

#include "common/Links.h"
#include "common/PluginModel.h"
#include "generalregression/HazardReader.h"
#include "generalregression/LinearPredictor.h"
#include "generalregression/StandardErrors.h"

namespace KxVeyra_940::Plugin {

class GeneralRegressionModel final : public PluginModel {
 public:
  GeneralRegressionModel();
  ~GeneralRegressionModel() override;
  ScoreModel* Clone() const override;

  // The counts of trials of binomial models: a number, or an input.
  struct Trials {
    double number = 1;
    int input = -1;
  };

  // Each of these says once what the model predicts, from its linear predictor.
  void PredictMean(LinearPredictor predictor, Link link, Trials trials, StandardErrors errors);
  // The first of two categories, or the second, has the mean as its probability.
  void PredictOneOfTwo(LinearPredictor predictor, Link link, std::size_t category);
  // One equation a category, in the order of SetCategories.
  void PredictSoftmax(LinearPredictor predictor);
  // One equation a category but the last.
  void PredictOrdered(LinearPredictor predictor, Link link);
  // Baseline hazard x exp(linear predictor).
  void PredictHazard(LinearPredictor predictor, BaselineHazards baseline);

 protected:
  CaseOutcome ScoreCase(CaseValues& values, PluginResult& result) override;
  unsigned GetExtras() const override;

 private:
  enum class Kind { kMean, kOneOfTwo, kSoftmax, kOrdered, kHazard };

  GeneralRegressionModel(const GeneralRegressionModel& other) = default;
  void SetPredictor(Kind kind, LinearPredictor predictor, std::size_t results);
  bool ScoreMean(const CaseValues& values, PluginResult& result);
  bool ScoreHazard(const CaseValues& values, PluginResult& result) const;
  bool ScoreCategories(PluginResult& result);

  Kind fKind = Kind::kMean;
  LinearPredictor fPredictor;
  Link fLink;
  Trials fTrials;
  StandardErrors fErrors;
  std::size_t fCategory = 0;  // of two: the one that the mean is about
  BaselineHazards fBaseline;
  std::vector<double> fEtas;  // by equation, then probabilities by category; working state
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_GENERALREGRESSIONMODEL_H_
