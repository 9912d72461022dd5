// Measures the distribution functions at the reference points (make_reference_points.py).
//
// An error is what remains of the distance from the reference value after four units in the last place of the
// point, as the slope carries them over; relative to the value, or for quantiles to the change of the point
// that changes the smaller tail by all of itself.

#ifndef VEYRA_ACCURACY_ACCURACY_H_
#define VEYRA_ACCURACY_ACCURACY_H_

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "math/KxDistFun.h"

namespace KxMath_940::Accuracy {

using Numbers = std::span<const double>;

enum class Limit { kTight, kParameters, kQuantile, kNonCentral };

// A function and the columns behind the arguments in the file with its points.  `slope` is that of the value
// by the first argument, kExact where that is a count; `scale` is what an error is relative to.  What a
// search should find is the last of the arguments, and its scale is the first value over the slope.
constexpr int kExact = -1;
constexpr int kValueItself = -1;
constexpr int kSearch = -2;

struct Subject {
  const char* function;
  const char* file;
  int arguments;
  int value;
  int slope;
  int scale;
  Limit limit;
  double (*evaluate)(Numbers point);
};

struct Worst {
  double error = 0;
  double limit = 1;
  int points = 0;
  std::string where = "nowhere";
};

struct Result {
  Worst ordinary;  // parameters up to 1e3
  Worst large;     // beyond
};

inline double Ulp(double x) {
  x = std::fabs(x);
  return std::nextafter(x, std::numeric_limits<double>::infinity()) - x;
}

inline double LimitOf(Limit limit, double largest) {
  switch (limit) {
    case Limit::kTight:
      return 1e-13;
    case Limit::kParameters:
      return largest > 1e3 ? 1e-15 * largest : 1e-12;
    default:
      return 1e-10;
  }
}

inline long code;
inline int shortCode;

// clang-format off
inline const Subject kSubjects[] = {
#define F(body) [](Numbers a) -> double { return KxDistFun::body; }
    {"CdfStdNorm", "normal", 1, 0, 2, kValueItself, Limit::kTight, F(CdfStdNorm(a[0]))},
    {"prbnrm", "normal", 1, 0, 2, kValueItself, Limit::kTight, F(prbnrm(a[0]))},
    {"PdfNormalStandard", "normal", 1, 1, 3, kValueItself, Limit::kTight, F(PdfNormalStandard(a[0]))},
    {"CdfNorm", "general_normal", 3, 0, 2, kValueItself, Limit::kTight, F(CdfNorm(a[0], a[1], a[2]))},
    {"PdfNormal", "general_normal", 3, 1, 3, kValueItself, Limit::kTight, F(PdfNormal(a[0], a[1], a[2]))},
    {"IdfStdNorm, probit", "normal_quantile", 1, 0, 1, kValueItself, Limit::kTight, F(IdfStdNorm(a[0]))},
    {"derf", "error_functions", 1, 0, 2, kValueItself, Limit::kTight, F(derf(a[0]))},
    {"derfc", "error_functions", 1, 1, 2, kValueItself, Limit::kTight, F(derfc(a[0]))},
    {"dnlgam", "log_gamma", 1, 0, 1, kValueItself, Limit::kTight, F(dnlgam(a[0]))},
    {"cdfexp", "exponential", 2, 0, 1, kValueItself, Limit::kTight, F(cdfexp(a[0], a[1], code))},
    {"CdfGam, shape 1", "exponential", 2, 0, 1, kValueItself, Limit::kTight, F(CdfGam(a[0], 1, a[1]))},
    {"CdfT, df 1", "cauchy", 1, 0, 2, kValueItself, Limit::kTight, F(CdfT(a[0], 1))},
    {"SigT, df 1", "cauchy", 1, 1, 2, kValueItself, Limit::kTight, F(SigT(a[0], 1))},
    {"gammad, lower", "gamma", 2, 0, 3, kValueItself, Limit::kParameters, F(gammad(a[0], a[1], true, code))},
    {"gammad, upper", "gamma", 2, 1, 3, kValueItself, Limit::kParameters, F(gammad(a[0], a[1], false, code))},
    {"CdfChi", "gamma", 2, 0, 3, kValueItself, Limit::kParameters, F(CdfChi(2 * a[0], 2 * a[1]))},
    {"SigChi", "gamma", 2, 1, 3, kValueItself, Limit::kParameters, F(SigChi(2 * a[0], 2 * a[1]))},
    {"CdfGam", "gamma", 2, 0, 3, kValueItself, Limit::kParameters, F(CdfGam(a[0] / 8, a[1], 8))},
    {"PdfGamma", "gamma", 2, 2, 4, kValueItself, Limit::kParameters, F(PdfGamma(a[0] / 8, a[1], 8) / 8)},
    {"CdfBeta, cdfbet", "beta", 3, 0, 2, kValueItself, Limit::kParameters, F(CdfBeta(a[0], a[1], a[2]))},
    {"CdfF", "f", 3, 0, 2, kValueItself, Limit::kParameters, F(CdfF(a[0], a[1], a[2]))},
    {"SigF", "f", 3, 1, 2, kValueItself, Limit::kParameters, F(SigF(a[0], a[1], a[2]))},
    {"CdfT", "t", 2, 0, 3, kValueItself, Limit::kParameters, F(CdfT(a[0], a[1]))},
    {"SigT", "t", 2, 1, 3, kValueItself, Limit::kParameters, F(SigT(a[0], a[1]))},
    {"PdfT", "t", 2, 2, 4, kValueItself, Limit::kParameters, F(PdfT(a[0], a[1], code))},
    {"CdfBin", "binomial", 3, 0, kExact, kValueItself, Limit::kParameters, F(CdfBin(a[0], a[1], a[2], code))},
    {"PdfBin", "binomial", 3, 1, kExact, kValueItself, Limit::kParameters, F(PdfBin(a[0], a[1], a[2], code))},
    {"dnlbnc", "log_binomial", 2, 0, kExact, kValueItself, Limit::kParameters, F(dnlbnc(a[0], a[1], code))},
    {"PdfNegBin", "negative_binomial", 3, 0, kExact, kValueItself, Limit::kParameters, F(PdfNegBin(a[0], a[1], a[2], code))},
    {"CDFHyper", "hypergeometric", 4, 0, kExact, kValueItself, Limit::kParameters,
     F(CDFHyper(std::lround(a[0]), std::lround(a[1]), std::lround(a[2]), std::lround(a[3]), shortCode))},
    {"PdfHyper", "hypergeometric", 4, 1, kExact, kValueItself, Limit::kParameters,
     F(PdfHyper(std::lround(a[0]), std::lround(a[1]), std::lround(a[2]), std::lround(a[3])))},
    {"IdfChi", "gamma_quantile", 2, 0, kExact, 1, Limit::kQuantile, F(IdfChi(a[0], 2 * a[1]) / 2)},
    {"IdfGam", "gamma_quantile", 2, 0, kExact, 1, Limit::kQuantile, F(IdfGam(a[0], a[1], 0.125) / 8)},
    {"IdfBeta, betinv", "beta_quantile", 3, 0, kExact, 1, Limit::kQuantile, F(IdfBeta(a[0], a[1], a[2]))},
    {"IdfF", "f_quantile", 3, 0, kExact, 1, Limit::kQuantile, F(IdfF(a[0], a[1], a[2]))},
    {"IdfT", "t_quantile", 2, 0, kExact, 1, Limit::kQuantile, F(IdfT(a[0], a[1], 1e-20, 1e-12))},
    {"NonCentralCdfChi", "noncentral_chi", 3, 0, 1, kValueItself, Limit::kNonCentral, F(NonCentralCdfChi(a[0], a[1], a[2]))},
    {"NonCentralCdfF", "noncentral_f", 4, 0, 1, kValueItself, Limit::kNonCentral, F(NonCentralCdfF(a[0], a[1], a[2], a[3], 0))},
    {"NonCentralCdfT", "noncentral_t", 3, 0, 2, kValueItself, Limit::kNonCentral, F(NonCentralCdfT(a[0], a[1], a[2], 0))},
    {"NonCentralPdfT", "noncentral_t", 3, 1, kExact, kValueItself, Limit::kNonCentral, F(NonCentralPdfT(a[0], a[1], a[2], code))},
    {"FindNCParamChi", "noncentral_chi", 3, -1, 2, kSearch, Limit::kNonCentral, F(FindNCParamChi(a[0], a[1], a[3], 0))},
    {"FindNCParamF", "noncentral_f", 4, -1, 2, kSearch, Limit::kNonCentral, F(FindNCParamF(a[0], a[1], a[2], a[4], 0))},
    {"FindNCParamT", "noncentral_t", 3, -1, 3, kSearch, Limit::kNonCentral, F(FindNCParamT(a[0], a[1], 0, a[3], 0))},
#undef F
};
// clang-format on

// The numbers of every line but the first.
inline std::vector<std::vector<double>> PointsOf(const std::string& file) {
  std::ifstream input(VEYRA_REFERENCE_POINTS "/" + file + ".txt");
  std::vector<std::vector<double>> points;
  std::string line;
  for (std::getline(input, line); std::getline(input, line);) {
    std::istringstream words(line);
    std::vector<double> numbers;
    for (std::string word; words >> word;) numbers.push_back(std::strtod(word.c_str(), nullptr));
    points.push_back(std::move(numbers));
  }
  return points;
}

inline std::string Show(Numbers arguments) {
  std::ostringstream text;
  text.precision(17);
  for (std::size_t i = 0; i < arguments.size(); ++i) text << (i == 0 ? "" : ", ") << arguments[i];
  return text.str();
}

inline void Count(Worst& worst, double error, double limit, Numbers arguments) {
  ++worst.points;
  if (error / limit <= worst.error / worst.limit) return;
  worst.error = error;
  worst.limit = limit;
  worst.where = Show(arguments);
}

// What an error at the point is relative to; 0 where the value says nothing.
inline double ScaleAt(const Subject& subject, Numbers columns, double value) {
  if (subject.scale == kValueItself) return std::fabs(value);
  if (subject.scale != kSearch) return columns[static_cast<std::size_t>(subject.scale)];
  // A probability that hardly depends on the parameter, or is as good as 1, does not tell where it is.
  const double slope = columns[static_cast<std::size_t>(subject.slope)];
  const bool tells = columns[0] < 1 - 1e-6 && slope * std::fabs(value) > 1e-10 * columns[0];
  return tells ? columns[0] / slope : 0;
}

inline Result Measure(const Subject& subject) {
  Result result;
  for (const std::vector<double>& point : PointsOf(subject.file)) {
    const auto count = static_cast<std::size_t>(subject.arguments);
    const Numbers arguments = Numbers(point).first(count);
    const Numbers columns = Numbers(point).subspan(count);
    const double value =
        subject.value < 0 ? arguments.back() : columns[static_cast<std::size_t>(subject.value)];
    const double scale = ScaleAt(subject, columns, value);
    if (scale == 0) continue;
    double slack = 0;
    if (subject.scale != kValueItself)
      slack = 4 * Ulp(value);
    else if (subject.slope != kExact)
      slack = 4 * columns[static_cast<std::size_t>(subject.slope)] * Ulp(arguments[0]);
    const double distance = std::fabs(subject.evaluate(point) - value);
    const double error = std::isnan(distance) ? 1e300 : std::max(0.0, distance - slack) / scale;
    double largest = 0;
    for (const double parameter : arguments.subspan(subject.slope == kExact ? 0 : 1)) {
      largest = std::max(largest, parameter);
    }
    const bool isLarge = largest > 1e3 && subject.limit != Limit::kTight;
    Count(isLarge ? result.large : result.ordinary, error, LimitOf(subject.limit, largest), arguments);
  }
  return result;
}

}  // namespace KxMath_940::Accuracy

#endif  // VEYRA_ACCURACY_ACCURACY_H_
