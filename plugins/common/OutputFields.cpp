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

}  // namespace

struct OutputFields::FeatureRow {
  std::string_view text;
  ScoreResultField::ResultFeature code;  // kNoFeature for one that the library has no code for
  Feature feature;
  bool needsCategories;
  unsigned extra;  // what results must hold, of PluginResult::Extra
};

// The features of models that predict a value.  The first is meant when a field names none.
constexpr OutputFields::FeatureRow OutputFields::kFeatures[] = {
    {"predictedValue", ScoreResultField::kPredictedValue, Feature::kValue, false, 0},
    {"predictedDisplayValue", ScoreResultField::kPredictedDisplayValue, Feature::kDisplayValue, false, 0},
    {"probability", ScoreResultField::kProbability, Feature::kProbability, true, 0},
    {"residual", ScoreResultField::kResidual, Feature::kResidual, false, 0},
    {"entityId", ScoreResultField::kEntityId, Feature::kEntityId, false, PluginResult::kEntityIds},
    {"confidence", ScoreResultField::kNoFeature, Feature::kConfidence, true, PluginResult::kConfidences},
};

bool OutputFields::IsGiven(const FeatureRow& row, const PluginResult& layout) {
  return (!row.needsCategories || layout.GetNumberOfCategories() > 0) &&
         (layout.GetExtras() & row.extra) == row.extra;
}

const OutputFields::FeatureRow& OutputFields::FindFeature(const std::string& text,
                                                          const PluginResult& layout) {
  if (text.empty()) return kFeatures[0];
  for (const FeatureRow& row : kFeatures) {
    if (row.text == text && IsGiven(row, layout)) return row;
  }
  Raise(MessageId::kUnsupportedValue, {text, Tags::XML_ATT_VAL_MINING_FEATURE});
}

OutputFields::Feature OutputFields::FindFeature(ScoreResultField::ResultFeature code,
                                                const PluginResult& layout) {
  if (code == ScoreResultField::kNoFeature) return Feature::kNone;
  for (const FeatureRow& row : kFeatures) {
    if (row.code == code && IsGiven(row, layout)) return row.feature;
  }
  Raise(MessageId::kUnsupportedValue, {std::to_string(code), Tags::XML_ATT_VAL_MINING_FEATURE});
}

std::shared_ptr<const ResultVar> OutputFields::ReadOutputField(const PMMLTranslator& translator,
                                                               const DOMElement& element,
                                                               ScoreResultField::ResultFeature feature) {
  const std::string name =
      translator.BaseTranslator::ToString(RequiredNonEmptyAttribute(element, Tags::XML_ATT_NAME));
  const bool isText =
      BaseTranslator::IsEqual(Attribute(element, Tags::XML_ATT_DATATYPE), Tags::XML_VAL_STRING);
  auto var =
      std::make_shared<ResultVar>(name, isText ? ScoreDictVar::STRING_VAR : ScoreDictVar::kNUMERIC_VAR);
  const XMLCh* label = Attribute(element, Tags::XML_ATT_DATAFIELD_DISPLAYNAME);
  var->SetLabel(IsEmpty(label) ? name : translator.BaseTranslator::ToString(label));
  var->SetFeature(feature);
  return var;
}

OutputFields OutputFields::Read(PMMLTranslator& translator, const DOMElement& model,
                                const PluginResult& layout, const ScoreDictVar* target) {
  OutputFields outputs;
  std::set<std::string> names;
  const DOMElement* output = BaseTranslator::GetChildByTag(&model, Tags::XML_ELE_VAL_OUTPUT);
  ForEachChildElement(output, [&](const DOMElement& element) {
    if (!HasTag(element, kOutputField)) return;
    const FeatureRow& row = FindFeature(OptionalText(element, Tags::XML_ATT_VAL_MINING_FEATURE), layout);
    std::shared_ptr<const ResultVar> var = ReadOutputField(translator, element, row.code);
    const std::string category = translator.BaseTranslator::ToString(Attribute(element, Tags::XML_ATT_VALUE));
    outputs.Add({std::move(var), row.feature, FindCategory(translator, category, layout, target)}, names);
  });
  const std::unique_ptr<ScoreDictionary> results(translator.ParseResultDictionary(output));
  if (results != nullptr) {
    for (const std::string& name : results->GetVarNames()) {
      auto var = std::make_shared<const ResultVar>(static_cast<const ResultVar&>(*results->GetVar(name)));
      const Feature feature = FindFeature(var->GetFeature(), layout);
      const std::string category = var->GetDefValue() == nullptr ? "" : var->GetDefValue()->GetString();
      outputs.Add({std::move(var), feature, FindCategory(translator, category, layout, target)}, names);
    }
  }
  for (int i = 0; i < layout.GetNumberOfCategories(); ++i) {
    const ScoreValue* category = layout.GetCategory(i);
    const std::string label = target == nullptr ? std::string() : target->GetLabelOfValue(category);
    outputs.fCategoryLabels.push_back(label.empty() ? category->GetString() : label);
  }
  return outputs;
}

void OutputFields::Add(Field field, std::set<std::string>& names) {
  if (!names.insert(field.var->GetName()).second) {
    Raise(MessageId::kDuplicateValueIn, {kOutputField, field.var->GetName(), Tags::XML_ELE_VAL_OUTPUT});
  }
  fFields.push_back(std::move(field));
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
    switch (field.feature) {
      case Feature::kDisplayValue:
        if (predicted >= 0 && static_cast<std::size_t>(predicted) < fCategoryLabels.size()) {
          result.SetOutputText(index, fCategoryLabels[static_cast<std::size_t>(predicted)]);
          break;
        }
        [[fallthrough]];
      case Feature::kValue:
        result.SetOutputValue(index, result.GetPredictedValue());
        break;
      case Feature::kProbability:
        result.SetOutputNumber(index, field.category < 0 ? result.GetProbability()
                                                         : result.GetCategoryProbability(field.category));
        break;
      case Feature::kConfidence: {
        const int category = field.category < 0 ? predicted : field.category;
        if (category >= 0) result.SetOutputNumber(index, result.GetCategoryConfidence(category));
        break;
      }
      case Feature::kEntityId:
        if (result.GetEntity() != nullptr) result.SetOutputText(index, *result.GetEntity());
        break;
      case Feature::kResidual:
        FillResidual(index, field, record, result);
        break;
      case Feature::kNone:
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
