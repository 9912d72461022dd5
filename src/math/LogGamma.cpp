#include "math/LogGammaInternal.h"

#include <cmath>

#include "math/KxDistFun.h"
#include "math/LogGammaTablesInternal.h"
#include "math/PolynomialInternal.h"
#include "math/ValuesInternal.h"

namespace KxMath_940 {

namespace {

constexpr double kHalfLogTwoPi = 0.9189385332046728;
constexpr double kLogRootPi = 0.5723649429247001;

double StirlingSeries(double z) {
  const double reciprocal = 1 / z;
  return reciprocal * Polynomial(kStirling, reciprocal * reciprocal);
}

// ln Gamma(2 + z) for |z| <= 1/2.
double LogGammaNearTwo(double z) { return z * Polynomial(kLogGammaNearTwo, z); }

}  // namespace

double LogGamma(double x) {
  if (x >= 8) {
    // Beyond, the logarithm of x times x overflows, or nearly.
    if (x > 1e17) return x * (std::log(x) - 1);
    return (x - 0.5) * std::log(x) - x + (kHalfLogTwoPi + StirlingSeries(x));
  }
  if (x >= 2.5) {
    const int row = static_cast<int>(x - 2.5);
    return Polynomial(kLogGammaUnit[row], x - (row + 3));
  }
  if (x >= 1.5) return LogGammaNearTwo(x - 2);
  if (x > 0.5) return LogGammaNearTwo(x - 1) - std::log(x);
  if (x == 0.5) return kLogRootPi;
  const double reciprocal =
      x < 0.25 ? Polynomial(kReciprocalGamma[0], x) : Polynomial(kReciprocalGamma[1], x - 0.25);
  return -std::log(x * reciprocal);
}

double LogGammaOnePlus(double x) {
  return x > 0.5 ? LogGammaNearTwo(x - 1) : LogGammaNearTwo(x) - std::log1p(x);
}

double StirlingRemainder(double z) {
  if (z >= 8) return StirlingSeries(z);
  if (z >= 4) return Polynomial(kStirlingRemainder[2], z - 6);
  if (z >= 2) return Polynomial(kStirlingRemainder[1], z - 3);
  if (z >= 1) return Polynomial(kStirlingRemainder[0], z - 1.5);
  const double logRatio = z < 1e-300 ? -std::log(z) : std::log1p(1 / z);
  return Polynomial(kStirlingRemainder[0], z - 0.5) + (z + 0.5) * logRatio - 1;
}

double LogGammaDifference(double z, double step) {
  if (z < 8 && step > 0.05) return LogGamma(z + step) - LogGamma(z);
  // Small steps climb to where the remainders hardly differ.
  double climbed = 0;
  for (; z < 8; ++z) climbed += std::log1p(step / z);
  return (z - 0.5) * std::log1p(step / z) + step * (std::log(z + step) - 1) +
         (StirlingSeries(z + step) - StirlingSeries(z)) - climbed;
}

double LogBeta(double a, double b) {
  if (a > b) return LogBeta(b, a);
  const double ratio = a / b;
  if (a < 1) return LogGamma(a) - LogGammaDifference(b, a);
  const double powers = a * std::log(ratio / (1 + ratio)) - b * std::log1p(ratio);
  return powers + 0.5 * (kLogTwoPi - std::log(a / (1 + ratio))) + StirlingRemainder(a) +
         StirlingRemainder(b) - StirlingRemainder(a + b);
}

double KxDistFun::dnlgam(double x) {
  if (!AreNumbers(x) || !(x > 0)) return kMissing;
  const double result = LogGamma(x);
  return result < kInfinity ? result : kMissing;
}

double KxDistFun::zentdnlgam(double x) { return dnlgam(x); }

}  // namespace KxMath_940
