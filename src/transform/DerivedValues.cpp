#include <algorithm>

#include "data/DateTimeValue.h"
#include "data/Identity.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "transform/DerivedValuesInternal.h"

namespace KxVeyra_940 {

namespace {

constexpr int kRoomForValues = 10;

std::unique_ptr<ScoreValue> InitialValue(ScoreDictVar::VariableType type) {
  switch (type) {
    case ScoreDictVar::kNUMERIC_VAR:
      return std::make_unique<NumericValue>();
    case ScoreDictVar::kDATETIME_VAR:
      return std::make_unique<DateTimeValue>();
    case ScoreDictVar::STRING_VAR:
      break;
  }
  return std::make_unique<StringValue>("");
}

}  // namespace

DerivedValues::DerivedValues(TransformationDictionary& dictionary, const std::vector<std::string>& names)
    : fRecord(kRoomForValues), fReference(kRoomForValues) {
  fRecord.SetUpNameIndexMap(dictionary.GetScoreDictVars());
  for (const std::string& name : names) {
    ScoreDictVar* const var = dictionary.GetVar(name);
    if (var == nullptr) continue;
    std::unique_ptr<ScoreValue> value = InitialValue(var->GetVarType());
    fReference.Add(name, value->Clone());
    fRecord.Add(name, value.release());
    var->SetValueIndex(fRecord.GetIndex(name));
  }
  const auto count = static_cast<std::size_t>(fRecord.Size());
  fFields.resize(count);
  fIsComputed.resize(count);
  fIsBeingComputed.resize(count);
  fIsTextMissing.resize(count);
}

void DerivedValues::Refresh(const TransformationDictionary& dictionary) {
  if (fContentId == dictionary.GetContentId()) return;
  fContentId = dictionary.GetContentId();
  const std::vector<std::string> names = fRecord.GetVarNames(true);
  for (std::size_t slot = 0; slot < fFields.size(); ++slot) {
    const auto* const var = dynamic_cast<const TransformVar*>(dictionary.GetVar(names[slot]));
    fFields[slot].var = const_cast<TransformVar*>(var);
    fFields[slot].reads.clear();
    if (var == nullptr) continue;
    for (const std::string& name : var->GetReads())
      if (const int read = fRecord.GetIndex(name); read >= 0)
        fFields[slot].reads.push_back(static_cast<std::size_t>(read));
  }
  OrderFields();
}

// The field, after everything that it reads and that is not done; a stack of our own, for chains are long.
template <class IsDone>
void DerivedValues::ReadsFirst(std::size_t slot, IsDone isDone, std::vector<std::size_t>& order) const {
  struct Visit {
    std::size_t slot;
    std::size_t next;
  };
  std::vector<Visit> open;
  std::vector<unsigned char> isSeen(fFields.size());
  const auto enter = [&](std::size_t entered) {
    if (isSeen[entered] != 0 || isDone(entered)) return;
    isSeen[entered] = 1;
    open.push_back({entered, 0});
  };
  enter(slot);
  while (!open.empty()) {
    Visit& visit = open.back();
    const std::vector<std::size_t>& reads = fFields[visit.slot].reads;
    if (visit.next < reads.size()) {
      enter(reads[visit.next++]);
      continue;
    }
    order.push_back(visit.slot);
    open.pop_back();
  }
}

void DerivedValues::OrderFields() {
  fOrder.clear();
  std::vector<unsigned char> isOrdered(fFields.size());
  const auto isDone = [&](std::size_t slot) { return isOrdered[slot] != 0; };
  for (std::size_t slot = 0; slot < fFields.size(); ++slot) {
    const std::size_t from = fOrder.size();
    // In most documents a field reads only earlier ones.
    if (std::ranges::all_of(fFields[slot].reads, isDone)) {
      if (!isDone(slot)) fOrder.push_back(slot);
    } else if (!isDone(slot)) {
      ReadsFirst(slot, isDone, fOrder);
    }
    for (std::size_t i = from; i < fOrder.size(); ++i) isOrdered[fOrder[i]] = 1;
  }
}

void DerivedValues::ForgetAll() { std::ranges::fill(fIsComputed, static_cast<unsigned char>(0)); }

void DerivedValues::SetComputed(int slot) {
  if (!IsSlot(slot)) return;
  fIsComputed[static_cast<std::size_t>(slot)] = 1;
  fIsTextMissing[static_cast<std::size_t>(slot)] = 0;
}

void DerivedValues::ComputeAll(CaseContext& context) {
  if (fBindingId == 0 || fBinding != context.GetBinding()) {
    fBinding = context.GetBinding();
    fBindingId = NextIdentity();
  }
  context.SetBindingId(fBindingId);
  for (const std::size_t slot : fOrder)
    if (fIsComputed[slot] == 0) Compute(slot, context);
}

void DerivedValues::ComputeReads(std::size_t slot, const CaseContext& context) {
  const std::vector<std::size_t>& reads = fFields[slot].reads;
  const auto isDone = [this](std::size_t read) {
    return fIsComputed[read] != 0 || fIsBeingComputed[read] != 0;
  };
  if (std::ranges::all_of(reads, isDone)) return;
  std::vector<std::size_t> order;
  fIsBeingComputed[slot] = 1;
  for (const std::size_t read : reads) {
    order.clear();
    ReadsFirst(read, isDone, order);
    for (const std::size_t needed : order) Compute(needed, context);
  }
  fIsBeingComputed[slot] = 0;
}

const ScoreValue* DerivedValues::ValueAt(std::size_t slot, const CaseContext& context) {
  if (fIsComputed[slot] == 0) {
    if (fIsBeingComputed[slot] != 0) return nullptr;
    ComputeReads(slot, context);
    Compute(slot, context);
  }
  return fIsTextMissing[slot] != 0 ? nullptr : fRecord.GetAllValues()[slot];
}

void DerivedValues::Compute(std::size_t slot, const CaseContext& context) {
  const TransformVar* const var = fFields[slot].var;
  if (var == nullptr || fIsBeingComputed[slot] != 0) return;
  ScoreValue* const place = fRecord.GetAllValues()[slot];
  fIsBeingComputed[slot] = 1;
  const ScoreValue* const value = var->Evaluate(context, place);
  fIsBeingComputed[slot] = 0;
  if (value != place) Store(slot, *var, *value);
  fIsComputed[slot] = 1;
  fIsTextMissing[slot] = var->IsTextMissing() ? 1 : 0;
}

void DerivedValues::Store(std::size_t slot, const TransformVar& var, const ScoreValue& value) {
  ScoreValue* const place = fRecord.GetAllValues()[slot];
  if (place == nullptr || place->GetType() != value.GetType()) {
    fRecord.Add(var.GetName(), value.Clone());
  } else if (value.GetType() == ScoreValue::kStringValueType) {
    static_cast<StringValue&>(*place) = static_cast<const StringValue&>(value);
  } else if (value.GetType() == ScoreValue::kNumericValueType) {
    static_cast<NumericValue&>(*place) = static_cast<const NumericValue&>(value);
  } else {
    static_cast<DateTimeValue&>(*place) = static_cast<const DateTimeValue&>(value);
  }
}

}  // namespace KxVeyra_940
