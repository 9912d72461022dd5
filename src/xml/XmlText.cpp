#include "xml/XmlText.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstring>

namespace KxXML_940 {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Decodes the character at `position` and moves behind it.  Negative for an ill-formed one.
UChar32 Next(std::u16string_view text, std::size_t& position) {
  UChar32 character;
  U16_NEXT(text.data(), position, text.size(), character);
  return U_IS_SURROGATE(character) ? -1 : character;
}

UChar32 Next(std::string_view text, std::size_t& position) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  auto index = static_cast<std::int64_t>(position);
  const auto length = static_cast<std::int64_t>(text.size());
  UChar32 character;
  U8_NEXT(bytes, index, length, character);
  position = static_cast<std::size_t>(index);
  return character;
}

char* PutUTF8(char* out, char32_t character) {
  auto* const bytes = reinterpret_cast<std::uint8_t*>(out);
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, character);
  return out + length;
}

template <typename Text>
std::size_t WellFormedPrefixOf(Text text) {
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t start = position;
    if (Next(text, position) < 0) return start;
  }
  return position;
}

// All units at once, so that the loop runs on vectors.
template <typename Text>
bool IsAsciiText(Text text) {
  unsigned bits = 0;
  for (const auto unit : text) bits |= static_cast<std::make_unsigned_t<decltype(+unit)>>(unit);
  return bits < 0x80;
}

}  // namespace

std::u16string_view View(const XMLCh* text) { return text == nullptr ? std::u16string_view() : text; }

bool IsAscii(std::u16string_view text) { return IsAsciiText(text); }
bool IsAscii(std::string_view text) { return IsAsciiText(text); }

void ToUTF8(std::u16string_view text, std::string& out) {
  if (IsAscii(text)) {
    out.resize(text.size());
    std::ranges::transform(text, out.begin(), [](char16_t unit) { return static_cast<char>(unit); });
    return;
  }
  // A unit never needs more than three bytes: a pair of surrogates takes four.
  out.resize(text.size() * 3);
  char* end = out.data();
  for (std::size_t position = 0; position < text.size();) {
    const UChar32 character = Next(text, position);
    end = PutUTF8(end, character < 0 ? kReplacement : static_cast<char32_t>(character));
  }
  out.resize(static_cast<std::size_t>(end - out.data()));
}

std::string ToUTF8(std::u16string_view text) {
  std::string out;
  ToUTF8(text, out);
  return out;
}

std::string ToUTF8(const XMLCh* text) { return ToUTF8(View(text)); }

std::u16string ToUTF16(std::string_view text) {
  std::u16string out(text.size(), u'\0');  // no character has fewer bytes than units
  std::size_t length = 0;
  for (std::size_t position = 0; position < text.size();) {
    const UChar32 character = Next(text, position);
    U16_APPEND_UNSAFE(out.data(), length, character < 0 ? static_cast<UChar32>(kReplacement) : character);
  }
  out.resize(length);
  return out;
}

std::size_t WellFormedPrefix(std::u16string_view text) { return WellFormedPrefixOf(text); }
std::size_t WellFormedPrefix(std::string_view text) { return WellFormedPrefixOf(text); }

bool EqualsAscii(const XMLCh* text, const char* name) {
  if (text == nullptr) return *name == '\0';
  for (; *name != '\0'; ++name, ++text)
    if (static_cast<signed char>(*name) < 0 || *text != static_cast<XMLCh>(*name)) return false;
  return *text == 0;
}

bool EqualsUTF8(const XMLCh* text, std::string_view name) {
  const std::u16string_view units = View(text);
  std::size_t unit = 0;
  for (std::size_t position = 0; position < name.size();) {
    const UChar32 wanted = Next(name, position);
    if (wanted < 0 || unit == units.size() || Next(units, unit) != wanted) return false;
  }
  return unit == units.size();
}

}  // namespace KxXML_940
