#include "nearestneighbor/InstanceReader.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "common/FieldNumber.h"
#include "common/Keywords.h"
#include "data/DateTimeValue.h"
#include "data/StringValue.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "veyra/VYException.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;
using xercesc::DOMElement;

namespace {

constexpr const char* kAuxiliaryPath = "auxiliary path";
constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

constexpr Keyword<bool> kBooleans[] = {{StandardTags::XML_VAL_FALSE, false},
                                       {Tags::XML_ATT_EXT_VALUE_VALUE_TRUE, true},
                                       {"0", false},
                                       {"1", true}};

// A calendar text, or the number of the field's representation.
double ReadDate(const ScoreDictVar& var, const std::string& text) {
  double number = 0;
  if (DateTimeValue::ParseDouble(BaseTranslator::TrimBlanks(text), number)) return number;
  return BaseTranslator::VerifyDateTime(text, var.GetDateTimeType());
}

// By category: of equal votes, most instances win, then the smallest value.
std::vector<int> FindPrecedence(const CategoryTable& categories, const std::vector<int>& codes) {
  std::vector<std::size_t> counts(static_cast<std::size_t>(categories.Size()));
  for (const int code : codes)
    if (code != TargetColumn::kNone) ++counts[static_cast<std::size_t>(code)];
  std::vector<int> order(counts.size());
  std::iota(order.begin(), order.end(), 0);
  std::ranges::sort(order, [&](int left, int right) {
    const std::size_t ofLeft = counts[static_cast<std::size_t>(left)];
    const std::size_t ofRight = counts[static_cast<std::size_t>(right)];
    if (ofLeft != ofRight) return ofLeft > ofRight;
    return categories.GetValue(left) < categories.GetValue(right);
  });
  std::vector<int> precedence(order.size());
  for (std::size_t i = 0; i < order.size(); ++i)
    precedence[static_cast<std::size_t>(order[i])] = static_cast<int>(i);
  return precedence;
}

}  // namespace

InstanceReader::InstanceReader(const PMMLTranslator& translator, const InvalidValuesByField& invalidValues,
                               const std::string& auxPath, NeighborModel& model)
    : fTranslator(translator), fInvalidValues(invalidValues), fAuxPath(auxPath), fModel(model) {}

InstanceReader::~InstanceReader() = default;

void InstanceReader::Read(const DOMElement& model) {
  const DOMElement& instances =
      *BaseTranslator::GetChildByTagForced(&model, StandardTags::XML_ELE_TRAININGINSTANCES);
  fIsTransformed = ReadKeyword(instances, StandardTags::XML_ATT_ISTRANSFORMED, kBooleans);
  ReadFields(instances);
  const std::string idField =
      fTranslator.EncodedText(Attribute(model, StandardTags::XML_ATT_INSTANCEIDVARIABLE));
  if (!idField.empty()) fIdColumn = static_cast<int>(ColumnOf(idField));
  PlanTargets();
  PlanInputs();
  fPlace.resize(fModel.GetCoordinates().GetFields().size());
  fMatrix = std::make_shared<InstanceMatrix>(fPlace.size());
  ReadRows(instances);
  SetCategories();
  Instances read{fMatrix, std::move(fIds), {}};
  for (const auto& target : fTargets) read.targets.push_back(std::move(target->values));
  fModel.SetInstances(std::move(read));
}

void InstanceReader::ReadFields(const DOMElement& instances) {
  const DOMElement* fields =
      BaseTranslator::GetChildByTagForced(&instances, StandardTags::XML_ELE_INSTANCEFIELDS);
  ForEachChildElement(fields, [&](const DOMElement& child) {
    if (!HasTag(child, StandardTags::XML_ELE_INSTANCEFIELD)) return;
    const std::string name = fTranslator.EncodedText(RequiredNonEmptyAttribute(child, Tags::XML_ATT_FIELD));
    for (const auto& [field, column] : fColumnOfField) {
      if (field == name)
        Raise(MessageId::kDuplicateValueIn,
              {StandardTags::XML_ELE_INSTANCEFIELD, name, StandardTags::XML_ELE_INSTANCEFIELDS});
    }
    const std::string column = OptionalText(child, Tags::XML_ATT_FIELDCOLPAIR_COLUMN);
    fColumnOfField.emplace_back(name, column.empty() ? OptionalText(child, Tags::XML_ATT_FIELD) : column);
  });
  CheckCount(instances, StandardTags::XML_ATT_FIELDCOUNT, fColumnOfField.size(),
             StandardTags::XML_ELE_INSTANCEFIELD);
}

void InstanceReader::CheckCount(const DOMElement& instances, const char* attribute, std::size_t count,
                                const char* what) const {
  const std::optional<int> stated = OptionalInteger(instances, attribute);
  if (!stated.has_value() || (*stated >= 0 && static_cast<std::size_t>(*stated) == count)) return;
  Raise(MessageId::kNumberMismatchIn, {std::to_string(*stated), attribute, std::to_string(count), what,
                                       StandardTags::XML_ELE_TRAININGINSTANCES});
}

// The index of the field's column among those that are read.
std::size_t InstanceReader::ColumnOf(const std::string& field) {
  const auto found = std::ranges::find(fColumnOfField, field, &std::pair<std::string, std::string>::first);
  if (found == fColumnOfField.end())
    Raise(MessageId::kMissingDefinitionIn, {field, StandardTags::XML_ELE_INSTANCEFIELDS});
  const auto column = std::ranges::find(fColumns, found->second);
  if (column != fColumns.end()) return static_cast<std::size_t>(column - fColumns.begin());
  fColumns.push_back(found->second);
  return fColumns.size() - 1;
}

void InstanceReader::PlanTargets() {
  for (const ScoreDictVar* var : fModel.GetTargetVars()) {
    const auto invalid = fInvalidValues.find(var->GetName());
    fTargets.push_back(
        std::unique_ptr<Target>(new Target{var,
                                           ColumnOf(var->GetName()),
                                           invalid == fInvalidValues.end() ? nullptr : invalid->second,
                                           CategoryTable(*var),
                                           {IsCategorical(*var), {}, {}, {}}}));
  }
}

// Transformed instances give the very values that are compared.  Others give the fields that a case has; they
// are read as cases are.
void InstanceReader::PlanInputs() {
  Inputs& inputs = fModel.GetInputs();
  if (fIsTransformed) {
    for (const ComparedField& field : fModel.GetCoordinates().GetFields()) {
      const ScoreDictVar& var = inputs.GetVar(field.input);
      CategoryTable* const categories = inputs.GetCategories(field.input);
      fInputs.push_back({&var, ColumnOf(var.GetName()), field.input, categories});
    }
    inputs.Size(fValues);
    return;
  }
  for (const std::string& name : inputs.GetFieldNames()) {
    fInputs.push_back({fModel.GetDictionary()->GetVar(name), ColumnOf(name), -1, nullptr});
    fRecord.Add(name, nullptr);
  }
  fReading.reset(static_cast<PluginModel*>(fModel.Clone()));
  fReading->PrepareInputs(fRecord);
}

void InstanceReader::ReadRows(const DOMElement& instances) {
  const DOMElement* const table = BaseTranslator::GetChildByTag(&instances, Tags::XML_ELE_INLTABLE);
  const DOMElement* const locator = BaseTranslator::GetChildByTag(&instances, Tags::XML_ELE_TABLELOCATOR);
  if ((table == nullptr) == (locator == nullptr)) {
    Raise(MessageId::kOneOfRequired, {Tags::XML_ELE_INLTABLE, Tags::XML_ELE_TABLELOCATOR});
  }
  if (table == nullptr && fAuxPath.empty()) {
    Raise(MessageId::kRequiredIn, {kAuxiliaryPath, Tags::XML_ELE_TABLELOCATOR});
  }
  const RowAction take = [this](const TrainingRow& row) { TakeRow(row); };
  const std::size_t count =
      table != nullptr ? ForEachRow(*table, fColumns, take) : ForEachRow(fAuxPath, fColumns, take);
  CheckCount(instances, Tags::XML_ATT_RECORDCOUNT, count, Tags::XML_ELE_ROW);
  if (count == 0) Raise(MessageId::kRequiredIn, {Tags::XML_ELE_ROW, StandardTags::XML_ELE_TRAININGINSTANCES});
}

std::string InstanceReader::PlaceOf(const TrainingRow& row, std::size_t column) const {
  return " (" + row.place + ", column '" + fColumns[column] + "')";
}

// Of a number or a date, in the representation of the field.  REQUIRES: the cell is not missing.
double InstanceReader::NumberAt(const TrainingRow& row, const ScoreDictVar& var, std::size_t column) const {
  const XMLCh* const text = row.cells[column];
  const bool isDate = var.GetVarType() == ScoreDictVar::kDATETIME_VAR;
  try {
    return isDate ? ReadDate(var, KxXML_940::ToUTF8(text)) : BaseTranslator::VerifyDouble(text);
  } catch (const VYException&) {
    Raise(MessageId::kInvalidValueOfType,
          {KxXML_940::ToUTF8(text), isDate ? Tags::XML_VAL_DATETIME : Tags::XML_VAL_DOUBLE},
          PlaceOf(row, column));
  }
}

// Null for a missing cell.
std::unique_ptr<ScoreValue> InstanceReader::ValueOf(const TrainingRow& row, const ScoreDictVar& var,
                                                    std::size_t column) const {
  if (row.cells[column] == nullptr) return nullptr;
  switch (var.GetVarType()) {
    case ScoreDictVar::STRING_VAR:
      return std::make_unique<StringValue>(fTranslator.EncodedText(row.cells[column]));
    case ScoreDictVar::kDATETIME_VAR:
      return std::make_unique<DateTimeValue>(NumberAt(row, var, column), var.GetDateTimeType());
    default:
      return std::make_unique<NumericValue>(NumberAt(row, var, column));
  }
}

void InstanceReader::TakeRow(const TrainingRow& row) {
  fIsTransformed ? TakeTransformed(row) : TakeFields(row);
  fModel.GetCoordinates().Learn(fModel.GetInputs(), " (" + row.place + ")");
  fModel.GetCoordinates().GetPlace(fIsTransformed ? fValues : fReading->GetValues(), fPlace);
  fMatrix->Add(fPlace);
  for (const auto& target : fTargets) TakeTarget(row, *target);
  const XMLCh* const id = fIdColumn < 0 ? nullptr : row.cells[static_cast<std::size_t>(fIdColumn)];
  fIds.push_back(id == nullptr ? std::to_string(fMatrix->Size()) : fTranslator.EncodedText(id));
}

void InstanceReader::TakeTransformed(const TrainingRow& row) {
  for (const InputColumn& input : fInputs) {
    const std::unique_ptr<ScoreValue> value = ValueOf(row, *input.var, input.column);
    const auto i = static_cast<std::size_t>(input.input);
    const bool isMissing = value == nullptr || input.var->IsMissingValue(value.get());
    if (value != nullptr && fModel.GetInputs().IsInvalid(input.input, *value))
      RefuseInvalid(row, *input.var, input.column, *value);
    if (input.categories == nullptr) {
      fValues.numbers[i] = isMissing ? NumericValue::gSysmisValue : NumberOf(*input.var, *value);
    } else {
      fValues.codes[i] = isMissing ? kMissingCategory : input.categories->Add(*value);
    }
  }
}

// A category that is not listed, or a value that the document calls invalid, which its variable counts as
// missing.
void InstanceReader::RefuseInvalid(const TrainingRow& row, const ScoreDictVar& var, std::size_t column,
                                   const ScoreValue& value) const {
  const std::string place = PlaceOf(row, column);
  if (var.IsMissingValue(&value))
    Raise(MessageId::kValueOutsideRange, {value.GetString(), var.GetName()}, place);
  Raise(MessageId::kValueNotInValueList, {value.GetString(), var.GetName()}, place);
}

void InstanceReader::FillSlot(const TrainingRow& row, const InputColumn& input, int slot) {
  const ScoreDictVar& var = *input.var;
  fRecord.Clear(slot);
  if (row.cells[input.column] == nullptr) return;
  switch (var.GetVarType()) {
    case ScoreDictVar::STRING_VAR:
      fRecord.SetText(slot, fTranslator.EncodedText(row.cells[input.column]));
      return;
    case ScoreDictVar::kDATETIME_VAR:
      fRecord.SetValue(slot, NumberAt(row, var, input.column), var.GetDateTimeType());
      return;
    default:
      fRecord.SetValue(slot, NumberAt(row, var, input.column));
  }
}

void InstanceReader::TakeFields(const TrainingRow& row) {
  int slot = 0;
  for (const InputColumn& input : fInputs) FillSlot(row, input, slot++);
  if (fReading->LearnInputs(fRecord) != Inputs::Outcome::kInvalid) return;
  const std::string invalid = fReading->GetInputs().FindInvalid(fRecord);
  const ScoreValue* const value = fRecord.Get(invalid);
  Raise(MessageId::kValueOutsideRange, {value == nullptr ? "" : value->GetString(), invalid},
        " (" + row.place + ")");
}

void InstanceReader::TakeTarget(const TrainingRow& row, Target& target) const {
  const std::unique_ptr<ScoreValue> value = ValueOf(row, *target.var, target.column);
  const bool isMissing = value == nullptr || target.var->IsMissingValue(value.get());
  if (value != nullptr && isMissing && target.invalid != nullptr && target.invalid->Contains(*value))
    RefuseInvalid(row, *target.var, target.column, *value);
  if (!target.values.isCategorical) {
    target.values.numbers.push_back(isMissing ? kMissing : NumberOf(*target.var, *value));
    return;
  }
  target.values.codes.push_back(isMissing ? TargetColumn::kNone : target.categories.Add(*value));
  const int listed = target.categories.GetListedCount();
  if (listed > 0 && target.values.codes.back() >= listed)
    RefuseInvalid(row, *target.var, target.column, *value);
}

void InstanceReader::SetCategories() {
  for (std::size_t i = 0; i < fTargets.size(); ++i) {
    Target& target = *fTargets[i];
    if (!target.values.isCategorical) continue;
    const int count = target.categories.Size();
    if (count == 0) Raise(MessageId::kValueListRequired, {target.var->GetName()});
    std::vector<std::unique_ptr<ScoreValue>> categories;
    for (int code = 0; code < count; ++code)
      categories.emplace_back(target.categories.GetValue(code).Clone());
    fModel.SetCategories(std::move(categories), static_cast<int>(i));
    target.values.precedence = FindPrecedence(target.categories, target.values.codes);
  }
}

}  // namespace KxVeyra_940::Plugin
