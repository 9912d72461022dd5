// The search that every continuous quantile ends with.

#ifndef VEYRA_MATH_QUANTILESEARCHINTERNAL_H_
#define VEYRA_MATH_QUANTILESEARCHINTERNAL_H_

#include <algorithm>
#include <cmath>

#include "math/ValuesInternal.h"

namespace KxMath_940 {

// A distribution on the positive numbers at v: its tails, and of its lower tail as a function of ln v the
// slope and the derivative of the slope's logarithm.
struct TailPoint {
  Tails tails;
  double slope;
  double slopeRate;
};

// What two tolerances of a caller ask for together.
inline double SearchTolerance(double tolerance1, double tolerance2) {
  return std::clamp(std::max(tolerance1, tolerance2), 1e-16, 1e-6);
}

// Returns the v whose smaller tail is that of `wanted`, by Halley's iteration on the logarithm of that tail
// as a function of ln v, where it is nearly straight in both ends; what leaves the bracket is halved instead
// (of ln v). Ends when the step that follows changes the tail by less than `tolerance` of itself.  0 when v
// underflows, infinity when it overflows, NaN when 200 steps do not do.
template <class Evaluate>
double SolveTail(Tails wanted, double v, Evaluate evaluate, double tolerance = 1e-15) {
  const bool isLower = wanted.lower <= wanted.upper;
  const double goal = isLower ? wanted.lower : wanted.upper;
  // Halley's iteration cubes the error.
  const double closeEnough = std::cbrt(tolerance) / 3;
  constexpr double kSmallest = std::numeric_limits<double>::min();
  constexpr double kLargest = std::numeric_limits<double>::max();
  double low = 0;
  double high = kInfinity;
  double stride = 1;
  if (!(v > kSmallest)) v = kSmallest;
  if (v > kLargest) v = kLargest;
  for (int i = 0; i < 200; ++i) {
    const TailPoint point = evaluate(v);
    const double tail = isLower ? point.tails.lower : point.tails.upper;
    if (tail == goal) return v;
    ((tail > goal) == isLower ? high : low) = v;
    if (low == kLargest) return kInfinity;
    if (high == kSmallest) return 0;
    const double mismatch = std::log1p((tail - goal) / goal);
    const double rate = (isLower ? point.slope : -point.slope) / tail;
    const double newton = mismatch / rate;
    const double bend = 1 - 0.5 * newton * (point.slopeRate - rate);
    const double step = newton / std::clamp(bend, 0.3, 3.0);
    double next = v * std::exp(-step);
    if (std::fabs(mismatch) < closeEnough && std::fabs(step) < closeEnough) return next;
    if (!(next > low && next < high)) {
      // Also where the tail or its slope has underflowed.
      if (low == 0 || high == kInfinity) {
        stride *= 2;
        next = low == 0 ? high * std::exp(-stride) : low * std::exp(stride);
        if (low == 0 && next < kSmallest) next = kSmallest;
        if (next > kLargest) next = kLargest;
      } else {
        next = std::sqrt(low) * std::sqrt(high);
        if (!(next > low && next < high)) return v;
      }
    }
    v = next;
  }
  return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace KxMath_940

#endif  // VEYRA_MATH_QUANTILESEARCHINTERNAL_H_
