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
#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940 {

namespace {

using namespace PMMLModelTags;
using T = TransformationDictionary;
using Call = FunctionCall;

constexpr double kMissing = NumericValue::gSysmisValue;

// --- Adapters: how a call reaches a function of numbers

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

double Add(double a, double b) { return a + b; }
double Subtract(double a, double b) { return a - b; }
double Times(double a, double b) { return a * b; }
double Divide(double a, double b) { return b == 0 ? kMissing : a / b; }
double RealPower(double x, double y) { return std::pow(x, y); }

// --- Dates and times

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
    {TF_ADDITION, XML_ZENT_TRANFUNC_ADDITION, nullptr, kA, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<Add>},
    {TF_SUBTRACTION, XML_ZENT_TRANFUNC_SUBTRACTION, nullptr, kA, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<Subtract>},
    {TF_MULTIPLY, XML_ZENT_TRANFUNC_MULTIPLY, nullptr, kA, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<Times>},
    {TF_DIVISION, XML_ZENT_TRANFUNC_DEVISION, nullptr, kA, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<Divide>},
    {TF_POW, XML_ZENT_TRANFUNC_POW, nullptr, kM, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<RealPower>},
    {TF_ABS, XML_ZENT_TRANFUNC_ABS, nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Abs>},
    {TF_EXP, XML_ZENT_TRANFUNC_EXP, nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Exp>},
    {TF_LOG10, XML_ZENT_TRANFUNC_LOG10, XML_ZENT_TRANFUNC_LG10, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Log10>},
    {TF_LN, XML_ZENT_TRANFUNC_LN, nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Ln>},
    {TF_MOD, XML_ZENT_TRANFUNC_MOD, nullptr, kM, 2, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Binary<T::Mod>},
    {TF_ROUND, XML_ZENT_TRANFUNC_RND, nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, false, Unary<T::Rnd>},
    {TF_SQRT, XML_ZENT_TRANFUNC_SQRT, nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Sqrt>},
    {TF_TRUNC, XML_ZENT_TRANFUNC_TRUNC, nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, false, Unary<T::Trunc>},
    {TF_FLOOR, XML_ZENT_TRANFUNC_FLOOR, nullptr, kM, kFree, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Floor>},
    {TF_CEIL, XML_ZENT_TRANFUNC_CEIL, nullptr, kM, kFree, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::Ceil>},
    {TF_PRODUCT, XML_ZENT_TRANFUNC_PRODUCT, nullptr, kM, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::ProductOperator>}},
    {TF_MIN, XML_ZENT_TRANFUNC_MIN, nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Min>}},
    {TF_MAX, XML_ZENT_TRANFUNC_MAX, nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Max>}},
    {TF_MEAN, XML_ZENT_TRANFUNC_MEAN, nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Mean>}},
    {TF_AVG, XML_ZENT_TRANFUNC_AVG, nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Mean>}},
    {TF_MEDIAN, XML_ZENT_TRANFUNC_MEDIAN, nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {Median}},
    {TF_SUM, XML_ZENT_TRANFUNC_SUM, nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Sum>}},
    {TF_SD, XML_ZENT_TRANFUNC_SD, nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Sd>}},
    {TF_VARIANCE, XML_ZENT_TRANFUNC_VARIANCE, nullptr, kS, kAny, kNumbers, Op::kNumbers, Mi::kSkipped, kNum, false, {List<T::Variance>}},
    {TF_CDF_NORMAL, XML_ZENT_TRANFUNC_CDFNORMAL, nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::CdfNormal>}},
    {TF_CDFNORM, XML_ZENT_TRANFUNC_CDFNORM, nullptr, kS, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, Unary<T::CdfNorm>},
    {TF_IDF_NORMAL, XML_ZENT_TRANFUNC_IDFNORMAL, nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::IdfNormal>}},
    {TF_PDF_NORMAL, XML_ZENT_TRANFUNC_PDFNORMAL, nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::PdfNormal>}},
    {TF_DATE_YEARS_DIFFERENCE, XML_ZENT_TRANFUNC_DATE_YEARS_DIFFERENCE, nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationYears>}},
    {TF_DATE_MONTHS_DIFFERENCE, XML_ZENT_TRANFUNC_DATE_MONTHS_DIFFERENCE, nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationMonths>}},
    {TF_DATE_DAYS_DIFFERENCE, XML_ZENT_TRANFUNC_DATE_DAYS_DIFFERENCE, nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationDays>}},
    {TF_YEAR_FROM_DATE, XML_ZENT_TRANFUNC_YEAR_FROM_DATE, nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractYear>}},
    {TF_MONTH_FROM_DATE, XML_ZENT_TRANFUNC_MONTH_FROM_DATE, nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractMonth>}},
    {TF_DAY_FROM_DATE, XML_ZENT_TRANFUNC_DAY_FROM_DATE, nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractDay>}},
    {TF_TIME_HOURS_DIFFERENCE, XML_ZENT_TRANFUNC_TIME_HOURS_DIFFERENCE, nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationHours>}},
    {TF_TIME_MINUTES_DIFFERENCE, XML_ZENT_TRANFUNC_TIME_MINUTES_DIFFERENCE, nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationMinutes>}},
    {TF_TIME_SECONDS_DIFFERENCE, XML_ZENT_TRANFUNC_TIME_SECONDS_DIFFERENCE, nullptr, kD, 2, kNumbers, Op::kThenNumbers, Mi::kAnyDecides, kNum, false, {Difference<&DateTimeValue::ComputeDurationSeconds>}},
    {TF_HOUR_FROM_TIME, XML_ZENT_TRANFUNC_HOUR_FROM_TIME, nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractHour>}},
    {TF_MINUTE_FROM_TIME, XML_ZENT_TRANFUNC_MINUTE_FROM_TIME, nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractMinute>}},
    {TF_SECOND_FROM_TIME, XML_ZENT_TRANFUNC_SECOND_FROM_TIME, nullptr, kD, 1, kNumbers, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, {PartOf<&DateTimeValue::ExtractSecond>}},
    {TF_ISMISSING, XML_ZENT_TRANFUNC_ISMISSING, nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kNeverDecides, kNum, false, {CountsAsMissing<true>}},
    {TF_ISNOTMISSING, XML_ZENT_TRANFUNC_ISNOTMISSING, nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kNeverDecides, kNum, false, {CountsAsMissing<false>}},
    {TF_EQUAL, XML_ZENT_TRANFUNC_EQUAL, nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Equal<true>},
    {TF_NOTEQUAL, XML_ZENT_TRANFUNC_NOTEQUAL, nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Equal<false>},
    {TF_LESSTHAN, XML_ZENT_TRANFUNC_LESSTHAN, nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Compare<Order::kLess>},
    {TF_LESSOREQUAL, XML_ZENT_TRANFUNC_LESSOREQUAL, nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Compare<Order::kLessOrEqual>},
    {TF_GREATERTHAN, XML_ZENT_TRANFUNC_GREATERTHAN, nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Compare<Order::kGreater>},
    {TF_GREATEROREQUAL, XML_ZENT_TRANFUNC_GREATEROREQUAL, nullptr, kNoFunctionClass, kFree, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kNum, false, Compare<Order::kGreaterOrEqual>},
    {TF_ISIN, XML_ZENT_TRANFUNC_ISIN, nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kFirstDecides, kNum, false, {IsMember<true>}},
    {TF_ISNOTIN, XML_ZENT_TRANFUNC_ISNOTIN, nullptr, kL, kFree, kAnything, Op::kAsTheyAre, Mi::kFirstDecides, kNum, false, {IsMember<false>}},
    {TF_AND, XML_ZENT_TRANFUNC_AND, nullptr, kL, kFree, kAnything, Op::kNumbers, Mi::kConjunction, kNum, false, And},
    {TF_OR, XML_ZENT_TRANFUNC_OR, nullptr, kL, kFree, kAnything, Op::kNumbers, Mi::kDisjunction, kNum, false, Or},
    {TF_NOT, XML_ZENT_TRANFUNC_NOT, nullptr, kL, kFree, kAnything, Op::kNumbers, Mi::kAnyDecides, kNum, false, Not},
    {TF_MATCHES, XML_ZENT_TRANFUNC_MATCHES, nullptr, kL, 2, kAnything, Op::kTexts, Mi::kAnyDecides, kNum, false, {Matches}},
    {TF_LOWERCASE, XML_ZENT_TRANFUNC_LOWERCASE, nullptr, kStr, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {MapText<LowerCase>}},
    {TF_UPPERCASE, XML_ZENT_TRANFUNC_UPCASE, nullptr, kStr, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {MapText<UpperCase>}},
    {TF_LOWER, XML_ZENT_TRANFUNC_LOWER, nullptr, kStr, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {MapText<LowerCase>}},
    {TF_CONCAT, XML_ZENT_TRANFUNC_CONCAT, nullptr, kStr, kAny, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {Concat}},
    {TF_REPLACE, XML_ZENT_TRANFUNC_REPLACE, nullptr, kStr, 3, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {Replace}},
    {TF_LTRIM, XML_ZENT_TRANFUNC_LTRIM, nullptr, kStr, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {MapText<TrimLeading>}},
    {TF_RTRIM, XML_ZENT_TRANFUNC_RTRIM, XML_ZENT_TRANFUNC_TRIMEND, kStr, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kTxt, false, {MapText<TrimEnd>}},
    {TF_SUBSTR, XML_ZENT_TRANFUNC_SUBSTR, nullptr, kStr, 2, kTextThenNumbers, Op::kTextThenNumbers, Mi::kAnyDecides, kTxt, false, {Substr}},
    {TF_SUBSTRING, XML_ZENT_TRANFUNC_SUBSTRING, nullptr, kNoFunctionClass, 3, kTextThenNumbers, Op::kTextThenNumbers, Mi::kAnyDecides, kTxt, false, {Substring}},
    {TF_LENGTH, XML_ZENT_TRANFUNC_LENGTH, nullptr, kStringInputFunction | kNumericOutputFunction, 1, kTexts, Op::kTexts, Mi::kAnyDecides, kNum, false, {Length}},
    {TF_IF, XML_ZENT_TRANFUNC_IF, nullptr, kMix | kMixedOutputFunction, kFree, kAnything, Op::kFirstIsNumber, Mi::kCondition, kArg, false, If},
    {TF_VALUE, XML_ZENT_TRANFUNC_VALUE, nullptr, kMix | kMixedOutputFunction, 1, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kArg, false, Unchanged},
    {TF_THRESHOLD, XML_ZENT_TRANFUNC_THRESHOLD, nullptr, kM, kFree, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, false, Binary<T::Threshold>},
    {TF_SYSMIS, XML_ZENT_TRANFUNC_SYSMIS, nullptr, kM, 1, kNumbers, Op::kNumbers, Mi::kNeverDecides, kNum, false, {SystemMissing}},
    {TF_RECAST_TO_ORDINAL, XML_ZENT_TRANFUNC_RECAST_TO_ORDINAL, nullptr, kMix, 1, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kArg, false, Unchanged},
    {TF_RECAST_TO_SCALE, XML_ZENT_TRANFUNC_RECAST_TO_SCALE, nullptr, kMix, 1, kAnything, Op::kAsTheyAre, Mi::kAnyDecides, kArg, false, Unchanged},
    {TF_OUTLIERHANDLE, XML_ZENT_TRANFUNC_OUTLIERHANDLE, nullptr, kNumeric, 6, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, false, {Outlier}},
    {TF_IMPUTECATFIELDMISSINGAGAINSTCONTARGET, XML_ZENT_TRANFUNC_IMPUTECATFIELDMISSINGAGAINSTCONTARGET, nullptr, kNumeric, kFree, kNumbers, Op::kAsTheyAre, Mi::kNeverDecides, kArg, false, {Impute}},
    {TF_NORMALCDF, XML_ELE_TRANFUNC_NORMALCDF, nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::CdfNormal>}},
    {TF_NORMALPDF, XML_ELE_TRANFUNC_NORMALPDF, nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::PdfNormal>}},
    {TF_STDNORMALCDF, XML_ELE_TRANFUNC_STDNORMALCDF, nullptr, kS, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::stdNormalCDF>}},
    {TF_STDNORMALPDF, XML_ELE_TRANFUNC_STDNORMALPDF, nullptr, kS, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::stdNormalPDF>}},
    {TF_ERF, XML_ELE_TRANFUNC_ERF, nullptr, kS, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::Erf>}},
    {TF_NORMALIDF, XML_ELE_TRANFUNC_NORMALIDF, nullptr, kS, 3, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::IdfNormal>}},
    {TF_STDNORMALIDF, XML_ELE_TRANFUNC_STDNORMALIDF, nullptr, kS, 1, kNumbers, Op::kNumbers, Mi::kAnyDecides, kNum, kDomain, {List<T::stdNormalIDF>}},
};
// clang-format on

consteval bool IsInNumberOrder() {
  int number = 0;
  for (const FunctionRow& row : kFunctions)
    if (row.function != number++) return false;
  return number == kTransformFunctionCount;
}
static_assert(IsInNumberOrder());

// The map of names would pass over a second one.
consteval bool AreNamesUnique() {
  std::array<std::string_view, 2 * std::size(kFunctions)> names;
  std::size_t count = 0;
  for (const FunctionRow& row : kFunctions) {
    names[count++] = row.name;
    if (row.alternative != nullptr) names[count++] = row.alternative;
  }
  const auto last = names.begin() + static_cast<std::ptrdiff_t>(count);
  std::sort(names.begin(), last);
  return std::adjacent_find(names.begin(), last) == last;
}
static_assert(AreNamesUnique());

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
