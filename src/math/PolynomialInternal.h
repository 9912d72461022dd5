// Polynomials whose coefficients are known to the compiler.

#ifndef VEYRA_MATH_POLYNOMIALINTERNAL_H_
#define VEYRA_MATH_POLYNOMIALINTERNAL_H_

#include <cstddef>

namespace KxMath_940 {

// The sum of coefficients[k] x^k, by Estrin's scheme: neighbours are joined in independent steps, which takes
// a fraction of the time of Horner's chain.
template <std::size_t kCount>
[[gnu::always_inline]] inline double Polynomial(const double (&coefficients)[kCount], double x) {
  if constexpr (kCount == 1) {
    return coefficients[0];
  } else {
    double joined[(kCount + 1) / 2];
    for (std::size_t i = 0; i < kCount / 2; ++i)
      joined[i] = coefficients[2 * i] + coefficients[2 * i + 1] * x;
    if constexpr (kCount % 2 == 1) joined[kCount / 2] = coefficients[kCount - 1];
    return Polynomial(joined, x * x);
  }
}

}  // namespace KxMath_940

#endif  // VEYRA_MATH_POLYNOMIALINTERNAL_H_
