// The destructor of the abstract predicate: one home for its vtable, so that a predicate made in a plug-in
// has the same type as one made here.

#include "veyra/ScorePredicate.h"

namespace KxVeyra_940 {

ScorePredicate::~ScorePredicate() = default;

}  // namespace KxVeyra_940
