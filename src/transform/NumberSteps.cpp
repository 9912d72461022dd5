#include <algorithm>
#include <array>

#include "transform/NumberStepsInternal.h"

namespace KxVeyra_940 {

static_assert(NumericValue::gSysmisValue == std::numeric_limits<double>::lowest());

void NumberSteps::SetConstant(std::size_t place, double number) {
  fRegisters[place] = number;
  fPlaces[place] = static_cast<std::uint32_t>(place);
}

void NumberSteps::AddLoad(std::size_t load, const std::string& name, std::size_t place) {
  const auto known = std::ranges::find(fNames, name);
  if (known != fNames.end()) {
    fPlaces[place] = fLoads[static_cast<std::size_t>(known - fNames.begin())].place;
    return;
  }
  fPlaces[place] = static_cast<std::uint32_t>(place);
  fNames.push_back(name);
  fLoads.push_back({load, fPlaces[place]});
}

bool NumberSteps::AddStep(const FunctionBody& body, std::span<const std::size_t> operands,
                          std::size_t result) {
  std::array<std::uint32_t, 3> places{};
  if (body.ofNumbers == nullptr || body.numberCount != operands.size() || operands.size() > places.size())
    return false;
  for (std::size_t i = 0; i < places.size(); ++i) {
    places[i] = i < operands.size() ? fPlaces[operands[i]] : places[0];
    if (places[i] == kNoPlace) return false;
  }
  fPlaces[result] = static_cast<std::uint32_t>(result);
  fSteps.push_back({body.ofNumbers, places[0], places[1], places[2], fPlaces[result]});
  return true;
}

}  // namespace KxVeyra_940
