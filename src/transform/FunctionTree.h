// The tree of an expression: functions over functions, fields and constants.
//
// A node is known by its node ID: two nodes are equal when their IDs are, and searches go by it.  An empty ID
// is every fresh node's: give nodes their IDs before they are searched for or removed.
// Ownership: a node owns its children; whoever holds the root deletes the tree.
// Threads: const operations may run in several threads.  Nothing throws.

#ifndef VEYRA_TRANSFORM_FUNCTIONTREE_H_
#define VEYRA_TRANSFORM_FUNCTIONTREE_H_

#include <iosfwd>
#include <vector>

#include "transform/ApplyNodeStats.h"
#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API FunctionTree {
 public:
  virtual ~FunctionTree();
  virtual bool operator==(const FunctionTree& other) const = 0;
  virtual FunctionTree* Clone() const = 0;  // new, without a parent; the caller owns it
  // Takes the child as the last one, whatever the position says; a child of another node is moved.  Ignored,
  // the child stays whose it was: null, a node without room for children, the node itself and its ancestors.
  virtual void Insert(FunctionTree* child, int position) = 0;
  virtual void Add(FunctionTree* child) = 0;
  // Destroys the child, and every other one of its ID, and leaves empty places: the count stays.
  virtual void Remove(int position) = 0;
  virtual void Remove(FunctionTree* child) = 0;
  virtual void RemoveFromParent() = 0;
  virtual void RemoveAllChildren() = 0;
  virtual bool IsLeaf() const = 0;  // no place for a child, not even an empty one
  virtual void SetNodeStats(const ApplyNodeStats& stats) = 0;
  virtual void SetParent(FunctionTree* parent) = 0;  // stores it, nothing else
  virtual const ApplyNodeStats& GetNodeStats() const = 0;
  virtual const FunctionTree* GetChildAt(int position) const = 0;  // null outside and for an empty place
  virtual FunctionTree* GetChildAt(int position) = 0;
  virtual int GetChildCount() const = 0;  // empty places included
  virtual FunctionTree* GetParent() const = 0;
  virtual int GetIndex(const FunctionTree* node) const = 0;  // of the first child of its ID; -1
  virtual bool GetAllowsChildren() const = 0;
  virtual void Display(std::ostream& out) const = 0;
  virtual const std::vector<FunctionTree*>& Children() = 0;
  virtual const FunctionTree* GetRoot() const = 0;
};

// Displays what lies below a node, level by level within each branch.
VEYRA_API void TraverseTree(FunctionTree* node, std::ostream& out);

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_FUNCTIONTREE_H_
