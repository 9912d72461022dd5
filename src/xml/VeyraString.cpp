#include "xml/VeyraString.h"

#include <algorithm>
#include <string_view>

#include "xml/XmlText.h"

namespace KxVeyra_940 {

using KxXML_940::View;

VeyraString::VeyraString(const char16_t* text) { assign(text); }
VeyraString::VeyraString(const char* text) { assign(text); }
VeyraString::VeyraString(const VeyraString& other) { assign(other); }
VeyraString::~VeyraString() = default;

// The new buffer is filled before the old one goes: the parts may lie in it.
void VeyraString::Set(std::u16string_view head, std::u16string_view tail) {
  auto buffer = std::make_unique_for_overwrite<char16_t[]>(head.size() + tail.size() + 1);
  char16_t* end = std::ranges::copy(head, buffer.get()).out;
  end = std::ranges::copy(tail, end).out;
  *end = 0;
  fText = std::move(buffer);
}

void VeyraString::append(const char16_t* text) {
  const std::u16string_view tail = View(text);
  if (!tail.empty()) Set(View(xc_str()), tail);
}

void VeyraString::append(const VeyraString& text) { append(text.xc_str()); }

void VeyraString::append(const char* text) {
  if (text != nullptr) append(KxXML_940::ToUTF16(text).c_str());
}

void VeyraString::append(char16_t unit) {
  const char16_t text[] = {unit, 0};
  append(text);
}

void VeyraString::assign(const char16_t* text) {
  if (text == nullptr)
    clear();
  else
    Set(text, {});
}

void VeyraString::assign(const VeyraString& text) { assign(text.xc_str()); }

void VeyraString::assign(const char* text) {
  if (text == nullptr)
    clear();
  else
    Set(KxXML_940::ToUTF16(text), {});
}

void VeyraString::assign(char16_t unit) {
  const char16_t text[] = {unit, 0};
  assign(text);
}

VeyraString& VeyraString::operator=(const VeyraString& text) {
  assign(text);
  return *this;
}

VeyraString& VeyraString::operator=(const char16_t* text) {
  assign(text);
  return *this;
}

VeyraString& VeyraString::operator=(const char* text) {
  assign(text);
  return *this;
}

VeyraString& VeyraString::operator=(char16_t unit) {
  assign(unit);
  return *this;
}

std::size_t VeyraString::length() const { return View(xc_str()).size(); }

bool VeyraString::equals(const VeyraString& other) const {
  return fText != nullptr && other.fText != nullptr && View(xc_str()) == View(other.xc_str());
}

bool VeyraString::equals(const char16_t* text) const { return View(xc_str()) == View(text); }

void VeyraString::clear() { fText.reset(); }

bool VeyraString::ContainsString(const char16_t* text) const {
  return text != nullptr && fText != nullptr && View(xc_str()).find(text) != std::u16string_view::npos;
}

int VeyraString::replaceSubstring(const char16_t* from, const char16_t* to) {
  const std::u16string_view wanted = View(from);
  if (wanted.empty()) return 0;
  std::u16string_view rest = View(xc_str());
  std::u16string result;
  int count = 0;
  for (std::size_t found; (found = rest.find(wanted)) != std::u16string_view::npos; ++count) {
    result.append(rest, 0, found).append(View(to));
    rest.remove_prefix(found + wanted.size());
  }
  if (count > 0) Set(result, rest);
  return count;
}

void VeyraString::truncateString(unsigned count) {
  if (empty()) return;
  const std::size_t units = length();
  fText[units - std::min<std::size_t>(count, units)] = 0;
}

std::string VeyraString::toUTF8() const {
  const std::u16string_view text = View(xc_str());
  return KxXML_940::ToUTF8(text.substr(0, KxXML_940::WellFormedPrefix(text)));
}

void VeyraString::assignUTF8(const std::string& text) {
  if (text.empty()) return clear();
  Set(KxXML_940::ToUTF16(std::string_view(text).substr(0, KxXML_940::WellFormedPrefix(text))), {});
}

unsigned VeyraString::convertToInteger() const {
  unsigned value = 0;
  for (const char16_t unit : View(xc_str())) {
    if (unit < u'0' || unit > u'9') return 0;
    value = value * 10 + static_cast<unsigned>(unit - u'0');
  }
  return value;
}

}  // namespace KxVeyra_940
