#include "common/FieldNumber.h"

#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "translate/BaseTranslator.h"

namespace KxVeyra_940::Plugin {

namespace {

double NumberAs(const ScoreDictVar& field, const ScoreValue& value, ScoreDictVar::DateTimeType type) {
  if (field.GetVarType() == ScoreDictVar::kDATETIME_VAR)
    return static_cast<const DateTimeValue&>(value).GetDoubleValue(type);
  return static_cast<const NumericValue&>(value).GetNumber();
}

ScoreDictVar::DateTimeType RangeTypeOf(const ScoreDictVar& field) {
  const ScoreDictVar::DateTimeType type = field.GetDateTimeType();
  return type == ScoreDictVar::kDate ? ScoreDictVar::kDateDaysSince1970 : type;
}

}  // namespace

double NumberOf(const ScoreDictVar& field, const ScoreValue& value) {
  return NumberAs(field, value, field.GetDateTimeType());
}

double RangeNumberOf(const ScoreDictVar& field, const ScoreValue& value) {
  return NumberAs(field, value, RangeTypeOf(field));
}

std::unique_ptr<ScoreValue> ValueOfRangeNumber(const ScoreDictVar& field, double number) {
  if (field.GetVarType() == ScoreDictVar::kDATETIME_VAR)
    return std::make_unique<DateTimeValue>(number, RangeTypeOf(field));
  return std::make_unique<NumericValue>(number);
}

std::unique_ptr<ScoreValue> ReadDateTime(const ScoreDictVar& field, const std::string& text) {
  double number = 0;
  if (DateTimeValue::ParseDouble(BaseTranslator::TrimBlanks(text), number))
    return ValueOfRangeNumber(field, number);
  const ScoreDictVar::DateTimeType type = field.GetDateTimeType();
  return std::make_unique<DateTimeValue>(BaseTranslator::VerifyDateTime(text, type), type);
}

}  // namespace KxVeyra_940::Plugin
