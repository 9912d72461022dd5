#include "nearestneighbor/MeasureReader.h"

#include <limits>

#include "common/Keywords.h"
#include "translate/BaseTranslator.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;
using xercesc::DOMElement;

namespace {

constexpr Keyword<bool> kKinds[] = {{Tags::XML_ATT_DISTANCE, false},
                                    {StandardTags::XML_VAL_SIMILARITY, true}};

constexpr Keyword<CompareFunction> kFunctions[] = {
    {Tags::XML_ATT_ABSDIFF, CompareFunction::kAbsDiff},
    {Tags::XML_ATT_GAUSSSIM, CompareFunction::kGaussSim},
    {Tags::XML_ATT_DELTA, CompareFunction::kDelta},
    {Tags::XML_ATT_EQUAL, CompareFunction::kEqual},
};

// Weights of 11, 10, 01 and 00.
constexpr BinaryWeights kNoWeights{};
constexpr BinaryWeights kMatches{1, 0, 0, 1};
constexpr BinaryWeights kAll{1, 1, 1, 1};
constexpr BinaryWeights kBoth{1, 0, 0, 0};
constexpr BinaryWeights kEither{1, 1, 1, 0};
constexpr BinaryWeights kDoubledDifferences{1, 2, 2, 1};

struct MeasureRow {
  const char* tag;
  Aggregation aggregation;
  BinaryWeights numerator;
  BinaryWeights denominator;
};

constexpr MeasureRow kMeasures[] = {
    {Tags::XML_ELE_EUCLIDEAN, Aggregation::kEuclidean, kNoWeights, kNoWeights},
    {Tags::XML_ELE_SQUAREDEUCLIDEAN, Aggregation::kSquaredEuclidean, kNoWeights, kNoWeights},
    {Tags::XML_ELE_CHEBYCHEV, Aggregation::kChebychev, kNoWeights, kNoWeights},
    {Tags::XML_ELE_CITYBLOCK, Aggregation::kCityBlock, kNoWeights, kNoWeights},
    {Tags::XML_ELE_MINKOWSKI, Aggregation::kMinkowski, kNoWeights, kNoWeights},
    {Tags::XML_ELE_SIMPLEMATCHING, Aggregation::kBinary, kMatches, kAll},
    {Tags::XML_ELE_JACCARD, Aggregation::kBinary, kBoth, kEither},
    {Tags::XML_ELE_TANIMOTO, Aggregation::kBinary, kMatches, kDoubledDifferences},
    {Tags::XML_ELE_BINARYSIMILARITY, Aggregation::kBinary, kNoWeights, kNoWeights},  // the document's own
};

double ReadPower(const DOMElement& element) {
  const double power = RequiredNumber(element, StandardTags::XML_ATT_PPARAMETER);
  if (!(power > 0))
    Raise(MessageId::kNotPositive,
          {OptionalText(element, StandardTags::XML_ATT_PPARAMETER), StandardTags::XML_ATT_PPARAMETER});
  return power;
}

// What the bounds of a measure say changes no answer; they are checked all the same.
void CheckBounds(const DOMElement& element) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const double minimum = OptionalNumber(element, StandardTags::XML_ATT_MINIMUM).value_or(-kInfinity);
  const double maximum = OptionalNumber(element, StandardTags::XML_ATT_MAXIMUM).value_or(kInfinity);
  if (minimum <= maximum) return;
  Raise(MessageId::kValuesMismatch,
        {OptionalText(element, StandardTags::XML_ATT_MINIMUM), StandardTags::XML_ATT_MINIMUM,
         OptionalText(element, StandardTags::XML_ATT_MAXIMUM), StandardTags::XML_ATT_MAXIMUM,
         Tags::XML_ELE_COMPARISONMEASURE});
}

const MeasureRow* FindRow(const DOMElement& child) {
  for (const MeasureRow& row : kMeasures) {
    if (HasTag(child, row.tag)) return &row;
  }
  return nullptr;
}

}  // namespace

CompareFunction ReadCompareFunction(const DOMElement& element, CompareFunction usual) {
  const XMLCh* const text = Attribute(element, Tags::XML_ATT_COMPAREFUNCTION);
  if (IsEmpty(text)) return usual;
  if (BaseTranslator::IsEqual(text, Tags::XML_ATT_TABLE))
    Raise(MessageId::kUnsupportedValue, {Tags::XML_ATT_TABLE, Tags::XML_ATT_COMPAREFUNCTION});
  return ReadKeyword(element, Tags::XML_ATT_COMPAREFUNCTION, kFunctions);
}

Measure ReadMeasure(const DOMElement& element) {
  RequiredNonEmptyAttribute(element, Tags::XML_ATT_KIND);
  Measure measure;
  measure.isSimilarity = ReadKeyword(element, Tags::XML_ATT_KIND, kKinds);
  CheckBounds(element);
  const MeasureRow* found = nullptr;
  ForEachChildElement(&element, [&](const DOMElement& child) {
    const MeasureRow* const row = FindRow(child);
    if (row == nullptr) return;
    if (found != nullptr) Raise(MessageId::kMoreThanOneIn, {row->tag, Tags::XML_ELE_COMPARISONMEASURE});
    found = row;
    measure.aggregation = row->aggregation;
    measure.numerator = row->numerator;
    measure.denominator = row->denominator;
    if (row->aggregation == Aggregation::kMinkowski) measure.power = ReadPower(child);
    if (row->tag != std::string_view(Tags::XML_ELE_BINARYSIMILARITY)) return;
    measure.numerator = {RequiredNumber(child, StandardTags::XML_ATT_C11PARAMETER),
                         RequiredNumber(child, StandardTags::XML_ATT_C10PARAMETER),
                         RequiredNumber(child, StandardTags::XML_ATT_C01PARAMETER),
                         RequiredNumber(child, StandardTags::XML_ATT_C00PARAMETER)};
    measure.denominator = {RequiredNumber(child, StandardTags::XML_ATT_D11PARAMETER),
                           RequiredNumber(child, StandardTags::XML_ATT_D10PARAMETER),
                           RequiredNumber(child, StandardTags::XML_ATT_D01PARAMETER),
                           RequiredNumber(child, StandardTags::XML_ATT_D00PARAMETER)};
  });
  if (found == nullptr) Raise(MessageId::kNoChildElement, {Tags::XML_ELE_COMPARISONMEASURE});
  if (found->aggregation == Aggregation::kBinary && !measure.isSimilarity)
    Raise(MessageId::kInvalidAttributeValueIn, {Tags::XML_ATT_DISTANCE, Tags::XML_ATT_KIND, found->tag});
  return measure;
}

}  // namespace KxVeyra_940::Plugin
