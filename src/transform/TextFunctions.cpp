#include "transform/TextFunctions.h"

#include <algorithm>
#include <cctype>

#include "data/TextRules.h"
#include "data/Truncate.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

std::int64_t LengthOf(const std::string& text) { return static_cast<std::int64_t>(text.size()); }

// A position in bytes or units from 0; false when nothing starts there.
bool ReadStart(double start, std::size_t size, std::size_t& position) {
  if (!(start >= 1) || start >= static_cast<double>(size) + 1) return false;
  position = static_cast<std::size_t>(start) - 1;
  return true;
}

template <int (*Map)(int)>
std::int64_t MapBytes(std::string_view text, std::int64_t length, std::string& out) {
  out.assign(text);
  for (char& c : out) c = static_cast<char>(Map(static_cast<unsigned char>(c)));
  return length;
}

}  // namespace

std::int64_t TrimLeading(std::string_view text, std::int64_t length, std::string& out) {
  const std::size_t first = std::min(text.find_first_not_of(" \t"), text.size());
  out.assign(text.substr(first));
  return length - static_cast<std::int64_t>(first);
}

std::int64_t TrimTrailing(std::string_view text, std::string& out) {
  out.assign(TrimTrailingBlanks(text));
  return LengthOf(out);
}

std::int64_t LowerCase(std::string_view text, std::int64_t length, std::string& out) {
  return MapBytes<std::tolower>(text, length, out);
}

std::int64_t UpperCase(std::string_view text, std::int64_t length, std::string& out) {
  return MapBytes<std::toupper>(text, length, out);
}

std::int64_t TextFrom(std::string_view text, double start, std::string& out) {
  std::size_t position = 0;
  const bool isInside = ReadStart(start, text.size(), position) && position + 1 < text.size();
  out.assign(isInside ? text.substr(position) : std::string_view());
  return LengthOf(out);
}

std::int64_t BytesFrom(std::string_view text, int start, int count, std::string& out) {
  std::size_t position = 0;
  const bool isInside = count > 0 && ReadStart(start, text.size(), position);
  out.assign(isInside ? text.substr(position, static_cast<std::size_t>(count)) : std::string_view());
  return LengthOf(out);
}

std::int64_t UnitsFrom(std::string_view text, double start, double count, std::string& out) {
  std::size_t position = 0;
  if (KxXML_940::IsAscii(text)) {
    const int units = TruncateToInt(std::clamp(count, 0.0, static_cast<double>(text.size())));
    return ReadStart(start, text.size(), position)
               ? BytesFrom(text, static_cast<int>(position) + 1, units, out)
               : BytesFrom(text, 0, 0, out);
  }
  const std::u16string units = KxXML_940::ToUTF16(text);
  out.clear();
  if (!(count > 0) || !ReadStart(start, units.size(), position)) return 0;
  const double left = static_cast<double>(units.size() - position);
  const auto taken = static_cast<std::size_t>(std::min(count, left));
  KxXML_940::ToUTF8(std::u16string_view(units).substr(position, taken), out);
  return LengthOf(out);
}

void AppendFitted(std::string_view text, std::int64_t length, std::string& out) {
  const auto wanted = static_cast<std::size_t>(std::max<std::int64_t>(length, 0));
  out.append(text.substr(0, wanted));
  if (wanted > text.size()) out.append(wanted - text.size(), ' ');
}

}  // namespace KxVeyra_940
