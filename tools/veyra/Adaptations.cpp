#include "veyra/Adaptations.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMText.hpp>

#include "translate/BaseTranslator.h"
#include "translate/DomReader.h"
#include "veyra/ElementPath.h"
#include "veyra/VYException.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"
#include "xml/XmlText.h"

namespace VeyraTool {

namespace Tags = KxVeyra_940::PMMLModelTags;
namespace StandardTags = KxVeyra_940::PMMLStandardTags;
using KxVeyra_940::Attribute;
using KxVeyra_940::BaseTranslator;
using KxVeyra_940::FindAttribute;
using KxVeyra_940::ForEachChildElement;
using KxVeyra_940::HasTag;
using KxVeyra_940::IsEmpty;
using KxVeyra_940::OptionalText;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;

namespace {

void Note(Applied& applied, const DOMElement& element, const std::string& what) {
  if (applied.count++ > 0) return;
  applied.what = what;
  applied.path = PathOf(element);
}

void SetAttribute(DOMElement& element, const char* name, const std::string& value) {
  element.setAttribute(KxXML_940::ToUTF16(name).c_str(), KxXML_940::ToUTF16(value).c_str());
}

DOMElement& AppendChild(DOMElement& parent, const char* tag) {
  auto* child = parent.getOwnerDocument()->createElement(KxXML_940::ToUTF16(tag).c_str());
  parent.appendChild(child);
  return *child;
}

void AppendValue(DOMElement& field, const std::string& value, const char* property) {
  DOMElement& element = AppendChild(field, Tags::XML_ELE_VALUE);
  SetAttribute(element, Tags::XML_ATT_VALUE_VALUE, value);
  if (property != nullptr) SetAttribute(element, Tags::XML_ATT_VALUE_PROPERTY, property);
}

// The elements of that tag, collected first because the action may change the tree.
std::vector<DOMElement*> ElementsOf(DOMDocument& document, const char* tag) {
  std::vector<DOMElement*> elements;
  DOMElement& root = *document.getDocumentElement();
  for (const DOMNode* node = &root; node != nullptr; node = KxVeyra_940::NextNodeBelow(root, *node)) {
    if (node->getNodeType() != DOMNode::ELEMENT_NODE || (tag != nullptr && !HasTag(*node, tag))) continue;
    elements.push_back(static_cast<DOMElement*>(const_cast<DOMNode*>(node)));
  }
  return elements;
}

std::vector<DOMElement*> ChildrenOf(const DOMElement& parent, const char* tag) {
  std::vector<DOMElement*> children;
  for (DOMElement* child = KxVeyra_940::FirstChildElement(&parent); child != nullptr;
       child = KxVeyra_940::NextSiblingElement(child)) {
    if (HasTag(*child, tag)) children.push_back(child);
  }
  return children;
}

// Whether the text is what the library takes for a number.
std::optional<double> NumberOf(const XMLCh* text) {
  try {
    return BaseTranslator::VerifyDouble(text);
  } catch (const KxVeyra_940::VYException&) {
    return std::nullopt;
  }
}

void DropPrefixes(DOMDocument& document, Applied& applied) {
  for (DOMElement* element : ElementsOf(document, nullptr)) {
    const std::u16string tag(KxXML_940::View(element->getTagName()));
    const std::size_t colon = tag.find(u':');
    if (colon == std::u16string::npos) continue;
    Note(applied, *element, "the prefix of '" + KxXML_940::ToUTF8(tag) + "' is dropped");
    document.renameNode(element, nullptr, tag.c_str() + colon + 1);
  }
}

void CountFields(DOMDocument& document, Applied& applied) {
  for (DOMElement* dictionary : ElementsOf(document, Tags::XML_ELE_DATADICTIONARY)) {
    const auto count = ChildrenOf(*dictionary, Tags::XML_ELE_DATAFIELD).size();
    const std::string stated = OptionalText(*dictionary, Tags::XML_ATT_DATADICT_NUMBEROFFIELDS);
    const auto number = NumberOf(KxXML_940::ToUTF16(stated).c_str());
    if (number.has_value() && *number == static_cast<double>(count)) continue;
    const std::string text = std::to_string(count);
    std::string what = "numberOfFields is ";
    what.append(stated.empty() ? "missing" : "'" + stated + "'").append(", set to ").append(text);
    Note(applied, *dictionary, what);
    SetAttribute(*dictionary, Tags::XML_ATT_DATADICT_NUMBEROFFIELDS, text);
  }
}

void WriteBooleansAsTexts(DOMDocument& document, Applied& applied) {
  for (DOMElement* field : ElementsOf(document, Tags::XML_ELE_DATAFIELD)) {
    if (!BaseTranslator::IsEqual(Attribute(*field, Tags::XML_ATT_DATATYPE), StandardTags::XML_VAL_BOOLEAN))
      continue;
    Note(applied, *field, "dataType boolean is read as the texts 'true' and 'false'");
    SetAttribute(*field, Tags::XML_ATT_DATATYPE, Tags::XML_VAL_STRING);
    if (BaseTranslator::IsEqual(Attribute(*field, Tags::XML_ATT_DATAFIELD_OPTYPE),
                                Tags::XML_VAL_OT_CONTINUOUS)) {
      SetAttribute(*field, Tags::XML_ATT_DATAFIELD_OPTYPE, Tags::XML_VAL_OT_CATEGORICAL);
    }
    const auto values = ChildrenOf(*field, Tags::XML_ELE_VALUE);
    const bool listsValid = std::any_of(values.begin(), values.end(), [](const DOMElement* value) {
      const XMLCh* property = Attribute(*value, Tags::XML_ATT_VALUE_PROPERTY);
      return IsEmpty(property) || BaseTranslator::IsEqual(property, Tags::XML_VAL_PROP_VALID);
    });
    if (listsValid) continue;
    AppendValue(*field, Tags::XML_ATT_EXT_VALUE_VALUE_TRUE, nullptr);
    AppendValue(*field, StandardTags::XML_VAL_FALSE, nullptr);
  }
}

// The bounds of an interval, with their texts.
struct Interval {
  double left;
  double right;
  bool isLeftClosed;
  bool isRightClosed;
  std::string leftText;
  std::string rightText;
};

std::optional<Interval> ReadInterval(const DOMElement& element) {
  const std::string property = OptionalText(element, Tags::XML_ATT_VALUE_PROPERTY);
  const std::string closure = OptionalText(element, Tags::XML_ATT_INTERVAL_CLOSURE);
  const XMLCh* left = Attribute(element, Tags::XML_ATT_INTERVAL_LEFTMARGIN);
  const XMLCh* right = Attribute(element, Tags::XML_ATT_INTERVAL_RIGHTMARGIN);
  const auto low = IsEmpty(left) ? -std::numeric_limits<double>::infinity() : NumberOf(left);
  const auto high = IsEmpty(right) ? std::numeric_limits<double>::infinity() : NumberOf(right);
  if ((!property.empty() && property != Tags::XML_VAL_PROP_VALID) || !low || !high) return std::nullopt;
  return Interval{*low,
                  *high,
                  closure.starts_with("closed"),
                  closure.ends_with("Closed"),
                  KxXML_940::ToUTF8(left),
                  KxXML_940::ToUTF8(right)};
}

// The intervals as one; what lies between two that touch with both ends open is added to `holes`.  Nothing
// when they leave more than that between them.
std::optional<Interval> Join(std::vector<Interval> intervals, std::vector<std::string>& holes) {
  std::sort(intervals.begin(), intervals.end(), [](const Interval& a, const Interval& b) {
    return a.left < b.left || (a.left == b.left && a.isLeftClosed && !b.isLeftClosed);
  });
  Interval joined = intervals.front();
  for (const Interval& next : intervals) {
    if (next.left > joined.right) return std::nullopt;
    if (next.left == joined.right && !next.isLeftClosed && !joined.isRightClosed &&
        &next != &intervals.front()) {
      holes.push_back(next.leftText);
    }
    const bool isFurther = next.right > joined.right || (next.right == joined.right && next.isRightClosed);
    if (!isFurther) continue;
    joined.right = next.right;
    joined.isRightClosed = next.isRightClosed;
    joined.rightText = next.rightText;
  }
  return joined;
}

void JoinIntervals(DOMDocument& document, Applied& applied) {
  for (DOMElement* field : ElementsOf(document, Tags::XML_ELE_DATAFIELD)) {
    const auto elements = ChildrenOf(*field, Tags::XML_ELE_INTERVAL);
    if (elements.size() < 2) continue;
    std::vector<Interval> intervals;
    for (const DOMElement* element : elements) {
      if (const auto interval = ReadInterval(*element)) intervals.push_back(*interval);
    }
    std::vector<std::string> holes;
    const auto joined = intervals.size() == elements.size() ? Join(intervals, holes) : std::nullopt;
    if (!joined.has_value()) continue;
    Note(applied, *field, std::to_string(elements.size()) + " intervals are joined to one");
    DOMElement& first = *elements.front();
    SetAttribute(
        first, Tags::XML_ATT_INTERVAL_CLOSURE,
        std::string(joined->isLeftClosed ? "closed" : "open") + (joined->isRightClosed ? "Closed" : "Open"));
    const auto setMargin = [&first](const char* name, const std::string& text) {
      text.empty() ? first.removeAttribute(KxXML_940::ToUTF16(name).c_str())
                   : SetAttribute(first, name, text);
    };
    setMargin(Tags::XML_ATT_INTERVAL_LEFTMARGIN, joined->leftText);
    setMargin(Tags::XML_ATT_INTERVAL_RIGHTMARGIN, joined->rightText);
    for (std::size_t i = 1; i < elements.size(); ++i) field->removeChild(elements[i])->release();
    for (const std::string& hole : holes) AppendValue(*field, hole, Tags::XML_VAL_PROP_INVALID);
  }
}

void StateValidValues(DOMDocument& document, Applied& applied) {
  for (DOMElement* field : ElementsOf(document, Tags::XML_ELE_DERIVEDFIELD)) {
    for (DOMElement* value : ChildrenOf(*field, Tags::XML_ELE_VALUE)) {
      if (!IsEmpty(Attribute(*value, Tags::XML_ATT_VALUE_PROPERTY))) continue;
      Note(applied, *value, "property is missing, set to 'valid'");
      SetAttribute(*value, Tags::XML_ATT_VALUE_PROPERTY, Tags::XML_VAL_PROP_VALID);
    }
  }
}

void StateTextConstants(DOMDocument& document, Applied& applied) {
  for (DOMElement* constant : ElementsOf(document, Tags::XML_ELE_CONSTANT)) {
    std::u16string buffer;
    const XMLCh* text = KxVeyra_940::TextOf(*constant, buffer);
    if (!IsEmpty(Attribute(*constant, Tags::XML_ATT_DATATYPE)) || IsEmpty(text) || NumberOf(text)) continue;
    Note(applied, *constant, "the constant '" + KxXML_940::ToUTF8(text) + "' is a text");
    SetAttribute(*constant, Tags::XML_ATT_DATATYPE, Tags::XML_VAL_STRING);
  }
}

void StateTargetLevels(DOMDocument& document, Applied& applied) {
  std::map<std::string, std::string> levels;
  for (const DOMElement* field : ElementsOf(document, Tags::XML_ELE_DATAFIELD)) {
    levels[OptionalText(*field, Tags::XML_ATT_DATAFIELD_NAME)] =
        OptionalText(*field, Tags::XML_ATT_DATAFIELD_OPTYPE);
  }
  for (DOMElement* target : ElementsOf(document, Tags::XML_ELE_TARGET)) {
    const auto level = levels.find(OptionalText(*target, Tags::XML_ATT_FIELD));
    if (!IsEmpty(Attribute(*target, Tags::XML_ATT_DATAFIELD_OPTYPE)) || level == levels.end()) continue;
    Note(applied, *target, "optype is missing, set to '" + level->second + "' as in the DataDictionary");
    SetAttribute(*target, Tags::XML_ATT_DATAFIELD_OPTYPE, level->second);
  }
}

// Prefixes first: the others know elements by their plain names.
constexpr Adaptation kAdaptations[] = {
    {"no-prefix", "elements with a namespace prefix are read by their plain names", DropPrefixes},
    {"field-count", "numberOfFields is set to the number of fields when it is missing or wrong", CountFields},
    {"boolean-field", "a boolean DataField is read as the texts 'true' and 'false'", WriteBooleansAsTexts},
    {"one-interval", "several intervals of a field that lie together are joined to one", JoinIntervals},
    {"valid-value", "a Value of a DerivedField without property is a valid one", StateValidValues},
    {"text-constant", "a Constant without dataType that is no number is a text", StateTextConstants},
    {"target-optype", "a Target without optype has that of its DataField", StateTargetLevels},
};

}  // namespace

std::span<const Adaptation> AllAdaptations() { return kAdaptations; }

std::vector<Applied> Adapt(DOMDocument& document) {
  std::vector<Applied> all;
  for (const Adaptation& adaptation : kAdaptations) {
    Applied applied{adaptation.name, {}, {}, 0};
    adaptation.apply(document, applied);
    if (applied.count > 0) all.push_back(std::move(applied));
  }
  return all;
}

std::string Describe(const Applied& applied) {
  std::string text = std::string(applied.name) + ": " + applied.what + ", in " + applied.path;
  if (applied.count > 1) text += " (and " + std::to_string(applied.count - 1) + " more)";
  return text;
}

}  // namespace VeyraTool
