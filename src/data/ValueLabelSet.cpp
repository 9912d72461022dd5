#include "data/ValueLabelSet.h"

#include <typeinfo>

namespace KxVeyra_940 {

namespace {

const ValueLabelSet* AsOwn(const ScoreValueLabelSet& set) {
  return typeid(set) == typeid(ValueLabelSet) ? static_cast<const ValueLabelSet*>(&set) : nullptr;
}

template <class Matches>
int Scan(const ScoreValueLabelSet& set, const ScoreValue* value, Matches matches) {
  if (value == nullptr) return -1;
  const std::vector<ScoreValueLabel*>& labels = set.GetAllValueLabels();
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (labels[i]->GetValue() != nullptr && matches(*labels[i]->GetValue())) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace

ValueLabelSet::~ValueLabelSet() = default;

ScoreValueLabelSet* ValueLabelSet::Clone() const { return new ValueLabelSet(*this); }

const std::vector<ScoreValueLabel*>& ValueLabelSet::GetAllValueLabels() const { return Parts().All(); }

std::string ValueLabelSet::GetLabelOfValue(const ScoreValue* value) const {
  const int position = Find(value);
  return position < 0 ? std::string() : Parts().At(position).GetLabel();
}

void ValueLabelSet::Display(std::ostream& out) const { DisplayAs(out, "ScoreValueLabelSet"); }

int ValueLabelSet::FindEqual(const ScoreValue* value, bool noSpaceTrim, bool emptyStringOK) const {
  return Parts().FindFirst(
      value, [=](const ScoreValue& held) { return held.Equal(value, noSpaceTrim, emptyStringOK); });
}

int ValueLabelSet::Find(const ScoreValueLabelSet& set, const ScoreValue* value) {
  if (const ValueLabelSet* own = AsOwn(set)) return own->Find(value);
  return Scan(set, value, [value](const ScoreValue& held) { return held == *value; });
}

int ValueLabelSet::FindEqual(const ScoreValueLabelSet& set, const ScoreValue* value, bool noSpaceTrim,
                             bool emptyStringOK) {
  if (const ValueLabelSet* own = AsOwn(set)) return own->FindEqual(value, noSpaceTrim, emptyStringOK);
  return Scan(set, value,
              [=](const ScoreValue& held) { return held.Equal(value, noSpaceTrim, emptyStringOK); });
}

bool ValueLabelSet::HoldsObject(const ScoreValue* value) const {
  return Parts().FindFirst(value, [value](const ScoreValue& held) { return &held == value; }) >= 0;
}

}  // namespace KxVeyra_940
