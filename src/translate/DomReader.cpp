#include "translate/DomReader.h"

#include <algorithm>
#include <charconv>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "error/Raise.h"
#include "translate/BaseTranslator.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {
namespace {

using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;
using xercesc::DOMNode;

// The node itself when it is an element, else the nearest later sibling that is one.
DOMElement* ElementFrom(DOMNode* node) {
  while (node != nullptr && node->getNodeType() != DOMNode::ELEMENT_NODE) node = node->getNextSibling();
  return static_cast<DOMElement*>(node);
}

// The node that follows `node` and everything inside it; null when that lies outside `root`.
const DOMNode* NextNodeBehind(const DOMNode& root, const DOMNode* node) {
  while (node != nullptr && node != &root) {
    if (const DOMNode* sibling = node->getNextSibling()) return sibling;
    node = node->getParentNode();
  }
  return nullptr;
}

constexpr XMLSize_t kFewAttributes = 8;

bool IsCharacterData(const DOMNode& node) {
  return node.getNodeType() == DOMNode::TEXT_NODE || node.getNodeType() == DOMNode::CDATA_SECTION_NODE;
}

// The node's only child when that is character data, else null.
const DOMNode* OnlyCharacterData(const DOMNode& node) {
  const DOMNode* child = node.getFirstChild();
  const bool isOnly = child != nullptr && child->getNextSibling() == nullptr && IsCharacterData(*child);
  return isOnly ? child : nullptr;
}

// The attribute's text.  The text child is asked at once: getValue() looks for it with dynamic casts.
const XMLCh* ValueOf(const xercesc::DOMAttr& attribute) {
  const DOMNode* text = OnlyCharacterData(attribute);
  return text != nullptr ? text->getNodeValue() : attribute.getValue();
}

}  // namespace

XmlName::XmlName(std::string_view name) {
  if (name.size() < fBuffer.size() && KxXML_940::IsAscii(name)) {
    *std::copy(name.begin(), name.end(), fBuffer.begin()) = 0;
    fText = fBuffer.data();
    return;
  }
  fLong = KxXML_940::ToUTF16(name);
  fText = fLong.c_str();
}

XmlName::~XmlName() = default;

DOMElement* FirstChildElement(const DOMNode* node) {
  return node == nullptr ? nullptr : ElementFrom(node->getFirstChild());
}

DOMElement* NextSiblingElement(const DOMNode* node) {
  return node == nullptr ? nullptr : ElementFrom(node->getNextSibling());
}

const DOMNode* NextNodeBelow(const DOMNode& root, const DOMNode& node) {
  const DOMNode* child = node.getFirstChild();
  return child != nullptr ? child : NextNodeBehind(root, &node);
}

bool HasTag(const DOMNode& node, const char* tag) { return EqualsAscii(node.getNodeName(), tag); }

const XMLCh* TextOf(const DOMNode& node, std::u16string& buffer) {
  if (const DOMNode* only = OnlyCharacterData(node)) return only->getNodeValue();

  buffer.clear();
  for (const DOMNode* part = NextNodeBelow(node, node); part != nullptr; part = NextNodeBelow(node, *part)) {
    if (part->getNodeType() == DOMNode::ELEMENT_NODE) break;
    if (IsCharacterData(*part)) buffer += part->getNodeValue();
  }
  return buffer.c_str();
}

const XMLCh* FindAttribute(const DOMElement& element, const char* name) {
  const xercesc::DOMNamedNodeMap& attributes = *element.getAttributes();
  const XMLSize_t count = attributes.getLength();
  if (count > kFewAttributes || !KxXML_940::IsAscii(std::string_view(name))) {
    const xercesc::DOMAttr* attribute = element.getAttributeNode(XmlName(name).Get());
    return attribute == nullptr ? nullptr : ValueOf(*attribute);
  }
  // Comparing a few names in place costs less than making one in the parser's units.
  for (XMLSize_t i = 0; i < count; ++i) {
    const DOMNode* attribute = attributes.item(i);
    if (EqualsAscii(attribute->getNodeName(), name)) {
      return ValueOf(*static_cast<const xercesc::DOMAttr*>(attribute));
    }
  }
  return nullptr;
}

const XMLCh* Attribute(const DOMElement& element, const char* name) {
  const XMLCh* text = FindAttribute(element, name);
  return text == nullptr ? u"" : text;
}

const XMLCh* RequiredAttribute(const DOMElement& element, const char* name) {
  const XMLCh* text = FindAttribute(element, name);
  if (text == nullptr) Raise(MessageId::kMissingAttributeOf, {name, ToUTF8(element.getTagName())});
  return text;
}

const XMLCh* RequiredNonEmptyAttribute(const DOMElement& element, const char* name) {
  const XMLCh* text = RequiredAttribute(element, name);
  if (IsEmpty(text)) Raise(MessageId::kNullIn, {name, ToUTF8(element.getTagName())});
  return text;
}

std::string OptionalText(const DOMElement& element, const char* name) {
  return ToUTF8(Attribute(element, name));
}

std::string RequiredText(const DOMElement& element, const char* name) {
  return ToUTF8(RequiredAttribute(element, name));
}

std::optional<double> OptionalNumber(const DOMElement& element, const char* name) {
  const XMLCh* text = Attribute(element, name);
  if (IsEmpty(text)) return std::nullopt;
  return BaseTranslator::VerifyDouble(text);
}

std::optional<int> OptionalInteger(const DOMElement& element, const char* name) {
  const XMLCh* text = Attribute(element, name);
  if (IsEmpty(text)) return std::nullopt;
  return BaseTranslator::VerifyInt(text);
}

std::optional<double> NumberIfPresent(const DOMElement& element, const char* name) {
  const XMLCh* text = FindAttribute(element, name);
  if (text == nullptr) return std::nullopt;
  return BaseTranslator::VerifyDouble(text);
}

double RequiredNumber(const DOMElement& element, const char* name) {
  return BaseTranslator::VerifyDouble(RequiredAttribute(element, name));
}

int PaddedInteger(const XMLCh* text) {
  const std::string whole = ToUTF8(text);
  constexpr char kWhiteSpace[] = " \t\n\r";
  const std::size_t first = whole.find_first_not_of(kWhiteSpace);
  if (first != std::string::npos) {
    const char* start = whole.data() + first;
    const char* end = whole.data() + whole.find_last_not_of(kWhiteSpace) + 1;
    if (*start == '+' && start + 1 != end && start[1] != '-') ++start;
    int count = 0;
    const auto result = std::from_chars(start, end, count);
    if (result.ec == std::errc() && result.ptr == end) return count;
  }
  Raise(MessageId::kInvalidValueOfType, {whole, PMMLModelTags::XML_VAL_INTEGER});
}

}  // namespace KxVeyra_940
