// The non-central t distribution: integrals over u = ln s, s the square root of a chi-square variable over
// its degrees of freedom df = 2a, whose density in u is 2 sqrt(a / (2 pi)) e^(-R(a)) e^(-a (s^2 - 1 - 2u)), R
// Stirling's remainder.  Both integrands have one maximum and fall to both sides.

#include <algorithm>
#include <cmath>

#include "math/ErrorFunctionsInternal.h"
#include "math/IncompleteGammaInternal.h"
#include "math/KxDistFun.h"
#include "math/LogGammaInternal.h"
#include "math/TrapezoidInternal.h"
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
// Below, the probability that a gamma variable exceeds a number is proportional to its shape, to the last
// digits; shapes near the end of the doubles would be slow.
constexpr double kFewDegrees = 1e-30;

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
    // Phi rises with s for t > 0, and moves the peak up from that of the density, at 0; down for t < 0.
    u = t > 0 ? std::max(u, 0.0) : std::min(u, 0.0);
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
    // Phi changes about s = delta / t, within 1 / delta, or where t s is about 1, unless the density has
    // fallen to nothing above.
    const double changes =
        delta / t > 1 / std::fabs(t) ? delta / t : 1 / (1 + std::fabs(delta)) / std::fabs(t);
    const double rise = std::clamp(u - std::log(changes), 0.0, 20 / a);
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
    // s - 1 to the digits that many degrees of freedom multiply, and s to its own far below.
    const double change = a < 1e3 ? std::exp(u) - 1 : std::expm1(u);
    Scaled value = integrand.At(u, change > -0.5 ? 1 + change : std::exp(u));
    value.exponent -= a * (change * (2 + change) - 2 * u);
    value.factor *= peak.unit * (1 + kWidening * stretch);
    return value;
  };
  const Scaled sum = SumBothWays(termAt, tolerance);
  return ValueOf({sum.exponent - StirlingRemainder(a), 2 * std::sqrt(a / kTwoPi) * sum.factor * kStep});
}

// The probabilities of a s^2, a gamma variable, below and above a ratio^2.
Tails TailsOfSquare(double a, double ratio) {
  if (!(ratio > 0)) return {0, 1};
  const double x = a * ratio * ratio;
  if (!(x < kInfinity)) return {1, 0};
  const bool isNumber = x > std::numeric_limits<double>::min() || a > 1;
  if (isNumber && a < kFewDegrees) {
    const double upper = GammaTails(kFewDegrees, x).upper * (a / kFewDegrees);
    return {1 - upper, upper};
  }
  if (isNumber) return GammaTails(a, x);
  // Of next to no degrees of freedom next to nothing lies between a point that is a double and one that is
  // not.
  return GammaTailsOfTinyPoint(a, std::log(a) + 2 * std::log(ratio));
}

// For a delta so large that Phi is a step for s: the integral over the normal variable z instead, of phi(z)
// times the probability that s lies above (below, for t < 0) (z + delta) / t.
double IntegrateOverNormal(double t, double a, double delta, double tolerance) {
  if ((t > 0) != (delta > 0)) return t > 0 ? 1 : 0;
  const auto probabilityAt = [&](double z) {
    const Tails tails = TailsOfSquare(a, (z + delta) / t);
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
  const auto termAt = [&](int i) {
    const double z = centre + i * kStep;
    return Scaled{-0.5 * z * z, probabilityAt(z)};
  };
  const Scaled sum = SumBothWays(termAt, tolerance);
  return ValueOf({sum.exponent, kInverseRootTwoPi * kStep * sum.factor});
}

// For degrees of freedom so few that the density of u falls over a length that nodes cannot cover: the same
// by parts, Phi(-delta) for t > 0 and the integral of phi(y - e) P(s > y / |t|) (s < y / |t|, for t < 0) over
// y = |t| s, where e is delta with the sign of t.  The trapezoidal rule in w, where y = ln(1 + exp(w - e^-(w
// + depth))): evenly spaced where phi counts, in the logarithm of y below, ever wider where nothing changes.
double IntegrateByParts(double t, double a, double delta, double tolerance) {
  constexpr double kNarrowStep = 0.2;
  constexpr double kNegligible = 1e-20;
  const double beyond = t > 0 ? KxDistFun::prbnrm(-delta) : 0;
  const double centre = t > 0 ? delta : -delta;
  const double end = std::fabs(t) / std::sqrt(a);  // the y about which s ends
  // The first y about which anything changes.
  const double least = std::max(kNegligible, std::min(end, 1 / (1 + std::fabs(centre))));
  const double depth = 2 - std::log(least);
  const auto termAt = [&](double w) {
    const double stretch = std::exp(-(w + depth));
    const double power = w - stretch;
    const double y = power > 40 ? power : std::log1p(std::exp(power));
    const Tails tails = TailsOfSquare(a, y / std::fabs(t));
    const double distance = y - centre;
    const double slope = (1 + stretch) / (1 + std::exp(-power));
    return Scaled{-0.5 * distance * distance,
                  kInverseRootTwoPi * slope * (t > 0 ? tails.upper : tails.lower)};
  };
  // Where the integrand is largest, or nearly.
  const double pulled = t > 0 ? centre / (1 + 2 / end / end) : centre;
  const double start = std::log(std::expm1(std::max(pulled, least)));
  const Scaled sum = SumBothWays([&](int i) { return termAt(start + i * kNarrowStep); }, tolerance);
  return beyond + ValueOf({sum.exponent, sum.factor * kNarrowStep});
}

// Whether nodes on the scale of Phi's rise would be many times more than the density in u needs.
bool IsStep(double a, double delta) { return std::fabs(delta) > 40 && std::fabs(delta) > 10 * std::sqrt(a); }

// Whether nodes would be many because the density of u is long, or Phi changes far below most of it.
bool IsLong(double t, double df) { return df < 0.1 || (df < 2 && t > 1e3); }

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
                       : IsLong(t, df)  ? IntegrateByParts(t, a, delta, smallest)
                                        : Integrate(CdfIntegrand{t, delta}, a, smallest);
  long ifault;
  return CheckedProbability(std::min(1.0, value), ifault);
}

double KxDistFun::NonCentralPdfT(double t, double df, double delta, long& ifault) {
  if (!AreInDomain(t, df, delta)) return Fail(ifault, kOutOfDomain);
  ifault = kDone;
  if (std::isinf(t)) return 0;
  if (df > kManyDegrees) {
    const double spread = std::sqrt(1 + t / (2 * df) * t);
    const double slope = std::max(0.0, 1 + t / (2 * df) * delta) / (spread * spread * spread);
    return CheckedNumber(PdfNormalStandard((t - delta) / spread) * slope, ifault);
  }
  const double value = Integrate(PdfIntegrand{t, delta}, df / 2, IntegrationTolerance(0));
  return CheckedNumber(value, ifault);
}

}  // namespace KxMath_940
