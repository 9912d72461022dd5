#include "veyra/CaseReader.h"

#include <algorithm>
#include <optional>

#include "data/DateTimeValue.h"
#include "veyra/Number.h"

namespace VeyraTool {

using KxVeyra_940::DateTimeValue;
using KxVeyra_940::ScoreDictVar;

namespace {

// The number that a cell of a date-time field stands for, in the representation of its type.
std::optional<double> ReadDateTime(std::string_view cell, ScoreDictVar::DateTimeType type) {
  if (type > ScoreDictVar::kDateTime) return ReadNumber(cell);
  const DateTimeValue value(std::string(cell), type);
  if (value.IsSystemMissingValue()) return std::nullopt;
  return value.GetDoubleValue(type);
}

}  // namespace

CaseLayout::CaseLayout(std::string file, std::vector<std::string> header, CellRules rules)
    : fFile(std::move(file)), fAbsentColumnsAreMissing(rules.absentColumnsAreMissing) {
  for (std::string& text : rules.missingTexts) {
    if (text.empty()) {
      fEmptyIsMissing = true;
    } else {
      fMissingTexts.push_back(std::move(text));
    }
  }
  for (std::size_t i = 0; i < header.size(); ++i) {
    const auto [columns, isNew] = fColumns.emplace(std::move(header[i]), Columns{i, 0});
    if (!isNew && columns->second.second == 0) columns->second.second = i;
  }
}

void CaseLayout::Bind(const ScoreDictVar& field, bool isNeeded) {
  const std::string& name = field.GetName();
  const int slot = static_cast<int>(fNames.size());
  fNames.push_back(name);
  const auto found = fColumns.find(name);
  if (found == fColumns.end()) {
    if (!isNeeded || fAbsentColumnsAreMissing) return;
    throw DataFailure(fFile, {}, "there is no column '" + name + "', which the model needs");
  }
  const Columns& columns = found->second;
  if (isNeeded && columns.second > 0) {
    throw DataFailure(fFile, DataPlace{1, columns.second + 1, name},
                      "the model needs this column, and the header has it twice");
  }
  fBindings.push_back({columns.first, slot, name, field.GetVarType(), field.GetDateTimeType()});
}

CaseReader::CaseReader(const CaseLayout& layout)
    : fLayout(layout), fRecord(static_cast<int>(layout.fNames.size())) {
  for (const std::string& name : layout.fNames) fRecord.Add(name, nullptr);
}

bool CaseReader::IsMissingText(std::string_view cell) const {
  if (cell.empty()) return fLayout.fEmptyIsMissing;
  const auto& texts = fLayout.fMissingTexts;
  return std::any_of(texts.begin(), texts.end(), [cell](const std::string& text) { return cell == text; });
}

bool CaseReader::ReadCase(Row row, RowFailure& failure) {
  for (const CaseLayout::Binding& binding : fLayout.fBindings) {
    const std::string_view cell = row[binding.column];
    if (IsMissingText(cell)) {
      fRecord.Clear(binding.slot);
    } else if (!StoreCell(binding, cell)) {
      const bool isNumber = binding.type == ScoreDictVar::kNUMERIC_VAR;
      failure.Set(
          isNumber ? "not-a-number" : "not-a-date", binding.column + 1, binding.name,
          Quoted(cell) + (isNumber ? " is not a number" : " is not a date or time of the field's type"));
      return false;
    }
  }
  return true;
}

bool CaseReader::StoreCell(const CaseLayout::Binding& binding, std::string_view cell) {
  if (binding.type == ScoreDictVar::STRING_VAR) return fRecord.SetText(binding.slot, cell);
  if (binding.type == ScoreDictVar::kNUMERIC_VAR) {
    const std::optional<double> number = ReadNumber(cell);
    return number.has_value() && fRecord.SetValue(binding.slot, *number);
  }
  const std::optional<double> number = ReadDateTime(cell, binding.dateTimeType);
  return number.has_value() && fRecord.SetValue(binding.slot, *number, binding.dateTimeType);
}

}  // namespace VeyraTool
