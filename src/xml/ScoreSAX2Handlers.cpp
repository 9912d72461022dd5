#include "xml/ScoreSAX2Handlers.h"

#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

ScoreSAX2Handlers::ScoreSAX2Handlers(const char* modelType) : fModelType(modelType) {}

ScoreSAX2Handlers::~ScoreSAX2Handlers() = default;

void ScoreSAX2Handlers::startElement(const XMLCh*, const XMLCh*, const XMLCh* qname,
                                     const xercesc::Attributes&) {
  if (KxXML_940::EqualsUTF8(qname, fModelType)) throw kFoundModel;
}

void ScoreSAX2Handlers::endElement(const XMLCh*, const XMLCh*, const XMLCh* qname) {
  if (KxXML_940::EqualsAscii(qname, PMMLModelTags::XML_ELE_PMML)) throw kEndOfPMML;
}

void ScoreSAX2Handlers::error(const xercesc::SAXParseException&) { throw kError; }
void ScoreSAX2Handlers::fatalError(const xercesc::SAXParseException&) { throw kFatalError; }

void ScoreSAX2Handlers::warning(const xercesc::SAXParseException&) {}
void ScoreSAX2Handlers::characters(const XMLCh*, XMLSize_t) {}
void ScoreSAX2Handlers::ignorableWhitespace(const XMLCh*, XMLSize_t) {}
void ScoreSAX2Handlers::processingInstruction(const XMLCh*, const XMLCh*) {}
void ScoreSAX2Handlers::writeChars(const XMLByte*, XMLSize_t, xercesc::XMLFormatter*) {}

}  // namespace KxVeyra_940
