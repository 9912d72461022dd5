#include "data/ResultField.h"

#include <algorithm>

#include "data/NumericValue.h"
#include "data/StringValue.h"

namespace KxVeyra_940 {

namespace {

using Values = std::map<std::string, ScoreValue*>;

bool Holds(const Values& values, const ScoreValue* value) {
  return std::any_of(values.begin(), values.end(),
                     [value](const Values::value_type& entry) { return entry.second == value; });
}

}  // namespace

ResultField::~ResultField() {
  for (const auto& entry : fValues) delete entry.second;
}

void ResultField::SetMapResultValue(const Values& values) {
  Values replaced = values;
  fValues.swap(replaced);
  for (const auto& entry : replaced)
    if (!Holds(fValues, entry.second)) delete entry.second;
}

const Values& ResultField::GetMapResultValue() const { return fValues; }

ScoreValue* ResultField::GetResultValue(const std::string& name) const {
  const auto entry = fValues.find(name);
  return entry == fValues.end() ? nullptr : entry->second;
}

bool ResultField::SetResultValue(const std::string& name, double value) {
  ScoreValue* const held = GetResultValue(name);
  if (held == nullptr) {
    fValues[name] = new NumericValue(value);
    return true;
  }
  if (held->GetType() != ScoreValue::kNumericValueType) return false;
  static_cast<NumericValue*>(held)->SetDoubleValue(value);
  return true;
}

bool ResultField::SetResultValue(const std::string& name, const std::string& text) {
  ScoreValue* const held = GetResultValue(name);
  if (held == nullptr) {
    fValues[name] = new StringValue(text);
    return true;
  }
  if (held->GetType() != ScoreValue::kStringValueType) return false;
  static_cast<StringValue*>(held)->SetString(text);
  return true;
}

bool ResultField::SetResultValue(const std::string& name, const ScoreValue* value) {
  if (value == nullptr) return false;
  ScoreValue* const held = GetResultValue(name);
  if (held == nullptr) {
    fValues[name] = value->Clone();
    return true;
  }
  if (held->GetType() != value->GetType() || held->GetType() == ScoreValue::kDateTimeValueType) return false;
  held->SetValue(value);
  return true;
}

int ResultField::GetResultType(const std::string&) const { return 0; }

void ResultField::AddResultField(const std::string& name, ScoreValue* value) {
  if (value == nullptr || !Holds(fValues, value)) fValues.try_emplace(name, value);
}

std::vector<std::string> ResultField::GetResultFields() const {
  std::vector<std::string> names;
  names.reserve(fValues.size());
  for (const auto& entry : fValues) names.push_back(entry.first);
  return names;
}

int ResultField::GetResultSize() const { return static_cast<int>(fValues.size()); }

}  // namespace KxVeyra_940
