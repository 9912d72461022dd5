// The number that stands for the absence of one.
//
// Threads: everything here may be called by any number of threads.  Nothing throws.

#ifndef VEYRA_MATH_KXMV_H_
#define VEYRA_MATH_KXMV_H_

#include <limits>

#include "veyra/Export.h"

namespace KxCommon_940 {

class VEYRA_API KxMV {
 public:
  // The most negative finite double, -1.7976931348623157e308.
  static constexpr double Missing() { return -std::numeric_limits<double>::max(); }
  // An exact comparison: NaN and minus infinity are not missing.
  static constexpr bool IsMissing(double x) { return x == Missing(); }
};

}  // namespace KxCommon_940

#endif  // VEYRA_MATH_KXMV_H_
