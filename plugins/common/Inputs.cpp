#include "common/Inputs.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "common/FieldNumber.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "transform/TransformVar.h"

namespace KxVeyra_940::Plugin {

namespace {

ScoreValue::ValueType KindOf(const ScoreDictVar& var) {
  switch (var.GetVarType()) {
    case ScoreDictVar::STRING_VAR:
      return ScoreValue::kStringValueType;
    case ScoreDictVar::kDATETIME_VAR:
      return ScoreValue::kDateTimeValueType;
    default:
      return ScoreValue::kNumericValueType;
  }
}

// The lowest finite number stands for a missing one.
double WithoutInfinity(double number) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  if (!std::isinf(number)) return number;
  return number > 0 ? kLargest : std::nextafter(-kLargest, 0.0);
}

bool HasListedValues(const ScoreDictVar& var) {
  return var.GetMLevel() != ScoreDictVar::kContinuous && var.GetValueLabels() != nullptr;
}

}  // namespace

int Inputs::Add(MiningField field, std::shared_ptr<const InvalidValues> invalidValues) {
  const ScoreDictVar& var = *field.var;
  Input input;
  input.invalidValues = std::move(invalidValues);
  input.hasMissingValues = var.GetMissingValues() != nullptr;
  input.hasListedValues = HasListedValues(var);
  input.kind = KindOf(var);
  input.field = std::move(field);
  input.field.var->SetEncodedValueIndex(Size());
  fInputs.push_back(std::move(input));
  return Size() - 1;
}

int Inputs::AddDerived(ScoreDictVar& variable) {
  MiningField field;
  field.var = &variable;
  field.invalidTreatment = InvalidTreatment::kAsIs;
  const int index = Add(std::move(field), nullptr);
  fInputs.back().isDerived = true;
  fHasDerived = true;
  return index;
}

std::vector<std::string> Inputs::GetFieldNames() const {
  std::set<std::size_t> read(fReadForDerived.begin(), fReadForDerived.end());
  for (const std::size_t i : fRead)
    if (!fInputs[i].isDerived) read.insert(i);
  std::vector<std::string> names;
  for (const std::size_t i : read) names.push_back(fInputs[i].Var().GetName());
  return names;
}

std::string Inputs::FindInvalid(const ScoreCaseRecord& record) const {
  for (const std::string& name : GetFieldNames()) {
    const auto isOfName = [&](const Input& input) {
      return !input.isDerived && input.Var().GetName() == name;
    };
    const Treated treated = Treat(*std::ranges::find_if(fInputs, isOfName), record.Get(name));
    if (treated.outcome == Outcome::kInvalid) return name;
  }
  return {};
}

void Inputs::UseInDerived(int index) {
  const auto i = static_cast<std::size_t>(index);
  if (std::ranges::find(fReadForDerived, i) == fReadForDerived.end()) fReadForDerived.push_back(i);
}

void Inputs::UseAsNumber(int index) {
  const auto i = static_cast<std::size_t>(index);
  if (!fInputs[i].isNumber && fInputs[i].categories == nullptr) fRead.push_back(i);
  fInputs[i].isNumber = true;
}

CategoryTable& Inputs::UseAsCategory(int index) {
  const auto i = static_cast<std::size_t>(index);
  Input& input = fInputs[i];
  if (!input.isNumber && input.categories == nullptr) fRead.push_back(i);
  if (input.categories == nullptr) input.categories = std::make_shared<CategoryTable>(input.Var());
  return *input.categories;
}

void Inputs::AcceptMissing() {
  for (Input& input : fInputs) input.acceptsMissing = true;
}

void Inputs::Resolve(ScoreDictionary& dictionary, ScoreDictionary* transformations) {
  for (Input& input : fInputs)
    input.field.var = (input.isDerived ? *transformations : dictionary).GetVar(input.Var().GetName());
}

bool Inputs::Prepare(const ScoreCaseRecord& layout) {
  bool complete = true;
  for (const std::size_t i : fReadForDerived) {
    fInputs[i].slot = layout.GetIndex(fInputs[i].Var().GetName());
    complete = complete && fInputs[i].slot >= 0;
  }
  for (const std::size_t i : fRead) {
    Input& input = fInputs[i];
    input.slot = input.isDerived ? input.Var().GetValueIndex() : layout.GetIndex(input.Var().GetName());
    complete = complete && input.slot >= 0;
    const bool isJustANumber =
        input.kind == ScoreValue::kNumericValueType && !input.hasListedValues && input.categories == nullptr;
    input.plain = isJustANumber ? FindPlainNumbers(input.field) : PlainNumbers();
  }
  return complete;
}

CaseRecord Inputs::MakeRecordForDerived() const {
  CaseRecord record(static_cast<int>(fReadForDerived.size()));
  for (const std::size_t i : fReadForDerived) record.Add(fInputs[i].Var().GetName(), nullptr);
  return record;
}

void Inputs::Size(CaseValues& values) const {
  values.numbers.assign(fInputs.size(), NumericValue::gSysmisValue);
  values.codes.assign(fInputs.size(), kNoCategory);
}

// A text without value stands in the record as an empty one.
const ScoreValue* Inputs::DerivedValueOf(const Input& input, const ScoreCaseRecord& derived) {
  const bool isMissing = input.kind == ScoreValue::kStringValueType &&
                         static_cast<const TransformVar&>(input.Var()).IsTextMissing();
  return isMissing ? nullptr : derived.Get(input.slot);
}

bool Inputs::ReadForDerived(const ScoreCaseRecord& record, CaseRecord& treated) const {
  const std::vector<ScoreValue*>& slots = record.GetAllValues();
  int slot = 0;
  for (const std::size_t i : fReadForDerived) {
    const Input& input = fInputs[i];
    const auto place = static_cast<std::size_t>(input.slot);
    const auto [outcome, value] = Treat(input, place < slots.size() ? slots[place] : nullptr);
    if (outcome == Outcome::kInvalid) return false;
    value == nullptr ? treated.Clear(slot) : StoreForDerived(input, *value, slot, treated);
    ++slot;
  }
  return true;
}

Inputs::Treated Inputs::Treat(const Input& input, const ScoreValue* given) {
  const MiningField& field = input.field;
  const Standing standing = given == nullptr ? Standing::kMissing : Judge(input, *given);
  const ScoreValue* value = standing == Standing::kMissing ? nullptr : given;
  if (standing == Standing::kInvalid) {
    if (field.invalidTreatment == InvalidTreatment::kReturnInvalid) return {Outcome::kInvalid, nullptr};
    value = TakeInvalid(input, *given);
  }
  if (value != nullptr) value = Bound(input, *value);
  if (value != nullptr) return {Outcome::kComplete, value};
  if (field.missingIsInvalid) return {Outcome::kInvalid, nullptr};
  if (field.missingReplacement != nullptr) return {Outcome::kComplete, field.missingReplacement.get()};
  // A value that became missing is gone; one that the dictionary calls so stays what it is.
  const bool stays = standing == Standing::kMissing && given != nullptr && given->GetType() == input.kind;
  return {Outcome::kMissing, stays ? given : nullptr};
}

// Null for one that becomes missing.  A value of another kind cannot be taken as it is: it is no value of the
// field.
const ScoreValue* Inputs::TakeInvalid(const Input& input, const ScoreValue& value) {
  switch (input.field.invalidTreatment) {
    case InvalidTreatment::kAsValue:
      return input.field.invalidReplacement.get();
    case InvalidTreatment::kAsIs:
      return value.GetType() == input.kind ? &value : nullptr;
    default:
      return nullptr;
  }
}

// Null for one that becomes missing.
const ScoreValue* Inputs::Bound(const Input& input, const ScoreValue& value) {
  const MiningField& field = input.field;
  if (field.outliers == OutlierTreatment::kAsIs || input.kind == ScoreValue::kStringValueType) return &value;
  const double number = RangeNumberOf(input.Var(), value);
  const bool isLow = number < field.lowValue;
  if (!isLow && !(number > field.highValue)) return &value;
  if (field.outliers == OutlierTreatment::kAsMissing) return nullptr;
  return isLow ? field.lowBound.get() : field.highBound.get();
}

void Inputs::StoreForDerived(const Input& input, const ScoreValue& value, int slot, CaseRecord& record) {
  if (const StringValue* const text = AsString(&value)) {
    record.SetText(slot, text->GetText());
    static_cast<StringValue*>(record.Get(slot))->SetLength(text->GetLength());
  } else if (input.kind == ScoreValue::kDateTimeValueType) {
    record.SetValue(slot, NumberOf(input.Var(), value), input.Var().GetDateTimeType());
  } else {
    record.SetValue(slot, NumberOf(input.Var(), value));
  }
}

const ScoreValue* Inputs::ValueOf(const Input& input, const std::vector<ScoreValue*>& slots,
                                  const ScoreCaseRecord* derived) {
  if (input.isDerived) return DerivedValueOf(input, *derived);
  const auto slot = static_cast<std::size_t>(input.slot);
  return slot < slots.size() ? slots[slot] : nullptr;
}

void Inputs::LearnCategories(const ScoreCaseRecord& record, const ScoreCaseRecord* derived) const {
  const std::vector<ScoreValue*>& slots = record.GetAllValues();
  for (const std::size_t i : fRead) {
    const Input& input = fInputs[i];
    if (input.categories == nullptr) continue;
    const auto [outcome, value] = Treat(input, ValueOf(input, slots, derived));
    if (outcome == Outcome::kComplete && value != nullptr) input.categories->Add(*value);
  }
}

Inputs::Outcome Inputs::Read(const ScoreCaseRecord& record, const ScoreCaseRecord* derived,
                             CaseValues& values) const {
  const std::vector<ScoreValue*>& slots = record.GetAllValues();
  Outcome outcome = Outcome::kComplete;
  for (const std::size_t i : fRead) {
    const Input& input = fInputs[i];
    const ScoreValue* const value = ValueOf(input, slots, derived);
    if (value != nullptr && ReadPlain(input, i, *value, values)) continue;
    const Outcome ofInput = ReadByRules(input, i, value, values);
    if (ofInput == Outcome::kInvalid) return ofInput;
    if (ofInput == Outcome::kMissing) outcome = ofInput;
  }
  return outcome;
}

// The usual case: a number that no rule touches, or a category that the table has.
bool Inputs::ReadPlain(const Input& input, std::size_t index, const ScoreValue& value, CaseValues& values) {
  if (value.GetType() != input.kind) return false;
  if (input.kind == ScoreValue::kStringValueType) {
    if (input.hasMissingValues) return false;
    const int code = input.categories->FindText(static_cast<const StringValue&>(value).GetText());
    values.codes[index] = code;
    return code != kNoCategory && (!input.hasListedValues || code < input.categories->GetListedCount());
  }
  const double number = static_cast<const NumericValue&>(value).GetNumber();
  values.numbers[index] = number;
  return input.plain.Contains(number);
}

Inputs::Standing Inputs::Judge(const Input& input, const ScoreValue& value) {
  if (value.IsSystemMissingValue()) return Standing::kMissing;
  if (value.GetType() != input.kind) return Standing::kInvalid;
  if (input.kind != ScoreValue::kStringValueType && std::isnan(value.GetDouble())) return Standing::kMissing;
  if (input.hasMissingValues && input.Var().IsMissingValue(&value)) {
    const bool isInvalid = input.invalidValues != nullptr && input.invalidValues->Contains(value);
    return isInvalid ? Standing::kInvalid : Standing::kMissing;
  }
  if (!input.hasListedValues) return Standing::kValid;
  if (input.categories != nullptr) {
    const int code = input.categories->Find(value);
    const bool isListed = code != kNoCategory && code < input.categories->GetListedCount();
    return isListed ? Standing::kValid : Standing::kInvalid;
  }
  return input.Var().IsValidValue(&value) ? Standing::kValid : Standing::kInvalid;
}

Inputs::Outcome Inputs::ReadByRules(const Input& input, std::size_t index, const ScoreValue* value,
                                    CaseValues& values) {
  const Treated treated = Treat(input, value);
  if (treated.outcome == Outcome::kInvalid) return treated.outcome;
  if (treated.outcome == Outcome::kComplete && treated.value != nullptr) {
    Store(input, index, *treated.value, values);
    return Outcome::kComplete;
  }
  values.numbers[index] = NumericValue::gSysmisValue;
  values.codes[index] = kMissingCategory;
  return input.TakesMissing() ? Outcome::kComplete : Outcome::kMissing;
}

void Inputs::Store(const Input& input, std::size_t index, const ScoreValue& value, CaseValues& values) {
  if (input.categories != nullptr) values.codes[index] = input.categories->Find(value);
  if (!input.isNumber) return;
  const double number = input.isForRanges ? RangeNumberOf(input.Var(), value) : NumberOf(input.Var(), value);
  values.numbers[index] = input.acceptsMissing ? WithoutInfinity(number) : number;
}

}  // namespace KxVeyra_940::Plugin
