// The built-in functions of texts.  Each replaces `out` by its result, whose capacity is kept, and answers
// the declared length of the result.  Texts are UTF-8.
//
// Threads: free functions without state.  Nothing throws.

#ifndef VEYRA_TRANSFORM_TEXTFUNCTIONS_H_
#define VEYRA_TRANSFORM_TEXTFUNCTIONS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "veyra/Export.h"

namespace KxVeyra_940 {

// Without the blanks and tabs at its start; the declared length shrinks by as much.
VEYRA_API std::int64_t TrimLeading(std::string_view text, std::int64_t length, std::string& out);
// Without the blanks at its end.
VEYRA_API std::int64_t TrimTrailing(std::string_view text, std::string& out);
// Byte by byte, by the C library's mapping.
VEYRA_API std::int64_t LowerCase(std::string_view text, std::int64_t length, std::string& out);
VEYRA_API std::int64_t UpperCase(std::string_view text, std::int64_t length, std::string& out);
// The bytes from a position, counted from 1, to the end; empty for a position before the first byte, for the
// last one and beyond.
VEYRA_API std::int64_t TextFrom(std::string_view text, double start, std::string& out);
// `count` bytes at most from a position, counted from 1.
VEYRA_API std::int64_t BytesFrom(std::string_view text, int start, int count, std::string& out);
// The same counted in units of UTF-16.  A negative count gives the empty text.
VEYRA_API std::int64_t UnitsFrom(std::string_view text, double start, double count, std::string& out);
// Appends the text cut or filled with blanks to its declared length.
VEYRA_API void AppendFitted(std::string_view text, std::int64_t length, std::string& out);

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_TEXTFUNCTIONS_H_
