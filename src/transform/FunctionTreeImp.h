// The one kind of expression tree there is.
//
//   auto root = std::make_unique<FunctionTreeImp>(true);
//   root->SetNodeStats(stats);
//   root->Add(leaf);                    // takes it
//
// Empty places, left by removals, are met as none by every walk.  No walk needs stack, however deep the tree.

#ifndef VEYRA_TRANSFORM_FUNCTIONTREEIMP_H_
#define VEYRA_TRANSFORM_FUNCTIONTREEIMP_H_

#include <memory>
#include <vector>

#include "transform/FunctionTree.h"
#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API FunctionTreeImp : public FunctionTree {
 public:
  explicit FunctionTreeImp(bool allowsChildren) : fAllowsChildren(allowsChildren) {}
  FunctionTreeImp(const FunctionTreeImp&) = delete;
  FunctionTreeImp& operator=(const FunctionTreeImp&) = delete;
  ~FunctionTreeImp() override;

  bool operator==(const FunctionTree& other) const override;
  FunctionTree* Clone() const override;
  void Insert(FunctionTree* child, int position) override;
  void Add(FunctionTree* child) override;
  void Remove(int position) override;
  void Remove(FunctionTree* child) override;
  void RemoveFromParent() override;
  void RemoveAllChildren() override;
  bool IsLeaf() const override;
  void SetNodeStats(const ApplyNodeStats& stats) override;
  void SetParent(FunctionTree* parent) override;
  const ApplyNodeStats& GetNodeStats() const override;
  const FunctionTree* GetChildAt(int position) const override;
  FunctionTree* GetChildAt(int position) override;
  int GetChildCount() const override;
  FunctionTree* GetParent() const override;
  int GetIndex(const FunctionTree* node) const override;
  bool GetAllowsChildren() const override;
  void Display(std::ostream& out) const override;
  const std::vector<FunctionTree*>& Children() override;
  const FunctionTree* GetRoot() const override;

  bool IsNodeAncestor(const FunctionTree* node) const;    // node is this one or an ancestor of it
  bool IsNodeDescendant(const FunctionTree* node) const;  // this is node or one of its ancestors
  bool IsNodeChild(const FunctionTree* node) const;
  bool IsNodeSibling(const FunctionTree* node) const;  // of one parent; a node is its own sibling
  int GetLevel() const;                                // the number of ancestors
  bool IsRoot() const { return fParent == nullptr; }
  // Before and after in pre-order; null at the ends.
  const FunctionTree* GetNextNode() const;
  const FunctionTree* GetPreviousNode() const;
  const FunctionTree* GetNextSibling() const;
  const FunctionTree* GetPreviousSibling() const;
  const FunctionTree* GetFirstChild() const { return GetChildAt(0); }
  const FunctionTree* GetLastChild() const { return GetChildAt(GetChildCount() - 1); }
  const FunctionTree* GetChildAfter(const FunctionTree* child) const;
  const FunctionTree* GetChildBefore(const FunctionTree* child) const;
  int GetSiblingCount() const;  // this one included; 1 for the root
  const FunctionTree* GetFirstLeaf() const;
  const FunctionTree* GetLastLeaf() const;
  const FunctionTree* GetNextLeaf() const;
  const FunctionTree* GetPreviousLeaf() const;
  // Turning it off removes all children.
  void SetAllowsChildren(bool allowsChildren);

  // Keeps a value that the node's statistics point to alive as long as the node and its clones.
  void KeepValue(ScoreValue* value) { fKeptValues.emplace_back(value); }

 private:
  // The position of this very child; -1.
  int PositionOf(const FunctionTree* child) const;

  FunctionTree* fParent = nullptr;
  std::vector<FunctionTree*> fChildren;  // owned
  bool fAllowsChildren;
  ApplyNodeStats fStats;
  std::vector<std::shared_ptr<ScoreValue>> fKeptValues;  // never changed, so clones share them
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_FUNCTIONTREEIMP_H_
