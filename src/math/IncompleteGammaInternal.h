// The kernel of the gamma and chi-square distributions.
//
// Method: the power series (Abramowitz and Stegun 1964, 6.5.29) for x <= max(1, a); Legendre's continued
// fraction as in AS 239 (Shea 1988) beyond; for a >= 1000 near x = a, where both need ever more terms, the
// uniform asymptotic expansion (Temme 1979, "The asymptotic expansion of the incomplete gamma functions"): a
// normal approximation in its first term, exact to the last digits with the others, for any a.

#ifndef VEYRA_MATH_INCOMPLETEGAMMAINTERNAL_H_
#define VEYRA_MATH_INCOMPLETEGAMMAINTERNAL_H_

#include "math/ValuesInternal.h"

namespace KxMath_940 {

// x^a e^-x / Gamma(a) for a > 0, x > 0, both finite.
Scaled GammaPrefactor(double a, double x);

// P(a, x) and Q(a, x) for a > 0, x > 0, both finite.  A few hundred steps at most.
Tails GammaTails(double a, double x);

// The same where x is so small that only the first term of the series counts; takes ln x.
Tails GammaTailsOfTinyPoint(double a, double logX);

// P(a, x) where it may be too small for a double.
Scaled GammaLower(double a, double x);

// The x for which the tails are `wanted`, which sum to 1: start near it.  Infinity when it overflows, NaN
// when the search fails.
double GammaQuantile(double a, Tails wanted, double start);

}  // namespace KxMath_940

#endif  // VEYRA_MATH_INCOMPLETEGAMMAINTERNAL_H_
