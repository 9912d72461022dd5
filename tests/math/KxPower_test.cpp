// Guarded exponentials, powers and products, and the comparison behind them.

#include "math/KxPower.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "math/KxMV.h"

namespace KxMath_940 {
namespace {

constexpr double kMissing = KxCommon_940::KxMV::Missing();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();
constexpr double kUnit = KxPower::gMachineEpsilon;

TEST(KxMV, OnlyTheLowestFiniteDoubleIsMissing) {
  EXPECT_EQ(KxCommon_940::KxMV::Missing(), -1.7976931348623157e308);
  EXPECT_TRUE(KxCommon_940::KxMV::IsMissing(kMissing));
  for (const double x : {-kInfinity, kNaN, 0.0, -kMissing, std::nextafter(kMissing, 0.0)}) {
    EXPECT_FALSE(KxCommon_940::KxMV::IsMissing(x)) << x;
  }
}

TEST(KxPower, ExponentGuardsBothEnds) {
  const struct {
    double x;
    int code;
    double want;
  } kRows[] = {
      {0, 0, 1},           {709, 0, std::exp(709.0)},       {std::nextafter(709, 710), 2, kMissing},
      {710, 2, kMissing},  {-708.39, 0, std::exp(-708.39)}, {-709, 1, 0},
      {kNaN, 2, kMissing}, {kInfinity, 2, kMissing},        {-kInfinity, 1, 0},
  };
  for (const auto& row : kRows) {
    double result = -1;
    EXPECT_EQ(KxPower::Exponent(row.x, result), row.code) << row.x;
    EXPECT_EQ(result, row.want) << row.x;
  }
}

TEST(KxPower, PowerTellsWhatItDid) {
  const struct {
    const char* what;
    double base, exponent;
    int code;
    double want;
  } kRows[] = {
      {"cube root of a negative number", -8, 1.0 / 3, 0, -2},
      {"root of an even number", -8, 0.5, 4, kMissing},
      {"0 to 0", 0, 0, 7, 1},
      {"0 to a negative power", 0, -1, 6, kMissing},
      {"0 to a positive power", 0, 2, 0, 0},
      {"negative zero is zero", -0.0, 3, 0, 0},
      {"negative to 0", -2, 0, 5, 1},
      {"positive to 0", 2, 0, 0, 1},
      {"even", -2, 10, 0, 1024},
      {"odd", -2, 3, 0, -8},
      {"negative even", -2, -2, 0, 0.25},
      {"negative odd", -2, -3, 0, -0.125},
      {"minus one", -4, -1, 0, -0.25},
      {"a unit beside an even number", -2, 2 * (1 + kUnit), 0, 4},
      {"a unit beside a negative odd number", -2, -1 - kUnit, 0, -0.5},
      {"close to no whole number", -2, 2.000001, 4, kMissing},
      {"tiny: 0 is close to nothing", -2, 1e-20, 4, kMissing},
      {"tiny: nor is what halves to 0", -2, 5e-324, 4, kMissing},
      {"the largest odd exponent", -1, 2147483647, 0, -1},
      {"beyond the largest even exponent", -1, 2147483648, 4, kMissing},
      {"one over a negative odd number", -8, -1.0 / 3, 0, -0.5},
      {"overflow", 10, 309, 2, kMissing},
      {"underflow", 10, -309, 1, 0},
      {"odd overflow", -10, 309, 3, kMissing},
      {"odd overflow of a reciprocal", -1e-10, -31, 2, kMissing},
      {"even overflow", -10, 310, 2, kMissing},
      {"missing base", kMissing, 2, 4, kMissing},
      {"missing exponent", 2, kMissing, 4, kMissing},
      {"NaN", kNaN, 0, 4, kMissing},
      {"infinite base", kInfinity, 1, 2, kMissing},
      {"infinite exponent of a negative base", -2, kInfinity, 4, kMissing},
      {"1 to infinity", 1, kInfinity, 2, kMissing},
      {"denormal", kSmallest, 1, 1, 0},
  };
  for (const auto& row : kRows) {
    double result = -1;
    EXPECT_EQ(KxPower::Power(row.base, row.exponent, result), row.code) << row.what;
    EXPECT_NEAR(result, row.want, 1e-13 * std::fabs(row.want)) << row.what;
  }
}

TEST(KxPower, MultiplyGuardsTheProduct) {
  const struct {
    double a, b, want;
  } kRows[] = {{2, 3, 6},
               {-2, 3, -6},
               {-2, -3, 6},
               {0, 5, 0},
               {1e200, 1e200, kMissing},
               {-1e200, 1e200, kMissing},
               {1e-200, -1e-200, 0},
               {1e200, 1e-200, 1},
               {kMissing, 2, kMissing},
               {0, kNaN, kMissing}};
  for (const auto& row : kRows) {
    EXPECT_NEAR(KxPower::Multiply(row.a, row.b), row.want, 3e-13 * std::fabs(row.want))
        << row.a << " * " << row.b;
  }
}

TEST(KxPower, AlmostEqualIsRelative) {
  const struct {
    double a, b, tolerance;
    bool want;
  } kRows[] = {{0, -0.0, 0, true},        {0, kSmallest, 1e30, false},
               {1, -1, 1e30, false},      {1, 1, 0, true},
               {1, 1 + kUnit, 1, true},   {1, 1 + 3 * kUnit, 2, false},
               {-1, -1 - kUnit, 1, true}, {kNaN, kNaN, 1, false},
               {kInfinity, 1, 1, false},  {1e300, 1e300 * (1 + 4 * kUnit), 8, true}};
  for (const auto& row : kRows)
    EXPECT_EQ(KxPower::AlmostEqual(row.a, row.b, row.tolerance), row.want) << row.a << " " << row.b;
}

TEST(KxPower, ReciprocalsOfOddAndEvenNumbers) {
  const struct {
    double x;
    bool isOdd, isEven;
  } kRows[] = {{1.0 / 3, true, false},    {-1.0 / 7, true, false}, {1, true, false},
               {0.5, false, true},        {-0.25, false, true},    {2, false, false},
               {0, false, false},         {1e-10, false, false},   {0.3, false, false},
               {kInfinity, false, false}, {kNaN, false, false},    {1.0 / 2147483647, true, false}};
  for (const auto& row : kRows) {
    EXPECT_EQ(KxPower::IsOneOverOddInteger(row.x, 32), row.isOdd) << row.x;
    EXPECT_EQ(KxPower::IsOneOverEvenInteger(row.x, 32), row.isEven) << row.x;
  }
}

}  // namespace
}  // namespace KxMath_940
