#include "veyra/ElementPath.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <vector>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "error/Messages.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"
#include "xml/XmlText.h"

namespace VeyraTool {

namespace Tags = KxVeyra_940::PMMLModelTags;
namespace StandardTags = KxVeyra_940::PMMLStandardTags;
using KxVeyra_940::FindAttribute;
using KxVeyra_940::HasTag;
using KxVeyra_940::MessageId;
using KxXML_940::EqualsUTF8;
using xercesc::DOMElement;
using xercesc::DOMNode;

namespace {

using Arguments = std::vector<std::string>;
using Matches = std::function<bool(const DOMElement&)>;

// The first element, in document order, that matches.
const DOMElement* FindFirst(const DOMElement& root, const Matches& matches) {
  for (const DOMNode* node = &root; node != nullptr; node = KxVeyra_940::NextNodeBelow(root, *node)) {
    if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
    const auto& element = static_cast<const DOMElement&>(*node);
    if (matches(element)) return &element;
  }
  return nullptr;
}

bool HasName(const DOMElement& element, const std::string& tag) {
  return EqualsUTF8(element.getTagName(), tag);
}

bool HasValue(const DOMElement& element, const std::string& attribute, const std::string& value) {
  const XMLCh* text = FindAttribute(element, attribute.c_str());
  return text != nullptr && EqualsUTF8(text, value);
}

bool IsBelow(const DOMElement& element, const char* tag) {
  const DOMNode* parent = element.getParentNode();
  while (parent != nullptr && !HasTag(*parent, tag)) parent = parent->getParentNode();
  return parent != nullptr;
}

bool HasAnyValue(const DOMElement& element, const std::string& value) {
  const xercesc::DOMNamedNodeMap* attributes = element.getAttributes();
  for (XMLSize_t i = 0; i < attributes->getLength(); ++i) {
    if (EqualsUTF8(attributes->item(i)->getNodeValue(), value)) return true;
  }
  return false;
}

bool HasText(const DOMElement& element, const std::string& value) {
  std::u16string buffer;
  return EqualsUTF8(KxVeyra_940::TextOf(element, buffer), value);
}

// {attribute, tag}: the element without it, or with an empty one
const DOMElement* WithoutAttribute(const DOMElement& root, const Arguments& arguments) {
  return FindFirst(root, [&](const DOMElement& element) {
    return HasName(element, arguments[1]) &&
           KxVeyra_940::IsEmpty(FindAttribute(element, arguments[0].c_str()));
  });
}

// {value, attribute}, {value, attribute, tag}
const DOMElement* WithValue(const DOMElement& root, const Arguments& arguments) {
  return FindFirst(root, [&](const DOMElement& element) {
    return HasValue(element, arguments[1], arguments[0]) &&
           (arguments.size() < 3 || HasName(element, arguments[2]));
  });
}

// {text, type}
const DOMElement* WithText(const DOMElement& root, const Arguments& arguments) {
  if (arguments[0].empty()) return nullptr;
  return FindFirst(root, [&](const DOMElement& element) {
    return HasAnyValue(element, arguments[0]) || HasText(element, arguments[0]);
  });
}

// {value, attribute, value, attribute}
const DOMElement* WithTwoValues(const DOMElement& root, const Arguments& arguments) {
  return FindFirst(root, [&](const DOMElement& element) {
    return HasValue(element, arguments[1], arguments[0]) && HasValue(element, arguments[3], arguments[2]);
  });
}

// Elements that define what they name, and do not refer to it.
constexpr const char* kDefinitions[] = {Tags::XML_ELE_DATAFIELD, Tags::XML_ELE_DERIVEDFIELD,
                                        StandardTags::XML_ELE_OUTPUTFIELD, Tags::XML_ELE_DEFINEFUNCTION,
                                        StandardTags::XML_ELE_PARAMETERFIELD};

bool RefersTo(const DOMElement& element, const std::string& name) {
  return (HasValue(element, Tags::XML_ATT_FIELD, name) || HasValue(element, Tags::XML_ATT_NAME, name)) &&
         std::none_of(std::begin(kDefinitions), std::end(kDefinitions),
                      [&](const char* tag) { return HasTag(element, tag); });
}

// {name, ...}: the first element that refers to a field
const DOMElement* Reference(const DOMElement& root, const Arguments& arguments) {
  return FindFirst(root, [&](const DOMElement& element) { return RefersTo(element, arguments[0]); });
}

// {name}: the first one that uses it in the model's own content
const DOMElement* Use(const DOMElement& root, const Arguments& arguments) {
  return FindFirst(root, [&](const DOMElement& element) {
    return RefersTo(element, arguments[0]) && !HasTag(element, Tags::XML_ELE_MININGFIELD) &&
           !IsBelow(element, Tags::XML_ELE_TRANSFORMATION) && !IsBelow(element, Tags::XML_ELE_VAL_OUTPUT);
  });
}

// {name, ...}: a second element of that name in one list
const DOMElement* SecondOfName(const DOMElement& root, const Arguments& arguments) {
  return FindFirst(root, [&](const DOMElement& element) {
    if (!HasValue(element, Tags::XML_ATT_NAME, arguments[0])) return false;
    for (const DOMNode* earlier = element.getPreviousSibling(); earlier != nullptr;
         earlier = earlier->getPreviousSibling()) {
      if (earlier->getNodeType() == DOMNode::ELEMENT_NODE &&
          HasValue(static_cast<const DOMElement&>(*earlier), Tags::XML_ATT_NAME, arguments[0])) {
        return true;
      }
    }
    return false;
  });
}

// {tag, parent's tag}: a second such child
const DOMElement* SecondChild(const DOMElement& root, const Arguments& arguments) {
  return FindFirst(root, [&](const DOMElement& element) {
    if (!HasName(element, arguments[0]) || !HasTag(*element.getParentNode(), arguments[1].c_str()))
      return false;
    const DOMElement* first = KxVeyra_940::FirstChildElement(element.getParentNode());
    while (!HasName(*first, arguments[0])) first = KxVeyra_940::NextSiblingElement(first);
    return first != &element;
  });
}

// {tag, ...}
const DOMElement* FirstOfTag(const DOMElement& root, const Arguments& arguments) {
  return FindFirst(root, [&](const DOMElement& element) { return HasName(element, arguments[0]); });
}

// {child, tag}: the element that lacks the child
const DOMElement* Parent(const DOMElement& root, const Arguments& arguments) {
  return FindFirst(root, [&](const DOMElement& element) { return HasName(element, arguments[1]); });
}

// {value, attribute, number, tag, element's tag}
const DOMElement* FifthTag(const DOMElement& root, const Arguments& arguments) {
  return FindFirst(root, [&](const DOMElement& element) { return HasName(element, arguments[4]); });
}

// {label, field's name}
const DOMElement* FieldOfLabel(const DOMElement& root, const Arguments& arguments) {
  return FindFirst(root, [&](const DOMElement& element) {
    return HasTag(element, Tags::XML_ELE_DATAFIELD) && HasValue(element, Tags::XML_ATT_NAME, arguments[1]);
  });
}

struct Row {
  MessageId id;
  std::size_t arguments;  // at least
  const DOMElement* (*find)(const DOMElement& root, const Arguments& arguments);
};

constexpr Row kRows[] = {
    {MessageId::kMissingAttributeOf, 2, WithoutAttribute},
    {MessageId::kNullIn, 2, WithoutAttribute},
    {MessageId::kInvalidAttributeValue, 2, WithValue},
    {MessageId::kInvalidAttributeValueIn, 3, WithValue},
    {MessageId::kUnsupportedValue, 2, WithValue},
    {MessageId::kInvalidValueOfType, 1, WithText},
    {MessageId::kConflictingValues, 4, WithTwoValues},
    {MessageId::kMissingVariableIn, 1, Reference},
    {MessageId::kMissingVariableInBoth, 1, Use},
    {MessageId::kNotAPredictor, 1, Use},
    {MessageId::kNumericRequired, 1, Use},
    {MessageId::kDuplicateVariableIn, 1, SecondOfName},
    {MessageId::kMoreThanOneIn, 2, SecondChild},
    {MessageId::kInvalidTag, 1, FirstOfTag},
    {MessageId::kInvalidNodeExpectedIn, 1, FirstOfTag},
    {MessageId::kUnexpectedValue, 1, FirstOfTag},
    {MessageId::kUnsupportedElement, 1, FirstOfTag},
    {MessageId::kUnsupportedModel, 1, FirstOfTag},
    {MessageId::kNoChildElement, 1, FirstOfTag},
    {MessageId::kMissingNodeIn, 2, Parent},
    {MessageId::kRequiredIn, 2, Parent},
    {MessageId::kMissingDefinitionIn, 1, WithText},
    {MessageId::kNumberMismatchIn, 5, FifthTag},
    {MessageId::kValueIsMissing, 2, FieldOfLabel},
};

// How one element is told from its siblings; empty when it is the only one of its tag.
std::string Distinction(const DOMElement& element) {
  for (const char* attribute : {Tags::XML_ATT_NAME, Tags::XML_ATT_FIELD}) {
    const XMLCh* text = FindAttribute(element, attribute);
    if (text != nullptr) return std::string("[@") + attribute + "='" + KxXML_940::ToUTF8(text) + "']";
  }
  std::size_t position = 0;
  std::size_t count = 0;
  KxVeyra_940::ForEachChildElement(element.getParentNode(), [&](const DOMElement& sibling) {
    if (KxXML_940::View(sibling.getTagName()) != KxXML_940::View(element.getTagName())) return;
    ++count;
    if (&sibling == &element) position = count;
  });
  return count > 1 ? "[" + std::to_string(position) + "]" : "";
}

}  // namespace

std::string PathOf(const DOMElement& element) {
  std::string path;
  const DOMNode* node = &element;
  for (; node != nullptr && node->getNodeType() == DOMNode::ELEMENT_NODE; node = node->getParentNode()) {
    const auto& step = static_cast<const DOMElement&>(*node);
    path.insert(0, "/" + KxXML_940::ToUTF8(step.getTagName()) + Distinction(step));
  }
  return path;
}

const DOMElement* FindRefused(const DOMElement& root, const KxVeyra_940::VYException& exception) {
  if (exception.GetErrors().empty()) return nullptr;
  const auto& error = exception.GetErrors().back();
  for (const Row& row : kRows) {
    if (static_cast<int>(row.id) == error.id && error.arguments.size() >= row.arguments) {
      return row.find(root, error.arguments);
    }
  }
  return nullptr;
}

}  // namespace VeyraTool
