// Lets the XML parser read from a standard input stream.

#ifndef VEYRA_XML_KXXINPUTSOURCE_H_
#define VEYRA_XML_KXXINPUTSOURCE_H_

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

  // A new stream that reads on from where `in` stands; the caller (the parser) owns it.
  xercesc::BinInputStream* makeStream() const override;

 private:
  std::istream& fStream;
};

}  // namespace KxXML_940

#endif  // VEYRA_XML_KXXINPUTSOURCE_H_
