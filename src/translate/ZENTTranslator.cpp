#include "translate/ZENTTranslator.h"

#include <memory>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "data/BaseDictionary.h"
#include "data/DictVar.h"
#include "data/MissingValueSet.h"
#include "data/NumericValue.h"
#include "data/Range.h"
#include "data/ValueLabelSet.h"
#include "data/VarStats.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "translate/ValueSetsInternal.h"
#include "translate/VariablesInternal.h"
#include "vocabulary/ZENTModelTags.h"
#include "xml/VeyraTranscoder.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {
namespace {

using namespace ZENTModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;

struct LevelRow {
  const std::string& text;
  ScoreDictVar::MeasureLevel level;
};
const LevelRow kLevels[] = {
    {XML_VAL_ML_CONTINUOUS, ScoreDictVar::kContinuous},
    {XML_VAL_ML_ORDINAL, ScoreDictVar::kOrdinal},
    {XML_VAL_ML_NOMINAL, ScoreDictVar::kNominal},
};

ScoreDictVar::MeasureLevel ReadLevel(const DOMElement& element) {
  const XMLCh* text = RequiredNonEmptyAttribute(element, XML_ATT_VR_MEASUREMENT_LEVEL.c_str());
  for (const LevelRow& row : kLevels)
    if (EqualsAscii(text, row.text.c_str())) return row.level;
  Raise(MessageId::kInvalidAttributeValue, {ToUTF8(text), XML_ATT_VR_MEASUREMENT_LEVEL});
}

// Reads one "variable" element into a variable.  Of a part that is given twice the later one counts.
class VariableReader {
 public:
  VariableReader(const ZENTTranslator& translator, const DOMElement& element, const XMLCh* name);

  // REQUIRES: it is called once.
  std::unique_ptr<DictVar> Read();

 private:
  void ReadChild(const DOMElement& child);
  void ReadFormat(const DOMElement& format);
  void ReadStatistics(const DOMElement& statistics);
  void ReadMissingValues(const DOMElement& missingValues);
  void ReadCategories(const DOMElement& categories);
  std::unique_ptr<Range> ReadRange(const DOMElement& range) const;
  std::unique_ptr<ScoreValue> ReadMissingValue(const DOMElement& element) const;
  std::unique_ptr<ScoreValue> MakeValue(const XMLCh* text) const;
  void RefuseValidAndMissing() const;

  const ZENTTranslator& fTranslator;
  const DOMElement& fElement;
  const XMLCh* fName;
  std::unique_ptr<DictVar> fVariable;
};

VariableReader::VariableReader(const ZENTTranslator& translator, const DOMElement& element, const XMLCh* name)
    : fTranslator(translator), fElement(element), fName(name) {
  const bool isString = EqualsAscii(RequiredNonEmptyAttribute(element, XML_ATT_VR_STORAGE_TYPE.c_str()),
                                    XML_VAL_ST_STRING.c_str());
  fVariable = std::make_unique<DictVar>(translator.EncodedText(name),
                                        isString ? ScoreDictVar::STRING_VAR : ScoreDictVar::kNUMERIC_VAR);
  const XMLCh* label = Attribute(element, XML_ATT_LABEL.c_str());
  fVariable->SetLabel(IsEmpty(label) ? fVariable->GetName() : translator.EncodedText(label));
}

std::unique_ptr<DictVar> VariableReader::Read() {
  fVariable->SetMLevel(ReadLevel(fElement));
  if (fVariable->GetMLevel() == ScoreDictVar::kContinuous && fVariable->IsString())
    Raise(MessageId::kConflictingValues,
          {XML_VAL_ML_CONTINUOUS, XML_ATT_VR_MEASUREMENT_LEVEL, XML_VAL_ST_STRING, XML_ATT_VR_STORAGE_TYPE});
  ForEachChildElement(&fElement, [this](const DOMElement& child) { ReadChild(child); });
  RefuseValidAndMissing();
  if (fVariable->IsString()) ZENTTranslator::SetupCatEncoder(fVariable.get());
  return std::move(fVariable);
}

void VariableReader::ReadChild(const DOMElement& child) {
  if (HasTag(child, XML_ELE_FORMAT_SPEC.c_str())) return ReadFormat(child);
  if (HasTag(child, XML_ELE_VAR_STATS.c_str())) return ReadStatistics(child);
  if (HasTag(child, XML_ELE_MISSING_VALUES.c_str())) return ReadMissingValues(child);
  if (HasTag(child, XML_ELE_CATEGORIES.c_str())) return ReadCategories(child);
  Raise(MessageId::kInvalidTag, {ToUTF8(child.getTagName())});
}

void VariableReader::ReadFormat(const DOMElement& format) {
  fVariable->SetDecimal(PaddedInteger(Attribute(format, XML_ATT_FS_DECIMALS.c_str())));
  fVariable->SetWidth(PaddedInteger(Attribute(format, XML_ATT_FS_WIDTH.c_str())));
}

void VariableReader::ReadStatistics(const DOMElement& statistics) {
  const auto read = [&statistics](const std::string& name) {
    return NumberIfPresent(statistics, name.c_str()).value_or(NumericValue::gSysmisValue);
  };
  // One after the other: the first that is no number is the one that is told.
  const double min = read(XML_ATT_VS_MIN);
  const double max = read(XML_ATT_VS_MAX);
  const double mean = read(XML_ATT_VS_MEAN);
  const double deviation = read(XML_ATT_VS_SD);
  ReplacePart(*fVariable, &ScoreDictVar::GetVarStats, &ScoreDictVar::SetVarStats,
              std::make_unique<VarStats>(min, max, mean, deviation));
}

void VariableReader::ReadMissingValues(const DOMElement& missingValues) {
  auto set = std::make_unique<MissingValueSet>();
  ForEachChildElement(&missingValues, [&](const DOMElement& child) {
    if (HasTag(child, XML_ELE_CATEGORY.c_str())) {
      AddRange(*set, std::make_unique<Range>(ReadMissingValue(child).release()));
    } else if (HasTag(child, XML_ELE_RANGE.c_str())) {
      AddRange(*set, ReadRange(child));
    } else {
      Raise(MessageId::kInvalidTag, {ToUTF8(child.getTagName())});
    }
  });
  ReplacePart(*fVariable, &ScoreDictVar::GetMissingValues, &ScoreDictVar::SetMissingValues, std::move(set));
}

// The ends of a range are its first two child elements, whatever their tags.
std::unique_ptr<Range> VariableReader::ReadRange(const DOMElement& range) const {
  const DOMElement* low = FirstChildElement(&range);
  if (low == nullptr) Raise(MessageId::kMissingMinimum, {XML_ELE_CATEGORY, XML_ELE_RANGE});
  const DOMElement* high = NextSiblingElement(low);
  if (high == nullptr) Raise(MessageId::kMissingMaximum, {XML_ELE_CATEGORY, XML_ELE_RANGE});
  std::unique_ptr<ScoreValue> min = ReadMissingValue(*low);
  std::unique_ptr<ScoreValue> max = ReadMissingValue(*high);
  return std::make_unique<Range>(min.release(), max.release(), true, true);
}

std::unique_ptr<ScoreValue> VariableReader::ReadMissingValue(const DOMElement& element) const {
  const XMLCh* text = Attribute(element, XML_ATT_VALUE.c_str());
  if (IsEmpty(text)) Raise(MessageId::kMissingAttributeOf, {XML_ATT_VALUE, XML_ELE_CATEGORY});
  return MakeValue(text);
}

void VariableReader::ReadCategories(const DOMElement& categories) {
  auto labels = std::make_unique<ValueLabelSet>();
  ForEachChildElement(&categories, [&](const DOMElement& child) {
    if (!HasTag(child, XML_ELE_CATEGORY.c_str()))
      Raise(MessageId::kInvalidAttributeValue, {ToUTF8(child.getTagName()), XML_ELE_CATEGORY});
    const XMLCh* text = RequiredAttribute(child, XML_ATT_VALUE.c_str());
    const XMLCh* display = Attribute(child, XML_ATT_CA_DISPLAY_VALUE.c_str());
    AddLabel(*labels, MakeValue(text), fTranslator.EncodedText(IsEmpty(display) ? text : display));
  });
  ReplacePart(*fVariable, &ScoreDictVar::GetValueLabels, &ScoreDictVar::SetValueLabels, std::move(labels));
}

std::unique_ptr<ScoreValue> VariableReader::MakeValue(const XMLCh* text) const {
  return std::unique_ptr<ScoreValue>(fTranslator.CarefullyMakeVarValue(fVariable.get(), text));
}

void VariableReader::RefuseValidAndMissing() const {
  const ScoreValueLabelSet* set = fVariable->GetValueLabels();
  if (set == nullptr || fVariable->GetMissingValues() == nullptr) return;
  const std::vector<ScoreValueLabel*>& labels = set->GetAllValueLabels();
  if (labels.empty() && fVariable->GetMLevel() != ScoreDictVar::kContinuous)
    Raise(MessageId::kValueListRequired, {ToUTF8(fName)});
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (fVariable->IsMissingValue(labels[i]->GetValue()))
      Raise(MessageId::kNthValueIntersects, {std::to_string(i), ToUTF8(fName)});
  }
}

}  // namespace

ZENTTranslator::ZENTTranslator(const std::string& encoding) : fEncoding(encoding) {}
ZENTTranslator::~ZENTTranslator() = default;

ScoreModel* ZENTTranslator::ParseFromTree(xercesc::DOMDocument*, const std::string&) { return nullptr; }

ScoreDictionary* ZENTTranslator::ParseDictionary(const DOMElement* element) {
  if (element == nullptr) Raise(MessageId::kMissingNodeIn, {XML_ELE_DICTIONARY, XML_ELE_ZENTML});
  if (fTranscoder == nullptr) CreateTranscoder(fEncoding);

  auto dictionary = std::make_unique<BaseDictionary>();
  bool isEmpty = true;
  ForEachChildElement(element, [&](const DOMElement& child) {
    if (!HasTag(child, XML_ELE_VARIABLE.c_str()))
      Raise(MessageId::kInvalidNodeExpectedIn,
            {ToUTF8(child.getTagName()), XML_ELE_VARIABLE, XML_ELE_DICTIONARY});
    const XMLCh* nameText = RequiredNonEmptyAttribute(child, XML_ATT_NAME.c_str());
    VariableReader reader(*this, child, nameText);
    AddVariable(*dictionary, *this, nameText, XML_ELE_DICTIONARY.c_str(), [&] { return reader.Read(); });
    isEmpty = false;
  });
  if (isEmpty) Raise(MessageId::kNoChildElement, {XML_ELE_DICTIONARY});
  return dictionary.release();
}

bool ZENTTranslator::SetupCatEncoder(ScoreDictVar* variable) {
  return PMMLTranslator::SetupCatEncoder(variable);
}

}  // namespace KxVeyra_940
