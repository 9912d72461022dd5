#include "xml/ConvertUTF.h"

#include <algorithm>

#include "xml/UnicodeInternal.h"

namespace KxXML_940 {

namespace {

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
