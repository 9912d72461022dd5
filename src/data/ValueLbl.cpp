#include "data/ValueLbl.h"

#include <ostream>
#include <utility>

namespace KxVeyra_940 {

ValueLbl::ValueLbl(ScoreValue* value, std::string label) : fValue(value), fLabel(std::move(label)) {}

ValueLbl::~ValueLbl() = default;

bool ValueLbl::SetValueLabel(ScoreValue* value, const std::string& label) {
  if (value == nullptr || label.empty()) return false;
  fLabel = label;  // first: it may be the text of the value that goes
  fValue.Replace(value);
  Edited();
  return true;
}

bool ValueLbl::SetLabel(const std::string& label) {
  if (label.empty()) return false;
  fLabel = label;
  return true;
}

ScoreValueLabel* ValueLbl::Clone() const { return new ValueLbl(*this); }

bool ValueLbl::operator==(const ScoreValueLabel& label) const { return *fValue == *label.GetValue(); }

bool ValueLbl::operator>(const ScoreValueLabel& label) const { return *fValue > *label.GetValue(); }

bool ValueLbl::operator<(const ScoreValueLabel& label) const { return *fValue < *label.GetValue(); }

bool ValueLbl::operator<=(const ScoreValueLabel& label) const { return *fValue <= *label.GetValue(); }

bool ValueLbl::operator>=(const ScoreValueLabel& label) const { return *fValue >= *label.GetValue(); }

const std::string& ValueLbl::GetLabel() const { return fLabel; }

ScoreValue* ValueLbl::GetValue() const { return fValue.Get(); }

void ValueLbl::Display(std::ostream& out) const {
  out << "Value: " << (fValue ? fValue->GetString() : "NULL") << ";  Label: " << fLabel << '\n';
}

}  // namespace KxVeyra_940
