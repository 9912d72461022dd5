// Conversions between UTF-8, UTF-16 and code pages, and the process-wide default converter.
//
// Conversions return a status: 0 done, 3 a character could not be converted (it was substituted) or another
// conversion error occurred.  Threads: conversions may run in any number of threads; setting the default
// converter or the mode needs the library to itself.

#ifndef VEYRA_XML_MULTIBYTE_H_
#define VEYRA_XML_MULTIBYTE_H_

#include <unicode/ucnv.h>

#include <string>

#include "veyra/Export.h"

namespace KxXML_940 {

// Whether generic texts are UTF-8 (1, the start) or in the default code page (0).
VEYRA_API int qUTF8mode();
VEYRA_API void SetUTF8mode(int mode);

// Opens a converter (the caller closes it with ucnv_close); null when there is none of that name.  A null
// name means the encoding of the default converter, or, while there is none, that of the user's locale: UTF-8
// unless the locale names another one that is known.  A decimal number from 1 to 99999 is a code-page number.
// It substitutes "?" for what it cannot convert.
VEYRA_API UConverter* ZENTMBConverterNew_C(const char* name);
// Writes the converter name of a code-page number to `out` (room for UCNV_MAX_CONVERTER_NAME_LENGTH) and
// returns 1; 0 and the empty text when there is none.
VEYRA_API int ZENTMBCpNameFromNum_C(char* out, unsigned number);

// The default converter (lent), made on first use.
VEYRA_API UConverter* ZENTMBGetDefaultConverter();
// Installs another one, which must live until the process ends; the earlier one is not closed.
VEYRA_API void ZENTMBSetDefaultConverter(UConverter* converter);
// Counts the default converters installed so far, so that caches can tell when it changed.
VEYRA_API int ZENTMBDefaultConverterID();

VEYRA_API int ZENTMBU8ToU16(std::u16string& to, const std::string& from);
VEYRA_API int ZENTMBU16ToU8(std::string& to, const std::u16string& from);
// `converter` is a UConverter*; null means a private clone of the default one.
VEYRA_API int ZENTMBU8ToCodePage(void* converter, std::string& to, const std::string& from);
VEYRA_API int ZENTMBCodePageToU8(void* converter, std::string& to, const std::string& from);

}  // namespace KxXML_940

#endif  // VEYRA_XML_MULTIBYTE_H_
