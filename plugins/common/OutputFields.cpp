#include "common/OutputFields.h"

#include <algorithm>

#include "data/BaseDictionary.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;
using xercesc::DOMElement;

namespace {

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

// How the categories are shown.
std::vector<std::string> LabelsOf(const PluginResult& answer, const ScoreDictVar* target) {
  std::vector<std::string> labels;
  for (int i = 0; i < answer.GetNumberOfCategories(); ++i) {
    const ScoreValue* category = answer.GetCategory(i);
    const std::string label = target == nullptr ? std::string() : target->GetLabelOfValue(category);
    labels.push_back(label.empty() ? category->GetString() : label);
  }
  return labels;
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
    {Tags::XML_ATT_VAL_MINING_PREDICTEDVALUE, ScoreResultField::kPredictedValue, Feature::kValue, false, 0},
    {Tags::XML_ATT_VAL_MINING_PREDICTEDDispVALUE, ScoreResultField::kPredictedDisplayValue,
     Feature::kDisplayValue, false, 0},
    {Tags::XML_ATT_VAL_MINING_PROBABILITY, ScoreResultField::kProbability, Feature::kProbability, true, 0},
    {Tags::XML_ATT_VAL_MINING_RESIDUAL, ScoreResultField::kResidual, Feature::kResidual, false, 0},
    {Tags::XML_ATT_VAL_MINING_ENTITYID, ScoreResultField::kEntityId, Feature::kEntityId, false,
     PluginResult::kEntityIds},
    {Tags::XML_ATT_VAL_MINING_ENTITYIDAFFINITY, ScoreResultField::kEntityAffinity, Feature::kAffinity, false,
     PluginResult::kAffinities},
    {StandardTags::XML_VAL_AFFINITY, ScoreResultField::kEntityAffinity, Feature::kAffinity, false,
     PluginResult::kAffinities},
    {Tags::XML_ATT_CONFIDENCE, ScoreResultField::kNoFeature, Feature::kConfidence, true,
     PluginResult::kConfidences},
    {Tags::XML_ATT_VAL_MINING_STANDARDERROR, ScoreResultField::kStandardError, Feature::kStandardError, false,
     PluginResult::kStandardErrors},
    {StandardTags::XML_VAL_TRANSFORMEDVALUE, ScoreResultField::kNoFeature, Feature::kTransformed, false, 0},
};

bool OutputFields::IsGiven(const FeatureRow& row, const PluginResult& answer, unsigned extras) {
  return (!row.needsCategories || answer.GetNumberOfCategories() > 0) && (extras & row.extra) == row.extra;
}

const OutputFields::FeatureRow& OutputFields::FindFeature(const std::string& text, const PluginResult& answer,
                                                          unsigned extras) {
  if (text.empty()) return kFeatures[0];
  for (const FeatureRow& row : kFeatures) {
    if (row.text == text && IsGiven(row, answer, extras)) return row;
  }
  Raise(MessageId::kUnsupportedValue, {text, Tags::XML_ATT_VAL_MINING_FEATURE});
}

OutputFields::Feature OutputFields::FindFeature(ScoreResultField::ResultFeature code,
                                                const PluginResult& layout) {
  if (code == ScoreResultField::kNoFeature) return Feature::kNone;
  for (const FeatureRow& row : kFeatures) {
    if (row.code == code && IsGiven(row, layout, layout.GetExtras())) return row.feature;
  }
  Raise(MessageId::kUnsupportedValue, {std::to_string(code), Tags::XML_ATT_VAL_MINING_FEATURE});
}

std::shared_ptr<const ResultVar> OutputFields::ReadOutputField(const PMMLTranslator& translator,
                                                               const DOMElement& element,
                                                               ScoreResultField::ResultFeature feature) {
  const std::string name = translator.EncodedText(RequiredNonEmptyAttribute(element, Tags::XML_ATT_NAME));
  const bool isText =
      BaseTranslator::IsEqual(Attribute(element, Tags::XML_ATT_DATATYPE), Tags::XML_VAL_STRING);
  auto var =
      std::make_shared<ResultVar>(name, isText ? ScoreDictVar::STRING_VAR : ScoreDictVar::kNUMERIC_VAR);
  const XMLCh* label = Attribute(element, Tags::XML_ATT_DATAFIELD_DISPLAYNAME);
  var->SetLabel(IsEmpty(label) ? name : translator.EncodedText(label));
  var->SetFeature(feature);
  return var;
}

// The index of the target that the element names; the first one when it names none.
int OutputFields::ReadTarget(const PMMLTranslator& translator, const DOMElement& element,
                             const std::vector<const ScoreDictVar*>& targets) {
  const std::string name = translator.EncodedText(Attribute(element, StandardTags::XML_ATT_TARGETFIELD));
  if (name.empty() || targets.empty()) return 0;
  for (std::size_t i = 0; i < targets.size(); ++i) {
    if (targets[i]->GetName() == name) return static_cast<int>(i);
  }
  Raise(MessageId::kMissingVariableIn, {name, Tags::XML_ELE_MININGSCHEMA});
}

OutputFields::Field OutputFields::ReadField(PMMLTranslator& translator, const DOMElement& element,
                                            const PluginResult& layout,
                                            const std::vector<const ScoreDictVar*>& targets) {
  const int target = ReadTarget(translator, element, targets);
  const PluginResult& answer = layout.OfTarget(target);
  const std::string feature = OptionalText(element, Tags::XML_ATT_VAL_MINING_FEATURE);
  const FeatureRow& row = FindFeature(feature, answer, layout.GetExtras());
  const std::string category = translator.EncodedText(Attribute(element, Tags::XML_ATT_VALUE));
  const ScoreDictVar* const field = targets.empty() ? nullptr : targets[static_cast<std::size_t>(target)];
  const int rank = OptionalInteger(element, StandardTags::XML_ATT_RANK).value_or(1);
  if (rank < 1) Raise(MessageId::kNotPositive, {std::to_string(rank), StandardTags::XML_ATT_RANK});
  return {ReadOutputField(translator, element, row.code), row.feature,
          FindCategory(translator, category, answer, field), target, rank};
}

OutputFields OutputFields::Read(PMMLTranslator& translator, const DOMElement& model,
                                const PluginResult& layout, const std::vector<const ScoreDictVar*>& targets) {
  OutputFields outputs;
  std::set<std::string> names;
  const DOMElement* output = BaseTranslator::GetChildByTag(&model, Tags::XML_ELE_VAL_OUTPUT);
  ForEachChildElement(output, [&](const DOMElement& element) {
    if (HasTag(element, StandardTags::XML_ELE_OUTPUTFIELD))
      outputs.Add(ReadField(translator, element, layout, targets), names);
  });
  const ScoreDictVar* const target = targets.empty() ? nullptr : targets.front();
  const std::unique_ptr<ScoreDictionary> results(translator.ParseResultDictionary(output));
  if (results != nullptr) {
    for (const std::string& name : results->GetVarNames()) {
      auto var = std::make_shared<const ResultVar>(static_cast<const ResultVar&>(*results->GetVar(name)));
      const Feature feature = FindFeature(var->GetFeature(), layout);
      const std::string category = var->GetDefValue() == nullptr ? "" : var->GetDefValue()->GetString();
      outputs.Add({std::move(var), feature, FindCategory(translator, category, layout, target)}, names);
    }
  }
  if (output != nullptr) outputs.ReadTransformed(translator, *output, layout);
  outputs.fTargets.resize(std::max<std::size_t>(targets.size(), 1));
  for (std::size_t t = 0; t < outputs.fTargets.size(); ++t) {
    outputs.fTargets[t].categoryLabels =
        LabelsOf(layout.OfTarget(static_cast<int>(t)), targets.empty() ? nullptr : targets[t]);
  }
  return outputs;
}

// They stand among the other output fields, in their order.
void OutputFields::ReadTransformed(PMMLTranslator& translator, const DOMElement& output,
                                   const PluginResult& layout) {
  const auto isTransformed = [](const Field& field) { return field.feature == Feature::kTransformed; };
  if (std::ranges::none_of(fFields, isTransformed)) return;
  for (std::size_t i = 0; i < fFields.size(); ++i) {
    const Feature feature = fFields[i].feature;
    if (feature == Feature::kTransformed) continue;
    const PluginResult& answer = layout.OfTarget(fFields[i].target);
    const bool hasCategories = answer.GetNumberOfCategories() > 0;
    const bool hasTexts = hasCategories && AsString(answer.GetCategory(0)) != nullptr;
    const bool isText = feature == Feature::kEntityId || (feature == Feature::kValue && hasTexts) ||
                        (feature == Feature::kDisplayValue && hasCategories);
    fTransformed.AddGiven(fFields[i].var->GetName(), static_cast<int>(i), isText);
  }
  std::size_t next = 0;
  ForEachChildElement(&output, [&](const DOMElement& element) {
    if (!HasTag(element, StandardTags::XML_ELE_OUTPUTFIELD)) return;
    const std::size_t field = next++;
    if (fFields[field].feature != Feature::kTransformed) return;
    fTransformed.AddTransformed(translator, element, static_cast<int>(field));
  });
  fTransformed.Finish();
}

void OutputFields::Add(Field field, std::set<std::string>& names) {
  if (!names.insert(field.var->GetName()).second) {
    Raise(MessageId::kDuplicateValueIn,
          {StandardTags::XML_ELE_OUTPUTFIELD, field.var->GetName(), Tags::XML_ELE_VAL_OUTPUT});
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

void OutputFields::Prepare(const ScoreCaseRecord& layout, const std::vector<const ScoreDictVar*>& targets) {
  for (std::size_t t = 0; t < targets.size(); ++t) fTargets[t].slot = layout.GetIndex(targets[t]->GetName());
}

void OutputFields::Fill(const ScoreCaseRecord& record, PluginResult& result) {
  for (std::size_t i = 0; i < fFields.size(); ++i) {
    FillField(static_cast<int>(i), result.OfTarget(fFields[i].target), record, result);
  }
  fTransformed.Fill(result);
}

void OutputFields::FillField(int index, const PluginResult& answer, const ScoreCaseRecord& record,
                             PluginResult& result) const {
  const Field& field = fFields[static_cast<std::size_t>(index)];
  const int predicted = answer.GetPredictedCategory();
  const int category = field.category < 0 ? predicted : field.category;
  switch (field.feature) {
    case Feature::kDisplayValue: {
      const std::vector<std::string>& labels = TargetOf(field).categoryLabels;
      if (predicted >= 0 && static_cast<std::size_t>(predicted) < labels.size())
        return result.SetOutputText(index, labels[static_cast<std::size_t>(predicted)]);
      [[fallthrough]];
    }
    case Feature::kValue:
      return result.SetOutputValue(index, answer.GetPredictedValue());
    case Feature::kProbability:
      return result.SetOutputNumber(
          index, field.category < 0 ? answer.GetProbability() : answer.GetCategoryProbability(category));
    case Feature::kConfidence:
      if (category >= 0) result.SetOutputNumber(index, answer.GetCategoryConfidence(category));
      return;
    case Feature::kEntityId:
    case Feature::kAffinity:
      return FillEntity(index, result);
    case Feature::kResidual:
      return FillResidual(index, answer, record, result);
    case Feature::kStandardError:
      return result.SetOutputNumber(index, answer.GetStandardError());
    case Feature::kTransformed:
    case Feature::kNone:
      return;
  }
}

// The parts that decide are those of the model, whatever the target.
void OutputFields::FillEntity(int index, PluginResult& result) const {
  const Field& field = fFields[static_cast<std::size_t>(index)];
  const PluginResult::Entity* const entity = result.GetEntity(field.rank);
  if (entity == nullptr) return;
  if (field.feature == Feature::kEntityId) return result.SetOutputText(index, *entity->id);
  result.SetOutputNumber(index, entity->affinity);
}

// Of a number: the actual value minus the predicted one.  Of a category: 1 when it is the actual one, else 0,
// minus its probability.
void OutputFields::FillResidual(int index, const PluginResult& answer, const ScoreCaseRecord& record,
                                PluginResult& result) const {
  const Field& field = fFields[static_cast<std::size_t>(index)];
  const ScoreValue* actual = record.Get(TargetOf(field).slot);
  const ScoreValue* predicted = answer.GetPredictedValue();
  if (actual == nullptr || actual->IsSystemMissingValue() || predicted == nullptr) return;
  if (answer.GetNumberOfCategories() == 0) {
    if (actual->GetType() != predicted->GetType()) return;
    result.SetOutputNumber(index, actual->GetDouble() - predicted->GetDouble());
    return;
  }
  const int category = field.category >= 0 ? field.category : answer.GetPredictedCategory();
  if (category < 0) return;
  const double probability = answer.GetCategoryProbability(category);
  if (NumericValue::IsSystemMissingValue(probability)) return;
  const bool isActual = *answer.GetCategory(category) == *actual;
  result.SetOutputNumber(index, (isActual ? 1.0 : 0.0) - probability);
}

}  // namespace KxVeyra_940::Plugin
