#include "regression/Normalization.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "math/KxDistFun.h"

namespace KxVeyra_940::Plugin {

namespace {

using Values = std::vector<double>;

// A table of the methods, indexed by Normalization.
struct Link {
  double (*inverse)(double);
  double (*complement)(double);
};

double Logistic(double y) { return 1.0 / (1.0 + std::exp(-y)); }
double LogisticComplement(double y) { return Logistic(-y); }
// The missing number is a number here, and no probability: below -40 there is nothing but 0.
double Normal(double y) { return std::isnan(y) ? y : KxMath_940::KxDistFun::CdfStdNorm(std::max(y, -40.0)); }
double NormalComplement(double y) { return Normal(-y); }
double Cloglog(double y) { return -std::expm1(-std::exp(y)); }
double CloglogComplement(double y) { return std::exp(-std::exp(y)); }
double Loglog(double y) { return CloglogComplement(-y); }
double LoglogComplement(double y) { return Cloglog(-y); }
double Cauchy(double y) { return std::atan2(1.0, -y) / std::numbers::pi; }
double CauchyComplement(double y) { return Cauchy(-y); }
double Identity(double y) { return y; }
double IdentityComplement(double y) { return 1.0 - y; }
double Exponential(double y) { return std::exp(y); }
double ExponentialComplement(double y) { return -std::expm1(y); }

constexpr Link kLinks[] = {
    {Identity, IdentityComplement},        // kNone
    {Logistic, LogisticComplement},        // kSimplemax
    {Logistic, LogisticComplement},        // kSoftmax
    {Logistic, LogisticComplement},        // kLogit
    {Normal, NormalComplement},            // kProbit
    {Cloglog, CloglogComplement},          // kCloglog
    {Exponential, ExponentialComplement},  // kExp
    {Loglog, LoglogComplement},            // kLoglog
    {Cauchy, CauchyComplement},            // kCauchit
};

const Link& LinkOf(Normalization method) { return kLinks[static_cast<std::size_t>(method)]; }

bool DivideBySum(Values& values) {
  const double sum = std::accumulate(values.begin(), values.end(), 0.0);
  if (!(std::abs(sum) > 0 && std::isfinite(sum))) return false;
  for (double& value : values) value /= sum;
  return true;
}

bool Softmax(Values& values) {
  const double largest = *std::max_element(values.begin(), values.end());
  if (!std::isfinite(largest)) return false;
  for (double& value : values) value = std::exp(value - largest);
  return DivideBySum(values);
}

// The last category has what the others leave.
bool GiveRestToLast(Values& values) {
  values.back() = 1.0 - std::accumulate(values.begin(), values.end() - 1, 0.0);
  return true;
}

bool ApplyLink(const Link& link, std::size_t decider, Values& values) {
  if (values.size() == 2) {
    const double y = values[decider];
    values[decider] = link.inverse(y);
    values[1 - decider] = link.complement(y);
    return true;
  }
  for (double& value : values) value = link.inverse(value);
  return true;
}

bool AreNumbers(const Values& values) {
  return std::none_of(values.begin(), values.end(), [](double value) { return std::isnan(value); });
}

}  // namespace

double InverseLink(Normalization method, double y) { return LinkOf(method).inverse(y); }
double InverseLinkComplement(Normalization method, double y) { return LinkOf(method).complement(y); }

bool NormalizeNominal(Normalization method, std::size_t decider, Values& values) {
  if (!AreNumbers(values)) return false;
  switch (method) {
    case Normalization::kSoftmax:
      return Softmax(values);
    case Normalization::kSimplemax:
      return DivideBySum(values);
    case Normalization::kNone:
      return GiveRestToLast(values) && AreNumbers(values);
    default:
      return ApplyLink(LinkOf(method), decider, values) && AreNumbers(values);
  }
}

bool NormalizeOrdinal(Normalization method, Values& values) {
  if (!AreNumbers(values)) return false;
  const Link& link = LinkOf(method);
  const std::size_t last = values.size() - 1;
  values[last] = link.complement(values[last - 1]);
  // From the end, because each category needs the equation of the one before it.
  for (std::size_t j = last - 1; j > 0; --j) {
    const double upper = values[j];
    const double lower = values[j - 1];
    // Of two forms the one whose terms are small.
    values[j] = lower > 0 ? link.complement(lower) - link.complement(upper)
                          : link.inverse(upper) - link.inverse(lower);
  }
  values[0] = link.inverse(values[0]);
  return AreNumbers(values);
}

}  // namespace KxVeyra_940::Plugin
