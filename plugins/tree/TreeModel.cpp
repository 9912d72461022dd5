#include "tree/TreeModel.h"

#include <algorithm>
#include <cmath>

#include "predicate/CompoundPredicate.h"
#include "predicate/SplitPredicate.h"
#include "transform/TransformationDictionary.h"
#include "translate/PMMLTranslator.h"
#include "vocabulary/PMMLModelTags.h"

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
      fTotals(other.fTotals) {
  fBranches.reserve(other.fBranches.capacity());
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
  fTree = std::make_shared<const FlatTree>(std::move(tree));
  fPredicates = std::move(predicates);
  fCategoryCodes = std::move(categoryCodes);
  const int categories = NewBareResult()->GetNumberOfCategories();
  fIsClassification = categories > 0;
  if (!hasSeveral) return;
  fBranches.reserve(fTree->Size() + 1);
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
  const std::int32_t node = fTree->Answer(ending.node).lastScored;
  if (node < 0) return CaseOutcome::kMissing;
  const NodeAnswer& answer = fTree->Answer(node);
  result.AddEntity(&fTree->Id(node));
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
    const ScoreShare* shares = fTree->Shares(node);
    for (const ScoreShare* share = shares; share != shares + answer.shareCount; ++share) {
      result.SetCategoryProbability(share->category, share->probability);
      result.SetCategoryConfidence(share->category, share->confidence * discount);
    }
  }
  result.SetPredictedCategory(answer.category);
  return CaseOutcome::kAnswered;
}

void TreeModel::Divide(std::size_t branch, const CaseValues& values) {
  const Ending divided = fBranches[branch].ending;
  const std::int32_t first = fTree->FirstChild(divided.node);
  const std::int32_t end = first + fTree->ChildCount(divided.node);
  for (std::int32_t child = first; child < end; ++child) {
    const auto result = fTree->Evaluate(child, values.numbers, fPredicates);
    if (result == ScorePredicate::kFalse) continue;
    Ending ending = fTree->WalkFrom(child, values.numbers, fPredicates);
    ending.penalties += divided.penalties;
    if (IsTrue(result))
      ending.penalties += fTree->CountSurrogates(child, result, values.numbers, fPredicates);
    fBranches.push_back({ending, child, branch});
  }
}

// Nodes above the branch answer for others, too.
bool TreeModel::IsAnswer(const Branch& branch) const {
  if (branch.ending.kind != Ending::kNode) return false;
  const std::int32_t node = fTree->Answer(branch.ending.node).lastScored;
  return node >= branch.start && (!fIsClassification || fTree->Answer(node).shareCount > 0);
}

void TreeModel::AddBranch(const Branch& branch, bool isAggregate) {
  const std::int32_t node = fTree->Answer(branch.ending.node).lastScored;
  const NodeAnswer& answer = fTree->Answer(node);
  if (!fIsClassification) {
    const double weight = isAggregate ? answer.recordCount : branch.weight;
    fTotalNumber += weight * answer.number;
    fTotalWeight += weight;
    return;
  }
  const double discount = Discount(branch.ending.penalties);
  const ScoreShare* shares = fTree->Shares(node);
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

// A branch weighs its records, whatever becomes of its parts, among those that it stands beside, as far as
// these have an answer.
void TreeModel::WeighBranches() {
  for (std::size_t i = fBranches.size(); i-- > 1;) {  // parts before what they are part of
    Branch& branch = fBranches[i];
    branch.hasAnswer = RecordsOf(branch) > 0 && (IsAnswer(branch) || branch.answering > 0);
    if (branch.hasAnswer) fBranches[branch.above].answering += RecordsOf(branch);
  }
  for (std::size_t i = 1; i < fBranches.size(); ++i) {
    const Branch& above = fBranches[fBranches[i].above];
    fBranches[i].weight = above.weight * RecordsOf(fBranches[i]) / above.answering;
  }
}

CaseOutcome TreeModel::AnswerTogether(const Ending& ending, const CaseValues& values, PluginResult& result) {
  const bool isAggregate = fTree->strategy == MissingStrategy::kAggregateNodes;
  fTotalNumber = 0;
  fTotalWeight = 0;
  for (ScoreShare& total : fTotals) total.probability = total.confidence = 0;
  fBranches.assign(1, {ending, ending.node, 0});
  for (std::size_t i = 0; i < fBranches.size(); ++i)
    if (fBranches[i].ending.kind == Ending::kSeveral) Divide(i, values);
  const auto isAnswer = [this](const Branch& branch) { return IsAnswer(branch); };
  // What is left alone answers for itself.
  if (std::ranges::count_if(fBranches, isAnswer) == 1)
    return AnswerFrom(std::ranges::find_if(fBranches, isAnswer)->ending, result);
  WeighBranches();
  for (const Branch& branch : fBranches)
    if (branch.hasAnswer && IsAnswer(branch)) AddBranch(branch, isAggregate);
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
