#include "generalregression/Hazards.h"

#include <algorithm>
#include <limits>

namespace KxVeyra_940::Plugin {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

}  // namespace

double HazardTable::At(double time) const {
  if (!(time <= maxTime)) return kNone;
  const auto next =
      std::upper_bound(steps.begin(), steps.end(), time,
                       [](double wanted, const HazardStep& step) { return wanted < step.time; });
  return next == steps.begin() ? 0 : std::prev(next)->hazard;
}

void Hazards::SetTable(HazardTable table) {
  fTables.clear();
  fTables.push_back(std::move(table));
}

void Hazards::SetTable(int code, HazardTable table) {
  const auto position = static_cast<std::size_t>(code);
  if (fTableOfCode.size() <= position) fTableOfCode.resize(position + 1, -1);
  fTableOfCode[position] = static_cast<int>(fTables.size());
  fTables.push_back(std::move(table));
}

double Hazards::At(double time, int code) const {
  if (fTableOfCode.empty()) return fTables.front().At(time);
  // A code of -1 is beyond every table.
  const auto position = static_cast<std::size_t>(code);
  if (position >= fTableOfCode.size() || fTableOfCode[position] < 0) return kNone;
  return fTables[static_cast<std::size_t>(fTableOfCode[position])].At(time);
}

}  // namespace KxVeyra_940::Plugin
