#include "transform/ValueHistory.h"

#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"

namespace KxVeyra_940 {

ValueHistory::ValueHistory(const ValueHistory& other) : fCapacity(other.fCapacity), fOldest(other.fOldest) {
  fEntries.resize(other.fEntries.size());
  for (std::size_t i = 0; i < fEntries.size(); ++i)
    Fill(fEntries[i], other.fEntries[i].isThere ? other.fEntries[i].value.get() : nullptr);
}

ValueHistory& ValueHistory::operator=(const ValueHistory& other) {
  if (this == &other) return *this;
  ValueHistory copy(other);
  std::swap(fCapacity, copy.fCapacity);
  std::swap(fEntries, copy.fEntries);
  std::swap(fOldest, copy.fOldest);
  return *this;
}

ValueHistory::~ValueHistory() = default;

const ScoreValue* ValueHistory::Oldest() const {
  const Entry& oldest = fEntries[fOldest];
  return oldest.isThere ? oldest.value.get() : nullptr;
}

void ValueHistory::Push(const ScoreValue* value) {
  if (!IsFull()) return Fill(fEntries.emplace_back(), value);
  Fill(fEntries[fOldest], value);
  fOldest = fOldest + 1 == fCapacity ? 0 : fOldest + 1;
}

void ValueHistory::Fill(Entry& entry, const ScoreValue* value) {
  entry.isThere = value != nullptr;
  if (value == nullptr) return;
  if (entry.value == nullptr || entry.value->GetType() != value->GetType()) {
    entry.value.reset(value->Clone());
    return;
  }
  switch (value->GetType()) {
    case ScoreValue::kNumericValueType:
      static_cast<NumericValue&>(*entry.value) = static_cast<const NumericValue&>(*value);
      return;
    case ScoreValue::kStringValueType:
      static_cast<StringValue&>(*entry.value) = static_cast<const StringValue&>(*value);
      return;
    case ScoreValue::kDateTimeValueType:
      static_cast<DateTimeValue&>(*entry.value) = static_cast<const DateTimeValue&>(*value);
      return;
  }
}

}  // namespace KxVeyra_940
