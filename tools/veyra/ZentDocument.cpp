#include "veyra/ZentDocument.h"

#include <algorithm>

#include "translate/BaseTranslator.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/ZENTModelTags.h"
#include "xml/XmlText.h"

namespace VeyraTool {

namespace Tags = KxVeyra_940::ZENTModelTags;
namespace PmmlTags = KxVeyra_940::PMMLModelTags;
using KxVeyra_940::BaseTranslator;
using KxVeyra_940::ForEachChildElement;
using xercesc::DOMElement;
using xercesc::DOMNode;

namespace {

bool HasTag(const DOMNode& node, const std::string& tag) { return KxVeyra_940::HasTag(node, tag.c_str()); }

std::string Text(const DOMElement& element, const std::string& attribute) {
  return KxVeyra_940::OptionalText(element, attribute.c_str());
}

const DOMElement* Child(const DOMElement& element, const std::string& tag) {
  return BaseTranslator::GetChildByTag(&element, tag.c_str());
}

std::string RangeText(const DOMElement& range) {
  std::string ends[2];
  std::size_t count = 0;
  ForEachChildElement(&range, [&](const DOMElement& end) {
    if (count < std::size(ends)) ends[count++] = Text(end, Tags::XML_ATT_VALUE);
  });
  return "[" + ends[0] + ", " + ends[1] + "]";
}

FieldSummary ReadVariable(const DOMElement& variable) {
  FieldSummary field;
  field.name = Text(variable, Tags::XML_ATT_NAME);
  field.label = Text(variable, Tags::XML_ATT_LABEL);
  field.type = Text(variable, Tags::XML_ATT_VR_STORAGE_TYPE);
  field.level = Text(variable, Tags::XML_ATT_VR_MEASUREMENT_LEVEL);
  ForEachChildElement(Child(variable, Tags::XML_ELE_CATEGORIES), [&](const DOMElement& category) {
    field.valid.push_back(
        {Text(category, Tags::XML_ATT_VALUE), Text(category, Tags::XML_ATT_CA_DISPLAY_VALUE)});
  });
  ForEachChildElement(Child(variable, Tags::XML_ELE_MISSING_VALUES), [&](const DOMElement& missing) {
    field.missing.push_back(HasTag(missing, Tags::XML_ELE_RANGE) ? RangeText(missing)
                                                                 : Text(missing, Tags::XML_ATT_VALUE));
  });
  return field;
}

}  // namespace

bool IsZent(const DOMElement& root) { return HasTag(root, Tags::XML_ELE_ZENTML); }

bool IsZentHeader(const DOMNode& childOfModel) {
  return HasTag(childOfModel, Tags::XML_ELE_PARAM_LIST) || HasTag(childOfModel, Tags::XML_ELE_FAC_LIST) ||
         HasTag(childOfModel, Tags::XML_ELE_COV_LIST);
}

const DOMElement* FindZentModel(const DOMElement& root) {
  const DOMElement* found = nullptr;
  KxVeyra_940::ForEachElementBelow(root, Tags::XML_ELE_REGRESS_MODEL.c_str(), [&](const DOMElement& model) {
    if (found == nullptr) found = &model;
  });
  return found;
}

std::vector<std::string> PredictorsOf(const DOMElement& model) {
  std::vector<std::string> names;
  for (const std::string& list : {Tags::XML_ELE_FAC_LIST, Tags::XML_ELE_COV_LIST}) {
    ForEachChildElement(Child(model, list), [&](const DOMElement& predictor) {
      if (HasTag(predictor, Tags::XML_ELE_PREDICTOR)) names.push_back(Text(predictor, Tags::XML_ATT_NAME));
    });
  }
  return names;
}

std::set<std::string_view> ZentVocabulary() {
  std::set<std::string_view> words;
#define VEYRA_TAG(name, text) \
  if (std::string_view(#name).starts_with("XML_ELE_")) words.insert(text);
#include "vocabulary/ZENTModelTags.def"
#undef VEYRA_TAG
  return words;
}

void SummariseZent(const DOMElement& root, DocumentSummary& summary) {
  for (const std::string& tag : {Tags::XML_ELE_REGRESS_MODEL, Tags::XML_ELE_DISCRIM_MODEL}) {
    KxVeyra_940::ForEachElementBelow(root, tag.c_str(), [&](const DOMElement& model) {
      summary.models.push_back({tag, "", "", "", Text(model, Tags::XML_ATT_RM_MODEL_TYPE)});
    });
  }
  const DOMElement* model = FindZentModel(root);
  const std::vector<std::string> predictors =
      model == nullptr ? std::vector<std::string>() : PredictorsOf(*model);
  const std::string target = model == nullptr ? std::string() : Text(*model, Tags::XML_ATT_RM_TARGET_VAR);
  ForEachChildElement(Child(root, Tags::XML_ELE_DICTIONARY), [&](const DOMElement& variable) {
    if (!HasTag(variable, Tags::XML_ELE_VARIABLE)) return;
    FieldSummary& field = summary.fields.emplace_back(ReadVariable(variable));
    if (std::ranges::find(predictors, field.name) != predictors.end())
      field.role = PmmlTags::XML_ATT_MF_FUT_ACTIVE;
    if (field.name == target) field.role = PmmlTags::XML_ATT_MF_FUT_TARGET;
  });
}

}  // namespace VeyraTool
