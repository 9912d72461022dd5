// The gamma function in the forms that keep their digits: what Stirling's formula leaves, and differences.

#ifndef VEYRA_MATH_LOGGAMMAINTERNAL_H_
#define VEYRA_MATH_LOGGAMMAINTERNAL_H_

namespace KxMath_940 {

// ln Gamma(x) for x > 0.
double LogGamma(double x);

// ln Gamma(1 + x) for 0 <= x <= 1, relative to itself.
double LogGammaOnePlus(double x);

// ln Gamma(z) - (z - 1/2) ln z + z - ln(2 pi) / 2 for z > 0.
double StirlingRemainder(double z);

// ln Gamma(z + step) - ln Gamma(z) for z > 0 and 0 < step <= 1, relative to itself for small steps.
double LogGammaDifference(double z, double step);

// ln(a B(a, b)), for a <= 1 relative to itself: it is near 0 where a is.
double LogScaledBeta(double a, double b);

// ln Gamma(k + m + 1) - ln Gamma(k + 1) - ln Gamma(m + 1) for k, m > 0, relative to itself.
double LogBinomial(double k, double m);

// ln B(a, b).
double LogBeta(double a, double b);

}  // namespace KxMath_940

#endif  // VEYRA_MATH_LOGGAMMAINTERNAL_H_
