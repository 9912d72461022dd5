#include "data/ResultField.h"

#include "data/NumericValue.h"
#include "data/StringValue.h"

namespace KxVeyra_940 {

ResultField::~ResultField() {
  for (const ScoreValue* value : fOwned) delete value;
}

void ResultField::SetMapResultValue(const Values& values) {
  Values entries = values;
  std::unordered_set<const ScoreValue*> owned;
  for (const auto& entry : entries) owned.insert(entry.second);
  fValues.swap(entries);
  fOwned.swap(owned);
  for (const ScoreValue* value : owned)
    if (!fOwned.contains(value)) delete value;
}

const ResultField::Values& ResultField::GetMapResultValue() const { return fValues; }

ScoreValue* ResultField::GetResultValue(const std::string& name) const {
  const auto entry = fValues.find(name);
  return entry == fValues.end() ? nullptr : entry->second;
}

bool ResultField::SetResultValue(const std::string& name, double value) {
  ScoreValue* const held = GetResultValue(name);
  if (held == nullptr) {
    return Store(name, std::make_unique<NumericValue>(value));
  }
  if (held->GetType() != ScoreValue::kNumericValueType) return false;
  static_cast<NumericValue*>(held)->SetDoubleValue(value);
  return true;
}

bool ResultField::SetResultValue(const std::string& name, const std::string& text) {
  ScoreValue* const held = GetResultValue(name);
  if (held == nullptr) {
    return Store(name, std::make_unique<StringValue>(text));
  }
  if (held->GetType() != ScoreValue::kStringValueType) return false;
  static_cast<StringValue*>(held)->SetString(text);
  return true;
}

bool ResultField::SetResultValue(const std::string& name, const ScoreValue* value) {
  if (value == nullptr) return false;
  ScoreValue* const held = GetResultValue(name);
  if (held == nullptr) {
    return Store(name, std::unique_ptr<ScoreValue>(value->Clone()));
  }
  if (held->GetType() != value->GetType() || held->GetType() == ScoreValue::kDateTimeValueType) return false;
  held->SetValue(value);
  return true;
}

int ResultField::GetResultType(const std::string&) const { return 0; }

void ResultField::AddResultField(const std::string& name, ScoreValue* value) {
  if (value == nullptr) {
    fValues.try_emplace(name, nullptr);
  } else if (!fOwned.contains(value) && !fValues.contains(name)) {
    fValues.emplace(name, nullptr).first->second = value;
    fOwned.insert(value);
  }
}

std::vector<std::string> ResultField::GetResultFields() const {
  std::vector<std::string> names;
  names.reserve(fValues.size());
  for (const auto& entry : fValues) names.push_back(entry.first);
  return names;
}

int ResultField::GetResultSize() const { return static_cast<int>(fValues.size()); }

bool ResultField::Store(const std::string& name, std::unique_ptr<ScoreValue> value) {
  ScoreValue*& entry = fValues[name];
  fOwned.insert(value.get());
  entry = value.release();
  return true;
}

}  // namespace KxVeyra_940
