// Parsing a document and finding its model element.

#include <istream>
#include <unordered_map>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "error/Raise.h"
#include "factory/FactoryInternal.h"
#include "translate/DomReader.h"
#include "xml/KxXInputSource.h"
#include "xml/ParserLimits.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;

// Looks element names up in the catalogue.  The document pools its names, so each distinct name is compared
// once and known by its address from then on.
class CatalogueIndex {
 public:
  explicit CatalogueIndex(const std::vector<std::string>& names) : fUnknown(names.size()) {
    for (std::size_t i = 0; i < names.size(); ++i) fByName.emplace(names[i], i);  // the first of equal ones
  }

  // The position of the name in the catalogue; its size for any other name.
  std::size_t Find(const XMLCh* name) {
    if (name == fLastName) return fLastPosition;
    fLastName = name;
    const auto known = fByAddress.find(name);
    if (known != fByAddress.end()) return fLastPosition = known->second;
    const auto found = fByName.find(KxXML_940::ToUTF8(name));
    fLastPosition = found == fByName.end() ? fUnknown : found->second;
    fByAddress.emplace(name, fLastPosition);
    return fLastPosition;
  }

 private:
  std::size_t fUnknown;
  std::unordered_map<std::string, std::size_t> fByName;
  std::unordered_map<const XMLCh*, std::size_t> fByAddress;
  const XMLCh* fLastName = nullptr;
  std::size_t fLastPosition = 0;
};

}  // namespace

xercesc::DOMElement* FindModelElement(const DOMElement& root, const std::vector<std::string>& names) {
  CatalogueIndex index(names);
  std::size_t best = names.size();
  const DOMNode* found = nullptr;
  for (const DOMNode* node = NextNodeBelow(root, root); node != nullptr && best > 0;
       node = NextNodeBelow(root, *node)) {
    if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
    const std::size_t position = index.Find(node->getNodeName());
    if (position >= best) continue;
    best = position;
    found = node;
  }
  return const_cast<DOMElement*>(static_cast<const DOMElement*>(found));
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
