#include "data/NumericValue.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

#include "data/ReadNumber.h"
#include "data/Truncate.h"

namespace KxVeyra_940 {

namespace {

bool HasMissing(const ScoreValue& left, const ScoreValue& right) {
  return left.IsSystemMissingValue() || right.IsSystemMissingValue();
}

}  // namespace

NumericValue::~NumericValue() = default;

bool NumericValue::IsEqual(double left, double right) {
  if (left == 0 && right == 0) return true;
  if (IsSystemMissingValue(left) || IsSystemMissingValue(right)) return left == right;
  return std::fabs(left - right) < fEpsilon * std::max(std::fabs(left), std::fabs(right));
}

void NumericValue::FromString(std::string_view text) { fNumber = ReadNumber(text); }

void NumericValue::SetValue(const ScoreValue* value) {
  if (value != nullptr && value->GetType() == kNumericValueType) fNumber = value->GetDouble();
}

ScoreValue* NumericValue::GetValue() const { return new NumericValue(*this); }

ScoreValue* NumericValue::Clone() const { return new NumericValue(*this); }

bool NumericValue::operator==(const ScoreValue& value) const {
  return value.GetType() == kNumericValueType && IsEqual(fNumber, value.GetDouble());
}

bool NumericValue::Equal(const ScoreValue* value, bool, bool) const {
  return value != nullptr && *this == *value;
}

bool NumericValue::operator>(const ScoreValue& value) const {
  return !HasMissing(*this, value) && IsLess(value.GetDouble(), fNumber);
}

bool NumericValue::operator<(const ScoreValue& value) const {
  return !HasMissing(*this, value) && IsLess(fNumber, value.GetDouble());
}

bool NumericValue::operator<=(const ScoreValue& value) const {
  return !HasMissing(*this, value) && IsLessOrEqual(fNumber, value.GetDouble());
}

bool NumericValue::operator>=(const ScoreValue& value) const {
  return !HasMissing(*this, value) && IsLessOrEqual(value.GetDouble(), fNumber);
}

bool NumericValue::IsSystemMissingValue() const { return IsSystemMissingValue(fNumber); }

int NumericValue::GetInt() const { return TruncateToInt(fNumber); }

double NumericValue::GetDouble() const { return fNumber; }

std::string NumericValue::GetString() const {
  if (fNumber <= gSysmisValue) return "Undefined";
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, fNumber, std::chars_format::general, 6).ptr;
  return std::string(text, end);
}

ScoreValue::ValueType NumericValue::GetType() const { return kNumericValueType; }

bool IsLittleEndian() {
  static_assert(std::endian::native == std::endian::little);
  return true;
}

}  // namespace KxVeyra_940
