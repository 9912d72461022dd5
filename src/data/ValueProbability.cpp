#include "data/ValueProbability.h"

namespace KxVeyra_940 {

namespace {

bool IsProbability(double number) { return number >= 0 && number <= 1; }

}  // namespace

ValueProbability::ValueProbability(ScoreValue* value, double probability)
    : ValuedPart(value), fProbability(probability) {}

ValueProbability::~ValueProbability() = default;

bool ValueProbability::SetValueProbability(ScoreValue* value, double probability) {
  if (value == nullptr || !IsProbability(probability)) return false;
  ReplaceValue(value);
  fProbability = probability;
  return true;
}

bool ValueProbability::SetProbability(double probability) {
  if (!IsProbability(probability)) return false;
  fProbability = probability;
  return true;
}

ScoreValueProbability* ValueProbability::Clone() const { return new ValueProbability(*this); }

double ValueProbability::GetProbability() const { return fProbability; }

void ValueProbability::Display(std::ostream& out) const { DisplayAs(out, "Probability", fProbability); }

}  // namespace KxVeyra_940
