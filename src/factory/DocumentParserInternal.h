// The parser of whole documents: it notes the first element of each name while it builds the tree, so that
// the model element is found without another walk over a large tree.

#ifndef VEYRA_FACTORY_DOCUMENTPARSERINTERNAL_H_
#define VEYRA_FACTORY_DOCUMENTPARSERINTERNAL_H_

#include <array>
#include <unordered_set>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "xml/ParserLimits.h"

namespace KxVeyra_940 {

class DocumentParser : public KxXML_940::LimitedDOMParser {
 public:
  // External DTDs are not loaded and nothing is validated.
  DocumentParser();
  ~DocumentParser() override;

  // The first element of each name below the root, in document order; lent by the document.
  const std::vector<const xercesc::DOMElement*>& GetFirstElements() const { return fFirstElements; }

  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, const XMLCh* prefix,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attributeCount,
                    bool isEmpty, bool isRoot) override;
  void resetDocument() override;

 private:
  // Whether the name has been met before.  The scanner has one declaration for each name.
  bool IsKnown(const xercesc::XMLElementDecl* declaration);

  std::array<const xercesc::XMLElementDecl*, 32> fRecent{};  // a look here settles nearly every element
  std::unordered_set<const xercesc::XMLElementDecl*> fKnown;
  std::vector<const xercesc::DOMElement*> fFirstElements;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_FACTORY_DOCUMENTPARSERINTERNAL_H_
