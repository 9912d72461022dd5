// The data dictionary: fields with their types, categories and missing values.

#include <unicode/stringoptions.h>
#include <unicode/ustring.h>
#include <cmath>
#include <memory>
#include <unordered_set>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLString.hpp>

#include "data/BaseDictionary.h"
#include "data/DictVar.h"
#include "data/MissingValueSet.h"
#include "data/NumericValue.h"
#include "data/Range.h"
#include "data/ScoreCatNumericEncoder.h"
#include "data/ScoreCatStringEncoder.h"
#include "data/ValueLabelSet.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "translate/InvalidRangeInternal.h"
#include "translate/OptypesInternal.h"
#include "translate/PMMLTranslator.h"
#include "translate/ValueSetsInternal.h"
#include "translate/VariablesInternal.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"
#include "xml/VeyraTranscoder.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {
namespace {

using namespace PMMLModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using KxXML_940::View;
using xercesc::DOMElement;
using xercesc::DOMNode;

constexpr char kExtensionOrValue[] = "Extension, Value";
constexpr char kInvalidRangePair[] = "invalidRangeLower, invalidRangeUpper";

// How far a closed margin is moved outwards, so that values that count as equal to it stay inside.
constexpr double kMarginTolerance = 1e-15;

constexpr int kLowerGiven = 1;
constexpr int kUpperGiven = 10;

constexpr int kEncoderRoom = 2;

struct DateTimeRow {
  const char* text;
  ScoreDictVar::DateTimeType type;
};
constexpr DateTimeRow kDateTimeTypes[] = {
    {XML_VAL_DATE, ScoreDictVar::kDate},
    {XML_VAL_TIME, ScoreDictVar::kTime},
    {XML_VAL_DATETIME, ScoreDictVar::kDateTime},
    {XML_VAL_DATEDAYSSINCE_0, ScoreDictVar::kDateDaysSince0},
    {XML_VAL_DATEDAYSSINCE_1960, ScoreDictVar::kDateDaysSince1960},
    {XML_VAL_DATEDAYSSINCE_1970, ScoreDictVar::kDateDaysSince1970},
    {XML_VAL_DATEDAYSSINCE_1980, ScoreDictVar::kDateDaysSince1980},
    {XML_VAL_TIMESECONDS, ScoreDictVar::kTimeSeconds},
    {XML_VAL_DATETIMESECONDSSINCE_0, ScoreDictVar::kDateTimeSecondsSince0},
    {XML_VAL_DATETIMESECONDSSINCE_1960, ScoreDictVar::kDateTimeSecondsSince1960},
    {XML_VAL_DATETIMESECONDSSINCE_1970, ScoreDictVar::kDateTimeSecondsSince1970},
    {XML_VAL_DATETIMESECONDSSINCE_1980, ScoreDictVar::kDateTimeSecondsSince1980},
};

// The text without distinction of letter case, by Unicode's folding.
std::u16string FoldCase(const XMLCh* text) {
  const std::u16string_view view = View(text);
  std::u16string folded(view);
  if (KxXML_940::IsAscii(view)) {
    for (char16_t& unit : folded)
      if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit + (u'a' - u'A'));
    return folded;
  }
  UErrorCode status = U_ZERO_ERROR;
  folded.resize(3 * view.size());  // no character folds to more than three units
  const int length = u_strFoldCase(folded.data(), static_cast<int>(folded.size()), view.data(),
                                   static_cast<int>(view.size()), U_FOLD_CASE_DEFAULT, &status);
  folded.resize(static_cast<std::size_t>(length));
  return folded;
}

void AddRange(ScoreMissingValueSet& set, double low, double high, bool lowIncluded, bool highIncluded) {
  AddRange(set, std::make_unique<Range>(low, high, lowIncluded, highIncluded));
}

struct Interval {
  double left;
  double right;
  bool isLeftClosed;
  bool isRightClosed;
};

Interval ReadInterval(const DOMElement& element) {
  const double infinity = NumericValue::GetInfinity();
  const XMLCh* closure = Attribute(element, XML_ATT_INTERVAL_CLOSURE);
  const bool isClosed = EqualsAscii(closure, XML_VAL_CLOSURE_CLOSEDCLOSED);
  return {OptionalNumber(element, XML_ATT_INTERVAL_LEFTMARGIN).value_or(-infinity),
          OptionalNumber(element, XML_ATT_INTERVAL_RIGHTMARGIN).value_or(infinity),
          isClosed || EqualsAscii(closure, XML_VAL_CLOSURE_CLOSEDOPEN),
          isClosed || EqualsAscii(closure, XML_VAL_CLOSURE_OPENCLOSED)};
}

// Reads one DataField into a variable.
class FieldReader {
 public:
  FieldReader(const PMMLTranslator& translator, const DOMElement& field, const XMLCh* name);

  // REQUIRES: it is called once.
  std::unique_ptr<DictVar> Read();

 private:
  bool IsContinuous() const { return fVariable->GetMLevel() == ScoreDictVar::kContinuous; }
  bool IsNumeric() const { return fVariable->GetVarType() == ScoreDictVar::kNUMERIC_VAR; }

  void ReadFieldExtension(const DOMElement& extension);
  void SetMeasure(const XMLCh* measure);
  void SetType();
  void ReadCategoricalChild(const DOMElement& child);
  void ReadContinuousChild(const DOMElement& child);
  void ReadValue(const DOMElement& element);
  void RefuseEmptyNumber(const DOMElement& element, bool isMissing) const;
  void ReadInterval(const DOMElement& element);
  void ReadValueExtension(const DOMElement& extension);
  void HandOver();
  void RefuseValidAndMissing() const;

  // The text in the translator's encoding.
  std::string Narrow(const XMLCh* text) const { return fTranslator.EncodedText(text); }

  const PMMLTranslator& fTranslator;
  const DOMElement& fField;
  std::unique_ptr<DictVar> fVariable;
  const XMLCh* fDataType;
  const XMLCh* fStorageType;
  bool fNoSpaceTrim = false;
  bool fHasInterval = false;
  InvalidRange fInvalidRange;
  std::vector<const XMLCh*> fValidTexts;
  std::vector<const XMLCh*> fMissingTexts;
  std::unique_ptr<ValueLabelSet> fLabels = std::make_unique<ValueLabelSet>();
  std::unique_ptr<MissingValueSet> fMissingValues = std::make_unique<MissingValueSet>();
};

FieldReader::FieldReader(const PMMLTranslator& translator, const DOMElement& field, const XMLCh* name)
    : fTranslator(translator),
      fField(field),
      fVariable(std::make_unique<DictVar>(translator.EncodedText(name), ScoreDictVar::kNUMERIC_VAR)),
      fDataType(Attribute(field, XML_ATT_DATATYPE)),
      fStorageType(Attribute(field, XML_ATT_STORAGETYPE)) {
  const XMLCh* label = Attribute(field, XML_ATT_DATAFIELD_DISPLAYNAME);
  fVariable->SetLabel(IsEmpty(label) ? fVariable->GetName() : Narrow(label));
}

std::unique_ptr<DictVar> FieldReader::Read() {
  fVariable->SetMLevel(LevelOf(RequiredNonEmptyAttribute(fField, XML_ATT_DATAFIELD_OPTYPE)));
  ForEachElementBelow(fField, XML_ELE_EXTENSION,
                      [this](const DOMElement& extension) { ReadFieldExtension(extension); });
  SetType();
  if (IsContinuous() && fVariable->IsString())
    Raise(MessageId::kConflictingValues,
          {XML_VAL_OT_CONTINUOUS, XML_ATT_DATAFIELD_OPTYPE, XML_VAL_STRING, XML_ATT_DATATYPE});

  ForEachChildElement(&fField, [this](const DOMElement& child) {
    IsContinuous() ? ReadContinuousChild(child) : ReadCategoricalChild(child);
  });
  HandOver();
  return std::move(fVariable);
}

// What an extension says about the field as a whole, wherever below the field it stands.
void FieldReader::ReadFieldExtension(const DOMElement& extension) {
  const XMLCh* name = Attribute(extension, XML_ATT_EXT_NAME);
  const XMLCh* value = Attribute(extension, XML_ATT_EXT_VALUE);
  if (EqualsAscii(name, PMMLStandardTags::XML_EXT_NAME_NOSPACETRIM)) {
    if (EqualsAscii(value, XML_ATT_EXT_VALUE_VALUE_TRUE)) fNoSpaceTrim = true;
  } else if (EqualsAscii(name, XML_ELE_XMEASURE) ||
             EqualsAscii(name, PMMLStandardTags::XML_EXT_NAME_MEASURE)) {
    SetMeasure(value);
  } else if (EqualsAscii(name, XML_ATT_STORAGETYPE) && IsEmpty(fStorageType)) {
    fStorageType = value;
  }
  PMMLTranslator::ParseUsageTypeExtension(&extension, fVariable.get());
}

void FieldReader::SetMeasure(const XMLCh* measure) {
  fVariable->SetXMeasure(Narrow(measure));
  if (!EqualsAscii(measure, XML_VAL_FLAG)) return;
  if (!fVariable->SetFlagVariable(true))
    Raise(MessageId::kTypeOnlySupportedBy, {XML_VAL_FLAG, XML_VAL_OT_CATEGORICAL});
}

void FieldReader::SetType() {
  const ScoreDictVar::DateTimeType dateTimeType = PMMLTranslator::ParseDateTimeType(fDataType);
  if (EqualsAscii(fStorageType, XML_VAL_STRING) || EqualsAscii(fDataType, XML_VAL_STRING)) {
    fVariable->SetVarType(ScoreDictVar::STRING_VAR);
  } else if (EqualsAscii(fDataType, XML_VAL_INTEGER)) {
    fVariable->SetNumericDataType(ScoreDictVar::kInteger);
  } else if (EqualsAscii(fDataType, XML_VAL_DOUBLE)) {
    fVariable->SetNumericDataType(ScoreDictVar::kDouble);
  } else if (dateTimeType != ScoreDictVar::kNoDateTime) {
    fVariable->SetVarType(ScoreDictVar::kDATETIME_VAR);
    fVariable->SetDateTimeType(dateTimeType);
  }
  // Both concern string variables only, which the variable knows itself.
  fVariable->SetNoSpaceTrim(fNoSpaceTrim);
  fVariable->SetEmptyStringOK(true);
}

void FieldReader::ReadCategoricalChild(const DOMElement& child) {
  if (HasTag(child, XML_ELE_VALUE)) return ReadValue(child);
  if (HasTag(child, XML_ELE_EXTENSION)) return ReadValueExtension(child);
  Raise(MessageId::kUnexpectedValue, {ToUTF8(child.getTagName()), kExtensionOrValue});
}

void FieldReader::ReadContinuousChild(const DOMElement& child) {
  if (HasTag(child, XML_ELE_VALUE)) return ReadValue(child);
  if (HasTag(child, XML_ELE_INTERVAL)) return ReadInterval(child);
  if (HasTag(child, XML_ELE_EXTENSION)) return ReadValueExtension(child);
}

bool IsMissingProperty(const XMLCh* property) {
  if (IsEmpty(property) || EqualsAscii(property, XML_VAL_PROP_VALID)) return false;
  if (EqualsAscii(property, XML_VAL_PROP_INVALID) || EqualsAscii(property, XML_VAL_PROP_MISSING)) return true;
  Raise(MessageId::kInvalidAttributeValueIn, {ToUTF8(property), XML_ATT_VALUE_PROPERTY, XML_ELE_VALUE});
}

// Invalid values count as missing ones.
void FieldReader::ReadValue(const DOMElement& element) {
  const XMLCh* text = RequiredAttribute(element, XML_ATT_VALUE_VALUE);
  const bool isMissing = IsMissingProperty(Attribute(element, XML_ATT_VALUE_PROPERTY));
  if (IsNumeric() && IsEmpty(text)) RefuseEmptyNumber(element, isMissing);

  std::unique_ptr<ScoreValue> value(fTranslator.CarefullyMakeVarValue(fVariable.get(), text));
  if (isMissing) {
    fMissingTexts.push_back(text);
    AddRange(*fMissingValues, std::make_unique<Range>(value.release()));
    return;
  }
  fValidTexts.push_back(text);
  const XMLCh* display = Attribute(element, XML_ATT_VALUE_DISPLAYVALUE);
  AddLabel(*fLabels, std::move(value), Narrow(IsEmpty(display) ? text : display));
}

// An empty number is reported as an empty attribute where the document shows that numbers are meant;
// elsewhere it is left to the check of the number.
void FieldReader::RefuseEmptyNumber(const DOMElement& element, bool isMissing) const {
  const bool isKnownNumeric = !IsEmpty(fDataType) || !IsEmpty(fStorageType) || !fValidTexts.empty();
  if (IsContinuous()) {
    if (!isMissing && isKnownNumeric)
      Raise(MessageId::kNullIn, {XML_ATT_VALUE_VALUE, ToUTF8(element.getTagName())});
  } else if (isMissing || isKnownNumeric) {
    Raise(MessageId::kInvalidAttributeValueIn, {"", XML_ATT_VALUE_VALUE, XML_ELE_MAPVALUES});
  }
}

void FieldReader::ReadInterval(const DOMElement& element) {
  if (fHasInterval) Raise(MessageId::kMoreThanOneIn, {XML_ELE_INTERVAL, XML_ELE_DATAFIELD});
  fHasInterval = true;
  PMMLTranslator::handleInterval(fVariable.get(), &element, fMissingValues.get(), 0);
}

// What a child extension says about formats and missing values.
void FieldReader::ReadValueExtension(const DOMElement& extension) {
  const XMLCh* name = Attribute(extension, XML_ATT_EXT_NAME);
  const XMLCh* value = Attribute(extension, XML_ATT_EXT_VALUE);
  if (EqualsAscii(name, XML_VAL_NAME_FORMAT)) {
    PMMLTranslator::VerifyInt(value);
  } else if (EqualsAscii(name, XML_VAL_NAME_WIDTH) || EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_STRINGLENGTH)) {
    const int width = PMMLTranslator::VerifyInt(value);
    if (width > 0 || IsContinuous()) fVariable->SetWidth(width);
  } else if (EqualsAscii(name, XML_VAL_NAME_DECIMAL)) {
    const int decimals = PMMLTranslator::VerifyInt(value);
    if (decimals >= 0 || IsContinuous()) fVariable->SetDecimal(decimals);
  } else if (EqualsAscii(name, PMMLStandardTags::XML_EXT_NAME_FLAGTYPETRUEVALUE) && !IsContinuous()) {
    fVariable->SetFalgTypeTrueValue(Narrow(value));
  } else {
    fInvalidRange.Read(extension);
  }

  if (!IsContinuous()) return;
  const DOMElement* first = FirstChildElement(&extension);
  if (first != nullptr && HasTag(*first, XML_ELE_XDATAFIELD))
    PMMLTranslator::handleTreeInterval(FirstChildElement(first), fMissingValues.get());
}

// Gives the variable its parts, then checks them: what is missing is for the complete variable to say.
void FieldReader::HandOver() {
  fInvalidRange.AddTo(*fMissingValues);
  RefuseValidAndMissing();
  if (fMissingValues->Size() > 0) fVariable->SetMissingValues(fMissingValues.release());
  if (fValidTexts.empty()) {
    fVariable->SetEmptyCateValues(true);
    return;
  }
  fVariable->SetValueLabels(fLabels.release());
  fTranslator.VerifyCategories(*fVariable);
}

void FieldReader::RefuseValidAndMissing() const {
  if (fValidTexts.empty() || fMissingTexts.empty()) return;
  std::unordered_set<std::u16string> valid;
  valid.reserve(fValidTexts.size());
  for (const XMLCh* text : fValidTexts) valid.insert(FoldCase(text));
  for (const XMLCh* text : fMissingTexts)
    if (valid.contains(FoldCase(text))) Raise(MessageId::kValidAndInvalid, {ToUTF8(text)});
}

// The element of a node; null when it is none.
const DOMElement* ElementOf(const DOMNode* node) {
  const bool isElement = node != nullptr && node->getNodeType() == DOMNode::ELEMENT_NODE;
  return isElement ? static_cast<const DOMElement*>(node) : nullptr;
}

void VerifyFieldCount(const DOMElement& dictionary, int found) {
  const int stated = PaddedInteger(RequiredNonEmptyAttribute(dictionary, XML_ATT_DATADICT_NUMBEROFFIELDS));
  if (stated != found)
    Raise(MessageId::kNumberMismatchIn, {std::to_string(stated), XML_ATT_DATADICT_NUMBEROFFIELDS,
                                         std::to_string(found), XML_ELE_DATAFIELD, XML_ELE_DATADICTIONARY});
}

// The set itself when it finds values through an index, else a copy that does.
const ValueLabelSet& IndexedSet(const ScoreValueLabelSet& set, ValueLabelSet& copy) {
  if (const auto* own = dynamic_cast<const ValueLabelSet*>(&set)) return *own;
  for (const ScoreValueLabel* label : set.GetAllValueLabels()) copy.Add(label->Clone());
  return copy;
}

// The position of the first category that is the same one to the variable; -1 when there is none.
int FindCategory(const ValueLabelSet& set, const ScoreDictVar& variable, const ScoreValue& value) {
  if (value.GetType() == ScoreValue::kStringValueType)
    return set.FindEqual(&value, variable.GetNoSpaceTrim(), variable.GetEmptyStringOK());
  return set.Find(&value);
}

}  // namespace

ScoreDictionary* PMMLTranslator::ParseDictionary(const DOMNode* node, bool setUpEncoders) {
  const DOMElement* element = ElementOf(node);
  if (element == nullptr) Raise(MessageId::kMissingNodeIn, {XML_ELE_DATADICTIONARY, XML_ELE_PMML});
  if (fTranscoder == nullptr) CreateTranscoder(fEncoding);

  auto dictionary = std::make_unique<BaseDictionary>();
  int fieldCount = 0;
  ForEachChildElement(element, [&](const DOMElement& child) {
    if (HasTag(child, XML_ELE_EXTENSION)) return;
    if (!HasTag(child, XML_ELE_DATAFIELD))
      Raise(MessageId::kInvalidNodeExpectedIn,
            {ToUTF8(child.getTagName()), XML_ELE_DATADICTIONARY, XML_ELE_EXTENSION});

    const XMLCh* nameText = RequiredNonEmptyAttribute(child, XML_ATT_DATAFIELD_NAME);
    AddVariable(*dictionary, *this, nameText, XML_ELE_DATADICTIONARY, [&] {
      std::unique_ptr<DictVar> variable = FieldReader(*this, child, nameText).Read();
      if (setUpEncoders && variable->IsString()) SetupCatEncoder(variable.get());
      return variable;
    });
    ++fieldCount;
  });
  VerifyFieldCount(*element, fieldCount);
  return dictionary.release();
}

ScoreDictVar::DateTimeType PMMLTranslator::ParseDateTimeType(const XMLCh* text) {
  for (const DateTimeRow& row : kDateTimeTypes)
    if (EqualsAscii(text, row.text)) return row.type;
  return ScoreDictVar::kNoDateTime;
}

void PMMLTranslator::ParseUsageTypeExtension(const DOMElement* extension, ScoreDictVar* variable) {
  ForEachChildElement(extension, [&](const DOMElement& child) {
    if (HasTag(child, XML_ATT_EXTENSION_USAGETYPE) &&
        EqualsAscii(Attribute(child, XML_ATT_EXT_VALUE), XML_VAL_USAGETYPE_DISABLE))
      variable->SetUsageType(false);
  });
}

void PMMLTranslator::handleInterval(const ScoreDictVar*, const DOMElement* interval,
                                    ScoreMissingValueSet* missingValues, int) {
  const double infinity = NumericValue::GetInfinity();
  auto [left, right, isLeftClosed, isRightClosed] = ReadInterval(*interval);
  if (std::isfinite(left)) {
    if (isLeftClosed) left -= std::fabs(left) * kMarginTolerance;
    AddRange(*missingValues, -infinity, left, true, !isLeftClosed);
  }
  if (std::isfinite(right)) {
    if (isRightClosed) right += std::fabs(right) * kMarginTolerance;
    AddRange(*missingValues, right, infinity, !isRightClosed, true);
  }
}

void PMMLTranslator::handleTreeInterval(const DOMElement* interval, ScoreMissingValueSet* missingValues) {
  if (interval == nullptr) return;
  const Interval range = ReadInterval(*interval);
  AddRange(*missingValues, range.left, range.right, range.isLeftClosed, range.isRightClosed);
}

bool PMMLTranslator::HandleZENTMissingInterval(ScoreMissingValueSet* missingValues, int code, double lower,
                                               double upper) {
  if (code == 0) return false;
  if (code != kLowerGiven && code != kUpperGiven && code != kLowerGiven + kUpperGiven)
    Raise(MessageId::kMoreThanOneIn, {kInvalidRangePair, XML_ELE_VALUE});
  AddRange(*missingValues, lower, upper, true, true);
  return true;
}

bool PMMLTranslator::SetupCatEncoder(ScoreDictVar* variable) {
  if (variable->GetMLevel() == ScoreDictVar::kContinuous) return false;
  if (variable->GetEncoder() == nullptr) {
    if (variable->GetVarType() == ScoreDictVar::kNUMERIC_VAR) {
      variable->SetEncoder(new ScoreCatNumericEncoder(kEncoderRoom));
    } else {
      auto encoder = std::make_unique<ScoreCatStringEncoder>(kEncoderRoom);
      encoder->SetEmptyStringOK(variable->GetEmptyStringOK());
      encoder->SetNoSpaceTrim(variable->GetNoSpaceTrim());
      variable->SetEncoder(encoder.release());
    }
  }
  const ScoreValueLabelSet* labels = variable->GetValueLabels();
  if (labels == nullptr) return true;
  for (const ScoreValueLabel* label : labels->GetAllValueLabels())
    variable->GetEncoder()->Encode(label->GetValue());
  return true;
}

void PMMLTranslator::VerifyCategories(const ScoreDictVar& variable) const {
  const ScoreValueLabelSet* set = variable.GetValueLabels();
  if (set == nullptr) return;
  if (variable.IsFlagVariable() && set->Size() > 2)
    Raise(MessageId::kMoreThanTwo, {XML_VAL_OT_CATEGORICAL, XML_VAL_FLAG});

  const std::vector<ScoreValueLabel*>& labels = set->GetAllValueLabels();
  for (const ScoreValueLabel* label : labels) {
    if (variable.IsMissingValue(label->GetValue()))
      Raise(MessageId::kValueIsMissing,
            {ToUTF8Argument(label->GetLabel()), ToUTF8Argument(variable.GetName())});
  }

  ValueLabelSet copy;
  const ValueLabelSet& indexed = IndexedSet(*set, copy);
  for (int i = 0; i < indexed.Size(); ++i) {
    const ScoreValue* value = labels[static_cast<std::size_t>(i)]->GetValue();
    const int first = FindCategory(indexed, variable, *value);
    if (first >= 0 && first < i)
      Raise(MessageId::kDuplicateValueIn,
            {XML_ATT_VALUE_VALUE, ToUTF8Argument(value->GetString()), XML_ELE_DATADICTIONARY});
  }
}

}  // namespace KxVeyra_940
