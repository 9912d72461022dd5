// The beta and F distributions.

#include <cmath>

#include "math/IncompleteBetaInternal.h"
#include "math/KxDistFun.h"
#include "math/QuantileSearchInternal.h"

namespace KxMath_940 {

namespace {

// The library's tolerances of the inverse t, F and beta functions.
constexpr double kTolerance1 = 1e-20;
constexpr double kTolerance2 = 1e-12;

bool AreParameters(double a, double b) { return AreNumbers(a, b) && IsParameter(a) && IsParameter(b); }

// The odds of the beta quantile for 0 < p < 1; NaN when the search fails.
double OddsOfQuantile(double p, double a, double b, double tolerance) {
  const Tails wanted = {p, 1 - p};
  return BetaQuantileOdds(a, b, wanted, BetaQuantileStart(a, b, wanted), tolerance);
}

Tails FTails(double x, double df1, double df2) {
  if (x <= 0) return {0, 1};
  if (x == kInfinity) return {1, 0};
  return BetaTailsOfOdds(df1 / 2, df2 / 2, x, df1, df2);
}

}  // namespace

double KxDistFun::cdfbet(double x, double a, double b, long& ifault) {
  if (!AreNumbers(x) || !AreParameters(a, b)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  return CheckedProbability(BetaTails(a, b, {x, 1 - x}).lower, ifault);
}

double KxDistFun::CdfBeta(double x, double a, double b) {
  long ifault;
  return cdfbet(x, a, b, ifault);
}

double KxDistFun::betinv(double p, double a, double b, double tolerance1, double tolerance2) {
  if (!AreNumbers(p, tolerance1, tolerance2) || !AreParameters(a, b) || !(p >= 0 && p <= 1)) return kMissing;
  if (tolerance1 < 0 || tolerance2 < 0) return kMissing;
  if (p == 0 || p == 1) return p;
  const double odds = OddsOfQuantile(p, a, b, SearchTolerance(tolerance1, tolerance2));
  long ifault;
  return CheckedProbability(FromOdds(odds).x, ifault);
}

double KxDistFun::IdfBeta(const double& p, const double& a, const double& b) {
  return betinv(p, a, b, kTolerance1, kTolerance2);
}

double KxDistFun::zentcdff(double x, double df1, double df2, long& ifault) {
  if (!AreNumbers(x) || !AreParameters(df1, df2)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  return CheckedProbability(FTails(x, df1, df2).lower, ifault);
}

double KxDistFun::CdfF(double x, double df1, double df2) {
  long ifault;
  return zentcdff(x, df1, df2, ifault);
}

double KxDistFun::SigF(double x, double df1, double df2) {
  if (!AreNumbers(x) || !AreParameters(df1, df2)) return kMissing;
  long ifault;
  return CheckedProbability(FTails(x, df1, df2).upper, ifault);
}

double KxDistFun::zentidff(double p, double df1, double df2, long& ifault) {
  if (!AreNumbers(p) || !AreParameters(df1, df2) || !(p >= 0 && p < 1)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  if (p == 0) return 0;
  const double odds = OddsOfQuantile(p, df1 / 2, df2 / 2, SearchTolerance(kTolerance1, kTolerance2));
  if (odds > 0 && odds < kInfinity) return CheckedNumber(df2 / df1 * odds, ifault);
  const double logOdds = LogOfQuantileOdds(df1 / 2, df2 / 2, {p, 1 - p}, odds);
  return CheckedNumber(std::exp(logOdds + std::log(df2) - std::log(df1)), ifault);
}

double KxDistFun::IdfF(double p, double df1, double df2) {
  long ifault;
  return zentidff(p, df1, df2, ifault);
}

double KxDistFun::cbtaux(double x) {
  if (!AreNumbers(x) || x < 0) return kMissing;
  if (x == 0) return 1;
  if (x == kInfinity) return -1;
  const double d = 1 - x;
  // Its series about 1 where the closed form is a difference of equals.
  if (std::fabs(d) < 0.01) return d / 3 + d * d * (1.0 / 6 + d * (0.1 + d * (1.0 / 15 + d / 21)));
  if (x > 1e100) return -1;
  return (1 - x * x + 2 * x * std::log(x)) / (d * d);
}

}  // namespace KxMath_940
