#include "data/ValueProbabilitySet.h"

namespace KxVeyra_940 {

ValueProbabilitySet::~ValueProbabilitySet() = default;

ScoreValueProbabilitySet* ValueProbabilitySet::Clone() const { return new ValueProbabilitySet(*this); }

const std::vector<ScoreValueProbability*>& ValueProbabilitySet::GetAllValueProbabilities() const {
  return Parts().All();
}

double ValueProbabilitySet::GetProbabilityOfValue(const ScoreValue* value) const {
  const int position = Find(value);
  return position < 0 ? 0 : Parts().At(position).GetProbability();
}

void ValueProbabilitySet::Display(std::ostream& out) const { DisplayAs(out, "ScoreValueProbabilitySet"); }

}  // namespace KxVeyra_940
