#include "xml/Multibyte.h"

#include <strings.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <mutex>

#include "xml/PlatformLocale.h"
#include "xml/XmlText.h"

namespace KxXML_940 {

namespace {

struct ConverterCloser {
  void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

struct PreferredName {
  unsigned number;
  const char* name;
};

constexpr PreferredName kPreferredNames[] = {
    {932, "windows-31j"}, {936, "GBK"},     {949, "KS_C_5601-1987"}, {950, "Big5"},         {1250, "cp1250"},
    {1251, "cp1251"},     {1252, "cp1252"}, {1253, "cp1253"},        {1254, "cp1254"},      {1255, "cp1255"},
    {1256, "cp1256"},     {1257, "cp1257"}, {1258, "cp1258"},        {28591, "ISO-8859-1"}, {65001, "UTF-8"},
};

constexpr int kDone = 0;
constexpr int kNotConverted = 3;
// Warnings of the callbacks below.
constexpr auto kUnassigned = static_cast<UErrorCode>(-100);
constexpr auto kIllegal = static_cast<UErrorCode>(-101);

std::atomic<int> g_qUTF8mode{1};
std::atomic<UConverter*> gDefaultConverter{nullptr};
std::atomic<int> gDefaultConverterId{0};
std::mutex gDefaultConverterLock;

int StatusOf(UErrorCode status) {
  return U_FAILURE(status) || status == kUnassigned || status == kIllegal ? kNotConverted : kDone;
}

void Warn(UConverterCallbackReason reason, UErrorCode* status) {
  if (reason == UCNV_UNASSIGNED) *status = kUnassigned;
  if (reason == UCNV_ILLEGAL) *status = kIllegal;
}

void SubstituteToUnicode(const void*, UConverterToUnicodeArgs* args, const char* bytes, std::int32_t length,
                         UConverterCallbackReason reason, UErrorCode* status) {
  UCNV_TO_U_CALLBACK_SUBSTITUTE(nullptr, args, bytes, length, reason, status);
  if (U_FAILURE(*status) || reason > UCNV_ILLEGAL) return;
  args->target[-1] = u'?';
  Warn(reason, status);
}

void SubstituteFromUnicode(const void*, UConverterFromUnicodeArgs* args, const char16_t* units,
                           std::int32_t length, UChar32 codePoint, UConverterCallbackReason reason,
                           UErrorCode* status) {
  UCNV_FROM_U_CALLBACK_SUBSTITUTE(nullptr, args, units, length, codePoint, reason, status);
  if (U_SUCCESS(*status)) Warn(reason, status);
}

UConverter* Open(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  UConverter* const converter = ucnv_open(name, &status);
  if (U_FAILURE(status)) return nullptr;
  ucnv_setToUCallBack(converter, SubstituteToUnicode, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter, SubstituteFromUnicode, nullptr, nullptr, nullptr, &status);
  status = U_ZERO_ERROR;
  ucnv_setSubstChars(converter, "?", 1, &status);
  return converter;
}

UConverter* OpenUsersEncoding() {
  const std::string& charset = GetUserLocale().charset;
  UConverter* const converter = charset.empty() ? nullptr : Open(charset.c_str());
  return converter != nullptr ? converter : Open("UTF-8");
}

// The number that a text of one to five decimal digits stands for; 0 for every other text.
unsigned CodePageNumber(std::string_view text) {
  if (text.empty() || text.size() > 5) return 0;
  unsigned number = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') return 0;
    number = number * 10 + static_cast<unsigned>(digit - '0');
  }
  return number;
}

bool IsKnown(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  return ucnv_countAliases(name, &status) > 0 && U_SUCCESS(status);
}

const char* StandardName(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  const char* const standard = ucnv_getStandardName(name, "IANA", &status);
  return U_SUCCESS(status) && standard != nullptr ? standard : name;
}

// The default converter itself is never used for a conversion: its state belongs to nobody.
Converter CloneDefault() {
  UErrorCode status = U_ZERO_ERROR;
#if U_ICU_VERSION_MAJOR_NUM >= 71
  return Converter(ucnv_clone(ZENTMBGetDefaultConverter(), &status));
#else
  return Converter(ucnv_safeClone(ZENTMBGetDefaultConverter(), nullptr, nullptr, &status));
#endif
}

int FromUnicode(UConverter* converter, std::string& to, const std::u16string& from) {
  UErrorCode status = U_ZERO_ERROR;
  const auto units = static_cast<std::int32_t>(from.size());
  to.resize(static_cast<std::size_t>(UCNV_GET_MAX_BYTES_FOR_STRING(units, ucnv_getMaxCharSize(converter))));
  const std::int32_t bytes = ucnv_fromUChars(converter, to.data(), static_cast<std::int32_t>(to.size()),
                                             from.data(), units, &status);
  to.resize(U_FAILURE(status) ? 0 : static_cast<std::size_t>(bytes));
  return StatusOf(status);
}

int ToUnicode(UConverter* converter, std::u16string& to, const std::string& from) {
  UErrorCode status = U_ZERO_ERROR;
  to.resize(from.size() * 2);
  const std::int32_t units = ucnv_toUChars(converter, to.data(), static_cast<std::int32_t>(to.size()),
                                           from.data(), static_cast<std::int32_t>(from.size()), &status);
  to.resize(U_FAILURE(status) ? 0 : static_cast<std::size_t>(units));
  return StatusOf(status);
}

}  // namespace

int qUTF8mode() { return g_qUTF8mode; }
void SetUTF8mode(int mode) { g_qUTF8mode = mode != 0 ? 1 : 0; }

UConverter* ZENTMBConverterNew_C(const char* name) {
  if (name == nullptr) {
    UConverter* const current = gDefaultConverter;
    UErrorCode status = U_ZERO_ERROR;
    return current == nullptr ? OpenUsersEncoding() : Open(ucnv_getName(current, &status));
  }
  char found[UCNV_MAX_CONVERTER_NAME_LENGTH];
  if (const unsigned number = CodePageNumber(name); number != 0)
    return ZENTMBCpNameFromNum_C(found, number) == 1 ? Open(found) : nullptr;
  UConverter* const converter = Open(name);
  if (converter == nullptr && strcasecmp(name, "windows-28591") == 0) return Open("ISO-8859-1");
  return converter;
}

int ZENTMBCpNameFromNum_C(char* out, unsigned number) {
  *out = '\0';
  const auto* const row = std::ranges::find(kPreferredNames, number, &PreferredName::number);
  const char* const preferred = row == std::end(kPreferredNames) ? "" : row->name;
  char windows[32];
  char cp[32];
  std::snprintf(windows, sizeof windows, "windows-%03u", number);
  std::snprintf(cp, sizeof cp, "cp%03u", number);
  for (const char* const name :
       {preferred, static_cast<const char*>(windows), static_cast<const char*>(cp)}) {
    if (*name == '\0' || !IsKnown(name)) continue;
    std::snprintf(out, UCNV_MAX_CONVERTER_NAME_LENGTH, "%s", StandardName(name));
    return 1;
  }
  return 0;
}

UConverter* ZENTMBGetDefaultConverter() {
  if (UConverter* const current = gDefaultConverter) return current;
  const std::lock_guard lock(gDefaultConverterLock);
  if (gDefaultConverter == nullptr) ZENTMBSetDefaultConverter(ZENTMBConverterNew_C(nullptr));
  return gDefaultConverter;
}

void ZENTMBSetDefaultConverter(UConverter* converter) {
  gDefaultConverter = converter;
  ++gDefaultConverterId;
}

int ZENTMBDefaultConverterID() { return gDefaultConverterId; }

int ZENTMBU8ToU16(std::u16string& to, const std::string& from) {
  to = ToUTF16(from);
  return WellFormedPrefix(from) == from.size() ? kDone : kNotConverted;
}

int ZENTMBU16ToU8(std::string& to, const std::u16string& from) {
  ToUTF8(from, to);
  return WellFormedPrefix(from) == from.size() ? kDone : kNotConverted;
}

int ZENTMBU8ToCodePage(void* converter, std::string& to, const std::string& from) {
  const Converter clone = converter == nullptr ? CloneDefault() : nullptr;
  std::u16string units;
  const int status = ZENTMBU8ToU16(units, from);
  return std::max(status, FromUnicode(clone ? clone.get() : static_cast<UConverter*>(converter), to, units));
}

int ZENTMBCodePageToU8(void* converter, std::string& to, const std::string& from) {
  const Converter clone = converter == nullptr ? CloneDefault() : nullptr;
  std::u16string units;
  const int status = ToUnicode(clone ? clone.get() : static_cast<UConverter*>(converter), units, from);
  return std::max(status, ZENTMBU16ToU8(to, units));
}

}  // namespace KxXML_940
