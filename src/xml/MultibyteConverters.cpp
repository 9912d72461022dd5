// The converters and the process-wide state of the multibyte family.

#include <strings.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <mutex>
#include <string>

#include "xml/Multibyte.h"
#include "xml/MultibyteInternal.h"
#include "xml/PlatformLocale.h"

namespace KxXML_940 {

namespace {

struct PreferredName {
  unsigned number;
  const char* name;
};

constexpr PreferredName kPreferredNames[] = {
    {932, "windows-31j"}, {936, "GBK"},     {949, "KS_C_5601-1987"}, {950, "Big5"},         {1250, "cp1250"},
    {1251, "cp1251"},     {1252, "cp1252"}, {1253, "cp1253"},        {1254, "cp1254"},      {1255, "cp1255"},
    {1256, "cp1256"},     {1257, "cp1257"}, {1258, "cp1258"},        {28591, "ISO-8859-1"}, {65001, "UTF-8"},
};
constexpr unsigned kLastNumber = 99999;

// Warnings of the callbacks.
constexpr auto kUnassigned = static_cast<UErrorCode>(-100);
constexpr auto kIllegal = static_cast<UErrorCode>(-101);

std::atomic<int> g_qUTF8mode{1};
std::atomic<UConverter*> gDefaultConverter{nullptr};
std::atomic<int> gDefaultConverterId{0};
std::mutex gDefaultConverterLock;

int StatusOf(UErrorCode status) {
  if (status == U_BUFFER_OVERFLOW_ERROR) return kCut;
  return U_FAILURE(status) || status == kUnassigned || status == kIllegal ? kNotConverted : kDone;
}

// Callbacks are also called when a converter is reset, closed or cloned: then there is nothing to report.
bool HasSubstituted(UConverterCallbackReason reason, UErrorCode status) {
  return U_SUCCESS(status) && (reason == UCNV_UNASSIGNED || reason == UCNV_ILLEGAL);
}

UErrorCode WarningOf(UConverterCallbackReason reason) {
  return reason == UCNV_UNASSIGNED ? kUnassigned : kIllegal;
}

UConverter* Open(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  UConverter* const converter = ucnv_open(name, &status);
  if (U_FAILURE(status)) return nullptr;
  ucnv_setToUCallBack(converter, ZENTMB_TO_U_CALLBACK_SUBSTITUTE, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter, ZENTMB_FROM_U_CALLBACK_SUBSTITUTE, nullptr, nullptr, nullptr, &status);
  status = U_ZERO_ERROR;
  ucnv_setSubstChars(converter, "?", 1, &status);
  return converter;
}

UConverter* OpenUsersEncoding() {
  const std::string& charset = GetUserLocale().charset;
  UConverter* const converter = charset.empty() ? nullptr : Open(charset.c_str());
  return converter != nullptr ? converter : Open("UTF-8");
}

// The number from 1 to 99999 that a text of decimal digits stands for; 0 for every other text.
unsigned CodePageNumber(const char* text) {
  unsigned number = 0;
  for (; *text != '\0'; ++text) {
    if (*text < '0' || *text > '9') return 0;
    number = number * 10 + static_cast<unsigned>(*text - '0');
    if (number > kLastNumber) return 0;
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

}  // namespace

int qUTF8mode() { return g_qUTF8mode; }
void SetUTF8mode(int mode) { g_qUTF8mode = mode != 0 ? 1 : 0; }

void ZENTMB_TO_U_CALLBACK_SUBSTITUTE(const void* context, UConverterToUnicodeArgs* args, const char* bytes,
                                     std::int32_t length, UConverterCallbackReason reason,
                                     UErrorCode* status) {
  UCNV_TO_U_CALLBACK_SUBSTITUTE(context, args, bytes, length, reason, status);
  if (!HasSubstituted(reason, *status)) return;
  args->target[-1] = u'?';
  *status = WarningOf(reason);
}

void ZENTMB_FROM_U_CALLBACK_SUBSTITUTE(const void* context, UConverterFromUnicodeArgs* args,
                                       const char16_t* units, std::int32_t length, UChar32 codePoint,
                                       UConverterCallbackReason reason, UErrorCode* status) {
  UCNV_FROM_U_CALLBACK_SUBSTITUTE(context, args, units, length, codePoint, reason, status);
  if (HasSubstituted(reason, *status)) *status = WarningOf(reason);
}

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

UConverter* ZENTMBConverterNew_8(const char* name) {
  if (name == nullptr) return ZENTMBConverterNew_C(nullptr);
  char inCodePage[UCNV_MAX_CONVERTER_NAME_LENGTH];
  int error = kDone;
  ZENTMB8toCodePage(nullptr, inCodePage, sizeof inCodePage, name, -1, &error);
  return error == kCut ? nullptr : ZENTMBConverterNew_C(inCodePage);  // no name is that long
}

UConverter* ZENTMBConverterNew_A(const char* name) {
  return qUTF8mode() != 0 ? ZENTMBConverterNew_8(name) : ZENTMBConverterNew_C(name);
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

void ZENTMBSetDefaultCollator(UCollator*) {}

Converter Clone(const UConverter* converter) {
  UErrorCode status = U_ZERO_ERROR;
#if U_ICU_VERSION_MAJOR_NUM >= 71
  return Converter(ucnv_clone(converter, &status));
#else
  return Converter(ucnv_safeClone(converter, nullptr, nullptr, &status));
#endif
}

ChosenConverter::ChosenConverter(void* converter)
    : fClone(converter == nullptr ? Clone(ZENTMBGetDefaultConverter()) : nullptr),
      fConverter(converter == nullptr ? fClone.get() : static_cast<UConverter*>(converter)) {}

namespace {

// A converter's callback as it is, and what it reports: the status of a conversion may lose a warning again
// before the text ends.
template <class Callback>
struct Watched {
  Callback callback = nullptr;
  const void* context = nullptr;
  bool hasSubstituted = false;

  void See(UErrorCode status) {
    hasSubstituted = hasSubstituted || status == kUnassigned || status == kIllegal;
  }
};
using WatchedFromUnicode = Watched<UConverterFromUCallback>;
using WatchedToUnicode = Watched<UConverterToUCallback>;

void Watch(const void* context, UConverterFromUnicodeArgs* args, const char16_t* units, std::int32_t length,
           UChar32 codePoint, UConverterCallbackReason reason, UErrorCode* status) {
  auto& watched = *static_cast<WatchedFromUnicode*>(const_cast<void*>(context));
  watched.callback(watched.context, args, units, length, codePoint, reason, status);
  watched.See(*status);
}

void Watch(const void* context, UConverterToUnicodeArgs* args, const char* bytes, std::int32_t length,
           UConverterCallbackReason reason, UErrorCode* status) {
  auto& watched = *static_cast<WatchedToUnicode*>(const_cast<void*>(context));
  watched.callback(watched.context, args, bytes, length, reason, status);
  watched.See(*status);
}

Outcome OutcomeOf(std::size_t written, UErrorCode status, bool hasSubstituted) {
  const int plain = StatusOf(status);
  return {written, plain == kDone && hasSubstituted ? kNotConverted : plain};
}

}  // namespace

// Both use the streaming calls: those for whole texts replace the warnings of the callbacks by one of their
// own when the output exactly fills the room.

Outcome FromUnicode(UConverter* converter, std::u16string_view from, char* out, std::size_t room) {
  if (converter == nullptr) return {0, kNotConverted};
  UErrorCode status = U_ZERO_ERROR;
  const char16_t* source = from.data();
  char* target = out;
  WatchedFromUnicode watched;
  ucnv_resetFromUnicode(converter);
  ucnv_setFromUCallBack(converter, Watch, &watched, &watched.callback, &watched.context, &status);
  ucnv_fromUnicode(converter, &target, out + room, &source, from.data() + from.size(), nullptr, true,
                   &status);
  UErrorCode restored = U_ZERO_ERROR;
  ucnv_setFromUCallBack(converter, watched.callback, watched.context, nullptr, nullptr, &restored);
  return OutcomeOf(static_cast<std::size_t>(target - out), status, watched.hasSubstituted);
}

Outcome ToUnicode(UConverter* converter, std::string_view from, char16_t* out, std::size_t room) {
  if (converter == nullptr) return {0, kNotConverted};
  UErrorCode status = U_ZERO_ERROR;
  const char* source = from.data();
  char16_t* target = out;
  WatchedToUnicode watched;
  ucnv_resetToUnicode(converter);
  ucnv_setToUCallBack(converter, Watch, &watched, &watched.callback, &watched.context, &status);
  ucnv_toUnicode(converter, &target, out + room, &source, from.data() + from.size(), nullptr, true, &status);
  UErrorCode restored = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter, watched.callback, watched.context, nullptr, nullptr, &restored);
  return OutcomeOf(static_cast<std::size_t>(target - out), status, watched.hasSubstituted);
}

std::size_t BytesFor(UConverter* converter, std::size_t units) {
  const auto most = converter == nullptr ? 1 : static_cast<std::size_t>(ucnv_getMaxCharSize(converter));
  return (units + 10) * most;
}

std::size_t UnitsFor(std::size_t bytes) { return bytes * 2; }

}  // namespace KxXML_940
