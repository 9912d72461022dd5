// Going through what reads each other: a node after everything that it reads.

#ifndef VEYRA_TRANSFORM_READSFIRST_H_
#define VEYRA_TRANSFORM_READSFIRST_H_

#include <cstddef>
#include <vector>

namespace KxVeyra_940 {

// Calls leave(node) for `root` and all that it reads, what is read before what reads it.  `enter(node,
// reader)` marks the node and answers false for one that is marked already or is not wanted; the root reads
// itself.  Of nodes that read each other in a circle, the one entered first is left last.  Chains are long: a
// stack of our own, no recursion.
template <class Node, class ReadsOf, class Enter, class Leave>
void VisitReadsFirst(Node root, ReadsOf readsOf, Enter enter, Leave leave) {
  struct Visit {
    Node node;
    std::size_t next;
  };
  std::vector<Visit> open;
  if (enter(root, root)) open.push_back({root, 0});
  while (!open.empty()) {
    Visit& visit = open.back();
    const std::vector<Node>& reads = readsOf(visit.node);
    if (visit.next < reads.size()) {
      const Node read = reads[visit.next++];
      if (enter(read, visit.node)) open.push_back({read, 0});
      continue;
    }
    leave(visit.node);
    open.pop_back();
  }
}

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_READSFIRST_H_
