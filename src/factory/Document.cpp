// Parsing a document and finding its model element.

#include <istream>
#include <unordered_map>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "error/Raise.h"
#include "factory/DocumentParserInternal.h"
#include "factory/FactoryInternal.h"
#include "xml/KxXInputSource.h"
#include "xml/ParserLimits.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

using xercesc::DOMElement;

DocumentParser::DocumentParser() {
  setLoadExternalDTD(false);
  setValidationScheme(XercesDOMParser::Val_Never);
}

DocumentParser::~DocumentParser() = default;

void DocumentParser::resetDocument() {
  fRecent.fill(nullptr);
  fKnown.clear();
  fFirstElements.clear();
  LimitedDOMParser::resetDocument();
}

bool DocumentParser::IsKnown(const xercesc::XMLElementDecl* declaration) {
  const std::size_t place = (reinterpret_cast<std::uintptr_t>(declaration) >> 6U) % fRecent.size();
  if (fRecent[place] == declaration) return true;
  fRecent[place] = declaration;
  return !fKnown.insert(declaration).second;
}

void DocumentParser::startElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId,
                                  const XMLCh* prefix,
                                  const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                  XMLSize_t attributeCount, bool isEmpty, bool isRoot) {
  LimitedDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
  if (isRoot || IsKnown(&declaration)) return;
  fFirstElements.push_back(static_cast<const DOMElement*>(getCurrentNode()));
}

const DOMElement* FindModelElement(const std::vector<const DOMElement*>& firstElements,
                                   const std::vector<std::string>& names) {
  std::unordered_map<std::string, std::size_t> positions;
  for (std::size_t i = 0; i < names.size(); ++i) positions.emplace(names[i], i);  // the first of equal ones
  std::size_t best = names.size();
  const DOMElement* found = nullptr;
  for (const DOMElement* element : firstElements) {
    const auto position = positions.find(KxXML_940::ToUTF8(element->getNodeName()));
    if (position == positions.end() || position->second >= best) continue;
    best = position->second;
    found = element;
  }
  return found;
}

xercesc::DOMDocument* GetDocElement(xercesc::XercesDOMParser& parser, std::istream& in,
                                    const std::string& /*name*/) {
  KxXML_940::ParseErrorRecorder errors;
  std::string parserText;
  bool failed = false;
  try {
    const KxXML_940::KxXInputSource source(in);
    parser.setErrorHandler(&errors);
    parser.parse(source);
    if (errors.HasFatalError()) source.RethrowFailure();
  } catch (const xercesc::XMLException& e) {
    failed = true;
    parserText = KxXML_940::ToUTF8(e.getMessage());
  } catch (const xercesc::DOMException& e) {
    failed = true;
    parserText = KxXML_940::ToUTF8(e.getMessage());
  } catch (...) {
    Raise(MessageId::kCannotOpenDocumentStream, {});
  }
  if (failed) RaiseWithDetail(MessageId::kDocumentParserError, {}, parserText);
  parser.setErrorHandler(nullptr);
  xercesc::DOMDocument* document = parser.getDocument();
  if (document == nullptr) Raise(MessageId::kDocumentNotParsed, {});
  if (document->getDocumentElement() == nullptr) Raise(MessageId::kNoRootElement, {});
  // A tree that stands in part would build a model in part.
  if (errors.HasFatalError()) RaiseWithDetail(MessageId::kDocumentParserError, {}, errors.GetText());
  return document;
}

}  // namespace KxVeyra_940
