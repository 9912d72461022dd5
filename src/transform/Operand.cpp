#include "transform/Operand.h"

#include <charconv>
#include <cmath>

namespace KxVeyra_940 {

void Operand::Lend(const ScoreValue* value) {
  isInvalid = false;
  if (value == nullptr) return SetMissingNumber();
  switch (value->GetType()) {
    case ScoreValue::kStringValueType: {
      const auto& string = static_cast<const StringValue&>(*value);
      return LendText(string.GetText(), string.GetLength());
    }
    case ScoreValue::kDateTimeValueType: {
      const auto& dateTime = static_cast<const DateTimeValue&>(*value);
      return SetDateTime(dateTime.GetNumber(), dateTime.DateTimeValue::GetDateTimeType());
    }
    case ScoreValue::kNumericValueType:
      return SetNumber(static_cast<const NumericValue&>(*value).GetNumber());
  }
  SetMissingNumber();
}

void Operand::Lend(const Operand& other) {
  number = other.number;
  text = other.text;
  length = other.length;
  kind = other.kind;
  dateTimeKind = other.dateTimeKind;
  isMissing = other.isMissing;
  isCountedMissing = other.isCountedMissing;
  isInvalid = other.isInvalid;
}

double NumberOfText(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return NumericValue::gSysmisValue;
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isWhole = error == std::errc() && end == text.data() + text.size() && std::isfinite(number);
  return isWhole ? number : NumericValue::gSysmisValue;
}

}  // namespace KxVeyra_940
