#include "regression/RegressionTranslator.h"

#include <optional>
#include <unordered_map>
#include <utility>

#include "common/Keywords.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMElement;

namespace {

constexpr Keyword<Normalization> kNormalizations[] = {
    {Tags::XML_VAL_NONE, Normalization::kNone},
    {Tags::XML_VAL_SIMPLEMAX, Normalization::kSimplemax},
    {Tags::XML_VAL_SOFTMAX, Normalization::kSoftmax},
    {Tags::XML_VAL_RM_VALUE_LINK_LOGIT, Normalization::kLogit},
    {Tags::XML_VAL_RM_VALUE_LINK_PROBIT, Normalization::kProbit},
    {Tags::XML_VAL_RM_VALUE_LINK_CLOGLOG, Normalization::kCloglog},
    {Tags::XML_ZENT_TRANFUNC_EXP, Normalization::kExp},
    {Tags::XML_VAL_RM_VALUE_LINK_LOGLOG, Normalization::kLoglog},
    {Tags::XML_VAL_RM_VALUE_LINK_CAUCHIT, Normalization::kCauchit},
};

// Classifiers of older documents say by their model type alone that the equations are logits.
Normalization ReadNormalization(const DOMElement& element, bool isClassification) {
  const bool isGiven = !IsEmpty(Attribute(element, Tags::XML_ATT_NORMMATHOD));
  if (!isGiven && isClassification &&
      BaseTranslator::IsEqual(Attribute(element, Tags::XML_ATT_RM_MODEL_TYPE), Tags::XML_ATT_LOGISTICREGE)) {
    return Normalization::kSoftmax;
  }
  return ReadKeyword(element, Tags::XML_ATT_NORMMATHOD, kNormalizations);
}

void RefuseNormalization(const DOMElement& element) {
  Raise(MessageId::kInvalidAttributeValueIn,
        {OptionalText(element, Tags::XML_ATT_NORMMATHOD), Tags::XML_ATT_NORMMATHOD, Tags::XML_ELE_REGMODEL});
}

// Reads categorical predictors: coefficients by field and code.
class CategoryTerms {
 public:
  explicit CategoryTerms(RegressionTable& table) : fTable(table) {}

  void Add(int input, int code, double coefficient) {
    const auto [found, isNew] = fTermOfInput.emplace(input, fTable.categories.size());
    if (isNew) fTable.categories.push_back({input, {}});
    std::vector<double>& coefficients = fTable.categories[found->second].coefficients;
    const auto position = static_cast<std::size_t>(code);
    if (coefficients.size() <= position) coefficients.resize(position + 1, 0.0);
    coefficients[position] += coefficient;
  }

 private:
  RegressionTable& fTable;
  std::unordered_map<int, std::size_t> fTermOfInput;
};

}  // namespace

RegressionTranslator::RegressionTranslator() : PluginTranslator(Tags::XML_ELE_REGMODEL) {}
RegressionTranslator::~RegressionTranslator() = default;

std::unique_ptr<PluginModel> RegressionTranslator::NewModel() const {
  return std::make_unique<RegressionModel>();
}

void RegressionTranslator::BuildModel(const DOMElement& element, PluginModel& model) {
  // Older documents name the target here and not in the mining schema.
  if (model.GetTargetVar() == nullptr) {
    model.SetVarRole(EncodedText(Attribute(element, Tags::XML_ATT_TAGFIELDNAME)), ScoreModel::kTargetRole);
  }
  auto& regression = static_cast<RegressionModel&>(model);
  switch (model.GetMiningFunction()) {
    case BaseModel::kRegression:
      return BuildEquation(element, regression);
    case BaseModel::kClassification:
      return BuildEquations(element, regression);
    default:
      Raise(MessageId::kUnsupportedValue,
            {ToString(Attribute(element, Tags::XML_ATT_FUNCTIONNAME)), Tags::XML_ATT_FUNCTIONNAME});
  }
}

void RegressionTranslator::BuildEquation(const DOMElement& element, RegressionModel& model) {
  const Normalization normalization = ReadNormalization(element, false);
  if (normalization == Normalization::kSimplemax) RefuseNormalization(element);
  std::optional<RegressionTable> table;
  ForEachChildElement(&element, [&](const DOMElement& child) {
    if (!HasTag(child, Tags::XML_ELE_REGTABLE)) return;
    if (table.has_value()) Raise(MessageId::kMoreThanOneIn, {Tags::XML_ELE_REGTABLE, Tags::XML_ELE_REGMODEL});
    table = ReadTable(child, model);
  });
  if (!table.has_value()) Raise(MessageId::kRequiredIn, {Tags::XML_ELE_REGTABLE, Tags::XML_ELE_REGMODEL});
  model.SetEquation(std::move(*table), normalization);
}

void RegressionTranslator::BuildEquations(const DOMElement& element, RegressionModel& model) {
  const Normalization normalization = ReadNormalization(element, true);
  const ScoreDictVar* target = model.GetTargetVar();
  const bool isProportion =
      normalization == Normalization::kSoftmax || normalization == Normalization::kSimplemax;
  const bool isOrdinal = target != nullptr && target->GetMLevel() == ScoreDictVar::kOrdinal && !isProportion;
  if (normalization == Normalization::kExp) RefuseNormalization(element);
  CategoryTables read = ReadCategoryTables(element, model);
  CompleteFromDictionary(isOrdinal, read);
  if (read.tables.size() < 2) {
    Raise(MessageId::kMoreThanOneRequired, {Tags::XML_ELE_REGTABLE, Tags::XML_ELE_REGMODEL});
  }
  model.SetCategories(std::move(read.categories));
  model.SetEquations(std::move(read.tables), normalization, isOrdinal);
}

RegressionTranslator::CategoryTables RegressionTranslator::ReadCategoryTables(const DOMElement& element,
                                                                              RegressionModel& model) {
  const ScoreDictVar* target = model.GetTargetVar();
  CategoryTables read;
  read.known = MakeTargetTable(target);
  read.tableOfCode.resize(static_cast<std::size_t>(read.known->Size()));
  ForEachChildElement(&element, [&](const DOMElement& child) {
    if (!HasTag(child, Tags::XML_ELE_REGTABLE)) return;
    std::unique_ptr<ScoreValue> category = ReadTargetCategory(child, Tags::XML_ATT_PC_TARGET_CAT, target);
    const auto code = static_cast<std::size_t>(read.known->Add(*category));
    if (read.tableOfCode.size() <= code) read.tableOfCode.resize(code + 1);
    if (read.tableOfCode[code].has_value()) {
      Raise(MessageId::kDuplicateValueIn,
            {Tags::XML_ATT_PC_TARGET_CAT, ToString(Attribute(child, Tags::XML_ATT_PC_TARGET_CAT)),
             Tags::XML_ELE_REGMODEL});
    }
    read.tableOfCode[code] = read.tables.size();
    read.categories.push_back(std::move(category));
    read.tables.push_back(ReadTable(child, model));
  });
  return read;
}

// Brings the tables of an ordinal target into the order of its categories, and gives the one category that
// has no table an equation of 0.  More than one such category is an error.
void RegressionTranslator::CompleteFromDictionary(bool isOrdinal, CategoryTables& read) {
  if (read.known->GetListedCount() == 0) return;
  CategoryTables ordered;
  bool isComplete = true;
  for (int code = 0; code < read.known->GetListedCount(); ++code) {
    const ScoreValue& value = read.known->GetValue(code);
    const std::optional<std::size_t> position = read.tableOfCode[static_cast<std::size_t>(code)];
    if (!position.has_value() && !std::exchange(isComplete, false)) {
      Raise(MessageId::kMissingValueDefinition, {value.GetString(), Tags::XML_ELE_REGTABLE});
    }
    CategoryTables& to = isOrdinal ? ordered : read;
    if (!position.has_value()) {
      to.categories.emplace_back(value.Clone());
      to.tables.emplace_back();
    } else if (isOrdinal) {
      to.categories.push_back(std::move(read.categories[*position]));
      to.tables.push_back(std::move(read.tables[*position]));
    }
  }
  if (isOrdinal) read = std::move(ordered);
}

RegressionTable RegressionTranslator::ReadTable(const DOMElement& element, PluginModel& model) {
  RegressionTable table;
  table.intercept = RequiredNumber(element, Tags::XML_ATT_INTERCEPT);
  CategoryTerms categoryTerms(table);
  ForEachChildElement(&element, [&](const DOMElement& child) {
    if (HasTag(child, Tags::XML_ELE_NUMERIC_PREDICTOR)) {
      ReadNumericPredictor(child, model, table);
    } else if (HasTag(child, Tags::XML_ELE_CATEGORICAL_PREDICTOR)) {
      const int input = FindInput(child, Tags::XML_ATT_PRED_NAME);
      model.GetInputs().AcceptMissingCategory(input);
      const std::unique_ptr<ScoreValue> value(CarefullyMakeVarValue(
          &model.GetInputs().GetVar(input), RequiredAttribute(child, Tags::XML_ATT_VALUE)));
      categoryTerms.Add(input, model.GetInputs().UseAsCategory(input).Add(*value),
                        RequiredNumber(child, Tags::XML_ATT_COEFFICIENT));
    } else if (HasTag(child, Tags::XML_ELE_PREDICTOR_TERM)) {
      ReadProduct(child, model, table);
    } else if (!HasTag(child, Tags::XML_ELE_EXTENSION)) {
      Raise(MessageId::kInvalidNodeIn, {ToString(child.getTagName()), Tags::XML_ELE_REGTABLE});
    }
  });
  return table;
}

void RegressionTranslator::ReadNumericPredictor(const DOMElement& element, PluginModel& model,
                                                RegressionTable& table) {
  const int input = FindNumber(element, Tags::XML_ATT_PRED_NAME, model);
  const double coefficient = RequiredNumber(element, Tags::XML_ATT_COEFFICIENT);
  const int exponent = OptionalInteger(element, Tags::XML_ATT_EXPONENT).value_or(1);
  if (exponent == 1) {
    table.linear.push_back({input, coefficient});
  } else {
    table.powers.push_back({input, exponent, coefficient});
  }
}

void RegressionTranslator::ReadProduct(const DOMElement& element, PluginModel& model,
                                       RegressionTable& table) {
  RegressionTable::Product product{RequiredNumber(element, Tags::XML_ATT_COEFFICIENT), {}};
  ForEachChildElement(&element, [&](const DOMElement& child) {
    if (HasTag(child, Tags::XML_ELE_FIELDREF)) {
      product.inputs.push_back(FindNumber(child, Tags::XML_ATT_FIELD, model));
    }
  });
  if (product.inputs.empty()) Raise(MessageId::kNoChildElement, {Tags::XML_ELE_PREDICTOR_TERM});
  table.products.push_back(std::move(product));
}

}  // namespace KxVeyra_940::Plugin
