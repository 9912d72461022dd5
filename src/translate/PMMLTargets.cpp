// What a model says about its outputs: result fields, and targets with their categories, priors and defaults.

#include <memory>
#include <xercesc/dom/DOMElement.hpp>

#include "data/BaseDictionary.h"
#include "data/NumericValue.h"
#include "data/ResultVar.h"
#include "data/StringValue.h"
#include "data/ValueLabelSet.h"
#include "data/ValueLbl.h"
#include "data/ValueProbability.h"
#include "data/ValueProbabilitySet.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "translate/OptypesInternal.h"
#include "translate/PMMLTranslator.h"
#include "translate/VariablesInternal.h"

namespace KxVeyra_940 {
namespace {

using namespace PMMLModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;

struct FeatureRow {
  const char* text;
  ScoreResultField::ResultFeature feature;
};
constexpr FeatureRow kFeatures[] = {
    {XML_ATT_VAL_MINING_PREDICTEDVALUE, ScoreResultField::kPredictedValue},
    {XML_ATT_VAL_MINING_PREDICTEDDispVALUE, ScoreResultField::kPredictedDisplayValue},
    {XML_VAL_OT_CATEGORICAL, ScoreResultField::kPredictedDisplayValue},
    {XML_ATT_VAL_MINING_PROBABILITY, ScoreResultField::kProbability},
    {XML_ATT_VAL_MINING_RESIDUAL, ScoreResultField::kResidual},
    {XML_ATT_VAL_MINING_STANDARDERROR, ScoreResultField::kStandardError},
    {XML_ATT_VAL_MINING_CLUSTERID, ScoreResultField::kClusterId},
    {XML_ATT_VAL_MINING_CLUSTERAFFINITY, ScoreResultField::kClusterAffinity},
    {XML_ATT_VAL_MINING_ENTITYID, ScoreResultField::kEntityId},
    {XML_ATT_VAL_MINING_ENTITYIDAFFINITY, ScoreResultField::kEntityAffinity},
    {XML_ATT_VAL_MINING_WARNING, ScoreResultField::kWarning},
    {XML_ATT_VAL_MINING_RULEVALUE, ScoreResultField::kRuleValue},
    {XML_ATT_VAL_MINING_STANDARDDEVIATION, ScoreResultField::kStandardDeviation},
};

ScoreResultField::ResultFeature FeatureOf(const XMLCh* text) {
  if (IsEmpty(text)) return ScoreResultField::kNoFeature;
  for (const FeatureRow& row : kFeatures)
    if (EqualsAscii(text, row.text)) return row.feature;
  Raise(MessageId::kInvalidAttributeValueIn,
        {ToUTF8(text), XML_ATT_VAL_MINING_FEATURE, XML_ELE_VAL_RESULTFIELD});
}

// Reads one Target into the variable of its field.
class TargetReader {
 public:
  TargetReader(const PMMLTranslator& translator, const DOMElement& target, ScoreDictVar& variable)
      : fTranslator(translator), fTarget(target), fVariable(variable) {}

  void Read() {
    VerifyLevel();
    if (fVariable.GetMLevel() == ScoreDictVar::kContinuous) {
      ReadDefault();
    } else {
      ReadCategories();
    }
  }

 private:
  void VerifyLevel() const;
  void ReadDefault();
  void ReadCategories();
  void ReadCategory(const DOMElement& element, ScoreValueLabelSet& labels, ScoreValueProbabilitySet& priors);
  void VerifyValueText(const XMLCh* text) const;

  template <typename Action>
  void ForEachTargetValue(Action action) const {
    ForEachChildElement(&fTarget, [&](const DOMElement& child) {
      if (HasTag(child, XML_ELE_TARGETVALUE)) action(child);
    });
  }

  const PMMLTranslator& fTranslator;
  const DOMElement& fTarget;
  ScoreDictVar& fVariable;
};

void TargetReader::VerifyLevel() const {
  const ScoreDictVar::MeasureLevel level = LevelOf(RequiredAttribute(fTarget, XML_ATT_DATAFIELD_OPTYPE));
  if (level == fVariable.GetMLevel()) return;
  Raise(MessageId::kConflictingValuesIn,
        {PMMLTranslator::ToString(fVariable.GetMLevel()), XML_ATT_DATAFIELD_OPTYPE, XML_ELE_DATADICTIONARY,
         PMMLTranslator::ToString(level), XML_ATT_DATAFIELD_OPTYPE, XML_ELE_TARGET});
}

// The last default wins.
void TargetReader::ReadDefault() {
  ForEachTargetValue([this](const DOMElement& element) {
    const std::optional<double> number = NumberIfPresent(element, XML_ATT_DEFAULTVALUE);
    if (!number.has_value()) return;
    ReplacePart(fVariable, &ScoreDictVar::GetDefValue, &ScoreDictVar::SetDefValue,
                std::make_unique<NumericValue>(*number));
  });
}

void TargetReader::ReadCategories() {
  if (fVariable.GetValueLabels() == nullptr) fVariable.SetValueLabels(new ValueLabelSet());
  auto priors = std::make_unique<ValueProbabilitySet>();
  ForEachTargetValue(
      [&](const DOMElement& element) { ReadCategory(element, *fVariable.GetValueLabels(), *priors); });
  fTranslator.VerifyCategories(fVariable);
  if (priors->Size() == 0) return;
  ReplacePart(fVariable, &ScoreDictVar::GetValueProbabilities, &ScoreDictVar::SetValueProbabilities,
              std::move(priors));
}

void TargetReader::VerifyValueText(const XMLCh* text) const {
  const bool isString = fVariable.GetVarType() == ScoreDictVar::STRING_VAR;
  const bool mayBeEmpty =
      isString ? fVariable.GetEmptyStringOK() : fVariable.GetVarType() != ScoreDictVar::kNUMERIC_VAR;
  if (IsEmpty(text) && !mayBeEmpty) Raise(MessageId::kNullIn, {XML_ATT_VALUE_VALUE, XML_ELE_VALUE});
}

void TargetReader::ReadCategory(const DOMElement& element, ScoreValueLabelSet& labels,
                                ScoreValueProbabilitySet& priors) {
  const XMLCh* text = RequiredAttribute(element, XML_ATT_VALUE_VALUE);
  VerifyValueText(text);
  const std::unique_ptr<ScoreValue> value(fTranslator.CarefullyMakeVarValue(&fVariable, text));
  if (!labels.Contains(value.get())) {
    const XMLCh* display = Attribute(element, XML_ATT_VALUE_DISPLAYVALUE);
    labels.Add(new ValueLbl(value->Clone(), fTranslator.EncodedText(IsEmpty(display) ? text : display)));
  }
  const std::optional<double> prior = NumberIfPresent(element, XML_ATT_PRIORPROBABILITY);
  if (prior.has_value()) priors.Add(new ValueProbability(value->Clone(), *prior));
}

}  // namespace

std::string PMMLTranslator::ToString(ScoreDictVar::MeasureLevel level) {
  for (const OptypeRow& row : kOptypes)
    if (row.level == level) return row.text;
  return {};
}

ScoreDictionary* PMMLTranslator::ParseResultDictionary(const xercesc::DOMNode* node) {
  auto dictionary = std::make_unique<BaseDictionary>();
  if (node == nullptr) return nullptr;
  if (fTranscoder == nullptr) CreateTranscoder(fEncoding);
  ForEachElementBelow(*node, XML_ELE_VAL_RESULTFIELD, [&](const DOMElement& element) {
    const std::string name = NameOf(*this, RequiredNonEmptyAttribute(element, XML_ATT_VAL_MINING_NAME));
    auto variable = std::make_unique<ResultVar>(name, ScoreDictVar::kNUMERIC_VAR);
    const XMLCh* label = Attribute(element, XML_ATT_DATAFIELD_DISPLAYNAME);
    variable->SetLabel(IsEmpty(label) ? name : EncodedText(label));
    const XMLCh* optype = Attribute(element, XML_ATT_VAL_MINING_OPTYPE);
    if (!IsEmpty(optype)) variable->SetMLevel(LevelOf(optype));
    if (EqualsAscii(Attribute(element, XML_ATT_DATATYPE), XML_VAL_STRING)) {
      variable->SetVarType(ScoreDictVar::STRING_VAR);
    }
    variable->SetFeature(FeatureOf(RequiredAttribute(element, XML_ATT_VAL_MINING_FEATURE)));
    const XMLCh* value = Attribute(element, XML_ATT_VALUE);
    if (!IsEmpty(value)) variable->SetDefValue(new StringValue(EncodedText(value)));
    // A name given twice keeps its first field.
    if (dictionary->AddVar(name, variable.get())) static_cast<void>(variable.release());
  });
  return dictionary->Size() == 0 ? nullptr : dictionary.release();
}

bool PMMLTranslator::HandleTargets(const DOMElement* targets, ScoreDictionary* dictionary) {
  ForEachChildElement(targets, [&](const DOMElement& target) {
    if (!HasTag(target, XML_ELE_TARGET)) return;
    const XMLCh* name = RequiredNonEmptyAttribute(target, XML_ATT_FIELD);
    ScoreDictVar* variable = dictionary->GetVar(EncodedText(name));
    if (variable == nullptr) Raise(MessageId::kMissingVariableIn, {ToUTF8(name), XML_ELE_DATADICTIONARY});
    TargetReader(*this, target, *variable).Read();
  });
  return true;
}

}  // namespace KxVeyra_940
