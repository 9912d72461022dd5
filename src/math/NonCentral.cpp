// The non-central chi-square, beta and F distributions.

#include <algorithm>
#include <cmath>

#include "math/IncompleteBetaInternal.h"
#include "math/IncompleteGammaInternal.h"
#include "math/KxDistFun.h"
#include "math/TrapezoidInternal.h"

namespace KxMath_940 {

namespace {

// The largest mean of the Poisson weights whose terms are summed.
constexpr double kLargestMean = 1e9;

// Where the terms are so many that an integral over some of them takes less time.
constexpr double kWide = 1e5;

// A Poisson mixture of central distributions whose first parameter grows with the Poisson variable j.  P_j is
// the distribution function with the parameter Shape(j); P_j - P_(j+1) = G_j.
struct GammaComponents {
  double a;
  double x;

  bool IsQuick(double) const { return true; }
  double Shape(double j) const { return a + j; }
  Scaled Lower(double j) const { return GammaLower(Shape(j), x); }
  // Shape(j) G_j.
  Scaled Prefactor(double j) const { return GammaPrefactor(Shape(j), x); }
  // G_(j-1) / G_j.
  double RatioBefore(double j) const { return Shape(j) / x; }
  // Not below P_(j+1) / P_j, but for 1.
  double RatioAfter(double j) const { return x / Shape(j); }
  // Not below the j where the largest term of the mixture is: P_(j+1) / P_j is at most x / Shape(j).
  double LargestTerm(double mean) const {
    const double half = (a + 1) / 2;
    const double product = mean * x - a;
    return product <= 0 ? 0 : product / (half + std::sqrt(half * half + product));
  }
};

struct BetaComponents {
  double a;
  double b;
  UnitPoint at;

  // Whether incomplete beta functions at some points take less time than the terms up to j.
  bool IsQuick(double j) const { return b <= j / 4; }
  double Shape(double j) const { return a + j; }
  Scaled Lower(double j) const { return BetaLower(Shape(j), b, at); }
  Scaled Prefactor(double j) const { return BetaPrefactor(Shape(j), b, at); }
  double RatioBefore(double j) const { return Shape(j) / ((a + b + (j - 1)) * at.x); }
  double RatioAfter(double j) const { return at.x * (Shape(j) + b) / Shape(j); }
  // As above with x (Shape(j) + b) / Shape(j).
  double LargestTerm(double mean) const {
    const double half = (a + 1 - mean * at.x) / 2;
    const double product = mean * at.x * (a + b) - a;
    if (product <= 0 && half >= 0) return 0;
    const double root = std::sqrt(std::max(0.0, half * half + product));
    return std::max(0.0, half > 0 ? product / (half + root) : root - half);
  }
};

// The logarithm of the Poisson probability of j.
Scaled PoissonTerm(double mean, double j) {
  if (j == 0) return {-mean, 1};
  Scaled term = GammaPrefactor(j, mean);
  term.factor /= j;
  return term;
}

// A mixture whose terms change so slowly with j that every few hundredth or thousandth of them does: the
// trapezoidal rule for the integral over j, which the sum is but for less than a rounding.  No term is
// narrower than a normal density with the variance `largest` / 2.
template <class Components>
double WideMixture(const Components& components, double mean, double largest, double tolerance) {
  const double step = 0.5 * std::sqrt(largest);
  const auto termAt = [&](int i) {
    const double j = largest + i * step;
    const Scaled weight = PoissonTerm(mean, j);
    const Scaled lower = components.Lower(j);
    return Scaled{weight.exponent + lower.exponent, weight.factor * lower.factor};
  };
  const Scaled sum = SumBothWays(termAt, tolerance);
  return std::min(1.0, ValueOf({sum.exponent, sum.factor * step}));
}

// Where each term from the second on is so much smaller than the one before that a few are all: as they are.
constexpr double kSteep = 0.01;

template <class Components>
double FewTerms(const Components& components, double mean) {
  const Scaled first = components.Lower(0);
  const double exponent = first.exponent - mean;
  double sum = first.factor;
  for (double j = 1; j < 16; ++j) {
    const Scaled lower = components.Lower(j);
    const Scaled weight = PoissonTerm(mean, j);
    const double term = weight.factor * lower.factor * std::exp(weight.exponent + lower.exponent - exponent);
    sum += term;
    if (!(term > 1e-17 * sum)) break;
  }
  return std::min(1.0, ValueOf({exponent, sum}));
}

// Sums from so far above the largest term that nothing is left out down to where nothing counts any more.  On
// the way down P_j grows by what is added, so that it keeps its digits; the terms grow before they fall.
template <class Components>
double Mixture(const Components& components, double mean, double tolerance) {
  if (mean == 0) return ValueOf(components.Lower(0));
  if (mean * std::min(1.0, components.RatioAfter(1)) < kSteep) return FewTerms(components, mean);
  const double largest = std::min(mean, components.LargestTerm(mean));
  if (largest > kWide && components.IsQuick(largest))
    return WideMixture(components, mean, largest, tolerance);
  double j = std::ceil(largest + std::sqrt(84 * (largest + 1)) + 30);
  const Scaled weight = PoissonTerm(mean, j);
  const Scaled lower = components.Lower(j);
  if (!(lower.factor > 0)) return lower.factor;
  const Scaled prefactor = components.Prefactor(j);
  // All relative to the first term.
  double w = 1;
  double p = 1;
  double g =
      std::exp(prefactor.exponent - lower.exponent) * prefactor.factor / lower.factor / components.Shape(j);
  double sum = 1;
  double exponent = weight.exponent + lower.exponent;
  double last = 1;
  constexpr double kVanishing = 1e-290;
  while (j > 0) {
    const double ratio = components.RatioBefore(j);
    g *= ratio;
    // Ratios below 1 go on falling.  What is no ordinary double any more would take a hundred times as long.
    if (g < kVanishing && ratio < 1) g = 0;
    p += g;
    w *= j / mean;
    --j;
    const double term = w * p;
    sum += term;
    // Also what is no number any more ends the sum.
    if (!(term >= last || term >= tolerance * sum)) break;
    last = term;
    if (sum > 1e100 || p > 1e100 || w < 1e-100) {
      exponent += std::log(p) + std::log(w);
      sum /= term;
      g /= p;
      p = 1;
      w = 1;
      last = 1;
    }
  }
  return std::min(1.0, ValueOf({exponent, sum * weight.factor * lower.factor}));
}

double ClampTolerance(double tolerance) { return std::clamp(tolerance * 0.1, 1e-17, 1e-3); }

bool IsTolerance(double tolerance) { return AreNumbers(tolerance) && tolerance >= 0; }

bool IsNonCentrality(double lambda) { return AreNumbers(lambda) && lambda >= 0 && lambda < kInfinity; }

double MixtureOfBeta(double a, double b, UnitPoint at, double lambda, double tolerance, long& ifault) {
  ifault = kDone;
  if (!(at.x > 0)) return 0;
  if (!(at.y > 0)) return 1;
  if (lambda / 2 > kLargestMean) return Fail(ifault, kFailed);
  const double value = Mixture(BetaComponents{a, b, at}, lambda / 2, ClampTolerance(tolerance));
  return CheckedProbability(value, ifault);
}

}  // namespace

double KxDistFun::NonCentralCdfChi(double x, double df, double lambda) {
  if (!AreNumbers(x, df) || !IsParameter(df) || !IsNonCentrality(lambda)) return kMissing;
  if (x <= 0) return 0;
  if (x == kInfinity) return 1;
  if (lambda / 2 > kLargestMean) return kMissing;
  const double value = Mixture(GammaComponents{df / 2, x / 2}, lambda / 2, ClampTolerance(0));
  long ifault;
  return CheckedProbability(value, ifault);
}

double KxDistFun::ncdbet(double x, double a, double b, double lambda, double tolerance, long& ifault) {
  if (!AreNumbers(x, a, b) || !IsParameter(a) || !IsParameter(b) || !IsNonCentrality(lambda) ||
      !IsTolerance(tolerance)) {
    return Fail(ifault, kOutOfDomain);
  }
  return MixtureOfBeta(a, b, {x, 1 - x}, lambda, tolerance, ifault);
}

double KxDistFun::NonCentralCdfF(double x, double df1, double df2, double lambda, double tolerance) {
  if (!AreNumbers(x, df1, df2) || !IsParameter(df1) || !IsParameter(df2) || !IsNonCentrality(lambda) ||
      !IsTolerance(tolerance)) {
    return kMissing;
  }
  if (x <= 0) return 0;
  long ifault;
  const double odds = x / (df2 / df1);
  if (odds < kInfinity || x == kInfinity)
    return MixtureOfBeta(df1 / 2, df2 / 2, FromOdds(odds), lambda, tolerance, ifault);
  // The upper tail falls with the odds to the power -df2 / 2 where they are that large.
  constexpr double kLargeOdds = 1e300;
  if (!(df2 / 2 > 0)) return 0;
  const double fall = df2 / 2 * (std::log(x / kLargeOdds) + std::log(df1) - std::log(df2));
  const double below = MixtureOfBeta(df1 / 2, df2 / 2, FromOdds(kLargeOdds), lambda, tolerance, ifault);
  return ifault == 0 ? below * std::exp(-fall) - std::expm1(-fall) : below;
}

}  // namespace KxMath_940
