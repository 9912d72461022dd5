// Sums over evenly spaced points of functions that rise to one maximum and fall to both sides: the
// trapezoidal rule, whose error falls exponentially with the distance of the points where the function is
// analytic.

#ifndef VEYRA_MATH_TRAPEZOIDINTERNAL_H_
#define VEYRA_MATH_TRAPEZOIDINTERNAL_H_

#include <cmath>
#include <initializer_list>
#include <limits>

#include "math/ValuesInternal.h"

namespace KxMath_940 {

// The sum of term(i) for i = 0, 1, 2 .. and -1, -2 .., term(0) being near the maximum; terms below
// `tolerance` of the sum are left out.  NaN when 5,000 terms do not do.
template <class Term>
Scaled SumBothWays(Term term, double tolerance) {
  constexpr int kMostTerms = 5000;
  const Scaled top = term(0);
  if (!(top.factor > 0)) return top;
  double sum = 1;  // relative to term(0)
  int count = 0;
  for (const int direction : {1, -1}) {
    double last = 1;
    for (int i = direction;; i += direction) {
      if (++count > kMostTerms) return {0, std::numeric_limits<double>::quiet_NaN()};
      const Scaled next = term(i);
      const double value = next.factor / top.factor * std::exp(next.exponent - top.exponent);
      sum += value;
      // Also what is no number any more ends the sum.
      if (!(value > last || value >= tolerance * sum)) break;
      last = value;
    }
  }
  return {top.exponent, top.factor * sum};
}

}  // namespace KxMath_940

#endif  // VEYRA_MATH_TRAPEZOIDINTERNAL_H_
