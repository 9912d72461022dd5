#include "transform/FunctionTreeImp.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include "transform/FunctionTable.h"

namespace KxVeyra_940 {

namespace {

// Of a node's children, in one direction, the first that is there from a position on.
const FunctionTree* FirstThere(const FunctionTree& node, int position, int step) {
  for (; position >= 0 && position < node.GetChildCount(); position += step)
    if (const FunctionTree* const child = node.GetChildAt(position)) return child;
  return nullptr;
}

int PlaceOf(const FunctionTree& parent, const FunctionTree& child) {
  for (int i = 0; i < parent.GetChildCount(); ++i)
    if (parent.GetChildAt(i) == &child) return i;
  return -1;
}

const FunctionTree* Neighbour(const FunctionTree& node, int step) {
  const FunctionTree* const parent = node.GetParent();
  return parent == nullptr ? nullptr : FirstThere(*parent, PlaceOf(*parent, node) + step, step);
}

// The leaf at one end of the tree below a node.
const FunctionTree* EndLeaf(const FunctionTree& node, bool first) {
  const FunctionTree* leaf = &node;
  for (;;) {
    const int count = leaf->GetChildCount();
    const FunctionTree* const child = first ? FirstThere(*leaf, 0, 1) : FirstThere(*leaf, count - 1, -1);
    if (child == nullptr) return leaf;
    leaf = child;
  }
}

// The nearest neighbour of a node or of one of its ancestors.
const FunctionTree* NeighbourAbove(const FunctionTree& node, int step) {
  for (const FunctionTree* at = &node; at != nullptr; at = at->GetParent())
    if (const FunctionTree* const neighbour = Neighbour(*at, step)) return neighbour;
  return nullptr;
}

int LevelOf(const FunctionTree& node) {
  int level = 0;
  for (const FunctionTree* at = node.GetParent(); at != nullptr; at = at->GetParent()) ++level;
  return level;
}

constexpr char kEndOfDisplay[] = "End FunctionTree Display. \n\n";

void DisplayHead(const FunctionTree& node, std::ostream& out) {
  const ApplyNodeStats& stats = node.GetNodeStats();
  const int function = stats.GetTransformFunction();
  out << "Start FunctionTree Display:\n"
      << "Node ID = " << stats.GetNodeID() << '\n';
  if (function < kTransformFunctionCount) out << "Transformation function: ";
  switch (function) {
    case TF_ADDITION:
    case TF_SUBTRACTION:
    case TF_MULTIPLY:
    case TF_ABS:
    case TF_LN:
    case TF_SQRT:
      out << FunctionName(function);
      break;
    default:
      out << "code =" << function;
  }
  out << '\n';
  if (!stats.GetParameterName().empty()) out << "  Parameter Name: " << stats.GetParameterName() << '\n';
  out << "  Level = " << LevelOf(node) << "\n\n";
  if (node.GetChildCount() > 0) out << "Number of children = " << node.GetChildCount() << '\n';
}

// Calls enter(node) before and leave(node) after what lies below each node.
template <class Enter, class Leave>
void Walk(const FunctionTree& root, Enter enter, Leave leave) {
  const FunctionTree* node = &root;
  enter(*node);
  for (;;) {
    if (const FunctionTree* const child = FirstThere(*node, 0, 1)) {
      enter(*(node = child));
      continue;
    }
    leave(*node);
    const FunctionTree* next = nullptr;
    while (node != &root && (next = Neighbour(*node, 1)) == nullptr) leave(*(node = node->GetParent()));
    if (node == &root) return;
    enter(*(node = next));
  }
}

}  // namespace

FunctionTree::~FunctionTree() = default;

// Takes the tree apart before it is deleted: no stack is needed for its depth.
FunctionTreeImp::~FunctionTreeImp() {
  std::vector<FunctionTree*> below(std::move(fChildren));
  while (!below.empty()) {
    FunctionTree* const node = below.back();
    below.pop_back();
    if (auto* const own = dynamic_cast<FunctionTreeImp*>(node)) {
      below.insert(below.end(), own->fChildren.begin(), own->fChildren.end());
      own->fChildren.clear();
    }
    delete node;
  }
}

bool FunctionTreeImp::operator==(const FunctionTree& other) const {
  return fStats.GetNodeID() == other.GetNodeStats().GetNodeID();
}

FunctionTree* FunctionTreeImp::Clone() const {
  auto root = std::make_unique<FunctionTreeImp>(fAllowsChildren);
  std::vector<std::pair<const FunctionTreeImp*, FunctionTreeImp*>> open{{this, root.get()}};
  while (!open.empty()) {
    const auto [from, to] = open.back();
    open.pop_back();
    to->fStats = from->fStats;
    to->fStats.SetVariable(nullptr);
    to->fStats.SetVarIndex(-1);
    to->fKeptValues = from->fKeptValues;
    for (const FunctionTree* child : from->fChildren) {
      if (child == nullptr) continue;
      const auto* const own = dynamic_cast<const FunctionTreeImp*>(child);
      // The place first: a copy has an owner from the start.
      FunctionTree*& copy = to->fChildren.emplace_back(nullptr);
      copy = own == nullptr ? child->Clone() : new FunctionTreeImp(own->fAllowsChildren);
      copy->SetParent(to);
      if (own != nullptr) open.emplace_back(own, static_cast<FunctionTreeImp*>(copy));
    }
  }
  return root.release();
}

int FunctionTreeImp::PositionOf(const FunctionTree* child) const {
  const auto found = std::ranges::find(fChildren, child);
  return found == fChildren.end() ? -1 : static_cast<int>(found - fChildren.begin());
}

void FunctionTreeImp::Insert(FunctionTree* child, int) {
  if (child == nullptr || !fAllowsChildren || IsNodeAncestor(child)) return;
  if (auto* const parent = dynamic_cast<FunctionTreeImp*>(child->GetParent())) {
    const int position = parent->PositionOf(child);
    if (position >= 0) parent->fChildren.erase(parent->fChildren.begin() + position);
  }
  child->SetParent(this);
  fChildren.push_back(child);
}

void FunctionTreeImp::Add(FunctionTree* child) {
  const bool isOwn = child != nullptr && child->GetParent() == this;
  Insert(child, isOwn ? GetChildCount() - 1 : GetChildCount());
}

void FunctionTreeImp::Remove(int position) {
  const FunctionTree* const child = GetChildAt(position);
  if (child == nullptr) return;
  const std::string id = child->GetNodeStats().GetNodeID();
  for (FunctionTree*& place : fChildren) {
    if (place == nullptr || place->GetNodeStats().GetNodeID() != id) continue;
    delete place;
    place = nullptr;
  }
}

void FunctionTreeImp::Remove(FunctionTree* child) {
  if (child != nullptr && child->GetParent() == this) Remove(GetIndex(child));
}

void FunctionTreeImp::RemoveFromParent() {
  if (fParent != nullptr) fParent->Remove(this);
}

void FunctionTreeImp::RemoveAllChildren() {
  for (int i = GetChildCount() - 1; i >= 0; --i) Remove(i);
}

bool FunctionTreeImp::IsLeaf() const { return fChildren.empty(); }

void FunctionTreeImp::SetNodeStats(const ApplyNodeStats& stats) { fStats = stats; }

void FunctionTreeImp::SetParent(FunctionTree* parent) { fParent = parent; }

const ApplyNodeStats& FunctionTreeImp::GetNodeStats() const { return fStats; }

const FunctionTree* FunctionTreeImp::GetChildAt(int position) const {
  return position >= 0 && position < GetChildCount() ? fChildren[static_cast<std::size_t>(position)]
                                                     : nullptr;
}

FunctionTree* FunctionTreeImp::GetChildAt(int position) {
  return const_cast<FunctionTree*>(std::as_const(*this).GetChildAt(position));
}

int FunctionTreeImp::GetChildCount() const { return static_cast<int>(fChildren.size()); }

FunctionTree* FunctionTreeImp::GetParent() const { return fParent; }

int FunctionTreeImp::GetIndex(const FunctionTree* node) const {
  if (node == nullptr) return -1;
  for (int i = 0; i < GetChildCount(); ++i) {
    const FunctionTree* const child = GetChildAt(i);
    if (child != nullptr && *child == *node) return i;
  }
  return -1;
}

bool FunctionTreeImp::GetAllowsChildren() const { return fAllowsChildren; }

void FunctionTreeImp::Display(std::ostream& out) const {
  Walk(
      *this, [&out](const FunctionTree& node) { DisplayHead(node, out); },
      [&out](const FunctionTree&) { out << kEndOfDisplay; });
}

const std::vector<FunctionTree*>& FunctionTreeImp::Children() { return fChildren; }

const FunctionTree* FunctionTreeImp::GetRoot() const {
  const FunctionTree* root = this;
  while (root->GetParent() != nullptr) root = root->GetParent();
  return root;
}

bool FunctionTreeImp::IsNodeAncestor(const FunctionTree* node) const {
  for (const FunctionTree* at = this; at != nullptr; at = at->GetParent())
    if (at == node) return true;
  return false;
}

bool FunctionTreeImp::IsNodeDescendant(const FunctionTree* node) const {
  for (const FunctionTree* at = node; at != nullptr; at = at->GetParent())
    if (at == this) return true;
  return false;
}

bool FunctionTreeImp::IsNodeChild(const FunctionTree* node) const {
  return node != nullptr && PositionOf(node) >= 0;
}

bool FunctionTreeImp::IsNodeSibling(const FunctionTree* node) const {
  return node != nullptr && (node == this || (fParent != nullptr && node->GetParent() == fParent));
}

int FunctionTreeImp::GetLevel() const { return LevelOf(*this); }

const FunctionTree* FunctionTreeImp::GetNextNode() const {
  const FunctionTree* const child = FirstThere(*this, 0, 1);
  return child != nullptr ? child : NeighbourAbove(*this, 1);
}

const FunctionTree* FunctionTreeImp::GetPreviousNode() const {
  if (fParent == nullptr) return nullptr;
  const FunctionTree* const before = GetPreviousSibling();
  return before == nullptr ? fParent : EndLeaf(*before, false);
}

const FunctionTree* FunctionTreeImp::GetNextSibling() const { return Neighbour(*this, 1); }

const FunctionTree* FunctionTreeImp::GetPreviousSibling() const { return Neighbour(*this, -1); }

const FunctionTree* FunctionTreeImp::GetChildAfter(const FunctionTree* child) const {
  const int position = PositionOf(child);
  return child == nullptr || position < 0 ? nullptr : FirstThere(*this, position + 1, 1);
}

const FunctionTree* FunctionTreeImp::GetChildBefore(const FunctionTree* child) const {
  const int position = PositionOf(child);
  return child == nullptr || position < 0 ? nullptr : FirstThere(*this, position - 1, -1);
}

int FunctionTreeImp::GetSiblingCount() const { return fParent == nullptr ? 1 : fParent->GetChildCount(); }

const FunctionTree* FunctionTreeImp::GetFirstLeaf() const { return EndLeaf(*this, true); }

const FunctionTree* FunctionTreeImp::GetLastLeaf() const { return EndLeaf(*this, false); }

const FunctionTree* FunctionTreeImp::GetNextLeaf() const {
  const FunctionTree* const next = NeighbourAbove(*this, 1);
  return next == nullptr ? nullptr : EndLeaf(*next, true);
}

const FunctionTree* FunctionTreeImp::GetPreviousLeaf() const {
  const FunctionTree* const before = NeighbourAbove(*this, -1);
  return before == nullptr ? nullptr : EndLeaf(*before, false);
}

void FunctionTreeImp::SetAllowsChildren(bool allowsChildren) {
  if (fAllowsChildren && !allowsChildren) RemoveAllChildren();
  fAllowsChildren = allowsChildren;
}

void TraverseTree(FunctionTree* node, std::ostream& out) {
  if (node == nullptr) return;
  Walk(
      *node,
      [&](const FunctionTree& entered) {
        if (&entered != node) entered.Display(out);
      },
      [](const FunctionTree&) {});
}

}  // namespace KxVeyra_940
