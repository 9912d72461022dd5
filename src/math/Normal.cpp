// The normal distribution.

#include <cmath>

#include "math/ErrorFunctionsInternal.h"
#include "math/KxDistFun.h"
#include "math/ValuesInternal.h"

namespace KxMath_940 {

namespace {

constexpr double kInverseRootTwoPi = 0.3989422804014327;
constexpr double kInverseRootTwo = 0.70710678118654752440;

double Density(double z) { return ExpMinusSquare(z, 0.5, kInverseRootTwoPi); }

// Up to the point where erf is 1/2 neither form of the distribution function loses digits.
bool IsCentral(double z) { return z > -0.67 && z < 3.1; }

double CentralCdf(double z) { return 0.5 + 0.5 * KxDistFun::derf(z * kInverseRootTwo); }

// P(Z > z) for z >= 0 over e^(-z^2 / 2).
double ScaledUpperTail(double z) { return 0.5 * ScaledErfc(z * kInverseRootTwo); }

// At z and the rest that a double took from it.
double OuterCdf(double z, double rest) {
  const double power = ExpMinusSquare(z, 0.5);
  if (power == 0) return z > 0 ? 1 : 0;
  const double tail = power * ScaledUpperTail(std::fabs(z));
  const double correction = kInverseRootTwoPi * power * rest;
  return z > 0 ? 1 - tail + correction : tail + correction;
}

// What rounding took from z = (x - mean) / sd.
double RestOf(double z, double x, double mean, double sd) {
  if (!(std::fabs(z) < 50)) return 0;
  const double difference = x - mean;
  const double back = difference - x;
  const double lost = (x - (difference - back)) - (mean + back);
  return (std::fma(-z, sd, difference) + lost) / sd;
}

// AS 241 (PPND16): Wichura (1988), "The percentage points of the normal distribution".
constexpr double kCentreNumerator[] = {
    3.3871328727963666080e0,  1.3314166789178437745e+2, 1.9715909503065514427e+3, 1.3731693765509461125e+4,
    4.5921953931549871457e+4, 6.7265770927008700853e+4, 3.3430575583588128105e+4, 2.5090809287301226727e+3};
constexpr double kCentreDenominator[] = {1.0,
                                         4.2313330701600911252e+1,
                                         6.8718700749205790830e+2,
                                         5.3941960214247511077e+3,
                                         2.1213794301586595867e+4,
                                         3.9307895800092710610e+4,
                                         2.8729085735721942674e+4,
                                         5.2264952788528545610e+3};
constexpr double kNearNumerator[] = {1.42343711074968357734e0,  4.63033784615654529590e0,
                                     5.76949722146069140550e0,  3.64784832476320460504e0,
                                     1.27045825245236838258e0,  2.41780725177450611770e-1,
                                     2.27238449892691845833e-2, 7.74545014278341407640e-4};
constexpr double kNearDenominator[] = {1.0,
                                       2.05319162663775882187e0,
                                       1.67638483018380384940e0,
                                       6.89767334985100004550e-1,
                                       1.48103976427480074590e-1,
                                       1.51986665636164571966e-2,
                                       5.47593808499534494600e-4,
                                       1.05075007164441684324e-9};
constexpr double kFarNumerator[] = {6.65790464350110377720e0,  5.46378491116411436990e0,
                                    1.78482653991729133580e0,  2.96560571828504891230e-1,
                                    2.65321895265761230930e-2, 1.24266094738807843860e-3,
                                    2.71155556874348757815e-5, 2.01033439929228813265e-7};
constexpr double kFarDenominator[] = {1.0,
                                      5.99832206555887937690e-1,
                                      1.36929880922735805310e-1,
                                      1.48753612908506148525e-2,
                                      7.86869131145613259100e-4,
                                      1.84631831751005468180e-5,
                                      1.42151175831644588870e-7,
                                      2.04426310338993978564e-15};

}  // namespace

double KxDistFun::prbnrm(double x) {
  if (IsCentral(x)) return CentralCdf(x);
  return AreNumbers(x) ? OuterCdf(x, 0) : kMissing;
}

double KxDistFun::probit(double p) {
  if (!(p > 0 && p < 1)) return kMissing;
  const double q = p - 0.5;
  if (std::fabs(q) <= 0.425) {
    const double r = 0.180625 - q * q;
    return q * Polynomial(kCentreNumerator, r) / Polynomial(kCentreDenominator, r);
  }
  const double r = std::sqrt(-std::log(q < 0 ? p : 1 - p));
  const double magnitude = r <= 5
                               ? Polynomial(kNearNumerator, r - 1.6) / Polynomial(kNearDenominator, r - 1.6)
                               : Polynomial(kFarNumerator, r - 5) / Polynomial(kFarDenominator, r - 5);
  return q < 0 ? -magnitude : magnitude;
}

double KxDistFun::CdfStdNorm(double x) { return prbnrm(x); }

double KxDistFun::CdfNorm(double x, double mean, double sd) {
  if (!AreNumbers(x, mean, sd) || !IsParameter(sd) || !std::isfinite(mean)) return kMissing;
  const double z = (x - mean) / sd;
  return IsCentral(z) ? CentralCdf(z) : OuterCdf(z, RestOf(z, x, mean, sd));
}

double KxDistFun::PdfNormal(double x, double mean, double sd) {
  if (!AreNumbers(x, mean, sd) || sd == 0 || !std::isfinite(sd) || !std::isfinite(mean)) return kMissing;
  const double spread = std::fabs(sd);
  const double z = (x - mean) / spread;
  const double value = Density(z) * (1 - z * RestOf(z, x, mean, spread)) / spread;
  return std::isfinite(value) ? value : (z == 0 ? kMissing : 0);
}

double KxDistFun::IdfStdNorm(double p) { return probit(p); }

double KxDistFun::IdfNorm(double p, double mean, double sd) {
  if (!AreNumbers(p, mean, sd) || !(p > 0 && p < 1) || !IsParameter(sd) || !std::isfinite(mean))
    return kMissing;
  const double value = mean + sd * probit(p);
  return std::isfinite(value) ? value : kMissing;
}

}  // namespace KxMath_940
