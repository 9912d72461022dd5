#include <algorithm>
#include <utility>

#include "data/DateTimeValue.h"
#include "data/Identity.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "transform/DerivedValuesInternal.h"
#include "transform/ReadsFirst.h"

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
  fIsTextMissing.resize(count);
}

void DerivedValues::Refresh(const TransformationDictionary& dictionary) {
  if (fContentId == dictionary.GetContentId()) return;
  fContentId = dictionary.GetContentId();
  const std::vector<std::string> names = fRecord.GetVarNames(true);
  for (std::size_t slot = 0; slot < fFields.size(); ++slot) {
    const auto* const var = dynamic_cast<const TransformVar*>(dictionary.GetVar(names[slot]));
    fFields[slot].var = var;
    fFields[slot].reads.clear();
    if (var == nullptr) continue;
    for (const std::string& name : var->GetReads())
      if (const int read = fRecord.GetIndex(name); read >= 0)
        fFields[slot].reads.push_back(static_cast<std::size_t>(read));
  }
  OrderFields();
}

void DerivedValues::OrderFields() {
  fOrder.clear();
  std::vector<unsigned char> isEntered(fFields.size());
  const auto enter = [&](std::size_t slot, std::size_t) { return std::exchange(isEntered[slot], 1) == 0; };
  for (std::size_t slot = 0; slot < fFields.size(); ++slot)
    VisitReadsFirst(
        slot, [this](std::size_t read) -> auto& { return fFields[read].reads; }, enter,
        [this](std::size_t done) { fOrder.push_back(done); });
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
  for (const std::size_t slot : fOrder) Compute(slot, context);
}

void DerivedValues::Compute(std::size_t slot, const CaseContext& context) {
  const TransformVar* const var = fFields[slot].var;
  if (var == nullptr) return;
  ScoreValue* const place = fRecord.GetAllValues()[slot];
  const ScoreValue* const value = var->Compute(context, place);
  if (value != place) Store(slot, *var, *value);
  fIsComputed[slot] = 1;
  fIsTextMissing[slot] = var->IsTextMissing() ? 1 : 0;
}

bool DerivedValues::FindStored(const TransformVar& var, const ScoreValue*& value) const {
  const int index = var.GetValueIndex();
  if (!IsComputed(index)) return false;
  const auto slot = static_cast<std::size_t>(index);
  if (fFields[slot].var != &var) return false;
  value = fIsTextMissing[slot] != 0 ? nullptr : fRecord.GetAllValues()[slot];
  return true;
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
