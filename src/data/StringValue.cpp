#include "data/StringValue.h"

#include <charconv>
#include <iostream>
#include <limits>
#include <locale>
#include <sstream>
#include <utility>

#include "data/ReadNumber.h"
#include "data/TextRules.h"

namespace KxVeyra_940 {

namespace {

constexpr std::size_t kDefaultLength = 255;

// Negative, 0 or positive as `left` is smaller than, equal to or larger than `right`, trailing blanks left
// out. A blank text is the empty one then, which is smaller than every other.
int Compare(const std::string& left, const std::string& right) {
  return TrimTrailingBlanks(left).compare(TrimTrailingBlanks(right));
}

double ReadInGlobalLocale(std::string text, char decimalPoint) {
  if (const std::size_t point = text.find('.'); point != std::string::npos) text[point] = decimalPoint;
  double number = 0;
  std::istringstream(text) >> number;
  return number;
}

}  // namespace

StringValue::StringValue() : fText(kDefaultLength, '\0') {}

StringValue::StringValue(const char* text) : StringValue(std::string(text == nullptr ? "" : text)) {}

StringValue::StringValue(const std::string& text) : fText(text), fLength(static_cast<int>(text.size())) {}

StringValue::StringValue(std::string&& text)
    : fText(std::move(text)), fLength(static_cast<int>(fText.size())) {}

StringValue::StringValue(const StringValue& other) : StringValue(other.fText) {}

StringValue::~StringValue() = default;

void StringValue::SetValue(const ScoreValue* value) {
  const StringValue* const other = AsString(value);
  SetString(other == nullptr ? std::string_view() : other->fText);
}

ScoreValue* StringValue::GetValue() const { return new StringValue(*this); }

ScoreValue* StringValue::Clone() const { return new StringValue(*this); }

bool StringValue::operator==(const ScoreValue& value) const {
  const StringValue* const other = AsString(&value);
  return other != nullptr && Compare(fText, other->fText) == 0;
}

bool StringValue::Equal(const ScoreValue* value, bool noSpaceTrim, bool emptyStringOK) const {
  const StringValue* const other = AsString(value);
  if (other == nullptr) return false;
  if (fText == other->fText) return true;
  if (noSpaceTrim || Compare(fText, other->fText) != 0) return false;
  // Equal but not identical: either no blank text is involved, or both are blank and of different lengths.
  return !emptyStringOK || (!fText.empty() && !other->fText.empty());
}

bool StringValue::operator>(const ScoreValue& value) const {
  const StringValue* const other = AsString(&value);
  return other != nullptr && Compare(fText, other->fText) > 0;
}

bool StringValue::operator<(const ScoreValue& value) const {
  const StringValue* const other = AsString(&value);
  return other != nullptr && Compare(fText, other->fText) < 0;
}

bool StringValue::operator<=(const ScoreValue& value) const {
  const StringValue* const other = AsString(&value);
  return other != nullptr && Compare(fText, other->fText) <= 0;
}

bool StringValue::operator>=(const ScoreValue& value) const {
  const StringValue* const other = AsString(&value);
  return other != nullptr && Compare(fText, other->fText) >= 0;
}

bool StringValue::IsSystemMissingValue() const { return false; }

int StringValue::GetInt() const {
  const std::size_t start = fText.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string::npos) return 0;
  std::string_view text = std::string_view(fText).substr(start);
  if (text.front() == '+') {
    text.remove_prefix(1);
    if (!text.empty() && text.front() == '-') return 0;
  }
  int number = 0;
  const auto error = std::from_chars(text.data(), text.data() + text.size(), number).ec;
  return error == std::errc::result_out_of_range ? std::numeric_limits<int>::min() : number;
}

double StringValue::GetDouble() const {
  // Comparing with the classic locale costs next to nothing; streams are for processes that have set another.
  const std::locale outputLocale = std::cout.getloc();
  if (outputLocale == std::locale::classic() && std::locale() == std::locale::classic())
    return ReadStreamNumber(fText).value_or(0);
  return ReadInGlobalLocale(fText, std::use_facet<std::numpunct<char>>(outputLocale).decimal_point());
}

std::string StringValue::GetString() const { return fText; }

ScoreValue::ValueType StringValue::GetType() const { return kStringValueType; }

}  // namespace KxVeyra_940
