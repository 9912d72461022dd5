// The hypergeometric distribution.

#include <algorithm>
#include <cmath>

#include "math/DiscreteTermsInternal.h"
#include "math/KxDistFun.h"

namespace KxMath_940 {

namespace {

constexpr std::int64_t kLargestCount = std::int64_t{1} << 53;
// Of a distribution whose terms are summed one by one.
constexpr double kLargestDeviation = 1e5;

struct Urn {
  double total;
  double sample;
  double successes;

  double Mean() const { return sample / total * successes; }
  double Deviation() const {
    return std::sqrt(Mean() * ((total - sample) / total) * ((total - successes) / std::max(1.0, total - 1)));
  }
  // P(X = x + 1) / P(X = x).
  double Ratio(double x) const {
    return (successes - x) / (x + 1) * ((sample - x) / (total - successes - sample + x + 1));
  }
};

bool AreInDomain(std::int64_t x, std::int64_t total, std::int64_t sample, std::int64_t successes) {
  if (sample <= 0 || successes <= 0 || total > kLargestCount || sample > total || successes > total)
    return false;
  return x >= std::max(std::int64_t{0}, sample - total + successes) && x <= std::min(sample, successes);
}

Urn MakeUrn(std::int64_t total, std::int64_t sample, std::int64_t successes) {
  return {static_cast<double>(total), static_cast<double>(sample), static_cast<double>(successes)};
}

// P(X = x): successes and others are drawn independently, given how many are drawn in all.
Scaled TermOf(double x, const Urn& urn) {
  const double p = urn.sample / urn.total;
  const double q = (urn.total - urn.sample) / urn.total;
  const Scaled ones = BinomialTerm(x, urn.successes - x, p, q);
  const Scaled others = BinomialTerm(urn.sample - x, urn.total - urn.successes - (urn.sample - x), p, q);
  const Scaled all = BinomialTerm(urn.sample, urn.total - urn.sample, p, q);
  return {ones.exponent + others.exponent - all.exponent, ones.factor * (others.factor / all.factor)};
}

// The sum of P(X = x), P(X = x - 1) .. over P(X = x), for x below the mean.
double SumDownwards(double x, const Urn& urn) {
  double sum = 1;
  double term = 1;
  for (; x > 0 && term > 1e-17 * sum; --x) {
    term /= urn.Ratio(x - 1);
    sum += term;
  }
  return sum;
}

// The sum of P(X = x + 1), P(X = x + 2) .. over P(X = x), for x above the mean.
double SumUpwards(double x, const Urn& urn) {
  double sum = 0;
  double term = 1;
  for (const double last = std::min(urn.sample, urn.successes); x < last && term > 1e-17 * sum; ++x) {
    term *= urn.Ratio(x);
    sum += term;
  }
  return sum;
}

}  // namespace

double KxDistFun::PdfHyper(std::int64_t x, std::int64_t total, std::int64_t sample, std::int64_t successes) {
  if (!AreInDomain(x, total, sample, successes)) return kMissing;
  long ifault;
  return CheckedProbability(ValueOf(TermOf(static_cast<double>(x), MakeUrn(total, sample, successes))),
                            ifault);
}

double KxDistFun::CDFHyper(std::int64_t x, std::int64_t total, std::int64_t sample, std::int64_t successes,
                           int& ifault) {
  ifault = static_cast<int>(kOutOfDomain);
  if (!AreInDomain(x, total, sample, successes)) return kMissing;
  const Urn urn = MakeUrn(total, sample, successes);
  ifault = static_cast<int>(kFailed);
  if (urn.Deviation() > kLargestDeviation) return kMissing;
  ifault = kDone;
  const double count = static_cast<double>(x);
  Scaled term = TermOf(count, urn);
  const bool isBelow = count < urn.Mean();
  term.factor *= isBelow ? SumDownwards(count, urn) : SumUpwards(count, urn);
  return std::clamp(isBelow ? ValueOf(term) : 1 - ValueOf(term), 0.0, 1.0);
}

}  // namespace KxMath_940
