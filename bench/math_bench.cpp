// Distribution functions beside the same functions of Boost.Math in double precision, on the same arguments.

#include <boost/math/distributions/beta.hpp>
#include <boost/math/distributions/binomial.hpp>
#include <boost/math/distributions/chi_squared.hpp>
#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/gamma.hpp>
#include <boost/math/distributions/hypergeometric.hpp>
#include <boost/math/distributions/negative_binomial.hpp>
#include <boost/math/distributions/non_central_chi_squared.hpp>
#include <boost/math/distributions/non_central_f.hpp>
#include <boost/math/distributions/non_central_t.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Comparison.h"
#include "math/KxDistFun.h"
#include "math/KxMV.h"

namespace {

using namespace VeyraBench;
using D = KxMath_940::KxDistFun;

namespace bm = boost::math;
namespace bp = boost::math::policies;
using Policy = bp::policy<bp::promote_double<false>, bp::overflow_error<bp::ignore_error>,
                          bp::evaluation_error<bp::ignore_error>, bp::domain_error<bp::ignore_error>,
                          bp::discrete_quantile<bp::integer_round_up>>;
constexpr Policy kPolicy;

constexpr std::size_t kPoints = 2000;
// The floor takes a fifth of a millisecond for each.
constexpr std::size_t kFewPoints = 50;
constexpr double kSpecialLimit = 1.0;  // normal family, log-gamma, error functions
constexpr double kLimit = 1.5;

struct Point {
  double x, a, b, c;
};

using Sampler = Point (*)(std::mt19937&);

double Uniform(std::mt19937& random, double low, double high) {
  return std::uniform_real_distribution(low, high)(random);
}
double Parameter(std::mt19937& random) { return std::pow(10, Uniform(random, -1, 4)); }
// As many standard deviations from the mean as most arguments of tests are.
double Deviate(std::mt19937& random) { return std::normal_distribution<>(0, 2)(random); }

Point NormalPoint(std::mt19937& random) { return {Uniform(random, -8, 8), 0, 0, 0}; }
Point ProbabilityPoint(std::mt19937& random) {
  return {Uniform(random, 0, 1), Parameter(random), Parameter(random), 0};
}
Point LogGammaPoint(std::mt19937& random) { return {Parameter(random), 0, 0, 0}; }
Point GammaPoint(std::mt19937& random) {
  const double a = Parameter(random);
  return {a * std::exp(Deviate(random) / std::sqrt(a)), a, 0, 0};
}
Point TPoint(std::mt19937& random) { return {Deviate(random), Parameter(random), 0, 0}; }
Point FPoint(std::mt19937& random) {
  const double a = Parameter(random);
  const double b = Parameter(random);
  return {std::exp(Deviate(random) * std::sqrt(2 / a + 2 / b)), a, b, 0};
}
Point BetaPoint(std::mt19937& random) {
  const Point f = FPoint(random);
  const double odds = f.x * f.a / f.b;
  return {odds / (1 + odds), f.a, f.b, 0};
}
Point BinomialPoint(std::mt19937& random) {
  const double n = std::ceil(std::pow(10, Uniform(random, 0.5, 4)));
  const double p = Uniform(random, 0.01, 0.99);
  const double k = std::round(n * p + Deviate(random) * std::sqrt(n * p * (1 - p)));
  return {std::min(std::max(k, 0.0), n - 1), n, p, 0};
}
Point NegativeBinomialPoint(std::mt19937& random) {
  const double r = Parameter(random);
  const double p = Uniform(random, 0.05, 0.95);
  return {std::max(0.0, std::round(r * (1 - p) / p + Deviate(random) * std::sqrt(r * (1 - p)) / p)), r, p, 0};
}
Point HypergeometricPoint(std::mt19937& random) {
  const double total = std::ceil(std::pow(10, Uniform(random, 1, 4)));
  const double sample = std::ceil(Uniform(random, 0.1, 0.9) * total);
  const double successes = std::ceil(Uniform(random, 0.1, 0.9) * total);
  const double mean = sample * successes / total;
  const double x =
      std::round(mean + Deviate(random) * std::sqrt(mean * (1 - sample / total) * (1 - successes / total)));
  return {std::min(std::max(x, std::max(0.0, sample + successes - total)), std::min(sample, successes)),
          total, sample, successes};
}
Point NonCentralPoint(std::mt19937& random) {
  Point point = FPoint(random);
  point.c = Parameter(random);
  return point;
}
Point NonCentralTPoint(std::mt19937& random) {
  const double delta = Uniform(random, 0, 10);
  return {delta + Deviate(random), Parameter(random), delta, 0};
}

struct Subject {
  const char* name;
  double limit;
  Sampler sample;
  double (*ours)(const Point&);
  double (*floor)(const Point&);
  std::size_t points = kPoints;
};

long code;
int shortCode;

unsigned Count(double x) { return static_cast<unsigned>(x); }

#define OURS(...) [](const Point& p) -> double { return __VA_ARGS__; }
#define FLOOR(...) [](const Point& p) -> double { return __VA_ARGS__; }
const Subject kSubjects[] = {
    {"CdfStdNorm", kSpecialLimit, NormalPoint, OURS(D::CdfStdNorm(p.x)),
     FLOOR(bm::cdf(bm::normal_distribution<double, Policy>(), p.x))},
    {"PdfNormalStandard", kSpecialLimit, NormalPoint, OURS(D::PdfNormalStandard(p.x)),
     FLOOR(bm::pdf(bm::normal_distribution<double, Policy>(), p.x))},
    {"CdfNorm", kSpecialLimit, NormalPoint, OURS(D::CdfNorm(p.x, 0.3, 1.1)),
     FLOOR(bm::cdf(bm::normal_distribution<double, Policy>(0.3, 1.1), p.x))},
    {"IdfStdNorm", kSpecialLimit, ProbabilityPoint, OURS(D::IdfStdNorm(p.x)),
     FLOOR(bm::quantile(bm::normal_distribution<double, Policy>(), p.x))},
    {"derf", kSpecialLimit, NormalPoint, OURS(D::derf(p.x)), FLOOR(bm::erf(p.x, kPolicy))},
    {"derfc", kSpecialLimit, NormalPoint, OURS(D::derfc(p.x)), FLOOR(bm::erfc(p.x, kPolicy))},
    {"dnlgam", kSpecialLimit, LogGammaPoint, OURS(D::dnlgam(p.x)), FLOOR(bm::lgamma(p.x, kPolicy))},
    {"CdfGam", kLimit, GammaPoint, OURS(D::CdfGam(p.x, p.a, 1)),
     FLOOR(bm::cdf(bm::gamma_distribution<double, Policy>(p.a), p.x))},
    {"SigChi", kLimit, GammaPoint, OURS(D::SigChi(p.x, p.a)),
     FLOOR(bm::cdf(bm::complement(bm::chi_squared_distribution<double, Policy>(p.a), p.x)))},
    {"PdfGamma", kLimit, GammaPoint, OURS(D::PdfGamma(p.x, p.a, 1)),
     FLOOR(bm::pdf(bm::gamma_distribution<double, Policy>(p.a), p.x))},
    {"IdfChi", kLimit, ProbabilityPoint, OURS(D::IdfChi(p.x, p.a)),
     FLOOR(bm::quantile(bm::chi_squared_distribution<double, Policy>(p.a), p.x))},
    {"CdfBeta", kLimit, BetaPoint, OURS(D::CdfBeta(p.x, p.a, p.b)),
     FLOOR(bm::cdf(bm::beta_distribution<double, Policy>(p.a, p.b), p.x))},
    {"IdfBeta", kLimit, ProbabilityPoint, OURS(D::IdfBeta(p.x, p.a, p.b)),
     FLOOR(bm::quantile(bm::beta_distribution<double, Policy>(p.a, p.b), p.x))},
    {"CdfT", kLimit, TPoint, OURS(D::CdfT(p.x, p.a)),
     FLOOR(bm::cdf(bm::students_t_distribution<double, Policy>(p.a), p.x))},
    {"PdfT", kLimit, TPoint, OURS(D::PdfT(p.x, p.a, code)),
     FLOOR(bm::pdf(bm::students_t_distribution<double, Policy>(p.a), p.x))},
    {"IdfT", kLimit, ProbabilityPoint, OURS(D::IdfT(p.x, p.a, 1e-20, 1e-12)),
     FLOOR(bm::quantile(bm::students_t_distribution<double, Policy>(p.a), p.x))},
    {"CdfF", kLimit, FPoint, OURS(D::CdfF(p.x, p.a, p.b)),
     FLOOR(bm::cdf(bm::fisher_f_distribution<double, Policy>(p.a, p.b), p.x))},
    {"IdfF", kLimit, ProbabilityPoint, OURS(D::IdfF(p.x, p.a, p.b)),
     FLOOR(bm::quantile(bm::fisher_f_distribution<double, Policy>(p.a, p.b), p.x))},
    {"CdfBin", kLimit, BinomialPoint, OURS(D::CdfBin(p.x, p.a, p.b, code)),
     FLOOR(bm::cdf(bm::binomial_distribution<double, Policy>(p.a, p.b), p.x))},
    {"PdfBin", kLimit, BinomialPoint, OURS(D::PdfBin(p.x, p.a, p.b, code)),
     FLOOR(bm::pdf(bm::binomial_distribution<double, Policy>(p.a, p.b), p.x))},
    {"IdfBin", kLimit, BinomialPoint, OURS(D::IdfBin(0.37, p.a, p.b, code)),
     FLOOR(bm::quantile(bm::binomial_distribution<double, Policy>(p.a, p.b), 0.37))},
    {"PdfNegBin", kLimit, NegativeBinomialPoint, OURS(D::PdfNegBin(p.x, p.a, p.b, code)),
     FLOOR(bm::pdf(bm::negative_binomial_distribution<double, Policy>(p.a, p.b), p.x))},
    {"PdfHyper", kLimit, HypergeometricPoint,
     OURS(D::PdfHyper(std::lround(p.x), std::lround(p.a), std::lround(p.b), std::lround(p.c))),
     FLOOR(bm::pdf(bm::hypergeometric_distribution<double, Policy>(Count(p.c), Count(p.b), Count(p.a)), p.x)),
     kFewPoints},
    {"CDFHyper", kLimit, HypergeometricPoint,
     OURS(D::CDFHyper(std::lround(p.x), std::lround(p.a), std::lround(p.b), std::lround(p.c), shortCode)),
     FLOOR(bm::cdf(bm::hypergeometric_distribution<double, Policy>(Count(p.c), Count(p.b), Count(p.a)), p.x)),
     kFewPoints},
    {"NonCentralCdfChi", kLimit, NonCentralPoint, OURS(D::NonCentralCdfChi(p.x*(p.a + p.c), p.a, p.c)),
     FLOOR(bm::cdf(bm::non_central_chi_squared_distribution<double, Policy>(p.a, p.c), p.x*(p.a + p.c)))},
    {"NonCentralCdfF", kLimit, NonCentralPoint,
     OURS(D::NonCentralCdfF(p.x*(1 + p.c / p.a), p.a, p.b, p.c, 0)),
     FLOOR(bm::cdf(bm::non_central_f_distribution<double, Policy>(p.a, p.b, p.c), p.x*(1 + p.c / p.a)))},
    {"NonCentralCdfT", kLimit, NonCentralTPoint, OURS(D::NonCentralCdfT(p.x, p.a, p.b, 0)),
     FLOOR(bm::cdf(bm::non_central_t_distribution<double, Policy>(p.a, p.b), p.x))},
    {"NonCentralPdfT", kLimit, NonCentralTPoint, OURS(D::NonCentralPdfT(p.x, p.a, p.b, code)),
     FLOOR(bm::pdf(bm::non_central_t_distribution<double, Policy>(p.a, p.b), p.x))},
};

std::vector<Point> MakePoints(const Subject& subject) {
  std::mt19937 random(5);
  std::vector<Point> points;
  while (points.size() < subject.points) points.push_back(subject.sample(random));
  return points;
}

// The digits are the tests' business; here a wrong function must not look quick.
void RequireAgreement(const Subject& subject, const std::vector<Point>& points) {
  std::size_t far = 0;
  for (const Point& point : points) {
    const double ours = subject.ours(point);
    const double other = subject.floor(point);
    far += !(std::fabs(ours - other) <= 1e-6 * std::fabs(other) + 1e-12);
  }
  if (far > 0) std::fprintf(stderr, "%s: %zu of %zu values differ\n", subject.name, far, points.size());
  Require(far <= points.size() / 100, subject.name);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::vector<double> ratios(std::size(kSubjects), 0);
  for (std::size_t i = 0; i < std::size(kSubjects); ++i) {
    const Subject& subject = kSubjects[i];
    benchmark::RegisterBenchmark(
        subject.name,
        [&subject, &ratio = ratios[i]](benchmark::State& state) {
          const std::vector<Point> points = MakePoints(subject);
          RequireAgreement(subject, points);
          double sum = 0;
          ratio = Compare(
              state,
              [&] {
                for (const Point& point : points) sum += subject.floor(point);
              },
              [&] {
                for (const Point& point : points) sum += subject.ours(point);
              });
          benchmark::DoNotOptimize(sum);
          state.counters["ns"] =
              benchmark::Counter(static_cast<double>(subject.points),
                                 benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
        })
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond)
        ->Iterations(100);
  }
  benchmark::RunSpecifiedBenchmarks();
  for (std::size_t i = 0; i < std::size(kSubjects); ++i) {
    if (ratios[i] > 0) PrintRatio(kSubjects[i].name, ratios[i], kSubjects[i].limit);
  }
}
