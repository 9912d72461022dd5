#include "veyra/Number.h"

#include <locale.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <system_error>

#include "math/KxMV.h"

namespace VeyraTool {

namespace {

constexpr bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// Powers of ten that are doubles.
constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
constexpr std::size_t kExactDigits = std::size(kPowers) - 1;

// What most cells are: some digits and a point among them.  Both the digits and the power of ten are exact
// doubles then, so that their quotient is the double nearest to the text.
std::optional<double> ReadShortDecimal(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  const bool isNegative = at != end && *at == '-';
  if (isNegative) ++at;
  const auto size = static_cast<std::size_t>(end - at);
  if (size == 0 || size > kExactDigits || (size == 1 && *at == '.')) return std::nullopt;
  std::uint64_t digits = 0;
  const auto readDigits = [&] {
    for (; at != end; ++at) {
      const auto digit = static_cast<unsigned>(*at) - unsigned{'0'};
      if (digit > 9) return;
      digits = 10 * digits + digit;
    }
  };
  readDigits();
  double number = static_cast<double>(digits);
  if (at != end && *at == '.') {
    const char* const decimals = ++at;
    readDigits();
    number = static_cast<double>(digits) / kPowers[at - decimals];
  }
  if (at != end) return std::nullopt;
  return isNegative ? -number : number;
}

// What underflows and what overflows, whatever the locale of the process is.
double ReadExtreme(std::string_view text) {
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(std::string(text).c_str(), nullptr, plain);
}

constexpr std::size_t kDecimals = 8;
constexpr auto kDecimalScale = static_cast<std::uint64_t>(kPowers[kDecimals]);

constexpr auto kPairs = [] {
  std::array<std::array<char, 2>, 100> pairs{};
  for (unsigned i = 0; i < pairs.size(); ++i)
    pairs[i] = {static_cast<char>('0' + i / 10), static_cast<char>('0' + i % 10)};
  return pairs;
}();

// Writes a number of few digits and returns its end; null for any other number.
//
// A decimal of at most 15 digits is the only one of its kind that reads back to the double nearest to it, so
// it is the shortest text once its last zeros are gone.  Between these bounds it is never longer than with an
// exponent.
char* WriteShortDecimal(double number, char* at) {
  const double magnitude = std::fabs(number);
  if (!(magnitude >= 1e-3 && magnitude < 1e5)) return nullptr;
  const auto digits = static_cast<std::uint64_t>(std::nearbyint(magnitude * kPowers[kDecimals]));
  if (static_cast<double>(digits) / kPowers[kDecimals] != magnitude) return nullptr;

  if (number < 0) *at++ = '-';
  at = std::to_chars(at, at + kExactDigits, static_cast<std::uint32_t>(digits / kDecimalScale)).ptr;
  auto fraction = static_cast<std::uint32_t>(digits % kDecimalScale);
  if (fraction == 0) return at;
  *at++ = '.';
  char* end = at + kDecimals;
  for (char* place = end; place != at; fraction /= 100) {
    place -= 2;
    std::memcpy(place, kPairs[fraction % 100].data(), 2);
  }
  while (end[-1] == '0') --end;
  return end;
}

}  // namespace

std::optional<double> ReadNumber(std::string_view text) {
  if (const std::optional<double> number = ReadShortDecimal(text)) return number;
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::invalid_argument || end != text.data() + text.size()) return std::nullopt;
  if (error == std::errc::result_out_of_range) number = ReadExtreme(text);
  if (!std::isfinite(number) || KxCommon_940::KxMV::IsMissing(number)) return std::nullopt;
  return number;
}

void AppendNumber(double number, std::string& out) {
  std::array<char, 32> text;
  char* end = WriteShortDecimal(number, text.data());
  if (end == nullptr) end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
  out.append(text.data(), static_cast<std::size_t>(end - text.data()));
}

}  // namespace VeyraTool
