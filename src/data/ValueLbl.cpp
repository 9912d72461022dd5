#include "data/ValueLbl.h"

#include <utility>

namespace KxVeyra_940 {

ValueLbl::ValueLbl(ScoreValue* value, std::string label) : ValuedPart(value), fLabel(std::move(label)) {}

ValueLbl::~ValueLbl() = default;

bool ValueLbl::SetValueLabel(ScoreValue* value, const std::string& label) {
  if (value == nullptr || label.empty()) return false;
  fLabel = label;  // first: it may be the text of the value that goes
  ReplaceValue(value);
  return true;
}

bool ValueLbl::SetLabel(const std::string& label) {
  if (label.empty()) return false;
  fLabel = label;
  return true;
}

ScoreValueLabel* ValueLbl::Clone() const { return new ValueLbl(*this); }

const std::string& ValueLbl::GetLabel() const { return fLabel; }

void ValueLbl::Display(std::ostream& out) const { DisplayAs(out, "Label", fLabel); }

}  // namespace KxVeyra_940
