// A document as the tool itself reads it: to show it, to adapt it, to say more about what the library
// refused.
//
// REQUIRES: the parser platform is up for the whole life of the object.  Threads: one.

#ifndef VEYRA_TOOLS_PARSEDDOCUMENT_H_
#define VEYRA_TOOLS_PARSEDDOCUMENT_H_

#include <memory>
#include <string>
#include <string_view>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "veyra/ByteSource.h"

namespace VeyraTool {

// Gives what the parser's implementation made back to it.
struct ReleaseDom {
  template <class Object>
  void operator()(Object* object) const {
    object->release();
  }
};

class ParsedDocument {
 public:
  enum class Extent {
    kWhole,
    kHeader,  // the dictionaries and the first model's own header; what follows is not even read
  };

  // Throws CommandFailure when the file cannot be read or unpacks beyond its limit.  A document that is not
  // well-formed is no failure: GetFault tells.
  ParsedDocument(const DocumentFile& file, Extent extent);
  // The text is lent for the time of the call.
  explicit ParsedDocument(std::string_view text);
  ~ParsedDocument();
  ParsedDocument(const ParsedDocument&) = delete;
  ParsedDocument& operator=(const ParsedDocument&) = delete;

  // "line 3, column 7: REASON"; empty when nothing is wrong with what was read.
  const std::string& GetFault() const { return fFault; }
  // Null when there is a fault.
  xercesc::DOMElement* GetRoot() const;
  // The document as UTF-8.  REQUIRES: it was read as a whole and has no fault.
  std::string Serialise() const;

 private:
  class HeaderParser;

  template <class Source>
  void Parse(const Source& source, Extent extent);

  std::unique_ptr<HeaderParser> fParser;
  std::string fFault;
  std::unique_ptr<xercesc::DOMDocument, ReleaseDom> fDocument;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_PARSEDDOCUMENT_H_
