// Texts of the XML parser (UTF-16) and of the library (UTF-8): conversion and comparison.
//
// These functions are the library's "local transcoding": it is UTF-8 whatever the process's locale is, and
// needs neither the parser platform nor a converter object.  Threads: free functions without state.

#ifndef VEYRA_XML_XMLTEXT_H_
#define VEYRA_XML_XMLTEXT_H_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <xercesc/util/XMLString.hpp>

#include "veyra/Export.h"

namespace KxXML_940 {

// Releases texts that the parser returns to its caller.
struct XmlRelease {
  void operator()(XMLCh* text) const noexcept { xercesc::XMLString::release(&text); }
  void operator()(char* text) const noexcept { xercesc::XMLString::release(&text); }
};
using XmlText = std::unique_ptr<XMLCh[], XmlRelease>;
using XmlBytes = std::unique_ptr<char[], XmlRelease>;

// The UTF-8 form; a lone surrogate becomes U+FFFD; empty for null.  One allocation at most.
VEYRA_API std::string ToUTF8(const XMLCh* text);
VEYRA_API std::string ToUTF8(std::u16string_view text);
// Replaces `out`, whose capacity is kept.
VEYRA_API void ToUTF8(std::u16string_view text, std::string& out);

// The UTF-16 form; each ill-formed sequence becomes U+FFFD.
VEYRA_API std::u16string ToUTF16(std::string_view text);

// The text up to its terminating null; empty for null.
VEYRA_API std::u16string_view View(const XMLCh* text);

// How much of the text stands before its first ill-formed unit or sequence.
VEYRA_API std::size_t WellFormedPrefix(std::u16string_view text);
VEYRA_API std::size_t WellFormedPrefix(std::string_view text);

VEYRA_API bool IsAscii(std::u16string_view text);
VEYRA_API bool IsAscii(std::string_view text);

// Exact comparison in place, nothing is allocated.  A null text equals only the empty name.
// REQUIRES: `name` is not null.  A name with a byte outside ASCII equals nothing.
VEYRA_API bool EqualsAscii(const XMLCh* text, const char* name);
// The same for any UTF-8 name; an ill-formed one equals nothing.
VEYRA_API bool EqualsUTF8(const XMLCh* text, std::string_view name);

}  // namespace KxXML_940

#endif  // VEYRA_XML_XMLTEXT_H_
