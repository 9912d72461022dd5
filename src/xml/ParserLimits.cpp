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

bool DtdLimits::AdmitsEntity(const xercesc::DTDEntityDecl& entity, bool isParameterEntity) {
  const std::u16string_view value(entity.getValue(), entity.getValueLen());
  if (isParameterEntity) return value.size() <= kShortEntity && value.find(u'%') == value.npos;
  fLongestEntity = std::max(fLongestEntity, value.size());
  fIsNested = fIsNested || value.find(u'&') != value.npos;
  return true;
}

LimitedDOMParser::LimitedDOMParser() {
  setDisableDefaultEntityResolution(true);
  setLoadExternalDTD(false);
  LimitExpansions(0);
}

LimitedDOMParser::~LimitedDOMParser() = default;

// Every change starts the parser's count of expansions anew, hence the steps: there are few powers of two.
void LimitedDOMParser::LimitExpansions(XMLSize_t longest) {
  fLimitedTo = std::bit_ceil(longest);
  fLimits.setEntityExpansionLimit(ExpansionLimit(fLimitedTo));
  getScanner()->setSecurityManager(&fLimits);
}

// Reports a fatal error, which ends the parse.
void LimitedDOMParser::Refuse() {
  getScanner()->emitError(xercesc::XMLErrs::EntityExpansionLimitExceeded,
                          std::to_string(kMaxEntityExpansions).c_str());
}

void LimitedDOMParser::resetDocument() {
  XercesDOMParser::resetDocument();
  LimitExpansions(0);
  fDtd = {};
  fDefaultedCharacters = 0;
}

void LimitedDOMParser::entityDecl(const xercesc::DTDEntityDecl& entity, const bool isParameterEntity,
                                  const bool isIgnored) {
  if (!fDtd.AdmitsEntity(entity, isParameterEntity)) Refuse();
  if (fDtd.GetLongestEntity() > fLimitedTo) LimitExpansions(fDtd.GetLongestEntity());
  XercesDOMParser::entityDecl(entity, isParameterEntity, isIgnored);
}

void LimitedDOMParser::startAttList(const xercesc::DTDElementDecl& element) {
  if (!fDtd.AdmitsDefaults()) Refuse();
  XercesDOMParser::startAttList(element);
}

void LimitedDOMParser::startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                                    const XMLCh* const prefix,
                                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                    const XMLSize_t attributeCount, const bool isEmpty, const bool isRoot) {
  for (XMLSize_t i = 0; i < attributeCount; ++i) {
    const xercesc::XMLAttr& attribute = *attributes.elementAt(i);
    if (!attribute.getSpecified()) fDefaultedCharacters += View(attribute.getValue()).size();
  }
  if (fDefaultedCharacters > kMaxExpandedCharacters) Refuse();
  XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
}

LimitedSAX2Reader::LimitedSAX2Reader(XMLSize_t longest) : fLongest(longest) {
  fLimits.setEntityExpansionLimit(ExpansionLimit(longest));
  setFeature(xercesc::XMLUni::fgXercesDisableDefaultEntityResolution, true);
  setFeature(xercesc::XMLUni::fgXercesLoadExternalDTD, false);
  setProperty(xercesc::XMLUni::fgXercesSecurityManager, &fLimits);
}

LimitedSAX2Reader::~LimitedSAX2Reader() = default;

void LimitedSAX2Reader::entityDecl(const xercesc::DTDEntityDecl& entity, const bool isParameterEntity,
                                   const bool isIgnored) {
  if (!fDtd.AdmitsEntity(entity, isParameterEntity)) throw Refusal();
  if (fDtd.GetLongestEntity() > fLongest) throw LongEntity{fDtd.GetLongestEntity()};
  SAX2XMLReaderImpl::entityDecl(entity, isParameterEntity, isIgnored);
}

void LimitedSAX2Reader::startAttList(const xercesc::DTDElementDecl& element) {
  if (!fDtd.AdmitsDefaults()) throw Refusal();
  SAX2XMLReaderImpl::startAttList(element);
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
