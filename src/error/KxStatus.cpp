#include "veyra/KxStatus.h"

#include <algorithm>

namespace KxScore {

bool KxStatus::operator==(const KxStatus& other) const {
  return fErrorCode == other.fErrorCode && fSeverity == other.fSeverity &&
         std::ranges::equal(fDiscreteData, other.fDiscreteData) &&
         std::ranges::equal(fScaleData, other.fScaleData);
}

}  // namespace KxScore
