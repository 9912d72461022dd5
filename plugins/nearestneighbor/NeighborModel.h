// Nearest neighbours: a case is answered by the instances of the training data that are nearest to it.

#ifndef VEYRA_PLUGINS_NEARESTNEIGHBOR_NEIGHBORMODEL_H_
#define VEYRA_PLUGINS_NEARESTNEIGHBOR_NEIGHBORMODEL_H_

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "common/PluginModel.h"
#include "nearestneighbor/CaseCoordinates.h"
#include "nearestneighbor/NeighborSearch.h"

namespace KxVeyra_940::Plugin {

enum class ContinuousMethod { kAverage, kMedian, kWeightedAverage };
enum class CategoricalMethod { kMajorityVote, kWeightedMajorityVote };

// Whether neighbours vote on the target; they average others.
bool IsCategorical(const ScoreDictVar& target);

// What the instances say about one target.
struct TargetColumn {
  static constexpr int kNone = -1;

  bool isCategorical = false;
  std::vector<double> numbers;  // by instance, NaN for a missing one; of a continuous target
  std::vector<int> codes;       // by instance, kNone for a missing one; of a categorical target
  // By category: of those with equal votes the one of the lowest number wins.
  std::vector<int> precedence;

  bool HasValue(std::size_t instance) const {
    return isCategorical ? codes[instance] != kNone : !std::isnan(numbers[instance]);
  }
};

struct Instances {
  std::shared_ptr<const InstanceMatrix> matrix;
  std::vector<std::string> ids;       // by instance
  std::vector<TargetColumn> targets;  // the model's target first; none for a model of neighbours alone
};

// How neighbours answer.
struct Scoring {
  std::size_t neighborCount = 0;
  ContinuousMethod continuous = ContinuousMethod::kAverage;
  CategoricalMethod categorical = CategoricalMethod::kMajorityVote;
  double threshold = 0.001;  // what keeps weights finite
};

class NeighborModel final : public PluginModel {
 public:
  NeighborModel();
  ~NeighborModel() override;
  ScoreModel* Clone() const override;

  // Take what they are given.  The categories of the targets are set already.
  void SetComparison(const Measure& measure, CaseCoordinates coordinates, const Scoring& scoring);
  void SetInstances(Instances instances);

  CaseCoordinates& GetCoordinates() { return fCoordinates; }

 protected:
  CaseOutcome ScoreCase(CaseValues& values, PluginResult& result) override;
  unsigned GetExtras() const override { return PluginResult::kEntityIds | PluginResult::kAffinities; }
  std::size_t GetMostEntities() const override { return fScoring.neighborCount; }

 private:
  NeighborModel(const NeighborModel& other);
  // What each neighbour weighs for the target; one without its value weighs nothing.
  void WeighNeighbors(const TargetColumn& target, std::span<const Neighbor> neighbors,
                      const PluginResult& result);
  bool IsWeighted(const TargetColumn& target) const;
  double WeightOf(double affinity) const;
  // False when no neighbour has a value.
  bool Vote(const TargetColumn& target, std::span<const Neighbor> neighbors, PluginResult& answer);
  bool Average(const TargetColumn& target, std::span<const Neighbor> neighbors, PluginResult& answer);
  double MedianOfValues();

  Measure fMeasure;
  Scoring fScoring;
  CaseCoordinates fCoordinates;
  std::shared_ptr<const Instances> fInstances;  // immutable, so that copies share them
  NeighborSearch fSearch;

  // Working state of a case.
  std::vector<double> fPlace;    // the case's coordinates
  std::vector<double> fWeights;  // by neighbour
  std::vector<double> fVotes;    // by category
  std::vector<double> fNumbers;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_NEARESTNEIGHBOR_NEIGHBORMODEL_H_
