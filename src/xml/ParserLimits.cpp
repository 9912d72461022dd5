#include "xml/ParserLimits.h"

#include <algorithm>
#include <bit>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include "xml/XmlText.h"

namespace KxXML_940 {

XMLSize_t ExpansionLimit(XMLSize_t longest) {
  return std::min(kMaxEntityExpansions, kMaxExpandedCharacters / std::max(longest, XMLSize_t{1}));
}

void LimitReader(xercesc::SAX2XMLReader& reader, xercesc::SecurityManager& limits, XMLSize_t longest) {
  limits.setEntityExpansionLimit(ExpansionLimit(longest));
  reader.setFeature(xercesc::XMLUni::fgXercesDisableDefaultEntityResolution, true);
  reader.setProperty(xercesc::XMLUni::fgXercesSecurityManager, &limits);
}

LimitedDOMParser::LimitedDOMParser() {
  setDisableDefaultEntityResolution(true);
  setLoadExternalDTD(false);
  LimitExpansions(0);
}

LimitedDOMParser::~LimitedDOMParser() = default;

// Every change starts the parser's count of expansions anew, hence the steps: there are few powers of two.
void LimitedDOMParser::LimitExpansions(XMLSize_t longest) {
  fLongestEntity = std::bit_ceil(longest);
  fLimits.setEntityExpansionLimit(ExpansionLimit(fLongestEntity));
  getScanner()->setSecurityManager(&fLimits);
}

void LimitedDOMParser::resetDocument() {
  XercesDOMParser::resetDocument();
  LimitExpansions(0);
  fDefaultedCharacters = 0;
}

void LimitedDOMParser::entityDecl(const xercesc::DTDEntityDecl& entity, const bool isParameterEntity,
                                  const bool isIgnored) {
  if (entity.getValueLen() > fLongestEntity) LimitExpansions(entity.getValueLen());
  XercesDOMParser::entityDecl(entity, isParameterEntity, isIgnored);
}

void LimitedDOMParser::startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                                    const XMLCh* const prefix,
                                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                    const XMLSize_t attributeCount, const bool isEmpty, const bool isRoot) {
  for (XMLSize_t i = 0; i < attributeCount; ++i) {
    const xercesc::XMLAttr& attribute = *attributes.elementAt(i);
    if (!attribute.getSpecified()) fDefaultedCharacters += View(attribute.getValue()).size();
  }
  if (fDefaultedCharacters > kMaxExpandedCharacters) {
    fDefaultedCharacters = 0;
    getScanner()->emitError(xercesc::XMLErrs::EntityExpansionLimitExceeded,
                            std::to_string(kMaxExpandedCharacters).c_str());
  }
  XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
}

ParseErrorRecorder::ParseErrorRecorder() = default;
ParseErrorRecorder::~ParseErrorRecorder() = default;

void ParseErrorRecorder::warning(const xercesc::SAXParseException&) {}
void ParseErrorRecorder::error(const xercesc::SAXParseException&) {}

void ParseErrorRecorder::fatalError(const xercesc::SAXParseException& exception) {
  if (++fCount > 1) return;
  fLine = exception.getLineNumber();
  fColumn = exception.getColumnNumber();
  fText = ToUTF8(exception.getMessage());
}

void ParseErrorRecorder::resetErrors() {
  fCount = 0;
  fText.clear();
  fLine = 0;
  fColumn = 0;
}

}  // namespace KxXML_940
