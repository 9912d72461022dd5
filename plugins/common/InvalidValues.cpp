#include "common/InvalidValues.h"

#include "data/DictVar.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMElement;

namespace {

// A field of the same type and text options without any values.
DictVar WithoutValues(const ScoreDictVar& field) {
  DictVar var(field.GetName(), field.GetVarType());
  var.SetDateTimeType(field.GetDateTimeType());
  var.SetNoSpaceTrim(field.GetNoSpaceTrim());
  var.SetEmptyStringOK(field.GetEmptyStringOK());
  return var;
}

// Whether the element says anything that makes values invalid.
bool HasInvalidValues(const DOMElement& dataField) {
  bool found = false;
  ForEachChildElement(&dataField, [&](const DOMElement& child) {
    found =
        found || HasTag(child, Tags::XML_ELE_INTERVAL) ||
        BaseTranslator::IsEqual(Attribute(child, Tags::XML_ATT_VALUE_PROPERTY), Tags::XML_VAL_PROP_INVALID);
  });
  return found;
}

}  // namespace

InvalidValues::InvalidValues(const PMMLTranslator& translator, const DOMElement& dataField,
                             const ScoreDictVar& field)
    : fInvalid(WithoutValues(field)), fMissing(WithoutValues(field)) {
  ForEachChildElement(&dataField, [&](const DOMElement& child) {
    if (HasTag(child, Tags::XML_ELE_INTERVAL)) {
      fOutsideInterval = std::make_unique<MissingValueSet>();
      PMMLTranslator::handleInterval(&field, &child, fOutsideInterval.get(), 0);
      return;
    }
    const XMLCh* property = Attribute(child, Tags::XML_ATT_VALUE_PROPERTY);
    const bool isInvalid = BaseTranslator::IsEqual(property, Tags::XML_VAL_PROP_INVALID);
    if (!isInvalid && !BaseTranslator::IsEqual(property, Tags::XML_VAL_PROP_MISSING)) return;
    const std::unique_ptr<ScoreValue> value(
        translator.CarefullyMakeVarValue(&field, Attribute(child, Tags::XML_ATT_VALUE_VALUE)));
    (isInvalid ? fInvalid : fMissing).Add(*value);
  });
}

bool InvalidValues::Contains(const ScoreValue& value) const {
  if (fInvalid.Find(value) != kNoCategory) return true;
  if (fOutsideInterval == nullptr || fMissing.Find(value) != kNoCategory) return false;
  return fOutsideInterval->Covers(&value);
}

InvalidValuesByField ReadInvalidValues(const PMMLTranslator& translator, const DOMElement* dataDictionary,
                                       const ScoreDictionary& dictionary) {
  InvalidValuesByField fields;
  ForEachChildElement(dataDictionary, [&](const DOMElement& dataField) {
    if (!HasTag(dataField, Tags::XML_ELE_DATAFIELD) || !HasInvalidValues(dataField)) return;
    const std::string name = translator.EncodedText(Attribute(dataField, Tags::XML_ATT_DATAFIELD_NAME));
    const ScoreDictVar* field = dictionary.GetVar(name);
    if (field == nullptr) return;
    fields.emplace(name, std::make_shared<const InvalidValues>(translator, dataField, *field));
  });
  return fields;
}

}  // namespace KxVeyra_940::Plugin
