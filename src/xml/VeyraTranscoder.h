// Converts between the parser's UTF-16 and byte strings in a named encoding.
//
//   const VeyraTranscoder transcoder("windows-1252");
//   const std::string name = transcoder.transcodeTo(element->getTagName());
//
// Every text is converted for itself, from the initial state of the encoding to its end.
//
// One object is used by one thread at a time, and made while the parser platform is up.

#ifndef VEYRA_XML_VEYRATRANSCODER_H_
#define VEYRA_XML_VEYRATRANSCODER_H_

#include <unicode/ucnv.h>

#include <memory>
#include <string>
#include <xercesc/util/TransService.hpp>

#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API VeyraTranscoder {
 public:
  // An encoding that the parser does not know, or a parser platform that is down, gives a transcoder that
  // converts nothing.
  explicit VeyraTranscoder(const std::string& encoding);
  VeyraTranscoder(const VeyraTranscoder&) = delete;
  VeyraTranscoder& operator=(const VeyraTranscoder&) = delete;
  virtual ~VeyraTranscoder();

  // Whether the encoding is known.
  bool IsKnown() const { return fConverter != nullptr; }

  // The text in the encoding, up to the first character that it cannot represent; empty for null.  What the
  // encoding writes at the end of a text is part of a text that is converted whole.
  std::string transcodeTo(const char16_t* text) const;

  // A new null-terminated text, which the caller releases with delete[]: `text` from the encoding to UTF-16,
  // up to the first ill-formed sequence.  Null for null and when the encoding is not known.
  char16_t* ChangeChar2XML(const char* text) const;

 private:
  std::unique_ptr<xercesc::XMLTranscoder> fTranscoder;  // says that the parser knows the encoding
  struct Closer {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
  };
  std::unique_ptr<UConverter, Closer> fConverter;  // converts; it stops where it cannot
  bool fIsUTF8 = false;
  bool fContainsAscii = false;  // every ASCII character is its own byte, in both directions
};

}  // namespace KxVeyra_940

#endif  // VEYRA_XML_VEYRATRANSCODER_H_
