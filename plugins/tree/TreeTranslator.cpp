#include "tree/TreeTranslator.h"

#include "common/Keywords.h"
#include "error/Raise.h"
#include "transform/TransformationDictionary.h"
#include "translate/DomReader.h"
#include "tree/NodeReader.h"
#include "tree/PredicateReader.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;
using xercesc::DOMElement;

namespace {

constexpr Keyword<MissingStrategy> kStrategies[] = {
    {Tags::XML_VAL_NONE, MissingStrategy::kNone},
    {Tags::XML_VAL_LASTPREDICTION, MissingStrategy::kLastPrediction},
    {Tags::XML_VAL_NULLPREDICTION, MissingStrategy::kNullPrediction},
    {Tags::XML_VAL_DEFAULTCHILD, MissingStrategy::kDefaultChild},
    {Tags::XML_VAL_WEIGHTEDCONFIDENCE, MissingStrategy::kWeightedConfidence},
    {Tags::XML_VAL_AGGREGATENODES, MissingStrategy::kAggregateNodes},
};

constexpr Keyword<bool> kNoTrueChild[] = {{Tags::XML_VAL_RETURNNULLPREDICTION, false},
                                          {Tags::XML_VAL_RETURNLASTPREDICTION, true}};

constexpr Keyword<bool> kSplits[] = {{StandardTags::XML_VAL_MULTISPLIT, false},
                                     {StandardTags::XML_VAL_BINARYSPLIT, true}};

const DOMElement& FindRoot(const DOMElement& element) {
  const DOMElement* root = nullptr;
  ForEachChildElement(&element, [&](const DOMElement& child) {
    if (!HasTag(child, Tags::XML_ELE_NODE)) return;
    if (root != nullptr) Raise(MessageId::kMoreThanOneIn, {Tags::XML_ELE_NODE, Tags::XML_ELE_TREEMODEL});
    root = &child;
  });
  if (root == nullptr) Raise(MessageId::kRequiredIn, {Tags::XML_ELE_NODE, Tags::XML_ELE_TREEMODEL});
  return *root;
}

// Reads what a tree says about itself.
FlatTree ReadTree(const DOMElement& element) {
  FlatTree tree;
  tree.strategy = ReadKeyword(element, Tags::XML_ATT_MISSINGVALUESTRATEGY, kStrategies);
  tree.returnsLastPrediction = ReadKeyword(element, Tags::XML_ATT_NOTRUECHILDSTRATEGY, kNoTrueChild);
  tree.penalty = OptionalNumber(element, Tags::XML_ATT_MISSINGVALUEPENALTY).value_or(1.0);
  if (!(tree.penalty >= 0 && tree.penalty <= 1)) {
    Raise(MessageId::kInvalidAttributeValue,
          {OptionalText(element, Tags::XML_ATT_MISSINGVALUEPENALTY), Tags::XML_ATT_MISSINGVALUEPENALTY});
  }
  return tree;
}

// Tells the inputs how the predicates read them.
std::vector<CategoryCodes> UseInputs(const std::vector<const ScoreDictVar*>& variables, Inputs& inputs) {
  std::vector<CategoryCodes> codes;
  for (std::size_t i = 0; i < variables.size(); ++i) {
    const ScoreDictVar* variable = variables[i];
    if (variable == nullptr) continue;
    const int index = static_cast<int>(i);
    if (variable->GetMLevel() == ScoreDictVar::kContinuous) {
      inputs.UseAsRangeNumber(index);
      continue;
    }
    const CategoryTable& table = inputs.UseAsCategory(index);
    CategoryCodes& of = codes.emplace_back(CategoryCodes{i, {}});
    for (int code = 0; code < table.Size(); ++code) {
      of.codes.push_back(variable->GetEncoder()->EncodeConst(&table.GetValue(code)));
    }
  }
  return codes;
}

}  // namespace

TreeTranslator::TreeTranslator(NodeEvaluation evaluation)
    : PluginTranslator(Tags::XML_ELE_TREEMODEL), fEvaluation(evaluation) {}
TreeTranslator::~TreeTranslator() = default;

std::unique_ptr<PluginModel> TreeTranslator::NewModel() const { return std::make_unique<TreeModel>(); }

// Derived fields become inputs before the predicates are read, which go by the indexes of inputs.
void TreeTranslator::NameDerivedInputs(const DOMElement& root, const PluginModel& model) {
  const ScoreDictionary* const derived = model.GetTransformationDictionary();
  if (derived == nullptr) return;
  for (const char* tag : {Tags::XML_ELE_PREDICATE, Tags::XML_ELE_SETPREDICATE}) {
    ForEachElementBelow(root, tag, [&](const DOMElement& element) {
      const std::string name = EncodedText(Attribute(element, Tags::XML_ATT_FIELD));
      if (derived->GetVar(name) != nullptr) FindInput(element, Tags::XML_ATT_FIELD);
    });
  }
}

void TreeTranslator::BuildModel(const DOMElement& element, PluginModel& model) {
  const BaseModel::FUNCNAME_TYPE function = model.GetMiningFunction();
  if (function != BaseModel::kRegression && function != BaseModel::kClassification) {
    Raise(MessageId::kUnsupportedValue,
          {ToString(Attribute(element, Tags::XML_ATT_FUNCTIONNAME)), Tags::XML_ATT_FUNCTIONNAME});
  }
  FlatTree tree = ReadTree(element);
  const bool isBinary = ReadKeyword(element, StandardTags::XML_ATT_SPLITCHARACTERISTIC, kSplits);
  const DOMElement& root = FindRoot(element);
  NameDerivedInputs(root, model);
  PredicateReader predicateReader(*this, *model.GetDictionary(), model.GetTransformationDictionary(), root);
  const bool isClassification = function == BaseModel::kClassification;
  NodeReader nodes(*this, predicateReader, fEvaluation, tree, isClassification, isBinary,
                   model.GetTargetVar());
  nodes.Read(root);
  if (isClassification) model.SetCategories(nodes.GetCategories());
  model.GetInputs().AcceptMissing();
  std::vector<CategoryCodes> codes = UseInputs(predicateReader.GetUsedVariables(), model.GetInputs());
  static_cast<TreeModel&>(model).SetTree(std::move(tree), nodes.TakePredicates(), std::move(codes));
}

}  // namespace KxVeyra_940::Plugin
