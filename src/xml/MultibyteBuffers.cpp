// Conversions into buffers of the caller: cutting, filling and terminating are the same for all of them.

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "xml/ConvertUTF.h"
#include "xml/Multibyte.h"
#include "xml/MultibyteInternal.h"

namespace KxXML_940 {

namespace {

// Local buffers hold so many units; longer texts go to the heap.
constexpr std::size_t kLocalUnits = 1025;
// No mapping table has more for one character.
constexpr std::size_t kMostUnits = 19;

// Room for a text between two conversions.
template <class Unit>
class WorkBuffer {
 public:
  explicit WorkBuffer(std::size_t count)
      : fUnits(static_cast<Unit*>(ZENTMBTempGet(fLocal.data(), sizeof fLocal, sizeof(Unit), count))) {}
  WorkBuffer(const WorkBuffer&) = delete;
  WorkBuffer& operator=(const WorkBuffer&) = delete;
  ~WorkBuffer() { ZENTMBTempFree(fLocal.data(), fUnits); }

  Unit* Get() { return fUnits; }  // null when there was no memory

 private:
  std::array<Unit, kLocalUnits> fLocal;
  Unit* fUnits;
};

template <class Unit>
struct Room {
  Unit* start;
  std::size_t size;
};

// Lays out what `convert(source, room)` writes, as the header says.
template <class To, class From, class Conversion>
int IntoBuffer(void* dst, int dstSize, const void* src, int srcLen, int* error, Conversion convert) {
  using Source = std::basic_string_view<From>;
  const auto* const text = static_cast<const From*>(src);
  auto* const out = static_cast<To*>(dst);
  const bool isTerminated = srcLen < 0;
  const Source source = text == nullptr ? Source()
                        : isTerminated  ? Source(text)
                                        : Source(text, static_cast<std::size_t>(srcLen));
  const std::size_t size = out == nullptr ? 0 : static_cast<std::size_t>(std::max(dstSize, 0));
  const bool hasNull = isTerminated && size > 0;
  const std::size_t room = hasNull ? size - 1 : size;

  Outcome outcome = convert(source, Room<To>{out, room});
  if (isTerminated && !hasNull) outcome.status = kCut;
  std::size_t end = outcome.written;
  if (outcome.status == kCut) {
    std::fill(out + end, out + room, To(' '));
    end = room;
  }
  if (hasNull)
    out[end] = 0;
  else if (end < room)
    out[end] = ' ';
  if (error != nullptr) *error = outcome.status;
  return static_cast<int>(outcome.written);
}

// --- Between the Unicode encodings

template <class Unit>
struct UnitOf {
  using Type = Unit;
};
template <>
struct UnitOf<char> {
  using Type = UTF8;
};

template <class Unit>
std::basic_string_view<Unit> Replacement() {
  if constexpr (sizeof(Unit) == 1)
    return "\xEF\xBF\xBD";
  else if constexpr (sizeof(Unit) == 2)
    return u"\uFFFD";
  else
    return U"\uFFFD";
}

// How many units one replacement stands for.
template <class Unit>
std::size_t IllFormedLength(const Unit* source, const Unit* end) {
  if constexpr (sizeof(Unit) == 1) {
    std::ptrdiff_t length = 0;
    [[maybe_unused]] UChar32 code;
    U8_NEXT(source, length, end - source, code);
    return static_cast<std::size_t>(length);
  } else {
    return 1;
  }
}

// Runs a conversion of ConvertUTF.h over the whole text; it stops before what it cannot convert or write.
template <class From, class To, class Conversion>
Outcome BetweenUTF(std::basic_string_view<From> from, Room<To> room, Conversion convert) {
  using Source = typename UnitOf<From>::Type;
  using Target = typename UnitOf<To>::Type;
  const auto* source = reinterpret_cast<const Source*>(from.data());
  const auto* const sourceEnd = source + from.size();
  auto* target = reinterpret_cast<Target*>(room.start);
  auto* const start = target;
  auto* const targetEnd = target + room.size;
  const auto replacement = Replacement<To>();
  int status = kDone;
  ConversionResult result;
  while ((result = convert(&source, sourceEnd, &target, targetEnd, strictConversion)) != conversionOK) {
    if (result == targetExhausted || static_cast<std::size_t>(targetEnd - target) < replacement.size()) {
      status = kCut;
      break;
    }
    target = std::ranges::copy(replacement, target).out;
    source += IllFormedLength(source, sourceEnd);
    status = kNotConverted;
  }
  return {static_cast<std::size_t>(target - start), status};
}

Outcome ToUTF16(std::string_view from, Room<char16_t> room) {
  return BetweenUTF(from, room, ConvertUTF8toUTF16);
}
Outcome ToUTF8(std::u16string_view from, Room<char> room) {
  return BetweenUTF(from, room, ConvertUTF16toUTF8);
}

// --- Code pages

// By way of a work buffer, because some converters write beyond their output, and one unit larger than the
// room, because they call a full buffer too small when nothing but a shift sequence follows.  A text has
// `expected` units in nearly every encoding; callbacks may write more, as long as there is room.  `whole`
// counts the units that may stay of a cut output, which may end within a character.
template <class To, class From, class Conversion, class Whole>
Outcome ByConverter(UConverter* converter, From from, Room<To> room, std::size_t expected, Conversion convert,
                    Whole whole) {
  for (std::size_t size = std::min(room.size, expected);; size = std::min(room.size, size * 2)) {
    WorkBuffer<To> work(size + 1);
    if (work.Get() == nullptr) return {0, kNotConverted};
    Outcome outcome = convert(converter, from, work.Get(), size + 1);
    const bool isCut = outcome.status == kCut || outcome.written > size;
    if (isCut && size < room.size) continue;
    if (isCut)
      outcome = {whole(std::basic_string_view<To>(work.Get(), std::min(outcome.written, size))), kCut};
    std::copy_n(work.Get(), outcome.written, room.start);
    return outcome;
  }
}

Outcome ToCodePage(void* converter, std::u16string_view from, Room<char> room) {
  const ChosenConverter chosen(converter);
  return ByConverter(chosen.Get(), from, room, BytesFor(chosen.Get(), from.size()), FromUnicode,
                     [&](std::string_view text) { return ValidPrefix(chosen.Get(), text); });
}

Outcome FromCodePage(void* converter, std::string_view from, Room<char16_t> room) {
  const ChosenConverter chosen(converter);
  return ByConverter(chosen.Get(), from, room, from.size() * kMostUnits + 1, ToUnicode,
                     [](std::u16string_view text) {
                       return text.size() - (!text.empty() && U16_IS_LEAD(text.back()) ? 1 : 0);
                     });
}

// Converts by way of UTF-16, for which so many units are tried first.
template <class First, class Second>
Outcome ByWayOfUTF16(std::string_view from, Room<char> room, std::size_t units, First first, Second second) {
  for (;; units *= 2) {
    WorkBuffer<char16_t> work(units);
    if (work.Get() == nullptr) return {0, kNotConverted};
    const Outcome outcome = first(from, Room<char16_t>{work.Get(), units});
    if (outcome.status == kCut) continue;
    Outcome result = second(std::u16string_view(work.Get(), outcome.written), room);
    if (result.status == kDone) result.status = outcome.status;
    return result;
  }
}

// Names the converter of a conversion.
auto Into(void* converter) {
  return [converter](std::u16string_view from, Room<char> room) { return ToCodePage(converter, from, room); };
}
auto OutOf(void* converter) {
  return
      [converter](std::string_view from, Room<char16_t> room) { return FromCodePage(converter, from, room); };
}

Outcome CodePageToUTF8(void* converter, std::string_view from, Room<char> room) {
  return ByWayOfUTF16(from, room, UnitsFor(from.size()) + 1, OutOf(converter), ToUTF8);
}

Outcome UTF8ToCodePage(void* converter, std::string_view from, Room<char> room) {
  return ByWayOfUTF16(from, room, from.size() + 1, ToUTF16, Into(converter));
}

// For texts that are in the right encoding already: `whole` counts the bytes that may stay of a cut text.
template <class Whole>
Outcome Copy(std::string_view from, Room<char> room, Whole whole) {
  const bool isCut = from.size() > room.size;
  const std::size_t written = isCut ? whole(from.substr(0, room.size)) : from.size();
  std::copy_n(from.data(), written, room.start);
  return {written, isCut ? kCut : kDone};
}

Outcome CopyUTF8(std::string_view from, Room<char> room) {
  return Copy(from, room, [](std::string_view text) {
    return static_cast<std::size_t>(ZENTMBCheckFinalChar_8(text.data(), static_cast<int>(text.size())));
  });
}

// From one code page to another, of which null is the default one.
Outcome BetweenCodePages(void* source, void* target, std::string_view from, Room<char> room) {
  if (source == target)
    return Copy(from, room, [source](std::string_view text) { return ValidPrefix(source, text); });
  return ByWayOfUTF16(from, room, UnitsFor(from.size()) + 1, OutOf(source), Into(target));
}

bool IsUTF8() { return qUTF8mode() != 0; }

}  // namespace

int ZENTMB8and16(int toUTF16, void* dst, int dstSize, const void* src, int srcLen, int* error) {
  return toUTF16 != 0 ? IntoBuffer<char16_t, char>(dst, dstSize, src, srcLen, error, ToUTF16)
                      : IntoBuffer<char, char16_t>(dst, dstSize, src, srcLen, error, ToUTF8);
}

int ZENTMB8and32(int toUTF32, void* dst, int dstSize, const void* src, int srcLen, int* error) {
  if (toUTF32 != 0)
    return IntoBuffer<char32_t, char>(dst, dstSize, src, srcLen, error,
                                      [](std::string_view from, Room<char32_t> room) {
                                        return BetweenUTF(from, room, ConvertUTF8toUTF32);
                                      });
  return IntoBuffer<char, char32_t>(
      dst, dstSize, src, srcLen, error,
      [](std::u32string_view from, Room<char> room) { return BetweenUTF(from, room, ConvertUTF32toUTF8); });
}

int ZENTMBCodePageAnd8(int toUTF8, void* converter, void* dst, int dstSize, const void* src, int srcLen,
                       int* error) {
  const auto convert = [&](std::string_view from, Room<char> room) {
    return toUTF8 != 0 ? CodePageToUTF8(converter, from, room) : UTF8ToCodePage(converter, from, room);
  };
  return IntoBuffer<char, char>(dst, dstSize, src, srcLen, error, convert);
}

int ZENTMBCodePageAnd16(int toUTF16, void* converter, void* dst, int dstSize, const void* src, int srcLen,
                        int* error) {
  return toUTF16 != 0 ? IntoBuffer<char16_t, char>(dst, dstSize, src, srcLen, error, OutOf(converter))
                      : IntoBuffer<char, char16_t>(dst, dstSize, src, srcLen, error, Into(converter));
}

int ZENTMB16to8(char* dst, int dstSize, const char16_t* src, int srcLen, int* error) {
  return ZENTMB8and16(0, dst, dstSize, src, srcLen, error);
}

int ZENTMB8to16(char16_t* dst, int dstSize, const char* src, int srcLen, int* error) {
  return ZENTMB8and16(1, dst, dstSize, src, srcLen, error);
}

int ZENTMB16toCodePage(void* converter, char* dst, int dstSize, const char16_t* src, int srcLen, int* error) {
  return ZENTMBCodePageAnd16(0, converter, dst, dstSize, src, srcLen, error);
}

int ZENTMBCodePageto16(void* converter, char16_t* dst, int dstSize, const char* src, int srcLen, int* error) {
  return ZENTMBCodePageAnd16(1, converter, dst, dstSize, src, srcLen, error);
}

int ZENTMB8toCodePage(void* converter, char* dst, int dstSize, const char* src, int srcLen, int* error) {
  return ZENTMBCodePageAnd8(0, converter, dst, dstSize, src, srcLen, error);
}

int ZENTMBCodePageto8(void* converter, char* dst, int dstSize, const char* src, int srcLen, int* error) {
  return ZENTMBCodePageAnd8(1, converter, dst, dstSize, src, srcLen, error);
}

int ZENTMB16toGeneric(char* dst, int dstSize, const char16_t* src, int srcLen, int* error) {
  return IsUTF8() ? ZENTMB16to8(dst, dstSize, src, srcLen, error)
                  : ZENTMB16toCodePage(nullptr, dst, dstSize, src, srcLen, error);
}

int ZENTMBGenericto16(char16_t* dst, int dstSize, const char* src, int srcLen, int* error) {
  return IsUTF8() ? ZENTMB8to16(dst, dstSize, src, srcLen, error)
                  : ZENTMBCodePageto16(nullptr, dst, dstSize, src, srcLen, error);
}

int ZENTMB8toGeneric(char* dst, int dstSize, const char* src, int srcLen, int* error) {
  return IsUTF8() ? IntoBuffer<char, char>(dst, dstSize, src, srcLen, error, CopyUTF8)
                  : ZENTMB8toCodePage(nullptr, dst, dstSize, src, srcLen, error);
}

int ZENTMBGenericto8(char* dst, int dstSize, const char* src, int srcLen, int* error) {
  return IsUTF8() ? IntoBuffer<char, char>(dst, dstSize, src, srcLen, error, CopyUTF8)
                  : ZENTMBCodePageto8(nullptr, dst, dstSize, src, srcLen, error);
}

int ZENTMBGenerictoCodePage(void* converter, char* dst, int dstSize, const char* src, int srcLen,
                            int* error) {
  const auto convert = [converter](std::string_view from, Room<char> room) {
    return IsUTF8() ? UTF8ToCodePage(converter, from, room)
                    : BetweenCodePages(nullptr, converter, from, room);
  };
  return IntoBuffer<char, char>(dst, dstSize, src, srcLen, error, convert);
}

int ZENTMBCodePagetoGeneric(void* converter, char* dst, int dstSize, const char* src, int srcLen,
                            int* error) {
  const auto convert = [converter](std::string_view from, Room<char> room) {
    return IsUTF8() ? CodePageToUTF8(converter, from, room)
                    : BetweenCodePages(converter, nullptr, from, room);
  };
  return IntoBuffer<char, char>(dst, dstSize, src, srcLen, error, convert);
}

}  // namespace KxXML_940
