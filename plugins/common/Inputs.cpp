#include "common/Inputs.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "data/DateTimeValue.h"
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
    const ScoreValue* treated = nullptr;
    if (!Treat(*std::ranges::find_if(fInputs, isOfName), record.Get(name), treated)) return name;
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
    const ScoreValue* value = nullptr;
    if (!Treat(input, place < slots.size() ? slots[place] : nullptr, value)) return false;
    value == nullptr ? treated.Clear(slot) : StoreForDerived(input, *value, slot, treated);
    ++slot;
  }
  return true;
}

bool Inputs::Treat(const Input& input, const ScoreValue* given, const ScoreValue*& treated) {
  const MiningField& field = input.field;
  Standing standing = given == nullptr ? Standing::kMissing : Judge(input, *given);
  treated = given;
  if (standing == Standing::kInvalid) {
    if (field.invalidTreatment == InvalidTreatment::kReturnInvalid) return false;
    if (field.invalidTreatment == InvalidTreatment::kAsValue) treated = field.invalidReplacement.get();
    // A value of another kind is no value of the field.
    const bool isTaken = field.invalidTreatment == InvalidTreatment::kAsIs && given->GetType() == input.kind;
    if (field.invalidTreatment == InvalidTreatment::kAsValue || isTaken) return true;
    standing = Standing::kMissing;
  } else if (standing == Standing::kMissing && field.missingIsInvalid) {
    return false;
  }
  const bool isBeyond =
      standing == Standing::kValid && field.outliers == OutlierTreatment::kAsMissing &&
      input.kind != ScoreValue::kStringValueType &&
      std::clamp(NumberOf(input, *given), field.lowValue, field.highValue) != NumberOf(input, *given);
  // What the dictionary counts as missing stays what it is: derived fields ask about it themselves.
  if (standing == Standing::kMissing || isBeyond) {
    treated = field.missingReplacement.get();
    if (treated == nullptr && !isBeyond && given != nullptr && given->GetType() == input.kind)
      treated = given;
  }
  return true;
}

void Inputs::StoreForDerived(const Input& input, const ScoreValue& value, int slot, CaseRecord& record) {
  const MiningField& field = input.field;
  if (const StringValue* const text = AsString(&value)) {
    record.SetText(slot, text->GetText());
    static_cast<StringValue*>(record.Get(slot))->SetLength(text->GetLength());
    return;
  }
  double number = NumberOf(input, value);
  if (field.outliers == OutlierTreatment::kAsExtreme && !value.IsSystemMissingValue())
    number = std::clamp(number, field.lowValue, field.highValue);
  if (input.kind == ScoreValue::kDateTimeValueType) {
    record.SetValue(slot, number, input.Var().GetDateTimeType());
  } else {
    record.SetValue(slot, number);
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
    if (input.categories == nullptr || input.hasListedValues) continue;
    const ScoreValue* const value = ValueOf(input, slots, derived);
    if (value != nullptr && Judge(input, *value) == Standing::kValid) input.categories->Add(*value);
  }
}

Inputs::Outcome Inputs::Read(const ScoreCaseRecord& record, const ScoreCaseRecord* derived,
                             CaseValues& values) const {
  const std::vector<ScoreValue*>& slots = record.GetAllValues();
  for (const std::size_t i : fRead) {
    const Input& input = fInputs[i];
    const ScoreValue* const value = ValueOf(input, slots, derived);
    if (value != nullptr && ReadPlain(input, i, *value, values)) continue;
    const Outcome outcome =
        value == nullptr ? ReadMissing(input, i, values) : ReadByRules(input, i, *value, values);
    if (outcome != Outcome::kComplete) return outcome;
  }
  return Outcome::kComplete;
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

double Inputs::NumberOf(const Input& input, const ScoreValue& value) {
  if (input.kind == ScoreValue::kDateTimeValueType) {
    return static_cast<const DateTimeValue&>(value).GetDoubleValue(input.Var().GetDateTimeType());
  }
  return static_cast<const NumericValue&>(value).GetNumber();
}

// False for a number beyond the bounds that counts as missing.
bool Inputs::Store(const Input& input, std::size_t index, const ScoreValue& value, CaseValues& values) {
  if (input.categories != nullptr) values.codes[index] = input.categories->Find(value);
  if (!input.isNumber) return true;
  const double number = NumberOf(input, value);
  const double bounded = std::clamp(number, input.field.lowValue, input.field.highValue);
  if (input.field.outliers == OutlierTreatment::kAsMissing && bounded != number) return false;
  const double taken = input.field.outliers == OutlierTreatment::kAsExtreme ? bounded : number;
  values.numbers[index] = input.acceptsMissing ? WithoutInfinity(taken) : taken;
  return true;
}

Inputs::Outcome Inputs::ReadMissing(const Input& input, std::size_t index, CaseValues& values) {
  return input.field.missingIsInvalid ? Outcome::kInvalid : ReplaceMissing(input, index, values);
}

// The replacement stands as it is, whatever the bounds.
Inputs::Outcome Inputs::ReplaceMissing(const Input& input, std::size_t index, CaseValues& values) {
  const ScoreValue* replacement = input.field.missingReplacement.get();
  if (replacement == nullptr) {
    values.numbers[index] = NumericValue::gSysmisValue;
    values.codes[index] = kMissingCategory;
    return input.acceptsMissing ? Outcome::kComplete : Outcome::kMissing;
  }
  if (input.categories != nullptr) values.codes[index] = input.categories->Find(*replacement);
  if (input.isNumber) values.numbers[index] = NumberOf(input, *replacement);
  return Outcome::kComplete;
}

Inputs::Outcome Inputs::ReadInvalid(const Input& input, std::size_t index, const ScoreValue& value,
                                    CaseValues& values) {
  switch (input.field.invalidTreatment) {
    case InvalidTreatment::kReturnInvalid:
      return Outcome::kInvalid;
    case InvalidTreatment::kAsIs:
      // A value of another kind cannot be taken as it is: it is no value of the field.
      if (value.GetType() == input.kind && Store(input, index, value, values)) return Outcome::kComplete;
      break;
    case InvalidTreatment::kAsValue:
      Store(input, index, *input.field.invalidReplacement, values);
      return Outcome::kComplete;
    case InvalidTreatment::kAsMissing:
      break;
  }
  return ReplaceMissing(input, index, values);
}

Inputs::Outcome Inputs::ReadByRules(const Input& input, std::size_t index, const ScoreValue& value,
                                    CaseValues& values) {
  switch (Judge(input, value)) {
    case Standing::kInvalid:
      return ReadInvalid(input, index, value, values);
    case Standing::kMissing:
      return ReadMissing(input, index, values);
    case Standing::kValid:
      break;
  }
  return Store(input, index, value, values) ? Outcome::kComplete : ReplaceMissing(input, index, values);
}

}  // namespace KxVeyra_940::Plugin
