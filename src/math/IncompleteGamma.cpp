#include "math/IncompleteGammaInternal.h"

#include <algorithm>
#include <cmath>

#include "math/DevianceInternal.h"
#include "math/ErrorFunctionsInternal.h"
#include "math/LogGammaInternal.h"
#include "math/QuantileSearchInternal.h"
#include "math/UniformGammaTablesInternal.h"

namespace KxMath_940 {

namespace {

// Below this nothing that a prefactor is multiplied with brings the value back.
constexpr double kHopelessExponent = -760;

// The tail that is computed, from which the other one follows.
struct LeadingTail {
  Scaled value;
  bool isLower;
};

// P = C (1 + a S) with C = x^a / Gamma(1 + a) and S the sum of (-x)^n / ((a + n) n!) from n = 1, for a < 1
// and x <= 1.  The upper tail, small when a is, comes from the same parts without cancellation (Gautschi
// 1979).
Tails SmallShape(double a, double x) {
  double sum = 0;
  double power = 1;
  for (int n = 1; n < 30; ++n) {
    power *= -x / n;
    const double term = power / (a + n);
    sum += term;
    if (std::fabs(term) < 1e-17 * std::fabs(sum)) break;
  }
  const double logC = a * std::log(x) - LogGammaOnePlus(a);
  const double c = std::exp(logC);
  const double lower = c + c * a * sum;
  if (lower < 0.5) return {lower, 1 - lower};
  return {lower, -std::expm1(logC) - c * a * sum};
}

double SeriesSum(double a, double x) {
  double sum = 1;
  double term = 1;
  for (double denominator = a + 1; term > 1e-17 * sum; ++denominator) {
    term *= x / denominator;
    sum += term;
  }
  return sum;
}

// Legendre's continued fraction: Q over the prefactor.
double FractionValue(double a, double x) {
  constexpr double kTooLarge = 1.34e154;
  double linear = x + 2 - a;
  double previousNumerator = 1;
  double previousDenominator = x;
  double numerator = x + 1;
  double denominator = x * linear;
  double value = numerator / denominator;
  for (double n = 1; n < 10000; ++n) {
    linear += 2;
    const double coefficient = (n + 1 - a) * n;
    const double nextNumerator = linear * numerator - coefficient * previousNumerator;
    const double nextDenominator = linear * denominator - coefficient * previousDenominator;
    previousNumerator = numerator;
    previousDenominator = denominator;
    numerator = nextNumerator;
    denominator = nextDenominator;
    const double next = numerator / denominator;
    if (std::fabs(value - next) <= kEpsilon * next) return next;
    value = next;
    if (std::fabs(numerator) >= kTooLarge || std::fabs(denominator) >= kTooLarge) {
      previousNumerator /= kTooLarge;
      previousDenominator /= kTooLarge;
      numerator /= kTooLarge;
      denominator /= kTooLarge;
    }
  }
  return value;
}

// The expansion's sum of c_k(eta) a^-k.
double UniformSum(double a, double eta) {
  const double u = 1 / a;
  const double first =
      Polynomial(kTemme0, eta) + u * (Polynomial(kTemme1, eta) + u * Polynomial(kTemme2, eta));
  if (a > 1e5) return first;
  return first + u * u * u * (Polynomial(kTemme3, eta) + u * Polynomial(kTemme4, eta));
}

// Below, series and fraction take about as long.  At 1e4 they take four times, at 1e8 a thousand times as
// long.
constexpr double kUniformShape = 1000;

bool IsUniform(double a, double mu) { return a >= kUniformShape && std::fabs(mu) < 0.4; }

LeadingTail UniformExpansion(double a, double mu) {
  const double deficit = LogDeficit(mu);
  const double eta = std::copysign(std::sqrt(2 * deficit), mu);
  const double half = 0.5 * ScaledErfc(std::sqrt(a * deficit));
  const double rest = UniformSum(a, eta) / std::sqrt(kTwoPi * a);
  return {{-a * deficit, mu < 0 ? half - rest : half + rest}, mu < 0};
}

// For a >= 1, or x > 1.
LeadingTail LeadingTailAt(double a, double x) {
  const double mu = (x - a) / a;
  if (IsUniform(a, mu)) return UniformExpansion(a, mu);
  LeadingTail tail = {GammaPrefactor(a, x), x <= a};
  // A fraction that does not count need not converge.
  if (x > a && tail.value.exponent < kHopelessExponent) return tail;
  tail.value.factor *= x <= a ? SeriesSum(a, x) / a : FractionValue(a, x);
  return tail;
}

}  // namespace

Scaled GammaPrefactor(double a, double x) {
  if (a < 1) return {a * std::log(x) - x - LogGamma(a), 1};
  const double mu = (x - a) / a;
  const double factor = std::sqrt(a / kTwoPi);
  const double powers = IsLogDeficitArgument(mu) ? -a * LogDeficit(mu) : a * std::log(x / a) - (x - a);
  return {powers - StirlingRemainder(a), factor};
}

Tails GammaTails(double a, double x) {
  if (a == 1) return {-std::expm1(-x), ValueOf({-x, 1})};
  if (a < 1 && x <= 1) return SmallShape(a, x);
  const LeadingTail tail = LeadingTailAt(a, x);
  const double value = std::min(1.0, ValueOf(tail.value));
  return tail.isLower ? Tails{value, 1 - value} : Tails{1 - value, value};
}

Tails GammaTailsOfTinyPoint(double a, double logX) {
  if (a > 1) return {0, 1};
  const double logarithm = a * logX - LogGammaOnePlus(a);
  return {ValueOf({logarithm, 1}), -std::expm1(logarithm)};
}

Scaled GammaLower(double a, double x) {
  if (a < 1 && x <= 1) return {0, SmallShape(a, x).lower};
  const LeadingTail tail = LeadingTailAt(a, x);
  return tail.isLower ? tail.value : Scaled{0, 1 - ValueOf(tail.value)};
}

double GammaQuantile(double a, Tails wanted, double start) {
  return SolveTail(wanted, start, [a](double v) {
    return TailPoint{GammaTails(a, v), ValueOf(GammaPrefactor(a, v)), a - v};
  });
}

}  // namespace KxMath_940
