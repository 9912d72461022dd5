// Compiles as it is; with VEYRA_MISCOUNTED defined as one of the numbers it must not.

#include "error/Raise.h"

namespace KxVeyra_940 {

[[noreturn]] void RaiseCounted() {
#if VEYRA_MISCOUNTED == 1
  Raise(MessageId::kMissingNodeIn, {"too few"});
#elif VEYRA_MISCOUNTED == 2
  Raise(MessageId::kMissingNode, {"too", "many"});
#elif VEYRA_MISCOUNTED == 3
  Raise(MessageId::kMissingNode);
#elif VEYRA_MISCOUNTED == 4
  Raise(MessageId::kNoRootElement, {"one for none"});
#else
  Raise(MessageId::kMissingNodeIn, {"just", "right"});
#endif
}

}  // namespace KxVeyra_940
