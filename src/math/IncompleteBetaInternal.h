// The kernel of the beta, F, t and binomial distributions.
//
// Method: the power series (Abramowitz and Stegun 1964, 26.5.4) where it converges at once, else the
// continued fraction of DiDonato and Morris (1992, "Significant digit computation of the incomplete beta
// function ratios"), the even part of Gauss's, always on the tail that lies before the mean; the normal
// approximation of Peizer and Pratt (1968) when 10,000 steps of the fraction do not do, which takes
// parameters above 1e9 near the mean.

#ifndef VEYRA_MATH_INCOMPLETEBETAINTERNAL_H_
#define VEYRA_MATH_INCOMPLETEBETAINTERNAL_H_

#include "math/ValuesInternal.h"

namespace KxMath_940 {

// A point of the unit interval and its distance from 1, both exact to the last digits.
struct UnitPoint {
  double x;
  double y;
};

// x / (1 - x) = odds >= 0.
inline UnitPoint FromOdds(double odds) {
  return odds < kInfinity ? UnitPoint{odds / (1 + odds), 1 / (1 + odds)} : UnitPoint{1, 0};
}

// x^a y^b / B(a, b) for a > 0, b > 0, 0 < x < 1.
Scaled BetaPrefactor(double a, double b, UnitPoint at);

// I_x(a, b) and I_y(b, a) for a > 0, b > 0, finite; any x in [0, 1].
Tails BetaTails(double a, double b, UnitPoint at);

// I_x(a, b) for 0 < x < 1, where it may be too small for a double.
Scaled BetaLower(double a, double b, UnitPoint at);

// The tails where x is so small that only the first term of the series counts; takes ln x.
Tails BetaTailsOfTinyPoint(double a, double b, double logX);

// The tails at the odds x factor / divisor, x >= 0, the others positive, where neither the odds nor the parts
// of the unit interval on both sides may be doubles any more.
Tails BetaTailsOfOdds(double a, double b, double x, double factor, double divisor);

// The odds x / (1 - x) at which the tails are `wanted`, which sum to 1: start near them.  0, infinity and NaN
// as SolveTail has it.
double BetaQuantileOdds(double a, double b, Tails wanted, double start, double tolerance = 1e-15);

// The logarithm of what BetaQuantileOdds gave, also where that is 0 or infinity: only the first term of the
// series counts there.
double LogOfQuantileOdds(double a, double b, Tails wanted, double odds);

// Odds near the quantile: Carter's approximation as in AS 109 (Cran, Martin and Thomas 1977), a power law or
// a gamma distribution, by the shape.
double BetaQuantileStart(double a, double b, Tails wanted);

}  // namespace KxMath_940

#endif  // VEYRA_MATH_INCOMPLETEBETAINTERNAL_H_
