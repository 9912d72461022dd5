// Derived fields: their value for a case.

#include <algorithm>
#include <cmath>

#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "transform/ReadsFirst.h"
#include "transform/SortedSearch.h"
#include "transform/TransformVarInternal.h"

namespace KxVeyra_940 {

namespace {

constexpr double kMissing = NumericValue::gSysmisValue;

ScoreValue::ValueType TypeOf(ScoreDictVar::VariableType type) {
  if (type == ScoreDictVar::kNUMERIC_VAR) return ScoreValue::kNumericValueType;
  return type == ScoreDictVar::STRING_VAR ? ScoreValue::kStringValueType : ScoreValue::kDateTimeValueType;
}

// What an operand is in the place of a number.
double NumberOf(const Operand& value) {
  if (value.isMissing) return kMissing;
  if (value.kind == Operand::kText) return NumberOfText(value.text);
  return value.kind == Operand::kDateTime && !std::isfinite(value.number) ? kMissing : value.number;
}

bool HasNumber(const ScoreValue& value) { return value.GetType() != ScoreValue::kStringValueType; }

}  // namespace

const ScoreValue* TransformVar::GetTransformedValue(const ScoreCaseRecord* input,
                                                    const ScoreDictionary* dataDictionary,
                                                    const ScoreDictionary* transformations) const {
  return Evaluate(CaseContext(input, dataDictionary, transformations));
}

const ScoreValue* TransformVar::ValueIn(const CaseContext& context) const {
  const State& state = *fState;
  if (state.computedIn != context.GetAsk()) {
    // Who is entered and not computed waits for the one that asks.
    if (state.enteredIn == context.GetAsk()) return nullptr;
    Evaluate(context);
  }
  return state.isTextMissing ? nullptr : state.result;
}

bool TransformVar::IsTextMissing() const { return fState->isTextMissing; }

const ScoreValue* TransformVar::Evaluate(const CaseContext& context) const {
  BindTo(context);
  if (!fState->reads.empty()) {
    const auto readsOf = [](const TransformVar* var) -> auto& { return var->fState->reads; };
    const auto enter = [&context](const TransformVar* var, const TransformVar* reader) {
      const ScoreValue* stored = nullptr;
      const bool isExpression = reader->fExpression == TransformationDictionary::TE_APPLY;
      if (var->fState->enteredIn == context.GetAsk()) return false;
      if (var != reader && isExpression && context.FindStored(*var, stored)) return false;
      var->BindTo(context);
      var->fState->enteredIn = context.GetAsk();
      return true;
    };
    VisitReadsFirst(this, readsOf, enter, [&context](const TransformVar* var) { var->Compute(context); });
  }
  return Compute(context);
}

const ScoreValue* TransformVar::Compute(const CaseContext& context, ScoreValue* place) const {
  State& state = *fState;
  if (state.computedIn == context.GetAsk()) return state.result;
  state.enteredIn = context.GetAsk();
  if (fExpression == TransformationDictionary::TE_CONSTANT) {
    if (!state.isConstantSet) SetConstant();
  } else {
    BindTo(context);
    if (fExpression == TransformationDictionary::TE_LAG) {
      ComputeLag(context);
    } else {
      const bool isOfType = place != nullptr && place->GetType() == TypeOf(DictVar::GetVarType());
      state.result = isOfType ? place : nullptr;
      ComputeInto(state.work, context);
    }
  }
  state.computedIn = context.GetAsk();
  return state.result;
}

void TransformVar::BindTo(const CaseContext& context) const {
  State& state = *fState;
  const std::uint64_t id = context.GetBindingId();
  const bool isSame = state.isBound && id != 0 && id == state.bindingId;
  if (!isSame && (!state.isBound || state.binding != context.GetBinding())) Bind(context);
  state.bindingId = id;
}

void TransformVar::Bind(const CaseContext& context) const {
  State& state = *fState;
  if (!state.isBound) {
    const auto preference = FieldSource::kInputFirst;
    state.source = FieldSource(fExpression == TransformationDictionary::TE_APPLY ? std::string() : fFieldName,
                               preference);
    state.blockSources.clear();
    for (const std::string& name : fBlockNames) state.blockSources.emplace_back(name, FieldSource::kComputed);
    if (fRoot && state.program == nullptr) state.program = std::make_unique<Program>(*fRoot);
    std::vector<const ScoreValueRange*> ranges;
    for (const Bin& bin : fBins) ranges.push_back(bin.range.Get());
    state.bins.Build(std::move(ranges));
  }
  state.source.Bind(context);
  for (std::size_t i = 0; i < state.blockSources.size(); ++i)
    state.blockSources[i].Bind(context, fBlockVariables[i]);
  if (state.program != nullptr) state.program->Bind(context);
  state.reads.clear();
  for (const std::string& name : GetReads())
    if (const auto* const read = dynamic_cast<const TransformVar*>(context.FindVariable(name)))
      state.reads.push_back(read);
  state.binding = context.GetBinding();
  state.isBound = true;
}

void TransformVar::ComputeInto(Operand& out, const CaseContext& context) const {
  State& state = *fState;
  if (fExpression == TransformationDictionary::TE_APPLY)
    return state.program == nullptr ? StoreResult(Operand()) : StoreResult(state.program->Run(context));
  out.SetMissingNumber();
  const ScoreDictVar* const source = state.source.GetVariable();
  const ScoreValue* const value = state.source.ValueIn(context);
  switch (fExpression) {
    case TransformationDictionary::TE_FIELDREF:
      ReferTo(source, value, out);
      break;
    case TransformationDictionary::TE_NORMCONTINUOUS:
      NormContinuous(source, value, out);
      break;
    case TransformationDictionary::TE_NORMDISCRETE:
      GetEncodedValue(source, value, out);
      break;
    case TransformationDictionary::TE_DISCRETIZE:
      GetBinningValue(source, value, out);
      break;
    case TransformationDictionary::TE_MAPVALUES:
      GetMappedValue(context, value, out);
      break;
    default:
      break;
  }
  StoreResult(out);
}

// --- The result in the variable's type

void TransformVar::SetConstant() const {
  fState->result = nullptr;
  Operand constant;
  if (GetVarType() == kNUMERIC_VAR) {
    constant.SetNumber(NumericValue(fConstString).GetNumber());
  } else {
    constant.LendText(fConstString, static_cast<std::int64_t>(fConstString.size()));
  }
  StoreResult(constant);
  fState->isConstantSet = true;
}

// What holds the result of this evaluation.
template <class Value>
Value& TransformVar::Result() const {
  State& state = *fState;
  if (state.result == nullptr) {
    if (state.own == nullptr || state.own->GetType() != TypeOf(DictVar::GetVarType()))
      state.own = std::make_unique<Value>();
    state.result = state.own.get();
  }
  return static_cast<Value&>(*state.result);
}

// Numbers become texts as they are shown, texts numbers when they are one as a whole; date-times count in
// their stored seconds, of which those beyond the doubles are none.
void TransformVar::StoreResult(const Operand& value) const {
  switch (DictVar::GetVarType()) {
    case kNUMERIC_VAR: {
      return Result<NumericValue>().SetDoubleValue(NumberOf(value));
    }
    case kDATETIME_VAR: {
      const DateTimeType type = DictVar::GetDateTimeType();
      auto& result = Result<DateTimeValue>();
      if (value.kind != Operand::kText) {
        const auto ownKind =
            value.kind == Operand::kDateTime ? value.dateTimeKind : DateTimeValue::kDateTimeVal;
        return result.SetDateTimeValue(value.number,
                                       type == kNoDateTime ? ownKind : DateTimeValue::GetValType(type));
      }
      const double seconds = value.isMissing ? kMissing : NumberOfText(value.text);
      result.SetDateTimeValue(seconds, DateTimeValue::GetValType(type));
      if (seconds == kMissing && !value.isMissing) result.FromString(std::string(value.text), type);
      return;
    }
    case STRING_VAR:
      break;
  }
  fState->isTextMissing = value.isMissing;
  if (value.isMissing) return StoreText({});
  if (value.kind == Operand::kText) return StoreText(value.text);
  StoreText(value.kind == Operand::kNumber ? NumericValue(value.number).GetString()
                                           : DateTimeValue(value.number, value.dateTimeKind).GetString());
}

// The declared length is the width, where there is one.
void TransformVar::StoreText(std::string_view text) const {
  auto& result = Result<StringValue>();
  const int width = DictVar::GetWidth();
  if (width >= 0) text = text.substr(0, static_cast<std::size_t>(width));
  result.SetString(text);
  result.SetLength(width >= 0 ? width : static_cast<int>(text.size()));
}

// --- Expressions of one field

void TransformVar::ReferTo(const ScoreDictVar* source, const ScoreValue* value, Operand& out) const {
  const ScoreValue* const replacement = fRecodeMissValueTo.Get();
  const bool isReplaced = replacement != nullptr && source != nullptr && source->IsMissingValue(value);
  out.Lend(isReplaced ? replacement : value);
}

void TransformVar::NormContinuous(const ScoreDictVar* source, const ScoreValue* value, Operand& out) const {
  if (DictVar::GetVarType() != kNUMERIC_VAR) return;
  const bool isMissing = value == nullptr || (source != nullptr && source->IsMissingValue(value));
  if (isMissing) return LendRecoded(fRecodeMissValueTo.Get(), out);
  const double number = GetNormValue(value->GetDouble());
  if (std::isfinite(number)) out.SetNumber(number);
}

void TransformVar::LendRecoded(const ScoreValue* recoded, Operand& out) const {
  if (recoded != nullptr) out.Lend(recoded);
}

bool TransformVar::IsOutOfContRange(double x) const {
  return fOrigs.size() >= 2 && (x < fLowestOrig || x > fHighestOrig);
}

double TransformVar::GetNormValue(double x) const {
  if (!IsOutOfContRange(x)) return CalculateNormValue(x);
  switch (fOutlierTreatment) {
    case kAsMissingValues:
      return CalculateNormAsMissingValues(x);
    case kAsExtremeValues:
      return CalculateNormAsExtremeValues(x);
    case kAsIs:
      break;
  }
  return CalculateNormAsIs(x);
}

bool TransformVar::HasLines() const {
  return !fOrigs.empty() && !fSlopes.empty() && fSlopes.size() == fIntercepts.size();
}

// The first segment that holds x, one past the last when none does.
std::size_t TransformVar::SegmentOf(double x) const {
  const std::size_t count = fOrigs.size() - 1;
  if (fAreOrigsAscending) {
    const std::size_t place = CountInFront(fOrigs, [x](double orig) { return orig < x; });
    if (place > count) return count;
    if (place > 0) return place - 1;
    return fOrigs.front() <= x ? 0 : count;
  }
  std::size_t i = 0;
  while (i < count && !(fOrigs[i] <= x && x <= fOrigs[i + 1])) ++i;
  return i;
}

double TransformVar::CalculateNormValue(double x) const {
  if (!HasLines()) return x;
  std::size_t segment = 0;
  if (fOrigs.size() >= 2 && fSlopes.size() >= 2) {
    segment = SegmentOf(x);
    if (segment >= fSlopes.size() || segment + 1 >= fOrigs.size()) return x;
  }
  return x * fSlopes[segment] + fIntercepts[segment];
}

double TransformVar::CalculateNormAsIs(double x) const {
  if (!HasLines()) return x;
  const bool isAbove = std::fabs(x - fLowestOrig) > std::fabs(x - fHighestOrig);
  return isAbove ? x * fSlopes.back() + fIntercepts.back() : x * fSlopes.front() + fIntercepts.front();
}

double TransformVar::CalculateNormAsMissingValues(double) const {
  return fRecodeMissValueTo ? fRecodeMissValueTo->GetDouble() : kMissing;
}

double TransformVar::CalculateNormAsExtremeValues(double x) const {
  if (fOrigs.empty() || fNorms.size() != fOrigs.size()) return x;
  return std::fabs(x - fLowestOrig) > std::fabs(x - fHighestOrig) ? fNorms.back() : fNorms.front();
}

void TransformVar::GetEncodedValue(const ScoreDictVar* source, const ScoreValue* value, Operand& out) const {
  if (value == nullptr) {
    if (GetVarType() != STRING_VAR) LendRecoded(fRecodeMissValueTo.Get(), out);
    return;
  }
  for (const EncodingPair& pair : fEncodingMap)
    if (pair.source && *pair.source == *value) return out.Lend(pair.encoded.Get());
  HandleMissingAndInvalidValue(source, value, out);
}

void TransformVar::GetBinningValue(const ScoreDictVar* source, const ScoreValue* value, Operand& out) const {
  if (value == nullptr || !HasNumber(*value)) return LendRecoded(fRecodeMissValueTo.Get(), out);
  // The system-missing number is in no range, not even in one without ends.
  const std::size_t bin =
      value->IsSystemMissingValue() ? BinFinder::kNone : fState->bins.Find(value->GetDouble());
  if (bin == BinFinder::kNone) return HandleMissingAndInvalidValue(source, value, out);
  const ScoreValue* const binValue = fBins[bin].value.Get();
  out.Lend(binValue == nullptr ? value : binValue);
}

void TransformVar::HandleMissingAndInvalidValue(const ScoreDictVar* source, const ScoreValue* value,
                                                Operand& out) const {
  if (source == nullptr || !source->IsMissingValue(value)) {
    if (fRecodeDefaultValue) return LendRecoded(fRecodeDefaultValue.Get(), out);
    if (fRecodeElseCopy) out.Lend(value);
    return;
  }
  if (source->GetVarType() == kNUMERIC_VAR && value->IsSystemMissingValue() && fRecodeSysmisValue)
    return LendRecoded(fRecodeSysmisValue.Get(), out);
  if (fRecodeMissValueTo) return LendRecoded(fRecodeMissValueTo.Get(), out);
  if (fRecodeMissingCopy || fRecodeElseCopy) out.Lend(value);
}

void TransformVar::GetMappedValue(const CaseContext& context, const ScoreValue* value, Operand& out) const {
  if (value != nullptr) {
    for (const EncodingPair& pair : fEncodingMap)
      if (pair.source && pair.encoded && *pair.source == *value) return out.Lend(pair.encoded.Get());
  }
  if (fMapValues) out.Lend(fMapValues->getValue(context));
}

// The answer stays in the variable's own value: whoever asks again in the same case gets it once more.
void TransformVar::ComputeLag(const CaseContext& context) const {
  State& state = *fState;
  const bool isAnswered = context.GetCase() != 0 && state.lagCase == context.GetCase();
  state.result = isAnswered ? state.own.get() : nullptr;
  if (isAnswered) return;
  state.lagCase = context.GetCase();
  MoveLag(context, state.source.ValueIn(context));
}

// Absent values are kept too, so that every case moves the history by one.
void TransformVar::MoveLag(const CaseContext& context, const ScoreValue* value) const {
  State& state = *fState;
  bool isSameBlock = true;
  for (std::size_t i = 0; i < state.blockSources.size(); ++i) {
    ValueHistory& history = state.blockHistories[i];
    const ScoreValue* const current = state.blockSources[i].ValueIn(context);
    if (history.IsFull()) {
      const ScoreValue* const oldest = history.Oldest();
      const bool isSame = oldest == nullptr || current == nullptr ? oldest == current : *oldest == *current;
      isSameBlock = isSameBlock && isSame;
    }
    history.Push(current);
  }
  state.work.SetMissingNumber();
  if (state.history.IsFull() && isSameBlock) state.work.Lend(state.history.Oldest());
  // Stored before the oldest value makes room for the newest.
  StoreResult(state.work);
  state.history.Push(value);
}

}  // namespace KxVeyra_940
