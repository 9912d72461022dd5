// Derived fields: the dictionary of them, references, constants and value lists.

#include <memory>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "data/ValueLabelSet.h"
#include "data/ValueLbl.h"
#include "error/Raise.h"
#include "transform/TransformVar.h"
#include "transform/TransformationDictionary.h"
#include "translate/DomReader.h"
#include "translate/OptypesInternal.h"
#include "translate/PMMLTranslator.h"
#include "translate/VariablesInternal.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/VeyraTranscoder.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

using namespace PMMLModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;
using Dictionary = TransformationDictionary;

// The expressions whose reader returns the name of a source field.
struct FieldExpressionRow {
  const char* tag;
  Dictionary::TransExpression expression;
  std::string (PMMLTranslator::*read)(DOMElement*, ScoreDictVar*, const ScoreDictionary*,
                                      const ScoreDictionary*);
};
constexpr FieldExpressionRow kFieldExpressions[] = {
    {XML_ELE_NORMCONTINUOUS, Dictionary::TE_NORMCONTINUOUS, &PMMLTranslator::HandleNormContinuous},
    {XML_ELE_NORMDISCRETE, Dictionary::TE_NORMDISCRETE, &PMMLTranslator::HandleNormDiscrete},
    {XML_ELE_DISCRETIZE, Dictionary::TE_DISCRETIZE, &PMMLTranslator::HandleDiscritize},
    {XML_ELE_MAPVALUES, Dictionary::TE_MAPVALUES, &PMMLTranslator::HandleMapValues},
    {XML_ELE_LAG, Dictionary::TE_LAG, &PMMLTranslator::HandleLag},
};

// Reads one DerivedField.
class DerivedFieldReader {
 public:
  DerivedFieldReader(PMMLTranslator& translator, const DOMElement& field,
                     const ScoreDictionary* dataDictionary, const Dictionary& dictionary)
      : fTranslator(translator), fField(field), fDataDictionary(dataDictionary), fDictionary(dictionary) {}

  std::unique_ptr<TransformVar> Read();

 private:
  void ReadType();
  void ReadChild(DOMElement& child);
  void ReadExtension(const DOMElement& extension);
  void ReadValues();
  // False for what is no expression.
  bool ReadExpression(DOMElement& element);
  void ReadFieldExpression(const FieldExpressionRow& row, DOMElement& element);

  PMMLTranslator& fTranslator;
  const DOMElement& fField;
  const ScoreDictionary* fDataDictionary;
  const Dictionary& fDictionary;
  std::unique_ptr<TransformVar> fVariable;
  bool fHasValues = false;
  bool fHasExpression = false;
};

std::unique_ptr<TransformVar> DerivedFieldReader::Read() {
  const XMLCh* const nameText = RequiredNonEmptyAttribute(fField, XML_ATT_DATAFIELD_NAME);
  const std::string name = NameOf(fTranslator, nameText);
  const bool isInData = fDataDictionary != nullptr && fDataDictionary->GetVar(name) != nullptr;
  if (isInData || fDictionary.GetVar(name) != nullptr)
    Raise(MessageId::kDuplicateVariableIn, {ToUTF8(nameText), XML_ELE_DATADICTIONARY});
  fVariable = std::make_unique<TransformVar>(name, ScoreDictVar::kNUMERIC_VAR);
  const XMLCh* const label = Attribute(fField, XML_ATT_DATAFIELD_DISPLAYNAME);
  fVariable->SetLabel(IsEmpty(label) ? name : fTranslator.EncodedText(label));
  ReadType();
  ForEachChildElement(&fField,
                      [this](const DOMElement& child) { ReadChild(const_cast<DOMElement&>(child)); });
  return std::move(fVariable);
}

void DerivedFieldReader::ReadType() {
  const XMLCh* const optype = Attribute(fField, XML_ATT_DATAFIELD_OPTYPE);
  if (IsEmpty(optype)) Raise(MessageId::kNullIn, {XML_ATT_DATAFIELD_OPTYPE, XML_ELE_DERIVEDFIELD});
  fVariable->SetMLevel(LevelOf(optype));

  const XMLCh* const dataType = RequiredAttribute(fField, XML_ATT_DATATYPE);
  const ScoreDictVar::DateTimeType dateTimeType = PMMLTranslator::ParseDateTimeType(dataType);
  if (EqualsAscii(dataType, XML_VAL_STRING)) {
    fVariable->SetVarType(ScoreDictVar::STRING_VAR);
    if (fVariable->GetMLevel() == ScoreDictVar::kContinuous)
      Raise(MessageId::kConflictingValues,
            {XML_VAL_OT_CONTINUOUS, XML_ATT_DATAFIELD_OPTYPE, XML_VAL_STRING, XML_ATT_DATATYPE});
  } else if (EqualsAscii(dataType, XML_VAL_INTEGER)) {
    fVariable->SetNumericDataType(ScoreDictVar::kInteger);
  } else if (EqualsAscii(dataType, XML_VAL_DOUBLE)) {
    fVariable->SetNumericDataType(ScoreDictVar::kDouble);
  } else if (dateTimeType != ScoreDictVar::kNoDateTime) {
    fVariable->SetVarType(ScoreDictVar::kDATETIME_VAR);
    fVariable->SetDateTimeType(dateTimeType);
  }
}

void DerivedFieldReader::ReadChild(DOMElement& child) {
  if (HasTag(child, XML_ELE_EXTENSION)) return ReadExtension(child);
  if (HasTag(child, XML_ELE_VALUE)) return ReadValues();
  if (HasTag(child, XML_ELE_AGGREGATE))
    Raise(MessageId::kUnsupportedValue, {XML_ELE_AGGREGATE, XML_ATT_DATAFIELD_NAME});
  if (!ReadExpression(child) && !fHasValues)
    Raise(MessageId::kInvalidAttributeValue, {ToUTF8(child.getTagName()), XML_ATT_DATAFIELD_NAME});
}

void DerivedFieldReader::ReadExtension(const DOMElement& extension) {
  const XMLCh* const name = Attribute(extension, XML_ATT_EXT_NAME);
  if (EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_MISSINGVALUES)) {
    fTranslator.handleDerivedVarMissingValue(&extension, fVariable.get());
  } else if (EqualsAscii(name, XML_VAL_NAME_WIDTH) || EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_STRINGLENGTH)) {
    const int width = PMMLTranslator::VerifyInt(Attribute(extension, XML_ATT_EXT_VALUE));
    if (width > 0) fVariable->SetWidth(width);
  }
  PMMLTranslator::ParseUsageTypeExtension(&extension, fVariable.get());
}

// The first "Value" stands for all of them.
void DerivedFieldReader::ReadValues() {
  if (std::exchange(fHasValues, true)) return;
  fTranslator.HandleValueList(&fField, fVariable.get());
  for (const ScoreValueLabel* label : fVariable->GetValueLabels()->GetAllValueLabels()) {
    if (fVariable->IsMissingValue(label->GetValue()))
      Raise(MessageId::kValueIsMissing, {fTranslator.ToUTF8Argument(label->GetLabel()),
                                         fTranslator.ToUTF8Argument(fVariable->GetName())});
  }
}

bool DerivedFieldReader::ReadExpression(DOMElement& element) {
  const bool isApply = HasTag(element, XML_ELE_APPLY);
  const bool isFieldRef = HasTag(element, XML_ELE_FIELDREF);
  const bool isConstant = HasTag(element, XML_ELE_CONSTANT);
  const FieldExpressionRow* row = nullptr;
  for (const FieldExpressionRow& candidate : kFieldExpressions)
    if (HasTag(element, candidate.tag)) row = &candidate;
  if (!isApply && !isFieldRef && !isConstant && row == nullptr) return false;

  if (std::exchange(fHasExpression, true)) Raise(MessageId::kMoreThanOneExpression, {XML_ELE_DERIVEDFIELD});
  if (row != nullptr) {
    ReadFieldExpression(*row, element);
  } else if (isApply) {
    fVariable->AddFieldNameAndTransExpression({}, Dictionary::TE_APPLY);
    fVariable->SetRoot(
        fTranslator.HandleApply(&element, fVariable.get(), nullptr, fDataDictionary, &fDictionary));
  } else if (isFieldRef) {
    fVariable->AddFieldNameAndTransExpression(
        fTranslator.HandleFieldRef(&element, fDataDictionary, &fDictionary, fVariable.get()),
        Dictionary::TE_FIELDREF);
  } else {
    double number = 0;
    ScoreValue::ValueType type = ScoreValue::kNumericValueType;
    fVariable->AddFieldNameAndTransExpression({}, Dictionary::TE_CONSTANT);
    fVariable->SetConstString(fTranslator.HandelConstant(&element, number, type));
  }
  return true;
}

void DerivedFieldReader::ReadFieldExpression(const FieldExpressionRow& row, DOMElement& element) {
  const std::string field = (fTranslator.*row.read)(&element, fVariable.get(), fDataDictionary, &fDictionary);
  fVariable->AddFieldNameAndTransExpression(field, row.expression);
}

// Error 260114 when a constant has no text.
const XMLCh* TextOfConstant(const DOMElement& constant, std::u16string& buffer) {
  if (constant.getFirstChild() == nullptr) Raise(MessageId::kMissingNode, {XML_ELE_CONSTANT});
  return TextOf(constant, buffer);
}

}  // namespace

TransformationDictionary* PMMLTranslator::HandleTransformationDictionary(
    DOMElement* element, const ScoreDictionary* dataDictionary) {
  fNodeCounter = 0;
  InitFunctionMap();
  if (element == nullptr) return nullptr;
  auto dictionary = std::make_unique<Dictionary>();
  ExtendTransformationDictionary(*element, dataDictionary, *dictionary);
  return dictionary->GetDerivedVarNames().empty() ? nullptr : dictionary.release();
}

void PMMLTranslator::ExtendTransformationDictionary(const DOMElement& element,
                                                    const ScoreDictionary* dataDictionary,
                                                    TransformationDictionary& dictionary) {
  if (fTranscoder == nullptr) CreateTranscoder(fEncoding);
  if (fFunctions.empty()) InitFunctionMap();
  ForEachElementBelow(element, XML_ELE_DERIVEDFIELD, [&](const DOMElement& field) {
    std::unique_ptr<TransformVar> variable =
        DerivedFieldReader(*this, field, dataDictionary, dictionary).Read();
    const std::string name = variable->GetName();
    TakeVariable(dictionary, name, std::move(variable), Attribute(field, XML_ATT_DATAFIELD_NAME),
                 XML_ELE_DATADICTIONARY);
    dictionary.AddDerievedVarName(name);
  });
}

const ScoreDictVar* PMMLTranslator::FindVariable(const std::string& name,
                                                 const ScoreDictionary* dataDictionary,
                                                 const ScoreDictionary* transformations) {
  return FindField(name, dataDictionary, transformations);
}

const ScoreDictVar& PMMLTranslator::RequiredVariable(const XMLCh* name, const ScoreDictionary* dataDictionary,
                                                     const ScoreDictionary* transformations) const {
  const ScoreDictVar* const variable = FindVariable(EncodedText(name), dataDictionary, transformations);
  if (variable != nullptr) return *variable;
  Raise(MessageId::kMissingVariableInBoth, {ToUTF8(name), XML_ELE_DATADICTIONARY, XML_ELE_TRANSFORMATION});
}

std::unique_ptr<ScoreValue> PMMLTranslator::OptionalValue(const DOMElement& element, const char* attribute,
                                                          const ScoreDictVar& variable) const {
  const XMLCh* const text = Attribute(element, attribute);
  return std::unique_ptr<ScoreValue>(IsEmpty(text) ? nullptr : CarefullyMakeVarValue(&variable, text));
}

std::string PMMLTranslator::HandleFieldRef(DOMElement* fieldRef, const ScoreDictionary* dataDictionary,
                                           const ScoreDictionary* transformations,
                                           const ScoreDictVar* derivedVar) {
  const XMLCh* const field = RequiredAttribute(*fieldRef, XML_ATT_FIELD);
  const ScoreDictVar& variable = RequiredVariable(field, dataDictionary, transformations);
  if (derivedVar == nullptr) return variable.GetName();
  if (derivedVar->GetVarType() != variable.GetVarType())
    Raise(MessageId::kConflictingVariables, {ToUTF8(field), ToUTF8Argument(derivedVar->GetName())});
  std::unique_ptr<ScoreValue> replacement = OptionalValue(*fieldRef, XML_ATT_MISSREPVALUE, *derivedVar);
  const auto* const derived = dynamic_cast<const TransformVar*>(derivedVar);
  if (derived != nullptr && replacement != nullptr)
    const_cast<TransformVar*>(derived)->SetRecodeMissValueTo(replacement.release());
  return variable.GetName();
}

std::string PMMLTranslator::HandelConstant(const DOMElement* constant, double& number,
                                           ScoreValue::ValueType& type) const {
  number = NumericValue::GetSysmisValue();
  std::u16string buffer;
  const XMLCh* const text = TextOfConstant(*constant, buffer);
  const XMLCh* const dataType = Attribute(*constant, XML_ATT_DATATYPE);
  if (EqualsAscii(dataType, XML_VAL_STRING)) {
    type = ScoreValue::kStringValueType;
    return EncodedText(text);
  }
  number = VerifyDouble(text);
  const ScoreDictVar::DateTimeType dateTimeType = ParseDateTimeType(dataType);
  if (dateTimeType != ScoreDictVar::kNoDateTime) {
    type = ScoreValue::kDateTimeValueType;
    return DateTimeValue(number, dateTimeType).GetNumericString();
  }
  type = ScoreValue::kNumericValueType;
  return EncodedText(text);
}

ScoreValue* PMMLTranslator::HandelConstant(const DOMElement* constant) const {
  std::u16string buffer;
  const XMLCh* const text = TextOfConstant(*constant, buffer);
  const XMLCh* const dataType = Attribute(*constant, XML_ATT_DATATYPE);
  if (EqualsAscii(dataType, XML_VAL_STRING)) return new StringValue(EncodedText(text));
  const double number = VerifyDouble(text);
  const ScoreDictVar::DateTimeType dateTimeType = ParseDateTimeType(dataType);
  if (dateTimeType != ScoreDictVar::kNoDateTime) return new DateTimeValue(number, dateTimeType);
  return new NumericValue(number);
}

ScoreValue* PMMLTranslator::HandelConstantDefaultStringType(const DOMElement* constant) const {
  std::u16string buffer;
  const XMLCh* const text = TextOfConstant(*constant, buffer);
  const XMLCh* const dataType = Attribute(*constant, XML_ATT_DATATYPE);
  if (!IsEmpty(dataType) && !EqualsAscii(dataType, XML_VAL_STRING))
    Raise(MessageId::kInvalidAttributeValueIn, {ToUTF8(dataType), XML_ATT_DATATYPE, XML_ELE_CONSTANT});
  return new StringValue(EncodedText(text));
}

void PMMLTranslator::HandleValueList(const DOMElement* derivedField, TransformVar* variable) const {
  auto labels = std::make_unique<ValueLabelSet>();
  ForEachChildElement(derivedField, [&](const DOMElement& child) {
    if (!HasTag(child, XML_ELE_VALUE)) return;
    const XMLCh* const property = RequiredAttribute(child, XML_ATT_VALUE_PROPERTY);
    if (!EqualsAscii(property, XML_VAL_PROP_VALID))
      Raise(MessageId::kInvalidAttributeValueIn, {ToUTF8(property), XML_ATT_VALUE_PROPERTY, XML_ELE_VALUE});
    const XMLCh* const text = RequiredAttribute(child, XML_ATT_VALUE_VALUE);
    if (variable->GetVarType() == ScoreDictVar::kNUMERIC_VAR) VerifyDouble(text);
    const XMLCh* const display = Attribute(child, XML_ATT_VALUE_DISPLAYVALUE);
    const std::string label = EncodedText(IsEmpty(display) ? text : display);
    auto entry = std::make_unique<ValueLbl>(CarefullyMakeVarValue(variable, text), label);
    if (labels->Add(entry.get())) static_cast<void>(entry.release());
  });
  delete variable->GetValueLabels();
  variable->SetValueLabels(nullptr);
  variable->SetValueLabels(labels.release());
}

}  // namespace KxVeyra_940
