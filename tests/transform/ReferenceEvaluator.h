// Walks an expression tree literally, case by case: slow, plain, and written apart from the program that the
// library runs.

#ifndef VEYRA_TESTS_TRANSFORM_REFERENCEEVALUATOR_H_
#define VEYRA_TESTS_TRANSFORM_REFERENCEEVALUATOR_H_

#include <charconv>
#include <cmath>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "data/CaseRecord.h"
#include "data/DateTimeValue.h"
#include "data/StringValue.h"
#include "transform/FunctionTree.h"
#include "transform/TransformationDictionary.h"
#include "veyra/ScoreDictionary.h"

namespace veyra_tests {

using namespace KxVeyra_940;

class ReferenceEvaluator {
 public:
  struct Result {
    std::shared_ptr<ScoreValue> value;  // null: missing
    bool counted = false;               // missing by the field's own account
    bool invalid = false;
    int length = 0;
  };

  ReferenceEvaluator(const CaseRecord& record, const ScoreDictionary& dictionary)
      : fRecord(record), fDictionary(dictionary) {}

  Result Traverse(const FunctionTree& node, bool isRoot = true) const {
    const ApplyNodeStats& stats = node.GetNodeStats();
    if (stats.IsConstNode()) return Of(stats.GetValue());
    if (stats.GetTransformFunction() == kTransformFunctionCount) return Leaf(stats);
    std::vector<Result> arguments;
    for (int i = 0; i < node.GetChildCount(); ++i) arguments.push_back(Traverse(*node.GetChildAt(i), false));
    Result result = Apply(stats, arguments, isRoot);
    result.counted = result.value == nullptr;
    result.invalid = false;
    return result;
  }

  static double Number(const Result& result) {
    if (result.value == nullptr) return NumericValue::SYSMIS;
    if (result.value->GetType() != ScoreValue::kStringValueType)
      return static_cast<const NumericValue&>(*result.value).GetNumber();
    std::string text = result.value->GetString();
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return NumericValue::SYSMIS;
    text = text.substr(first, text.find_last_not_of(' ') - first + 1);
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? number : NumericValue::SYSMIS;
  }
  static std::string Text(const Result& result) {
    return result.value == nullptr ? "" : result.value->GetString();
  }

 private:
  using T = TransformationDictionary;
  using Args = std::vector<Result>;

  static Result Of(const ScoreValue* value) {
    Result result;
    if (value == nullptr || value->IsSystemMissingValue()) {
      result.counted = true;
      return result;
    }
    result.value.reset(value->Clone());
    if (const auto* const text = dynamic_cast<const StringValue*>(value)) result.length = text->GetLength();
    return result;
  }
  static Result Of(double number) { return Of(std::make_unique<NumericValue>(number).get()); }
  static Result Of(const std::string& text, int length) {
    StringValue value(text);
    value.SetLength(length);
    return Of(&value);
  }

  Result Leaf(const ApplyNodeStats& stats) const {
    const ScoreDictVar& variable = *fDictionary.GetVar(stats.GetParameterName());
    const ScoreValue* const value = fRecord.Get(stats.GetParameterName());
    if (stats.GetFieldrefRecodeMissValueRep() != nullptr && variable.IsMissingValue(value))
      return Of(stats.GetFieldrefRecodeMissValueRep());
    Result result = Of(value);
    result.counted = variable.IsMissingValue(value);
    result.invalid = !result.counted && !variable.IsValidValue(value);
    return result;
  }

  // An argument in the place of a number, or of a text, is one.
  static Result AsNumber(const Result& given) {
    Result result = given;
    if (given.value == nullptr || given.value->GetType() != ScoreValue::kStringValueType) return result;
    result = Of(Number(given));
    result.invalid = given.invalid;
    return result;
  }
  static Result AsText(const Result& given) {
    if (given.value == nullptr || given.value->GetType() == ScoreValue::kStringValueType) return given;
    const std::string text = given.value->GetString();
    Result result = Of(text, static_cast<int>(text.size()));
    result.invalid = given.invalid;
    return result;
  }

  static bool Is(int function, std::initializer_list<int> members) {
    for (int member : members)
      if (member == function) return true;
    return false;
  }

  // A replacement; below the root it is of the kind that the function gives.
  static Result Replacement(const ScoreValue* value, int f, bool isRoot) {
    const bool keeps = Is(f, {TF_IF, TF_VALUE, TF_RECAST_TO_ORDINAL, TF_RECAST_TO_SCALE});
    if (isRoot || keeps) return Of(value);
    const Result result = f >= TF_LOWERCASE && f <= TF_SUBSTRING ? AsText(Of(value)) : AsNumber(Of(value));
    return result;
  }

  Result Apply(const ApplyNodeStats& stats, Args args, bool isRoot) const {
    const int f = stats.GetTransformFunction();
    const bool dateTime = f >= TF_DATE_YEARS_DIFFERENCE && f <= TF_SECOND_FROM_TIME;
    const bool numeric =
        (f <= TF_SECOND_FROM_TIME && !dateTime) || f >= TF_THRESHOLD || Is(f, {TF_AND, TF_OR, TF_NOT});
    const bool texts = (f >= TF_MATCHES && f <= TF_LENGTH);
    for (std::size_t i = 0; i < args.size(); ++i) {
      const bool position = Is(f, {TF_SUBSTR, TF_SUBSTRING}) && i > 0;
      if ((numeric && !Is(f, {TF_RECAST_TO_ORDINAL, TF_RECAST_TO_SCALE})) || position ||
          (f == TF_IF && i == 0))
        args[i] = AsNumber(args[i]);
      else if (texts)
        args[i] = AsText(args[i]);
    }
    const ScoreValue* const r = stats.GetRecodeMissValueRep();
    const bool hasR = Replacement(r, f, isRoot).value != nullptr;
    const auto fallback = [&] { return Replacement(stats.GetDefaultValue(), f, isRoot); };
    const auto missing = [&] { return hasR ? Replacement(r, f, isRoot) : fallback(); };
    const bool asMissing = stats.GetInvalidValueTreatment() == ApplyNodeStats::kAsMissing;
    const auto absent = [&](std::size_t i) { return args[i].value == nullptr; };
    bool anyAbsent = false, anyInvalid = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
      anyAbsent = anyAbsent || absent(i);
      anyInvalid = anyInvalid || args[i].invalid;
    }

    if (Is(f, {TF_ISMISSING})) return Of(args[0].counted ? 1.0 : 0.0);
    if (Is(f, {TF_ISNOTMISSING})) return Of(args[0].counted ? 0.0 : 1.0);
    if (f == TF_SYSMIS) return Of(absent(0) ? 1.0 : 0.0);
    if (f == TF_IF) {
      if (absent(0)) return missing();
      const std::size_t branch = NumericValue::IsEqual(Number(args[0]), 1) ? 1 : 2;
      if (branch >= args.size()) return asMissing && args[0].invalid ? fallback() : fallback();
      if (absent(branch)) return missing();
      if (asMissing && (args[0].invalid || args[branch].invalid)) return fallback();
      return args[branch];
    }
    const bool lists =
        Is(f, {TF_PRODUCT, TF_MIN, TF_MAX, TF_MEAN, TF_AVG, TF_MEDIAN, TF_SUM, TF_SD, TF_VARIANCE});
    const bool membership = Is(f, {TF_ISIN, TF_ISNOTIN});
    const bool logic = Is(f, {TF_AND, TF_OR});
    if (anyAbsent) {
      if (lists && hasR) return missing();
      if (membership && absent(0)) return missing();
      if (logic) {
        if (hasR) return missing();
        for (std::size_t i = 0; i < args.size(); ++i)
          if (!absent(i) && (Number(args[i]) == 0) == (f == TF_AND)) return Of(f == TF_AND ? 0.0 : 1.0);
        return fallback();
      }
      if (!lists && !membership) return missing();
    }
    if (anyInvalid && asMissing) return fallback();
    return Compute(f, args, asMissing, fallback);
  }

  template <class Fallback>
  static Result Compute(int f, const Args& args, bool asMissing, Fallback fallback) {
    std::vector<double> numbers;
    for (const Result& argument : args)
      if (argument.value != nullptr) numbers.push_back(Number(argument));
    const auto n = [&](std::size_t i) { return Number(args[i]); };
    const auto clones = [&](std::size_t from) {
      std::vector<ScoreValue*> values;
      for (std::size_t i = from; i < args.size(); ++i)
        if (args[i].value != nullptr) values.push_back(args[i].value->Clone());
      return values;
    };
    const auto string = [&](std::size_t i) {
      auto value = std::make_unique<StringValue>(Text(args[i]));
      value->SetLength(args[i].length);
      return value;
    };
    std::vector<std::string> strings;
    std::vector<int> lengths;
    for (const Result& argument : args) {
      strings.push_back(Text(argument));
      lengths.push_back(argument.length);
    }
    int length = 0;
    double number = NumericValue::SYSMIS;
    bool domain = true;  // a missing result is a domain error
    switch (f) {
      case TF_ADDITION:
        number = T::Plus(numbers);
        break;
      case TF_SUBTRACTION:
        number = T::Minus(numbers);
        break;
      case TF_MULTIPLY:
        number = T::Multiply(numbers);
        break;
      case TF_DIVISION:
        number = T::Divided(numbers);
        break;
      case TF_POW:
        number = std::pow(n(0), n(1));
        break;
      case TF_ABS:
        number = T::Abs(n(0));
        break;
      case TF_LN:
        number = T::Ln(n(0));
        break;
      case TF_SQRT:
        number = T::Sqrt(n(0));
        break;
      case TF_MOD:
        number = T::Mod(n(0), n(1));
        break;
      case TF_ROUND:
        number = T::Rnd(n(0));
        domain = false;
        break;
      case TF_SUM:
        number = T::Sum(numbers);
        domain = false;
        break;
      case TF_MAX:
        number = T::Max(numbers);
        domain = false;
        break;
      case TF_MEDIAN:
        number = T::MedianOperator(numbers);
        domain = false;
        break;
      case TF_SD:
        number = T::Sd(numbers);
        domain = false;
        break;
      case TF_STDNORMALCDF:
        number = T::stdNormalCDF(numbers);
        break;
      case TF_STDNORMALIDF:
        number = T::stdNormalIDF(numbers);
        break;
      case TF_THRESHOLD:
        number = T::Threshold(n(0), n(1));
        break;
      case TF_AND:
        number = T::AndOperator(numbers);
        break;
      case TF_OR:
        number = T::OrOperator(numbers);
        break;
      case TF_NOT:
        number = T::NotOperator(numbers);
        break;
      case TF_LESSTHAN:
        number = *args[0].value < *args[1].value;
        break;
      case TF_GREATEROREQUAL:
        number = *args[0].value >= *args[1].value;
        break;
      case TF_EQUAL: {
        auto values = clones(0);
        number = T::equal(values);
        break;
      }
      case TF_NOTEQUAL: {
        auto values = clones(0);
        number = T::notEqual(values);
        break;
      }
      case TF_ISIN: {
        auto values = clones(1);
        number = T::isIn(values, args[0].value->Clone());
        break;
      }
      case TF_ISNOTIN: {
        auto values = clones(1);
        number = T::isNotIn(values, args[0].value->Clone());
        break;
      }
      case TF_MATCHES:
        number = T::Matches(strings);
        break;
      case TF_LENGTH:
        number = args[0].length;
        break;
      case TF_DATE_DAYS_DIFFERENCE:
      case TF_YEAR_FROM_DATE: {
        domain = false;
        if (args[0].value->GetType() != ScoreValue::kDateTimeValueType) break;
        const auto& date = static_cast<const DateTimeValue&>(*args[0].value);
        if (f == TF_YEAR_FROM_DATE) {
          number = date.ExtractYear();
          break;
        }
        if (args[1].value->GetType() == ScoreValue::kStringValueType) break;
        number = date.ComputeDurationDays(DateTimeValue(n(1), DateTimeValue::kDateTimeVal));
        break;
      }
      case TF_UPPERCASE: {
        const std::string text = T::ToUpperCase(string(0).get(), length);
        return Of(text, length);
      }
      case TF_LTRIM: {
        const std::string text = T::Ltrim(string(0).get(), length);
        return Of(text, length);
      }
      case TF_RTRIM: {
        const std::string text = T::Rtrim(string(0).get(), length);
        return Of(text, length);
      }
      case TF_CONCAT: {
        const std::string text = T::Concat(strings, lengths, length);
        return Of(text, length);
      }
      case TF_REPLACE: {
        const std::string text = T::Replace(strings, length);
        return Of(text, length);
      }
      case TF_SUBSTRING: {
        const auto whole = [](double x) { return static_cast<int>(std::fmin(std::fmax(x, -9), 99)); };
        const std::string text = T::Substring_unicode(string(0).get(), whole(n(1)), whole(n(2)), length);
        return Of(text, length);
      }
      default:
        ADD_FAILURE() << "function " << f;
        break;
    }
    if (number == NumericValue::SYSMIS && !domain) return fallback();
    if (number == NumericValue::SYSMIS || !std::isfinite(number)) return asMissing ? fallback() : Result();
    return Of(number);
  }

  const CaseRecord& fRecord;
  const ScoreDictionary& fDictionary;
};

}  // namespace veyra_tests

#endif  // VEYRA_TESTS_TRANSFORM_REFERENCEEVALUATOR_H_
