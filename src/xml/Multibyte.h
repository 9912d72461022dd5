// Texts in UTF-8, UTF-16, UTF-32 and code pages: converters, conversions, and functions on whole characters.
//
//   std::u16string name;
//   if (ZENTMBCodePageToU16(nullptr, name, bytes) != 0) ...  // something was substituted
//
// Names that end in _8 take UTF-8 and those in _C take the code page; _A is one of the two by qUTF8mode(),
// and so is what a generic text is encoded in.  Nothing here throws except the conversions into strings, when
// there is no memory.  Threads: everything may run in any number of threads, each with converters of its own;
// setting the default converter or the mode needs the library to itself.

#ifndef VEYRA_XML_MULTIBYTE_H_
#define VEYRA_XML_MULTIBYTE_H_

#include <unicode/ucnv.h>

#include <cstddef>
#include <string>

#include "veyra/Export.h"

struct UCollator;

namespace KxXML_940 {

// Whether generic texts are UTF-8 (1, the start) or in the default code page (0).
VEYRA_API int qUTF8mode();
VEYRA_API void SetUTF8mode(int mode);

// --- Converters

// Opens a converter (the caller closes it with ucnv_close); null when there is none of that name.  A null
// name means the encoding of the default converter, or, while there is none, that of the user's locale: UTF-8
// unless the locale names another one that is known.  A decimal number from 1 to 99999 is a code-page number.
// It has the two callbacks below, and substitutes "?" where its encoding can (not UTF-16 and UTF-32).
VEYRA_API UConverter* ZENTMBConverterNew_C(const char* name);
// The same for a name in UTF-8, and for a generic one.
VEYRA_API UConverter* ZENTMBConverterNew_8(const char* name);
VEYRA_API UConverter* ZENTMBConverterNew_A(const char* name);
// Writes the converter name of a code-page number to `out` (room for UCNV_MAX_CONVERTER_NAME_LENGTH) and
// returns 1; 0 and the empty text when there is none.
VEYRA_API int ZENTMBCpNameFromNum_C(char* out, unsigned number);

// The default converter (lent), made on first use.
VEYRA_API UConverter* ZENTMBGetDefaultConverter();
// Installs another one, which must live until the process ends; the earlier one is not closed.
VEYRA_API void ZENTMBSetDefaultConverter(UConverter* converter);
// Counts the default converters installed so far, so that caches can tell when it changed.
VEYRA_API int ZENTMBDefaultConverterID();
// Accepted, without effect: texts are compared by code points.
VEYRA_API void ZENTMBSetDefaultCollator(UCollator* collator);

// Substitute as ICU's own callbacks do, and leave the warning -100 (unassigned in the target) or -101
// (ill-formed) as the status.  To Unicode the substitute is always "?".
VEYRA_API void ZENTMB_TO_U_CALLBACK_SUBSTITUTE(const void* context, UConverterToUnicodeArgs* args,
                                               const char* bytes, std::int32_t length,
                                               UConverterCallbackReason reason, UErrorCode* status);
VEYRA_API void ZENTMB_FROM_U_CALLBACK_SUBSTITUTE(const void* context, UConverterFromUnicodeArgs* args,
                                                 const char16_t* units, std::int32_t length,
                                                 UChar32 codePoint, UConverterCallbackReason reason,
                                                 UErrorCode* status);

// --- Conversions into buffers
//
// They return the number of units written.  `*error` (unless null) becomes 0 for success, 1 when the output
// was cut, 3 when a character could not be converted (it was substituted: "?", or U+FFFD between the Unicode
// encodings) or anything else failed.  Sizes are in units of the buffer.
//
// A negative `srcLen` means a null-terminated source: one unit of the destination is kept for the null that
// ends the output.  An output that does not fit is cut behind a whole character, and spaces, which do not
// count, fill the room.  Behind an output that fits, from a source of stated length, stands one space, if
// there is room for it; nothing else is touched.
//
// `converter` is a UConverter*, which begins anew; null means a private clone of the default one.

VEYRA_API int ZENTMB8and16(int toUTF16, void* dst, int dstSize, const void* src, int srcLen, int* error);
VEYRA_API int ZENTMB8and32(int toUTF32, void* dst, int dstSize, const void* src, int srcLen, int* error);
VEYRA_API int ZENTMBCodePageAnd8(int toUTF8, void* converter, void* dst, int dstSize, const void* src,
                                 int srcLen, int* error);
VEYRA_API int ZENTMBCodePageAnd16(int toUTF16, void* converter, void* dst, int dstSize, const void* src,
                                  int srcLen, int* error);

VEYRA_API int ZENTMB16to8(char* dst, int dstSize, const char16_t* src, int srcLen, int* error);
VEYRA_API int ZENTMB8to16(char16_t* dst, int dstSize, const char* src, int srcLen, int* error);
VEYRA_API int ZENTMB16toCodePage(void* converter, char* dst, int dstSize, const char16_t* src, int srcLen,
                                 int* error);
VEYRA_API int ZENTMBCodePageto16(void* converter, char16_t* dst, int dstSize, const char* src, int srcLen,
                                 int* error);
VEYRA_API int ZENTMB8toCodePage(void* converter, char* dst, int dstSize, const char* src, int srcLen,
                                int* error);
VEYRA_API int ZENTMBCodePageto8(void* converter, char* dst, int dstSize, const char* src, int srcLen,
                                int* error);

VEYRA_API int ZENTMB16toGeneric(char* dst, int dstSize, const char16_t* src, int srcLen, int* error);
VEYRA_API int ZENTMBGenericto16(char16_t* dst, int dstSize, const char* src, int srcLen, int* error);
VEYRA_API int ZENTMB8toGeneric(char* dst, int dstSize, const char* src, int srcLen, int* error);
VEYRA_API int ZENTMBGenericto8(char* dst, int dstSize, const char* src, int srcLen, int* error);
VEYRA_API int ZENTMBGenerictoCodePage(void* converter, char* dst, int dstSize, const char* src, int srcLen,
                                      int* error);
VEYRA_API int ZENTMBCodePagetoGeneric(void* converter, char* dst, int dstSize, const char* src, int srcLen,
                                      int* error);

// --- Conversions into strings
//
// They return the status, 0 or 3 as above.  Source and result may be the same string.

VEYRA_API int ZENTMBU8ToU16(std::u16string& to, const std::string& from);
VEYRA_API int ZENTMBU16ToU8(std::string& to, const std::u16string& from);
VEYRA_API int ZENTMBCodePageToU16(void* converter, std::u16string& to, const std::string& from);
VEYRA_API int ZENTMBU16ToCodePage(void* converter, std::string& to, const std::u16string& from);
VEYRA_API int ZENTMBCodePageToU8(void* converter, std::string& to, const std::string& from);
VEYRA_API int ZENTMBU8ToCodePage(void* converter, std::string& to, const std::string& from);

VEYRA_API int ZENTMBGenericToU16(std::u16string& to, const std::string& from);
VEYRA_API int ZENTMBU16ToGeneric(std::string& to, const std::u16string& from);
VEYRA_API int ZENTMBGenericToU8(std::string& to, const std::string& from);
VEYRA_API int ZENTMBU8ToGeneric(std::string& to, const std::string& from);
// Without a converter the code page is the default one, and so a generic text in it passes unchanged.
VEYRA_API int ZENTMBCodePageToGeneric(void* converter, std::string& to, const std::string& from);
VEYRA_API int ZENTMBCodePageToGeneric(std::string& to, const std::string& from);
VEYRA_API int ZENTMBGenericToCodePage(void* converter, std::string& to, const std::string& from);
VEYRA_API int ZENTMBGenericToCodePage(std::string& to, const std::string& from);

// New null-terminated texts, which the caller releases with delete[]; null for null and when there is no
// memory.
VEYRA_API char16_t* ZENTMBTranscodeU8(const char* text);
VEYRA_API char* ZENTMBTranscodeU8(const char16_t* text);
VEYRA_API char16_t* ZENTMBTranscodeCodePage(const char* text);
VEYRA_API char* ZENTMBTranscodeCodePage(const char16_t* text);
VEYRA_API char16_t* ZENTMBTranscodeGeneric(const char* text);
VEYRA_API char* ZENTMBTranscodeGeneric(const char16_t* text);

// The number of units before the null; 0 for a null pointer.
VEYRA_API std::size_t strlen16(const char16_t* text);

// `local`, when `unitSize` times `count` bytes fit into its `localBytes`, else a block of malloc, which is
// null when there is no memory.
VEYRA_API void* ZENTMBTempGet(void* local, std::size_t localBytes, std::size_t unitSize, std::size_t count);
// Releases what ZENTMBTempGet returned for `local`.
VEYRA_API void ZENTMBTempFree(void* local, void* block);

// --- Characters
//
// Texts are null-terminated.  The lengths of code-page characters are those of the process's locale, which
// the first use sets up (EnableLocale in xml/SystemLocale.h); code points are those of the default converter.
// A host sees to it that both are of one code page.

#define VEYRA_DECLARE_FLAVOURS(result, name, ...) \
  VEYRA_API result name##_8(__VA_ARGS__);         \
  VEYRA_API result name##_C(__VA_ARGS__);         \
  VEYRA_API result name##_A(__VA_ARGS__)

// The bytes of the character at `text`, by its lead byte, or fewer when a null comes first; at least 1.  In
// the code page 2 (1 before a null) for an invalid or incomplete character.
VEYRA_DECLARE_FLAVOURS(int, mbclen, const char* text);

// The bytes of the character at `text`, of which no more than `n` bytes are read: 0 for null, for n < 1 and
// at the null.  For an ill-formed or cut sequence -1 in UTF-8, and mbclen bounded by `n` in the code page.
VEYRA_DECLARE_FLAVOURS(int, mblen, const char* text, int n);

// Copies at most `n` bytes without cutting a character, and fills the rest of the `n` bytes with nulls.
// Returns `dst`.
VEYRA_DECLARE_FLAVOURS(char*, strncpy, char* dst, const char* src, int n);

// Whether the texts are equal but for the case of their letters; see ZENTMBBinaryCompare_8.
VEYRA_DECLARE_FLAVOURS(bool, qstricmp, const char* a, int alen, const char* b, int blen, int* error);

// Compares at most `n` bytes of each as ZENTMBBinaryCompare_8 does, ignoring case: -1, 0 or 1.
VEYRA_DECLARE_FLAVOURS(int, strnicmp, const char* a, const char* b, int n);

// The first character that is `code`, or, with `fromEnd`, the last; null when there is none.  The code 0
// finds the terminating null.  Never finds a byte that is part of another character.
VEYRA_DECLARE_FLAVOURS(const char*, SearchChar, const char* text, char32_t code, int fromEnd);
VEYRA_DECLARE_FLAVOURS(const char*, strchr, const char* text, char32_t code);
VEYRA_DECLARE_FLAVOURS(const char*, strrchr, const char* text, char32_t code);

// The number of bytes before the first character that occurs in `set`.
VEYRA_DECLARE_FLAVOURS(std::size_t, strcspn, const char* text, const char* set);

// The next character; the terminating null stays where it is.
VEYRA_DECLARE_FLAVOURS(const char*, strinc, const char* text);

// The character before `current`, which is in the text that begins at `start`; `start` itself when there is
// none.  Within a character, its beginning.
VEYRA_DECLARE_FLAVOURS(const char*, AnsiPrev, const char* start, const char* current);
VEYRA_DECLARE_FLAVOURS(int, PreviousIndex, const char* text, int index);

#undef VEYRA_DECLARE_FLAVOURS

// Whether a code-page character that begins with this byte has more bytes.
VEYRA_API bool IsLeadByte_C(unsigned char byte);

// Compares two texts by their code points, unless `caseSensitive` in lower case: -1, 0 or 1.  A negative
// length means null-terminated; a null within the length ends a text too.  The text that ends first is the
// smaller.  An ill-formed byte counts as itself and makes `*error` (unless null) 3, which else becomes 0.
VEYRA_API int ZENTMBBinaryCompare_8(int caseSensitive, const char* a, int alen, const char* b, int blen,
                                    int* error);
VEYRA_API int ZENTMBBinaryCompare_C(int caseSensitive, void* converter, const char* a, int alen,
                                    const char* b, int blen, int* error);

// The number of leading bytes that are complete valid characters, up to a null.  A negative `n` means
// null-terminated.
VEYRA_API int ZENTMBValidCount_C(void* converter, const char* text, int n);

// The code point of the character at the head of `n` bytes (negative: null-terminated), and its length in
// `*length` (unless null).  An ill-formed byte gives -1 and length 1, no text -1 and length 0.
VEYRA_API UChar32 ZENTMBU32Get_C(void* converter, const char* text, int n, int* length);

// `n`, less the bytes of a last character that is cut there.
VEYRA_API int ZENTMBCheckFinalChar_8(const char* text, int n);

// Copies the text, at most `n` bytes of it without cutting a character, and no null.  Returns the number of
// bytes.
VEYRA_API int ZENTMBLimitedCopy_8(char* dst, const char* src, int n);

}  // namespace KxXML_940

#endif  // VEYRA_XML_MULTIBYTE_H_
