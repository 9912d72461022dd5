#include "math/KxPower.h"

#include <algorithm>
#include <cmath>

#include "math/KxMV.h"

namespace KxMath_940 {

using KxCommon_940::KxMV;

namespace {

// How far from a whole number an exponent of a negative base may be.
constexpr double kWholeTolerance = 32;

bool IsUsable(double x) { return !std::isnan(x) && !KxMV::IsMissing(x); }

bool IsAlmostWhole(double x, double tolerance) { return KxPower::AlmostEqual(x, std::round(x), tolerance); }

// The halves of even numbers are whole; so are those of odd numbers plus one half.
bool IsOneOver(double x, double tolerance, double shift) {
  const double reciprocal = 1.0 / x;
  if (x == 0 || !std::isfinite(x) || std::fabs(reciprocal) > KxPower::gMachineMaxInt) return false;
  return IsAlmostWhole(reciprocal / 2 + shift, tolerance);
}

// The halves of fractions far below 1 may underflow to a whole number, 0.
bool IsInRange(double magnitude) { return magnitude > 0.5 && magnitude <= KxPower::gMachineMaxInt; }

bool IsEven(double magnitude) {
  return IsInRange(magnitude) && IsAlmostWhole(magnitude / 2, kWholeTolerance);
}

bool IsOdd(double magnitude) {
  return IsInRange(magnitude) && IsAlmostWhole(magnitude / 2 + 0.5, kWholeTolerance);
}

int PowerOfPositive(double base, double exponent, double& result) {
  return KxPower::Exponent(exponent * std::log(base), result);
}

int PowerOfNegative(double base, double exponent, double& result) {
  if (exponent == 0) {
    result = 1;
    return 5;
  }
  const double magnitude = std::fabs(exponent);
  if (IsEven(magnitude)) return PowerOfPositive(-base, exponent, result);
  if (!IsOdd(magnitude) && !KxPower::IsOneOverOddInteger(exponent, kWholeTolerance)) return 4;
  const int code = PowerOfPositive(-base, exponent, result);
  if (code == 2) return exponent > 0 ? 3 : 2;
  result = -result;
  return code;
}

}  // namespace

int KxPower::Exponent(double x, double& result) {
  if (x < gMachineMinExp) {
    result = 0;
    return 1;
  }
  if (!(x <= gMachineMaxExp)) {
    result = KxMV::Missing();
    return 2;
  }
  result = std::exp(x);
  return 0;
}

int KxPower::Power(double base, double exponent, double& result) {
  result = KxMV::Missing();
  if (!IsUsable(base) || !IsUsable(exponent)) return 4;
  if (base < 0) return PowerOfNegative(base, exponent, result);
  if (base == 0 && exponent < 0) return 6;
  if (exponent == 0) {
    result = 1;
    return base == 0 ? 7 : 0;
  }
  if (base == 0) {
    result = 0;
    return 0;
  }
  return PowerOfPositive(base, exponent, result);
}

double KxPower::Multiply(double a, double b) {
  if (!IsUsable(a) || !IsUsable(b)) return KxMV::Missing();
  if (a == 0 || b == 0) return 0;
  double magnitude;
  const int code = Exponent(std::log(std::fabs(a)) + std::log(std::fabs(b)), magnitude);
  return code == 0 && (a < 0) != (b < 0) ? -magnitude : magnitude;
}

bool KxPower::AlmostEqual(double a, double b, double tolerance) {
  if (a == 0 && b == 0) return true;
  if (a == 0 || b == 0 || (a < 0) != (b < 0)) return false;
  a = std::fabs(a);
  b = std::fabs(b);
  return std::fabs(a - b) / std::max(a, b) <= tolerance * gMachineEpsilon;
}

bool KxPower::IsOneOverOddInteger(double x, double tolerance) { return IsOneOver(x, tolerance, 0.5); }

bool KxPower::IsOneOverEvenInteger(double x, double tolerance) { return IsOneOver(x, tolerance, 0); }

}  // namespace KxMath_940
