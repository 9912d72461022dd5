// From a predicate object to the test of a node: plain comparisons and sets of categories become numbers that
// are compared in place, with the same answer to the last bit.

#ifndef VEYRA_PLUGINS_TREE_NODETESTS_H_
#define VEYRA_PLUGINS_TREE_NODETESTS_H_

#include <optional>

#include "tree/FlatTree.h"
#include "veyra/ScoreValueRange.h"

namespace KxVeyra_940::Plugin {

// The test that answers as the predicate does for every finite number and every code; nothing for a predicate
// that must be asked itself.  May add code sets to the tree.
std::optional<NodeTest> CompileTest(const ScorePredicate& predicate, FlatTree& tree);

// The smallest and the largest finite number that the range contains, the tolerance of its closed ends
// included; low > high when it contains none.
Bounds EffectiveBounds(const ScoreValueRange& range);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_TREE_NODETESTS_H_
