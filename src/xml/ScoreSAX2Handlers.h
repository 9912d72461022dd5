// The handler of the pre-scan: stops the parse, by throwing a HandlerState, as soon as the answer is known.

#ifndef VEYRA_XML_SCORESAX2HANDLERS_H_
#define VEYRA_XML_SCORESAX2HANDLERS_H_

#include <string>
#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreSAX2Handlers : public xercesc::DefaultHandler, public xercesc::XMLFormatTarget {
 public:
  // What the handler throws, by value.
  enum HandlerState {
    kFoundModel = 0,  // an element with the looked-for qualified name has started
    kFatalError = 1,  // the parser reported a fatal error
    kError = 2,       // the parser reported an error
    kEndOfPMML = 4,   // the end tag "PMML" was reached
  };

  // Looks for elements of the qualified name `modelType` (UTF-8).
  explicit ScoreSAX2Handlers(const char* modelType);
  ~ScoreSAX2Handlers() override;

  void startElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname,
                    const xercesc::Attributes& attributes) override;
  void endElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname) override;
  void error(const xercesc::SAXParseException& exception) override;
  void fatalError(const xercesc::SAXParseException& exception) override;
  void warning(const xercesc::SAXParseException& exception) override;
  void characters(const XMLCh* chars, XMLSize_t length) override;
  void ignorableWhitespace(const XMLCh* chars, XMLSize_t length) override;
  void processingInstruction(const XMLCh* target, const XMLCh* data) override;
  void writeChars(const XMLByte* bytes, XMLSize_t count, xercesc::XMLFormatter* formatter) override;

 private:
  std::string fModelType;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_XML_SCORESAX2HANDLERS_H_
