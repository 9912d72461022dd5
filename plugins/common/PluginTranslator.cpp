#include "common/PluginTranslator.h"

#include "error/Raise.h"
#include "factory/VersionInfo.h"
#include "translate/DomReader.h"
#include "translate/ModelElements.h"
#include "translate/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMDocument;
using xercesc::DOMElement;

namespace {

const DOMElement& RootOf(const DOMElement& element) {
  return *element.getOwnerDocument()->getDocumentElement();
}

// A clone whose variables are no inputs yet.
std::unique_ptr<ScoreDictionary> CloneOf(const ScoreDictionary* dictionary) {
  if (dictionary == nullptr) {
    Raise(MessageId::kMissingNodeIn, {Tags::XML_ELE_DATADICTIONARY, Tags::XML_ELE_PMML});
  }
  std::unique_ptr<ScoreDictionary> clone(dictionary->Clone());
  for (ScoreDictVar* var : clone->GetScoreDictVars()) var->SetEncodedValueIndex(-1);
  return clone;
}

}  // namespace

PluginTranslator::PluginTranslator(const char* modelTag)
    : PMMLTranslator(std::string()), fModelTag(modelTag) {}

PluginTranslator::~PluginTranslator() = default;

const DOMElement& PluginTranslator::FindModelElement(const DOMElement& root) const {
  const DOMElement* found = nullptr;
  const DOMElement* other = nullptr;
  ForEachChildElement(&root, [&](const DOMElement& child) {
    if (found == nullptr && HasTag(child, fModelTag)) found = &child;
    if (other == nullptr && IsModelElement(child)) other = &child;
  });
  if (found != nullptr) return *found;
  const std::string tag = other == nullptr ? std::string() : ToString(other->getTagName());
  Raise(MessageId::kInvalidNodeExpectedIn, {tag, fModelTag, ToString(root.getTagName())});
}

void PluginTranslator::SetEncoding(const std::string& encoding) {
  fEncoding = encoding;
  CreateTranscoder(encoding);
}

ScoreModel* PluginTranslator::ParseFromTree(DOMDocument* document, const std::string& encoding) {
  SetEncoding(encoding);
  const DOMElement& root = *document->getDocumentElement();
  const DOMElement& element = FindModelElement(root);
  const DOMElement* dataDictionary = GetChildByTag(&root, Tags::XML_ELE_DATADICTIONARY);
  std::unique_ptr<ScoreDictionary> dictionary(ParseDictionary(dataDictionary, false));
  return Build(element, std::move(dictionary), dataDictionary);
}

ScoreModel* PluginTranslator::ParseFromTree(DOMDocument* document, ScoreDictionary* dictionary,
                                            const std::string& encoding) {
  SetEncoding(encoding);
  return Build(FindModelElement(*document->getDocumentElement()), CloneOf(dictionary), nullptr);
}

ScoreModel* PluginTranslator::ParseFromTree(DOMElement* modelElement, ScoreDictionary* dictionary,
                                            ScoreDictionary* /*transformationDictionary*/,
                                            const std::string& encoding) {
  SetEncoding(encoding);
  return Build(*modelElement, CloneOf(dictionary), nullptr);
}

ScoreModel* PluginTranslator::ParseFromTree(DOMElement* modelElement, ScoreModel* baseModel,
                                            const std::string& encoding) {
  SetEncoding(encoding);
  return Build(*modelElement, CloneOf(baseModel == nullptr ? nullptr : baseModel->GetDictionary()), nullptr);
}

ScoreModel* PluginTranslator::ParseFromTree(DOMElement* first, DOMElement* /*second*/,
                                            DOMElement* modelElement, const std::string& encoding) {
  SetEncoding(encoding);
  std::unique_ptr<ScoreDictionary> dictionary(ParseDictionary(first, false));
  return Build(*modelElement, std::move(dictionary), first);
}

ScoreModel* PluginTranslator::Build(const DOMElement& element, std::unique_ptr<ScoreDictionary> dictionary,
                                    const DOMElement* dataDictionary) {
  if (IsEqual(Attribute(element, Tags::XML_ATT_RM_IS_SCORABLE), "false")) {
    Raise(MessageId::kUnsupportedValue, {"false", Tags::XML_ATT_RM_IS_SCORABLE});
  }
  std::unique_ptr<PluginModel> model = NewModel();
  fFields.emplace(*dictionary);
  model->SetScoreDictionary(dictionary.release(), true);
  model->SetVersionInfo(std::make_unique<VersionInfo>(
                            BaseTranslator::ToString(Attribute(RootOf(element), Tags::XML_ATT_VERSION)))
                            .release());
  model->SetAlgorithmName(BaseTranslator::ToString(Attribute(element, Tags::XML_ATT_MODELALGO)));
  model->SetMiningFunction(
      BaseModel::MiningFunctionFromString(ToString(RequiredAttribute(element, Tags::XML_ATT_FUNCTIONNAME))));
  AddFields(element, dataDictionary, *model);
  if (const DOMElement* targets = GetChildByTag(&element, Tags::XML_ELE_TARGETS)) {
    HandleTargets(targets, model->GetDictionary());
  }
  BuildModel(element, *model);
  model->SetTargetRules(ReadTargetRules(element, model->GetTargetVar()));
  model->SetOutputs(OutputFields::Read(*this, element, *model->NewBareResult(), model->GetTargetVar()));
  return model.release();
}

void PluginTranslator::AddFields(const DOMElement& element, const DOMElement* dataDictionary,
                                 PluginModel& model) const {
  ScoreDictionary& dictionary = *model.GetDictionary();
  const InvalidValuesByField invalidValues = ReadInvalidValues(*this, dataDictionary, dictionary);
  MiningSchema schema = ReadMiningSchema(*this, element, dictionary);
  model.GetInputs().Reserve(schema.size());
  for (MiningField& field : schema) {
    const std::string& name = field.var->GetName();
    if (field.var->GetEncodedValueIndex() >= 0 || model.BaseModel::GetVarRole(name) != ScoreModel::kNoRole) {
      Raise(MessageId::kDuplicateVariableIn, {name, Tags::XML_ELE_MININGSCHEMA});
    }
    if (field.usage == Usage::kActive) {
      const auto found = invalidValues.find(name);
      model.GetInputs().Add(std::move(field), found == invalidValues.end() ? nullptr : found->second);
      continue;
    }
    if (field.usage == Usage::kTarget && model.GetTargetVar() != nullptr) {
      Raise(MessageId::kMultipleTargets, {model.GetTargetVar()->GetName(), name});
    }
    model.SetVarRole(
        name, field.usage == Usage::kTarget ? ScoreModel::kTargetRole : ScoreModel::kSupplementaryRole);
  }
}

int PluginTranslator::FindInput(const DOMElement& element, const char* attribute) {
  const std::string name = BaseTranslator::ToString(RequiredNonEmptyAttribute(element, attribute));
  const ScoreDictVar* var = fFields->Find(name);
  if (var == nullptr) {
    Raise(MessageId::kMissingVariableInBoth,
          {name, Tags::XML_ELE_DATADICTIONARY, Tags::XML_ELE_TRANSFORMATION});
  }
  if (var->GetEncodedValueIndex() < 0) Raise(MessageId::kNotAPredictor, {name});
  return var->GetEncodedValueIndex();
}

int PluginTranslator::FindNumber(const DOMElement& element, const char* attribute, PluginModel& model) {
  const int index = FindInput(element, attribute);
  const ScoreDictVar& var = model.GetInputs().GetVar(index);
  if (var.GetVarType() == ScoreDictVar::STRING_VAR) Raise(MessageId::kNumericRequired, {var.GetName()});
  model.GetInputs().UseAsNumber(index);
  return index;
}

}  // namespace KxVeyra_940::Plugin
