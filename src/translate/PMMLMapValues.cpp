// Derived fields that look their value up in a table.

#include <memory>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLString.hpp>

#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "error/ProcessState.h"
#include "error/Raise.h"
#include "transform/InlineTable.h"
#include "transform/MapValues.h"
#include "transform/TransformVar.h"
#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "veyra/VYException.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

using namespace PMMLModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;

constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);
constexpr int kUnknownFieldCode = 1;
constexpr char kNotPredefined[] = ": not predefined!";

using Values = std::vector<std::unique_ptr<ScoreValue>>;

// Reads one MapValues.
class MapReader {
 public:
  MapReader(const PMMLTranslator& translator, TransformVar& variable, const ScoreDictionary* dataDictionary,
            const ScoreDictionary* transformations)
      : fTranslator(translator),
        fVariable(variable),
        fDataDictionary(dataDictionary),
        fTransformations(transformations),
        fMap(new MapValues(&variable)) {
    fVariable.SetMapValues(fMap);
  }

  // The name of the last field that feeds the map.
  std::string Read(const DOMElement& element);

 private:
  // A key column of the table, as the first row has it.
  struct Column {
    const XMLCh* tag;
    const ScoreDictVar* field;
  };

  void ReadValues(const DOMElement& element);
  void ReadPair(const DOMElement& pair);
  void ReadTable(const DOMElement& table);
  void ReadMapExtension(const DOMElement& extension);
  void AddMissingTarget(const DOMElement& extension);
  void ReadRow(const DOMElement& row, InlineTable& table);
  std::size_t NewColumn(const DOMElement& cell, InlineTable& table);
  std::size_t PlaceOf(const DOMElement& cell, std::size_t expected) const;
  std::unique_ptr<ScoreValue> ReadCell(const DOMElement& cell, const ScoreDictVar& field);
  [[noreturn]] void RefuseColumn() const;
  [[noreturn]] static void RefuseWidth(const XMLCh* column);

  const PMMLTranslator& fTranslator;
  TransformVar& fVariable;
  const ScoreDictionary* fDataDictionary;
  const ScoreDictionary* fTransformations;
  MapValues* fMap;  // the variable's
  const XMLCh* fOutputColumn = nullptr;
  const XMLCh* fFieldText = nullptr;  // the last field named, and its column
  const XMLCh* fKeyColumn = nullptr;
  const ScoreDictVar* fLastField = nullptr;
  std::string fFieldName;
  std::vector<Column> fColumns;  // of the table being read, none before its first row
  std::u16string fBuffer;
};

std::string MapReader::Read(const DOMElement& element) {
  ReadValues(element);
  fOutputColumn = RequiredAttribute(element, XML_ATT_MAPVALUES_OUTCOLUMN);
  fMap->SetOutputColumn(fTranslator.EncodedText(fOutputColumn));
  fMap->SetDataType(fVariable.GetVarType());
  ForEachChildElement(&element, [this](const DOMElement& child) {
    if (HasTag(child, XML_ELE_FIELDCOLPAIR)) return ReadPair(child);
    if (HasTag(child, XML_ELE_INLTABLE)) return ReadTable(child);
    if (HasTag(child, XML_ELE_EXTENSION)) return ReadMapExtension(child);
    if (HasTag(child, XML_ELE_TABLELOCATOR)) return;
    Raise(MessageId::kInvalidAttributeValueIn,
          {ToUTF8(child.getTagName()), XML_ATT_DATAFIELD_NAME, XML_ELE_MAPVALUES});
  });
  return fFieldName;
}

// The variable and its map each own a value.
void MapReader::ReadValues(const DOMElement& element) {
  if (std::unique_ptr<ScoreValue> missing =
          fTranslator.OptionalValue(element, XML_ATT_MISSREPVALUE, fVariable)) {
    fMap->SetMapMissingTo(missing->Clone());
    fVariable.SetRecodeMissValueTo(missing.release());
  }
  if (std::unique_ptr<ScoreValue> other =
          fTranslator.OptionalValue(element, XML_ATT_DEFAULTVALUE, fVariable)) {
    fMap->SetDefaultValue(other->Clone());
    fVariable.SetRecodeDefaultValue(other.release());
  }
}

void MapReader::ReadPair(const DOMElement& pair) {
  fFieldText = RequiredAttribute(pair, XML_ATT_FIELD);
  fFieldName = fTranslator.EncodedText(fFieldText);
  fLastField = PMMLTranslator::FindVariable(fFieldName, fDataDictionary, fTransformations);
  if (fLastField == nullptr)
    throw VYException(kUnknownFieldCode, ToUTF8(fFieldText) + kNotPredefined, &gErrorFormater);
  fKeyColumn = Attribute(pair, XML_ATT_FIELDCOLPAIR_COLUMN);
  fMap->AddRefVar(fLastField);
  fMap->AddFieldColumnPair(fFieldName, ToUTF8(fKeyColumn));
}

// A value of the last field that gives the system-missing number.
void MapReader::AddMissingTarget(const DOMElement& extension) {
  if (fVariable.GetVarType() != ScoreDictVar::kNUMERIC_VAR)
    Raise(MessageId::kTypeMismatch,
          {XML_ATT_TRAN_EXT_NAME_RECODETARGETSYSMIS, fTranslator.ToUTF8Argument(fVariable.GetName())});
  const XMLCh* const text = Attribute(extension, XML_ATT_EXT_VALUE);
  const bool isNumber = fLastField != nullptr && fLastField->GetVarType() == ScoreDictVar::kNUMERIC_VAR;
  auto value = isNumber ? std::unique_ptr<ScoreValue>(new NumericValue(BaseTranslator::VerifyDouble(text)))
                        : std::make_unique<StringValue>(fTranslator.EncodedText(text));
  fVariable.AddEncodingMap(value.release(), new NumericValue);
}

void MapReader::ReadMapExtension(const DOMElement& extension) {
  if (!EqualsAscii(Attribute(extension, XML_ATT_EXT_NAME), XML_ATT_TRAN_EXT_NAME_RECODETARGETSYSMIS))
    return fTranslator.HandleZENTExtensions(&extension, &fVariable);
  fMap->SetInlineTable(new InlineTable);
  AddMissingTarget(extension);
}

void MapReader::ReadTable(const DOMElement& table) {
  if (fLastField == nullptr) Raise(MessageId::kMissingDefinitionIn, {XML_ELE_FIELDCOLPAIR, XML_ELE_INLTABLE});
  const DOMElement* extension = FirstChildElement(&table);
  if (extension != nullptr && HasTag(*extension, XML_ELE_EXTENSION) &&
      EqualsAscii(Attribute(*extension, XML_ATT_EXT_NAME), XML_ATT_TRAN_EXT_NAME_RECODETARGETSYSMIS)) {
    AddMissingTarget(*extension);
  } else {
    for (; extension != nullptr && HasTag(*extension, XML_ELE_EXTENSION);
         extension = NextSiblingElement(extension))
      fTranslator.HandleZENTExtensions(extension, &fVariable);
  }
  auto rows = std::make_unique<InlineTable>();
  fColumns.clear();
  ForEachElementBelow(table, XML_ELE_ROW, [&](const DOMElement& row) { ReadRow(row, *rows); });
  fMap->SetInlineTable(rows.release());
}

// The first row says which columns are keys: one at least, or nothing would be looked up.
void MapReader::ReadRow(const DOMElement& row, InlineTable& table) {
  const bool isFirst = fColumns.empty();
  Values key(fColumns.size());
  std::unique_ptr<ScoreValue> output;
  std::size_t expected = 0;
  const auto refuseSecond = [](const DOMElement& cell) {
    Raise(MessageId::kMoreThanOneIn, {ToUTF8(cell.getTagName()), XML_ELE_ROW});
  };
  ForEachChildElement(&row, [&](const DOMElement& cell) {
    if (xercesc::XMLString::equals(cell.getTagName(), fOutputColumn)) {
      if (output != nullptr) refuseSecond(cell);
      output.reset(fTranslator.CarefullyMakeVarValue(&fVariable, TextOf(cell, fBuffer)));
      return;
    }
    std::size_t place = PlaceOf(cell, expected++);
    if (place == kNoColumn && !isFirst) RefuseColumn();
    if (place == kNoColumn) {
      place = NewColumn(cell, table);
      key.emplace_back();
    }
    if (key[place] != nullptr) refuseSecond(cell);
    key[place] = ReadCell(cell, *fColumns[place].field);
  });
  if (output == nullptr) RefuseWidth(fOutputColumn);
  if (fColumns.empty()) RefuseWidth(fKeyColumn);
  for (std::size_t i = 0; i < key.size(); ++i)
    if (key[i] == nullptr) RefuseWidth(fColumns[i].tag);
  std::vector<ScoreValue*> released;
  released.reserve(key.size());
  for (std::unique_ptr<ScoreValue>& value : key) released.push_back(value.release());
  table.AddInputOutput(released, output.release());
}

// The place of a cell in the key: that of the first row, wherever the cell stands in this one.
std::size_t MapReader::PlaceOf(const DOMElement& cell, std::size_t expected) const {
  const auto isColumn = [&](std::size_t i) {
    return xercesc::XMLString::equals(cell.getTagName(), fColumns[i].tag);
  };
  if (expected < fColumns.size() && isColumn(expected)) return expected;
  for (std::size_t i = 0; i < fColumns.size(); ++i)
    if (isColumn(i)) return i;
  return kNoColumn;
}

std::size_t MapReader::NewColumn(const DOMElement& cell, InlineTable& table) {
  const auto& fields = fMap->GetColumnToFieldMap();
  const auto pair = fields.find(ToUTF8(cell.getTagName()));
  const ScoreDictVar* const field =
      pair == fields.end() ? nullptr
                           : PMMLTranslator::FindVariable(pair->second, fDataDictionary, fTransformations);
  if (field == nullptr) RefuseColumn();
  fColumns.push_back({cell.getTagName(), field});
  table.AppendInputField(field);
  return fColumns.size() - 1;
}

void MapReader::RefuseWidth(const XMLCh* column) {
  Raise(MessageId::kMissingNodeIn, {ToUTF8(column), XML_ELE_ROW});
}

void MapReader::RefuseColumn() const {
  Raise(MessageId::kMissingVariableInBoth,
        {ToUTF8(fFieldText), XML_ELE_DATADICTIONARY, XML_ELE_TRANSFORMATION});
}

std::unique_ptr<ScoreValue> MapReader::ReadCell(const DOMElement& cell, const ScoreDictVar& field) {
  const XMLCh* const text = TextOf(cell, fBuffer);
  if (field.GetVarType() == ScoreDictVar::kNUMERIC_VAR)
    return std::make_unique<NumericValue>(BaseTranslator::VerifyDouble(text));
  return std::make_unique<StringValue>(fTranslator.EncodedText(text));
}

}  // namespace

std::string PMMLTranslator::HandleMapValues(DOMElement* element, ScoreDictVar* derived,
                                            const ScoreDictionary* dataDictionary,
                                            const ScoreDictionary* transformations) {
  return MapReader(*this, static_cast<TransformVar&>(*derived), dataDictionary, transformations)
      .Read(*element);
}

}  // namespace KxVeyra_940
