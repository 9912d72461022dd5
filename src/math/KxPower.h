// Exponentials, powers and products that say what went wrong instead of overflowing, and the comparison that
// decides whether a number is whole.
//
// Threads: everything here may be called by any number of threads.  Nothing throws.

#ifndef VEYRA_MATH_KXPOWER_H_
#define VEYRA_MATH_KXPOWER_H_

#include "veyra/Export.h"

namespace KxMath_940 {

class VEYRA_API KxPower {
 public:
  // The largest argument passed to exp, and the one below which exp is taken as 0.
  static constexpr double gMachineMaxExp = 709.0;
  static constexpr double gMachineMinExp = -708.39;
  static constexpr double gMachineMaxInt = 2147483647;
  static constexpr double gMachineEpsilon = 2.220446049250313e-16;

  // e^x.  Returns 0; or 1 and the result 0 below gMachineMinExp; or 2 and the missing number above
  // gMachineMaxExp and for NaN.
  static int Exponent(double x, double& result);

  // base^exponent.  The result is the missing number wherever nothing else is said.
  //   0  done
  //   1  underflow: the result is 0 (-0 for a negative base and an odd exponent)
  //   2  overflow
  //   3  a negative base and an odd or one-over-odd, positive exponent overflow
  //   4  a negative base and any other exponent; an argument that is NaN or missing
  //   5  a negative base to the power 0: the result is 1
  //   6  0 to a negative power
  //   7  0 to the power 0: the result is 1
  // A negative base takes whole exponents up to gMachineMaxInt in magnitude and exponents that are one over
  // an odd whole number, both within 32 units of gMachineEpsilon: Power(-8, 1.0 / 3) is -2.
  static int Power(double base, double exponent, double& result);

  // a b, formed from logarithms: 0 when a factor is 0 or the product is below e^gMachineMinExp, the missing
  // number above e^gMachineMaxExp and when a factor is NaN or missing.  Relative error up to 3e-13.
  static double Multiply(double a, double b);

  // Whether a and b are both 0, or of one sign and differ by at most `tolerance` times gMachineEpsilon of the
  // larger magnitude.  0 is close to no other number, and nothing is close to NaN or infinity.
  static bool AlmostEqual(double a, double b, double tolerance);

  // Whether x is one over an odd (even) whole number up to gMachineMaxInt in magnitude, as AlmostEqual has
  // it.
  static bool IsOneOverOddInteger(double x, double tolerance);
  static bool IsOneOverEvenInteger(double x, double tolerance);
};

}  // namespace KxMath_940

#endif  // VEYRA_MATH_KXPOWER_H_
