#include "xml/ConvertUTF.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace KxXML_940 {

namespace {

using Byte = unsigned char;

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastCharacter = 0x10FFFF;

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
// character that is fit to be written, and not at all otherwise; Write tells whether there was room.  Get and
// Put move single units, of which IsCharacter tells whether they are whole characters.

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

template <class From, class To, class FromUnit, class ToUnit>
ConversionResult Convert(const FromUnit** sourceStart, const FromUnit* sourceEnd, ToUnit** targetStart,
                         ToUnit* targetEnd, ConversionFlags flags) {
  auto* source = reinterpret_cast<const Byte*>(*sourceStart);
  auto* target = reinterpret_cast<Byte*>(*targetStart);
  const ConversionResult result =
      ConvertBytes<From, To>(source, reinterpret_cast<const Byte*>(sourceEnd), target,
                             reinterpret_cast<const Byte*>(targetEnd), flags);
  *sourceStart = reinterpret_cast<const FromUnit*>(source);
  *targetStart = reinterpret_cast<ToUnit*>(target);
  return result;
}

using NativeUTF16 = EncodingUTF16<false>;
using SwappedUTF16 = EncodingUTF16<true>;

}  // namespace

ConversionResult ConvertUTF8toUTF16(const UTF8** sourceStart, const UTF8* sourceEnd, UTF16** targetStart,
                                    UTF16* targetEnd, ConversionFlags flags) {
  return Convert<EncodingUTF8, NativeUTF16>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF8toUTF32(const UTF8** sourceStart, const UTF8* sourceEnd, UTF32** targetStart,
                                    UTF32* targetEnd, ConversionFlags flags) {
  return Convert<EncodingUTF8, EncodingUTF32>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF16toUTF8(const UTF16** sourceStart, const UTF16* sourceEnd, UTF8** targetStart,
                                    UTF8* targetEnd, ConversionFlags flags) {
  return Convert<NativeUTF16, EncodingUTF8>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF16toUTF32(const UTF16** sourceStart, const UTF16* sourceEnd, UTF32** targetStart,
                                     UTF32* targetEnd, ConversionFlags flags) {
  return Convert<NativeUTF16, EncodingUTF32>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF32toUTF8(const UTF32** sourceStart, const UTF32* sourceEnd, UTF8** targetStart,
                                    UTF8* targetEnd, ConversionFlags flags) {
  return Convert<EncodingUTF32, EncodingUTF8>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF32toUTF16(const UTF32** sourceStart, const UTF32* sourceEnd, UTF16** targetStart,
                                     UTF16* targetEnd, ConversionFlags flags) {
  return Convert<EncodingUTF32, NativeUTF16>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF8toUTF16Rev(const UTF8** sourceStart, const UTF8* sourceEnd, UTF16** targetStart,
                                       UTF16* targetEnd, ConversionFlags flags) {
  return Convert<EncodingUTF8, SwappedUTF16>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF16RevtoUTF8(const UTF16** sourceStart, const UTF16* sourceEnd, UTF8** targetStart,
                                       UTF8* targetEnd, ConversionFlags flags) {
  return Convert<SwappedUTF16, EncodingUTF8>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult LocalUTF8toUTF16(const UTF8** sourceStart, const UTF8* sourceEnd,
                                  unsigned char** targetStart, unsigned char* targetEnd,
                                  ConversionFlags flags, bool swapBytes) {
  return swapBytes
             ? Convert<EncodingUTF8, SwappedUTF16>(sourceStart, sourceEnd, targetStart, targetEnd, flags)
             : Convert<EncodingUTF8, NativeUTF16>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult LocalUTF16toUTF8(const unsigned char** sourceStart, const unsigned char* sourceEnd,
                                  UTF8** targetStart, UTF8* targetEnd, ConversionFlags flags,
                                  bool swapBytes) {
  return swapBytes
             ? Convert<SwappedUTF16, EncodingUTF8>(sourceStart, sourceEnd, targetStart, targetEnd, flags)
             : Convert<NativeUTF16, EncodingUTF8>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

bool isLegalUTF8(const UTF8* source, int length) {
  const UTF8* const end = source + std::max(length, 0);
  char32_t code = 0;
  return source != end && EncodingUTF8::Read(source, end, strictConversion, code) == conversionOK &&
         source == end;
}

bool isLegalUTF8Sequence(const UTF8* source, const UTF8* sourceEnd) {
  char32_t code = 0;
  return source != sourceEnd && EncodingUTF8::Read(source, sourceEnd, strictConversion, code) == conversionOK;
}

bool isLegalUTF8Substring(const UTF8* source, const UTF8* sourceEnd) {
  while (isLegalUTF8Sequence(source, sourceEnd)) source += EncodingUTF8::LengthOf(*source);
  return source == sourceEnd;
}

}  // namespace KxXML_940
