#include "common/TransformedOutputs.h"

#include <xercesc/dom/DOMDocument.hpp>

#include "data/DictVar.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMElement;

namespace {

struct ReleaseNode {
  void operator()(DOMElement* element) const { element->release(); }
};
using OwnedElement = std::unique_ptr<DOMElement, ReleaseNode>;

void CopyAttribute(const DOMElement& from, DOMElement& to, const char* name, const char* otherwise) {
  const XMLCh* const text = Attribute(from, name);
  const XmlName standard(otherwise);
  to.setAttribute(XmlName(name).Get(), IsEmpty(text) ? standard.Get() : text);
}

// The output field as a derived field below an element of its own, which the document does not hold.
OwnedElement MakeDerivedField(const DOMElement& outputField) {
  xercesc::DOMDocument& document = *outputField.getOwnerDocument();
  OwnedElement list(document.createElement(XmlName(Tags::XML_ELE_LOCALTRANSFORMATIONS).Get()));
  DOMElement* const field = document.createElement(XmlName(Tags::XML_ELE_DERIVEDFIELD).Get());
  list->appendChild(field);
  const bool isText =
      BaseTranslator::IsEqual(Attribute(outputField, Tags::XML_ATT_DATATYPE), Tags::XML_VAL_STRING);
  CopyAttribute(outputField, *field, Tags::XML_ATT_NAME, "");
  CopyAttribute(outputField, *field, Tags::XML_ATT_DATATYPE, Tags::XML_VAL_DOUBLE);
  CopyAttribute(outputField, *field, Tags::XML_ATT_DATAFIELD_OPTYPE,
                isText ? Tags::XML_VAL_OT_CATEGORICAL : Tags::XML_VAL_OT_CONTINUOUS);
  bool hasExpression = false;
  ForEachChildElement(&outputField, [&](const DOMElement& child) {
    hasExpression = hasExpression || !HasTag(child, Tags::XML_ELE_EXTENSION);
    field->appendChild(child.cloneNode(true));
  });
  if (!hasExpression) Raise(MessageId::kNoChildElement, {PMMLTranslator::ToString(outputField.getTagName())});
  return list;
}

}  // namespace

TransformedOutputs::TransformedOutputs(const TransformedOutputs& other)
    : fGivenFields(other.fGivenFields->Clone()),
      fGiven(other.fGiven),
      fRecord(other.fRecord),
      fTransformations(static_cast<TransformationDictionary*>(other.fTransformations->Clone())) {
  for (const Transformed& field : other.fTransformed) {
    const ScoreDictVar* const var = fTransformations->GetVar(field.var->GetName());
    fTransformed.push_back({field.output, static_cast<const TransformVar*>(var)});
  }
}

void TransformedOutputs::AddGiven(const std::string& name, int output, bool isText) {
  auto var = std::make_unique<DictVar>(name, isText ? ScoreDictVar::STRING_VAR : ScoreDictVar::kNUMERIC_VAR);
  if (isText) {
    var->SetMLevel(ScoreDictVar::kNominal);
    var->SetEmptyCateValues(true);
  }
  if (fGivenFields->AddVar(name, var.get())) static_cast<void>(var.release());
  fRecord.Add(name, nullptr);
  fGiven.push_back(output);
}

void TransformedOutputs::AddTransformed(PMMLTranslator& translator, const DOMElement& outputField,
                                        int output) {
  const OwnedElement field = MakeDerivedField(outputField);
  translator.ExtendTransformationDictionary(*field, fGivenFields.get(), *fTransformations);
  const std::string& name = fTransformations->GetDerivedVarNames().back();
  fTransformed.push_back({output, static_cast<const TransformVar*>(fTransformations->GetVar(name))});
}

void TransformedOutputs::Finish() {
  if (!fTransformed.empty()) fTransformations->SetUpDerivedCaseRecord();
}

void TransformedOutputs::StoreGiven(const PluginResult& result) {
  for (std::size_t i = 0; i < fGiven.size(); ++i) {
    const int slot = static_cast<int>(i);
    const ScoreValue* const value = result.GetOutputValue(fGiven[i]);
    if (value == nullptr || value->IsSystemMissingValue()) {
      fRecord.Clear(slot);
    } else if (const StringValue* const text = AsString(value)) {
      fRecord.SetText(slot, text->GetText());
    } else {
      fRecord.SetValue(slot, value->GetDouble());
    }
  }
}

void TransformedOutputs::Fill(PluginResult& result) {
  if (fTransformed.empty()) return;
  StoreGiven(result);
  const ScoreCaseRecord* const made = fTransformations->GetValuesForDerivedVars(&fRecord, fGivenFields.get());
  for (const Transformed& field : fTransformed) {
    const ScoreValue* const value = made->Get(field.var->GetValueIndex());
    if (value == nullptr || value->IsSystemMissingValue()) continue;
    if (const StringValue* const text = AsString(value)) {
      if (!field.var->IsTextMissing()) result.SetOutputText(field.output, text->GetText());
    } else {
      result.SetOutputNumber(field.output, value->GetDouble());
    }
  }
}

}  // namespace KxVeyra_940::Plugin
