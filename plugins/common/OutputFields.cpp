#include "common/OutputFields.h"

#include <set>

#include "data/BaseDictionary.h"
#include "data/ResultVar.h"
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

const FeatureRow& FindFeature(const std::string& text, const PluginResult& layout) {
  if (text.empty()) return kFeatures[0];
  for (const FeatureRow& row : kFeatures) {
    if (row.text == text && (!row.needsCategories || layout.GetNumberOfCategories() > 0)) return row;
  }
  Raise(MessageId::kUnsupportedValue, {text, Tags::XML_ATT_VAL_MINING_FEATURE});
}

// The model's category that the field names; -1 when it names none.
int ReadCategory(const PMMLTranslator& translator, const DOMElement& element, const PluginResult& layout,
                 const ScoreDictVar* target) {
  const XMLCh* text = Attribute(element, Tags::XML_ATT_VALUE);
  if (IsEmpty(text) || layout.GetNumberOfCategories() == 0) return -1;
  const bool isText = layout.GetCategory(0)->GetType() == ScoreValue::kStringValueType;
  std::unique_ptr<ScoreValue> value;
  if (target != nullptr) {
    value.reset(translator.CarefullyMakeVarValue(target, text));
  } else if (isText) {
    value = std::make_unique<StringValue>(translator.BaseTranslator::ToString(text));
  } else {
    value = std::make_unique<NumericValue>(BaseTranslator::VerifyDouble(text));
  }
  const int category = layout.FindCategory(*value);
  if (category < 0) {
    Raise(MessageId::kMissingValueDefinition,
          {PMMLTranslator::ToString(text), target == nullptr ? Tags::XML_ELE_REGTABLE : target->GetName()});
  }
  return category;
}

const char* FieldTag(const DOMElement& element) {
  if (HasTag(element, kOutputField)) return kOutputField;
  return HasTag(element, Tags::XML_ELE_VAL_RESULTFIELD) ? Tags::XML_ELE_VAL_RESULTFIELD : nullptr;
}

}  // namespace

OutputFields OutputFields::Read(const PMMLTranslator& translator, const DOMElement& model,
                                const PluginResult& layout, const ScoreDictVar* target) {
  OutputFields outputs;
  std::set<std::string> names;
  ForEachChildElement(
      BaseTranslator::GetChildByTag(&model, Tags::XML_ELE_VAL_OUTPUT), [&](const DOMElement& element) {
        const char* tag = FieldTag(element);
        if (tag == nullptr) return;
        Field field;
        field.name =
            translator.BaseTranslator::ToString(RequiredNonEmptyAttribute(element, Tags::XML_ATT_NAME));
        if (!names.insert(field.name).second) {
          Raise(MessageId::kDuplicateValueIn, {tag, field.name, Tags::XML_ELE_VAL_OUTPUT});
        }
        field.label =
            translator.BaseTranslator::ToString(Attribute(element, Tags::XML_ATT_DATAFIELD_DISPLAYNAME));
        field.feature = FindFeature(OptionalText(element, Tags::XML_ATT_VAL_MINING_FEATURE), layout).feature;
        field.category = ReadCategory(translator, element, layout, target);
        outputs.fFields.push_back(std::move(field));
      });
  for (int i = 0; i < layout.GetNumberOfCategories(); ++i) {
    const ScoreValue* category = layout.GetCategory(i);
    const std::string label = target == nullptr ? std::string() : target->GetLabelOfValue(category);
    outputs.fCategoryLabels.push_back(label.empty() ? category->GetString() : label);
  }
  return outputs;
}

std::unique_ptr<ScoreDictionary> OutputFields::MakeDictionary() const {
  if (fFields.empty()) return nullptr;
  auto dictionary = std::make_unique<BaseDictionary>();
  for (const Field& field : fFields) {
    auto var = std::make_unique<ResultVar>(field.name, ScoreDictVar::kNUMERIC_VAR);
    var->SetLabel(field.label.empty() ? field.name : field.label);
    var->SetFeature(field.feature);
    dictionary->AddVar(field.name, var.release());
  }
  return dictionary;
}

void OutputFields::AddTo(PluginResult& result) const {
  for (const Field& field : fFields) result.AddOutput(field.name);
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
