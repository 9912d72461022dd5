#include "veyra/CaseReader.h"

#include <algorithm>
#include <optional>

#include "data/DateTimeValue.h"
#include "veyra/Number.h"

namespace VeyraTool {

using KxVeyra_940::DateTimeValue;
using KxVeyra_940::ScoreDictVar;

namespace {

constexpr int kUsualFields = 32;

// The number that a cell of a date-time field stands for, in the representation of its type.
std::optional<double> ReadDateTime(std::string_view cell, ScoreDictVar::DateTimeType type) {
  if (type > ScoreDictVar::kDateTime) return ReadNumber(cell);
  const DateTimeValue value(std::string(cell), type);
  if (value.IsSystemMissingValue()) return std::nullopt;
  return value.GetDoubleValue(type);
}

const char* WantedText(ScoreDictVar::VariableType type) {
  return type == ScoreDictVar::kNUMERIC_VAR ? " is not a number"
                                            : " is not a date or time of the field's type";
}

}  // namespace

CaseReader::CaseReader(CsvReader& csv, CellRules rules)
    : fCsv(csv), fRules(std::move(rules)), fRecord(kUsualFields) {
  if (!fCsv.ReadRow()) throw DataFailure(fCsv.GetFileName(), {}, "there is no header row");
  for (std::size_t i = 0; i < fCsv.GetCellCount(); ++i) {
    fHeader.emplace_back(fCsv.GetCell(i));
    const auto [columns, isNew] = fColumns.emplace(fHeader.back(), Columns{i, 0});
    if (!isNew && columns->second.second == 0) columns->second.second = i;
  }
}

void CaseReader::Bind(const ScoreDictVar& field, bool isNeeded) {
  const std::string& name = field.GetName();
  fRecord.Add(name, nullptr);
  const auto found = fColumns.find(name);
  if (found == fColumns.end()) {
    if (!isNeeded || fRules.absentColumnsAreMissing) return;
    throw DataFailure(fCsv.GetFileName(), {}, "there is no column '" + name + "', which the model needs");
  }
  const Columns& columns = found->second;
  if (isNeeded && columns.second > 0) {
    throw DataFailure(fCsv.GetFileName(), DataPlace{1, columns.second + 1, name},
                      "the model needs this column, and the header has it twice");
  }
  fBindings.push_back({columns.first, fRecord.GetIndex(name), &field, field.GetVarType()});
}

bool CaseReader::ReadCase() {
  if (!fCsv.ReadRow()) return false;
  if (fCsv.GetCellCount() != fHeader.size()) {
    throw DataFailure(fCsv.GetFileName(), DataPlace{fCsv.GetLineNumber(), 0, {}},
                      "the number of cells is " + std::to_string(fCsv.GetCellCount()) + ", the header has " +
                          std::to_string(fHeader.size()));
  }
  for (const Binding& binding : fBindings) ReadCell(binding);
  return true;
}

bool CaseReader::IsMissingText(std::string_view cell) const {
  return std::any_of(fRules.missingTexts.begin(), fRules.missingTexts.end(),
                     [cell](const std::string& text) { return cell == text; });
}

void CaseReader::ReadCell(const Binding& binding) {
  const std::string_view cell = fCsv.GetCell(binding.column);
  if (IsMissingText(cell)) {
    fRecord.Clear(binding.slot);
    return;
  }
  if (StoreCell(binding, cell)) return;
  const DataPlace place{fCsv.GetLineNumber(), binding.column + 1, binding.field->GetName()};
  throw DataFailure(fCsv.GetFileName(), place, "'" + std::string(cell) + "'" + WantedText(binding.type));
}

bool CaseReader::StoreCell(const Binding& binding, std::string_view cell) {
  if (binding.type == ScoreDictVar::STRING_VAR) return fRecord.SetText(binding.slot, cell);
  if (binding.type == ScoreDictVar::kNUMERIC_VAR) {
    const std::optional<double> number = ReadNumber(cell);
    return number.has_value() && fRecord.SetValue(binding.slot, *number);
  }
  const ScoreDictVar::DateTimeType type = binding.field->GetDateTimeType();
  const std::optional<double> number = ReadDateTime(cell, type);
  return number.has_value() && fRecord.SetValue(binding.slot, *number, type);
}

}  // namespace VeyraTool
