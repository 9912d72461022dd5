// Percentiles and the median of weighted samples.

#include <algorithm>
#include <cmath>

#include "math/KxDistFun.h"
#include "math/ValuesInternal.h"

namespace KxMath_940 {

namespace {

using Numbers = std::span<const double>;

bool IsSample(Numbers values, Numbers weights) {
  if (values.empty() || values.size() != weights.size()) return false;
  const auto isNumber = [](double x) { return AreNumbers(x); };
  return std::all_of(values.begin(), values.end(), isNumber) &&
         std::is_sorted(values.begin(), values.end()) &&
         std::all_of(weights.begin(), weights.end(),
                     [](double w) { return AreNumbers(w) && w >= 0 && w < kInfinity; });
}

double SumOf(Numbers weights) {
  double sum = 0;
  for (const double weight : weights) sum += weight;
  return sum;
}

// The value of the item with the given rank, counted from 1, of as many items as the weights say.
double ValueAtRank(Numbers values, Numbers weights, double rank) {
  double cumulated = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    cumulated += weights[i];
    if (cumulated >= rank) return values[i];
  }
  return values.back();
}

}  // namespace

double KxDistFun::GPTile(Numbers values, Numbers weights, double p, long& ifault) {
  if (!IsSample(values, weights) || !(p >= 0 && p <= 1)) return Fail(ifault, kOutOfDomain);
  const double total = SumOf(weights);
  if (!(total > 0 && total < kInfinity)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  const double position = (total + 1) * p;
  double cumulated = 0;
  double value = kMissing;  // the last one whose weight counts
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (weights[i] == 0) continue;
    // Between the ranks of two items lies one unit of weight, or less where the next item weighs less.
    const double reach = std::min(1.0, weights[i]);
    if (position < cumulated + reach) {
      const double part = std::max(0.0, (position - cumulated) / reach);
      return cumulated == 0 ? values[i] : value + part * (values[i] - value);
    }
    value = values[i];
    cumulated += weights[i];
    if (position < cumulated) return value;
  }
  return value;
}

double KxDistFun::Mednci(Numbers values, Numbers weights, double confidence, double& lower, double& upper,
                         long& ifault) {
  lower = upper = kMissing;
  if (!IsSample(values, weights) || !(confidence > 0 && confidence < 1)) return Fail(ifault, kOutOfDomain);
  if (!std::all_of(weights.begin(), weights.end(), IsWhole)) return Fail(ifault, kNotWhole);
  const double total = SumOf(weights);
  if (!(total >= 1 && total < kInfinity)) return Fail(ifault, kOutOfDomain);
  // Fewer than `rank` of the items lie below the median with at most half of what is left over.
  const double outside = (1 - confidence) / 2;
  double rank = IdfBin(outside, total, 0.5, ifault);
  if (ifault != kDone) return kMissing;
  // A sample may cover the interval exactly; the sums differ in their last digits.
  constexpr double kSameProbability = 1 + 2.842170943040401e-14;
  const auto isOutside = [&](double count) {
    return count < 0 || CdfBin(count, total, 0.5, ifault) <= outside * kSameProbability;
  };
  if (isOutside(rank)) ++rank;
  while (rank > 0 && !isOutside(rank - 1)) --rank;
  if (rank < 1) return Fail(ifault, kFailed);
  lower = ValueAtRank(values, weights, rank);
  upper = ValueAtRank(values, weights, total + 1 - rank);
  return 1 - 2 * CdfBin(rank - 1, total, 0.5, ifault);
}

}  // namespace KxMath_940
