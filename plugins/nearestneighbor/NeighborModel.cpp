#include "nearestneighbor/NeighborModel.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

bool IsCategorical(const ScoreDictVar& target) {
  return target.GetMLevel() != ScoreDictVar::kContinuous || target.GetVarType() == ScoreDictVar::STRING_VAR;
}

NeighborModel::NeighborModel() : PluginModel(PMMLModelTags::XML_ELE_KNNMODEL) {}
NeighborModel::NeighborModel(const NeighborModel& other) = default;
NeighborModel::~NeighborModel() = default;

ScoreModel* NeighborModel::Clone() const { return new NeighborModel(*this); }

void NeighborModel::SetComparison(const Measure& measure, CaseCoordinates coordinates,
                                  const Scoring& scoring) {
  fMeasure = measure;
  fCoordinates = std::move(coordinates);
  fScoring = scoring;
  fPlace.resize(fCoordinates.GetFields().size());
}

void NeighborModel::SetInstances(Instances instances) {
  fInstances = std::make_shared<const Instances>(std::move(instances));
  fScoring.neighborCount = std::min(fScoring.neighborCount, fInstances->matrix->Size());
  fSearch = NeighborSearch(fInstances->matrix, fMeasure, fCoordinates.GetFields(), fScoring.neighborCount);
  fWeights.reserve(fScoring.neighborCount);
  fNumbers.reserve(fScoring.neighborCount);
  std::size_t mostCategories = 0;
  for (const TargetColumn& target : fInstances->targets) {
    mostCategories = std::max(mostCategories, target.precedence.size());
  }
  fVotes.reserve(mostCategories);
}

CaseOutcome NeighborModel::ScoreCase(CaseValues& values, PluginResult& result) {
  fCoordinates.GetPlace(values, fPlace);
  const std::span<const Neighbor> neighbors = fSearch.Find(fPlace);
  if (neighbors.empty()) return CaseOutcome::kMissing;
  for (const Neighbor& neighbor : neighbors)
    result.AddEntity(&fInstances->ids[neighbor.instance], fSearch.AffinityOf(neighbor));
  if (fInstances->targets.empty()) {
    result.SetPredictedText(*result.GetEntity(1)->id);
    return CaseOutcome::kAnswered;
  }
  bool isAnswered = false;
  for (std::size_t i = 0; i < fInstances->targets.size(); ++i) {
    const TargetColumn& target = fInstances->targets[i];
    PluginResult& answer = result.OfTarget(static_cast<int>(i));
    WeighNeighbors(target, neighbors, result);
    const bool hasAnswer =
        target.isCategorical ? Vote(target, neighbors, answer) : Average(target, neighbors, answer);
    if (i == 0) isAnswered = hasAnswer;
  }
  return isAnswered ? CaseOutcome::kAnswered : CaseOutcome::kMissing;
}

// Infinite for a distance of 0 without a threshold.
double NeighborModel::WeightOf(double affinity) const {
  return fMeasure.isSimilarity ? affinity + fScoring.threshold : 1 / (affinity + fScoring.threshold);
}

bool NeighborModel::IsWeighted(const TargetColumn& target) const {
  return target.isCategorical ? fScoring.categorical == CategoricalMethod::kWeightedMajorityVote
                              : fScoring.continuous == ContinuousMethod::kWeightedAverage;
}

void NeighborModel::WeighNeighbors(const TargetColumn& target, std::span<const Neighbor> neighbors,
                                   const PluginResult& result) {
  const bool isWeighted = IsWeighted(target);
  bool isAtPlace = false;
  fWeights.clear();
  for (std::size_t i = 0; i < neighbors.size(); ++i) {
    const bool hasSay = target.HasValue(neighbors[i].instance);
    const double weight =
        isWeighted && hasSay ? WeightOf(result.GetEntity(static_cast<int>(i) + 1)->affinity) : 1;
    fWeights.push_back(hasSay ? weight : 0);
    isAtPlace = isAtPlace || std::isinf(fWeights.back());
  }
  if (!isAtPlace) return;
  // Those at the very place of the case answer alone.
  for (double& weight : fWeights) weight = std::isinf(weight) ? 1 : 0;
}

bool NeighborModel::Vote(const TargetColumn& target, std::span<const Neighbor> neighbors,
                         PluginResult& answer) {
  fVotes.assign(target.precedence.size(), 0.0);
  for (std::size_t i = 0; i < neighbors.size(); ++i) {
    const int code = target.codes[neighbors[i].instance];
    if (code != TargetColumn::kNone) fVotes[static_cast<std::size_t>(code)] += fWeights[i];
  }
  const double sum = std::accumulate(fVotes.begin(), fVotes.end(), 0.0);
  if (!(sum > 0)) return false;
  std::size_t best = 0;
  for (std::size_t i = 0; i < fVotes.size(); ++i) {
    answer.SetCategoryProbability(static_cast<int>(i), fVotes[i] / sum);
    const bool isBetter = fVotes[i] > fVotes[best] ||
                          (fVotes[i] == fVotes[best] && target.precedence[i] < target.precedence[best]);
    if (isBetter) best = i;
  }
  answer.SetPredictedCategory(static_cast<int>(best));
  return true;
}

bool NeighborModel::Average(const TargetColumn& target, std::span<const Neighbor> neighbors,
                            PluginResult& answer) {
  double sum = 0;
  double weights = 0;
  fNumbers.clear();
  for (std::size_t i = 0; i < neighbors.size(); ++i) {
    const double number = target.numbers[neighbors[i].instance];
    if (std::isnan(number)) continue;
    sum += fWeights[i] * number;
    weights += fWeights[i];
    fNumbers.push_back(number);
  }
  if (!(weights > 0)) return false;
  answer.SetPredictedNumber(fScoring.continuous == ContinuousMethod::kMedian ? MedianOfValues()
                                                                             : sum / weights);
  return true;
}

// Of an even number of values the mean of the two in the middle.
double NeighborModel::MedianOfValues() {
  std::ranges::sort(fNumbers);
  const std::size_t middle = fNumbers.size() / 2;
  return fNumbers.size() % 2 == 1 ? fNumbers[middle] : (fNumbers[middle - 1] + fNumbers[middle]) / 2;
}

}  // namespace KxVeyra_940::Plugin
