// Casts from double to whole numbers that are defined for every double.

#ifndef VEYRA_DATA_TRUNCATE_H_
#define VEYRA_DATA_TRUNCATE_H_

#include <limits>

namespace KxVeyra_940 {

// `number` without its fraction; the smallest Integer when that does not fit, and for NaN.
template <class Integer>
constexpr Integer TruncateTo(double number) {
  // The smallest value is a power of two and exact as a double; the largest may not be.
  constexpr double kLowest = static_cast<double>(std::numeric_limits<Integer>::min());
  // Fractions just below the smallest value are cut off too; beyond 2^53 there are none.
  if (!(number > kLowest - 1.0 && number < -kLowest)) return std::numeric_limits<Integer>::min();
  return number <= kLowest ? std::numeric_limits<Integer>::min() : static_cast<Integer>(number);
}

constexpr int TruncateToInt(double number) { return TruncateTo<int>(number); }

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_TRUNCATE_H_
