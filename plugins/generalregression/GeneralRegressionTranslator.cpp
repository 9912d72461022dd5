#include "generalregression/GeneralRegressionTranslator.h"

#include <set>

#include "error/Raise.h"
#include "generalregression/DescriptionReader.h"
#include "generalregression/Equations.h"
#include "generalregression/GeneralRegressionModel.h"
#include "generalregression/HazardReader.h"
#include "translate/DomReader.h"
#include "translate/ZENTTranslator.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/ZENTModelTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMDocument;
using xercesc::DOMElement;

namespace {

bool IsZent(const DOMElement& element) { return HasTag(element, ZentWords().model); }

// The sum over parameters of reference point x coefficient, which the linear predictor is measured from.
double PredictorAtReference(const Description& description) {
  double sum = 0;
  for (const Estimate& estimate : description.estimates) {
    sum +=
        estimate.beta * description.parameters[static_cast<std::size_t>(estimate.parameter)].referencePoint;
  }
  return sum;
}

}  // namespace

GeneralRegressionTranslator::GeneralRegressionTranslator() : PluginTranslator(Tags::XML_ELE_REGRESSMODEL) {}
GeneralRegressionTranslator::~GeneralRegressionTranslator() = default;

std::unique_ptr<PluginModel> GeneralRegressionTranslator::NewModel() const {
  return std::make_unique<GeneralRegressionModel>();
}

ScoreModel* GeneralRegressionTranslator::ParseFromTree(DOMDocument* document, const std::string& encoding) {
  const DOMElement& root = *document->getDocumentElement();
  if (HasTag(root, ZENTModelTags::XML_ELE_ZENTML.c_str())) return ParseZent(root, encoding);
  return PluginTranslator::ParseFromTree(document, encoding);
}

ScoreModel* GeneralRegressionTranslator::ParseZent(const DOMElement& root, const std::string& encoding) {
  SetEncoding(encoding);
  const DOMElement* element = nullptr;
  ForEachElementBelow(root, ZentWords().model, [&](const DOMElement& found) {
    if (element == nullptr) element = &found;
  });
  if (element == nullptr) Raise(MessageId::kMissingNode, {ZentWords().model});
  Frame frame;
  frame.dictionary.reset(ZENTTranslator(encoding).ParseDictionary(
      GetChildByTag(&root, ZENTModelTags::XML_ELE_DICTIONARY.c_str())));
  frame.function = FunctionOf(ReadZentSettings(*element).type);
  frame.schema = ReadZentFields(*element, *frame.dictionary);
  return BuildFrom(*element, std::move(frame));
}

// Predictors are what goes in; nothing is said of missing values but what the dictionary says.
MiningSchema GeneralRegressionTranslator::ReadZentFields(const DOMElement& element,
                                                         ScoreDictionary& dictionary) const {
  MiningSchema schema;
  std::set<std::string> known;
  const auto find = [&](const DOMElement& named, const char* attribute) {
    const std::string name = EncodedText(RequiredNonEmptyAttribute(named, attribute));
    ScoreDictVar* field = dictionary.GetVar(name);
    if (field == nullptr) Raise(MessageId::kMissingVariableIn, {name, ZENTModelTags::XML_ELE_DICTIONARY});
    return field;
  };
  const Vocabulary& words = ZentWords();
  for (const char* const list : {words.factorList, words.covariateList}) {
    ForEachChildElement(GetChildByTag(&element, list), [&](const DOMElement& predictor) {
      if (!HasTag(predictor, words.predictor)) return;
      MiningField field;
      field.var = find(predictor, words.name);
      if (known.insert(field.var->GetName()).second) schema.push_back(std::move(field));
    });
  }
  MiningField target;
  target.usage = Usage::kTarget;
  target.var = find(element, ZENTModelTags::XML_ATT_RM_TARGET_VAR.c_str());
  if (known.contains(target.var->GetName())) {
    Raise(MessageId::kDuplicateVariableIn, {target.var->GetName(), words.model});
  }
  schema.push_back(std::move(target));
  return schema;
}

// Some documents name the target here and not in the mining schema.
void GeneralRegressionTranslator::NameTarget(const DOMElement& element, PluginModel& model) const {
  const Setting name = FindSetting(element, Tags::XML_ATT_RM_TARGET_VAR);
  if (model.GetTargetVar() != nullptr || !name.IsGiven()) return;
  const std::string target = EncodedText(FindAttribute(*name.element, name.attribute));
  if (model.GetDictionary()->GetVar(target) == nullptr) {
    Raise(MessageId::kMissingVariableIn, {target, Tags::XML_ELE_DATADICTIONARY});
  }
  model.SetVarRole(target, ScoreModel::kTargetRole);
}

void GeneralRegressionTranslator::BuildModel(const DOMElement& element, PluginModel& model) {
  const bool isZent = IsZent(element);
  const Vocabulary& words = isZent ? ZentWords() : PmmlWords();
  if (!isZent) NameTarget(element, model);
  const Settings settings =
      isZent ? ReadZentSettings(element) : ReadPmmlSettings(element, model.GetMiningFunction());
  Description description = DescriptionReader(*this, words, model, element).Read();
  auto& general = static_cast<GeneralRegressionModel&>(model);
  if (model.GetMiningFunction() == BaseModel::kClassification) {
    BuildCategories(settings, words, std::move(description), general);
  } else {
    BuildNumber(element, settings, description, general);
  }
}

void GeneralRegressionTranslator::BuildNumber(const DOMElement& element, const Settings& settings,
                                              const Description& description, GeneralRegressionModel& model) {
  const bool isHazard = settings.type == ModelType::kCoxRegression;
  BaselineHazards baseline;
  if (isHazard) baseline = ReadHazards(*this, element, model);
  GeneralRegressionModel::Trials trials{settings.trials};
  if (settings.trialsVariable.IsGiven()) {
    trials.input = FindNumber(*settings.trialsVariable.element, settings.trialsVariable.attribute, model);
  }
  LinearPredictor predictor = MakeEquation(description, model.GetInputs());
  predictor.Add(settings.offset, 0);
  if (settings.offsetVariable.IsGiven()) {
    predictor.SetOffset(
        FindNumber(*settings.offsetVariable.element, settings.offsetVariable.attribute, model), {true});
  }
  if (isHazard) {
    predictor.Add(-PredictorAtReference(description), 0);
    return model.PredictHazard(std::move(predictor), std::move(baseline));
  }
  StandardErrors errors;
  if (!description.covariances.empty()) {
    errors = StandardErrors(MakeColumns(description, model.GetInputs()), description.covariances);
  }
  model.PredictMean(std::move(predictor), settings.link, trials, std::move(errors));
}

void GeneralRegressionTranslator::BuildCategories(const Settings& settings, const Vocabulary& words,
                                                  Description description, GeneralRegressionModel& model) {
  std::unique_ptr<ScoreValue> reference;
  if (settings.referenceCategory.IsGiven()) {
    reference = ReadTargetCategory(*settings.referenceCategory.element, settings.referenceCategory.attribute,
                                   model.GetTargetVar());
  }
  const bool isOrdered = settings.type == ModelType::kOrdinalMultinomial;
  TargetCategories categories =
      OrderCategories(description, words, model.GetTargetVar(), std::move(reference), isOrdered);
  const std::size_t count = categories.values.size();
  const bool isOneOfTwo = settings.type == ModelType::kGeneralizedLinear;
  if (isOneOfTwo && count > 2) {
    Raise(MessageId::kMoreThanTwo, {words.targetCategory, Tags::XML_VAL_MT_GDLIN});
  }
  if (isOneOfTwo && !categories.reference.has_value()) {
    Raise(MessageId::kRequiredIn, {words.referenceCategory, words.model});
  }
  // The reference of a multinomial model has an equation that is 0.
  std::vector<bool> hasEquation(count, true);
  if (isOrdered || isOneOfTwo) hasEquation[*categories.reference] = false;
  LinearPredictor predictor = MakeEquations(description, model.GetInputs(), categories, hasEquation);
  std::vector<bool> isOffset(predictor.GetEquations(), true);
  if (!isOrdered && !isOneOfTwo && categories.reference.has_value()) isOffset[*categories.reference] = false;
  for (std::size_t e = 0; e < isOffset.size(); ++e) {
    if (isOffset[e]) predictor.Add(settings.offset, e);
  }
  if (settings.offsetVariable.IsGiven()) {
    const Setting& offset = settings.offsetVariable;
    predictor.SetOffset(FindNumber(*offset.element, offset.attribute, model), std::move(isOffset));
  }
  const std::size_t modelled = isOneOfTwo ? 1 - *categories.reference : 0;
  model.SetCategories(std::move(categories.values));
  if (isOrdered) {
    model.PredictOrdered(std::move(predictor), settings.link);
  } else if (isOneOfTwo) {
    model.PredictOneOfTwo(std::move(predictor), settings.link, modelled);
  } else {
    model.PredictSoftmax(std::move(predictor));
  }
}

}  // namespace KxVeyra_940::Plugin
