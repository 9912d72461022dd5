// Searches for a non-centrality parameter: what they find, how often they ask, and that every function ends
// them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "math/KxDistFun.h"
#include "math/NonCentralitySearchInternal.h"

namespace KxMath_940 {
namespace {

using D = KxDistFun;

// Counts how often a search asks.
struct Counted {
  std::function<double(double)> function;
  int* calls;
  double operator()(double parameter) const {
    ++*calls;
    return function(parameter);
  }
};

// Halving alone takes fifty and more.  Near 1 the odds are rounded, and some of the way is halved.
int MostCalls(double prob) { return prob < 1 - 1e-6 ? 20 : 60; }

TEST(Searches, AskSeldom) {
  // The answers lie between 1e-8 and 2e9.
  const struct {
    double x, df1, df2, prob;
  } kF[] = {{2, 3, 5, 0.3},         {2, 3, 0.01, 1e-125},        {1e-6, 40, 7, 1e-150},
            {1.5, 1e6, 1e6, 1e-9},  {3080, 448005, 339, 0.999},  {2, 3, 5, 0.75},
            {0.5, 0.001, 9, 1e-3},  {23, 2644, 0.041, 1.4e-231}, {40037, 28755, 636, 1 - 1e-10},
            {1e-3, 1e-3, 1e3, 0.4}, {2, 3, 0.01, 1e-300},        {1e5, 1, 1, 1e-8}};
  for (const auto& row : kF) {
    int calls = 0;
    const auto cdf = [&](double lambda) { return D::NonCentralCdfF(row.x, row.df1, row.df2, lambda, 0); };
    const SearchedFunction function(Counted{cdf, &calls}, row.prob);
    const double lambda = FindFromZero(function, std::max(1.0, row.x * row.df1), 2e9, 0);
    EXPECT_NEAR(cdf(lambda), row.prob, 1e-10 * row.prob) << row.x << " " << row.prob;
    EXPECT_LE(calls, MostCalls(row.prob)) << row.x << " " << row.prob;
    EXPECT_EQ(D::FindNCParamF(row.x, row.df1, row.df2, row.prob, 0), lambda);
  }
  const struct {
    double t, df, prob;
  } kT[] = {{2, 5, 0.3},     {-40, 1e5, 1e-200}, {0.3, 3e-4, 0.888}, {1e3, 0.01, 0.5},
            {1e5, 1e6, 0.9}, {119, 6e-4, 1e-15}, {0, 3, 0.5}};
  for (const auto& row : kT) {
    int calls = 0;
    const auto cdf = [&](double delta) { return D::NonCentralCdfT(row.t, row.df, delta, 0); };
    const double spread = 1 + std::fabs(row.t) / std::sqrt(std::max(1.0, 2 * row.df));
    const double delta = FindAnywhere(SearchedFunction(Counted{cdf, &calls}, row.prob),
                                      row.t - D::probit(row.prob) * spread, spread, 0);
    EXPECT_NEAR(cdf(delta), row.prob, 1e-10 * row.prob) << row.t << " " << row.prob;
    EXPECT_LE(calls, MostCalls(row.prob)) << row.t << " " << row.prob;
    EXPECT_EQ(D::FindNCParamT(row.t, row.df, 0, row.prob, 0), delta);
  }
}

TEST(Searches, EveryFunctionEndsThem) {
  constexpr double kStep = 12345.678;
  const double kNaN = std::numeric_limits<double>::quiet_NaN();
  const struct {
    const char* what;
    std::function<double(double)> cdf;
    double low, high;  // of the answer; none when low is above high
  } kRows[] = {
      {"a step", [](double v) { return v < kStep ? 0.9 : 0.1; }, kStep * (1 - 1e-14), kStep * (1 + 1e-14)},
      {"a step down to nothing", [](double v) { return v < kStep ? 1 : 0.0; }, kStep * (1 - 1e-14),
       kStep * (1 + 1e-14)},
      {"a step near 0", [](double v) { return v < 1e-17 ? 0.9 : 0.1; }, 0, 2e-17},
      {"stairs", [](double v) { return 0.9 * std::exp(-std::floor(v / 100)); }, 199, 201},
      {"noise", [](double v) { return std::exp(-v / 50) + 1e-3 * std::sin(1e9 * v); }, 60, 90},
      {"a steep fall", [](double v) { return 1 / (1 + std::exp(1e6 * (v - 3))); }, 2.99, 3.01},
      {"a slow fall", [](double v) { return 1 / (1 + v * 1e-5); }, 3e5, 5e5},
      {"never below", [](double) { return 0.9; }, 1, 0},
      {"missing beyond 1", [](double v) { return v > 1 ? kMissing : 0.9; }, 1, 0},
      {"no number at all", [=](double v) { return v > 0 ? kNaN : 0.9; }, 1, 0},
      {"below from the start", [](double) { return 0.1; }, 1, 0},
  };
  for (const auto& row : kRows) {
    int calls = 0;
    const SearchedFunction function(Counted{row.cdf, &calls}, 0.2);
    const double value = FindFromZero(function, 1, 2e9, 0);
    EXPECT_LE(calls, 150) << row.what;
    if (row.low > row.high) {
      EXPECT_FALSE(value >= 0) << row.what << " " << value;
    } else {
      EXPECT_GE(value, row.low) << row.what;
      EXPECT_LE(value, row.high) << row.what;
    }
    calls = 0;
    FindAnywhere(function, -5, 1, 0);
    EXPECT_LE(calls, 250) << row.what << ", any sign";
  }
}

TEST(Searches, ToleranceBoundsTheParameter) {
  int before = std::numeric_limits<int>::max();
  const double exact = D::FindNCParamF(2, 3, 5, 0.3, 0);
  for (const double tolerance : {1e-12, 1e-9, 1e-6, 1e-3}) {
    int calls = 0;
    const auto cdf = [](double lambda) { return D::NonCentralCdfF(2, 3, 5, lambda, 0); };
    const double value =
        FindFromZero(SearchedFunction(Counted{cdf, &calls}, 0.3), std::max(1.0, 2.0 * 3), 2e9, tolerance);
    EXPECT_NEAR(value, exact, tolerance);
    EXPECT_LE(calls, before);
    before = calls;
    EXPECT_NEAR(D::FindNCParamChi(7, 3, 0.3, tolerance), D::FindNCParamChi(7, 3, 0.3, 0), tolerance);
    EXPECT_NEAR(D::FindNCParamT(2, 5, 0, 0.3, tolerance), D::FindNCParamT(2, 5, 0, 0.3, 0), tolerance);
  }
}

TEST(Searches, EndsOfTheRange) {
  const double central = D::CdfF(2, 3, 5);
  const struct {
    const char* what;
    double value;
    bool isFound;
  } kRows[] = {
      {"as much as the central", D::FindNCParamF(2, 3, 5, central, 0), false},
      {"a unit less", D::FindNCParamF(2, 3, 5, std::nextafter(central, 0), 0), true},
      {"nothing", D::FindNCParamF(2, 3, 5, 0, 0), true},
      {"the smallest number", D::FindNCParamF(2, 3, 5, std::numeric_limits<double>::denorm_min(), 0), true},
      {"beyond what can be summed", D::FindNCParamF(1e6, 1e6, 3, 0.3, 0), false},
      {"nothing, t", D::FindNCParamT(2, 5, 0, 0, 0), true},
      {"all, t", D::FindNCParamT(2, 5, 0, 1, 0), true},
      {"nothing, chi-square", D::FindNCParamChi(2, 5, 0, 0), true},
      {"a point of 0", D::FindNCParamF(0, 3, 5, 0.1, 0), false},
  };
  for (const auto& row : kRows) EXPECT_EQ(row.value != kMissing, row.isFound) << row.what << " " << row.value;
  EXPECT_EQ(D::NonCentralCdfF(2, 3, 5, D::FindNCParamF(2, 3, 5, 0, 0), 0), 0);
  EXPECT_EQ(D::NonCentralCdfT(2, 5, D::FindNCParamT(2, 5, 0, 1, 0), 0), 1);
}

}  // namespace
}  // namespace KxMath_940
