#include "veyra/DocumentSummary.h"

#include <unordered_map>

#include "translate/BaseTranslator.h"
#include "translate/DomReader.h"
#include "translate/ModelElements.h"
#include "veyra/ZentDocument.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"
#include "xml/XmlText.h"

namespace VeyraTool {

namespace Tags = KxVeyra_940::PMMLModelTags;
namespace StandardTags = KxVeyra_940::PMMLStandardTags;
using KxVeyra_940::BaseTranslator;
using KxVeyra_940::ForEachChildElement;
using KxVeyra_940::ForEachElementBelow;
using KxVeyra_940::HasTag;
using KxVeyra_940::OptionalText;
using xercesc::DOMElement;

namespace {

std::string TextBelow(const DOMElement& element) {
  std::u16string buffer;
  const std::string text = KxXML_940::ToUTF8(KxVeyra_940::TextOf(element, buffer));
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(" \t\r\n") - begin + 1);
}

void ReadHeader(const DOMElement& root, DocumentSummary& summary) {
  const DOMElement* header = BaseTranslator::GetChildByTag(&root, Tags::XML_ELE_HEADER);
  if (header == nullptr) return;
  summary.description = OptionalText(*header, "description");
  ForEachChildElement(header, [&](const DOMElement& child) {
    if (HasTag(child, Tags::XML_ELE_TIMESTAMP)) summary.timestamp = TextBelow(child);
    if (!HasTag(child, Tags::XML_ELE_APPLICATION)) return;
    summary.application = OptionalText(child, Tags::XML_ATT_NAME);
    summary.applicationVersion = OptionalText(child, Tags::XML_ATT_VERSION);
  });
}

std::unordered_map<std::string, std::string> ReadRoles(const DOMElement* model) {
  std::unordered_map<std::string, std::string> roles;
  if (model == nullptr) return roles;
  ForEachChildElement(BaseTranslator::GetChildByTag(model, Tags::XML_ELE_MININGSCHEMA),
                      [&](const DOMElement& field) {
                        if (!HasTag(field, Tags::XML_ELE_MININGFIELD)) return;
                        std::string role = OptionalText(field, Tags::XML_ATT_MININGFIELD_USAGETYPE);
                        if (role.empty()) role = Tags::XML_ATT_MF_FUT_ACTIVE;
                        if (role == Tags::XML_ATT_MF_FUT_PREDICTED)
                          role = Tags::XML_ATT_MF_FUT_TARGET;  // its name in older documents
                        roles.emplace(OptionalText(field, Tags::XML_ATT_MININGFIELD_NAME), std::move(role));
                      });
  return roles;
}

FieldSummary ReadField(const DOMElement& element) {
  FieldSummary field;
  field.name = OptionalText(element, Tags::XML_ATT_DATAFIELD_NAME);
  field.label = OptionalText(element, Tags::XML_ATT_DATAFIELD_DISPLAYNAME);
  field.type = OptionalText(element, Tags::XML_ATT_DATATYPE);
  field.level = OptionalText(element, Tags::XML_ATT_DATAFIELD_OPTYPE);
  ForEachChildElement(&element, [&](const DOMElement& child) {
    if (HasTag(child, Tags::XML_ELE_INTERVAL)) {
      field.intervals.push_back({OptionalText(child, Tags::XML_ATT_INTERVAL_CLOSURE),
                                 OptionalText(child, Tags::XML_ATT_INTERVAL_LEFTMARGIN),
                                 OptionalText(child, Tags::XML_ATT_INTERVAL_RIGHTMARGIN)});
    }
    if (!HasTag(child, Tags::XML_ELE_VALUE)) return;
    std::string value = OptionalText(child, Tags::XML_ATT_VALUE_VALUE);
    const std::string property = OptionalText(child, Tags::XML_ATT_VALUE_PROPERTY);
    if (property == Tags::XML_VAL_PROP_MISSING) {
      field.missing.push_back(std::move(value));
    } else if (property == Tags::XML_VAL_PROP_INVALID) {
      field.invalid.push_back(std::move(value));
    } else {
      field.valid.push_back({std::move(value), OptionalText(child, Tags::XML_ATT_VALUE_DISPLAYVALUE)});
    }
  });
  return field;
}

DerivedFieldSummary ReadDerivedField(const DOMElement& element) {
  std::string expression;
  ForEachChildElement(&element, [&](const DOMElement& child) {
    if (HasTag(child, Tags::XML_ELE_EXTENSION) || HasTag(child, Tags::XML_ELE_VALUE) || !expression.empty())
      return;
    expression = KxXML_940::ToUTF8(child.getTagName());
    const std::string function = OptionalText(child, Tags::XML_ATT_APPLY_FUNCTION);
    if (!function.empty()) expression += " " + function;
  });
  return {OptionalText(element, Tags::XML_ATT_NAME), OptionalText(element, Tags::XML_ATT_DATATYPE),
          OptionalText(element, Tags::XML_ATT_DATAFIELD_OPTYPE), std::move(expression)};
}

void ReadDerivedFields(const DOMElement* list, DocumentSummary& summary) {
  ForEachChildElement(list, [&](const DOMElement& child) {
    if (HasTag(child, Tags::XML_ELE_DERIVEDFIELD)) summary.derivedFields.push_back(ReadDerivedField(child));
  });
}

void ReadOutputs(const DOMElement& model, DocumentSummary& summary) {
  const DOMElement* output = BaseTranslator::GetChildByTag(&model, Tags::XML_ELE_VAL_OUTPUT);
  ForEachChildElement(output, [&](const DOMElement& child) {
    if (!HasTag(child, StandardTags::XML_ELE_OUTPUTFIELD)) return;
    summary.outputs.push_back(
        {OptionalText(child, Tags::XML_ATT_NAME), OptionalText(child, Tags::XML_ATT_VAL_MINING_FEATURE),
         OptionalText(child, Tags::XML_ATT_VALUE_VALUE), OptionalText(child, Tags::XML_ATT_DATATYPE),
         OptionalText(child, StandardTags::XML_ATT_RANK),
         OptionalText(child, StandardTags::XML_ATT_TARGETFIELD)});
  });
}

}  // namespace

std::string OutputSummary::GetText() const {
  std::string text = feature.empty() ? Tags::XML_ATT_VAL_MINING_PREDICTEDVALUE : feature;
  if (!value.empty()) text += " of " + value;
  if (!rank.empty()) text += " of rank " + rank;
  if (!target.empty()) text += " for " + target;
  return text;
}

std::string IntervalSummary::GetText() const {
  return (closure.starts_with("closed") && !left.empty() ? "[" : "(") + (left.empty() ? "-inf" : left) +
         ", " + (right.empty() ? "inf" : right) + (closure.ends_with("Closed") && !right.empty() ? "]" : ")");
}

DocumentSummary Summarise(const DOMElement& root) {
  DocumentSummary summary;
  summary.root = KxXML_940::ToUTF8(root.getTagName());
  summary.version = OptionalText(root, Tags::XML_ATT_VERSION);
  if (IsZent(root)) {
    SummariseZent(root, summary);
    return summary;
  }
  ReadHeader(root, summary);
  const DOMElement* first = nullptr;
  ForEachChildElement(&root, [&](const DOMElement& child) {
    if (!KxVeyra_940::IsModelElement(child)) return;
    if (first == nullptr) first = &child;
    summary.models.push_back(
        {KxXML_940::ToUTF8(child.getTagName()), OptionalText(child, Tags::XML_ATT_MODELNAME),
         OptionalText(child, Tags::XML_ATT_FUNCTIONNAME), OptionalText(child, Tags::XML_ATT_MODELALGO),
         OptionalText(child, Tags::XML_ATT_RM_MODEL_TYPE)});
  });
  const auto roles = ReadRoles(first);
  ForEachChildElement(BaseTranslator::GetChildByTag(&root, Tags::XML_ELE_DATADICTIONARY),
                      [&](const DOMElement& child) {
                        if (!HasTag(child, Tags::XML_ELE_DATAFIELD)) return;
                        summary.fields.push_back(ReadField(child));
                        const auto role = roles.find(summary.fields.back().name);
                        if (role != roles.end()) summary.fields.back().role = role->second;
                      });
  ReadDerivedFields(BaseTranslator::GetChildByTag(&root, Tags::XML_ELE_TRANSFORMATION), summary);
  if (first == nullptr) return summary;
  ReadDerivedFields(BaseTranslator::GetChildByTag(first, Tags::XML_ELE_LOCALTRANSFORMATIONS), summary);
  ReadOutputs(*first, summary);
  return summary;
}

}  // namespace VeyraTool
