// Conversions between UTF-8, UTF-16 and UTF-32, in pieces if need be, with an exact account of where they
// stopped.
//
//   const UTF8* source = bytes;
//   UTF16* target = units;
//   const ConversionResult result = ConvertUTF8toUTF16(&source, bytes + n, &target, units + room,
//   strictConversion);
//
// Both pointers move behind what was converted: only whole characters are read and written, so after
// targetExhausted, or sourceExhausted and more input, the next call goes on from there.
// Threads: free functions without state.

#ifndef VEYRA_XML_CONVERTUTF_H_
#define VEYRA_XML_CONVERTUTF_H_

#include "veyra/Export.h"

namespace KxXML_940 {

using UTF8 = unsigned char;
using UTF16 = char16_t;
using UTF32 = char32_t;

enum ConversionResult {
  conversionOK = 0,
  sourceExhausted = 1,  // the source ends within a character
  targetExhausted = 2,  // the next character does not fit
  sourceIllegal = 3,    // the source stands at an ill-formed sequence
};

// Lenient conversion lets lone surrogates of UTF-16 and UTF-32 pass (as three bytes in UTF-8, as U+FFFD from
// UTF-32 to UTF-16) and replaces numbers above U+10FFFF by U+FFFD.  Ill-formed UTF-8 is always refused.
enum ConversionFlags {
  strictConversion = 0,
  lenientConversion = 1,
};

VEYRA_API ConversionResult ConvertUTF8toUTF16(const UTF8** sourceStart, const UTF8* sourceEnd,
                                              UTF16** targetStart, UTF16* targetEnd, ConversionFlags flags);
VEYRA_API ConversionResult ConvertUTF8toUTF32(const UTF8** sourceStart, const UTF8* sourceEnd,
                                              UTF32** targetStart, UTF32* targetEnd, ConversionFlags flags);
VEYRA_API ConversionResult ConvertUTF16toUTF8(const UTF16** sourceStart, const UTF16* sourceEnd,
                                              UTF8** targetStart, UTF8* targetEnd, ConversionFlags flags);
VEYRA_API ConversionResult ConvertUTF16toUTF32(const UTF16** sourceStart, const UTF16* sourceEnd,
                                               UTF32** targetStart, UTF32* targetEnd, ConversionFlags flags);
VEYRA_API ConversionResult ConvertUTF32toUTF8(const UTF32** sourceStart, const UTF32* sourceEnd,
                                              UTF8** targetStart, UTF8* targetEnd, ConversionFlags flags);
VEYRA_API ConversionResult ConvertUTF32toUTF16(const UTF32** sourceStart, const UTF32* sourceEnd,
                                               UTF16** targetStart, UTF16* targetEnd, ConversionFlags flags);

// UTF-16 whose units are in the byte order that is not this machine's.
VEYRA_API ConversionResult ConvertUTF8toUTF16Rev(const UTF8** sourceStart, const UTF8* sourceEnd,
                                                 UTF16** targetStart, UTF16* targetEnd,
                                                 ConversionFlags flags);
VEYRA_API ConversionResult ConvertUTF16RevtoUTF8(const UTF16** sourceStart, const UTF16* sourceEnd,
                                                 UTF8** targetStart, UTF8* targetEnd, ConversionFlags flags);

// The same for 16-bit units at any address, in either byte order.  An odd byte at the end of the source is a
// cut unit (sourceExhausted), one at the end of the target is never written.
VEYRA_API ConversionResult LocalUTF8toUTF16(const UTF8** sourceStart, const UTF8* sourceEnd,
                                            unsigned char** targetStart, unsigned char* targetEnd,
                                            ConversionFlags flags, bool swapBytes);
VEYRA_API ConversionResult LocalUTF16toUTF8(const unsigned char** sourceStart, const unsigned char* sourceEnd,
                                            UTF8** targetStart, UTF8* targetEnd, ConversionFlags flags,
                                            bool swapBytes);

// Whether the `length` bytes are exactly one well-formed character.
VEYRA_API bool isLegalUTF8(const UTF8* source, int length);
// Whether a well-formed character begins at `source` and ends before or at `sourceEnd`.
VEYRA_API bool isLegalUTF8Sequence(const UTF8* source, const UTF8* sourceEnd);
// Whether all of it is well-formed characters; the empty text is.
VEYRA_API bool isLegalUTF8Substring(const UTF8* source, const UTF8* sourceEnd);

}  // namespace KxXML_940

#endif  // VEYRA_XML_CONVERTUTF_H_
