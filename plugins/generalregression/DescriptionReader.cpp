#include "generalregression/DescriptionReader.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <tuple>

#include "error/Raise.h"
#include "generalregression/ContrastReader.h"
#include "generalregression/GeneralRegressionTranslator.h"
#include "generalregression/Settings.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMElement;

namespace {

// Calls `action` for the entries of a list, which holds nothing else but extensions.
template <typename Action>
void ForEachEntry(const DOMElement& list, const char* tag, Action&& action) {
  ForEachChildElement(&list, [&](const DOMElement& child) {
    if (HasTag(child, tag)) {
      action(child);
    } else if (!HasTag(child, Tags::XML_ELE_EXTENSION)) {
      Raise(MessageId::kInvalidNodeIn,
            {PMMLTranslator::ToString(child.getTagName()), PMMLTranslator::ToString(list.getTagName())});
    }
  });
}

// Writers compute both halves of a symmetric matrix, so that they may differ by rounding.
bool AreAlike(double left, double right) {
  constexpr double kTolerance = 1e-3;
  return std::fabs(left - right) <= kTolerance * std::max(std::fabs(left), std::fabs(right));
}

std::string RequiredName(const DOMElement& element, const char* name) {
  return PMMLTranslator::ToString(RequiredNonEmptyAttribute(element, name));
}

}  // namespace

Description DescriptionReader::Read() {
  ReadParameters();
  ReadPredictors(fWords.factorList, true);
  ReadPredictors(fWords.covariateList, false);
  ReadDesign();
  ReadEstimates();
  ReadCovariances();
  return std::move(fDescription);
}

bool DescriptionReader::PredictsCategories() const {
  return fModel.GetMiningFunction() == BaseModel::kClassification;
}

void DescriptionReader::ReadParameters() {
  const DOMElement* list = BaseTranslator::GetChildByTagForced(&fElement, fWords.parameterList);
  ForEachEntry(*list, fWords.parameter, [&](const DOMElement& element) {
    Parameter parameter{RequiredName(element, fWords.name)};
    if (!fParameters.emplace(parameter.name, static_cast<int>(fParameters.size())).second) {
      Raise(MessageId::kDuplicateValueIn, {fWords.parameter, parameter.name, fWords.parameterList});
    }
    const Setting referencePoint = FindSetting(element, Tags::XML_EXT_NAME_COXREG_REFERENCEPOINT);
    parameter.referencePoint = referencePoint.ReadNumber().value_or(0);
    fDescription.parameters.push_back(std::move(parameter));
  });
  if (fParameters.empty()) Raise(MessageId::kNoChildElement, {fWords.parameterList});
  // Older documents list them together.
  const DOMElement* points = FindExtension(fElement, Tags::XML_EXT_NAME_COXREG_REFERENCEPOINT);
  ForEachChildElement(points, [&](const DOMElement& point) {
    if (!HasTag(point, Tags::XML_EXT_ELE_COXREG_BASEPOINT)) return;
    const int parameter = FindParameter(point, Tags::XML_EXT_ATT_COXREG_BASEPOINT_PARAMETERNAME);
    fDescription.parameters[static_cast<std::size_t>(parameter)].referencePoint =
        RequiredNumber(point, Tags::XML_ATT_VALUE);
  });
}

int DescriptionReader::FindParameter(const DOMElement& element, const char* attribute) const {
  const std::string name = RequiredName(element, attribute);
  const auto found = fParameters.find(name);
  if (found == fParameters.end()) {
    Raise(MessageId::kMissingDefinitionIn, {name, fWords.parameterList});
  }
  return found->second;
}

void DescriptionReader::ReadPredictors(const char* listTag, bool areFactors) {
  const DOMElement* list = BaseTranslator::GetChildByTag(&fElement, listTag);
  if (list == nullptr) return;
  ForEachEntry(*list, fWords.predictor, [&](const DOMElement& element) {
    Predictor predictor;
    predictor.name = RequiredName(element, fWords.name);
    if (!fPredictors.emplace(predictor.name, static_cast<int>(fPredictors.size())).second) {
      Raise(MessageId::kDuplicateValueIn, {fWords.predictor, predictor.name, listTag});
    }
    predictor.input = fTranslator.FindInput(element, fWords.name);
    predictor.isFactor = areFactors;
    if (areFactors) ReadFactor(element, predictor);
    fDescription.predictors.push_back(std::move(predictor));
  });
}

// Contrasts stand in the predictor itself, or in an extension of it.
void DescriptionReader::ReadFactor(const DOMElement& element, Predictor& predictor) {
  const DOMElement* holder = &element;
  const DOMElement* matrix = BaseTranslator::GetChildByTag(&element, Tags::XML_ELE_MATRIX);
  const DOMElement* extension = FindExtension(element, Tags::XML_EXT_NAME_COXREG_CONTRASTMATRIX);
  if (matrix == nullptr && extension != nullptr) {
    holder = extension;
    matrix = BaseTranslator::GetChildByTagForced(extension, Tags::XML_ELE_MATRIX);
  }
  Inputs& inputs = fModel.GetInputs();
  const ScoreDictVar& field = inputs.GetVar(predictor.input);
  const DOMElement* categories = BaseTranslator::GetChildByTag(holder, Tags::XML_ELE_GRM_CATEGORIES);
  if (categories == nullptr)
    categories = BaseTranslator::GetChildByTag(&element, Tags::XML_ELE_GRM_CATEGORIES);
  if (categories != nullptr) {
    ForEachEntry(*categories, Tags::XML_ELE_GRM_CATEGORY, [&](const DOMElement& category) {
      const XMLCh* text = RequiredAttribute(category, Tags::XML_ATT_VALUE);
      const std::unique_ptr<ScoreValue> value(fTranslator.CarefullyMakeVarValue(&field, text));
      const int code = inputs.UseAsCategory(predictor.input).Add(*value);
      if (std::ranges::find(predictor.categories, code) != predictor.categories.end()) {
        Raise(MessageId::kDuplicateValueIn,
              {Tags::XML_ELE_GRM_CATEGORY, PMMLTranslator::ToString(text), predictor.name});
      }
      predictor.categories.push_back(code);
    });
  }
  if (matrix == nullptr) return;
  if (predictor.categories.empty()) {
    const int listed = inputs.UseAsCategory(predictor.input).GetListedCount();
    for (int code = 0; code < listed; ++code) predictor.categories.push_back(code);
  }
  if (predictor.categories.empty()) Raise(MessageId::kValueListRequired, {predictor.name});
  NumberMatrix contrasts = ReadMatrix(*matrix);
  if (contrasts.rows != predictor.categories.size()) {
    Raise(MessageId::kVariableCategoryNumberMismatch,
          {std::to_string(contrasts.rows), Tags::XML_ELE_MATRIX_NBROWS,
           std::to_string(predictor.categories.size()), predictor.name});
  }
  predictor.columns = contrasts.columns;
  predictor.contrasts = std::move(contrasts.numbers);
}

int DescriptionReader::FindPredictor(const DOMElement& element) const {
  const std::string name = RequiredName(element, fWords.predictorName);
  const auto found = fPredictors.find(name);
  if (found == fPredictors.end()) {
    Raise(MessageId::kMissingVariableInBoth, {name, fWords.factorList, fWords.covariateList});
  }
  return found->second;
}

void DescriptionReader::ReadDesign() {
  const DOMElement* matrix = BaseTranslator::GetChildByTagForced(&fElement, fWords.designMatrix);
  ForEachEntry(*matrix, fWords.designCell, [&](const DOMElement& element) { ReadDesignCell(element); });
  std::set<std::tuple<int, int, int>> cells;
  for (const DesignCell& cell : fDescription.cells) {
    if (cells.emplace(cell.parameter, cell.predictor, cell.targetCategory).second) continue;
    std::string names = fDescription.predictors[static_cast<std::size_t>(cell.predictor)].name;
    names.append(", ").append(fDescription.parameters[static_cast<std::size_t>(cell.parameter)].name);
    Raise(MessageId::kDuplicateValueIn, {fWords.designCell, names, fWords.designMatrix});
  }
}

void DescriptionReader::ReadDesignCell(const DOMElement& element) {
  DesignCell cell;
  cell.parameter = FindParameter(element, fWords.parameterName);
  cell.predictor = FindPredictor(element);
  cell.targetCategory = FindTargetCategory(element, fWords.targetCategory);
  const Predictor& predictor = fDescription.predictors[static_cast<std::size_t>(cell.predictor)];
  const XMLCh* text = RequiredAttribute(element, fWords.value);
  if (!predictor.isFactor) {
    fTranslator.FindNumber(element, fWords.predictorName, fModel);
    cell.exponent = BaseTranslator::VerifyDouble(text);
  } else {
    CategoryTable& table = fModel.GetInputs().UseAsCategory(predictor.input);
    const ScoreDictVar& field = fModel.GetInputs().GetVar(predictor.input);
    const std::unique_ptr<ScoreValue> value(fTranslator.CarefullyMakeVarValue(&field, text));
    cell.category = table.Add(*value);
    const auto found = std::ranges::find(predictor.categories, cell.category);
    const auto position = static_cast<std::size_t>(found - predictor.categories.begin());
    const bool isListed = predictor.categories.empty() || found != predictor.categories.end();
    if (!isListed || (predictor.columns > 0 && position >= predictor.columns)) {
      Raise(MessageId::kValueNotInValueList, {PMMLTranslator::ToString(text), predictor.name});
    }
    cell.column = position;
  }
  fDescription.cells.push_back(cell);
}

// A model of a number pays no attention to categories.
int DescriptionReader::FindTargetCategory(const DOMElement& element, const char* attribute) {
  if (!PredictsCategories() || FindAttribute(element, attribute) == nullptr) return kEveryCategory;
  std::string text = OptionalText(element, attribute);
  const auto known = fCategories.find(text);
  if (known != fCategories.end()) return known->second;
  std::unique_ptr<ScoreValue> category =
      fTranslator.ReadTargetCategory(element, attribute, fModel.GetTargetVar());
  auto& categories = fDescription.categories;
  const auto found = std::ranges::find_if(categories, [&](const auto& other) { return *other == *category; });
  const int position = static_cast<int>(found - categories.begin());
  if (found == categories.end()) categories.push_back(std::move(category));
  fCategories.emplace(std::move(text), position);
  return position;
}

void DescriptionReader::ReadEstimates() {
  const DOMElement* matrix = BaseTranslator::GetChildByTagForced(&fElement, fWords.estimates);
  std::set<std::pair<int, int>> known;
  ForEachEntry(*matrix, fWords.estimate, [&](const DOMElement& element) {
    Estimate estimate;
    estimate.parameter = FindParameter(element, fWords.parameterName);
    estimate.targetCategory = FindTargetCategory(element, fWords.targetCategory);
    estimate.beta = RequiredNumber(element, fWords.beta);
    OptionalNumber(element, fWords.degreesOfFreedom);  // says nothing about a case
    if (!known.emplace(estimate.parameter, estimate.targetCategory).second) {
      Raise(MessageId::kDuplicateValueIn,
            {fWords.estimate, OptionalText(element, fWords.parameterName), fWords.estimates});
    }
    fDescription.estimates.push_back(estimate);
  });
}

// A matrix may be written in whole or by half.
void DescriptionReader::ReadCovariances() {
  const DOMElement* matrix = BaseTranslator::GetChildByTag(&fElement, fWords.covarianceMatrix);
  if (matrix == nullptr) return;
  using Place = std::pair<int, int>;  // parameter, target category
  std::map<std::pair<Place, Place>, std::pair<double, std::string>> known;
  ForEachEntry(*matrix, fWords.covarianceCell, [&](const DOMElement& element) {
    const Place row{FindParameter(element, fWords.rowParameter),
                    FindTargetCategory(element, fWords.rowCategory)};
    const Place column{FindParameter(element, fWords.columnParameter),
                       FindTargetCategory(element, fWords.columnCategory)};
    const double value = RequiredNumber(element, fWords.value);
    const std::string text = OptionalText(element, fWords.value);
    if (!known.emplace(std::pair(row, column), std::pair(value, text)).second) {
      Raise(MessageId::kDuplicateValueIn, {fWords.covarianceCell,
                                           OptionalText(element, fWords.rowParameter) + ", " +
                                               OptionalText(element, fWords.columnParameter),
                                           fWords.covarianceMatrix});
    }
    const auto transposed = known.find({column, row});
    if (transposed != known.end() && !AreAlike(transposed->second.first, value)) {
      Raise(MessageId::kValuesMismatch,
            {transposed->second.second, fWords.value, text, fWords.value, fWords.covarianceMatrix});
    }
    if (PredictsCategories()) return;
    const bool isSecondHalf = row != column && transposed != known.end();
    if (!isSecondHalf) fDescription.covariances.push_back({row.first, column.first, value});
  });
}

}  // namespace KxVeyra_940::Plugin
