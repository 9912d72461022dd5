// Conversions into strings and into new texts.

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "xml/Multibyte.h"
#include "xml/MultibyteInternal.h"
#include "xml/XmlText.h"

namespace KxXML_940 {

namespace {

// A text that is in the right encoding already.
int Copy(std::string& to, const std::string& from) {
  to = from;
  return kDone;
}

// Converts from one code page to another, of which null is the default one.
int BetweenCodePages(void* source, void* target, std::string& to, const std::string& from) {
  if (source == target) return Copy(to, from);
  std::u16string units;
  const int status = ZENTMBCodePageToU16(source, units, from);
  return std::max(status, ZENTMBU16ToCodePage(target, to, units));
}

bool IsUTF8() { return qUTF8mode() != 0; }

// A new text with what `convert` makes of `text`.
template <class To, class From, class Conversion>
To* NewText(const From* text, Conversion convert) {
  if (text == nullptr) return nullptr;
  try {
    std::basic_string<To> converted;
    convert(converted, std::basic_string<From>(text));
    auto buffer = std::make_unique_for_overwrite<To[]>(converted.size() + 1);
    std::copy_n(converted.c_str(), converted.size() + 1, buffer.get());
    return buffer.release();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

int DefaultCodePageToU16(std::u16string& to, const std::string& from) {
  return ZENTMBCodePageToU16(nullptr, to, from);
}

int U16ToDefaultCodePage(std::string& to, const std::u16string& from) {
  return ZENTMBU16ToCodePage(nullptr, to, from);
}

}  // namespace

int ZENTMBU8ToU16(std::u16string& to, const std::string& from) {
  const bool isWellFormed = WellFormedPrefix(from) == from.size();
  to = ToUTF16(from);
  return isWellFormed ? kDone : kNotConverted;
}

int ZENTMBU16ToU8(std::string& to, const std::u16string& from) {
  const bool isWellFormed = WellFormedPrefix(from) == from.size();
  ToUTF8(from, to);
  return isWellFormed ? kDone : kNotConverted;
}

int ZENTMBCodePageToU16(void* converter, std::u16string& to, const std::string& from) {
  const ChosenConverter chosen(converter);
  return IntoString(chosen.Get(), to, std::string_view(from), UnitsFor(from.size()) + 1, ToUnicode);
}

int ZENTMBU16ToCodePage(void* converter, std::string& to, const std::u16string& from) {
  const ChosenConverter chosen(converter);
  return IntoString(chosen.Get(), to, std::u16string_view(from), BytesFor(chosen.Get(), from.size()),
                    FromUnicode);
}

int ZENTMBCodePageToU8(void* converter, std::string& to, const std::string& from) {
  std::u16string units;
  const int status = ZENTMBCodePageToU16(converter, units, from);
  return std::max(status, ZENTMBU16ToU8(to, units));
}

int ZENTMBU8ToCodePage(void* converter, std::string& to, const std::string& from) {
  std::u16string units;
  const int status = ZENTMBU8ToU16(units, from);
  return std::max(status, ZENTMBU16ToCodePage(converter, to, units));
}

int ZENTMBGenericToU16(std::u16string& to, const std::string& from) {
  return IsUTF8() ? ZENTMBU8ToU16(to, from) : DefaultCodePageToU16(to, from);
}

int ZENTMBU16ToGeneric(std::string& to, const std::u16string& from) {
  return IsUTF8() ? ZENTMBU16ToU8(to, from) : U16ToDefaultCodePage(to, from);
}

int ZENTMBGenericToU8(std::string& to, const std::string& from) {
  return IsUTF8() ? Copy(to, from) : ZENTMBCodePageToU8(nullptr, to, from);
}

int ZENTMBU8ToGeneric(std::string& to, const std::string& from) {
  return IsUTF8() ? Copy(to, from) : ZENTMBU8ToCodePage(nullptr, to, from);
}

int ZENTMBCodePageToGeneric(void* converter, std::string& to, const std::string& from) {
  return IsUTF8() ? ZENTMBCodePageToU8(converter, to, from) : BetweenCodePages(converter, nullptr, to, from);
}

int ZENTMBCodePageToGeneric(std::string& to, const std::string& from) {
  return ZENTMBCodePageToGeneric(nullptr, to, from);
}

int ZENTMBGenericToCodePage(void* converter, std::string& to, const std::string& from) {
  return IsUTF8() ? ZENTMBU8ToCodePage(converter, to, from) : BetweenCodePages(nullptr, converter, to, from);
}

int ZENTMBGenericToCodePage(std::string& to, const std::string& from) {
  return ZENTMBGenericToCodePage(nullptr, to, from);
}

char16_t* ZENTMBTranscodeU8(const char* text) { return NewText<char16_t>(text, ZENTMBU8ToU16); }
char* ZENTMBTranscodeU8(const char16_t* text) { return NewText<char>(text, ZENTMBU16ToU8); }
char16_t* ZENTMBTranscodeCodePage(const char* text) { return NewText<char16_t>(text, DefaultCodePageToU16); }
char* ZENTMBTranscodeCodePage(const char16_t* text) { return NewText<char>(text, U16ToDefaultCodePage); }
char16_t* ZENTMBTranscodeGeneric(const char* text) { return NewText<char16_t>(text, ZENTMBGenericToU16); }
char* ZENTMBTranscodeGeneric(const char16_t* text) { return NewText<char>(text, ZENTMBU16ToGeneric); }

std::size_t strlen16(const char16_t* text) { return View(text).size(); }

void* ZENTMBTempGet(void* local, std::size_t localBytes, std::size_t unitSize, std::size_t count) {
  if (unitSize != 0 && count > std::numeric_limits<std::size_t>::max() / unitSize) return nullptr;
  const std::size_t bytes = unitSize * count;
  return bytes <= localBytes ? local : std::malloc(bytes);
}

void ZENTMBTempFree(void* local, void* block) {
  if (block != local) std::free(block);
}

}  // namespace KxXML_940
