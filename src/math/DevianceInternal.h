// x - ln(1 + x), the building block of the deviance forms of prefactors: Loader (2000), "Fast and accurate
// computation of binomial probabilities".  A prefactor formed from it keeps its digits where x^a e^-x /
// Gamma(a) is the difference of logarithms that are thousands.

#ifndef VEYRA_MATH_DEVIANCEINTERNAL_H_
#define VEYRA_MATH_DEVIANCEINTERNAL_H_

#include "math/DevianceTablesInternal.h"
#include "math/PolynomialInternal.h"

namespace KxMath_940 {

inline bool IsLogDeficitArgument(double x) { return x > -0.5 && x < 1; }

// x - ln(1 + x), relative to itself, for IsLogDeficitArgument(x).
inline double LogDeficit(double x) {
  const double v = x / (2 + x);
  const double square = v * v;
  return v * (x - 2 * square * Polynomial(kArtanhRest, square));
}

}  // namespace KxMath_940

#endif  // VEYRA_MATH_DEVIANCEINTERNAL_H_
