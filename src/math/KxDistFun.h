// Probability distributions: cumulative functions (Cdf), quantiles (Idf), densities (Pdf), upper tails (Sig),
// non-central variants and searches for a non-centrality parameter.
//
//   const double p = KxDistFun::SigT(2.5, 12);       // P(T > 2.5)
//   long ifault = 0;
//   const double q = KxDistFun::CdfBin(3, 10, 0.2, ifault);
//
// Failure: nothing throws, and no argument hangs, traps or overflows the stack.  A function that fails
// returns the missing number (math/KxMV.h).  `ifault` is set by every call: 0 done; 1 an argument out of its
// domain, which NaN and the missing number always are; 2 the result overflowed or a search or a sum did not
// end within its limit; 3 an argument that must be whole is not.  Functions without it answer missing for
// every code but 0.
//
// Ranges: an infinite point of a distribution has the limit as its value; an infinite parameter is out of
// domain, unless the function says otherwise.  Probabilities below 1e-307 (e^-708.39) come out as 0.
//
// Accuracy: docs/accuracy.md has the measured errors.  The limits, relative to the value, on top of what a
// change of the point by 4 units in its last place does to it: 1e-13 for the normal distribution, error
// functions, log-gamma, exponential and Cauchy (t with one degree of freedom); 1e-12 for the others with
// parameters from 1e-3 to 1e3, and 1e-15 times the largest parameter up to 1e8; 1e-10 for what is
// non-central; a quantile's probability is p to 1e-10 of min(p, 1 - p).
//
// Work: up to 0.1 ms for parameters to 1e6, 1 ms to 1e8; searches for a parameter up to 10 ms where the
// others are up to 1e6, whatever the answer.  Beyond, the incomplete gamma function costs no more and loses
// nothing; the incomplete beta function stops after 10,000 steps and falls back to a normal approximation;
// sums of more than about a million terms are not begun (code 2).
//
// Threads: everything here may be called by any number of threads.

#ifndef VEYRA_MATH_KXDISTFUN_H_
#define VEYRA_MATH_KXDISTFUN_H_

#include <cmath>
#include <cstdint>
#include <span>

#include "math/KxMV.h"
#include "math/KxPower.h"
#include "veyra/Export.h"

namespace KxMath_940 {

class VEYRA_API KxDistFun {
 public:
  // --- normal distribution.  Cdf: Ooura's error functions (1996).  Idf: AS 241 (Wichura 1988).

  // sd > 0, finite; mean finite.
  static double CdfNorm(double x, double mean, double sd);
  static double CdfStdNorm(double x);
  // sd != 0, of which the magnitude counts.
  static double PdfNormal(double x, double mean, double sd);
  // Here, because a call would cost an eighth of it.  What rounding takes from the square costs x^2 / 2
  // machine units: 8e-14 where the density ends, a tenth of what rounding x itself costs there.
  static double PdfNormalStandard(double x) {
    constexpr double kInverseRootTwoPi = 0.3989422804014327;
    const double power = -0.5 * x * x;
    if (power >= KxPower::gMachineMinExp) return kInverseRootTwoPi * std::exp(power);
    const bool isNumber = !std::isnan(x) && !KxCommon_940::KxMV::IsMissing(x);
    return isNumber ? 0 : KxCommon_940::KxMV::Missing();
  }
  // 0 < p < 1, sd > 0; p = 0.5 gives the mean.
  static double IdfNorm(double p, double mean, double sd);
  static double IdfStdNorm(double p);

  // --- Student's t with df > 0 degrees of freedom, not necessarily whole; infinite ones are taken too, and
  // above 1e8 the distribution is normal.  Cdf and Sig: the incomplete beta function, the arctangent for df
  // = 1.

  static double CdfT(double t, double df);
  static double SigT(double t, double df);
  static double PdfT(double t, double df, long& ifault);
  // 0 < p < 1; p = 0.5 gives 0.  Tolerances as in zentidft.
  static double IdfT(double p, double df, double tolerance1, double tolerance2);

  // --- chi-square with df > 0 degrees of freedom: half of it is gamma with shape df / 2.

  static double CdfChi(double x, double df);  // 0 for x <= 0
  static double SigChi(double x, double df);  // 1 for x <= 0
  static double IdfChi(double p, double df);  // 0 <= p < 1; p = 0 gives 0

  // --- F with df1 > 0 and df2 > 0 degrees of freedom: the incomplete beta function.

  static double CdfF(double x, double df1, double df2);  // 0 for x <= 0
  static double SigF(double x, double df1, double df2);  // 1 for x <= 0
  static double IdfF(double p, double df1, double df2);  // 0 <= p < 1; p = 0 gives 0

  // --- gamma with the density rate^shape x^(shape - 1) e^(-rate x) / Gamma(shape); shape > 0, rate > 0.

  static double CdfGam(double x, double shape, double rate);  // 0 for x <= 0
  // 0 for x < 0.  At x = 0: 0 for shape > 1, rate for shape 1, missing for shape < 1.
  static double PdfGamma(double x, double shape, double rate);
  // 0 <= p < 1; p = 0 gives 0, and so does shape 0, where all of the distribution lies.
  static double IdfGam(const double& p, const double& shape, const double& rate);

  // --- beta with a > 0, b > 0 on [0, 1].

  static double CdfBeta(double x, double a, double b);  // 0 for x <= 0, 1 for x >= 1
  // 0 <= p <= 1; as betinv with the library's tolerances.
  static double IdfBeta(const double& p, const double& a, const double& b);

  // --- binomial: successes in n trials of probability p in [0, 1].  Terms in deviance form (Loader 2000).

  // P(X <= k); n >= 1, whole (code 3); k is rounded down.
  static double CdfBin(double k, double n, double p, long& ifault);
  // P(X = k); n >= 1.  0 for k outside [0, n] or not whole.  An n that is not whole takes the general
  // binomial coefficient.
  static double PdfBin(double k, double n, double p, long& ifault);
  // The smallest k with P(X <= k) >= prob, in [0, n]; n >= 1, whole (code 3), at most 2^53 (code 2),
  // 0 <= prob <= 1.  Values within 128 gMachineEpsilon of prob, relative to it, count as equal.  Up to 20,000
  // steps from a normal approximation, which Newton's iteration brings near where prob is below 1e-6.
  static double IdfBin(double prob, double n, double p, long& ifault);

  // --- negative binomial: P(X = x) for the number X of failures before the r-th success (Johnson, Kotz and
  // Kemp 1992, 5.1), Gamma(x + r) / (x! Gamma(r)) p^r (1 - p)^x; r > 0, not necessarily whole, 0 < p <= 1.  0
  // for x < 0 or not whole.
  static double PdfNegBin(double x, double r, double p, long& ifault);

  // --- hypergeometric: successes x in a sample without replacement from `total` items, `successes` of which
  // are ones.  0 < sample <= total, 0 < successes <= total, both at most 2^53, max(0, sample - total +
  // successes) <= x <= min(sample, successes).  Terms in deviance form (Loader 2000).

  static double PdfHyper(std::int64_t x, std::int64_t total, std::int64_t sample, std::int64_t successes);
  // P(X <= x), summed from x away from the mean by the ratio of neighbours (Johnson, Kotz and Kemp
  // 1992, 6.2); code 2 when the standard deviation exceeds 100,000.
  static double CDFHyper(std::int64_t x, std::int64_t total, std::int64_t sample, std::int64_t successes,
                         int& ifault);

  // --- non-central distributions.
  // A tolerance is the part of a sum or an integral that may be left out; where it is less than the
  // functions can do it counts as what they can.  NaN, missing and negative ones are out of domain.

  // A Poisson mixture of central distributions (Patnaik 1949), summed from above the largest term downwards,
  // where the recurrence only adds (Ding 1992): upwards from a term below it the recurrence subtracts, and
  // the lower tail loses its digits.  Where more than some thousand terms count, the trapezoidal rule over
  // some of them.  df > 0, lambda >= 0; 0 for x <= 0.  Lambda above 2e9 is code 2.
  static double NonCentralCdfChi(double x, double df, double lambda);
  // As ncdbet.  df1 > 0, df2 > 0, lambda >= 0; 0 for x <= 0.
  static double NonCentralCdfF(double x, double df1, double df2, double lambda, double tolerance);
  // The distribution of (Z + delta) / sqrt(C / df), Z standard normal, C chi-square with df > 0 degrees of
  // freedom; any finite delta.  The integral over the logarithm of sqrt(C / df) (Johnson, Kotz and
  // Balakrishnan 1995, 31.2) by the trapezoidal rule with an exponentially widened lower end (Takahasi and
  // Mori 1974), by parts for few degrees of freedom, or over Z where |delta| is large; some hundred nodes
  // whatever the parameters.  Above 1e13 degrees of freedom the normal approximation of Johnson and Welch
  // (1940).
  static double NonCentralCdfT(double t, double df, double delta, double tolerance);
  static double NonCentralPdfT(double t, double df, double delta, long& ifault);

  // --- the non-centrality parameter at which the non-central Cdf at the point is `prob`.
  // tolerance >= 0, 0 <= prob <= 1.  The Cdf falls as the parameter grows.  prob = 0 is reached where the Cdf
  // underflows.

  // Doubles or halves lambda = x until the answer lies between two values, then halves what is between them
  // until the Cdf is within `tolerance` of prob and the bracket is narrower than that, or until its ends
  // agree to 8 units of gMachineEpsilon.
  // lambda >= 0; missing when the central Cdf is not above prob.
  static double FindNCParamChi(double x, double df, double prob, double tolerance);
  // Brackets the answer between two values, then interpolates (Chandrupatla 1997) until the bracket is
  // narrower than `tolerance`, or than 8 units of gMachineEpsilon of its ends, or until the odds of the Cdf
  // agree with those of prob to 4 such units: some 15 values of the Cdf, up to 60 where prob is near 1.
  // Parameters below 1e-18 count as 0.  Missing also when lambda would be above 2e9.
  static double FindNCParamF(double x, double df1, double df2, double prob, double tolerance);
  // Any sign; found as that of F.  `cdfTolerance` is handed to NonCentralCdfT.
  static double FindNCParamT(double t, double df, double cdfTolerance, double prob, double tolerance);

  // --- weighted samples.  Values ascend, weights are as many and not negative (else code 1); both are
  // borrowed.

  // The p-quantile, 0 <= p <= 1, interpolated at (W + 1) p between the cumulated weights, W their sum:
  // definition 6 of Hyndman and Fan (1996) for whole weights.  Code 1 for an empty sample.
  static double GPTile(std::span<const double> values, std::span<const double> weights, double p,
                       long& ifault);
  // Sets the narrowest pair of order statistics with equal ranks from both ends that holds the median with at
  // least the probability `confidence` (Thompson 1936), 0 < confidence < 1, and returns that probability.
  // Weights are whole counts (code 3).  Code 2, and the bounds missing, when the sample is too small for any
  // pair.
  static double Mednci(std::span<const double> values, std::span<const double> weights, double confidence,
                       double& lower, double& upper, long& ifault);

  // --- what the functions above are made of.

  // The incomplete gamma function P(p, x), or Q = 1 - P unless `lowerTail`; p > 0; P = 0 for x <= 0.
  // Series, continued fraction (Shea 1988, AS 239); for p >= 1000 near x = p the uniform expansion (Temme
  // 1979), because their terms become ever more with p.
  static double gammad(double x, double p, bool lowerTail, long& ifault);
  // The regularised incomplete beta function I_x(a, b); a > 0, b > 0; 0 for x <= 0, 1 for x >= 1.
  // Series, continued fraction (DiDonato and Morris 1992), Peizer and Pratt (1968) where that does not
  // converge.
  static double cdfbet(double x, double a, double b, long& ifault);
  // 1 - e^(-rate x); rate > 0; 0 for x <= 0.
  static double cdfexp(double x, double rate, long& ifault);
  static double zentcdff(double x, double df1, double df2, long& ifault);
  static double zentcdft(double t, double df, long& ifault);
  // Start and step of AS 91 (Best and Roberts 1975), then Halley's iteration on the logarithm of the smaller
  // tail.
  static double zentidfchi(double p, double df, long& ifault);
  static double zentidff(double p, double df1, double df2, long& ifault);
  // Start by ACM Algorithm 396 (Hill 1970), then Halley's iteration on the logarithm of the smaller tail.
  // The search ends when the next step changes the tail by less than the larger of the tolerances, of itself;
  // below 1e-16 they count as that, and above 1e-6.  Neither may be NaN, missing or negative (code 1).
  static double zentidft(double p, double df, long& ifault, double tolerance1, double tolerance2);
  // The x with I_x(a, b) = p; 0 <= p <= 1.  Start by AS 109 (Cran, Martin and Thomas 1977), then as zentidft.
  static double betinv(double p, double a, double b, double tolerance1, double tolerance2);
  // Normal quantile, AS 241 (PPND16); 0 < p < 1.
  static double probit(double p);
  static double prbnrm(double x);
  static double derf(double x);
  static double derfc(double x);
  // ln Gamma(x), x > 0.  Stirling's series from 8, polynomials below.  Nine terms of the series: six would be
  // six units in the last place off at 8, where the function would step back.
  static double dnlgam(double x);
  static double zentdnlgam(double x);
  // ln of n over k, 0 <= k <= n, neither necessarily whole.
  static double dnlbnc(double n, double k, long& ifault);
  // Non-central beta: a Poisson mixture of I_x(a + j, b) with mean lambda / 2 (Tang 1938), summed as
  // NonCentralCdfChi.
  static double ncdbet(double x, double a, double b, double lambda, double tolerance, long& ifault);
  // The starting value of AS 91 for the chi-square quantile; 0 < p < 1, df > 0.
  static double idfchb(double p, double df, long& ifault);
  // Peizer and Pratt's (1 - x^2 + 2 x ln x) / (1 - x)^2 for x >= 0: 1 at 0, 0 at 1, -1 at infinity.
  static double cbtaux(double x);
};

}  // namespace KxMath_940

#endif  // VEYRA_MATH_KXDISTFUN_H_
