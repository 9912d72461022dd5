#include "data/CoveredNumbers.h"

#include <algorithm>

namespace KxVeyra_940 {

void CoveredNumbers::Add(const Interval& interval) {
  int below = -1;
  int above = -1;
  const int node = NewNode(interval);
  Split(fRoot, interval, below, above);
  fRoot = Joined(Joined(below, node), above);
}

bool CoveredNumbers::Remove(const Interval& interval) {
  bool isFound = false;
  fRoot = Without(fRoot, interval, isFound);
  return isFound;
}

void CoveredNumbers::Clear() {
  fNodes.clear();
  fFree.clear();
  fRoot = -1;
}

int CoveredNumbers::NewNode(const Interval& interval) {
  // A linear congruence of full period; its high bits are the random ones, and compared first.
  fRandom = fRandom * 1664525U + 1013904223U;
  const Node node{interval, interval.high, fRandom};
  if (fFree.empty()) {
    fNodes.push_back(node);
    return static_cast<int>(fNodes.size()) - 1;
  }
  const int place = fFree.back();
  fFree.pop_back();
  At(place) = node;
  return place;
}

// The node, whose children have changed.
int CoveredNumbers::Updated(int node) {
  Node& parent = At(node);
  parent.highest = parent.interval.high;
  for (const int child : {parent.left, parent.right}) {
    if (child >= 0) parent.highest = std::max(parent.highest, At(child).highest);
  }
  return node;
}

// Parts a tree into the intervals before `at` and the others.
void CoveredNumbers::Split(int node, const Interval& at, int& below, int& above) {
  if (node < 0) {
    below = above = -1;
    return;
  }
  if (At(node).interval < at) {
    Split(At(node).right, at, At(node).right, above);
    below = Updated(node);
  } else {
    Split(At(node).left, at, below, At(node).left);
    above = Updated(node);
  }
}

// One tree of two, all intervals of the first being before those of the second.
int CoveredNumbers::Joined(int left, int right) {
  if (left < 0 || right < 0) return left < 0 ? right : left;
  if (At(left).priority > At(right).priority) {
    At(left).right = Joined(At(left).right, right);
    return Updated(left);
  }
  At(right).left = Joined(left, At(right).left);
  return Updated(right);
}

int CoveredNumbers::Without(int node, const Interval& interval, bool& isFound) {
  if (node < 0) return node;
  if (At(node).interval == interval) {
    isFound = true;
    fFree.push_back(node);
    return Joined(At(node).left, At(node).right);
  }
  int& child = interval < At(node).interval ? At(node).left : At(node).right;
  child = Without(child, interval, isFound);
  return Updated(node);
}

}  // namespace KxVeyra_940
