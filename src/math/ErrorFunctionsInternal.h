// The kernel of the error functions and of the normal distribution.

#ifndef VEYRA_MATH_ERRORFUNCTIONSINTERNAL_H_
#define VEYRA_MATH_ERRORFUNCTIONSINTERNAL_H_

#include <cmath>

#include "math/ErrorFunctionTablesInternal.h"
#include "math/KxPower.h"
#include "math/PolynomialInternal.h"

namespace KxMath_940 {

// erfc(x) e^(x^2) for x >= 0.
inline double ScaledErfc(double x) {
  constexpr double kShift = 3.97886080735226;
  const double t = kShift / (x + kShift);
  return t * Polynomial(kErfcScaled, t - 0.5);
}

// What rounding took from the square of x.
inline double RestOfSquare(double x, double square) {
  const double high = static_cast<float>(x);
  const double low = x - high;
  return ((high * high - square) + 2 * high * low) + low * low;
}

// factor e^(-scale x^2) for scale 1 or 1/2, to the last digits however large the square is.  0 where the
// power is below e^gMachineMinExp, and for NaN.
inline double ExpMinusSquare(double x, double scale, double factor = 1) {
  const double square = x * x;
  if (!(scale * square <= -KxPower::gMachineMinExp)) return 0;
  return (factor - factor * scale * RestOfSquare(x, square)) * std::exp(-scale * square);
}

}  // namespace KxMath_940

#endif  // VEYRA_MATH_ERRORFUNCTIONSINTERNAL_H_
