#include "transform/FunctionTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "data/TextRules.h"
#include "data/Truncate.h"
#include "transform/FunctionCallInternal.h"
#include "transform/TextFunctions.h"
#include "transform/TransformationDictionary.h"

namespace KxVeyra_940 {

namespace {

using T = TransformationDictionary;
using Call = FunctionCall;

constexpr double kMissing = NumericValue::gSysmisValue;

// --- Adapters: how a call reaches a function of numbers --------------------------------------------------

Outcome Answer(Call& call, double number) {
  call.result.SetNumber(number);
  return Outcome::kDone;
}

constexpr double Truth(bool holds) { return holds ? 1.0 : 0.0; }

Outcome AnswerTruth(Call& call, bool holds) { return Answer(call, Truth(holds)); }

template <double (*F)(double)>
Outcome CallUnary(Call& call) {
  return call.Count() == 1 ? Answer(call, F(call[0].number)) : Outcome::kNoResult;
}

template <double (*F)(double)>
constexpr FunctionBody Unary{CallUnary<F>, [](double x, double, double) { return F(x); }, 1};

template <double (*F)(double, double)>
Outcome CallBinary(Call& call) {
  return call.Count() == 2 ? Answer(call, F(call[0].number, call[1].number)) : Outcome::kNoResult;
}

template <double (*F)(double, double)>
constexpr FunctionBody Binary{CallBinary<F>, [](double x, double y, double) { return F(x, y); }, 2};

// The numbers that are there.
const std::vector<double>& Numbers(Call& call) {
  call.numbers.clear();
  for (const Operand* operand : call.operands)
    if (!operand->isMissing) call.numbers.push_back(operand->number);
  return call.numbers;
}

template <double (*F)(const std::vector<double>&)>
Outcome List(Call& call) {
  return Answer(call, F(Numbers(call)));
}

Outcome Median(Call& call) {
  Numbers(call);
  return Answer(call, MedianOf(call.numbers));
}

// --- Arithmetic that needs no test of missing operands: they are settled before
// -----------------------------

double Add(double a, double b) { return a + b; }
double Subtract(double a, double b) { return a - b; }
double Times(double a, double b) { return a * b; }
double Divide(double a, double b) { return b == 0 ? kMissing : a / b; }
double RealPower(double x, double y) { return std::pow(x, y); }

// --- Dates and times
// ----------------------------------------------------------------------------------------

using Duration = double (DateTimeValue::*)(const DateTimeValue&) const;
using Part = double (DateTimeValue::*)() const;

// First minus second, both in stored seconds.
template <Duration duration>
Outcome Difference(Call& call) {
  if (call.Count() != 2 || call[0].kind != Operand::kDateTime) return Outcome::kNoResult;
  const DateTimeValue first(call[0].number, call[0].dateTimeKind);
  const DateTimeValue second(call[1].number, DateTimeValue::kDateTimeVal);
  return Answer(call, (first.*duration)(second));
}

template <Part part>
Outcome PartOf(Call& call) {
  if (call.Count() != 1 || call[0].kind != Operand::kDateTime) return Outcome::kNoResult;
  return Answer(call, (DateTimeValue(call[0].number, call[0].dateTimeKind).*part)());
}

// --- Comparisons and logic
// ----------------------------------------------------------------------------------

// An operand as the value that it was, for pairs that are no two numbers.
class AsValue {
 public:
  explicit AsValue(const Operand& operand) {
    switch (operand.kind) {
      case Operand::kNumber:
        fNumber.SetDoubleValue(operand.number);
        fValue = &fNumber;
        return;
      case Operand::kDateTime:
        fDateTime.SetDateTimeValue(operand.number, operand.dateTimeKind);
        fValue = &fDateTime;
        return;
      case Operand::kText:
        fText.SetString(operand.text);
        fValue = &fText;
        return;
    }
  }
  AsValue(const AsValue&) = delete;
  AsValue& operator=(const AsValue&) = delete;
  const ScoreValue& operator*() const { return *fValue; }

 private:
  NumericValue fNumber;
  DateTimeValue fDateTime;
  StringValue fText{""};
  const ScoreValue* fValue = &fNumber;
};

bool AreNumbers(const Operand& left, const Operand& right) {
  return left.kind == Operand::kNumber && right.kind == Operand::kNumber;
}

int CompareTexts(const Operand& left, const Operand& right) {
  return TrimTrailingBlanks(left.text).compare(TrimTrailingBlanks(right.text));
}

// Values of different kinds differ.
bool AreEqual(const Operand& left, const Operand& right) {
  if (left.kind != right.kind) return false;
  switch (left.kind) {
    case Operand::kNumber:
      return NumericValue::IsEqual(left.number, right.number);
    case Operand::kText:
      return CompareTexts(left, right) == 0;
    case Operand::kDateTime:
      return left.number == right.number && left.dateTimeKind == right.dateTimeKind;
  }
  return false;
}

enum class Order { kLess, kLessOrEqual, kGreater, kGreaterOrEqual };

template <Order order>
bool Stands(double left, double right) {
  if constexpr (order == Order::kLess) return NumericValue::IsLess(left, right);
  if constexpr (order == Order::kLessOrEqual) return NumericValue::IsLessOrEqual(left, right);
  if constexpr (order == Order::kGreater) return NumericValue::IsLess(right, left);
  return NumericValue::IsLessOrEqual(right, left);
}

template <Order order>
bool Stands(const ScoreValue& left, const ScoreValue& right) {
  if constexpr (order == Order::kLess) return left < right;
  if constexpr (order == Order::kLessOrEqual) return left <= right;
  if constexpr (order == Order::kGreater) return left > right;
  return left >= right;
}

// The order of values, which leaves numbers that are very close in no order.
template <Order order>
Outcome ComparePair(Call& call) {
  if (call.Count() != 2) return Answer(call, 0);
  const Operand& left = call[0];
  const Operand& right = call[1];
  if (AreNumbers(left, right)) return AnswerTruth(call, Stands<order>(left.number, right.number));
  if (left.kind == Operand::kText && right.kind == Operand::kText)
    return AnswerTruth(call, Stands<order>(CompareTexts(left, right), 0));
  const AsValue first(left), second(right);
  return AnswerTruth(call, Stands<order>(*first, *second));
}

template <Order order>
constexpr FunctionBody Compare{ComparePair<order>,
                               [](double x, double y, double) { return Truth(Stands<order>(x, y)); }, 2};

template <bool wanted>
Outcome EqualPair(Call& call) {
  const bool isEqual = call.Count() == 2 && AreEqual(call[0], call[1]);
  return AnswerTruth(call, isEqual == wanted);
}

template <bool wanted>
constexpr FunctionBody Equal{
    EqualPair<wanted>,
    [](double x, double y, double) { return Truth(NumericValue::IsEqual(x, y) == wanted); }, 2};

template <bool wanted>
Outcome IsMember(Call& call) {
  bool isMember = false;
  for (std::size_t i = 1; i < call.Count() && !isMember; ++i)
    isMember = !call[i].isMissing && AreEqual(call[0], call[i]);
  return AnswerTruth(call, isMember == wanted);
}

// Of two operands; more of them are a list.
constexpr FunctionBody And{List<T::AndOperator>,
                           [](double x, double y, double) { return Truth((x != 0) & (y != 0)); }, 2};
constexpr FunctionBody Or{List<T::OrOperator>,
                          [](double x, double y, double) { return Truth((x != 0) | (y != 0)); }, 2};

double IsZero(double x) { return Truth(x == 0); }
Outcome CallNot(Call& call) { return AnswerTruth(call, call.Count() == 1 && call[0].number == 0); }
constexpr FunctionBody Not{CallNot, Unary<IsZero>.ofNumbers, 1};

// Takes the branch; a branch that is missing has been settled.
Outcome TakeBranch(Call& call) {
  if (call.Count() < 2) return Outcome::kNoResult;
  const std::size_t branch = TakesFirstBranch(call[0].number) ? 1 : 2;
  if (branch >= call.Count()) return Outcome::kNoResult;
  call.result.Lend(call[branch]);
  return Outcome::kDone;
}

constexpr FunctionBody If{TakeBranch,
                          [](double condition, double first, double second) {
                            const double branches[] = {second, first};
                            return branches[TakesFirstBranch(condition) ? 1 : 0];
                          },
                          3};

template <bool wanted>
Outcome CountsAsMissing(Call& call) {
  return call.Count() == 1 ? AnswerTruth(call, call[0].isCountedMissing == wanted) : Outcome::kNoResult;
}

Outcome SystemMissing(Call& call) {
  return call.Count() == 1 ? AnswerTruth(call, call[0].isMissing) : Outcome::kNoResult;
}

Outcome TakeOver(Call& call) {
  if (call.Count() != 1) return Outcome::kNoResult;
  call.result.Lend(call[0]);
  return Outcome::kDone;
}
constexpr FunctionBody Unchanged{TakeOver, [](double x, double, double) { return x; }, 1};

// --- Texts
// ----------------------------------------------------------------------------------------------------

using TextMap = std::int64_t (*)(std::string_view, std::int64_t, std::string&);

Outcome AnswerText(Call& call, std::int64_t length) {
  call.result.SetBufferAsText(length);
  return Outcome::kDone;
}

template <TextMap map>
Outcome MapText(Call& call) {
  if (call.Count() != 1) return Outcome::kNoResult;
  return AnswerText(call, map(call[0].text, call[0].length, call.result.buffer));
}

std::int64_t TrimEnd(std::string_view text, std::int64_t, std::string& out) {
  return TrimTrailing(text, out);
}

std::int64_t SizeOf(std::string_view text) { return static_cast<std::int64_t>(text.size()); }

// How long a text may become: no function makes one longer than this out of shorter ones.
std::int64_t MaxSize(const Call& call) {
  constexpr std::int64_t kMaxMadeText = std::int64_t{16} << 20;
  std::int64_t size = kMaxMadeText;
  for (const Operand* operand : call.operands) size = std::max(size, SizeOf(operand->text));
  return size;
}

Outcome Concat(Call& call) {
  const std::int64_t maxSize = MaxSize(call);
  std::int64_t size = 0;
  for (const Operand* operand : call.operands) {
    size += std::max<std::int64_t>(operand->length, 0);
    if (size > maxSize) return Outcome::kNoResult;
  }
  std::string& out = call.result.buffer;
  out.clear();
  for (const Operand* operand : call.operands) AppendFitted(operand->text, operand->length, out);
  return AnswerText(call, size);
}

Outcome Replace(Call& call) {
  if (call.Count() != 3) return Outcome::kNoResult;
  std::string& out = call.result.buffer;
  const bool isDone =
      ReplaceMatches(call.memory.expression, call[0].text, call[1].text, call[2].text, MaxSize(call), out);
  return isDone ? AnswerText(call, SizeOf(out)) : Outcome::kNoResult;
}

Outcome Matches(Call& call) {
  if (call.Count() != 2) return Answer(call, 0);
  return AnswerTruth(call, FindsMatch(call.memory.expression, call[0].text, call[1].text));
}

Outcome Substr(Call& call) {
  if (call.Count() != 2) return Outcome::kNoResult;
  return AnswerText(call, TextFrom(call[0].text, call[1].number, call.result.buffer));
}

Outcome Substring(Call& call) {
  if (call.Count() != 3) return Outcome::kNoResult;
  return AnswerText(call, UnitsFrom(call[0].text, call[1].number, call[2].number, call.result.buffer));
}

Outcome Length(Call& call) {
  return call.Count() == 1 ? Answer(call, static_cast<double>(call[0].length)) : Outcome::kNoResult;
}

// --- Recodings
// --------------------------------------------------------------------------------------------------

Outcome Outlier(Call& call) {
  if (call.Count() != 6) return Outcome::kNoResult;
  return Answer(call, T::OutlierHandle(call[0].number, TruncateToInt(call[1].number), call[2].number,
                                       call[3].number, call[4].number, call[5].number));
}

// A category that is there stays; a missing one becomes that whose mean lies nearest to the target.
Outcome Impute(Call& call) {
  const FunctionMemory& memory = call.memory;
  if (call.Count() != 2 || memory.categorical == nullptr) return Outcome::kNoResult;
  const Operand& category = call[memory.categoricalOperand];
  if (!category.isCountedMissing) {
    call.result.Lend(category);
    return Outcome::kDone;
  }
  const Operand& target = call[1 - memory.categoricalOperand];
  const ScoreValueLabelSet* const labels = memory.categorical->GetValueLabels();
  if (target.isMissing) return Outcome::kMissingOperand;
  if (labels == nullptr) return Outcome::kNoResult;
  const ScoreValue* const nearest = T::ImputeCatFieldMissingAgainstConTargetHandle(
      target.number, labels->GetAllValueLabels(), *memory.means, *memory.variances);
  if (nearest == nullptr) return Outcome::kNoResult;
  call.result.Lend(nearest);
  return Outcome::kDone;
}

// --- The table
// --------------------------------------------------------------------------------------------------

constexpr unsigned kNumeric = kNumericInputFunction | kNumericOutputFunction;
constexpr unsigned kA = kArithmeticFunction | kNumeric;
constexpr unsigned kM = kMathematicsFunction | kNumeric;
constexpr unsigned kS = kStatisticFunction | kNumeric;
constexpr unsigned kD = kDateTimeFunction | kNumeric;
constexpr unsigned kL = kLogicFunction | kMixedInputFunction | kNumericOutputFunction;
constexpr unsigned kStr = kStringFunction | kStringInputFunction | kStringOutputFunction;
constexpr unsigned kMix = kMixedInputFunction;

constexpr int kAny = FunctionRow::kAnyCount;
constexpr int kFree = FunctionRow::kUncheckedCount;
constexpr bool kDomain = true;

using enum ParameterRule;
using Op = OperandRule;
using Mi = MissingRule;
constexpr auto kNum = ResultRule::kNumber;
constexpr auto kTxt = ResultRule::kText;
constexpr auto kArg = ResultRule::kOfTheOperand;

// clang-format off
constexpr FunctionRow kFunctions[] = {
    {TF_ADDITION, "+", nullptr, kA, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<Add>},
    {TF_SUBTRACTION, "-", nullptr, kA, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<Subtract>},
    {TF_MULTIPLY, "*", nullptr, kA, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<Times>},
    {TF_DIVISION, "/", nullptr, kA, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<Divide>},
    {TF_POW, "pow", nullptr, kM, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<RealPower>},
    {TF_ABS, "abs", nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Abs>},
    {TF_EXP, "exp", nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Exp>},
    {TF_LOG10, "log10", "lg10", kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Log10>},
    {TF_LN, "ln", nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Ln>},
    {TF_MOD, "mod", nullptr, kM, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<T::Mod>},
    {TF_ROUND, "round", nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, false, Unary<T::Rnd>},
    {TF_SQRT, "sqrt", nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Sqrt>},
    {TF_TRUNC, "trunc", nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, false, Unary<T::Trunc>},
    {TF_FLOOR, "floor", nullptr, kM, kFree, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Floor>},
    {TF_CEIL, "ceil", nullptr, kM, kFree, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Ceil>},
    {TF_PRODUCT, "product", nullptr, kM, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::ProductOperator>}},
    {TF_MIN, "min", nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Min>}},
    {TF_MAX, "max", nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Max>}},
    {TF_MEAN, "mean", nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Mean>}},
    {TF_AVG, "avg", nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Mean>}},
    {TF_MEDIAN, "median", nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {Median}},
    {TF_SUM, "sum", nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Sum>}},
    {TF_SD, "sd", nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Sd>}},
    {TF_VARIANCE, "variance", nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Variance>}},
    {TF_CDF_NORMAL, "cdf.normal", nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::CdfNormal>}},
    {TF_CDFNORM, "cdfnorm", nullptr, kS, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::CdfNorm>},
    {TF_IDF_NORMAL, "idf.normal", nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::IdfNormal>}},
    {TF_PDF_NORMAL, "pdf.normal", nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::PdfNormal>}},
    {TF_DATE_YEARS_DIFFERENCE, "date_years_difference", nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationYears>}},
    {TF_DATE_MONTHS_DIFFERENCE, "date_months_difference", nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationMonths>}},
    {TF_DATE_DAYS_DIFFERENCE, "date_days_difference", nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationDays>}},
    {TF_YEAR_FROM_DATE, "year-from-date", nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractYear>}},
    {TF_MONTH_FROM_DATE, "month-from-date", nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractMonth>}},
    {TF_DAY_FROM_DATE, "day-from-date", nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractDay>}},
    {TF_TIME_HOURS_DIFFERENCE, "time_hours_difference", nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationHours>}},
    {TF_TIME_MINUTES_DIFFERENCE, "time_minutes_difference", nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationMinutes>}},
    {TF_TIME_SECONDS_DIFFERENCE, "time_seconds_difference", nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationSeconds>}},
    {TF_HOUR_FROM_TIME, "hour-from-time", nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractHour>}},
    {TF_MINUTE_FROM_TIME, "minute-from-time", nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractMinute>}},
    {TF_SECOND_FROM_TIME, "second-from-time", nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractSecond>}},
    {TF_ISMISSING, "isMissing", nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kNeverDecides, kNum, false, {CountsAsMissing<true>}},
    {TF_ISNOTMISSING, "isNotMissing", nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kNeverDecides, kNum, false, {CountsAsMissing<false>}},
    {TF_EQUAL, "equal", nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Equal<true>},
    {TF_NOTEQUAL, "notEqual", nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Equal<false>},
    {TF_LESSTHAN, "lessThan", nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Compare<Order::kLess>},
    {TF_LESSOREQUAL, "lessOrEqual", nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Compare<Order::kLessOrEqual>},
    {TF_GREATERTHAN, "greaterThan", nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Compare<Order::kGreater>},
    {TF_GREATEROREQUAL, "greaterOrEqual", nullptr, kNoFunctionClass, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Compare<Order::kGreaterOrEqual>},
    {TF_ISIN, "isIn", nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kFirstDecides, kNum, false, {IsMember<true>}},
    {TF_ISNOTIN, "isNotIn", nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kFirstDecides, kNum, false, {IsMember<false>}},
    {TF_AND, "and", nullptr, kL, kFree, kAnything, Op::kNumbers, Mi::kConjunction, kNum, false, And},
    {TF_OR, "or", nullptr, kL, kFree, kAnything, Op::kNumbers, Mi::kDisjunction, kNum, false, Or},
    {TF_NOT, "not", nullptr, kL, kFree, kAnything, Op::kNumbers, Mi::kAnyDecides, kNum, false, Not},
    {TF_MATCHES, "matches", nullptr, kL, 2, kAnything, Op::kTexts, Mi::kAnyDecides, kNum, false, {Matches}},
    {TF_LOWERCASE, "lowercase", nullptr, kStr, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {MapText<LowerCase>}},
    {TF_UPPERCASE, "uppercase", nullptr, kStr, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {MapText<UpperCase>}},
    {TF_LOWER, "lower", nullptr, kStr, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {MapText<LowerCase>}},
    {TF_CONCAT, "concat", nullptr, kStr, kAny, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {Concat}},
    {TF_REPLACE, "replace", nullptr, kStr, 3, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {Replace}},
    {TF_LTRIM, "ltrim", nullptr, kStr, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {MapText<TrimLeading>}},
    {TF_RTRIM, "rtrim", "trimend", kStr, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {MapText<TrimEnd>}},
    {TF_SUBSTR, "substr", nullptr, kStr, 2, kTextThenNumbers, Op::kTextThenNumbers, Mi::kAnyDecides, kTxt, false, {Substr}},
    {TF_SUBSTRING, "substring", nullptr, kNoFunctionClass, 3, kTextThenNumbers, Op::kTextThenNumbers, Mi::kAnyDecides, kTxt, false, {Substring}},
    {TF_LENGTH, "length", nullptr, kStringInputFunction | kNumericOutputFunction, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kNum, false, {Length}},
    {TF_IF, "if", nullptr, kMix | kMixedOutputFunction, kFree, kAnything, Op::kFirstIsNumber, Mi::kCondition, kArg, false, If},
    {TF_VALUE, "value", nullptr, kMix | kMixedOutputFunction, 1, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kArg, false, Unchanged},
    {TF_THRESHOLD, "threshold", nullptr, kM, kFree, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, false, Binary<T::Threshold>},
    {TF_SYSMIS, "sysmis", nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kNeverDecides, kNum, false, {SystemMissing}},
    {TF_RECAST_TO_ORDINAL, "recast_to_ordinal", nullptr, kMix, 1, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kArg, false, Unchanged},
    {TF_RECAST_TO_SCALE, "recast_to_scale", nullptr, kMix, 1, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kArg, false, Unchanged},
    {TF_OUTLIERHANDLE, "outlierHandle", nullptr, kNumeric, 6, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, false, {Outlier}},
    {TF_IMPUTECATFIELDMISSINGAGAINSTCONTARGET, "imputeCatFieldMissingAgainstConTarget", nullptr, kNumeric, kFree, kNumbers, Op::kAsTheyAre, Mi::kNeverDecides, kArg, false, {Impute}},
    {TF_NORMALCDF, "normalCDF", nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::CdfNormal>}},
    {TF_NORMALPDF, "normalPDF", nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::PdfNormal>}},
    {TF_STDNORMALCDF, "stdNormalCDF", nullptr, kS, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::stdNormalCDF>}},
    {TF_STDNORMALPDF, "stdNormalPDF", nullptr, kS, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::stdNormalPDF>}},
    {TF_ERF, "erf", nullptr, kS, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::Erf>}},
    {TF_NORMALIDF, "normalIDF", nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::IdfNormal>}},
    {TF_STDNORMALIDF, "stdNormalIDF", nullptr, kS, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::stdNormalIDF>}},
};
// clang-format on

consteval bool IsInNumberOrder() {
  int number = 0;
  for (const FunctionRow& row : kFunctions)
    if (row.function != number++) return false;
  return number == kTransformFunctionCount;
}
static_assert(IsInNumberOrder());

using NameMap = std::unordered_map<std::string_view, const FunctionRow*>;

NameMap MapOfNames() {
  NameMap names;
  for (const FunctionRow& row : kFunctions) {
    names.emplace(row.name, &row);
    if (row.alternative != nullptr) names.emplace(row.alternative, &row);
  }
  return names;
}

}  // namespace

std::span<const FunctionRow, kTransformFunctionCount> AllFunctions() { return kFunctions; }

const FunctionRow* FindFunction(int number) {
  return number >= 0 && number < kTransformFunctionCount ? &kFunctions[number] : nullptr;
}

const FunctionRow* FindFunction(std::string_view name) {
  static const NameMap names = MapOfNames();
  const auto found = names.find(name);
  return found == names.end() ? nullptr : found->second;
}

std::size_t ImputedParameter(const ScoreDictVar* first, const ScoreDictVar* second) {
  const auto isCategorical = [](const ScoreDictVar* variable) {
    return variable != nullptr && variable->GetMLevel() != ScoreDictVar::kContinuous;
  };
  return !isCategorical(first) && isCategorical(second) ? 1 : 0;
}

const char* FunctionName(int number) {
  const FunctionRow* const row = FindFunction(number);
  return row == nullptr ? "<not defined>" : row->name;
}

}  // namespace KxVeyra_940
