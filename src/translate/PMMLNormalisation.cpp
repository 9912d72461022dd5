// Derived fields that normalise or delay one field, and the extensions that recode.

#include <memory>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "data/MissingValueSet.h"
#include "data/NumericValue.h"
#include "data/Range.h"
#include "error/Raise.h"
#include "transform/TransformVar.h"
#include "translate/DomReader.h"
#include "translate/InvalidRangeInternal.h"
#include "translate/PMMLTranslator.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

using namespace PMMLModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;

constexpr char kPositiveInteger[] = "positiveInteger";

TransformVar& Derived(ScoreDictVar* variable) { return static_cast<TransformVar&>(*variable); }

struct Point {
  double orig;
  double norm;
};

std::vector<Point> ReadPoints(const DOMElement& element) {
  std::vector<Point> points;
  ForEachChildElement(&element, [&](const DOMElement& child) {
    if (!HasTag(child, XML_ELE_LINEARNORM)) return;
    points.push_back({BaseTranslator::VerifyDouble(RequiredAttribute(child, XML_ATT_ORIG)),
                      BaseTranslator::VerifyDouble(RequiredAttribute(child, XML_ATT_NORM))});
  });
  return points;
}

void AddLine(TransformVar& variable, const Point& from, const Point& to) {
  const double run = to.orig - from.orig;
  if (run == 0) return variable.AddNormInfo(1, 0);
  variable.AddNormInfo((to.norm - from.norm) / run, (from.norm * to.orig - from.orig * to.norm) / run);
}

int CountBelow(const DOMElement& element, const char* tag) {
  int count = 0;
  ForEachElementBelow(element, tag, [&count](const DOMElement&) { ++count; });
  return count;
}

// The category that the element names; null when the field does not know it.  A field without listed values
// learns it.
std::unique_ptr<ScoreValue> ReadCategory(const PMMLTranslator& translator, const ScoreDictVar& field,
                                         const XMLCh* text) {
  if (field.IsEmptyCateValues()) {
    std::unique_ptr<ScoreValue> value(translator.CarefullyMakeVarValue(&field, text));
    // The dictionary is the caller's, who builds it.
    auto& learning = const_cast<ScoreDictVar&>(field);
    if (value != nullptr) learning.AddScoreValueLabel(value->Clone(), translator.EncodedText(text));
    return value;
  }
  std::unique_ptr<ScoreValue> value(field.ToMyValue(translator.EncodedText(text)));
  return field.IsValidValue(value.get()) ? std::move(value) : nullptr;
}

}  // namespace

std::string PMMLTranslator::HandleNormContinuous(DOMElement* element, ScoreDictVar* derived,
                                                 const ScoreDictionary* dataDictionary,
                                                 const ScoreDictionary* transformations) {
  if (CountBelow(*element, XML_ELE_LINEARNORM) < 2)
    Raise(MessageId::kMoreThanOneRequired, {XML_ELE_LINEARNORM, XML_ELE_DERIVEDFIELD});
  const XMLCh* const name = RequiredAttribute(*element, XML_ATT_FIELD);
  const ScoreDictVar& field = RequiredVariable(name, dataDictionary, transformations);
  if (field.GetMLevel() != ScoreDictVar::kContinuous)
    Raise(MessageId::kValueRequired, {XML_VAL_OT_CONTINUOUS, XML_ATT_DATAFIELD_OPTYPE, ToUTF8(name)});

  TransformVar& variable = Derived(derived);
  const std::vector<Point> points = ReadPoints(*element);
  for (const Point& point : points) variable.AddLinearNorm(point.orig, point.norm);
  for (std::size_t i = 1; i < points.size(); ++i) AddLine(variable, points[i - 1], points[i]);
  if (std::unique_ptr<ScoreValue> missing = OptionalValue(*element, XML_ATT_MISSREPVALUE, variable))
    variable.SetRecodeMissValueTo(missing.release());
  variable.SetOutlierTreatMent(ToUTF8(Attribute(*element, XML_ATT_MININGFIELD_OUTLIERS)));
  return field.GetName();
}

std::string PMMLTranslator::HandleNormDiscrete(DOMElement* element, ScoreDictVar* derived,
                                               const ScoreDictionary* dataDictionary,
                                               const ScoreDictionary* transformations) {
  const XMLCh* const name = RequiredAttribute(*element, XML_ATT_FIELD);
  const ScoreDictVar& field = RequiredVariable(name, dataDictionary, transformations);
  if (field.GetMLevel() == ScoreDictVar::kContinuous)
    Raise(MessageId::kConflictingValuesIn, {XML_VAL_OT_CONTINUOUS, XML_ATT_DATAFIELD_OPTYPE, ToUTF8(name),
                                            XML_ELE_NORMDISCRETE, XML_ATT_DATAFIELD_NAME, ToUTF8(name)});

  TransformVar& variable = Derived(derived);
  const XMLCh* const text = RequiredAttribute(*element, XML_ATT_VALUE);
  if (!IsEmpty(text)) {
    if (std::unique_ptr<ScoreValue> category = ReadCategory(*this, field, text))
      variable.AddEncodingMap(category.release(), new NumericValue(1));
  }
  variable.SetRecodeDefaultValue(new NumericValue(0));
  if (std::unique_ptr<ScoreValue> missing = OptionalValue(*element, XML_ATT_MISSREPVALUE, variable))
    variable.SetRecodeMissValueTo(missing.release());
  return field.GetName();
}

std::string PMMLTranslator::HandleLag(DOMElement* element, ScoreDictVar* derived,
                                      const ScoreDictionary* dataDictionary,
                                      const ScoreDictionary* transformations) {
  const ScoreDictVar& field =
      RequiredVariable(RequiredAttribute(*element, XML_ATT_FIELD), dataDictionary, transformations);
  const XMLCh* const text = Attribute(*element, XML_ATT_N);
  const int n = IsEmpty(text) ? 1 : VerifyInt(text);
  if (n < 1) Raise(MessageId::kInvalidValueOfType, {ToUTF8(text), kPositiveInteger});
  std::vector<const ScoreDictVar*> blocks;
  ForEachChildElement(element, [&](const DOMElement& child) {
    if (HasTag(child, XML_ELE_EXTENSION)) return;
    blocks.push_back(
        &RequiredVariable(RequiredAttribute(child, XML_ATT_FIELD), dataDictionary, transformations));
  });
  Derived(derived).SetLags(n, blocks);
  return field.GetName();
}

void PMMLTranslator::handleDerivedVarMissingValue(const DOMElement* extension, TransformVar* derived) const {
  auto missing = std::make_unique<MissingValueSet>();
  InvalidRange invalidRange;
  ForEachChildElement(extension, [&](const DOMElement& child) {
    if (HasTag(child, XML_ELE_VALUE)) {
      auto range = std::make_unique<Range>(
          CarefullyMakeVarValue(derived, RequiredAttribute(child, XML_ATT_VALUE_VALUE)));
      if (missing->Add(range.get())) static_cast<void>(range.release());
    } else if (HasTag(child, XML_ELE_INTERVAL)) {
      if (derived->GetVarType() != ScoreDictVar::kNUMERIC_VAR)
        Raise(MessageId::kConflictingElements,
              {XML_ELE_INTERVAL, std::string(XML_VAL_OT_CATEGORICAL) + "," + XML_VAL_OT_ORDINAL});
      handleInterval(derived, &child, missing.get(), 0);
    } else if (HasTag(child, XML_ELE_EXTENSION)) {
      invalidRange.Read(child);
    }
  });
  invalidRange.AddTo(*missing);
  delete derived->GetMissingValues();
  derived->SetMissingValues(nullptr);
  derived->SetMissingValues(missing.release());
}

void PMMLTranslator::HandleZENTExtensions(const DOMElement* extension, TransformVar* derived) const {
  const XMLCh* const name = Attribute(*extension, XML_ATT_EXT_NAME);
  if (EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_ELSECOPY)) {
    if (derived->GetRecodeDefaultValue() != nullptr)
      Raise(MessageId::kConflictingElements, {XML_ATT_DEFAULTVALUE, XML_ATT_TRAN_EXT_NAME_ELSECOPY});
    derived->SetRecodeElseCopy(true);
  } else if (EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_MISSINGCOPY)) {
    if (derived->GetRecodeMissValueRep() != nullptr)
      Raise(MessageId::kConflictingElements,
            {XML_ATT_TRAN_EXT_NAME_MAPSYSMISTO, XML_ATT_TRAN_EXT_NAME_MISSINGCOPY});
    derived->SetRecodeMissingCopy(true);
  } else if (EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_MAPSYSMISTO)) {
    if (derived->GetRecodeSysmisValueRep() != nullptr)
      Raise(MessageId::kConflictingElements,
            {XML_ATT_TRAN_EXT_NAME_MAPSYSMISTO, XML_ATT_TRAN_EXT_NAME_MAPSYSMISTO});
    derived->SetRecodeSysmisValue(
        CarefullyMakeVarValue(derived, RequiredAttribute(*extension, XML_ATT_EXT_VALUE)));
  } else if (EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_RECODEMISSINGSISMIS)) {
    if (derived->GetVarType() != ScoreDictVar::kNUMERIC_VAR)
      Raise(MessageId::kTypeMismatch,
            {XML_ATT_TRAN_EXT_NAME_RECODEMISSINGSISMIS, ToUTF8Argument(derived->GetName())});
    if (derived->GetRecodeMissValueRep() != nullptr || derived->IsRecodeMissingCopy() ||
        derived->GetRecodeSysmisValueRep() != nullptr)
      Raise(MessageId::kConflictingElements,
            {std::string(XML_ATT_TRAN_EXT_NAME_MAPSYSMISTO) + ", " + XML_ATT_TRAN_EXT_NAME_MISSINGCOPY +
                 ", " + XML_ATT_MISSREPVALUE,
             XML_ATT_TRAN_EXT_NAME_RECODEMISSINGSISMIS});
    derived->SetRecodeMissValueTo(new NumericValue);
  }
}

}  // namespace KxVeyra_940
