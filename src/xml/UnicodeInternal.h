// The Unicode encodings, read and written a character at a time: the one engine behind every conversion
// between them, every comparison and every walk over a text.

#ifndef VEYRA_XML_UNICODEINTERNAL_H_
#define VEYRA_XML_UNICODEINTERNAL_H_

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "xml/ConvertUTF.h"

namespace KxXML_940 {

using Byte = unsigned char;

inline constexpr char32_t kReplacement = 0xFFFD;
inline constexpr char32_t kLastCharacter = 0x10FFFF;

constexpr bool IsSurrogate(char32_t code) { return (code & 0xFFFFF800) == 0xD800; }
constexpr bool IsHighSurrogate(char32_t code) { return (code & 0xFFFFFC00) == 0xD800; }
constexpr bool IsLowSurrogate(char32_t code) { return (code & 0xFFFFFC00) == 0xDC00; }

// Units at any address: the compiler makes one load or store of a copy.
template <class Unit>
Unit Load(const Byte* at) {
  Unit unit;
  std::memcpy(&unit, at, sizeof unit);
  return unit;
}

template <class Unit>
void Store(Byte* at, Unit unit) {
  std::memcpy(at, &unit, sizeof unit);
}

// Each encoding reads and writes one character.  Read, which needs one unit at least, moves behind a
// character that is fit to be written, and not at all otherwise; IllFormedLength is how much stands there
// then that is one mistake.  Write tells whether there was room.  Get and Put move single units, of which
// IsCharacter tells whether they are whole characters.

struct EncodingUTF8 {
  static constexpr std::ptrdiff_t kUnit = 1;

  static bool IsCharacter(char32_t unit) { return unit < 0x80; }
  static char32_t Get(const Byte* at) { return *at; }
  static void Put(Byte* at, char32_t unit) { *at = static_cast<Byte>(unit); }

  // What the lead byte announces, including the forms of five and six bytes that Unicode gave up.
  static std::ptrdiff_t LengthOf(Byte lead) {
    if (lead < 0xC0) return 1;
    if (lead < 0xE0) return 2;
    if (lead < 0xF0) return 3;
    if (lead < 0xF8) return 4;
    return lead < 0xFC ? 5 : 6;
  }

  // In one comparison for all of them.
  template <class... Bytes>
  static bool AreTrails(Bytes... bytes) {
    return ((bytes ^ 0x80) | ...) < 0x40;
  }
  static char32_t Bits(Byte trail) { return trail & 0x3F; }

  static ConversionResult Read(const Byte*& at, const Byte* end, ConversionFlags, char32_t& code) {
    const Byte lead = *at;
    if (lead < 0x80) {
      code = lead;
      ++at;
      return conversionOK;
    }
    const std::ptrdiff_t length = end - at;
    if (lead >= 0xC2 && lead < 0xE0) {
      if (length >= 2 && AreTrails(at[1])) {
        code = static_cast<char32_t>(lead & 0x1F) << 6 | Bits(at[1]);
        at += 2;
        return conversionOK;
      }
    } else if (lead >= 0xE0 && lead < 0xF0) {
      if (length >= 3 && AreTrails(at[1], at[2])) {
        code = static_cast<char32_t>(lead & 0xF) << 12 | Bits(at[1]) << 6 | Bits(at[2]);
        if (code < 0x800 || IsSurrogate(code)) return sourceIllegal;
        at += 3;
        return conversionOK;
      }
    } else if (lead >= 0xF0 && lead < 0xF8) {
      if (length >= 4 && AreTrails(at[1], at[2], at[3])) {
        code = static_cast<char32_t>(lead & 0x7) << 18 | Bits(at[1]) << 12 | Bits(at[2]) << 6 | Bits(at[3]);
        if (code < 0x10000 || code > kLastCharacter) return sourceIllegal;
        at += 4;
        return conversionOK;
      }
    }
    return length < LengthOf(lead) ? sourceExhausted : sourceIllegal;
  }

  // The longest head of a well-formed sequence, one byte at least (the Unicode Standard, 3.9, U+FFFD
  // substitution of maximal subparts).
  static std::ptrdiff_t IllFormedLength(const Byte* at, const Byte* end) {
    const Byte lead = *at;
    if (lead < 0xE0 || lead > 0xF4 || end - at < 2 || !IsSecond(lead, at[1])) return 1;
    return lead >= 0xF0 && end - at >= 3 && AreTrails(at[2]) ? 3 : 2;
  }

  static bool Write(Byte*& at, const Byte* end, char32_t code) {
    if (code < 0x80) {
      if (end - at < 1) return false;
      *at++ = static_cast<Byte>(code);
    } else if (code < 0x800) {
      if (end - at < 2) return false;
      *at++ = static_cast<Byte>(0xC0 | code >> 6);
      *at++ = Trail(code);
    } else if (code < 0x10000) {
      if (end - at < 3) return false;
      *at++ = static_cast<Byte>(0xE0 | code >> 12);
      *at++ = Trail(code >> 6);
      *at++ = Trail(code);
    } else {
      if (end - at < 4) return false;
      *at++ = static_cast<Byte>(0xF0 | code >> 18);
      *at++ = Trail(code >> 12);
      *at++ = Trail(code >> 6);
      *at++ = Trail(code);
    }
    return true;
  }

 private:
  // Neither an overlong form, nor a surrogate, nor beyond the last character.
  static bool IsSecond(Byte lead, Byte second) {
    if (!AreTrails(second)) return false;
    if (lead == 0xE0) return second >= 0xA0;
    if (lead == 0xED) return second < 0xA0;
    if (lead == 0xF0) return second >= 0x90;
    return lead != 0xF4 || second < 0x90;
  }
  static Byte Trail(char32_t bits) { return static_cast<Byte>(0x80 | (bits & 0x3F)); }
};

template <bool kSwap>
struct EncodingUTF16 {
  static constexpr std::ptrdiff_t kUnit = 2;

  static bool IsCharacter(char32_t unit) { return unit < 0x10000 && !IsSurrogate(unit); }
  static char16_t Swap(char16_t unit) { return kSwap ? static_cast<char16_t>(unit << 8 | unit >> 8) : unit; }
  static char32_t Get(const Byte* at) { return Swap(Load<char16_t>(at)); }
  static void Put(Byte* at, char32_t unit) { Store(at, Swap(static_cast<char16_t>(unit))); }

  static ConversionResult Read(const Byte*& at, const Byte* end, ConversionFlags flags, char32_t& code) {
    code = Get(at);
    if (!IsSurrogate(code)) {
      at += kUnit;
      return conversionOK;
    }
    if (IsHighSurrogate(code)) {
      if (end - at < 2 * kUnit) return sourceExhausted;
      if (const char32_t low = Get(at + kUnit); IsLowSurrogate(low)) {
        code = 0x10000 + ((code & 0x3FF) << 10 | (low & 0x3FF));
        at += 2 * kUnit;
        return conversionOK;
      }
    }
    if (flags == strictConversion) return sourceIllegal;
    at += kUnit;
    return conversionOK;
  }

  static std::ptrdiff_t IllFormedLength(const Byte*, const Byte*) { return kUnit; }

  static bool Write(Byte*& at, const Byte* end, char32_t code) {
    if (code < 0x10000) {
      if (end - at < kUnit) return false;
      Put(at, IsSurrogate(code) ? kReplacement : code);
      at += kUnit;
      return true;
    }
    if (end - at < 2 * kUnit) return false;
    Put(at, 0xD7C0 + (code >> 10));
    Put(at + kUnit, 0xDC00 | (code & 0x3FF));
    at += 2 * kUnit;
    return true;
  }
};

struct EncodingUTF32 {
  static constexpr std::ptrdiff_t kUnit = 4;

  static bool IsCharacter(char32_t unit) { return unit <= kLastCharacter && !IsSurrogate(unit); }
  static char32_t Get(const Byte* at) { return Load<char32_t>(at); }
  static void Put(Byte* at, char32_t unit) { Store(at, unit); }

  static ConversionResult Read(const Byte*& at, const Byte*, ConversionFlags flags, char32_t& code) {
    code = Get(at);
    if (code > kLastCharacter || IsSurrogate(code)) {
      if (flags == strictConversion) return sourceIllegal;
      if (code > kLastCharacter) code = kReplacement;
    }
    at += kUnit;
    return conversionOK;
  }

  static std::ptrdiff_t IllFormedLength(const Byte*, const Byte*) { return kUnit; }

  static bool Write(Byte*& at, const Byte* end, char32_t code) {
    if (end - at < kUnit) return false;
    Put(at, code);
    at += kUnit;
    return true;
  }
};

// Whether a unit of one encoding is a character, and the same unit of the other.
template <class From, class To>
bool IsSame(char32_t unit) {
  return From::IsCharacter(unit) && To::IsCharacter(unit);
}

// Moves runs of such units in blocks and returns their number.
template <class From, class To>
std::ptrdiff_t MoveRun(const Byte* source, const Byte* sourceEnd, Byte* target, const Byte* targetEnd) {
  constexpr std::ptrdiff_t kBlock = 16;
  const std::ptrdiff_t most =
      std::min((sourceEnd - source) / From::kUnit, (targetEnd - target) / To::kUnit) / kBlock * kBlock;
  for (std::ptrdiff_t count = 0; count < most; count += kBlock) {
    unsigned others = 0;
    for (std::ptrdiff_t i = count; i < count + kBlock; ++i)
      others |= !IsSame<From, To>(From::Get(source + i * From::kUnit));
    if (others != 0) return count;
    for (std::ptrdiff_t i = count; i < count + kBlock; ++i)
      To::Put(target + i * To::kUnit, From::Get(source + i * From::kUnit));
  }
  return most;
}

// One ASCII character alone, a blank between words, is no run.
template <class From, class To>
bool IsRun(char32_t code, const Byte* source, const Byte* sourceEnd) {
  return IsSame<From, To>(code) && sourceEnd - source >= From::kUnit && IsSame<From, To>(From::Get(source));
}

template <class From, class To>
ConversionResult ConvertBytes(const Byte*& sourceStart, const Byte* sourceEnd, Byte*& targetStart,
                              const Byte* targetEnd, ConversionFlags flags) {
  const Byte* source = sourceStart;  // in registers while the loop runs
  Byte* target = targetStart;
  ConversionResult result = conversionOK;
  while (sourceEnd - source >= From::kUnit) {
    const Byte* next = source;
    char32_t code = 0;
    result = From::Read(next, sourceEnd, flags, code);
    if (result != conversionOK) break;
    if (!To::Write(target, targetEnd, code)) {
      result = targetExhausted;
      break;
    }
    source = next;
    if (IsRun<From, To>(code, source, sourceEnd)) {
      const std::ptrdiff_t moved = MoveRun<From, To>(source, sourceEnd, target, targetEnd);
      source += moved * From::kUnit;
      target += moved * To::kUnit;
    }
  }
  if (result == conversionOK && source != sourceEnd) result = sourceExhausted;  // a cut unit
  sourceStart = source;
  targetStart = target;
  return result;
}

// What became of a text that was converted whole, each mistake replaced by U+FFFD.
enum class WholeText { kAsItIs, kWithReplacements, kInPart };

// Converts up to the end of the source, or up to the first character without room.
template <class From, class To>
WholeText ConvertReplacing(const Byte* source, const Byte* sourceEnd, Byte*& target, const Byte* targetEnd) {
  WholeText done = WholeText::kAsItIs;
  for (;;) {
    const ConversionResult result =
        ConvertBytes<From, To>(source, sourceEnd, target, targetEnd, strictConversion);
    if (result == conversionOK) return done;
    if (result == targetExhausted || !To::Write(target, targetEnd, kReplacement)) return WholeText::kInPart;
    source += From::IllFormedLength(source, sourceEnd);
    done = WholeText::kWithReplacements;
  }
}

// Where the first mistake stands, or the end.
template <class Encoding>
const Byte* WellFormedEnd(const Byte* at, const Byte* end) {
  char32_t code = 0;
  while (at != end && Encoding::Read(at, end, strictConversion, code) == conversionOK) {
  }
  return at;
}

using NativeUTF16 = EncodingUTF16<false>;
using SwappedUTF16 = EncodingUTF16<true>;

}  // namespace KxXML_940

#endif  // VEYRA_XML_UNICODEINTERNAL_H_
