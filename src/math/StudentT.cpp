// Student's t distribution.

#include <cmath>
#include <numbers>

#include "math/IncompleteBetaInternal.h"
#include "math/KxDistFun.h"
#include "math/LogGammaInternal.h"
#include "math/QuantileSearchInternal.h"

namespace KxMath_940 {

namespace {

// Above, the distribution is normal.
constexpr double kNormalDegrees = 1e8;
constexpr double kLogPi = 1.1447298858494001741;

bool IsDegrees(double df) { return AreNumbers(df) && df > 0; }

// Of the Cauchy distribution, for t >= 0.
Tails CauchyTails(double t) {
  const double upper = t > 1 ? std::atan(1 / t) / std::numbers::pi : 0.5 - std::atan(t) / std::numbers::pi;
  return {t > 1 ? 1 - upper : 0.5 + std::atan(t) / std::numbers::pi, upper};
}

// For t >= 0.
Tails TailsOfPositive(double t, double df) {
  if (df > kNormalDegrees) return {KxDistFun::prbnrm(t), KxDistFun::prbnrm(-t)};
  if (df == 1) return CauchyTails(t);
  if (t == kInfinity) return {1, 0};
  if (t < 1e-150) return {0.5, 0.5};
  // T^2 / df is the ratio whose beta variable has the parameters 1/2 and df / 2.
  const Tails central = BetaTailsOfOdds(0.5, df / 2, t, t, df);
  return {t > 1 ? 1 - central.upper / 2 : 0.5 + central.lower / 2, central.upper / 2};
}

Tails TailsOf(double t, double df) {
  const Tails tails = TailsOfPositive(std::fabs(t), df);
  return t < 0 ? Tails{tails.upper, tails.lower} : tails;
}

// t^2 / df near the quantile with both tails together `p`: Hill (1970), ACM Algorithm 396, for df >= 1.
double HillsStart(double p, double df) {
  const double a = 1 / (df - 0.5);
  const double b = 48 / (a * a);
  double c = ((20700 * a / b - 98) * a - 16) * a + 96.36;
  const double d = ((94.5 / (b + c) - 3) / b + 1) * std::sqrt(a * std::numbers::pi / 2) * df;
  double y = std::pow(d * p, 2 / df);
  if (!(y > 0.05 + a)) {
    return ((1 / (((df + 6) / (df * y) - 0.089 * d - 0.822) * (df + 2) * 3) + 0.5 / (df + 4)) * y - 1) *
               (df + 1) / (df + 2) +
           1 / y;
  }
  const double x = KxDistFun::probit(p / 2);
  y = x * x;
  if (df < 5) c += 0.3 * (df - 4.5) * (x + 0.6);
  c = (((0.05 * d * x - 5) * x - 7) * x - 2) * x + b + c;
  y = (((((0.4 * y + 6.3) * y + 36) * y + 94.5) / c - y - 3) / b + 1) * x;
  return std::expm1(a * y * y);
}

// The magnitude of the quantile whose tail beyond is `tail` < 1/2.
double MagnitudeOfTail(double tail, double df, double tolerance) {
  if (df == 1) {
    return tail < 0.25 ? 1 / std::tan(std::numbers::pi * tail) : std::tan(std::numbers::pi * (0.5 - tail));
  }
  const Tails wanted = {1 - 2 * tail, 2 * tail};
  double start = df >= 1 ? HillsStart(2 * tail, df) : 0;
  if (!(start > 0 && start < kInfinity)) start = BetaQuantileStart(0.5, df / 2, wanted);
  const double odds = BetaQuantileOdds(0.5, df / 2, wanted, start, tolerance);
  if (odds < kInfinity) return std::sqrt(df) * std::sqrt(odds);
  return std::exp(0.5 * (std::log(df) + LogOfQuantileOdds(0.5, df / 2, wanted, odds)));
}

}  // namespace

double KxDistFun::zentcdft(double t, double df, long& ifault) {
  if (!AreNumbers(t) || !IsDegrees(df)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  return CheckedProbability(TailsOf(t, df).lower, ifault);
}

double KxDistFun::CdfT(double t, double df) {
  long ifault;
  return zentcdft(t, df, ifault);
}

double KxDistFun::SigT(double t, double df) {
  if (!AreNumbers(t) || !IsDegrees(df)) return kMissing;
  long ifault;
  return CheckedProbability(TailsOf(t, df).upper, ifault);
}

double KxDistFun::PdfT(double t, double df, long& ifault) {
  if (!AreNumbers(t) || !IsDegrees(df)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  if (std::isinf(t)) return 0;
  if (df > 1e16) return PdfNormalStandard(t);
  const double ratio = t / df * t;
  const double logRatio = ratio < 1e300 ? std::log1p(ratio) : 2 * std::log(std::fabs(t)) - std::log(df);
  const double head = LogGammaDifference(df / 2, 0.5) - 0.5 * (kLogPi + std::log(df));
  return CheckedNumber(ValueOf({head - (df + 1) / 2 * logRatio, 1}), ifault);
}

double KxDistFun::zentidft(double p, double df, long& ifault, double tolerance1, double tolerance2) {
  if (!AreNumbers(p, tolerance1, tolerance2) || !IsDegrees(df) || !(p > 0 && p < 1) || tolerance1 < 0 ||
      tolerance2 < 0) {
    return Fail(ifault, kOutOfDomain);
  }
  ifault = kDone;
  if (p == 0.5) return 0;
  if (df > kNormalDegrees) return probit(p);
  const double tail = p < 0.5 ? p : 1 - p;
  const double magnitude = MagnitudeOfTail(tail, df, SearchTolerance(tolerance1, tolerance2));
  return CheckedNumber(p < 0.5 ? -magnitude : magnitude, ifault);
}

double KxDistFun::IdfT(double p, double df, double tolerance1, double tolerance2) {
  long ifault;
  return zentidft(p, df, ifault, tolerance1, tolerance2);
}

}  // namespace KxMath_940
