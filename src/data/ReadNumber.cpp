#include "data/ReadNumber.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "data/NumericValue.h"

namespace KxVeyra_940 {

namespace {

constexpr double kLargest = std::numeric_limits<double>::max();

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// White space of the classic locale.
bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

int HexDigit(char c) {
  if (IsDigit(c)) return c - '0';
  const char lower = LowerCase(c);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string_view SkipSpace(std::string_view text) {
  std::size_t start = 0;
  while (start < text.size() && IsSpace(text[start])) ++start;
  return text.substr(start);
}

bool StartsWithLetters(std::string_view text, std::string_view letters) {
  if (text.size() < letters.size()) return false;
  for (std::size_t i = 0; i < letters.size(); ++i)
    if (LowerCase(text[i]) != letters[i]) return false;
  return true;
}

// Whether an unsigned number that is out of range is too large rather than too small: such a number is so far
// from 1 that the position of its first digit and its exponent decide.  `placeValue` is what one place counts
// in units of the exponent.
bool IsTooLarge(std::string_view number, char exponentMark, long long placeValue) {
  long long places = 0;  // of the first digit that is not 0, above the point
  bool found = false;
  bool afterPoint = false;
  std::size_t i = 0;
  for (; i < number.size() && LowerCase(number[i]) != exponentMark; ++i) {
    if (number[i] == '.') {
      afterPoint = true;
      continue;
    }
    found = found || number[i] != '0';
    if (found && !afterPoint) ++places;
    if (!found && afterPoint) --places;
  }
  long long exponent = 0;
  bool negative = false;
  for (++i; i < number.size(); ++i) {
    if (number[i] == '-') negative = true;
    if (IsDigit(number[i]) && exponent < std::numeric_limits<long long>::max() / 100)
      exponent = 10 * exponent + (number[i] - '0');
  }
  return found && places * placeValue + (negative ? -exponent : exponent) > 0;
}

// The length of what the stream takes for a number at the start of `text`, which has no sign.
std::size_t LengthOfNumber(std::string_view text) {
  std::size_t i = 0;
  bool digits = false;
  bool point = false;
  bool exponent = false;
  while (i < text.size()) {
    const char c = text[i];
    if (IsDigit(c)) {
      digits = true;
    } else if (c == '.' && !point && !exponent) {
      point = true;
    } else if ((c == 'e' || c == 'E') && !exponent && digits) {
      exponent = true;
      if (i + 1 < text.size() && (text[i + 1] == '+' || text[i + 1] == '-')) ++i;
    } else {
      break;
    }
    ++i;
  }
  return i;
}

// The unsigned number that fills `number`: nothing when it breaks off, infinity when it is too large.
std::optional<double> ConvertUnsigned(std::string_view number) {
  double value = 0;
  const char* const end = number.data() + number.size();
  const auto [stop, error] = std::from_chars(number.data(), end, value);
  if (stop != end || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range)
    return IsTooLarge(number, 'e', 1) ? NumericValue::gInfinity : 0;
  return value;
}

// The number at the start of the text, infinite when it is too large; 0 where there is none.
double ConvertAtStart(std::string_view text) {
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);
  const std::optional<double> value = ConvertUnsigned(text.substr(0, LengthOfNumber(text)));
  return value.has_value() && negative ? -*value : value.value_or(0);
}

// Whether the text after white space stands for +infinity in C: by name, or by a hexadecimal number that is
// too large.  The stream knows neither.
bool IsInfinityInC(std::string_view text) {
  if (!text.empty() && text[0] == '+') text.remove_prefix(1);
  if (StartsWithLetters(text, "inf")) return true;
  if (!StartsWithLetters(text, "0x")) return false;
  text.remove_prefix(2);
  const std::size_t first = !text.empty() && text[0] == '.' ? 1 : 0;
  if (text.size() <= first || HexDigit(text[first]) < 0) return false;
  double value = 0;
  const auto [stop, error] =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::hex);
  if (error == std::errc::result_out_of_range)
    return IsTooLarge(text.substr(0, static_cast<std::size_t>(stop - text.data())), 'p', 4);
  return error == std::errc() && std::isinf(value);
}

}  // namespace

std::optional<double> ReadStreamNumber(std::string_view text) {
  text = SkipSpace(text);
  if (text.empty()) return std::nullopt;
  return std::clamp(ConvertAtStart(text), -kLargest, kLargest);
}

double ReadNumber(std::string_view text) {
  text = SkipSpace(text);
  if (text.empty()) return NumericValue::gSysmisValue;
  const double value = ConvertAtStart(text);
  if (value == 0 && IsInfinityInC(text)) return NumericValue::gInfinity;
  return std::max(value, -kLargest);
}

}  // namespace KxVeyra_940
