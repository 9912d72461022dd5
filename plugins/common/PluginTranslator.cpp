#include "common/PluginTranslator.h"

#include "data/StringValue.h"
#include "error/Raise.h"
#include "factory/VersionInfo.h"
#include "transform/TransformVar.h"
#include "translate/DomReader.h"
#include "translate/ModelElements.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"
#include "xml/DocumentStream.h"
#include "xml/ParserLimits.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;
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

std::unique_ptr<TransformationDictionary> CloneOfDerived(const ScoreDictionary* dictionary) {
  if (dynamic_cast<const TransformationDictionary*>(dictionary) == nullptr) return nullptr;
  std::unique_ptr<TransformationDictionary> clone(
      static_cast<TransformationDictionary*>(dictionary->Clone()));
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
  return Build(element, std::move(dictionary), dataDictionary, nullptr);
}

ScoreModel* PluginTranslator::ParseFromTree(std::istream& in, const std::string& encoding) {
  return ParseFromTree(in, encoding, std::string());
}

ScoreModel* PluginTranslator::ParseFromTree(std::istream& in, const std::string& encoding,
                                            const std::string& auxPath) {
  fAuxPath = auxPath;
  KxXML_940::LimitedDOMParser parser;
  parser.setValidationScheme(xercesc::XercesDOMParser::Val_Never);
  return ParseFromTree(KxXML_940::ParseDocument(parser, in), encoding);
}

void PluginTranslator::CompleteModel(const DOMElement&, PluginModel&) {}

ScoreModel* PluginTranslator::ParseFromTree(DOMDocument* document, ScoreDictionary* dictionary,
                                            const std::string& encoding) {
  SetEncoding(encoding);
  return Build(FindModelElement(*document->getDocumentElement()), CloneOf(dictionary), nullptr, nullptr);
}

ScoreModel* PluginTranslator::ParseFromTree(DOMElement* modelElement, ScoreDictionary* dictionary,
                                            ScoreDictionary* transformationDictionary,
                                            const std::string& encoding) {
  SetEncoding(encoding);
  return Build(*modelElement, CloneOf(dictionary), nullptr, CloneOfDerived(transformationDictionary));
}

ScoreModel* PluginTranslator::ParseFromTree(DOMElement* modelElement, ScoreModel* baseModel,
                                            const std::string& encoding) {
  SetEncoding(encoding);
  const bool hasBase = baseModel != nullptr;
  return Build(*modelElement, CloneOf(hasBase ? baseModel->GetDictionary() : nullptr), nullptr,
               CloneOfDerived(hasBase ? baseModel->GetTransformationDictionary() : nullptr));
}

ScoreModel* PluginTranslator::ParseFromTree(DOMElement* first, DOMElement* second, DOMElement* modelElement,
                                            const std::string& encoding) {
  SetEncoding(encoding);
  std::unique_ptr<ScoreDictionary> dictionary(ParseDictionary(first, false));
  std::unique_ptr<TransformationDictionary> transformations;
  if (second != nullptr && HasTag(*second, Tags::XML_ELE_TRANSFORMATION)) {
    transformations = std::make_unique<TransformationDictionary>();
    ExtendTransformationDictionary(*second, dictionary.get(), *transformations);
  }
  return Build(*modelElement, std::move(dictionary), first, std::move(transformations));
}

ScoreModel* PluginTranslator::Build(const DOMElement& element, std::unique_ptr<ScoreDictionary> dictionary,
                                    const DOMElement* dataDictionary,
                                    std::unique_ptr<TransformationDictionary> transformations) {
  if (IsEqual(Attribute(element, Tags::XML_ATT_RM_IS_SCORABLE), StandardTags::XML_VAL_FALSE)) {
    Raise(MessageId::kUnsupportedValue, {StandardTags::XML_VAL_FALSE, Tags::XML_ATT_RM_IS_SCORABLE});
  }
  Frame frame;
  frame.algorithm = EncodedText(Attribute(element, Tags::XML_ATT_MODELALGO));
  frame.function =
      BaseModel::MiningFunctionFromString(ToString(RequiredAttribute(element, Tags::XML_ATT_FUNCTIONNAME)));
  frame.invalidValues = ReadInvalidValues(*this, dataDictionary, *dictionary);
  frame.schema = ReadMiningSchema(*this, element, *dictionary);
  frame.dictionary = std::move(dictionary);
  frame.transformations = std::move(transformations);
  return BuildFrom(element, std::move(frame));
}

ScoreModel* PluginTranslator::BuildFrom(const DOMElement& element, Frame frame) {
  std::unique_ptr<PluginModel> model = NewModel();
  fFields.emplace(*frame.dictionary);
  model->SetScoreDictionary(frame.dictionary.release(), true);
  model->SetVersionInfo(
      std::make_unique<VersionInfo>(EncodedText(Attribute(RootOf(element), Tags::XML_ATT_VERSION)))
          .release());
  model->SetAlgorithmName(std::move(frame.algorithm));
  model->SetMiningFunction(frame.function);
  fInvalidValues = std::move(frame.invalidValues);
  AddFields(std::move(frame.schema), *model);
  if (const DOMElement* targets = GetChildByTag(&element, Tags::XML_ELE_TARGETS)) {
    HandleTargets(targets, model->GetDictionary());
  }
  AddDerivedFields(element, std::move(frame.transformations), *model);
  BuildModel(element, *model);
  if (!fDerivedInputs.empty()) UseDerivedFields(*model);
  CompleteModel(element, *model);
  const std::vector<const ScoreDictVar*> targets = model->GetTargetVars();
  for (std::size_t i = 0; i < targets.size(); ++i)
    model->SetTargetRules(ReadTargetRules(element, targets[i]), static_cast<int>(i));
  model->SetOutputs(OutputFields::Read(*this, element, *model->NewBareResult(), targets));
  return model.release();
}

// The document's derived fields, those of the model's own after them, as far as none are given.
void PluginTranslator::AddDerivedFields(const DOMElement& element,
                                        std::unique_ptr<TransformationDictionary> transformations,
                                        PluginModel& model) {
  fModel = &model;
  fDerivedInputs.clear();
  if (transformations == nullptr) {
    transformations = std::make_unique<TransformationDictionary>();
    const DOMElement* const shared = GetChildByTag(&RootOf(element), Tags::XML_ELE_TRANSFORMATION);
    if (shared != nullptr) ExtendTransformationDictionary(*shared, model.GetDictionary(), *transformations);
  }
  const DOMElement* const local = GetChildByTag(&element, Tags::XML_ELE_LOCALTRANSFORMATIONS);
  if (local != nullptr) ExtendTransformationDictionary(*local, model.GetDictionary(), *transformations);
  if (transformations->Size() == 0) return;
  for (ScoreDictVar* var : transformations->GetScoreDictVars())
    if (var->GetValueLabels() == nullptr) var->SetEmptyCateValues(true);
  model.SetTransformationScoreDictionary(transformations.release(), true);
}

// Only what the model reads is evaluated, on the inputs as the mining schema deals with them.
void PluginTranslator::UseDerivedFields(PluginModel& model) const {
  TransformationDictionary& derived = *model.GetTransformationDictionary();
  derived.KeepOnly(fDerivedInputs);
  for (const std::string& name : derived.GetDerivedVarNames()) {
    for (const std::string& read : static_cast<const TransformVar*>(derived.GetVar(name))->GetReads()) {
      const ScoreDictVar* const var = model.GetDictionary()->GetVar(read);
      if (var == nullptr) continue;
      if (var->GetEncodedValueIndex() < 0) Raise(MessageId::kNotAPredictor, {read});
      model.GetInputs().UseInDerived(var->GetEncodedValueIndex());
    }
  }
  model.UseTransformations();
}

void PluginTranslator::AddFields(MiningSchema schema, PluginModel& model) const {
  model.GetInputs().Reserve(schema.size());
  for (MiningField& field : schema) {
    const std::string& name = field.var->GetName();
    if (field.var->GetEncodedValueIndex() >= 0 || model.BaseModel::GetVarRole(name) != ScoreModel::kNoRole) {
      Raise(MessageId::kDuplicateVariableIn, {name, Tags::XML_ELE_MININGSCHEMA});
    }
    if (field.usage == Usage::kActive) {
      const auto found = fInvalidValues.find(name);
      model.GetInputs().Add(std::move(field), found == fInvalidValues.end() ? nullptr : found->second);
      continue;
    }
    if (field.usage == Usage::kTarget && model.GetTargetVar() != nullptr) {
      if (!TakesSeveralTargets()) {
        Raise(MessageId::kMultipleTargets, {model.GetTargetVar()->GetName(), name});
      }
      model.AddFurtherTarget(name);
      continue;
    }
    model.SetVarRole(
        name, field.usage == Usage::kTarget ? ScoreModel::kTargetRole : ScoreModel::kSupplementaryRole);
  }
}

int PluginTranslator::FindInput(const DOMElement& element, const char* attribute) {
  const std::string name = EncodedText(RequiredNonEmptyAttribute(element, attribute));
  ScoreDictVar* var = fFields->Find(name);
  TransformationDictionary* const derived = fModel->GetTransformationDictionary();
  if (var == nullptr && derived != nullptr && (var = derived->GetVar(name)) != nullptr &&
      var->GetEncodedValueIndex() < 0) {
    fDerivedInputs.push_back(name);
    return fModel->GetInputs().AddDerived(*var);
  }
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

std::unique_ptr<ScoreValue> PluginTranslator::ReadTargetCategory(const DOMElement& element,
                                                                 const char* attribute,
                                                                 const ScoreDictVar* target) const {
  const XMLCh* text = RequiredAttribute(element, attribute);
  if (target == nullptr) return std::make_unique<StringValue>(EncodedText(text));
  std::unique_ptr<ScoreValue> category(CarefullyMakeVarValue(target, text));
  if (!target->IsValidValue(category.get())) {
    Raise(MessageId::kValueNotInValueList, {ToString(text), target->GetName()});
  }
  return category;
}

}  // namespace KxVeyra_940::Plugin
