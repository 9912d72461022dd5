#include "nearestneighbor/MeasureReader.h"

#include <limits>

#include "common/Keywords.h"
#include "translate/BaseTranslator.h"
#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMElement;

namespace {

constexpr const char* kDistance = "distance";
constexpr const char* kTable = "table";
constexpr const char* kPower = "p-parameter";
constexpr const char* kMinimum = "minimum";
constexpr const char* kMaximum = "maximum";

constexpr Keyword<bool> kKinds[] = {{kDistance, false}, {"similarity", true}};

constexpr Keyword<CompareFunction> kFunctions[] = {
    {"absDiff", CompareFunction::kAbsDiff},
    {"gaussSim", CompareFunction::kGaussSim},
    {"delta", CompareFunction::kDelta},
    {"equal", CompareFunction::kEqual},
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
  const double power = RequiredNumber(element, kPower);
  if (!(power > 0)) Raise(MessageId::kNotPositive, {OptionalText(element, kPower), kPower});
  return power;
}

// What the bounds of a measure say changes no answer; they are checked all the same.
void CheckBounds(const DOMElement& element) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const double minimum = OptionalNumber(element, kMinimum).value_or(-kInfinity);
  const double maximum = OptionalNumber(element, kMaximum).value_or(kInfinity);
  if (minimum <= maximum) return;
  Raise(MessageId::kValuesMismatch,
        {OptionalText(element, kMinimum), kMinimum, OptionalText(element, kMaximum), kMaximum,
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
  if (BaseTranslator::IsEqual(text, kTable))
    Raise(MessageId::kUnsupportedValue, {kTable, Tags::XML_ATT_COMPAREFUNCTION});
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
    measure.numerator = {RequiredNumber(child, "c11-parameter"), RequiredNumber(child, "c10-parameter"),
                         RequiredNumber(child, "c01-parameter"), RequiredNumber(child, "c00-parameter")};
    measure.denominator = {RequiredNumber(child, "d11-parameter"), RequiredNumber(child, "d10-parameter"),
                           RequiredNumber(child, "d01-parameter"), RequiredNumber(child, "d00-parameter")};
  });
  if (found == nullptr) Raise(MessageId::kNoChildElement, {Tags::XML_ELE_COMPARISONMEASURE});
  if (found->aggregation == Aggregation::kBinary && !measure.isSimilarity)
    Raise(MessageId::kInvalidAttributeValueIn, {kDistance, Tags::XML_ATT_KIND, found->tag});
  return measure;
}

}  // namespace KxVeyra_940::Plugin
