#include "math/LogGammaInternal.h"

#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>

#include "math/KxDistFun.h"
#include "math/LogGammaTablesInternal.h"
#include "math/PolynomialInternal.h"
#include "math/ValuesInternal.h"

namespace KxMath_940 {

namespace {

constexpr double kHalfLogTwoPi = 0.9189385332046728;
constexpr double kLogRootPi = 0.5723649429247001;
// (-1)^j zeta(j) / j from j = 2: what the logarithm of the gamma function is about 1.
constexpr double kZetaOverIndex[] = {
    0.82246703342411321824,  -0.40068563438653142847,  0.27058080842778454788,  -0.20738555102867398527,
    0.16955717699740818995,  -0.14404989676884611812,  0.12550966952474304242,  -0.11133426586956469049,
    0.10009945751278180853,  -0.090954017145829042233, 0.083353840546109004025, -0.076932516411352191473,
    0.071432946295361336059, -0.066668705882420468033, 0.062500955141213040742, -0.058823978658684582339};

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

namespace {

// StirlingSeries(z + step) - StirlingSeries(z), relative to itself: by the divided differences of the series
// in r = 1 / z, which is r P(r^2).
double StirlingSeriesDifference(double z, double step) {
  const double from = 1 / z, to = 1 / (z + step);
  const double square = from * from, other = to * to;
  double value = 0;    // of P at `square` by Horner's chain
  double divided = 0;  // of P at both squares
  for (std::size_t i = std::size(kStirling); i-- > 0;) {
    divided = divided * other + value;
    value = value * square + kStirling[i];
  }
  return -step * from * to * (Polynomial(kStirling, other) + from * (from + to) * divided);
}

}  // namespace

double LogGammaDifference(double z, double step) {
  if (z < 8 && step > 0.05) return LogGamma(z + step) - LogGamma(z);
  // Small steps climb to where the remainders hardly differ.
  double climbed = 0;
  for (; z < 8; ++z) climbed += std::log1p(step / z);
  return (z - 0.5) * std::log1p(step / z) + step * (std::log(z + step) - 1) +
         StirlingSeriesDifference(z, step) - climbed;
}

double LogScaledBeta(double a, double b) {
  return a <= 1 ? LogGammaOnePlus(a) - LogGammaDifference(b, a) : std::log(a) + LogBeta(a, b);
}

double LogBinomial(double k, double m) {
  if (k > m) std::swap(k, m);
  const double n = k + m;
  if (n < 0.1) {
    // The sum of (-1)^j zeta(j) / j (n^j - k^j - m^j) from j = 2, whose brackets are sums of positive
    // numbers.
    double sum = 0, bracket = 0, powerK = k, powerM = m;
    for (std::size_t j = 0; j < std::size(kZetaOverIndex); ++j) {
      bracket = n * bracket + m * powerK + k * powerM;
      powerK *= k;
      powerM *= m;
      sum += kZetaOverIndex[j] * bracket;
    }
    return sum;
  }
  if (k < 0.05) return LogGammaDifference(1 + m, k) - LogGammaOnePlus(k);
  // 1 / ((n + 1) B(k + 1, m + 1))
  return -LogBeta(k + 1, m + 1) - std::log1p(n);
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
