#include "xml/XmlText.h"

#include <algorithm>
#include <type_traits>

#include "xml/UnicodeInternal.h"

namespace KxXML_940 {

namespace {

const Byte* Bytes(const void* text) { return static_cast<const Byte*>(text); }

template <typename Text>
const Byte* EndOf(const Text& text) {
  return Bytes(text.data() + text.size());
}

template <class Encoding, typename Text>
std::size_t WellFormedPrefixOf(Text text) {
  const Byte* const end = WellFormedEnd<Encoding>(Bytes(text.data()), EndOf(text));
  return static_cast<std::size_t>(end - Bytes(text.data())) / sizeof text[0];
}

// Replaces `out`, which has room for every form of the text.
template <class From, class To, typename Text, typename Out>
void ConvertInto(Text text, Out& out) {
  auto* const start = reinterpret_cast<Byte*>(out.data());
  Byte* end = start;
  ConvertReplacing<From, To>(Bytes(text.data()), EndOf(text), end, EndOf(out));
  out.resize(static_cast<std::size_t>(end - start) / sizeof out[0]);
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
  out.resize(text.size() * 3);  // a pair of surrogates takes four
  ConvertInto<NativeUTF16, EncodingUTF8>(text, out);
}

std::string ToUTF8(std::u16string_view text) {
  std::string out;
  ToUTF8(text, out);
  return out;
}

std::string ToUTF8(const XMLCh* text) { return ToUTF8(View(text)); }

std::u16string ToUTF16(std::string_view text) {
  std::u16string out(text.size(), u'\0');  // no character has fewer bytes than units
  ConvertInto<EncodingUTF8, NativeUTF16>(text, out);
  return out;
}

std::size_t WellFormedPrefix(std::u16string_view text) { return WellFormedPrefixOf<NativeUTF16>(text); }
std::size_t WellFormedPrefix(std::string_view text) { return WellFormedPrefixOf<EncodingUTF8>(text); }

bool EqualsAscii(const XMLCh* text, const char* name) {
  if (text == nullptr) return *name == '\0';
  for (; *name != '\0'; ++name, ++text)
    if (static_cast<signed char>(*name) < 0 || *text != static_cast<XMLCh>(*name)) return false;
  return *text == 0;
}

bool EqualsUTF8(const XMLCh* text, std::string_view name) {
  const std::u16string_view units = View(text);
  const Byte* left = Bytes(units.data());
  const Byte* right = Bytes(name.data());
  char32_t unit = 0;
  char32_t wanted = 0;
  while (right != EndOf(name)) {
    if (EncodingUTF8::Read(right, EndOf(name), strictConversion, wanted) != conversionOK) return false;
    if (left == EndOf(units)) return false;
    if (NativeUTF16::Read(left, EndOf(units), strictConversion, unit) != conversionOK) return false;
    if (unit != wanted) return false;
  }
  return left == EndOf(units);
}

}  // namespace KxXML_940
