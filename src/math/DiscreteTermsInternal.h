// Probabilities of single counts, as a logarithm and a factor so that quotients of them neither overflow nor
// vanish.

#ifndef VEYRA_MATH_DISCRETETERMSINTERNAL_H_
#define VEYRA_MATH_DISCRETETERMSINTERNAL_H_

#include "math/ValuesInternal.h"

namespace KxMath_940 {

// Gamma(k + m + 1) / (Gamma(k + 1) Gamma(m + 1)) p^k q^m for k >= 0 successes, m >= 0 failures, p + q = 1, in
// the deviance form of Loader (2000).
Scaled BinomialTerm(double k, double m, double p, double q);

}  // namespace KxMath_940

#endif  // VEYRA_MATH_DISCRETETERMSINTERNAL_H_
