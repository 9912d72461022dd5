// The built-in functions as hosts call them.

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <memory>

#include "data/NumericValue.h"
#include "data/Truncate.h"
#include "math/KxDistFun.h"
#include "transform/FunctionCallInternal.h"
#include "transform/TextFunctions.h"
#include "transform/TransformationDictionary.h"

namespace KxVeyra_940 {

namespace {

using KxMath_940::KxDistFun;
using Numbers = std::vector<double>;
using Values = std::vector<ScoreValue*>;

constexpr double kMissing = NumericValue::gSysmisValue;
constexpr double kMaxExponent = 709.0;
constexpr double kMinExponent = -708.0;
constexpr double kPowerOfZeroBound = 1e-14;
constexpr double kInverseRootTwoPi = 0.3989422804014327;
constexpr double kRootTwoPi = 2.5066282731988805;
constexpr double kRootTwo = 1.4142135623730951;
constexpr double kLargestStandardised = 37.61;  // the density beyond is 0

bool IsMissing(double x) { return x == kMissing; }

template <std::size_t count>
bool AreAllThere(const Numbers& values) {
  return values.size() == count && std::ranges::none_of(values, IsMissing);
}

double Truth(bool holds) { return holds ? 1.0 : 0.0; }

template <class Compare>
double ComparePair(const Numbers& values, Compare compare) {
  return values.size() == 2 ? Truth(compare(values[0], values[1])) : 0.0;
}

// The smallest or largest value that is there, starting from an infinity.
template <class IsBetter>
double Extreme(const Numbers& values, double start, IsBetter isBetter) {
  double best = start;
  for (double x : values)
    if (!IsMissing(x) && isBetter(x, best)) best = x;
  return best == start ? kMissing : best;
}

// Deletes values on every way out.
class Consumed {
 public:
  explicit Consumed(Values& values, ScoreValue* value = nullptr) : fValues(values), fValue(value) {}
  Consumed(const Consumed&) = delete;
  Consumed& operator=(const Consumed&) = delete;
  ~Consumed() {
    std::ranges::sort(fValues);
    fValues.erase(std::unique(fValues.begin(), fValues.end()), fValues.end());
    if (std::ranges::find(fValues, fValue) == fValues.end()) delete fValue;
    for (const ScoreValue* value : fValues) delete value;
    fValues.clear();
  }

 private:
  Values& fValues;
  ScoreValue* fValue;
};

std::string_view TextOf(const StringValue* value) {
  return value == nullptr ? std::string_view() : std::string_view(value->GetText());
}

int LengthOf(const StringValue* value) { return value == nullptr ? 0 : value->GetLength(); }

constexpr std::int64_t kNoLimit = INT64_MAX;

std::int64_t SizeOf(const std::string& text) { return static_cast<std::int64_t>(text.size()); }

// A length as the functions for hosts give it.
int DeclaredLength(std::int64_t length) {
  return static_cast<int>(std::clamp<std::int64_t>(length, INT_MIN, INT_MAX));
}

}  // namespace

using Functions = TransformationDictionary;

double Functions::Plus(double left, double right) {
  return IsMissing(left) || IsMissing(right) ? kMissing : left + right;
}

double Functions::Plus(const Numbers& values) {
  return AreAllThere<2>(values) ? values[0] + values[1] : kMissing;
}

double Functions::Minus(const Numbers& values) {
  return AreAllThere<2>(values) ? values[0] - values[1] : kMissing;
}

double Functions::Multiply(const Numbers& values) {
  return AreAllThere<2>(values) ? values[0] * values[1] : kMissing;
}

double Functions::Divided(const Numbers& values) {
  return AreAllThere<2>(values) && values[1] != 0 ? values[0] / values[1] : kMissing;
}

double Functions::Sum(const Numbers& values) {
  double sum = 0;
  bool isAny = false;
  for (double x : values) {
    if (IsMissing(x)) continue;
    sum += x;
    isAny = true;
  }
  return isAny ? sum : kMissing;
}

double Functions::Max(const Numbers& values) {
  return Extreme(values, -std::numeric_limits<double>::infinity(), std::greater<double>());
}

double Functions::Min(const Numbers& values) {
  return Extreme(values, std::numeric_limits<double>::infinity(), std::less<double>());
}

double Functions::Mean(const Numbers& values) {
  const double sum = Sum(values);
  if (IsMissing(sum)) return kMissing;
  return sum / static_cast<double>(std::ranges::count_if(values, [](double x) { return !IsMissing(x); }));
}

// The sum of squares is kept as scale^2 * scaledSum, so that no square overflows.
double Functions::Sd(const Numbers& values) {
  const double mean = Mean(values);
  if (IsMissing(mean)) return kMissing;
  double scale = 0;
  double scaledSum = 1;
  double count = 0;
  for (double x : values) {
    if (IsMissing(x)) continue;
    ++count;
    const double deviation = std::fabs(x - mean);
    if (deviation == 0) continue;
    if (deviation <= scale) {
      scaledSum += (deviation / scale) * (deviation / scale);
    } else {
      scaledSum = 1 + scaledSum * (scale / deviation) * (scale / deviation);
      scale = deviation;
    }
  }
  return count > 1 ? scale * std::sqrt(scaledSum / (count - 1)) : kMissing;
}

double Functions::Variance(const Numbers& values) {
  const double deviation = Sd(values);
  return IsMissing(deviation) ? kMissing : deviation * deviation;
}

double Functions::CdfNormal(const Numbers& values) {
  return AreAllThere<3>(values) ? KxDistFun::CdfNorm(values[0], values[1], values[2]) : kMissing;
}

double Functions::IdfNormal(const Numbers& values) {
  return AreAllThere<3>(values) ? KxDistFun::IdfNorm(values[0], values[1], values[2]) : kMissing;
}

double Functions::PdfNormal(const Numbers& values) {
  if (!AreAllThere<3>(values) || !(values[2] > 0)) return kMissing;
  const double z = (values[0] - values[1]) / values[2];
  if (z == 0) return kInverseRootTwoPi / values[2];
  if (std::fabs(z) > kLargestStandardised) return 0;
  return std::exp(-z * z / 2) * kInverseRootTwoPi / values[2];
}

double Functions::AndOperator(const Numbers& values) {
  return Truth(!values.empty() && std::ranges::none_of(values, [](double x) { return x == 0; }));
}

double Functions::OrOperator(const Numbers& values) {
  return Truth(std::ranges::any_of(values, [](double x) { return x != 0; }));
}

double Functions::NotOperator(const Numbers& values) { return Truth(values.size() == 1 && values[0] == 0); }

double Functions::MedianOperator(const Numbers& values) {
  Numbers there;
  there.reserve(values.size());
  std::ranges::copy_if(values, std::back_inserter(there), [](double x) { return !IsMissing(x); });
  return MedianOf(there);
}

double Functions::ProductOperator(const Numbers& values) {
  double product = 1;
  bool isAny = false;
  for (double x : values) {
    if (IsMissing(x)) continue;
    product *= x;
    isAny = true;
  }
  return isAny ? product : kMissing;
}

double Functions::stdNormalCDF(const Numbers& values) {
  return AreAllThere<1>(values) ? KxDistFun::CdfStdNorm(values[0]) : kMissing;
}

double Functions::stdNormalIDF(const Numbers& values) {
  return AreAllThere<1>(values) ? KxDistFun::IdfStdNorm(values[0]) : kMissing;
}

double Functions::stdNormalPDF(const Numbers& values) {
  return AreAllThere<1>(values) ? std::exp(-values[0] * values[0] / 2) / kRootTwoPi : kMissing;
}

double Functions::Erf(const Numbers& values) {
  return AreAllThere<1>(values) ? 2 * KxDistFun::CdfStdNorm(values[0] * kRootTwo) - 1 : kMissing;
}

double Functions::lessThan(const Numbers& values) { return ComparePair(values, std::less<double>()); }

double Functions::lessOrEqual(const Numbers& values) {
  return ComparePair(values, std::less_equal<double>());
}

double Functions::greaterThan(const Numbers& values) { return ComparePair(values, std::greater<double>()); }

double Functions::greaterOrEqual(const Numbers& values) {
  return ComparePair(values, std::greater_equal<double>());
}

double Functions::Matches(const std::vector<std::string>& texts) {
  if (texts.size() != 2) return 0;
  RegularExpression expression;
  return Truth(FindsMatch(expression, texts[0], texts[1]));
}

double Functions::Pow(double x, int n) {
  if (n == 0 && x < kPowerOfZeroBound) return 1;
  return IsMissing(x) ? kMissing : std::pow(x, n);
}

double Functions::Abs(double x) { return IsMissing(x) ? kMissing : std::fabs(x); }

double Functions::Sqrt(double x) { return x >= 0 ? std::sqrt(x) : kMissing; }

double Functions::Ln(double x) { return x > 0 ? std::log(x) : kMissing; }

double Functions::Log10(double x) { return x > 0 ? std::log10(x) : kMissing; }

double Functions::Trunc(double x) {
  constexpr double kLowest = std::numeric_limits<int>::min();
  constexpr double kLargest = std::numeric_limits<int>::max();
  return x > kLowest && x < kLargest ? static_cast<double>(static_cast<int>(x)) : kMissing;
}

double Functions::Exp(double x) {
  if (IsMissing(x) || std::isnan(x) || x > kMaxExponent) return kMissing;
  return x <= kMinExponent ? 0.0 : std::exp(x);
}

double Functions::Mod(double a, double b) {
  if (IsMissing(a) || IsMissing(b) || b == 0) return kMissing;
  const double quotient = Trunc(a / b);
  return IsMissing(quotient) ? kMissing : a - b * quotient;
}

double Functions::Rnd(double x) {
  const double whole = Trunc(x);
  if (IsMissing(whole) || std::fabs(x) - std::fabs(whole) < 0.5) return whole;
  return x > 0 ? whole + 1 : whole - 1;
}

double Functions::Floor(double x) { return IsMissing(x) ? kMissing : std::floor(x); }

double Functions::Ceil(double x) { return IsMissing(x) ? kMissing : std::ceil(x); }

double Functions::CdfNorm(double x) { return IsMissing(x) ? kMissing : KxDistFun::CdfStdNorm(x); }

double Functions::Threshold(double x, double threshold) {
  return IsMissing(x) || IsMissing(threshold) ? kMissing : Truth(x > threshold);
}

double Functions::equal(Values& values) {
  const Consumed consumed(values);
  const bool isPair = values.size() == 2 && values[0] != nullptr && values[1] != nullptr;
  return Truth(isPair && values[0]->GetType() == values[1]->GetType() && *values[0] == *values[1]);
}

double Functions::notEqual(Values& values) { return 1.0 - equal(values); }

double Functions::isIn(Values& values, ScoreValue* value) {
  const Consumed consumed(values, value);
  if (value == nullptr) return 0;
  return Truth(std::ranges::any_of(
      values, [value](const ScoreValue* member) { return member != nullptr && *value == *member; }));
}

double Functions::isNotIn(Values& values, ScoreValue* value) { return 1.0 - isIn(values, value); }

std::string Functions::Ltrim(const StringValue* value, int& length) {
  std::string out;
  length = DeclaredLength(TrimLeading(TextOf(value), LengthOf(value), out));
  return out;
}

std::string Functions::Rtrim(const StringValue* value, int& length) {
  std::string out;
  length = DeclaredLength(TrimTrailing(TextOf(value), out));
  return out;
}

std::string Functions::ToLowerCase(const StringValue* value, int& length) {
  std::string out;
  length = DeclaredLength(LowerCase(TextOf(value), LengthOf(value), out));
  return out;
}

std::string Functions::ToUpperCase(const StringValue* value, int& length) {
  std::string out;
  length = DeclaredLength(UpperCase(TextOf(value), LengthOf(value), out));
  return out;
}

std::string Functions::Substring(const StringValue* value, int start, int& length) {
  std::string out;
  length = DeclaredLength(TextFrom(TextOf(value), start, out));
  return out;
}

std::string Functions::Substring(const StringValue* value, int start, int count, int& length) {
  std::string out;
  length = DeclaredLength(BytesFrom(TextOf(value), start, count, out));
  return out;
}

std::string Functions::Substring_unicode(const StringValue* value, int start, int count, int& length) {
  std::string out;
  length = DeclaredLength(UnitsFrom(TextOf(value), start, count, out));
  return out;
}

std::string Functions::Replace(const std::vector<std::string>& texts, int& length) {
  std::string out = texts.empty() ? std::string() : texts[0];
  RegularExpression expression;
  if (texts.size() == 3) ReplaceMatches(expression, texts[0], texts[1], texts[2], kNoLimit, out);
  length = DeclaredLength(SizeOf(out));
  return out;
}

std::string Functions::Concat(const std::vector<std::string>& texts, const std::vector<int>& lengths,
                              int& length) {
  std::string out;
  for (std::size_t i = 0; i < texts.size(); ++i)
    AppendFitted(texts[i], i < lengths.size() ? lengths[i] : DeclaredLength(SizeOf(texts[i])), out);
  length = DeclaredLength(SizeOf(out));
  return out;
}

double Functions::OutlierHandle(double x, int method, double centre, double a, double b, double c) {
  constexpr int kAsExtremeValues = 2;
  if (IsMissing(x)) return x;
  const double halfWidth = a * b / std::sqrt(c);
  const double low = centre - halfWidth;
  const double high = centre + halfWidth;
  if (low <= x && x <= high) return x;
  if (method != kAsExtremeValues) return kMissing;
  return x < low ? low : high;
}

ScoreValue* Functions::ImputeCatFieldMissingAgainstConTargetHandle(
    double target, const std::vector<ScoreValueLabel*>& categories, const Numbers& means,
    const Numbers& variances) {
  const std::size_t count = std::min({categories.size(), means.size(), variances.size()});
  std::size_t best = count;
  double least = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const double distance = std::fabs(target - means[i]) / std::sqrt(variances[i]);
    if (best < count && !(distance < least)) continue;
    best = i;
    least = distance;
  }
  return best < count ? categories[best]->GetValue() : nullptr;
}

double MedianOf(Numbers& values) {
  const auto isNaN = [](double x) { return std::isnan(x); };
  if (values.empty() || std::ranges::any_of(values, isNaN)) return kMissing;
  std::ranges::sort(values);
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}  // namespace KxVeyra_940
