#include "veyra/KxStatus.h"

namespace KxScore {

bool KxStatus::operator==(const KxStatus& other) const = default;

}  // namespace KxScore
