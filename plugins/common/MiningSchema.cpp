#include "common/MiningSchema.h"

#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "common/FieldFinder.h"
#include "common/FieldNumber.h"
#include "common/Keywords.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;
using xercesc::DOMElement;

namespace {

constexpr Keyword<Usage> kUsages[] = {
    {Tags::XML_ATT_MF_FUT_ACTIVE, Usage::kActive},
    {Tags::XML_ATT_MF_FUT_PREDICTED, Usage::kTarget},
    {Tags::XML_ATT_MF_FUT_TARGET, Usage::kTarget},
    {Tags::XML_ATT_MF_FUT_SUPPLEMENTARY, Usage::kSupplementary},
    // Roles that play no part when a case is scored.
    {StandardTags::XML_VAL_GROUP, Usage::kSupplementary},
    {Tags::XML_ATT_MF_FUT_ORDER, Usage::kSupplementary},
    {StandardTags::XML_VAL_FREQUENCYWEIGHT, Usage::kSupplementary},
    {StandardTags::XML_VAL_ANALYSISWEIGHT, Usage::kSupplementary},
};

constexpr Keyword<OutlierTreatment> kOutliers[] = {
    {Tags::XML_VAL_MININGFIELD_OUTLIERS_ASIS, OutlierTreatment::kAsIs},
    {Tags::XML_VAL_MININGFIELD_OUTLIERS_ASMISS, OutlierTreatment::kAsMissing},
    {Tags::XML_VAL_MININGFIELD_OUTLIERS_ASEXTREME, OutlierTreatment::kAsExtreme},
};

constexpr Keyword<InvalidTreatment> kInvalidTreatments[] = {
    {Tags::XML_ATT_RETURNINVALID, InvalidTreatment::kReturnInvalid},
    {Tags::XML_ATT_ASIS, InvalidTreatment::kAsIs},
    {Tags::XML_ATT_ASMISSING, InvalidTreatment::kAsMissing},
    {Tags::XML_VAL_MININGFIELD_MISSTREATMENT_ASVALUE, InvalidTreatment::kAsValue},
};

// The treatments but the last only say how the replacement was found.
constexpr Keyword<bool> kMissingTreatments[] = {
    {Tags::XML_VAL_MININGFIELD_MISSTREATMENT_ASIS, false},
    {Tags::XML_VAL_MININGFIELD_MISSTREATMENT_ASMEAN, false},
    {Tags::XML_VAL_MININGFIELD_MISSTREATMENT_ASMODE, false},
    {Tags::XML_VAL_MININGFIELD_MISSTREATMENT_ASMEDIAN, false},
    {Tags::XML_VAL_MININGFIELD_MISSTREATMENT_ASVALUE, false},
    {Tags::XML_ATT_RETURNINVALID, true},
};

// The attribute's value in the type of the field; null when the attribute is absent.
std::shared_ptr<const ScoreValue> OptionalValue(const PMMLTranslator& translator, const DOMElement& element,
                                                const char* name, const ScoreDictVar& field) {
  const XMLCh* text = FindAttribute(element, name);
  if (text == nullptr) return nullptr;
  if (field.GetVarType() == ScoreDictVar::kDATETIME_VAR)
    return ReadDateTime(field, translator.EncodedText(text));
  return std::shared_ptr<const ScoreValue>(translator.CarefullyMakeVarValue(&field, text));
}

MiningField ReadMiningField(const PMMLTranslator& translator, const DOMElement& element,
                            FieldFinder& fields) {
  MiningField field;
  const std::string name =
      translator.EncodedText(RequiredNonEmptyAttribute(element, Tags::XML_ATT_MININGFIELD_NAME));
  field.var = fields.Find(name);
  if (field.var == nullptr) Raise(MessageId::kMissingVariableIn, {name, Tags::XML_ELE_DATADICTIONARY});
  if (element.getAttributes()->getLength() == 1) return field;  // most fields have a name and nothing else
  field.usage = ReadKeyword(element, Tags::XML_ATT_MININGFIELD_USAGETYPE, kUsages);
  field.outliers = ReadKeyword(element, Tags::XML_ATT_MININGFIELD_OUTLIERS, kOutliers);
  field.lowValue = OptionalNumber(element, Tags::XML_ATT_MININGFIELD_LOWVALUE).value_or(field.lowValue);
  field.highValue = OptionalNumber(element, Tags::XML_ATT_MININGFIELD_HIGHVALUE).value_or(field.highValue);
  if (!(field.lowValue <= field.highValue)) {
    Raise(MessageId::kValuesMismatch,
          {OptionalText(element, Tags::XML_ATT_MININGFIELD_LOWVALUE), Tags::XML_ATT_MININGFIELD_LOWVALUE,
           OptionalText(element, Tags::XML_ATT_MININGFIELD_HIGHVALUE), Tags::XML_ATT_MININGFIELD_HIGHVALUE,
           Tags::XML_ELE_MININGFIELD});
  }
  if (field.outliers == OutlierTreatment::kAsExtreme) {
    field.lowBound = ValueOfRangeNumber(*field.var, field.lowValue);
    field.highBound = ValueOfRangeNumber(*field.var, field.highValue);
  }
  field.missingIsInvalid = ReadKeyword(element, Tags::XML_ATT_MININGFIELD_MISSTREATMENT, kMissingTreatments);
  field.missingReplacement =
      OptionalValue(translator, element, Tags::XML_ATT_MININGFIELD_MISSREPLACE, *field.var);
  field.invalidTreatment = ReadKeyword(element, Tags::XML_ATT_INVALIDVALUETREATMENT, kInvalidTreatments);
  field.invalidReplacement =
      OptionalValue(translator, element, StandardTags::XML_ATT_INVALIDVALUEREPLACEMENT, *field.var);
  if (field.invalidTreatment == InvalidTreatment::kAsValue && field.invalidReplacement == nullptr) {
    Raise(MessageId::kMissingAttributeOf,
          {StandardTags::XML_ATT_INVALIDVALUEREPLACEMENT, Tags::XML_ELE_MININGFIELD});
  }
  return field;
}

}  // namespace

MiningSchema ReadMiningSchema(const PMMLTranslator& translator, const DOMElement& model,
                              ScoreDictionary& dictionary) {
  const DOMElement* element = BaseTranslator::GetChildByTagForced(&model, Tags::XML_ELE_MININGSCHEMA);
  MiningSchema schema;
  FieldFinder fields(dictionary);
  ForEachChildElement(element, [&](const DOMElement& child) {
    if (!HasTag(child, Tags::XML_ELE_MININGFIELD)) return;
    schema.push_back(ReadMiningField(translator, child, fields));
  });
  return schema;
}

}  // namespace KxVeyra_940::Plugin
