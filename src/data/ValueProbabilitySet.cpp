#include "data/ValueProbabilitySet.h"

#include <ostream>

namespace KxVeyra_940 {

ValueProbabilitySet::~ValueProbabilitySet() = default;

ScoreValueProbabilitySet* ValueProbabilitySet::Clone() const { return new ValueProbabilitySet(*this); }

bool ValueProbabilitySet::Add(ScoreValueProbability* probability) { return fEntries.Add(probability); }

bool ValueProbabilitySet::Remove(const ScoreValueProbability* probability) {
  return probability != nullptr && fEntries.Remove(probability->GetValue());
}

int ValueProbabilitySet::Size() const { return fEntries.Size(); }

const std::vector<ScoreValueProbability*>& ValueProbabilitySet::GetAllValueProbabilities() const {
  return fEntries.All();
}

double ValueProbabilitySet::GetProbabilityOfValue(const ScoreValue* value) const {
  const int position = Find(value);
  return position < 0 ? 0 : fEntries.At(position).GetProbability();
}

bool ValueProbabilitySet::Contains(const ScoreValue* value) const { return Find(value) >= 0; }

void ValueProbabilitySet::Display(std::ostream& out) const {
  out << "Start ScoreValueProbabilitySet Display:\n";
  for (const ScoreValueProbability* entry : fEntries.All()) entry->Display(out);
  out << "End of ScoreValueProbabilitySet Display.\n\n";
}

int ValueProbabilitySet::Find(const ScoreValue* value) const { return fEntries.Find(value); }

}  // namespace KxVeyra_940
