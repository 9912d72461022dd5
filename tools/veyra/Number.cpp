#include "veyra/Number.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <system_error>

namespace VeyraTool {

std::optional<double> ReadNumber(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return std::nullopt;
  text = text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
  if (text.front() == '+') text.remove_prefix(1);
  if (text.find_first_of("0123456789") == std::string_view::npos || text.front() == '+') return std::nullopt;
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (end != text.data() + text.size()) return std::nullopt;
  if (error == std::errc::result_out_of_range) number = std::strtod(std::string(text).c_str(), nullptr);
  if (!std::isfinite(number) || number == std::numeric_limits<double>::lowest()) return std::nullopt;
  return number;
}

void AppendNumber(double number, std::string& out) {
  std::array<char, 32> text;
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
  out.append(text.data(), static_cast<std::size_t>(end - text.data()));
}

}  // namespace VeyraTool
