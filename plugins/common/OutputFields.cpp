#include "common/OutputFields.h"

#include "data/BaseDictionary.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "translate/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMElement;

namespace {

constexpr const char* kOutputField = "OutputField";

struct FeatureRow {
  std::string_view text;
  ScoreResultField::ResultFeature feature;
  bool needsCategories;
};

// The features of models that predict a value.  The first is meant when a field names none.
constexpr FeatureRow kFeatures[] = {
    {"predictedValue", ScoreResultField::kPredictedValue, false},
    {"predictedDisplayValue", ScoreResultField::kPredictedDisplayValue, false},
    {"probability", ScoreResultField::kProbability, true},
    {"residual", ScoreResultField::kResidual, false},
};

const FeatureRow& FindFeature(const std::string& text) {
  if (text.empty()) return kFeatures[0];
  for (const FeatureRow& row : kFeatures) {
    if (row.text == text) return row;
  }
  Raise(MessageId::kUnsupportedValue, {text, Tags::XML_ATT_VAL_MINING_FEATURE});
}

// Raises unless this kind of model gives the feature.
void VerifyFeature(ScoreResultField::ResultFeature feature, const std::string& text,
                   const PluginResult& layout) {
  if (feature == ScoreResultField::kNoFeature) return;
  for (const FeatureRow& row : kFeatures) {
    if (row.feature == feature && (!row.needsCategories || layout.GetNumberOfCategories() > 0)) return;
  }
  Raise(MessageId::kUnsupportedValue, {text, Tags::XML_ATT_VAL_MINING_FEATURE});
}

// The model's category of that text in the translator's encoding; -1 for an empty text.
int FindCategory(const PMMLTranslator& translator, const std::string& text, const PluginResult& layout,
                 const ScoreDictVar* target) {
  if (text.empty() || layout.GetNumberOfCategories() == 0) return -1;
  std::unique_ptr<ScoreValue> value;
  if (target != nullptr) {
    value.reset(translator.CarefullyMakeVarValue(target, text));
  } else {
    value = std::make_unique<StringValue>(text);  // without a target categories are texts
  }
  const int category = layout.FindCategory(*value);
  if (category < 0) {
    Raise(MessageId::kMissingValueDefinition,
          {text, target == nullptr ? Tags::XML_ELE_REGTABLE : target->GetName()});
  }
  return category;
}

std::shared_ptr<const ResultVar> ReadOutputField(const PMMLTranslator& translator,
                                                 const DOMElement& element) {
  const std::string name =
      translator.BaseTranslator::ToString(RequiredNonEmptyAttribute(element, Tags::XML_ATT_NAME));
  const bool isText =
      BaseTranslator::IsEqual(Attribute(element, Tags::XML_ATT_DATATYPE), Tags::XML_VAL_STRING);
  auto var =
      std::make_shared<ResultVar>(name, isText ? ScoreDictVar::STRING_VAR : ScoreDictVar::kNUMERIC_VAR);
  const XMLCh* label = Attribute(element, Tags::XML_ATT_DATAFIELD_DISPLAYNAME);
  var->SetLabel(IsEmpty(label) ? name : translator.BaseTranslator::ToString(label));
  var->SetFeature(FindFeature(OptionalText(element, Tags::XML_ATT_VAL_MINING_FEATURE)).feature);
  return var;
}

}  // namespace

OutputFields OutputFields::Read(PMMLTranslator& translator, const DOMElement& model,
                                const PluginResult& layout, const ScoreDictVar* target) {
  OutputFields outputs;
  std::set<std::string> names;
  const DOMElement* output = BaseTranslator::GetChildByTag(&model, Tags::XML_ELE_VAL_OUTPUT);
  ForEachChildElement(output, [&](const DOMElement& element) {
    if (!HasTag(element, kOutputField)) return;
    std::shared_ptr<const ResultVar> var = ReadOutputField(translator, element);
    VerifyFeature(var->GetFeature(), OptionalText(element, Tags::XML_ATT_VAL_MINING_FEATURE), layout);
    const std::string category = translator.BaseTranslator::ToString(Attribute(element, Tags::XML_ATT_VALUE));
    outputs.Add(std::move(var), FindCategory(translator, category, layout, target), names);
  });
  const std::unique_ptr<ScoreDictionary> results(translator.ParseResultDictionary(output));
  if (results != nullptr) {
    for (const std::string& name : results->GetVarNames()) {
      auto var = std::make_shared<const ResultVar>(static_cast<const ResultVar&>(*results->GetVar(name)));
      VerifyFeature(var->GetFeature(), std::to_string(var->GetFeature()), layout);
      const std::string category = var->GetDefValue() == nullptr ? "" : var->GetDefValue()->GetString();
      outputs.Add(std::move(var), FindCategory(translator, category, layout, target), names);
    }
  }
  for (int i = 0; i < layout.GetNumberOfCategories(); ++i) {
    const ScoreValue* category = layout.GetCategory(i);
    const std::string label = target == nullptr ? std::string() : target->GetLabelOfValue(category);
    outputs.fCategoryLabels.push_back(label.empty() ? category->GetString() : label);
  }
  return outputs;
}

void OutputFields::Add(std::shared_ptr<const ResultVar> var, int category, std::set<std::string>& names) {
  if (!names.insert(var->GetName()).second) {
    Raise(MessageId::kDuplicateValueIn, {kOutputField, var->GetName(), Tags::XML_ELE_VAL_OUTPUT});
  }
  fFields.push_back({std::move(var), category});
}

std::unique_ptr<ScoreDictionary> OutputFields::MakeDictionary() const {
  if (fFields.empty()) return nullptr;
  auto dictionary = std::make_unique<BaseDictionary>();
  for (const Field& field : fFields) dictionary->AddVar(field.var->GetName(), field.var->Clone());
  return dictionary;
}

void OutputFields::AddTo(PluginResult& result) const {
  for (const Field& field : fFields) result.AddOutput(field.var->GetName());
}

void OutputFields::Prepare(const ScoreCaseRecord& layout, const ScoreDictVar* target) {
  fTargetSlot = target == nullptr ? -1 : layout.GetIndex(target->GetName());
}

void OutputFields::Fill(const ScoreCaseRecord& record, PluginResult& result) const {
  const int predicted = result.GetPredictedCategory();
  for (std::size_t i = 0; i < fFields.size(); ++i) {
    const Field& field = fFields[i];
    const int index = static_cast<int>(i);
    switch (field.var->GetFeature()) {
      case ScoreResultField::kPredictedDisplayValue:
        if (predicted >= 0 && static_cast<std::size_t>(predicted) < fCategoryLabels.size()) {
          result.SetOutputText(index, fCategoryLabels[static_cast<std::size_t>(predicted)]);
          break;
        }
        [[fallthrough]];
      case ScoreResultField::kPredictedValue:
        result.SetOutputValue(index, result.GetPredictedValue());
        break;
      case ScoreResultField::kProbability:
        result.SetOutputNumber(index, field.category < 0 ? result.GetProbability()
                                                         : result.GetCategoryProbability(field.category));
        break;
      case ScoreResultField::kResidual:
        FillResidual(index, field, record, result);
        break;
      default:
        break;
    }
  }
}

// Of a number: the actual value minus the predicted one.  Of a category: 1 when it is the actual one, else 0,
// minus its probability.
void OutputFields::FillResidual(int index, const Field& field, const ScoreCaseRecord& record,
                                PluginResult& result) const {
  const ScoreValue* actual = record.Get(fTargetSlot);
  const ScoreValue* predicted = result.GetPredictedValue();
  if (actual == nullptr || actual->IsSystemMissingValue() || predicted == nullptr) return;
  if (result.GetNumberOfCategories() == 0) {
    if (actual->GetType() != predicted->GetType()) return;
    result.SetOutputNumber(index, actual->GetDouble() - predicted->GetDouble());
    return;
  }
  const int category = field.category >= 0 ? field.category : result.GetPredictedCategory();
  if (category < 0) return;
  const double probability = result.GetCategoryProbability(category);
  if (NumericValue::IsSystemMissingValue(probability)) return;
  const bool isActual = *result.GetCategory(category) == *actual;
  result.SetOutputNumber(index, (isActual ? 1.0 : 0.0) - probability);
}

}  // namespace KxVeyra_940::Plugin
