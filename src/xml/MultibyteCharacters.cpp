// Functions on whole characters.  Each is written once, for an encoding; the flavours follow at the end.

#include <unicode/uchar.h>
#include <unicode/ucnv_err.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <string_view>
#include <type_traits>

#include "xml/Multibyte.h"
#include "xml/MultibyteInternal.h"
#include "xml/SystemLocale.h"
#include "xml/XmlText.h"

namespace KxXML_940 {

namespace {

// No character has more bytes.
constexpr int kLongest = 4;

struct Character {
  UChar32 code = -1;  // an ill-formed byte counts as itself
  bool isValid = false;
};

UChar32 ByteAt(const char* text) { return static_cast<unsigned char>(*text); }

// A text of a stated length (negative: null-terminated), which a null ends in any case.
std::string_view TextOf(const char* text, int length) {
  if (text == nullptr) return {};
  return {text, length < 0 ? std::strlen(text) : strnlen(text, static_cast<std::size_t>(length))};
}

// Readers return one character after the other, and false at the end of the text.

class ReaderOfUTF8 {
 public:
  explicit ReaderOfUTF8(std::string_view text) : fNext(text.data()), fEnd(text.data() + text.size()) {}

  const char* Position() const { return fNext; }

  bool Next(Character& character) {
    if (fNext == fEnd) return false;
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(fNext);
    std::ptrdiff_t length = 0;
    UChar32 code;
    U8_NEXT(bytes, length, fEnd - fNext, code);
    character = code < 0 ? Character{ByteAt(fNext), false} : Character{code, true};
    fNext += code < 0 ? 1 : length;
    return true;
  }

 private:
  const char* fNext;
  const char* fEnd;
};

// The converter is a clone, so that two texts are read side by side and nobody's state is disturbed.
class ReaderOfCodePage {
 public:
  explicit ReaderOfCodePage(std::string_view text, void* converter = nullptr)
      : fConverter(
            Clone(converter == nullptr ? ZENTMBGetDefaultConverter() : static_cast<UConverter*>(converter))),
        fNext(text.data()),
        fEnd(text.data() + text.size()) {
    UErrorCode status = U_ZERO_ERROR;
    if (fConverter == nullptr) return;
    ucnv_reset(fConverter.get());
    ucnv_setToUCallBack(fConverter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  }

  const char* Position() const { return fNext; }

  bool Next(Character& character) {
    if (fConverter == nullptr || fNext == nullptr) return false;
    const char* const start = fNext;
    UErrorCode status = U_ZERO_ERROR;
    const UChar32 code = ucnv_getNextUChar(fConverter.get(), &fNext, fEnd, &status);
    if (U_SUCCESS(status)) {
      character = {code, true};
      return true;
    }
    // Shift sequences without a character behind them are not ill-formed.
    if (start == fEnd || status == U_INDEX_OUTOFBOUNDS_ERROR) return false;
    ucnv_reset(fConverter.get());
    character = {ByteAt(start), false};
    fNext = start + 1;
    return true;
  }

 private:
  Converter fConverter;
  const char* fNext;
  const char* fEnd;
};

template <class Reader>
std::size_t CountValid(Reader reader) {
  const char* const start = reader.Position();
  std::size_t count = 0;
  for (Character character; reader.Next(character) && character.isValid;)
    count = static_cast<std::size_t>(reader.Position() - start);
  return count;
}

UChar32 InLowerCase(const Character& character) {
  return character.isValid ? u_tolower(character.code) : character.code;
}

template <class Reader>
int Compare(int caseSensitive, Reader a, Reader b, int* error) {
  int ignored = 0;
  int& status = error != nullptr ? *error : ignored;
  status = kDone;
  for (;;) {
    Character left;
    Character right;
    const bool hasLeft = a.Next(left);
    const bool hasRight = b.Next(right);
    if ((hasLeft && !left.isValid) || (hasRight && !right.isValid)) status = kNotConverted;
    if (!hasLeft || !hasRight) return static_cast<int>(hasLeft) - static_cast<int>(hasRight);
    if (caseSensitive == 0) {
      left.code = InLowerCase(left);
      right.code = InLowerCase(right);
    }
    if (left.code != right.code) return left.code < right.code ? -1 : 1;
  }
}

// --- The encodings

struct EncodingUTF8 {
  using Reader = ReaderOfUTF8;

  // The bytes of the first character, of those that are there.
  static std::size_t Length(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const std::size_t length = lead < 0xC2 || lead > 0xF4 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    return std::min(length, bytes.size());
  }

  static int CheckedLength(std::string_view bytes) {
    Character character;
    Reader reader(bytes);
    return reader.Next(character) && character.isValid ? static_cast<int>(reader.Position() - bytes.data())
                                                       : -1;
  }

  // The bytes that stay when the last character is cut.
  static std::size_t Whole(std::string_view bytes) {
    auto length = static_cast<std::ptrdiff_t>(bytes.size());
    U8_TRUNCATE_IF_INCOMPLETE(bytes.data(), 0, length);
    return static_cast<std::size_t>(length);
  }
};

struct EncodingCodePage {
  using Reader = ReaderOfCodePage;

  static constexpr auto kIncomplete = static_cast<std::size_t>(-2);

  // As mbrlen says, from the initial state.
  static std::size_t Measure(std::string_view bytes) {
    EnableLocale();
    std::mbstate_t state{};
    return std::mbrlen(bytes.data(), std::min<std::size_t>(bytes.size(), kLongest), &state);
  }

  static std::size_t Length(std::string_view bytes) {
    const std::size_t length = Measure(bytes);
    return length > 0 && length <= bytes.size() ? length : std::min<std::size_t>(2, bytes.size());
  }

  static int CheckedLength(std::string_view bytes) { return static_cast<int>(Length(bytes)); }

  static std::size_t Whole(std::string_view bytes) {
    std::size_t whole = 0;
    while (whole < bytes.size() && Measure(bytes.substr(whole)) != kIncomplete)
      whole += Length(bytes.substr(whole));
    return whole;
  }
};

// --- The functions

template <class Encoding>
struct Functions {
  using Reader = typename Encoding::Reader;

  static int mbclen(const char* text) {
    const std::string_view bytes = TextOf(text, kLongest);
    return bytes.empty() ? 1 : static_cast<int>(Encoding::Length(bytes));
  }

  static int mblen(const char* text, int n) {
    const std::string_view bytes = TextOf(text, std::max(n, 0));
    return bytes.empty() ? 0 : Encoding::CheckedLength(bytes);
  }

  // How much of a text goes into `n` bytes.  A text that ends before them is taken as it is.
  static std::string_view Fitting(const char* text, int n) {
    const std::string_view bytes = TextOf(text, std::max(n, 0));
    return bytes.size() < static_cast<std::size_t>(std::max(n, 0)) ? bytes
                                                                   : bytes.substr(0, Encoding::Whole(bytes));
  }

  static char* strncpy(char* dst, const char* src, int n) {
    const std::string_view text = Fitting(src, n);
    std::copy(text.begin(), text.end(), dst);
    if (n > 0) std::fill(dst + text.size(), dst + n, '\0');
    return dst;
  }

  static bool qstricmp(const char* a, int alen, const char* b, int blen, int* error) {
    return Compare(0, Reader(TextOf(a, alen)), Reader(TextOf(b, blen)), error) == 0;
  }

  static int strnicmp(const char* a, const char* b, int n) {
    return Compare(0, Reader(TextOf(a, n)), Reader(TextOf(b, n)), nullptr);
  }

  // In UTF-8 no byte below 128 is part of another character, so those are left to the C library.
  static const char* SearchChar(const char* text, char32_t code, int fromEnd) {
    if (text == nullptr) return nullptr;
    if (code == 0) return text + std::strlen(text);
    if (std::is_same_v<Encoding, EncodingUTF8> && code < 0x80) {
      const int byte = static_cast<int>(code);
      return fromEnd != 0 ? std::strrchr(text, byte) : std::strchr(text, byte);
    }
    const char* found = nullptr;
    Reader reader(TextOf(text, -1));
    const char* start = reader.Position();
    for (Character character; reader.Next(character); start = reader.Position()) {
      if (!character.isValid || static_cast<char32_t>(character.code) != code) continue;
      found = start;
      if (fromEnd == 0) break;
    }
    return found;
  }

  static const char* strchr(const char* text, char32_t code) { return SearchChar(text, code, 0); }

  static const char* strrchr(const char* text, char32_t code) { return SearchChar(text, code, 1); }

  static const char* strinc(const char* text) { return *text == '\0' ? text : text + mbclen(text); }

  static std::string_view CharacterAt(const char* text) { return {text, strinc(text)}; }

  static bool Contains(const char* set, std::string_view wanted) {
    for (; *set != '\0'; set = strinc(set))
      if (CharacterAt(set) == wanted) return true;
    return false;
  }

  static std::size_t strcspn(const char* text, const char* set) {
    const char* end = text;
    while (*end != '\0' && !Contains(set, CharacterAt(end))) end = strinc(end);
    return static_cast<std::size_t>(end - text);
  }

  // Characters are found from the start only: a trail byte may look like a lead byte.
  static const char* AnsiPrev(const char* start, const char* current) {
    const char* previous = start;
    for (const char* next = start; next < current && *next != '\0'; next = strinc(next)) previous = next;
    return previous;
  }

  static int PreviousIndex(const char* text, int index) {
    return static_cast<int>(AnsiPrev(text, text + std::max(index, 0)) - text);
  }
};

using FunctionsOnUTF8 = Functions<EncodingUTF8>;
using FunctionsOnCodePage = Functions<EncodingCodePage>;

}  // namespace

// --- The flavours

#define VEYRA_FLAVOURS(result, name, parameters, arguments)                  \
  result name##_8 parameters { return FunctionsOnUTF8::name arguments; }     \
  result name##_C parameters { return FunctionsOnCodePage::name arguments; } \
  result name##_A parameters { return qUTF8mode() != 0 ? name##_8 arguments : name##_C arguments; }

VEYRA_FLAVOURS(int, mbclen, (const char* text), (text))
VEYRA_FLAVOURS(int, mblen, (const char* text, int n), (text, n))
VEYRA_FLAVOURS(char*, strncpy, (char* dst, const char* src, int n), (dst, src, n))
VEYRA_FLAVOURS(bool, qstricmp, (const char* a, int alen, const char* b, int blen, int* error),
               (a, alen, b, blen, error))
VEYRA_FLAVOURS(int, strnicmp, (const char* a, const char* b, int n), (a, b, n))
VEYRA_FLAVOURS(const char*, SearchChar, (const char* text, char32_t code, int fromEnd), (text, code, fromEnd))
VEYRA_FLAVOURS(const char*, strchr, (const char* text, char32_t code), (text, code))
VEYRA_FLAVOURS(const char*, strrchr, (const char* text, char32_t code), (text, code))
VEYRA_FLAVOURS(std::size_t, strcspn, (const char* text, const char* set), (text, set))
VEYRA_FLAVOURS(const char*, strinc, (const char* text), (text))
VEYRA_FLAVOURS(const char*, AnsiPrev, (const char* start, const char* current), (start, current))
VEYRA_FLAVOURS(int, PreviousIndex, (const char* text, int index), (text, index))

#undef VEYRA_FLAVOURS

bool IsLeadByte_C(unsigned char byte) {
  const char text[] = {static_cast<char>(byte), ' ', ' ', ' ', '\0'};
  return mbclen_C(text) > 1;
}

int ZENTMBBinaryCompare_8(int caseSensitive, const char* a, int alen, const char* b, int blen, int* error) {
  return Compare(caseSensitive, ReaderOfUTF8(TextOf(a, alen)), ReaderOfUTF8(TextOf(b, blen)), error);
}

int ZENTMBBinaryCompare_C(int caseSensitive, void* converter, const char* a, int alen, const char* b,
                          int blen, int* error) {
  return Compare(caseSensitive, ReaderOfCodePage(TextOf(a, alen), converter),
                 ReaderOfCodePage(TextOf(b, blen), converter), error);
}

std::size_t ValidPrefix(void* converter, std::string_view text) {
  return CountValid(ReaderOfCodePage(text, converter));
}

int ZENTMBValidCount_C(void* converter, const char* text, int n) {
  return static_cast<int>(ValidPrefix(converter, TextOf(text, n)));
}

UChar32 ZENTMBU32Get_C(void* converter, const char* text, int n, int* length) {
  ReaderOfCodePage reader(TextOf(text, n), converter);
  const char* const start = reader.Position();
  Character character;
  reader.Next(character);
  if (length != nullptr) *length = static_cast<int>(reader.Position() - start);
  return character.isValid ? character.code : -1;
}

int ZENTMBCheckFinalChar_8(const char* text, int n) {
  return n <= 0 ? 0 : static_cast<int>(EncodingUTF8::Whole({text, static_cast<std::size_t>(n)}));
}

int ZENTMBLimitedCopy_8(char* dst, const char* src, int n) {
  const std::string_view text = FunctionsOnUTF8::Fitting(src, n);
  std::copy(text.begin(), text.end(), dst);
  return static_cast<int>(text.size());
}

}  // namespace KxXML_940
