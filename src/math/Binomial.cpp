// The binomial and negative binomial distributions.

#include <algorithm>
#include <cmath>

#include "math/DiscreteTermsInternal.h"
#include "math/IncompleteBetaInternal.h"
#include "math/KxDistFun.h"
#include "math/LogGammaInternal.h"

namespace KxMath_940 {

namespace {

// The last of the whole numbers that differ from their neighbours.
constexpr double kLargestCount = 9007199254740992;
constexpr int kMostQuantileSteps = 20000;
// How far a value may be from a probability, relative to it, and count as equal.
constexpr double kSameProbability = 2.842170943040401e-14;

// Where the normal approximation of a quantile is some steps off at most.
constexpr double kSmallProbability = 1e-6;

bool IsProbability(double p) { return p >= 0 && p <= 1; }
bool IsNumberOfTrials(double n) { return n >= 1 && n < kInfinity; }

// What a distribution with n trials, which must be whole, answers.
long CodeOfBinomial(double n, double p) {
  if (AreNumbers(n) && std::isfinite(n) && !IsWhole(n)) return kNotWhole;
  return AreNumbers(n, p) && IsNumberOfTrials(n) && IsProbability(p) ? kDone : kOutOfDomain;
}

// base^exponent, where 1 - base is `other`.
Scaled PowerOf(double base, double other, double exponent) {
  if (exponent == 0) return {0, 1};
  if (base == 0) return {0, 0};
  return {exponent * (other < 0.5 ? std::log1p(-other) : std::log(base)), 1};
}

// P(X <= k) for whole k in [0, n], and the term P(X = k).
struct BinomialPoint {
  double cumulative;
  double term;
};

BinomialPoint PointAt(double k, double n, double p) {
  const double cumulative = k < n ? BetaTails(n - k, k + 1, {1 - p, p}).lower : 1;
  return {cumulative, ValueOf(BinomialTerm(k, n - k, p, 1 - p))};
}

bool Reaches(double cumulative, double prob) { return cumulative >= prob * (1 - kSameProbability); }

// Nearer to the quantile of a small probability, where the normal approximation is hundreds of counts off:
// Newton's iteration on the logarithm of the distribution function, which is concave.
double ApproachQuantile(double k, double n, double p, double prob) {
  const double goal = std::log(prob);
  for (int i = 0; i < 30 && k < n; ++i) {
    const Scaled lower = BetaLower(n - k, k + 1, {1 - p, p});
    const Scaled term = BinomialTerm(k, n - k, p, 1 - p);
    const double distance = lower.exponent + std::log(lower.factor) - goal;
    // The part of P(X <= k) that is P(X = k).
    const double part = term.factor / lower.factor * std::exp(term.exponent - lower.exponent);
    const double jump = distance / -std::log1p(-std::min(part, 1 - kEpsilon));
    if (!(std::fabs(jump) >= 1)) break;
    k = std::clamp(std::floor(k - jump), 0.0, n);
  }
  return k;
}

// About the smallest k whose cumulative probability reaches prob, from k by the ratio of neighbouring terms;
// negative when the steps do not do.
double StepTowardsQuantile(double k, double n, double p, double prob) {
  const double ratio = p / (1 - p);
  BinomialPoint at = PointAt(k, n, p);
  double computed = at.cumulative;  // not as a sum or a difference
  int steps = 0;
  for (; !Reaches(at.cumulative, prob) && k < n; ++k) {
    if (++steps > kMostQuantileSteps) return -1;
    at.term *= (n - k) / (k + 1) * ratio;
    at.cumulative += at.term;
    // A term that has vanished says nothing about the next one.
    if (at.term == 0) at = PointAt(k + 1, n, p);
  }
  for (; k > 0; --k) {
    if (++steps > kMostQuantileSteps) return -1;
    double before = at.cumulative - at.term;
    // What is left of a difference is computed when it has lost digits.
    if (before < computed / 16) computed = before = PointAt(k - 1, n, p).cumulative;
    if (!Reaches(before, prob)) break;
    at = {before, at.term * k / (n - k + 1) / ratio};
  }
  return k;
}

// The sums of the steps differ from the distribution function in the last digits, which decide.
double SettleQuantile(double k, double n, double p, double prob) {
  const auto reaches = [&](double count) {
    return count >= n || Reaches(BetaTails(n - count, count + 1, {1 - p, p}).lower, prob);
  };
  int steps = 0;
  while (!reaches(k) && ++steps < kMostQuantileSteps) ++k;
  while (k > 0 && reaches(k - 1) && ++steps < kMostQuantileSteps) --k;
  return k;
}

}  // namespace

Scaled BinomialTerm(double k, double m, double p, double q) {
  if (k == 0) return PowerOf(q, p, m);
  if (m == 0) return PowerOf(p, q, k);
  if (p == 0 || q == 0) return {0, 0};
  Scaled term = BetaPrefactor(k, m, {p, q});
  term.factor *= 1 / k + 1 / m;
  return term;
}

double KxDistFun::CdfBin(double k, double n, double p, long& ifault) {
  const long code = CodeOfBinomial(n, p);
  if (!AreNumbers(k) || code != kDone) return Fail(ifault, AreNumbers(k) ? code : kOutOfDomain);
  ifault = kDone;
  k = std::floor(k);
  if (k < 0) return 0;
  if (k >= n) return 1;
  return CheckedProbability(BetaTails(n - k, k + 1, {1 - p, p}).lower, ifault);
}

double KxDistFun::PdfBin(double k, double n, double p, long& ifault) {
  if (!AreNumbers(k, n, p) || !IsNumberOfTrials(n) || !IsProbability(p)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  if (!(k >= 0 && k <= n) || !IsWhole(k)) return 0;
  return CheckedProbability(ValueOf(BinomialTerm(k, n - k, p, 1 - p)), ifault);
}

double KxDistFun::IdfBin(double prob, double n, double p, long& ifault) {
  const long code = CodeOfBinomial(n, p);
  if (!IsProbability(prob) || code != kDone) return Fail(ifault, IsProbability(prob) ? code : kOutOfDomain);
  ifault = kDone;
  if (n > kLargestCount) return Fail(ifault, kFailed);
  if (prob == 0 || p == 0) return 0;
  if (prob == 1 || p == 1) return n;
  const double start = probit(prob) * std::sqrt(n * p * (1 - p)) + n * p - 0.5;
  double k = std::clamp(std::floor(start), 0.0, n);
  if (prob < kSmallProbability) k = ApproachQuantile(k, n, p, prob);
  k = StepTowardsQuantile(k, n, p, prob);
  return k >= 0 ? SettleQuantile(k, n, p, prob) : Fail(ifault, kFailed);
}

double KxDistFun::PdfNegBin(double x, double r, double p, long& ifault) {
  if (!AreNumbers(x, r, p) || !IsParameter(r) || !(p > 0 && p <= 1)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  if (!(x >= 0 && x < kInfinity) || !IsWhole(x)) return 0;
  Scaled term = BinomialTerm(r, x, p, 1 - p);
  term.factor *= r / (r + x);
  return CheckedProbability(ValueOf(term), ifault);
}

double KxDistFun::dnlbnc(double n, double k, long& ifault) {
  if (!AreNumbers(n, k) || !(k >= 0 && k <= n) || n == kInfinity) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  const double m = n - k;
  if (k == 0 || m == 0) return 0;
  if (k == 1 || m == 1) return std::log(n);
  return CheckedNumber(std::max(0.0, LogBinomial(k, m)), ifault);
}

}  // namespace KxMath_940
