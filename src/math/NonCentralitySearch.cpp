// Searches for the non-centrality parameter.

#include <algorithm>
#include <cmath>

#include "math/KxDistFun.h"
#include "math/ValuesInternal.h"

namespace KxMath_940 {

namespace {

constexpr double kSameEnds = 8;
constexpr int kMostSteps = 2000;
constexpr double kLongestStride = 1e30;

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

// For a parameter that is not negative.
template <class Cdf>
double FindFromZero(Cdf cdf, double start, double prob, double tolerance) {
  const double central = cdf(0);
  if (KxCommon_940::KxMV::IsMissing(central) || !(central > prob)) return kMissing;
  double lambda = std::max(start, std::numeric_limits<double>::min());
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

// For a parameter of any sign.
template <class Cdf>
double FindAnywhere(Cdf cdf, double start, double prob, double tolerance) {
  double value = cdf(start);
  if (KxCommon_940::KxMV::IsMissing(value) || value == prob) return value == prob ? start : kMissing;
  const bool isAbove = value > prob;
  double last = start;
  for (double stride = isAbove ? 1 : -1; std::fabs(stride) < kLongestStride; stride *= 2) {
    const double next = start + stride;
    value = cdf(next);
    if (KxCommon_940::KxMV::IsMissing(value)) return kMissing;
    if (value == prob) return next;
    if ((value > prob) != isAbove)
      return Bisect(cdf, prob, tolerance, std::min(last, next), std::max(last, next));
    last = next;
  }
  return kMissing;
}

}  // namespace

double KxDistFun::FindNCParamChi(double x, double df, double prob, double tolerance) {
  if (!AreNumbers(x) || !IsSearch(prob, tolerance)) return kMissing;
  return FindFromZero([=](double lambda) { return NonCentralCdfChi(x, df, lambda); }, x, prob, tolerance);
}

double KxDistFun::FindNCParamF(double x, double df1, double df2, double prob, double tolerance) {
  if (!AreNumbers(x) || !IsSearch(prob, tolerance)) return kMissing;
  return FindFromZero([=](double lambda) { return NonCentralCdfF(x, df1, df2, lambda, 0); }, x * df1, prob,
                      tolerance);
}

double KxDistFun::FindNCParamT(double t, double df, double cdfTolerance, double prob, double tolerance) {
  if (!std::isfinite(t) || !IsSearch(prob, tolerance)) return kMissing;
  const double quantile = probit(prob);
  const double start = KxCommon_940::KxMV::IsMissing(quantile) ? t : t - quantile;
  return FindAnywhere([=](double delta) { return NonCentralCdfT(t, df, delta, cdfTolerance); }, start, prob,
                      tolerance);
}

}  // namespace KxMath_940
