#include "nearestneighbor/InstanceMatrix.h"

#include <cmath>

namespace KxVeyra_940::Plugin {

void InstanceMatrix::Add(std::span<const double> values) {
  const std::size_t lane = fSize % kLanes;
  if (lane == 0) {
    fValues.resize(fValues.size() + fFieldCount * kLanes, 0.0);
    fHasMissing.push_back(0);
  }
  double* const block = fValues.data() + (fHasMissing.size() - 1) * fFieldCount * kLanes;
  for (std::size_t field = 0; field < fFieldCount; ++field) {
    block[field * kLanes + lane] = values[field];
    if (std::isnan(values[field])) fHasMissing.back() = 1;
  }
  ++fSize;
}

}  // namespace KxVeyra_940::Plugin
