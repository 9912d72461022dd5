// Small things that every distribution needs: which arguments count, and values kept as a logarithm and a
// factor.

#ifndef VEYRA_MATH_VALUESINTERNAL_H_
#define VEYRA_MATH_VALUESINTERNAL_H_

#include <cmath>
#include <limits>

#include "math/KxMV.h"
#include "math/KxPower.h"

namespace KxMath_940 {

// The codes that come back beside a value.
enum : long { kDone = 0, kOutOfDomain = 1, kFailed = 2, kNotWhole = 3 };

inline constexpr double kMissing = KxCommon_940::KxMV::Missing();
inline constexpr double kEpsilon = KxPower::gMachineEpsilon;
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kLogTwo = 0.69314718055994530942;
inline constexpr double kLogTwoPi = 1.8378770664093454836;
inline constexpr double kTwoPi = 6.2831853071795864769;

// The two tails of a distribution at a point.  Each is computed, not taken from the other, where it is small.
struct Tails {
  double lower;
  double upper;
};

// Neither NaN nor missing.
template <class... Numbers>
bool AreNumbers(Numbers... numbers) {
  return ((!std::isnan(numbers) && !KxCommon_940::KxMV::IsMissing(numbers)) && ...);
}

// A parameter that must be positive, and small enough to compute with.
inline bool IsParameter(double x) { return x > 0 && x < kInfinity; }

inline bool IsWhole(double x) { return x == std::floor(x); }

// Sets the code and returns the missing number.
inline double Fail(long& ifault, long code) {
  ifault = code;
  return kMissing;
}

// A result, or code 2 where parameters beyond all measure have made it nonsense.
inline double CheckedProbability(double value, long& ifault) {
  return value >= 0 && value <= 1 ? value : Fail(ifault, kFailed);
}
inline double CheckedNumber(double value, long& ifault) {
  return value > kMissing && value < kInfinity ? value : Fail(ifault, kFailed);
}

// factor e^exponent.
struct Scaled {
  double exponent;
  double factor;
};

// The value; 0 when its logarithm is below gMachineMinExp.
inline double ValueOf(const Scaled& scaled) {
  if (scaled.exponent > -600) return scaled.factor * std::exp(scaled.exponent);
  const double logarithm = scaled.exponent + std::log(scaled.factor);
  return logarithm < KxPower::gMachineMinExp ? 0 : std::exp(logarithm);
}

}  // namespace KxMath_940

#endif  // VEYRA_MATH_VALUESINTERNAL_H_
