#include "common/PluginResult.h"

#include <cmath>

namespace KxVeyra_940::Plugin {

namespace {

void SetText(const std::string& text, StringValue& value) {
  value.SetString(text);
  value.SetLength(static_cast<int>(text.size()));
}

}  // namespace

PluginResult::PluginResult(ResultKind kind) : fKind(kind) {}
PluginResult::~PluginResult() = default;

void PluginResult::SetPredictedValue(ScoreValue* value) {
  if (value != fGivenValue.get()) fGivenValue.reset(value);
  fPredicted = value;
  fPredictedCategory = value == nullptr ? -1 : FindCategory(*value);
}

void PluginResult::AddValueProbability(ScoreValue* value, double probability) {
  std::unique_ptr<ScoreValue> taken(value);
  if (taken == nullptr) return;
  const int index = FindCategory(*taken);
  if (index >= 0) {
    At(index).probability = probability;
  } else {
    fCategories.push_back({std::move(taken), probability});
  }
}

const ScoreValue* PluginResult::GetCategory(int index) const {
  return fCategories[static_cast<std::size_t>(index)].value.get();
}

double PluginResult::GetCategoryProbability(int index) const {
  return fCategories[static_cast<std::size_t>(index)].probability;
}

const std::string& PluginResult::GetOutputName(int index) const {
  return fOutputs[static_cast<std::size_t>(index)]->name;
}

const ScoreValue* PluginResult::GetOutputValue(int index) const {
  return fOutputs[static_cast<std::size_t>(index)]->value;
}

void PluginResult::Reset() {
  DropPrediction();
  fEntities.clear();
  for (Category& category : fCategories) {
    category.probability = NumericValue::gSysmisValue;
    category.confidence = NumericValue::gSysmisValue;
  }
  for (const auto& output : fOutputs) output->value = nullptr;
  for (const auto& answer : fFurther) answer->Reset();
}

PluginResult& PluginResult::OfTarget(int target) {
  return target == 0 ? *this : *fFurther[static_cast<std::size_t>(target) - 1];
}

const PluginResult& PluginResult::OfTarget(int target) const {
  return target == 0 ? *this : *fFurther[static_cast<std::size_t>(target) - 1];
}

const PluginResult::Entity* PluginResult::GetEntity(int rank) const {
  const auto index = static_cast<std::size_t>(rank) - 1;
  return index < fEntities.size() ? &fEntities[index] : nullptr;
}

void PluginResult::AddCategory(const ScoreValue& value) {
  fCategories.push_back({std::unique_ptr<ScoreValue>(value.Clone()), NumericValue::gSysmisValue});
}

void PluginResult::AddOutput(const std::string& name) {
  fOutputs.push_back(std::make_unique<Output>(Output{name, NumericValue(), StringValue(""), nullptr}));
}

void PluginResult::SetPredictedNumber(double number) {
  fNumber.SetDoubleValue(number);
  fPredicted = &fNumber;
  fPredictedCategory = -1;
}

bool PluginResult::IsPredictionFinite() const {
  const bool hasNumber = fPredicted != nullptr && AsString(fPredicted) == nullptr;
  return !hasNumber || std::isfinite(fPredicted->GetDouble());
}

void PluginResult::DropPrediction() {
  fPredicted = nullptr;
  fPredictedCategory = -1;
  fProbability = NumericValue::gSysmisValue;
  fStandardError = NumericValue::gSysmisValue;
}

void PluginResult::SetPredictedText(const std::string& text) {
  SetText(text, fText);
  fPredicted = &fText;
  fPredictedCategory = -1;
}

void PluginResult::SetPredictedCategory(int index) {
  fPredicted = At(index).value.get();
  fPredictedCategory = index;
  fProbability = At(index).probability;
}

void PluginResult::SetCategoryProbability(int index, double probability) {
  At(index).probability = probability;
}

void PluginResult::SetCategoryConfidence(int index, double confidence) { At(index).confidence = confidence; }

double PluginResult::GetCategoryConfidence(int index) const {
  return fCategories[static_cast<std::size_t>(index)].confidence;
}

int PluginResult::FindCategory(const ScoreValue& value) const {
  for (std::size_t i = 0; i < fCategories.size(); ++i) {
    if (fCategories[i].value.get() == &value || *fCategories[i].value == value) return static_cast<int>(i);
  }
  return -1;
}

void PluginResult::SetOutputNumber(int index, double number) {
  Output& output = OutputAt(index);
  output.number.SetDoubleValue(number);
  output.value = std::isfinite(number) ? &output.number : nullptr;
}

void PluginResult::SetOutputText(int index, const std::string& text) {
  Output& output = OutputAt(index);
  SetText(text, output.text);
  output.value = &output.text;
}

void PluginResult::SetOutputValue(int index, const ScoreValue* value) { OutputAt(index).value = value; }

}  // namespace KxVeyra_940::Plugin
