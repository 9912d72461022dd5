// Parsing a document and finding its model element.

#include <unordered_map>

#include "factory/DocumentParserInternal.h"
#include "factory/FactoryInternal.h"
#include "xml/DocumentStream.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

using xercesc::DOMElement;

DocumentParser::DocumentParser() {
  setLoadExternalDTD(false);
  setValidationScheme(XercesDOMParser::Val_Never);
  setDoSchema(false);
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
  return KxXML_940::ParseDocument(parser, in);
}

}  // namespace KxVeyra_940
