// How near a case is to an instance: what is compared field by field, and how that is put together.
//
// Source of the formulas: the standard's chapter on comparison measures.  With c(i) the comparison of field
// i, W(i) its weight, and A = (sum of Q over all fields) / (sum of Q over the fields that neither side
// lacks):
//
//   euclidean          sqrt(A * sum W(i) c(i)^2)
//   squaredEuclidean   A * sum W(i) c(i)^2
//   chebychev          A * max W(i) c(i)
//   cityBlock          A * sum W(i) c(i)
//   minkowski          (A * sum W(i) c(i)^p)^(1/p)
//
// The binary measures count the fields that neither side lacks: a10 is how often the case has 1 and the
// instance 0.
//
//   (c11 a11 + c10 a10 + c01 a01 + c00 a00) / (d11 a11 + d10 a10 + d01 a01 + d00 a00), and 0 for 0 / 0
//
// Threads: plain data.

#ifndef VEYRA_PLUGINS_NEARESTNEIGHBOR_MEASURE_H_
#define VEYRA_PLUGINS_NEARESTNEIGHBOR_MEASURE_H_

namespace KxVeyra_940::Plugin {

enum class CompareFunction {
  kAbsDiff,   // |x - y|
  kGaussSim,  // exp(-ln 2 (x - y)^2 / s^2), s the field's similarity scale
  kDelta,     // 0 for equal values, else 1
  kEqual,     // 1 for equal values, else 0
};

// Whether values are compared as categories rather than as numbers.
inline bool ComparesCategories(CompareFunction function) {
  return function == CompareFunction::kDelta || function == CompareFunction::kEqual;
}

enum class Aggregation { kEuclidean, kSquaredEuclidean, kChebychev, kCityBlock, kMinkowski, kBinary };

// What the four counts of a binary measure weigh.
struct BinaryWeights {
  double w11 = 0;
  double w10 = 0;
  double w01 = 0;
  double w00 = 0;

  double Sum(double a11, double a10, double a01, double a00) const {
    return w11 * a11 + w10 * a10 + w01 * a01 + w00 * a00;
  }
};

struct Measure {
  bool isSimilarity = false;  // the larger, the nearer
  Aggregation aggregation = Aggregation::kEuclidean;
  double power = 2;  // of kMinkowski
  BinaryWeights numerator;
  BinaryWeights denominator;
};

// One field that is compared.
struct ComparedField {
  int input = 0;  // of the model
  CompareFunction function = CompareFunction::kAbsDiff;
  double weight = 1;
  double missingWeight = 1;  // its Q
  double scale = 1;          // of kGaussSim
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_NEARESTNEIGHBOR_MEASURE_H_
