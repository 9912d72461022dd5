#include "common/Links.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "math/KxDistFun.h"
#include "math/KxPower.h"

namespace KxVeyra_940::Plugin {

namespace {

using Values = std::vector<double>;

double Identity(double y, double) { return y; }
double IdentityComplement(double y, double) { return 1.0 - y; }
double IdentitySlope(double y, double) { return std::isnan(y) ? y : 1.0; }

double Exponential(double y, double) { return std::exp(y); }
double ExponentialComplement(double y, double) { return -std::expm1(y); }
double LogcSlope(double y, double) { return -std::exp(y); }

double Logistic(double y, double) { return 1.0 / (1.0 + std::exp(-y)); }
double LogisticComplement(double y, double) { return Logistic(-y, 0); }
double LogisticSlope(double y, double) { return Logistic(y, 0) * Logistic(-y, 0); }

// The missing number is a number here, and no probability: below -40 there is nothing but 0.
double Normal(double y, double) {
  return std::isnan(y) ? y : KxMath_940::KxDistFun::CdfStdNorm(std::max(y, -40.0));
}
double NormalComplement(double y, double) { return Normal(-y, 0); }
double NormalSlope(double y, double) {
  return std::exp(-0.5 * y * y) * std::numbers::inv_sqrtpi / std::numbers::sqrt2;
}

double CloglogComplement(double y, double) { return std::exp(-std::exp(y)); }
double Cloglog(double y, double) { return -std::expm1(-std::exp(y)); }
double CloglogSlope(double y, double) { return std::exp(y - std::exp(y)); }

double Loglog(double y, double) { return CloglogComplement(-y, 0); }
double LoglogComplement(double y, double) { return Cloglog(-y, 0); }
double LoglogSlope(double y, double) { return CloglogSlope(-y, 0); }

double Cauchy(double y, double) { return std::atan2(1.0, -y) / std::numbers::pi; }
double CauchyComplement(double y, double) { return Cauchy(-y, 0); }
double CauchySlope(double y, double) { return std::numbers::inv_pi / (1.0 + y * y); }

// Odd roots of negative numbers exist; the other powers of them do not.
double Root(double base, double exponent) {
  if (!(base < 0)) return std::pow(base, exponent);
  double power = 0;
  return KxMath_940::KxPower::Power(base, exponent, power) == 0 ? power : std::nan("");
}

double Power(double y, double d) { return d == 0 ? std::exp(y) : Root(y, 1.0 / d); }
double PowerComplement(double y, double d) { return 1.0 - Power(y, d); }
double PowerSlope(double y, double d) { return d == 0 ? std::exp(y) : Power(y, d) / (d * y); }

// The odds to the power `sign`.
double Odds(double y, double d, double sign) {
  return d == 0 ? std::exp(sign * y) : std::pow(1.0 + d * y, sign / d);
}
double Oddspower(double y, double d) { return 1.0 / (1.0 + Odds(y, d, -1)); }
double OddspowerComplement(double y, double d) { return 1.0 / (1.0 + Odds(y, d, 1)); }
double OddspowerSlope(double y, double d) {
  return Oddspower(y, d) * OddspowerComplement(y, d) / (1.0 + d * y);
}

double Negbin(double y, double k) { return 1.0 / (k * std::expm1(-y)); }
double NegbinComplement(double y, double k) { return 1.0 - Negbin(y, k); }
double NegbinSlope(double y, double k) { return Negbin(y, k) * (1.0 + k * Negbin(y, k)); }

using Function = double (*)(double eta, double parameter);
struct Functions {
  Function mean;
  Function complement;
  Function slope;
};

// Indexed by LinkFunction.
constexpr Functions kFunctions[] = {
    {Identity, IdentityComplement, IdentitySlope},      // kIdentity
    {Exponential, ExponentialComplement, Exponential},  // kLog
    {ExponentialComplement, Exponential, LogcSlope},    // kLogc
    {Logistic, LogisticComplement, LogisticSlope},      // kLogit
    {Normal, NormalComplement, NormalSlope},            // kProbit
    {Cloglog, CloglogComplement, CloglogSlope},         // kCloglog
    {Loglog, LoglogComplement, LoglogSlope},            // kLoglog
    {Cauchy, CauchyComplement, CauchySlope},            // kCauchit
    {Power, PowerComplement, PowerSlope},               // kPower
    {Oddspower, OddspowerComplement, OddspowerSlope},   // kOddspower
    {Negbin, NegbinComplement, NegbinSlope},            // kNegbin
};
static_assert(std::size(kFunctions) == static_cast<std::size_t>(LinkFunction::kNegbin) + 1);

const Functions& FunctionsOf(LinkFunction function) { return kFunctions[static_cast<std::size_t>(function)]; }

}  // namespace

double Link::Mean(double eta) const { return FunctionsOf(function).mean(eta, parameter); }
double Link::Complement(double eta) const { return FunctionsOf(function).complement(eta, parameter); }
double Link::Slope(double eta) const { return FunctionsOf(function).slope(eta, parameter); }

bool AreNumbers(const Values& values) {
  return std::none_of(values.begin(), values.end(), [](double value) { return std::isnan(value); });
}

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

bool DivideCumulative(const Link& link, Values& values) {
  const std::size_t last = values.size() - 1;
  values[last] = link.Complement(values[last - 1]);
  // From the end, because each category needs the equation of the one before it.
  for (std::size_t j = last - 1; j > 0; --j) {
    const double upper = values[j];
    const double lower = values[j - 1];
    // Of two forms the one whose terms are small.
    values[j] =
        lower > 0 ? link.Complement(lower) - link.Complement(upper) : link.Mean(upper) - link.Mean(lower);
  }
  values[0] = link.Mean(values[0]);
  return AreNumbers(values);
}

}  // namespace KxVeyra_940::Plugin
