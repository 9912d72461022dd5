#include "nearestneighbor/NeighborTranslator.h"

#include <algorithm>

#include "common/Keywords.h"
#include "nearestneighbor/InstanceReader.h"
#include "nearestneighbor/MeasureReader.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;
using xercesc::DOMElement;

namespace {

constexpr Keyword<ContinuousMethod> kContinuousMethods[] = {
    {StandardTags::XML_VAL_AVERAGE, ContinuousMethod::kAverage},
    {Tags::XML_ATT_VAL_MEDIAN, ContinuousMethod::kMedian},
    {Tags::XML_ATT_VAL_WEIGHTED_AVERAGE, ContinuousMethod::kWeightedAverage},
};

constexpr Keyword<CategoricalMethod> kCategoricalMethods[] = {
    {StandardTags::XML_VAL_MAJORITYVOTE, CategoricalMethod::kMajorityVote},
    {StandardTags::XML_VAL_WEIGHTEDMAJORITYVOTE, CategoricalMethod::kWeightedMajorityVote},
};

// Which targets a function predicts.
struct FunctionRow {
  std::string_view name;
  bool predictsNumbers;
  bool predictsCategories;
};

constexpr FunctionRow kFunctions[] = {
    {Tags::XML_VAL_MINING_CLASSIFICATION, false, true},
    {Tags::XML_VAL_MINING_REGRESSION, true, false},
    {StandardTags::XML_VAL_MIXED, true, true},
    {Tags::XML_VAL_FUNCCLUSTERING, false, false},
};

// The number of the attribute, which is not below 0.
double ReadNotNegative(const DOMElement& element, const char* name, double usual) {
  const double number = OptionalNumber(element, name).value_or(usual);
  if (!(number >= 0)) Raise(MessageId::kNegative, {OptionalText(element, name), name});
  return number;
}

Scoring ReadScoring(const DOMElement& element) {
  const int neighbors =
      BaseTranslator::VerifyInt(RequiredAttribute(element, StandardTags::XML_ATT_NUMBEROFNEIGHBORS));
  if (neighbors < 1)
    Raise(MessageId::kNotPositive, {std::to_string(neighbors), StandardTags::XML_ATT_NUMBEROFNEIGHBORS});
  Scoring scoring;
  scoring.neighborCount = static_cast<std::size_t>(neighbors);
  scoring.continuous =
      ReadKeyword(element, StandardTags::XML_ATT_CONTINUOUSSCORINGMETHOD, kContinuousMethods);
  scoring.categorical =
      ReadKeyword(element, StandardTags::XML_ATT_CATEGORICALSCORINGMETHOD, kCategoricalMethods);
  scoring.threshold = ReadNotNegative(element, Tags::XML_ATT_THRESHOLD, scoring.threshold);
  return scoring;
}

}  // namespace

NeighborTranslator::NeighborTranslator() : PluginTranslator(Tags::XML_ELE_KNNMODEL) {}
NeighborTranslator::~NeighborTranslator() = default;

std::unique_ptr<PluginModel> NeighborTranslator::NewModel() const {
  return std::make_unique<NeighborModel>();
}

void NeighborTranslator::CheckTargets(const DOMElement& element, const PluginModel& model) const {
  const std::string function = OptionalText(element, Tags::XML_ATT_FUNCTIONNAME);
  const auto* const row = std::ranges::find(kFunctions, function, &FunctionRow::name);
  if (row == std::end(kFunctions))
    Raise(MessageId::kUnsupportedValue, {function, Tags::XML_ATT_FUNCTIONNAME});
  const std::vector<const ScoreDictVar*> targets = model.GetTargetVars();
  if (targets.empty() && (row->predictsNumbers || row->predictsCategories))
    Raise(MessageId::kNoTargetVariable);
  for (const ScoreDictVar* target : targets) {
    if (IsCategorical(*target) ? row->predictsCategories : row->predictsNumbers) continue;
    Raise(MessageId::kTargetDefinitionMismatch, {function, Tags::XML_ATT_FUNCTIONNAME, Tags::XML_ELE_KNNMODEL,
                                                 target->GetName(), Tags::XML_ELE_MININGSCHEMA});
  }
}

void NeighborTranslator::BuildModel(const DOMElement& element, PluginModel& model) {
  CheckTargets(element, model);
  const Scoring scoring = ReadScoring(element);
  const Measure measure =
      ReadMeasure(*BaseTranslator::GetChildByTagForced(&element, Tags::XML_ELE_COMPARISONMEASURE));
  const bool isBinary = measure.aggregation == Aggregation::kBinary;
  std::vector<ComparedField> fields = ReadInputs(element, isBinary, model);
  ReadMissingWeights(element, fields);
  CaseCoordinates coordinates(std::move(fields), isBinary, model.GetInputs());
  model.GetInputs().AcceptMissing();
  static_cast<NeighborModel&>(model).SetComparison(measure, std::move(coordinates), scoring);
}

void NeighborTranslator::CompleteModel(const DOMElement& element, PluginModel& model) {
  InstanceReader(*this, GetInvalidValues(), GetAuxPath(), static_cast<NeighborModel&>(model)).Read(element);
}

std::vector<ComparedField> NeighborTranslator::ReadInputs(const DOMElement& element, bool isBinary,
                                                          PluginModel& model) {
  const DOMElement& measure = *BaseTranslator::GetChildByTag(&element, Tags::XML_ELE_COMPARISONMEASURE);
  const CompareFunction usual = ReadCompareFunction(measure, CompareFunction::kAbsDiff);
  std::vector<ComparedField> fields;
  ForEachChildElement(
      BaseTranslator::GetChildByTagForced(&element, StandardTags::XML_ELE_KNNINPUTS),
      [&](const DOMElement& child) {
        if (!HasTag(child, StandardTags::XML_ELE_KNNINPUT)) return;
        const ComparedField field = ReadInput(child, usual, isBinary, model);
        if (std::ranges::find(fields, field.input, &ComparedField::input) != fields.end()) {
          Raise(MessageId::kDuplicateValueIn,
                {StandardTags::XML_ELE_KNNINPUT, model.GetInputs().GetVar(field.input).GetName(),
                 StandardTags::XML_ELE_KNNINPUTS});
        }
        fields.push_back(field);
      });
  if (fields.empty())
    Raise(MessageId::kRequiredIn, {StandardTags::XML_ELE_KNNINPUT, StandardTags::XML_ELE_KNNINPUTS});
  return fields;
}

// A measure of counts looks at values only, whatever the function.
ComparedField NeighborTranslator::ReadInput(const DOMElement& element, CompareFunction usual, bool isBinary,
                                            PluginModel& model) {
  ComparedField field;
  field.function = ReadCompareFunction(element, usual);
  const bool isNumber = !isBinary && !ComparesCategories(field.function);
  field.input =
      isNumber ? FindNumber(element, Tags::XML_ATT_FIELD, model) : FindInput(element, Tags::XML_ATT_FIELD);
  field.weight = ReadNotNegative(element, Tags::XML_ATT_FIELDWEIGHT, field.weight);
  if (isBinary || field.function != CompareFunction::kGaussSim) return field;
  field.scale = BaseTranslator::VerifyDouble(RequiredAttribute(element, Tags::XML_ATT_SIMILARITYSCALE));
  if (!(field.scale > 0)) {
    Raise(MessageId::kNotPositive,
          {OptionalText(element, Tags::XML_ATT_SIMILARITYSCALE), Tags::XML_ATT_SIMILARITYSCALE});
  }
  return field;
}

void NeighborTranslator::ReadMissingWeights(const DOMElement& element,
                                            std::vector<ComparedField>& fields) const {
  const DOMElement* const weights =
      BaseTranslator::GetChildByTag(&element, Tags::XML_ELE_MISSINGVALUEWEIGHTS);
  if (weights == nullptr) return;
  const DOMElement* const array = BaseTranslator::GetChildByTagForced(weights, Tags::XML_ELE_ARRAY);
  const std::vector<double> numbers = VerifyDoubleArray(array, static_cast<int>(fields.size()));
  if (numbers.size() != fields.size()) {
    Raise(MessageId::kNumbersMismatch,
          {std::to_string(numbers.size()), Tags::XML_ELE_VALUE, Tags::XML_ELE_MISSINGVALUEWEIGHTS,
           std::to_string(fields.size()), StandardTags::XML_ELE_KNNINPUT, StandardTags::XML_ELE_KNNINPUTS});
  }
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (!(numbers[i] >= 0))
      Raise(MessageId::kNegative, {std::to_string(numbers[i]), Tags::XML_ELE_MISSINGVALUEWEIGHTS});
    fields[i].missingWeight = numbers[i];
  }
}

}  // namespace KxVeyra_940::Plugin
