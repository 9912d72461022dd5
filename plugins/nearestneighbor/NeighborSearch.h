// Finds the instances that are nearest to a case.
//
//   NeighborSearch search(matrix, measure, fields, 5);
//   for each case: for (const Neighbor& neighbor : search.Find(values)) ...   // the nearest first
//
// Of instances that are equally near the one that stands first in the training data is nearer.  Threads: a
// search has working state and serves one thread; copies share the matrix.  Find allocates nothing.

#ifndef VEYRA_PLUGINS_NEARESTNEIGHBOR_NEIGHBORSEARCH_H_
#define VEYRA_PLUGINS_NEARESTNEIGHBOR_NEIGHBORSEARCH_H_

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "nearestneighbor/InstanceMatrix.h"
#include "nearestneighbor/Measure.h"

namespace KxVeyra_940::Plugin {

struct Neighbor {
  double key;  // the smaller, the nearer
  std::size_t instance;

  bool operator<(const Neighbor& other) const {
    return key < other.key || (key == other.key && instance < other.instance);
  }
};

class NeighborSearch {
 public:
  NeighborSearch() = default;
  // `fields` are those of the matrix, in its order.
  NeighborSearch(std::shared_ptr<const InstanceMatrix> matrix, const Measure& measure,
                 const std::vector<ComparedField>& fields, std::size_t count);

  // As many instances as were asked for, or as can be compared: those that have a value in one of the fields
  // that the case has.  `values` are the case's by field, NaN for a missing one.  Lent until the next call.
  std::span<const Neighbor> Find(std::span<const double> values);

  // The distance or the similarity, as the measure says.
  double AffinityOf(const Neighbor& neighbor) const;

 private:
  static constexpr std::size_t kLanes = InstanceMatrix::kLanes;
  using Lanes = std::array<double, kLanes>;

  // A field that the case has a value of.
  struct ActiveField {
    std::size_t offset;  // of its values in a block
    double value;
    CompareFunction function;
    double weight;
    double missingWeight;
    double exponent;  // of kGaussSim: its exponent for a difference of 1
  };

  void Activate(std::span<const double> values);
  template <Aggregation kAggregation>
  void Scan();
  template <Aggregation kAggregation, bool kHasMissing>
  void Compare(const double* block, Lanes& keys) const;
  template <Aggregation kAggregation, bool kHasMissing, std::size_t... kLane>
  void ComparePlain(const double* block, Lanes& sums, Lanes& present, std::index_sequence<kLane...>) const;
  template <Aggregation kAggregation, bool kHasMissing>
  void CompareField(const ActiveField& field, const double* values, Lanes& sums, Lanes& present) const;
  void ScanBinary();
  void CompareBinary(const double* block, bool hasMissing, Lanes& keys) const;
  void Offer(std::size_t first, const Lanes& keys);

  std::shared_ptr<const InstanceMatrix> fMatrix;
  Measure fMeasure;
  std::vector<ComparedField> fFields;
  std::size_t fCount = 0;
  double fMissingWeight = 0;  // of all fields

  // Working state of a case.
  std::vector<ActiveField> fActive;
  bool fIsPlain = false;        // all active fields compare by absolute differences
  double fPresentWeight = 0;    // of the active fields
  std::vector<Neighbor> fBest;  // a heap, the farthest one on top
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_NEARESTNEIGHBOR_NEIGHBORSEARCH_H_
