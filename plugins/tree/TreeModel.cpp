#include "tree/TreeModel.h"

#include <algorithm>
#include <cmath>

#include "predicate/CompoundPredicate.h"
#include "predicate/SplitPredicate.h"
#include "transform/TransformationDictionary.h"
#include "translate/PMMLModelTags.h"
#include "translate/PMMLTranslator.h"

namespace KxVeyra_940::Plugin {

namespace {

using Ending = FlatTree::Ending;

// Compounds are nested no deeper than documents may nest them.
void Resolve(ScorePredicate& predicate, const ScoreDictionary* dictionary,
             const ScoreDictionary* transformations) {
  if (predicate.GetPredType() == ScorePredicate::kCompoundPredicate) {
    for (ScorePredicate* child : static_cast<CompoundPredicate&>(predicate).GetPredicates()) {
      Resolve(*child, dictionary, transformations);
    }
  } else if (ScoreSplitVar* split = predicate.GetSplit()) {
    split->SetSplitVar(PMMLTranslator::FindVariable(split->GetSplitName(), dictionary, transformations));
  }
}

}  // namespace

double CategoryCodes::Of(int code) const {
  if (code >= 0) return codes[static_cast<std::size_t>(code)];
  return code == kMissingCategory ? SplitPredicate::kMissingCode : SplitPredicate::kUnknownCode;
}

TreeModel::TreeModel() : PluginModel(PMMLModelTags::XML_ELE_TREEMODEL) {}
TreeModel::~TreeModel() = default;

TreeModel::TreeModel(const TreeModel& other)
    : PluginModel(other),
      fTree(other.fTree),
      fCategoryCodes(other.fCategoryCodes),
      fIsClassification(other.fIsClassification),
      fChildResults(other.fChildResults),
      fTotals(other.fTotals) {
  fPending.reserve(other.fPending.capacity());
  for (const auto& predicate : other.fPredicates) {
    fPredicates.emplace_back(predicate->Clone());
    Resolve(*fPredicates.back(), GetDictionary(), GetTransformationDictionary());
  }
}

ScoreModel* TreeModel::Clone() const { return new TreeModel(*this); }

void TreeModel::SetTree(FlatTree tree, FlatTree::Predicates predicates,
                        std::vector<CategoryCodes> categoryCodes) {
  const bool hasSeveral = tree.strategy == MissingStrategy::kWeightedConfidence ||
                          tree.strategy == MissingStrategy::kAggregateNodes;
  const auto mostChildren = static_cast<std::size_t>(tree.mostChildren);
  const std::size_t mostPending = static_cast<std::size_t>(tree.deepest) * mostChildren + 1;
  fTree = std::make_shared<const FlatTree>(std::move(tree));
  fPredicates = std::move(predicates);
  fCategoryCodes = std::move(categoryCodes);
  const int categories = NewBareResult()->GetNumberOfCategories();
  fIsClassification = categories > 0;
  if (!hasSeveral) return;
  fPending.reserve(std::min(mostPending, fTree->Size() + 1));
  fChildResults.resize(mostChildren);
  for (int i = 0; i < categories; ++i) fTotals.push_back({i, 0, 0, 0});
}

CaseOutcome TreeModel::ScoreCase(CaseValues& values, PluginResult& result) {
  for (const CategoryCodes& input : fCategoryCodes) {
    values.numbers[input.input] = input.Of(values.codes[input.input]);
  }
  const Ending ending = fTree->Walk(values.numbers, fPredicates);
  switch (ending.kind) {
    case Ending::kNode:
      return AnswerFrom(ending, result);
    case Ending::kSeveral:
      return AnswerTogether(ending, values, result);
    case Ending::kNothing:
      break;
  }
  return CaseOutcome::kMissing;
}

double TreeModel::Discount(std::int32_t penalties) const {
  return penalties == 0 ? 1.0 : std::pow(fTree->penalty, penalties);
}

CaseOutcome TreeModel::AnswerFrom(const Ending& ending, PluginResult& result) const {
  const NodeAnswer& answer = fTree->Answer(ending.node);
  if (!answer.hasScore) return CaseOutcome::kMissing;
  result.AddEntity(&fTree->Id(ending.node));
  if (!fIsClassification) {
    result.SetPredictedNumber(answer.number);
    return CaseOutcome::kAnswered;
  }
  if (answer.shareCount > 0) {
    const int categories = result.GetNumberOfCategories();
    for (int i = 0; i < categories; ++i) {
      result.SetCategoryProbability(i, 0);
      result.SetCategoryConfidence(i, 0);
    }
    const double discount = Discount(ending.penalties);
    const ScoreShare* shares = fTree->Shares(ending.node);
    for (const ScoreShare* share = shares; share != shares + answer.shareCount; ++share) {
      result.SetCategoryProbability(share->category, share->probability);
      result.SetCategoryConfidence(share->category, share->confidence * discount);
    }
  }
  result.SetPredictedCategory(answer.category);
  return CaseOutcome::kAnswered;
}

void TreeModel::Divide(const Branch& branch, const CaseValues& values) {
  const std::int32_t first = fTree->FirstChild(branch.ending.node);
  const std::int32_t count = fTree->ChildCount(branch.ending.node);
  double records = 0;
  for (std::int32_t i = 0; i < count; ++i) {
    const auto result = fTree->Evaluate(first + i, values.numbers, fPredicates);
    fChildResults[static_cast<std::size_t>(i)] = result;
    if (result != ScorePredicate::kFalse) records += fTree->Answer(first + i).recordCount;
  }
  if (!(records > 0)) return;
  for (std::int32_t i = 0; i < count; ++i) {
    const auto result = fChildResults[static_cast<std::size_t>(i)];
    if (result == ScorePredicate::kFalse) continue;
    Ending ending = fTree->WalkFrom(first + i, values.numbers, fPredicates);
    ending.penalties += branch.ending.penalties + (result == ScorePredicate::kTrueBySurrogate ? 1 : 0);
    fPending.push_back({ending, branch.weight * fTree->Answer(first + i).recordCount / records});
  }
}

void TreeModel::AddBranch(const Branch& branch, bool isAggregate) {
  const NodeAnswer& answer = fTree->Answer(branch.ending.node);
  if (!fIsClassification) {
    if (!answer.hasScore) return;
    const double weight = isAggregate ? answer.recordCount : branch.weight;
    fTotalNumber += weight * answer.number;
    fTotalWeight += weight;
    return;
  }
  if (answer.shareCount == 0) return;
  const double discount = Discount(branch.ending.penalties);
  const ScoreShare* shares = fTree->Shares(branch.ending.node);
  if (!isAggregate) fTotalWeight += branch.weight;
  for (const ScoreShare* share = shares; share != shares + answer.shareCount; ++share) {
    ScoreShare& total = fTotals[static_cast<std::size_t>(share->category)];
    if (isAggregate) {
      total.probability += share->recordCount;
      total.confidence += share->recordCount * discount;
      fTotalWeight += share->recordCount;
    } else {
      total.probability += branch.weight * share->probability;
      total.confidence += branch.weight * share->confidence * discount;
    }
  }
}

CaseOutcome TreeModel::AnswerTogether(const Ending& ending, const CaseValues& values, PluginResult& result) {
  const bool isAggregate = fTree->strategy == MissingStrategy::kAggregateNodes;
  fTotalNumber = 0;
  fTotalWeight = 0;
  for (ScoreShare& total : fTotals) total.probability = total.confidence = 0;
  fPending.assign(1, {ending, 1.0});
  while (!fPending.empty()) {
    const Branch branch = fPending.back();
    fPending.pop_back();
    if (branch.ending.kind == Ending::kSeveral) Divide(branch, values);
    if (branch.ending.kind == Ending::kNode) AddBranch(branch, isAggregate);
  }
  if (!(fTotalWeight > 0)) return CaseOutcome::kMissing;
  if (!fIsClassification) {
    result.SetPredictedNumber(fTotalNumber / fTotalWeight);
    return CaseOutcome::kAnswered;
  }
  for (const ScoreShare& total : fTotals) {
    result.SetCategoryProbability(total.category, total.probability / fTotalWeight);
    result.SetCategoryConfidence(total.category, total.confidence / fTotalWeight);
  }
  const auto best = std::max_element(
      fTotals.begin(), fTotals.end(), [isAggregate](const ScoreShare& left, const ScoreShare& right) {
        return isAggregate ? left.probability < right.probability : left.confidence < right.confidence;
      });
  result.SetPredictedCategory(best->category);
  return CaseOutcome::kAnswered;
}

}  // namespace KxVeyra_940::Plugin
