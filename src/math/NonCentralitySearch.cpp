// Searches for the non-centrality parameter.

#include "math/NonCentralitySearchInternal.h"

#include <algorithm>
#include <cmath>

#include "math/KxDistFun.h"
#include "math/ValuesInternal.h"

namespace KxMath_940 {

namespace {

// The largest parameter that NonCentralCdfF takes.
constexpr double kLargestNonCentrality = 2e9;

bool IsSearch(double prob, double tolerance) {
  return AreNumbers(tolerance) && tolerance >= 0 && prob >= 0 && prob <= 1;
}

// The parameter between `low`, where the distribution function is above prob, and `high`, where it is below.
template <class Cdf>
double Bisect(Cdf cdf, double prob, double tolerance, double low, double high) {
  for (int i = 0; i < kMostSteps; ++i) {
    const double middle = low + (high - low) / 2;
    const double value = cdf(middle);
    if (KxCommon_940::KxMV::IsMissing(value)) return kMissing;
    if (value == prob) return middle;
    (value > prob ? low : high) = middle;
    if (std::fabs(value - prob) <= tolerance && high - low < tolerance) return middle;
    if (KxPower::AlmostEqual(low, high, kSameEnds)) return middle;
  }
  return kMissing;
}

// From lambda = x by halving and doubling.
template <class Cdf>
double FindByHalving(Cdf cdf, double x, double prob, double tolerance) {
  const double central = cdf(0);
  if (KxCommon_940::KxMV::IsMissing(central) || !(central > prob)) return kMissing;
  double lambda = x;
  double value = cdf(lambda);
  const double factor = value < prob ? 0.5 : 2;
  for (int i = 0; i < kMostSteps && lambda > 0; ++i) {
    if (KxCommon_940::KxMV::IsMissing(value)) return kMissing;
    if (value == prob) return lambda;
    const double last = lambda;
    lambda *= factor;
    const bool wasAbove = value > prob;
    value = cdf(lambda);
    if (KxCommon_940::KxMV::IsMissing(value)) return kMissing;
    if (value == prob) return lambda;
    if ((value > prob) != wasAbove)
      return Bisect(cdf, prob, tolerance, std::min(last, lambda), std::max(last, lambda));
  }
  return kMissing;
}

}  // namespace

double KxDistFun::FindNCParamChi(double x, double df, double prob, double tolerance) {
  if (!AreNumbers(x) || !IsSearch(prob, tolerance)) return kMissing;
  return FindByHalving([=](double lambda) { return NonCentralCdfChi(x, df, lambda); }, x, prob, tolerance);
}

double KxDistFun::FindNCParamF(double x, double df1, double df2, double prob, double tolerance) {
  if (!AreNumbers(x) || !IsSearch(prob, tolerance)) return kMissing;
  const SearchedFunction function([=](double lambda) { return NonCentralCdfF(x, df1, df2, lambda, 0); },
                                  prob);
  return FindFromZero(function, std::max(1.0, x * df1), kLargestNonCentrality, tolerance);
}

double KxDistFun::FindNCParamT(double t, double df, double cdfTolerance, double prob, double tolerance) {
  if (!std::isfinite(t) || !IsSearch(prob, tolerance)) return kMissing;
  const SearchedFunction function([=](double delta) { return NonCentralCdfT(t, df, delta, cdfTolerance); },
                                  prob);
  const double quantile = probit(prob);
  // The normal approximation of Johnson and Welch (1940).
  const double spread = 1 + std::fabs(t) / std::sqrt(std::max(1.0, 2 * df));
  const double start = KxCommon_940::KxMV::IsMissing(quantile) ? t : t - quantile * spread;
  return FindAnywhere(function, start, spread, tolerance);
}

}  // namespace KxMath_940
