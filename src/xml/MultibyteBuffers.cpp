// Conversions into buffers of the caller: cutting, filling and terminating are the same for all of them.

#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "xml/Multibyte.h"
#include "xml/MultibyteInternal.h"
#include "xml/UnicodeInternal.h"

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

template <class From, class To, class FromUnit, class ToUnit>
Outcome BetweenUTF(std::basic_string_view<FromUnit> from, Room<ToUnit> room) {
  constexpr int kStatuses[] = {kDone, kNotConverted, kCut};  // by WholeText
  const auto* const source = reinterpret_cast<const Byte*>(from.data());
  auto* const start = reinterpret_cast<Byte*>(room.start);
  Byte* target = start;
  const WholeText done = ConvertReplacing<From, To>(source, source + from.size() * sizeof(FromUnit), target,
                                                    start + room.size * sizeof(ToUnit));
  return {static_cast<std::size_t>(target - start) / sizeof(ToUnit), kStatuses[static_cast<int>(done)]};
}

Outcome ToUTF16(std::string_view from, Room<char16_t> room) {
  return BetweenUTF<EncodingUTF8, NativeUTF16>(from, room);
}
Outcome ToUTF8(std::u16string_view from, Room<char> room) {
  return BetweenUTF<NativeUTF16, EncodingUTF8>(from, room);
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

// --- Texts of bytes, whatever they are in

auto IntoEncoding(ByteEncoding encoding) {
  return [encoding](std::u16string_view from, Room<char> room) {
    return encoding.isUTF8 ? ToUTF8(from, room) : ToCodePage(encoding.converter, from, room);
  };
}

auto OutOfEncoding(ByteEncoding encoding) {
  return [encoding](std::string_view from, Room<char16_t> room) {
    return encoding.isUTF8 ? ToUTF16(from, room) : FromCodePage(encoding.converter, from, room);
  };
}

// The bytes that may stay of a text that is cut at its end.
std::size_t WholeBytes(ByteEncoding encoding, std::string_view text) {
  if (!encoding.isUTF8) return ValidPrefix(encoding.converter, text);
  return static_cast<std::size_t>(ZENTMBCheckFinalChar_8(text.data(), static_cast<int>(text.size())));
}

Outcome Copy(ByteEncoding encoding, std::string_view from, Room<char> room) {
  const bool isCut = from.size() > room.size;
  const std::size_t written = isCut ? WholeBytes(encoding, from.substr(0, room.size)) : from.size();
  std::copy_n(from.data(), written, room.start);
  return {written, isCut ? kCut : kDone};
}

// By way of UTF-16.
Outcome BetweenBytes(ByteEncoding source, ByteEncoding target, std::string_view from, Room<char> room) {
  if (source == target) return Copy(source, from, room);
  for (std::size_t units = UnitsFor(from.size()) + 1;; units *= 2) {
    WorkBuffer<char16_t> work(units);
    if (work.Get() == nullptr) return {0, kNotConverted};
    const Outcome outcome = OutOfEncoding(source)(from, Room<char16_t>{work.Get(), units});
    if (outcome.status == kCut) continue;
    Outcome result = IntoEncoding(target)(std::u16string_view(work.Get(), outcome.written), room);
    if (result.status == kDone) result.status = outcome.status;
    return result;
  }
}

int ConvertBytes(ByteEncoding source, ByteEncoding target, char* dst, int dstSize, const char* src,
                 int srcLen, int* error) {
  const auto convert = [&](std::string_view from, Room<char> room) {
    return BetweenBytes(source, target, from, room);
  };
  return IntoBuffer<char, char>(dst, dstSize, src, srcLen, error, convert);
}

}  // namespace

int ZENTMB8and16(int toUTF16, void* dst, int dstSize, const void* src, int srcLen, int* error) {
  return toUTF16 != 0 ? IntoBuffer<char16_t, char>(dst, dstSize, src, srcLen, error, ToUTF16)
                      : IntoBuffer<char, char16_t>(dst, dstSize, src, srcLen, error, ToUTF8);
}

int ZENTMB8and32(int toUTF32, void* dst, int dstSize, const void* src, int srcLen, int* error) {
  const auto toWide = [](std::string_view from, Room<char32_t> room) {
    return BetweenUTF<EncodingUTF8, EncodingUTF32>(from, room);
  };
  const auto fromWide = [](std::u32string_view from, Room<char> room) {
    return BetweenUTF<EncodingUTF32, EncodingUTF8>(from, room);
  };
  return toUTF32 != 0 ? IntoBuffer<char32_t, char>(dst, dstSize, src, srcLen, error, toWide)
                      : IntoBuffer<char, char32_t>(dst, dstSize, src, srcLen, error, fromWide);
}

int ZENTMBCodePageAnd8(int toUTF8, void* converter, void* dst, int dstSize, const void* src, int srcLen,
                       int* error) {
  auto* const out = static_cast<char*>(dst);
  const auto* const text = static_cast<const char*>(src);
  const ByteEncoding codePage = CodePageOf(converter);
  return toUTF8 != 0 ? ConvertBytes(codePage, kUTF8, out, dstSize, text, srcLen, error)
                     : ConvertBytes(kUTF8, codePage, out, dstSize, text, srcLen, error);
}

int ZENTMBCodePageAnd16(int toUTF16, void* converter, void* dst, int dstSize, const void* src, int srcLen,
                        int* error) {
  const ByteEncoding codePage = CodePageOf(converter);
  return toUTF16 != 0 ? IntoBuffer<char16_t, char>(dst, dstSize, src, srcLen, error, OutOfEncoding(codePage))
                      : IntoBuffer<char, char16_t>(dst, dstSize, src, srcLen, error, IntoEncoding(codePage));
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
  return IntoBuffer<char, char16_t>(dst, dstSize, src, srcLen, error, IntoEncoding(GenericEncoding()));
}

int ZENTMBGenericto16(char16_t* dst, int dstSize, const char* src, int srcLen, int* error) {
  return IntoBuffer<char16_t, char>(dst, dstSize, src, srcLen, error, OutOfEncoding(GenericEncoding()));
}

int ZENTMB8toGeneric(char* dst, int dstSize, const char* src, int srcLen, int* error) {
  return ConvertBytes(kUTF8, GenericEncoding(), dst, dstSize, src, srcLen, error);
}

int ZENTMBGenericto8(char* dst, int dstSize, const char* src, int srcLen, int* error) {
  return ConvertBytes(GenericEncoding(), kUTF8, dst, dstSize, src, srcLen, error);
}

int ZENTMBGenerictoCodePage(void* converter, char* dst, int dstSize, const char* src, int srcLen,
                            int* error) {
  return ConvertBytes(GenericEncoding(), CodePageOf(converter), dst, dstSize, src, srcLen, error);
}

int ZENTMBCodePagetoGeneric(void* converter, char* dst, int dstSize, const char* src, int srcLen,
                            int* error) {
  return ConvertBytes(CodePageOf(converter), GenericEncoding(), dst, dstSize, src, srcLen, error);
}

}  // namespace KxXML_940
