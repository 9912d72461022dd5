// The non-central t distribution: integrals over u = ln s, s the square root of a chi-square variable over
// its degrees of freedom df = 2a, whose density in u is 2 sqrt(a / (2 pi)) e^(-R(a)) e^(-a (s^2 - 1 - 2u)), R
// Stirling's remainder.  Both integrands have one maximum and fall to both sides.

#include <algorithm>
#include <cmath>

#include "math/ErrorFunctionsInternal.h"
#include "math/IncompleteGammaInternal.h"
#include "math/KxDistFun.h"
#include "math/LogGammaInternal.h"
#include "math/ValuesInternal.h"

namespace KxMath_940 {

namespace {

constexpr double kInverseRootTwo = 0.70710678118654752440;
constexpr double kInverseRootTwoPi = 0.3989422804014327;
// Distance of the nodes, in units of the finest feature of the integrand.
constexpr double kStep = 0.5;
// How fast nodes move apart below all features; faster, and the step would be too long for it.
constexpr double kWidening = 2.0 / 3;
// The density of few degrees of freedom changes over this length of u, and is no normal density.
constexpr double kLongestUnit = 0.25;
// Above, the distribution is that of a normal approximation (Johnson and Welch 1940) to the last digits.
constexpr double kManyDegrees = 1e13;
constexpr int kMostNodes = 5000;

// Phi(z), also where it is no double any more.
Scaled NormalCdf(double z) {
  if (z > 8.3) return {0, 1};
  if (z > -1) return {0, KxDistFun::prbnrm(z)};
  return {-0.5 * z * z, 0.5 * ScaledErfc(-z * kInverseRootTwo)};
}

// phi(z) / Phi(z)
double HazardOf(double z) {
  if (z > 38) return 0;
  if (z > -1) return kInverseRootTwoPi * std::exp(-0.5 * z * z) / KxDistFun::prbnrm(z);
  return 2 * kInverseRootTwoPi / ScaledErfc(-z * kInverseRootTwo);
}

// Where the integrand is largest, how wide it is there, the length over which it may change anywhere, and how
// far below the peak its features end.
struct Peak {
  double u;
  double width;
  double unit;
  double reach;
};

struct CdfIntegrand {
  double t;
  double delta;

  Scaled At(double, double s) const { return NormalCdf(t * s - delta); }

  Peak FindPeak(double a) const {
    // Where Phi is about a normal density, a quadratic equation has the answer; it errs to one side.
    const double linear = t * delta;
    const double square = 2 * a + t * t;
    const double root = std::sqrt(linear * linear + 8 * a * square);
    double u = std::log(linear > 0 ? (linear + root) / (2 * square) : 4 * a / (root - linear));
    if (!(std::fabs(u) < 300)) u = u > 0 ? 300 : -300;
    double width = 1;
    for (int i = 0; i < 30; ++i) {
      const double s = std::exp(u);
      const double pull = t * s;
      const double z = pull - delta;
      const double hazard = HazardOf(z);
      const double slope = 2 * a * (1 - s * s) + pull * hazard;
      const double bend = 4 * a * s * s - pull * hazard + pull * pull * hazard * (z + hazard);
      const double least = a * (1 + s * s);
      width = 1 / std::sqrt(std::max(bend, least));
      const double step = std::clamp(slope * width * width, -2.0, 2.0);
      u += step;
      if (std::fabs(step) < 0.2 * width) break;
    }
    // Phi rises from 0 to 1 about s = delta / t, within 1 / delta.
    const double rise = delta / t > 0 ? std::max(0.0, u - std::log(delta / t)) : 0;
    return {u, width, std::min({width, kLongestUnit, 1 / (1 + std::fabs(delta))}),
            std::max(6 * width, rise + 8 / (1 + std::fabs(delta)))};
  }
};

struct PdfIntegrand {
  double t;
  double delta;

  Scaled At(double u, double s) const {
    const double z = t * s - delta;
    return {u - 0.5 * z * z, kInverseRootTwoPi};
  }

  Peak FindPeak(double a) const {
    const double linear = t * delta;
    const double square = 2 * a + t * t;
    const double root = std::sqrt(linear * linear + 4 * (2 * a + 1) * square);
    // Of the two forms of the root, the one that does not cancel.
    const double s = linear > 0 ? (linear + root) / (2 * square) : 2 * (2 * a + 1) / (root - linear);
    const double bend = 4 * a * s * s + 2 * t * t * s * s - t * s * delta;
    const double width = 1 / std::sqrt(std::max(bend, 2 * a * s * s));
    return {std::log(s), width, std::min(width, kLongestUnit), 6 * width};
  }
};

// The sum of term(i) for i = 0, 1, 2 .. and -1, -2 .. with one maximum near 0, relative to term(0) = 1; NaN
// when the nodes do not do.
template <class Term>
double SumBothWays(Term term, double tolerance) {
  double sum = 1;
  int nodes = 0;
  for (const int direction : {1, -1}) {
    double last = 1;
    for (int i = direction;; i += direction) {
      if (++nodes > kMostNodes) return std::numeric_limits<double>::quiet_NaN();
      const double value = term(i);
      sum += value;
      // Also what is no number any more ends the sum.
      if (!(value > last || value >= tolerance * sum)) break;
      last = value;
    }
  }
  return sum;
}

// The trapezoidal rule in v, where u = peak + unit (v - e^-(c v + reach / unit)): evenly spaced over all
// features, then ever wider below them, where the density of few degrees of freedom falls slowly.
template <class Integrand>
double Integrate(const Integrand& integrand, double a, double tolerance) {
  const Peak peak = integrand.FindPeak(a);
  const double evenNodes = peak.reach / peak.unit;
  const auto termAt = [&](int i) {
    const double v = i * kStep;
    const double depth = kWidening * v + evenNodes;
    const double stretch = depth > 40 ? 0 : std::exp(-depth);
    const double u = peak.u + peak.unit * (v - stretch);
    // s - 1, to the digits that many degrees of freedom multiply.
    const double change = a < 1e3 ? std::exp(u) - 1 : std::expm1(u);
    Scaled value = integrand.At(u, 1 + change);
    value.exponent -= a * (change * (2 + change) - 2 * u);
    value.factor *= peak.unit * (1 + kWidening * stretch);
    return value;
  };
  const Scaled top = termAt(0);
  const double sum = SumBothWays(
      [&](int i) {
        const Scaled value = termAt(i);
        return value.factor / top.factor * std::exp(value.exponent - top.exponent);
      },
      tolerance);
  return ValueOf({top.exponent - StirlingRemainder(a), 2 * std::sqrt(a / kTwoPi) * top.factor * sum * kStep});
}

// For a delta so large that Phi is a step for s: the integral over the normal variable z instead, of phi(z)
// times the probability that a s^2, a gamma variable, lies above (below, for t < 0) a (z + delta)^2 / t^2.
double IntegrateOverNormal(double t, double a, double delta, double tolerance) {
  if ((t > 0) != (delta > 0)) return t > 0 ? 1 : 0;
  const auto tailAt = [&](double z) {
    const double ratio = (z + delta) / t;
    if (!(ratio > 0)) return Tails{0, 1};
    const double x = a * ratio * ratio;
    return x < kInfinity ? GammaTails(a, x) : Tails{1, 0};
  };
  const auto probabilityAt = [&](double z) {
    const Tails tails = tailAt(z);
    return t > 0 ? tails.upper : tails.lower;
  };
  // The maximum, where the slopes of both logarithms add up to 0, lies between -39 and 0: the probability
  // grows as z falls.
  constexpr double kDifference = 1.0 / 64;
  double near = 0;
  double far = -39;
  for (int i = 0; i < 20; ++i) {
    const double z = (near + far) / 2;
    const double ahead = probabilityAt(z - kDifference);
    const double here = probabilityAt(z);
    const bool rises = !(here > 0) || std::log(ahead / here) > (kDifference / 2 - z) * kDifference;
    (rises ? near : far) = z;
  }
  const double centre = (near + far) / 2;
  const double top = kInverseRootTwoPi * std::exp(-0.5 * centre * centre) * probabilityAt(centre);
  if (!(top > 0)) return 0;
  const double sum = SumBothWays(
      [&](int i) {
        const double z = centre + i * kStep;
        return kInverseRootTwoPi * std::exp(-0.5 * z * z) * probabilityAt(z) / top;
      },
      tolerance);
  return top * sum * kStep;
}

// Whether nodes on the scale of Phi's rise would be many times more than the density in u needs.
bool IsStep(double a, double delta) { return std::fabs(delta) > 40 && std::fabs(delta) > 10 * std::sqrt(a); }

double IntegrationTolerance(double tolerance) { return std::clamp(tolerance * 0.1, 1e-13, 1e-3); }

bool AreInDomain(double t, double df, double delta) {
  return AreNumbers(t, df, delta) && IsParameter(df) && std::isfinite(delta);
}

}  // namespace

double KxDistFun::NonCentralCdfT(double t, double df, double delta, double tolerance) {
  if (!AreInDomain(t, df, delta) || !AreNumbers(tolerance) || tolerance < 0) return kMissing;
  if (std::isinf(t)) return t > 0 ? 1 : 0;
  if (std::fabs(t) < 1e-150) return prbnrm(-delta);
  if (df > kManyDegrees) return prbnrm((t - delta) / std::sqrt(1 + t / (2 * df) * t));
  const double a = df / 2;
  const double smallest = IntegrationTolerance(tolerance);
  const double value = IsStep(a, delta) ? IntegrateOverNormal(t, a, delta, smallest)
                                        : Integrate(CdfIntegrand{t, delta}, a, smallest);
  long ifault;
  return CheckedProbability(std::min(1.0, value), ifault);
}

double KxDistFun::NonCentralPdfT(double t, double df, double delta, long& ifault) {
  if (!AreInDomain(t, df, delta)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  if (std::isinf(t)) return 0;
  const double value = Integrate(PdfIntegrand{t, delta}, df / 2, IntegrationTolerance(0));
  return CheckedNumber(value, ifault);
}

}  // namespace KxMath_940
