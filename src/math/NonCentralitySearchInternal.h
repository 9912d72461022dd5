// The search for a non-centrality parameter, of any distribution function that falls as the parameter grows.

#ifndef VEYRA_MATH_NONCENTRALITYSEARCHINTERNAL_H_
#define VEYRA_MATH_NONCENTRALITYSEARCHINTERNAL_H_

#include <algorithm>
#include <cmath>

#include "math/ValuesInternal.h"

namespace KxMath_940 {

// No change of a parameter below this changes a distribution function: its logarithm falls by no more than 40
// times the parameter's change.
constexpr double kLeastWidth = 1e-18;
// Odds that differ by no more, relative to them, count as the same.
constexpr double kSameProbability = 4 * kEpsilon;
// What ends of a bracket may differ by, in units of gMachineEpsilon.
constexpr double kSameEnds = 8;
// Interpolation is done with long before; halving alone ends every bracket of doubles.
constexpr int kMostInterpolations = 40;
constexpr int kMostSteps = 2000;

// A parameter, the distribution function there, and how far that is from the probability that is looked for.
struct SearchPoint {
  double parameter;
  double value;
  double distance;

  bool IsMissing() const { return KxCommon_940::KxMV::IsMissing(value); }
};

// The distribution function as a search sees it.  What is not known is missing.
template <class Cdf>
class SearchedFunction {
 public:
  SearchedFunction(Cdf cdf, double prob) : fCdf(cdf), fProb(prob) {}

  SearchPoint At(double parameter) const {
    const double value = fCdf(parameter);
    return {parameter, value, DistanceOf(value)};
  }

  double Prob() const { return fProb; }

 private:
  // The logarithm of the ratio of both odds: positive where the value is above the probability, and in both
  // tails nearly a polynomial of the parameter.
  double DistanceOf(double value) const {
    constexpr double kFarthest = 800;
    if (value == fProb) return 0;
    const double distance = std::log1p((value - fProb) / (fProb * (1 - value)));
    return std::fabs(distance) <= kSameProbability ? 0 : std::clamp(distance, -kFarthest, kFarthest);
  }

  Cdf fCdf;
  double fProb;
};

// The parameter between two points, one on each side of the probability, to within `tolerance` or 8 units of
// gMachineEpsilon, whichever is more: inverse quadratic interpolation where three points promise that it
// converges, else halving (Chandrupatla 1997, "A new hybrid quadratic/bisection algorithm for finding the
// zero of a nonlinear function without using derivatives").
template <class Cdf>
double SolveBracket(const SearchedFunction<Cdf>& function, SearchPoint a, SearchPoint b, double tolerance) {
  double part = 0.5;  // where the next point lies between a, the latest one, and b, beyond the answer
  for (int i = 0; i < kMostSteps; ++i) {
    const SearchPoint next = function.At(a.parameter + part * (b.parameter - a.parameter));
    if (next.IsMissing()) return kMissing;
    if (next.distance == 0) return next.parameter;
    const bool isSameSide = (next.distance > 0) == (a.distance > 0);
    const SearchPoint c = isSameSide ? a : b;
    if (!isSameSide) b = a;
    a = next;
    const SearchPoint& best = std::fabs(a.distance) < std::fabs(b.distance) ? a : b;
    const double width = std::fabs(b.parameter - a.parameter);
    const double closeEnough =
        std::max({tolerance, kLeastWidth, kSameEnds * kEpsilon * std::fabs(best.parameter)});
    if (width <= closeEnough) return best.parameter;
    const double xi = (a.parameter - b.parameter) / (c.parameter - b.parameter);
    const double phi = (a.distance - b.distance) / (c.distance - b.distance);
    part = 0.5;
    if (i < kMostInterpolations && phi * phi < xi && (1 - phi) * (1 - phi) < 1 - xi) {
      part = a.distance / (b.distance - a.distance) * c.distance / (b.distance - c.distance) +
             (c.parameter - a.parameter) / (b.parameter - a.parameter) * a.distance /
                 (c.distance - a.distance) * b.distance / (c.distance - b.distance);
    }
    const double least = closeEnough / 2 / width;
    part = std::clamp(part, least, 1 - least);
  }
  return kMissing;
}

// For a parameter from 0 to `largest`; missing where the function does not begin above the probability.  The
// answer is bracketed between 0 and `scale` or beyond.
template <class Cdf>
double FindFromZero(const SearchedFunction<Cdf>& function, double scale, double largest, double tolerance) {
  constexpr double kFactor = 4;
  SearchPoint last = function.At(0);
  if (last.IsMissing() || last.distance <= 0) return last.value > function.Prob() ? 0 : kMissing;
  for (double parameter = std::min(scale, largest);; parameter = std::min(kFactor * parameter, largest)) {
    const SearchPoint next = function.At(parameter);
    if (next.IsMissing()) return kMissing;
    if (next.distance == 0) return parameter;
    if (next.distance < 0) return SolveBracket(function, next, last, tolerance);
    if (parameter == largest) return kMissing;
    last = next;
  }
}

// For a parameter of any sign: brackets the answer from `start` by doubled strides.
template <class Cdf>
double FindAnywhere(const SearchedFunction<Cdf>& function, double start, double stride, double tolerance) {
  constexpr int kMostStrides = 100;
  const SearchPoint first = function.At(start);
  if (first.IsMissing()) return kMissing;
  if (first.distance == 0) return start;
  if (first.distance < 0) stride = -stride;
  SearchPoint last = first;
  for (int i = 0; i < kMostStrides; ++i, stride *= 2) {
    const SearchPoint next = function.At(start + stride);
    if (next.IsMissing()) return kMissing;
    if (next.distance == 0) return next.parameter;
    if ((next.distance > 0) != (first.distance > 0)) return SolveBracket(function, next, last, tolerance);
    last = next;
  }
  return kMissing;
}

}  // namespace KxMath_940

#endif  // VEYRA_MATH_NONCENTRALITYSEARCHINTERNAL_H_
