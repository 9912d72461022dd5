#include "transform/InlineTable.h"

#include <algorithm>
#include <cmath>

#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "data/TextRules.h"

namespace KxVeyra_940 {

bool compare::operator()(const std::vector<ScoreValue*>& left, const std::vector<ScoreValue*>& right) const {
  for (std::size_t i = 0; i < left.size(); ++i) {
    const ScoreValue::ValueType type = left[i]->GetType();
    if (type != ScoreValue::kNumericValueType && type != ScoreValue::kStringValueType) continue;
    if (*left[i] < *right[i]) return true;
    if (*left[i] > *right[i]) return false;
  }
  return false;
}

InlineTable::InlineTable() = default;

InlineTable::InlineTable(const InlineTable& other)
    : fInputFields(other.fInputFields), fInfoCode(other.fInfoCode), fSources(other.fSources) {
  for (const auto& [key, output] : other.fRows) {
    std::vector<ScoreValue*> copy;
    copy.reserve(key.size());
    for (const ScoreValue* value : key) copy.push_back(value->Clone());
    fRows.emplace_hint(fRows.end(), std::move(copy), output == nullptr ? nullptr : output->Clone());
  }
}

InlineTable::~InlineTable() {
  for (const auto& [key, output] : fRows) {
    for (const ScoreValue* value : key) delete value;
    delete output;
  }
}

void InlineTable::AppendInputField(const ScoreDictVar* variable) {
  fInputFields.push_back(variable);
  fSources.emplace_back(variable->GetName(), FieldSource::kComputed);
  fIsBound = false;
}

void InlineTable::AppendReads(std::vector<std::string>& names) const {
  for (const FieldSource& source : fSources) names.push_back(source.GetName());
}

// A missing number, or NaN, is in no order with any other and would be taken for every key.
bool InlineTable::IsUsable(Key key) {
  return std::ranges::all_of(key, [](const ScoreValue* value) {
    if (value == nullptr) return false;
    if (value->GetType() == ScoreValue::kStringValueType) return true;
    return !value->IsSystemMissingValue() &&
           !std::isnan(static_cast<const NumericValue*>(value)->GetNumber());
  });
}

void InlineTable::AddInputOutput(const std::vector<ScoreValue*>& keys, ScoreValue* output) {
  fIsIndexed = false;
  if (IsUsable(keys) && fRows.emplace(keys, output).second) return;
  for (const ScoreValue* value : keys) delete value;
  delete output;
}

const ScoreValue* InlineTable::getValue(const ScoreCaseRecord* input, const ScoreDictionary* dataDictionary,
                                        const ScoreDictionary* transformations, MapValues*) {
  return getValue(CaseContext(input, dataDictionary, transformations));
}

const ScoreValue* InlineTable::getValue(const CaseContext& context) {
  CollectKey(context);
  if (fInfoCode != kFound) return nullptr;
  const ScoreValue* const output = Find(fKey);
  if (output == nullptr) fInfoCode = kNoRow;
  return output;
}

void InlineTable::GetInputValuesFromRecord(const ScoreCaseRecord* input, std::vector<ScoreValue*>& values,
                                           const ScoreDictionary* dataDictionary,
                                           const ScoreDictionary* transformations) {
  CollectKey(CaseContext(input, dataDictionary, transformations));
  // Lent through pointers that would allow changes; whoever asks does not make them.
  for (const ScoreValue* value : fKey) values.push_back(const_cast<ScoreValue*>(value));
}

void InlineTable::CollectKey(const CaseContext& context) {
  fKey.clear();
  if (!fIsBound || fBinding != context.GetBinding()) {
    for (std::size_t i = 0; i < fSources.size(); ++i) fSources[i].Bind(context, fInputFields[i]);
    fBinding = context.GetBinding();
    fIsBound = true;
  }
  fInfoCode = kInputMissing;
  for (const FieldSource& source : fSources) {
    const ScoreValue* const value = source.ValueIn(context);
    if (value == nullptr || source.GetVariable()->IsMissingValue(value)) return;
    fKey.push_back(value);
  }
  fInfoCode = kFound;
}

InlineTable::Cell InlineTable::CellOf(const ScoreValue* value) {
  const ScoreValue::ValueType type = value->GetType();
  if (type == ScoreValue::kStringValueType)
    return {0, TrimTrailingBlanks(static_cast<const StringValue*>(value)->GetText()), type};
  return {static_cast<const NumericValue*>(value)->GetNumber(), {}, type};
}

int InlineTable::Order(const Cell& left, const Cell& right) {
  if (left.type != right.type || left.type == ScoreValue::kDateTimeValueType) return 0;
  if (left.type == ScoreValue::kStringValueType) return left.text.compare(right.text);
  if (NumericValue::IsLess(left.number, right.number)) return -1;
  return NumericValue::IsLess(right.number, left.number) ? 1 : 0;
}

void InlineTable::BuildIndex() {
  fCells.clear();
  fOutputs.clear();
  for (const auto& [key, output] : fRows) {
    for (const ScoreValue* value : key) fCells.push_back(CellOf(value));
    fOutputs.push_back(output);
  }
  const auto isDateTime = [](const Cell& cell) { return cell.type == ScoreValue::kDateTimeValueType; };
  fHoldsDateTimes = std::ranges::any_of(fCells, isDateTime);
  BuildTextIndex();
  fIsIndexed = true;
}

void InlineTable::BuildTextIndex() {
  fTexts.Clear();
  fTextRows.clear();
  const auto isText = [](const Cell& cell) { return cell.type == ScoreValue::kStringValueType; };
  if (fCells.size() != fOutputs.size() || !std::ranges::all_of(fCells, isText)) return;
  fLongTexts.clear();
  fTextRows.reserve(fOutputs.size());
  for (std::size_t i = 0; i < fOutputs.size(); ++i) {
    const std::string_view text = fCells[i].text;
    TextRow row{fOutputs[i], {}, static_cast<std::uint32_t>(text.size()), 0, {}};
    if (text.size() <= sizeof row.shortText) {
      std::ranges::copy(text, row.shortText);
    } else {
      if (fLongTexts.size() + text.size() > UINT32_MAX) return fTextRows.clear();
      row.offset = static_cast<std::uint32_t>(fLongTexts.size());
      fLongTexts.append(text);
    }
    fTextRows.push_back(row);
    fTexts.Append(text);
  }
  for (TextRow& row : fTextRows) {
    if (row.output == nullptr || row.output->GetType() != ScoreValue::kNumericValueType) continue;
    row.number = static_cast<const NumericValue&>(*row.output);
    row.output = &row.number;
  }
}

const ScoreValue* InlineTable::FindText(const ScoreValue& key) const {
  if (key.GetType() != ScoreValue::kStringValueType) return nullptr;
  const std::uint32_t row =
      fTexts.Find(CellOf(&key).text, [this](std::uint32_t position) { return TextOf(fTextRows[position]); });
  return row == NameIndex::kNone ? nullptr : fTextRows[row].output;
}

// A date-time passes, whatever stands opposite; all else is equal to values of its own kind.
bool InlineTable::IsEqual(const Cell& left, const Cell& right) {
  if (left.type == right.type) return Order(left, right) == 0;
  return left.type == ScoreValue::kDateTimeValueType || right.type == ScoreValue::kDateTimeValueType;
}

bool InlineTable::IsRow(std::size_t row, Key key) const {
  for (std::size_t i = 0; i < key.size(); ++i)
    if (!IsEqual(fCells[row * key.size() + i], CellOf(key[i]))) return false;
  return true;
}

const ScoreValue* InlineTable::Find(Key key) {
  if (!fIsIndexed) BuildIndex();
  const std::size_t rows = fOutputs.size();
  const std::size_t width = rows == 0 ? 0 : fCells.size() / rows;
  if (rows == 0 || key.size() != width || !IsUsable(key)) return nullptr;
  constexpr auto kDateTime = ScoreValue::kDateTimeValueType;
  const auto isDateTime = [](const ScoreValue* value) { return value->GetType() == kDateTime; };
  if (fHoldsDateTimes || std::ranges::any_of(key, isDateTime)) return FindPassing(key);
  if (!fTextRows.empty()) return FindText(*key[0]);
  // One key column is what nearly every table has.
  const Cell first = width == 0 ? Cell{0, {}, ScoreValue::kNumericValueType} : CellOf(key[0]);
  const auto orderOfRow = [&](std::size_t row) {
    const Cell* const cells = fCells.data() + row * width;
    int order = width == 0 ? 0 : Order(cells[0], first);
    for (std::size_t i = 1; i < width && order == 0; ++i) order = Order(cells[i], CellOf(key[i]));
    return order;
  };
  std::size_t low = 0;
  for (std::size_t size = rows; size > 0;) {
    const std::size_t half = size / 2;
    const bool isBefore = orderOfRow(low + half) < 0;
    low += isBefore ? half + 1 : 0;
    size = isBefore ? size - half - 1 : half;
  }
  return low < rows && IsRow(low, key) ? fOutputs[low] : nullptr;
}

// With positions that pass, the rows that match do not stand side by side.
const ScoreValue* InlineTable::FindPassing(Key key) const {
  for (std::size_t row = 0; row < fOutputs.size(); ++row)
    if (IsRow(row, key)) return fOutputs[row];
  return nullptr;
}

}  // namespace KxVeyra_940
