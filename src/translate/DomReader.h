// Small readers over a parsed document, for translators and plug-ins.
//
//   ForEachChildElement(table, [&](const xercesc::DOMElement& row) {
//     if (!HasTag(row, "Row")) return;
//     const std::string name = RequiredText(row, "name");
//     const double weight = OptionalNumber(row, "weight").value_or(1.0);
//   });
//
// Names of elements and attributes are UTF-8.  Nodes and XMLCh texts are lent by the document and live as
// long as it does.  Attributes that are absent and attributes that are empty read alike: as an empty text.
// Threads: a document belongs to one thread.

#ifndef VEYRA_TRANSLATE_DOMREADER_H_
#define VEYRA_TRANSLATE_DOMREADER_H_

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/util/XercesDefs.hpp>

#include "veyra/Export.h"

namespace KxVeyra_940 {

// A name in the parser's units.  Short ASCII names stay on the stack.  Not copied: Get() may point inside.
class VEYRA_API XmlName {
 public:
  explicit XmlName(std::string_view name);
  ~XmlName();
  XmlName(const XmlName&) = delete;
  XmlName& operator=(const XmlName&) = delete;

  const XMLCh* Get() const { return fText; }

 private:
  std::array<XMLCh, 48> fBuffer;
  std::u16string fLong;
  const XMLCh* fText;
};

// The first child, or the next sibling, that is an element; null when there is none, and for null.
VEYRA_API xercesc::DOMElement* FirstChildElement(const xercesc::DOMNode* node);
VEYRA_API xercesc::DOMElement* NextSiblingElement(const xercesc::DOMNode* node);

// Calls `action(const xercesc::DOMElement&)` for each child element, in document order.
template <typename Action>
void ForEachChildElement(const xercesc::DOMNode* parent, Action&& action) {
  for (const auto* child = FirstChildElement(parent); child != nullptr; child = NextSiblingElement(child))
    action(*child);
}

// The node that follows `node` in document order below `root`; null behind the last one.  Needs no stack, so
// that the depth of a document is no concern.  REQUIRES: node is root or lies below it.
VEYRA_API const xercesc::DOMNode* NextNodeBelow(const xercesc::DOMNode& root, const xercesc::DOMNode& node);

// Calls `action(const xercesc::DOMElement&)` for each element of that tag at any depth below `root`, in
// document order.
template <typename Action>
void ForEachElementBelow(const xercesc::DOMNode& root, const char* tag, Action&& action);

VEYRA_API bool HasTag(const xercesc::DOMNode& node, const char* tag);

// The text that `node` begins with: what its text, CDATA and entity children give together, up to the first
// child element; comments and processing instructions are skipped.  The text of an only child is lent, a text
// of several parts is put together in `buffer`.
VEYRA_API const XMLCh* TextOf(const xercesc::DOMNode& node, std::u16string& buffer);

inline bool IsEmpty(const XMLCh* text) { return text == nullptr || *text == 0; }

// The attribute's text; null when it is absent.
VEYRA_API const XMLCh* FindAttribute(const xercesc::DOMElement& element, const char* name);

// The attribute's text; never null.
VEYRA_API const XMLCh* Attribute(const xercesc::DOMElement& element, const char* name);

// The attribute's text, which may be empty.  Raises 260120 (name, tag) when the attribute is absent.
VEYRA_API const XMLCh* RequiredAttribute(const xercesc::DOMElement& element, const char* name);

// The same, and raises 260285 (name, tag) when the text is empty.
VEYRA_API const XMLCh* RequiredNonEmptyAttribute(const xercesc::DOMElement& element, const char* name);

// The attribute's text in UTF-8; RequiredText raises as RequiredAttribute does.
VEYRA_API std::string OptionalText(const xercesc::DOMElement& element, const char* name);
VEYRA_API std::string RequiredText(const xercesc::DOMElement& element, const char* name);

// The number of the attribute; nothing when it is absent or empty.  Raises 260151 (text, "double" or
// "integer") when the text is no number.
VEYRA_API std::optional<double> OptionalNumber(const xercesc::DOMElement& element, const char* name);
VEYRA_API std::optional<int> OptionalInteger(const xercesc::DOMElement& element, const char* name);

// The number of the attribute; nothing when it is absent.  Raises 260151 as OptionalNumber does, for an empty
// text too.
VEYRA_API std::optional<double> NumberIfPresent(const xercesc::DOMElement& element, const char* name);

// The number of the attribute.  Raises 260120 (name, tag) when it is absent, 260151 as OptionalNumber does,
// for an empty text too.
VEYRA_API double RequiredNumber(const xercesc::DOMElement& element, const char* name);

// The whole number that the text writes, with XML's white space around it.  Raises 260151 (text, "integer")
// when it writes none, an empty text included, or one outside the range of int.
VEYRA_API int PaddedInteger(const XMLCh* text);

template <typename Action>
void ForEachElementBelow(const xercesc::DOMNode& root, const char* tag, Action&& action) {
  for (const auto* node = NextNodeBelow(root, root); node != nullptr; node = NextNodeBelow(root, *node)) {
    if (node->getNodeType() == xercesc::DOMNode::ELEMENT_NODE && HasTag(*node, tag))
      action(static_cast<const xercesc::DOMElement&>(*node));
  }
}

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_DOMREADER_H_
