#include "data/ValueProbability.h"

#include <ostream>

namespace KxVeyra_940 {

namespace {

bool IsProbability(double number) { return number >= 0 && number <= 1; }

}  // namespace

ValueProbability::ValueProbability(ScoreValue* value, double probability)
    : fValue(value), fProbability(probability) {}

ValueProbability::~ValueProbability() = default;

bool ValueProbability::SetValueProbability(ScoreValue* value, double probability) {
  if (value == nullptr || !IsProbability(probability)) return false;
  fValue.Replace(value);
  Edited();
  fProbability = probability;
  return true;
}

bool ValueProbability::SetProbability(double probability) {
  if (!IsProbability(probability)) return false;
  fProbability = probability;
  return true;
}

ScoreValueProbability* ValueProbability::Clone() const { return new ValueProbability(*this); }

bool ValueProbability::operator==(const ScoreValueProbability& other) const {
  return *fValue == *other.GetValue();
}

bool ValueProbability::operator>(const ScoreValueProbability& other) const {
  return *fValue > *other.GetValue();
}

bool ValueProbability::operator<(const ScoreValueProbability& other) const {
  return *fValue < *other.GetValue();
}

bool ValueProbability::operator<=(const ScoreValueProbability& other) const {
  return *fValue <= *other.GetValue();
}

bool ValueProbability::operator>=(const ScoreValueProbability& other) const {
  return *fValue >= *other.GetValue();
}

double ValueProbability::GetProbability() const { return fProbability; }

ScoreValue* ValueProbability::GetValue() const { return fValue.Get(); }

void ValueProbability::Display(std::ostream& out) const {
  out << "Value: " << (fValue ? fValue->GetString() : "NULL") << ";  Probability: " << fProbability << '\n';
}

}  // namespace KxVeyra_940
