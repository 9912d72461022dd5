// Lets the XML parser read from a standard input stream.

#ifndef VEYRA_XML_KXXINPUTSOURCE_H_
#define VEYRA_XML_KXXINPUTSOURCE_H_

#include <exception>
#include <istream>
#include <xercesc/sax/InputSource.hpp>

#include "veyra/Export.h"

namespace KxXML_940 {

// Its system id is "istream"; bytes pass to the parser as they are, which finds out the encoding by itself.
class VEYRA_API KxXInputSource : public xercesc::InputSource {
 public:
  // The stream is lent: it outlives the source and the streams made from it.
  explicit KxXInputSource(std::istream& in);
  ~KxXInputSource() override;

  // A new stream that reads on from where `in` stands; the caller (the parser) owns it.  It reads while the
  // source lives.
  xercesc::BinInputStream* makeStream() const override;

  // Throws what `in` threw first, if it did.  The parser never sees it, for it would leak the stream object:
  // what it sees is a document that ends there.
  void RethrowFailure() const;

 private:
  std::istream& fStream;
  mutable std::exception_ptr fFailure;
};

}  // namespace KxXML_940

#endif  // VEYRA_XML_KXXINPUTSOURCE_H_
