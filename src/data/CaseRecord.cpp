#include "data/CaseRecord.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <typeinfo>

#include "data/DateTimeValue.h"
#include "data/Identity.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"

namespace KxVeyra_940 {

namespace {

// Values of the library's own classes: nobody can tell one that is used again from a new one.
bool IsReusable(const ScoreValue& value) {
  const std::type_info& type = typeid(value);
  return type == typeid(NumericValue) || type == typeid(StringValue) || type == typeid(DateTimeValue);
}

}  // namespace

CaseRecord::CaseRecord(int capacity) { Reserve(static_cast<std::size_t>(std::max(capacity, 0))); }

CaseRecord::CaseRecord(const CaseRecord& other)
    : ScoreCaseRecord(other),
      fIndexes(other.fIndexes),
      fSlots(other.fSlots),
      fParked(other.fParked),
      fLayoutId(other.fLayoutId) {
  HoldAll();
}

CaseRecord& CaseRecord::operator=(const CaseRecord& other) {
  if (this == &other) return *this;
  fIndexes = other.fIndexes;
  fSlots = other.fSlots;
  fParked = other.fParked;
  fLayoutId = other.fLayoutId;
  HoldAll();
  return *this;
}

CaseRecord::~CaseRecord() = default;

void CaseRecord::Add(const std::string& name, ScoreValue* value) {
  const auto [entry, isNew] = fIndexes.try_emplace(name, Size());
  const auto slot = static_cast<std::size_t>(entry->second);
  const bool isElsewhere = fHeld.Contains(value) && (isNew || fSlots.At(slot) != value);
  ScoreValue* const content = isElsewhere ? value->Clone() : value;
  if (isNew) {
    fSlots.Append(content);
    fParked.Append(nullptr);
    fHeld.Insert(content);
    fLayoutId = NextIdentity();
    return;
  }
  Put(fSlots, slot, content);
  if (content != nullptr) Put(fParked, slot, nullptr);
}

// Takes `value`, which is in no slot but this, and deletes what was there.
void CaseRecord::Put(OwnedList<ScoreValue>& values, std::size_t slot, ScoreValue* value) {
  const ScoreValue* const old = values.At(slot);
  if (value == old) return;
  fHeld.Insert(value);
  fHeld.Erase(old);
  values.Replace(slot, value);
}

void CaseRecord::HoldAll() {
  fHeld.Clear();
  for (const ScoreValue* value : fSlots.All()) fHeld.Insert(value);
  for (const ScoreValue* value : fParked.All()) fHeld.Insert(value);
}

// The value of a slot as `Value`, whose kind is `type`; an empty slot is filled.  Null for an index outside
// the slots and for another kind.
template <class Value>
Value* CaseRecord::Slot(int index, ScoreValue::ValueType type) {
  if (!IsSlot(index)) return nullptr;
  const auto slot = static_cast<std::size_t>(index);
  ScoreValue* content = fSlots.At(slot);
  if (content == nullptr) {
    content = Refill<Value>(slot, type);
  } else if (content->GetType() != type) {
    return nullptr;
  }
  return static_cast<Value*>(content);
}

// Fills an empty slot with the value put aside when it is of that kind, else with a new one.
template <class Value>
ScoreValue* CaseRecord::Refill(std::size_t slot, ScoreValue::ValueType type) {
  const ScoreValue* const parked = fParked.At(slot);
  if (parked != nullptr && parked->GetType() == type) {
    fSlots.Replace(slot, fParked.Release(slot));
  } else {
    Put(fParked, slot, nullptr);
    auto made = std::make_unique<Value>();
    fHeld.Insert(made.get());
    fSlots.Replace(slot, made.release());
  }
  return fSlots.At(slot);
}

bool CaseRecord::SetValue(const std::string& name, double value) { return SetValue(GetIndex(name), value); }

bool CaseRecord::SetValue(int index, double value) {
  auto* const slot = Slot<NumericValue>(index, ScoreValue::kNumericValueType);
  if (slot == nullptr) return false;
  slot->SetDoubleValue(value);
  return true;
}

bool CaseRecord::SetValue(const std::string& name, double value, ScoreDictVar::DateTimeType type) {
  return SetValue(GetIndex(name), value, type);
}

bool CaseRecord::SetValue(int index, double value, ScoreDictVar::DateTimeType type) {
  auto* const slot = Slot<DateTimeValue>(index, ScoreValue::kDateTimeValueType);
  if (slot == nullptr) return false;
  slot->SetDateTimeValue(value, type);
  return true;
}

bool CaseRecord::SetValue(const std::string& name, const std::string& text) {
  return SetValue(GetIndex(name), text);
}

bool CaseRecord::SetValue(int index, const std::string& text) {
  const ScoreValue* const held = Get(index);
  if (held == nullptr || held->GetType() != ScoreValue::kStringValueType) return SetText(index, text);
  Slot<StringValue>(index, ScoreValue::kStringValueType)->SetString(text);
  return true;
}

bool CaseRecord::SetText(int index, std::string_view text) {
  auto* const slot = Slot<StringValue>(index, ScoreValue::kStringValueType);
  if (slot == nullptr) return false;
  slot->SetString(text);
  slot->SetLength(static_cast<int>(text.size()));
  return true;
}

bool CaseRecord::SetMissingValue(const std::string& name) { return SetMissingValue(GetIndex(name)); }

bool CaseRecord::SetMissingValue(int index) {
  ScoreValue* const value = Get(index);
  if (value == nullptr) return false;
  if (value->GetType() == ScoreValue::kStringValueType) return SetText(index, std::string_view());
  static_cast<NumericValue*>(value)->SetDoubleValue(NumericValue::gSysmisValue);
  return true;
}

void CaseRecord::Remove(const std::string& name) { Clear(GetIndex(name)); }

void CaseRecord::Clear(int index) {
  if (Get(index) == nullptr) return;
  const auto slot = static_cast<std::size_t>(index);
  ScoreValue* const content = fSlots.Release(slot);
  if (IsReusable(*content)) {
    fParked.Replace(slot, content);
  } else {
    fHeld.Erase(content);
    delete content;
  }
}

ScoreValue* CaseRecord::Get(const std::string& name) const { return Get(GetIndex(name)); }

ScoreValue* CaseRecord::Get(int index) const {
  return IsSlot(index) ? fSlots.At(static_cast<std::size_t>(index)) : nullptr;
}

void CaseRecord::SetUpNameIndexMap(const std::vector<ScoreDictVar*>& vars) { Reserve(vars.size()); }

void CaseRecord::SetUpNameIndexMap(const std::vector<std::string>& names) { Reserve(names.size()); }

void CaseRecord::Reserve(std::size_t size) {
  fSlots.Reserve(size);
  fParked.Reserve(size);
}

bool CaseRecord::HasMap() const { return true; }

int CaseRecord::GetIndex(const std::string& name) const {
  const auto entry = fIndexes.find(name);
  return entry == fIndexes.end() ? -1 : entry->second;
}

int CaseRecord::Size() const { return static_cast<int>(fSlots.Size()); }

std::vector<std::string> CaseRecord::GetVarNames(bool bySlot) const {
  std::vector<std::string> names(fSlots.Size());
  std::size_t sorted = 0;
  for (const auto& [name, slot] : fIndexes) names[bySlot ? static_cast<std::size_t>(slot) : sorted++] = name;
  return names;
}

const std::vector<ScoreValue*>& CaseRecord::GetAllValues() const { return fSlots.All(); }

void CaseRecord::Display(std::ostream& out) const {
  out << "Start ScoreCaseRecord Display:\n";
  for (const auto& [name, slot] : fIndexes) {
    out << "Var Name: " << name;
    if (const ScoreValue* const value = Get(slot)) out << "; Var Value: " << value->GetString();
    out << '\n';
  }
  out << "End of ScoreCaseRecord Display.\n\n";
}

}  // namespace KxVeyra_940
