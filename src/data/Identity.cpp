#include "data/Identity.h"

#include <atomic>

namespace KxVeyra_940 {

std::uint64_t NextIdentity() {
  static std::atomic<std::uint64_t> last{0};
  return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace KxVeyra_940
