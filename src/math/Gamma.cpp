// The gamma, chi-square and exponential distributions.

#include <cmath>
#include <limits>

#include "math/IncompleteGammaInternal.h"
#include "math/KxDistFun.h"
#include "math/LogGammaInternal.h"

namespace KxMath_940 {

namespace {

// The seven-term Taylor step of AS 91 from `x`, where the lower tail is off by `error`.
double TaylorStep(double x, double a, double error) {
  const double c = a - 1;
  const double t = error * std::exp(a * kLogTwo + LogGamma(a) + 0.5 * x - c * std::log(x));
  const double b = t / x;
  const double d = 0.5 * t - b * c;
  const double s1 = (210 + d * (140 + d * (105 + d * (84 + d * (70 + 60 * d))))) / 420;
  const double s2 = (420 + d * (735 + d * (966 + d * (1141 + 1278 * d)))) / 2520;
  const double s3 = (210 + d * (462 + d * (707 + 932 * d))) / 2520;
  const double s4 = (252 + d * (672 + 1182 * d) + c * (294 + d * (889 + 1740 * d))) / 5040;
  const double s5 = (84 + 264 * d + c * (175 + 606 * d)) / 2520;
  const double s6 = (120 + c * (346 + 127 * c)) / 5040;
  return x + t * (1 + 0.5 * t * s1 - b * c * (s1 - b * (s2 - b * (s3 - b * (s4 - b * (s5 - b * s6))))));
}

bool IsInPublishedRange(double p) { return p >= 2e-6 && p <= 0.999998; }

// The quantile of half of a chi-square variable.
double QuantileOfShape(double p, double a, long& ifault) {
  if (!AreNumbers(p, a) || !IsParameter(a) || !(p >= 0 && p < 1)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  if (p == 0) return 0;
  double start = KxDistFun::idfchb(p, 2 * a, ifault);
  if (ifault != kDone) return kMissing;
  if (IsInPublishedRange(p) && start > 0) {
    const double stepped = TaylorStep(start, a, p - GammaTails(a, start / 2).lower);
    if (stepped > start / 2 && stepped < start * 2) start = stepped;
  }
  const double x = GammaQuantile(a, {p, 1 - p}, start / 2);
  return CheckedNumber(x, ifault);
}

// A tail of the gamma distribution with that shape at rate x.  Where the product is no double to its last
// digit the first term of the series is all there is.
double TailOfProduct(double rate, double x, double shape, double Tails::*tail) {
  if (!AreNumbers(x, shape) || !IsParameter(shape)) return kMissing;
  const double point = rate * x;
  long ifault;
  if (x > 0 && point < std::numeric_limits<double>::min())
    return CheckedProbability(GammaTailsOfTinyPoint(shape, std::log(x) + std::log(rate)).*tail, ifault);
  return KxDistFun::gammad(point, shape, tail == &Tails::lower, ifault);
}

double MissingUnlessDone(double value, long ifault) { return ifault == kDone ? value : kMissing; }

}  // namespace

double KxDistFun::gammad(double x, double p, bool lowerTail, long& ifault) {
  if (!AreNumbers(x, p) || !IsParameter(p)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  if (x <= 0) return lowerTail ? 0 : 1;
  if (x == kInfinity) return lowerTail ? 1 : 0;
  const Tails tails = GammaTails(p, x);
  return CheckedProbability(lowerTail ? tails.lower : tails.upper, ifault);
}

double KxDistFun::cdfexp(double x, double rate, long& ifault) {
  if (!AreNumbers(x, rate) || !IsParameter(rate)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  return x <= 0 ? 0 : -std::expm1(-rate * x);
}

double KxDistFun::CdfChi(double x, double df) { return TailOfProduct(0.5, x, df / 2, &Tails::lower); }

double KxDistFun::SigChi(double x, double df) { return TailOfProduct(0.5, x, df / 2, &Tails::upper); }

double KxDistFun::IdfChi(double p, double df) {
  long ifault;
  return zentidfchi(p, df, ifault);
}

double KxDistFun::CdfGam(double x, double shape, double rate) {
  long ifault;
  if (!AreNumbers(x) || !IsParameter(rate)) return kMissing;
  if (shape == 1) return cdfexp(x, rate, ifault);
  return TailOfProduct(rate, x, shape, &Tails::lower);
}

double KxDistFun::PdfGamma(double x, double shape, double rate) {
  if (!AreNumbers(x, shape, rate) || !IsParameter(shape) || !IsParameter(rate)) return kMissing;
  if (x < 0 || x == kInfinity) return 0;
  if (x == 0) return shape > 1 ? 0 : shape == 1 ? rate : kMissing;
  const double point = rate * x;
  if (point == kInfinity) return 0;
  if (shape == 1) return rate * std::exp(-point);
  Scaled density = GammaPrefactor(shape, point);
  density.factor /= x;
  long ifault;
  return CheckedNumber(ValueOf(density), ifault);
}

double KxDistFun::IdfGam(const double& p, const double& shape, const double& rate) {
  if (!AreNumbers(p, shape, rate) || !IsParameter(rate) || !(p >= 0 && p < 1)) return kMissing;
  if (shape == 0) return 0;
  long ifault;
  const double value = QuantileOfShape(p, shape, ifault) / rate;
  return std::isfinite(value) ? MissingUnlessDone(value, ifault) : kMissing;
}

double KxDistFun::zentidfchi(double p, double df, long& ifault) {
  const double value = 2 * QuantileOfShape(p, df / 2, ifault);
  if (ifault != kDone) return kMissing;
  return CheckedNumber(value, ifault);
}

double KxDistFun::idfchb(double p, double df, long& ifault) {
  if (!AreNumbers(p, df) || !IsParameter(df) || !(p > 0 && p < 1)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  const double a = df / 2;
  if (df < -1.24 * std::log(p)) {
    const double logarithm = a < 1 ? LogGammaOnePlus(a) : LogGamma(a + 1);
    return CheckedNumber(2 * std::exp((std::log(p) + logarithm) / a), ifault);
  }
  const double logUpper = std::log1p(-p);
  if (df > 0.32) {
    const double u = 2.0 / 9 / df;
    const double root = probit(p) * std::sqrt(u) + 1 - u;
    const double x = df * root * root * root;
    if (x <= 2.2 * df + 6) return CheckedNumber(x, ifault);
    return CheckedNumber(-2 * (logUpper - (a - 1) * std::log(0.5 * x) + LogGamma(a)), ifault);
  }
  double x = 0.4;
  for (int i = 0; i < 20; ++i) {
    const double last = x;
    const double p1 = 1 + x * (4.67 + x);
    const double p2 = x * (6.73 + x * (6.66 + x));
    const double t = -0.5 + (4.67 + 2 * x) / p1 - (6.73 + x * (13.32 + 3 * x)) / p2;
    x -= (1 - std::exp(logUpper + LogGamma(a) + 0.5 * x + (a - 1) * kLogTwo) * p2 / p1) / t;
    if (!(x > 0)) return last;
    if (std::fabs(last / x - 1) <= 0.01) break;
  }
  return x;
}

}  // namespace KxMath_940
