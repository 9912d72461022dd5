// What the distribution functions answer at the edges of their domains, and how their answers fit together.
// Their digits are tested in accuracy_test.cpp.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "math/KxDistFun.h"
#include "math/KxMV.h"

namespace KxMath_940 {
namespace {

using D = KxDistFun;
using Numbers = std::vector<double>;

constexpr double kMissing = KxCommon_940::KxMV::Missing();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();

long code;
int shortCode;
std::int64_t Whole(double x) {
  return std::isfinite(x) && std::fabs(x) < 9e18 ? static_cast<std::int64_t>(x) : -1;
}

enum Range { kProbability, kPositive, kAnything };

// Every function of numbers, with arguments it takes.
struct Function {
  const char* name;
  Numbers usual;
  Range range;
  std::function<double(const Numbers&)> call;
};

const Function kFunctions[] = {
#define F(name, usual, range, ...)                                                     \
  {                                                                                    \
#name, Numbers usual, range, [](const Numbers& a) { return D::name(__VA_ARGS__); } \
  }
    F(CdfNorm, ({1, 0, 2}), kProbability, a[0], a[1], a[2]),
    F(CdfStdNorm, ({1}), kProbability, a[0]),
    F(PdfNormal, ({1, 0, 2}), kPositive, a[0], a[1], a[2]),
    F(PdfNormalStandard, ({1}), kPositive, a[0]),
    F(IdfNorm, ({0.3, 0, 2}), kAnything, a[0], a[1], a[2]),
    F(IdfStdNorm, ({0.3}), kAnything, a[0]),
    F(CdfT, ({1.5, 4}), kProbability, a[0], a[1]),
    F(SigT, ({1.5, 4}), kProbability, a[0], a[1]),
    F(PdfT, ({1.5, 4}), kPositive, a[0], a[1], code),
    F(IdfT, ({0.3, 4, 1e-20, 1e-12}), kAnything, a[0], a[1], a[2], a[3]),
    F(CdfChi, ({2, 3}), kProbability, a[0], a[1]),
    F(SigChi, ({2, 3}), kProbability, a[0], a[1]),
    F(IdfChi, ({0.3, 3}), kPositive, a[0], a[1]),
    F(CdfF, ({2, 3, 5}), kProbability, a[0], a[1], a[2]),
    F(SigF, ({2, 3, 5}), kProbability, a[0], a[1], a[2]),
    F(IdfF, ({0.3, 3, 5}), kPositive, a[0], a[1], a[2]),
    F(CdfGam, ({2, 3, 0.5}), kProbability, a[0], a[1], a[2]),
    F(PdfGamma, ({2, 3, 0.5}), kPositive, a[0], a[1], a[2]),
    F(IdfGam, ({0.3, 3, 0.5}), kPositive, a[0], a[1], a[2]),
    F(CdfBeta, ({0.3, 2, 5}), kProbability, a[0], a[1], a[2]),
    F(IdfBeta, ({0.3, 2, 5}), kProbability, a[0], a[1], a[2]),
    F(CdfBin, ({3, 10, 0.2}), kProbability, a[0], a[1], a[2], code),
    F(PdfBin, ({3, 10, 0.2}), kProbability, a[0], a[1], a[2], code),
    F(IdfBin, ({0.3, 10, 0.2}), kPositive, a[0], a[1], a[2], code),
    F(PdfNegBin, ({3, 2.5, 0.2}), kProbability, a[0], a[1], a[2], code),
    F(PdfHyper, ({3, 50, 10, 20}), kProbability, Whole(a[0]), Whole(a[1]), Whole(a[2]), Whole(a[3])),
    F(CDFHyper, ({3, 50, 10, 20}), kProbability, Whole(a[0]), Whole(a[1]), Whole(a[2]), Whole(a[3]),
      shortCode),
    F(NonCentralCdfChi, ({5, 3, 2}), kProbability, a[0], a[1], a[2]),
    F(NonCentralCdfF, ({2, 3, 5, 2, 0}), kProbability, a[0], a[1], a[2], a[3], a[4]),
    F(NonCentralCdfT, ({1, 4, 0.5, 0}), kProbability, a[0], a[1], a[2], a[3]),
    F(NonCentralPdfT, ({1, 4, 0.5}), kPositive, a[0], a[1], a[2], code),
    F(FindNCParamChi, ({5, 3, 0.3, 1e-9}), kPositive, a[0], a[1], a[2], a[3]),
    F(FindNCParamF, ({2, 3, 5, 0.3, 1e-9}), kPositive, a[0], a[1], a[2], a[3], a[4]),
    F(FindNCParamT, ({1, 4, 1e-12, 0.3, 1e-9}), kAnything, a[0], a[1], a[2], a[3], a[4]),
    F(gammad, ({2, 3}), kProbability, a[0], a[1], false, code),
    F(cdfbet, ({0.3, 2, 5}), kProbability, a[0], a[1], a[2], code),
    F(cdfexp, ({2, 3}), kProbability, a[0], a[1], code),
    F(zentcdff, ({2, 3, 5}), kProbability, a[0], a[1], a[2], code),
    F(zentcdft, ({2, 3}), kProbability, a[0], a[1], code),
    F(betinv, ({0.3, 2, 5, 1e-20, 1e-12}), kProbability, a[0], a[1], a[2], a[3], a[4]),
    F(derf, ({1}), kAnything, a[0]),
    F(derfc, ({1}), kAnything, a[0]),
    F(dnlgam, ({3.5}), kAnything, a[0]),
    F(dnlbnc, ({10, 3}), kPositive, a[0], a[1], code),
    F(ncdbet, ({0.3, 2, 5, 1, 0}), kProbability, a[0], a[1], a[2], a[3], a[4], code),
    F(idfchb, ({0.3, 3}), kPositive, a[0], a[1], code),
    F(cbtaux, ({0.3}), kAnything, a[0]),
#undef F
};

bool IsInRange(double value, Range range) {
  if (value == kMissing) return true;
  if (!std::isfinite(value)) return false;
  return range == kAnything || (value >= 0 && (range == kPositive || value <= 1));
}

void ExpectSound(const Function& function, const Numbers& arguments) {
  const double value = function.call(arguments);
  const bool isHopeless = std::any_of(arguments.begin(), arguments.end(),
                                      [](double x) { return std::isnan(x) || x == kMissing; });
  EXPECT_TRUE(isHopeless ? value == kMissing : IsInRange(value, function.range))
      << function.name << " of " << testing::PrintToString(arguments) << " is " << value;
}

TEST(Distributions, NoArgumentBreaksAFunction) {
  const double kHostile[] = {kNaN,   kMissing, kInfinity, -kInfinity, 0.0,   -0.0,      kTiny,
                             -kTiny, 1e-310,   1e-300,    1e-20,      0.5,   1 - 1e-16, 1,
                             -1,     2,        20,        1e3,        1e6,   1e8,       9007199254740992.0,
                             1e20,   1e100,    1e300,     -kMissing,  -1e300};
  const double kExtreme[] = {1e-300, 1e-5, 1, 1e5, 1e16, 1e300};
  for (const Function& function : kFunctions) {
    ASSERT_NE(function.call(function.usual), kMissing) << function.name;
    for (std::size_t i = 0; i < function.usual.size(); ++i) {
      Numbers arguments = function.usual;
      for (const double hostile : kHostile) {
        arguments[i] = hostile;
        ExpectSound(function, arguments);
      }
      for (std::size_t j = 0; j < i; ++j) {
        for (const double first : kExtreme) {
          for (const double second : kExtreme) {
            arguments[i] = first;
            arguments[j] = second;
            ExpectSound(function, arguments);
          }
        }
        arguments[j] = function.usual[j];
      }
    }
  }
}

TEST(Distributions, Edges) {
  const struct {
    const char* what;
    double value, want;
  } kRows[] = {
      {"normal at 0", D::CdfStdNorm(0), 0.5},
      {"normal quantile of 0.5", D::IdfStdNorm(0.5), 0},
      {"normal quantile of 0", D::IdfStdNorm(0), kMissing},
      {"normal quantile of 1", D::IdfStdNorm(1), kMissing},
      {"normal quantile of 0.5 is the mean", D::IdfNorm(0.5, 3, 2), 3},
      {"normal without spread", D::CdfNorm(1, 0, 0), kMissing},
      {"normal density without spread", D::PdfNormal(0, 0, 0), kMissing},
      {"normal at infinity", D::CdfNorm(kInfinity, 0, 1), 1},
      {"normal at minus infinity", D::CdfNorm(-kInfinity, 0, 1), 0},
      {"normal so far out that the distance overflows", D::CdfNorm(1e308, -1e308, 1e-3), 1},
      {"chi-square below 0", D::CdfChi(-1, 3), 0},
      {"chi-square tail at 0", D::SigChi(0, 3), 1},
      {"chi-square without degrees", D::CdfChi(1, 0), kMissing},
      {"chi-square quantile of 0", D::IdfChi(0, 3), 0},
      {"chi-square quantile of 1", D::IdfChi(1, 3), kMissing},
      {"t at 0", D::CdfT(0, 5), 0.5},
      {"t with one degree", D::CdfT(1, 1), 0.75},
      {"t with next to no degrees", D::CdfT(-1e24, 1e-300), 0.5},
      {"t with very many degrees", D::CdfT(1.25, 2e8), D::CdfStdNorm(1.25)},
      {"t whose square overflows", D::SigT(1e200, 1), 1 / (3.141592653589793 * 1e200)},
      {"t without degrees", D::CdfT(1, 0), kMissing},
      {"t quantile of 0.5", D::IdfT(0.5, 3, 1e-20, 1e-12), 0},
      {"t quantile that overflows", D::IdfT(1e-300, 0.01, 1e-20, 1e-12), kMissing},
      {"F below 0", D::CdfF(-1, 2, 3), 0},
      {"F tail at 0", D::SigF(0, 2, 3), 1},
      {"F quantile of 0", D::IdfF(0, 2, 3), 0},
      {"F quantile of 1", D::IdfF(1, 2, 3), kMissing},
      {"gamma of shape 1", D::CdfGam(2, 1, 0.5), -std::expm1(-1.0)},
      {"gamma density at 0, shape 2", D::PdfGamma(0, 2, 3), 0},
      {"gamma density at 0, shape 1", D::PdfGamma(0, 1, 3), 3},
      {"gamma density at 0, shape 0.5", D::PdfGamma(0, 0.5, 3), kMissing},
      {"gamma density below 0", D::PdfGamma(-1, 0.5, 3), 0},
      {"gamma quantile of shape 0", D::IdfGam(0.3, 0, 3), 0},
      {"beta outside", D::CdfBeta(2, 3, 4), 1},
      {"beta quantile of 1", D::IdfBeta(1, 3, 4), 1},
      {"beta without parameter", D::CdfBeta(0.5, 0, 4), kMissing},
      {"binomial density at no count", D::PdfBin(2.5, 5, 0.5, code), 0},
      {"binomial density, p 0", D::PdfBin(0, 5, 0, code), 1},
      {"binomial density, p 1", D::PdfBin(5, 5, 1, code), 1},
      {"binomial density, all", D::PdfBin(3, 3, 0.5, code), 0.125},
      {"binomial between counts", D::CdfBin(2.9, 5, 0.5, code), 0.5},
      {"binomial, all counts", D::CdfBin(5, 5, 0.5, code), 1},
      {"binomial quantile of 0", D::IdfBin(0, 7, 0.5, code), 0},
      {"binomial quantile of 1", D::IdfBin(1, 7, 0.5, code), 7},
      {"binomial quantile of a very small probability", D::IdfBin(1e-20, 1000, 0.5, code), 355},
      {"negative binomial: the first trial succeeds", D::PdfNegBin(0, 1, 0.25, code), 0.25},
      {"negative binomial: certain success", D::PdfNegBin(0, 3, 1, code), 1},
      {"hypergeometric: the whole urn", D::PdfHyper(3, 5, 5, 3), 1},
      {"hypergeometric outside", D::PdfHyper(4, 5, 5, 3), kMissing},
      {"non-central chi-square below 0", D::NonCentralCdfChi(-1, 3, 2), 0},
      {"central is non-central with 0", D::NonCentralCdfChi(4, 3, 0), D::CdfChi(4, 3)},
      {"central F", D::NonCentralCdfF(4, 3, 5, 0, 0), D::CdfF(4, 3, 5)},
      {"non-central t at 0", D::NonCentralCdfT(0, 3, 1.5, 0), D::CdfStdNorm(-1.5)},
      {"no parameter gives more than the central", D::FindNCParamChi(1, 3, 0.9, 1e-9), kMissing},
      {"a search below 0", D::FindNCParamChi(-1, 3, 0.5, 1e-9), kMissing},
      {"a search with a negative tolerance", D::FindNCParamF(1, 3, 3, 0.1, -1), kMissing},
      {"log-gamma at its zeros", D::dnlgam(1) + D::dnlgam(2), 0},
      {"log-gamma at 0.5", D::dnlgam(0.5), 0.5723649429247001},
      {"log-gamma at 0", D::dnlgam(0), kMissing},
      {"log-gamma that overflows", D::dnlgam(1e307), kMissing},
      {"error function far out", D::derf(-7), -1},
      {"auxiliary at 1", D::cbtaux(1), 0},
      {"auxiliary at 0", D::cbtaux(0), 1},
  };
  for (const auto& row : kRows) EXPECT_NEAR(row.value, row.want, 1e-15 * std::fabs(row.want)) << row.what;
  EXPECT_TRUE(std::signbit(D::derf(-0.0)));
  EXPECT_GE(D::dnlgam(8), D::dnlgam(std::nextafter(8, 0)));  // where polynomials and series meet
  EXPECT_LT(D::FindNCParamChi(10, 3, 0, 1e-9), 1e5);         // where the function underflows
}

TEST(Distributions, NonCentralTOfFewDegrees) {
  // By Gauss-Legendre quadrature with 25 digits in 0.4 wide panels of ln s.
  const struct {
    double t, df, delta, want;
  } kRows[] = {{2.5, 1e-3, 1.5, 0.070673446580231189},
               {-1564.82, 1.51304e-05, 3.39656, 0.00034111623015103839},
               {0.00026, 8e-4, -1.1, 0.86433593773867821},
               {-0.5, 0.02, -3, 0.98935786741982386},
               {30, 0.05, 25, 0.08412560829794201}};
  for (const auto& row : kRows)
    EXPECT_NEAR(D::NonCentralCdfT(row.t, row.df, row.delta, 0), row.want, 1e-12 * row.want) << row.t;
}

TEST(Distributions, NonCentralTWithoutADeltaIsCentral) {
  for (double df = 1e-300; df < 1e8; df *= df < 1e-5 ? 1e10 : 7.7) {
    for (double t = 1e-40; t < 1e40; t *= 313) {
      const double lower = D::CdfT(-t, df);
      EXPECT_NEAR(D::NonCentralCdfT(-t, df, 0, 0), lower, 1e-10 * lower) << t << " " << df;
      EXPECT_NEAR(D::NonCentralCdfT(t, df, 0, 0), 1 - lower, 1e-10) << t << " " << df;
      const double density = D::PdfT(t, df, code);
      EXPECT_NEAR(D::NonCentralPdfT(t, df, 0, code), density, 1e-10 * density + 1e-300) << t << " " << df;
    }
  }
}

TEST(Distributions, BinomialQuantilesAreTheSmallest) {
  for (const double n : {1.0, 17.0, 939.0, 30137.0, 266598.0, 1e8}) {
    for (const double p : {1e-9, 0.003, 0.3, 0.94, 0.99998}) {
      for (const double prob : {1e-290, 1e-174, 1e-40, 1e-7, 0.01, 0.6, 0.999999, 1 - 1e-12}) {
        const double k = D::IdfBin(prob, n, p, code);
        ASSERT_TRUE(code == 0 && k >= 0 && k <= n) << n << " " << p << " " << prob;
        EXPECT_GE(D::CdfBin(k, n, p, code), prob * (1 - 3e-14)) << n << " " << p << " " << prob;
        if (k > 0) {
          EXPECT_LT(D::CdfBin(k - 1, n, p, code), prob) << n << " " << p << " " << prob;
        }
      }
    }
  }
}

TEST(Distributions, CodesTellWhatIsWrong) {
  const struct {
    const char* what;
    std::function<double()> call;
    long want;
  } kRows[] = {
      {"trials not whole", [] { return D::CdfBin(1, 5.5, 0.5, code); }, 3},
      {"trials not whole, quantile", [] { return D::IdfBin(0.5, 5.5, 0.5, code); }, 3},
      {"density takes any n", [] { return D::PdfBin(1, 5.5, 0.5, code); }, 0},
      {"no trials", [] { return D::CdfBin(1, 0, 0.5, code); }, 1},
      {"no probability", [] { return D::CdfBin(1, 5, 1.5, code); }, 1},
      {"no shape", [] { return D::gammad(1, 0, true, code); }, 1},
      {"overflow", [] { return D::zentidff(0.999, 1, 1e-3, code); }, 2},
      {"negative tolerance", [] { return D::zentidft(0.3, 3, code, -1, 0); }, 1},
      {"more than n", [] { return D::dnlbnc(3, 4, code); }, 1},
      {"too non-central", [] { return D::ncdbet(0.5, 2, 3, 1e12, 0, code); }, 2},
  };
  for (const auto& row : kRows) {
    code = -1;
    const double value = row.call();
    EXPECT_EQ(code, row.want) << row.what;
    EXPECT_EQ(value == kMissing, row.want != 0) << row.what;
  }
  D::CDFHyper(0, 1'000'000'000'000'000, 500'000'000'000'000, 500'000'000'000'000, shortCode);
  EXPECT_EQ(shortCode, 2) << "too many terms";
}

// A grid of points from low to high, finer than the seams between methods are apart.
template <class Visit>
void Scan(double low, double high, Visit visit) {
  constexpr int kSteps = 4000;
  for (int i = 0; i <= kSteps; ++i) visit(low * std::pow(high / low, i / static_cast<double>(kSteps)));
}

TEST(Distributions, CumulativeFunctionsNeverStepBack) {
  const struct {
    const char* what;
    std::function<double(double)> lower;
    double low, high;
  } kRows[] = {
      {"normal", [](double x) { return D::CdfStdNorm(x - 40); }, 1, 80},
      {"gamma, shape 0.05", [](double x) { return D::gammad(x, 0.05, true, code); }, 1e-10, 50},
      {"gamma, shape 19.9", [](double x) { return D::gammad(x, 19.9, true, code); }, 1, 100},
      {"gamma, shape 999", [](double x) { return D::gammad(x, 999, true, code); }, 500, 2000},
      {"gamma, shape 1000", [](double x) { return D::gammad(x, 1000, true, code); }, 500, 2000},
      {"gamma by shape, expanded from 1000", [](double p) { return -D::gammad(1010, p, true, code); }, 900,
       1100},
      {"gamma, shape 1e5", [](double x) { return D::gammad(x, 1e5, true, code); }, 5e4, 2e5},
      {"gamma tail, shape 1000", [](double x) { return -D::gammad(x, 1000, false, code); }, 500, 2000},
      {"beta 0.2, 3", [](double x) { return D::CdfBeta(x, 0.2, 3); }, 1e-10, 1},
      {"beta 300, 0.5", [](double x) { return D::CdfBeta(x, 300, 0.5); }, 0.1, 1},
      {"beta 2000, 3000", [](double x) { return D::CdfBeta(x, 2000, 3000); }, 0.1, 1},
      {"t, df 2000", [](double x) { return -D::SigT(x, 2000); }, 1e-3, 30},
      {"F 3, 0.1", [](double x) { return D::CdfF(x, 3, 0.1); }, 1e-10, 1e10},
      {"non-central chi-square", [](double x) { return D::NonCentralCdfChi(x, 3, 40); }, 1e-3, 200},
      {"non-central t", [](double x) { return D::NonCentralCdfT(x - 20, 3, 2, 0); }, 1, 60},
      {"non-central t, few degrees", [](double x) { return D::NonCentralCdfT(x - 20, 0.05, 2, 0); }, 1, 1e6},
      {"non-central t by delta", [](double d) { return -D::NonCentralCdfT(7, 0.3, d - 50, 0); }, 1, 100},
      {"non-central F", [](double x) { return D::NonCentralCdfF(x, 3, 0.2, 40, 0); }, 1e-3, 1e9},
      {"non-central F by lambda, terms summed, then sampled",
       [](double lambda) { return -D::NonCentralCdfF(7e4, 3, 8, lambda, 0); }, 1.9e5, 2.2e5},
      {"non-central chi-square by lambda, terms summed, then sampled",
       [](double lambda) { return -D::NonCentralCdfChi(2e5, 3, lambda); }, 1.9e5, 2.2e5},
      {"t quantile", [](double p) { return D::IdfT(p, 2.5, 1e-20, 1e-12); }, 1e-300, 0.99},
      {"chi-square quantile", [](double p) { return D::IdfChi(p, 7); }, 1e-300, 0.99},
      {"F quantile", [](double p) { return D::IdfF(p, 7, 0.5); }, 1e-300, 0.99},
      {"binomial quantile", [](double p) { return D::IdfBin(p, 3e4, 0.9, code); }, 1e-300, 0.99},
  };
  for (const auto& row : kRows) {
    double last = -1e308;
    Scan(row.low, row.high, [&](double x) {
      const double value = row.lower(x);
      EXPECT_GE(value, last - 1e-12 * std::fabs(last)) << row.what << " at " << x;
      last = value;
    });
  }
}

TEST(Distributions, QuantilesLeadBack) {
  const struct {
    const char* what;
    std::function<double(double)> quantile, lower;
  } kRows[] = {
      {"normal", [](double p) { return D::IdfNorm(p, 3, 7); }, [](double x) { return D::CdfNorm(x, 3, 7); }},
      {"t, df 0.3", [](double p) { return D::IdfT(p, 0.3, 1e-20, 1e-12); },
       [](double x) { return D::CdfT(x, 0.3); }},
      {"t, df 1", [](double p) { return D::IdfT(p, 1, 1e-20, 1e-12); },
       [](double x) { return D::CdfT(x, 1); }},
      {"t, df 30.5", [](double p) { return D::IdfT(p, 30.5, 1e-20, 1e-12); },
       [](double x) { return D::CdfT(x, 30.5); }},
      {"chi-square, df 0.2", [](double p) { return D::IdfChi(p, 0.2); },
       [](double x) { return D::CdfChi(x, 0.2); }},
      {"chi-square, df 1e6", [](double p) { return D::IdfChi(p, 1e6); },
       [](double x) { return D::CdfChi(x, 1e6); }},
      {"F 1, 12", [](double p) { return D::IdfF(p, 1, 12); }, [](double x) { return D::CdfF(x, 1, 12); }},
      {"F 500, 0.7", [](double p) { return D::IdfF(p, 500, 0.7); },
       [](double x) { return D::CdfF(x, 500, 0.7); }},
      {"beta 0.1, 3", [](double p) { return D::IdfBeta(p, 0.1, 3); },
       [](double x) { return D::CdfBeta(x, 0.1, 3); }},
      {"beta 1e5, 2", [](double p) { return D::IdfBeta(p, 1e5, 2); },
       [](double x) { return D::CdfBeta(x, 1e5, 2); }},
  };
  for (const auto& row : kRows) {
    Scan(1e-12, 0.99, [&](double p) {
      EXPECT_NEAR(row.lower(row.quantile(p)), p, 2e-10 * std::min(p, 1 - p)) << row.what;
    });
  }
  for (const double n : {1.0, 7.0, 1000.0, 1e8}) {
    for (const double p : {1e-6, 0.3, 0.999}) {
      for (double k = std::floor(n * p); k < n && k < n * p + 40; ++k) {
        const double cumulative = D::CdfBin(k, n, p, code);
        if (cumulative >= 1 - 1e-9) break;
        EXPECT_EQ(D::IdfBin(cumulative, n, p, code), k) << n << " " << p;
      }
    }
  }
}

TEST(Distributions, QuantilesBeyondTheirSquaresAndOdds) {
  // The square of the first, the odds of the others are no doubles; the quantiles are.
  EXPECT_NEAR(D::CdfT(D::IdfT(0.19, 0.003, 1e-20, 1e-12), 0.003), 0.19, 1e-12);
  EXPECT_NEAR(D::SigF(D::IdfF(0.298, 1e6, 1e-3), 1e6, 1e-3), 0.702, 1e-12);
  EXPECT_NEAR(D::CdfF(D::IdfF(0.702, 1e-3, 1e6), 1e-3, 1e6), 0.702, 1e-12);
}

// To 20 digits from the first terms of the series.
TEST(Distributions, ProbabilitiesWhereOddsAndProductsAreNoDoubles) {
  const std::pair<double, double> kRows[] = {
      {KxDistFun::NonCentralCdfF(1e305, 1e5, 1e-5, 3, 0), 0.0035632230723118658263},
      {KxDistFun::NonCentralCdfF(1.5e308, 2, 1e-6, 10, 0), 0.00036089612627775536313},
      {KxDistFun::NonCentralCdfF(1e300, 1e6, 1e-9, 0.5, 0), 3.5580729957618290145e-7},
      {KxDistFun::CdfF(1e305, 1e5, 1e-5), 0.0035632232217751404612},
      {KxDistFun::CdfGam(1e-200, 1e-3, 1e-200), 0.39833670312223180019},
      {KxDistFun::CdfGam(1e-310, 0.25, 1e-10), 1.1032626513208364249e-80},
      {KxDistFun::CdfGam(5e-324, 0.5, 1e-3), 7.9313549786918053862e-164},
  };
  for (const auto& [answer, want] : kRows) EXPECT_NEAR(answer, want, 1e-10 * want);
}

// A tail taken as 1 minus the other, or as a difference of logarithms, has no digits of its own where a
// parameter or the point is next to nothing, and sums over terms that fall by 1e300 overflow.  Values by
// mpmath, 420 digits.
TEST(Distributions, NextToNothing) {
  const struct {
    const char* what;
    double value, want;
  } kRows[] = {
      {"CdfF", D::CdfF(.5, 10, 1e-14), 1.5881147940507449e-13},
      {"CdfF", D::CdfF(0.5, 1e-200, 3), 1.0},
      {"SigF", D::SigF(1.7, 7e-283, 29.5), 2.2725683945788741e-280},
      {"SigF", D::SigF(2, 1e-90, 1e-100), 0.9999999999},
      {"CdfBeta", D::CdfBeta(.75, 2, 1.9e-10), 1.2089592861562442e-10},
      {"CdfBeta", D::CdfBeta(0.3, 1e-300, 1e-299), 0.90909090909090909},
      {"CdfBeta", D::CdfBeta(0.2, 7.5, 1e-18), 9.2737493220865737e-25},
      {"SigChi", D::SigChi(5e-324, 7.6e-5), 0.027896626965711346},
      {"CdfChi", D::CdfChi(1e-310, 0.5), 2.933738615886127e-78},
      {"SigChi", D::SigChi(3, 1e-250), 5.0009791203316329e-252},
      {"NonCentralCdfChi", D::NonCentralCdfChi(1, 3, 1e-305), 0.1987480430987992},
      {"NonCentralCdfChi", D::NonCentralCdfChi(1e-200, 0.01, 40), 2.0599169523785944e-10},
      {"NonCentralCdfChi", D::NonCentralCdfChi(2, 1e-20, 3), 0.512054316683796},
      {"NonCentralCdfChi", D::NonCentralCdfChi(1e-290, 0.001, 1e-30), 0.71610175241384097},
      {"ncdbet", D::ncdbet(0.983, 3.2e-32, 4.7e-34, 0.0034, 0, code), 0.014450313482146961},
      {"ncdbet", D::ncdbet(0.5, 1e-20, 1e-20, 100, 0, code), 9.6437492409342516e-23},
      {"ncdbet", D::ncdbet(0.9, 1e-15, 2, 1e-200, 0, code), 0.99999999999999999},
      {"NonCentralCdfF", D::NonCentralCdfF(2, 3, 5, 1e-300, 0), 0.76737608199992144},
      {"NonCentralCdfF", D::NonCentralCdfF(1e-150, 4, 1e-12, 7, 0), 1.207895336893344e-289},
      {"NonCentralCdfF", D::NonCentralCdfF(30, 1e-30, 1e-35, 2, 0), 3.6787576241381816e-6},
      {"dnlbnc", D::dnlbnc(1e-10, 1e-12, code), 1.6284847260607406e-22},
      {"dnlbnc", D::dnlbnc(5.0, 1e-300, code), 2.2833333333333334e-300},
      {"dnlbnc", D::dnlbnc(0.07, 0.03, code), 0.0018782286489020821},
      {"dnlbnc", D::dnlbnc(100.0, 0.001, code), 0.0051865504759216245},
  };
  for (const auto& row : kRows)
    EXPECT_NEAR(row.value, row.want, std::fabs(row.want) * 2e-13) << row.what << ' ' << row.want;
  EXPECT_EQ(D::IdfF(1 - 0x1p-52, 1e-25, 10), 0);
  EXPECT_EQ(D::IdfBeta(0.9, 1e-20, 2e-20), 1);
}

TEST(Distributions, Symmetries) {
  Scan(1e-8, 30, [](double x) {
    EXPECT_EQ(D::derf(-x), -D::derf(x));
    EXPECT_EQ(D::PdfNormalStandard(-x), D::PdfNormalStandard(x));
    for (const double df : {0.7, 1.0, 12.0, 1e5}) {
      EXPECT_EQ(D::SigT(x, df), D::CdfT(-x, df));
      EXPECT_EQ(D::PdfT(-x, df, code), D::PdfT(x, df, code));
    }
    const double p = x / 64;
    EXPECT_EQ(D::IdfT(p, 3, 1e-20, 1e-12),
              p < 0.5 ? -std::fabs(D::IdfT(p, 3, 1e-20, 1e-12)) : D::IdfT(p, 3, 1e-20, 1e-12));
    EXPECT_NEAR(D::CdfF(x, 3, 8), D::SigF(1 / x, 8, 3), 1e-14);
  });
}

TEST(Distributions, LargeCountsAddUp) {
  // The normal approximation takes over where ten thousand steps of the fraction do not do.
  const double n = 1e15;
  EXPECT_NEAR(D::CdfBin(n / 2, n, 0.5, code), 0.5 + D::PdfBin(n / 2, n, 0.5, code) / 2, 1e-12);
  EXPECT_NEAR(D::CdfBin(n / 2 + std::sqrt(n) / 2, n, 0.5, code), D::CdfStdNorm(1), 1e-7);
  EXPECT_NEAR(D::gammad(1e15 + 3e7, 1e15, false, code), D::CdfStdNorm(-3e7 / std::sqrt(1e15)), 1e-7);
  // 1 - E(u (a + j))^b / Gamma(b + 1) with j the Poisson variable and u the upper odds, which are tiny.
  EXPECT_NEAR(D::NonCentralCdfF(6.1763145470329926e29, 8.9522814795517096, 0.36565083793864706,
                                1616968190.1889935, 0),
              0.99990817396330960, 1e-12);
  EXPECT_NEAR(D::NonCentralCdfT(1e6, 3, 1e6, 0), D::SigChi(3, 3), 1e-6);  // delta / s alone
}

TEST(Samples, Percentiles) {
  const Numbers values = {1, 2, 4, 8};
  const Numbers ones = {1, 1, 1, 1};
  const Numbers repeated = {2, 0, 1, 1};  // 1, 1, 4, 8
  const struct {
    const Numbers& weights;
    double p, want;
  } kRows[] = {{ones, 0, 1},         {ones, 0.1, 1},    {ones, 0.3, 1.5},   {ones, 0.5, 3},
               {ones, 0.7, 6},       {ones, 1, 8},      {repeated, 0.2, 1}, {repeated, 0.4, 1},
               {repeated, 0.5, 2.5}, {repeated, 0.7, 6}};
  for (const auto& row : kRows) {
    EXPECT_NEAR(D::GPTile(values, row.weights, row.p, code), row.want, 1e-14) << row.p;
    EXPECT_EQ(code, 0);
  }
  for (const Numbers& wrong :
       {Numbers{1, 1}, Numbers{-1, 1, 1, 1}, Numbers{0, 0, 0, 0}, Numbers{kNaN, 1, 1, 1}}) {
    EXPECT_EQ(D::GPTile(values, wrong, 0.5, code), kMissing);
    EXPECT_EQ(code, 1);
  }
  EXPECT_EQ(D::GPTile(Numbers{2, 1}, Numbers{1, 1}, 0.5, code), kMissing) << "values that do not ascend";
}

TEST(Samples, IntervalOfTheMedian) {
  Numbers values(10);
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<double>(i + 1);
  double lower, upper;
  // Ten values: P(X <= 1) = 11 / 1024 for X binomial with p = 1/2.
  EXPECT_NEAR(D::Mednci(values, Numbers(10, 1.0), 0.95, lower, upper, code), 1 - 22.0 / 1024, 1e-15);
  EXPECT_EQ(lower, 2);
  EXPECT_EQ(upper, 9);
  D::Mednci(values, Numbers(10, 1.0), 0.999, lower, upper, code);
  EXPECT_EQ(code, 2) << "too few values";
  EXPECT_EQ(lower, kMissing);
  D::Mednci(values, Numbers(10, 1.5), 0.95, lower, upper, code);
  EXPECT_EQ(code, 3);
  // Intervals that the sample covers exactly: from the first to the last value.
  for (const auto& [count, confidence] : {std::pair(2, 0.5), {3, 0.75}, {4, 0.875}, {10, 1 - 2.0 / 1024}}) {
    const auto size = static_cast<std::size_t>(count);
    EXPECT_NEAR(D::Mednci(Numbers(values.begin(), values.begin() + count), Numbers(size, 1.0), confidence,
                          lower, upper, code),
                confidence, 1e-15);
    EXPECT_EQ(lower, 1);
    EXPECT_EQ(upper, count);
  }
  D::Mednci(Numbers{5}, Numbers{40}, 0.95, lower, upper, code);
  EXPECT_EQ(lower, 5);
}

}  // namespace
}  // namespace KxMath_940
