// Decision trees: a case walks from the root to the node that answers, with a number or a category.

#ifndef VEYRA_PLUGINS_TREE_TREEMODEL_H_
#define VEYRA_PLUGINS_TREE_TREEMODEL_H_

#include <memory>
#include <vector>

#include "common/PluginModel.h"
#include "tree/FlatTree.h"

namespace KxVeyra_940::Plugin {

// A categorical input: the codes of its predicates by the code of its table of categories.
struct CategoryCodes {
  std::size_t input;
  std::vector<double> codes;

  double Of(int code) const;
};

class TreeModel final : public PluginModel {
 public:
  TreeModel();
  ~TreeModel() override;
  ScoreModel* Clone() const override;

  // Takes everything.  The categories of a classifier are set already; without them the tree predicts
  // numbers.
  void SetTree(FlatTree tree, FlatTree::Predicates predicates, std::vector<CategoryCodes> categoryCodes);

 protected:
  CaseOutcome ScoreCase(CaseValues& values, PluginResult& result) override;
  unsigned GetExtras() const override { return PluginResult::kEntityIds | PluginResult::kConfidences; }

 private:
  // Part of a case on its way down, where several children answer together.
  struct Branch {
    FlatTree::Ending ending;
    std::int32_t start;  // the node that it began at
    std::size_t above;   // the branch that it is part of; the first one is of none
    bool hasAnswer = false;
    double answering = 0;  // records of the parts that have an answer
    double weight = 1;     // of all that is averaged
  };

  TreeModel(const TreeModel& other);
  CaseOutcome AnswerFrom(const FlatTree::Ending& ending, PluginResult& result) const;
  CaseOutcome AnswerTogether(const FlatTree::Ending& ending, const CaseValues& values, PluginResult& result);
  // Lets the children that are not false go on.
  void Divide(std::size_t branch, const CaseValues& values);
  double RecordsOf(const Branch& branch) const { return fTree->Answer(branch.start).recordCount; }
  // Whether the branch came to a node that has an answer of its own.
  bool IsAnswer(const Branch& branch) const;
  void WeighBranches();
  void AddBranch(const Branch& branch, bool isAggregate);
  double Discount(std::int32_t penalties) const;

  std::shared_ptr<const FlatTree> fTree;  // immutable, so that copies share it
  FlatTree::Predicates fPredicates;       // point to the variables of this model's dictionary
  std::vector<CategoryCodes> fCategoryCodes;
  bool fIsClassification = false;

  // Working state of AnswerTogether.
  std::vector<Branch> fBranches;    // each behind the one that it is part of
  std::vector<ScoreShare> fTotals;  // by category
  double fTotalNumber = 0;
  double fTotalWeight = 0;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_TREE_TREEMODEL_H_
