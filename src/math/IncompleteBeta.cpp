#include "math/IncompleteBetaInternal.h"

#include <algorithm>
#include <cmath>

#include "math/DevianceInternal.h"
#include "math/KxDistFun.h"
#include "math/LogGammaInternal.h"
#include "math/QuantileSearchInternal.h"

namespace KxMath_940 {

namespace {

constexpr int kMostSteps = 10000;

// ln x and ln y without the digits that the other one would lose.
double LogOf(double x, double y) { return x < 0.5 ? std::log(x) : std::log1p(-y); }

Tails Swap(Tails tails) { return {tails.upper, tails.lower}; }

// a I over the prefactor: 1 and the sum of (a + b) .. (a + b + n) / ((a + 1) .. (a + 1 + n)) x^(n+1), all
// positive.
double SeriesSum(double a, double b, double x) {
  double sum = 1;
  double term = 1;
  for (double n = 0; n < kMostSteps && term > 1e-17 * sum; ++n) {
    term *= (a + b + n) / (a + 1 + n) * x;
    sum += term;
  }
  return sum;
}

// I = C (1 + a S) with C = x^a / (a B(a, b)) and S the sum of (1 - b) .. (n - b) x^n / (n! (a + n)) from n =
// 1, for a so small that I and C are near 1, and the complement has to come from the parts.  For b x < 2.
Tails SmallParameter(double a, double b, UnitPoint at) {
  double sum = 0;
  double power = 1;
  for (double n = 1; n <= kMostSteps; ++n) {
    power *= (n - b) / n * at.x;
    const double term = power / (a + n);
    sum += term;
    if (std::fabs(term) <= 1e-17 * std::fabs(sum)) break;
  }
  const double logC = a * LogOf(at.x, at.y) - LogScaledBeta(a, b);
  const double c = std::exp(logC);
  const double lower = c + c * a * sum;
  if (lower < 0.5) return {lower, 1 - lower};
  return {lower, -std::expm1(logC) - c * a * sum};
}

// I over the prefactor; NaN when 10,000 steps do not do.
double FractionValue(double a, double b, UnitPoint at) {
  const double x = at.x;
  const double head = a * at.y - b * x + 1;
  const double closeEnough = kEpsilon * std::clamp((a + b) * 1e-4, 1.0, 1e4);
  constexpr double kTooLarge = 1e150;
  double reciprocal = 1 / (a + 1);
  double previousNumerator = 0;
  double previousDenominator = 1;
  double numerator = 1;
  double denominator = a * head * reciprocal;
  double value = numerator / denominator;
  for (double m = 1; m <= kMostSteps; ++m) {
    const double before = reciprocal;  // 1 / (a + 2m - 1)
    reciprocal = 1 / (a + 2 * m + 1);
    const double shared = m * (b - m) * x * before;
    const double coefficient = (a + m - 1) * (a + b + m - 1) * before * x * shared;
    const double linear = m + shared + (a + m) * (head + m * (2 - x)) * reciprocal;
    const double nextNumerator = linear * numerator + coefficient * previousNumerator;
    const double nextDenominator = linear * denominator + coefficient * previousDenominator;
    previousNumerator = numerator;
    previousDenominator = denominator;
    numerator = nextNumerator;
    denominator = nextDenominator;
    const double next = numerator / denominator;
    if (std::fabs(next - value) <= closeEnough * next) return next;
    // Parameters beyond all measure overflow.
    if (!(next > 0)) break;
    value = next;
    if (denominator > kTooLarge) {
      previousNumerator /= kTooLarge;
      previousDenominator /= kTooLarge;
      numerator /= kTooLarge;
      denominator /= kTooLarge;
    }
  }
  return std::numeric_limits<double>::quiet_NaN();
}

// Peizer and Pratt (1968), "A normal approximation for binomial, F, beta, and other common, related tail
// probabilities, I".
Tails NormalApproximation(double a, double b, UnitPoint at) {
  const double n = a + b - 1;
  const double s = a - 0.5;
  const double t = b - 0.5;
  const double distance = (s * at.y - t * at.x) + (at.y - at.x) / 6 +
                          0.02 * (at.y / (s + 0.5) - at.x / (t + 0.5) + (at.y - 0.5) / (n + 1));
  const double spread =
      (1 + at.y * KxDistFun::cbtaux(s / (n * at.x)) + at.x * KxDistFun::cbtaux(t / (n * at.y))) /
      ((n + 1.0 / 6) * at.x * at.y);
  const double z = distance * std::sqrt(spread);
  return {KxDistFun::prbnrm(-z), KxDistFun::prbnrm(z)};
}

// A lower tail that is a power: for b = 1, and for the first term of the series.
Tails PowerTails(double logarithm) { return {ValueOf({logarithm, 1}), -std::expm1(logarithm)}; }

// The inverse of TailsOfTinyPoint, where the tails are `lower` and `upper`.
double LogOddsOfTinyPoint(double a, double b, double lower, double upper) {
  return (LogOf(lower, upper) + LogScaledBeta(a, b)) / a;
}

bool IsLeading(double a, double b, UnitPoint at) { return at.x * (b + 1) <= at.y * (a + 1); }

bool IsForSeries(double a, double b, UnitPoint at) { return a < 1 || (at.x < 0.7 && b * at.x < 1); }

// For IsLeading(a, b, at): x before the mean, more or less.
Scaled LeadingTail(double a, double b, UnitPoint at) {
  Scaled lower = BetaPrefactor(a, b, at);
  lower.factor *= IsForSeries(a, b, at) ? SeriesSum(a, b, at.x) / a : FractionValue(a, b, at);
  return lower;
}

Tails LeadingTails(double a, double b, UnitPoint at) {
  if (a < 0.3) return SmallParameter(a, b, at);
  const double lower = ValueOf(LeadingTail(a, b, at));
  return {lower, 1 - lower};
}

}  // namespace

Scaled BetaPrefactor(double a, double b, UnitPoint at) {
  const double n = a + b;
  const double distance = b * at.x - a * at.y;
  const double muX = distance / a;   // n x / a - 1
  const double muY = -distance / b;  // n y / b - 1
  const double powers = IsLogDeficitArgument(muX) && IsLogDeficitArgument(muY)
                            ? -a * LogDeficit(muX) - b * LogDeficit(muY)
                            : a * (muX > -0.5 ? std::log1p(muX) : std::log(n * at.x / a)) +
                                  b * (muY > -0.5 ? std::log1p(muY) : std::log(n * at.y / b));
  return {powers + StirlingRemainder(n) - StirlingRemainder(a) - StirlingRemainder(b),
          std::sqrt(a / n * b / kTwoPi)};
}

Tails BetaTails(double a, double b, UnitPoint at) {
  if (!(at.x > 0)) return {0, 1};
  if (!(at.y > 0)) return {1, 0};
  if (a == 1) return Swap(PowerTails(b * LogOf(at.y, at.x)));
  if (b == 1) return PowerTails(a * LogOf(at.x, at.y));
  const Tails tails = IsLeading(a, b, at) ? LeadingTails(a, b, at) : Swap(LeadingTails(b, a, {at.y, at.x}));
  return tails.lower <= 1 && tails.upper <= 1 ? tails : NormalApproximation(a, b, at);
}

Scaled BetaLower(double a, double b, UnitPoint at) {
  if (!IsLeading(a, b, at) || a < 1) return {0, BetaTails(a, b, at).lower};
  return LeadingTail(a, b, at);
}

Tails BetaTailsOfTinyPoint(double a, double b, double logX) {
  return PowerTails(a * logX - LogScaledBeta(a, b));
}

Tails BetaTailsOfOdds(double a, double b, double x, double factor, double divisor) {
  constexpr double kFar = 1e200;
  const double odds = x / (divisor / factor);
  if (odds > 1 / kFar && odds < kFar) return BetaTails(a, b, FromOdds(odds));
  if (!(x > 0)) return {0, 1};
  const double logOdds = std::log(x) + std::log(factor) - std::log(divisor);
  return logOdds < 0 ? BetaTailsOfTinyPoint(a, b, logOdds) : Swap(BetaTailsOfTinyPoint(b, a, -logOdds));
}

double BetaQuantileOdds(double a, double b, Tails wanted, double start, double tolerance) {
  return SolveTail(
      wanted, start,
      [a, b](double odds) {
        const UnitPoint at = FromOdds(odds);
        return TailPoint{BetaTails(a, b, at), ValueOf(BetaPrefactor(a, b, at)), a * at.y - b * at.x};
      },
      tolerance);
}

double LogOfQuantileOdds(double a, double b, Tails wanted, double odds) {
  if (std::isnan(odds)) return odds;
  if (odds > 0 && odds < kInfinity) return std::log(odds);
  if (odds == 0) return LogOddsOfTinyPoint(a, b, wanted.lower, wanted.upper);
  return -LogOddsOfTinyPoint(b, a, wanted.upper, wanted.lower);
}

double BetaQuantileStart(double a, double b, Tails wanted) {
  if (a > 1 && b > 1) {
    const double y =
        wanted.lower < wanted.upper ? -KxDistFun::probit(wanted.lower) : KxDistFun::probit(wanted.upper);
    const double r = (y * y - 3) / 6;
    const double s = 1 / (2 * a - 1);
    const double t = 1 / (2 * b - 1);
    const double h = 2 / (s + t);
    const double w = y * std::sqrt(std::max(0.0, h + r)) / h - (t - s) * (r + 5.0 / 6 - 2 / (3 * h));
    return a / b * std::exp(-2 * w);
  }
  const double logLower = LogOddsOfTinyPoint(a, b, wanted.lower, wanted.upper);
  if (logLower < -kLogTwo && b * std::exp(logLower) < 0.5) return std::exp(logLower);
  const double logUpper = LogOddsOfTinyPoint(b, a, wanted.upper, wanted.lower);
  if (logUpper < -kLogTwo && a * std::exp(logUpper) < 0.5) return std::exp(-logUpper);
  if (a <= 1 && b <= 1) return 1;
  // The long side makes the short one a gamma variable.
  long ifault = kDone;
  const double shape = std::min(a, b);
  const double p = a < b ? wanted.lower : wanted.upper;
  const double odds = KxDistFun::idfchb(p, 2 * shape, ifault) / 2 / std::max(a, b);
  if (!(odds > 0)) return a / b;
  return a < b ? odds : 1 / odds;
}

}  // namespace KxMath_940
