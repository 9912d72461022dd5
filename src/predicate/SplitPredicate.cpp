#include "predicate/SplitPredicate.h"

#include "data/NumericValue.h"

namespace KxVeyra_940 {

SplitPredicate::~SplitPredicate() = default;

bool SplitPredicate::IsDerivedPredictor() const {
  const ScoreDictVar* variable = GetVariable();
  return variable != nullptr && variable->IsDerivedVariable();
}

void SplitPredicate::SetSplit(ScoreSplitVar* split) { fSplit.Replace(split); }

ScoreSplitVar* SplitPredicate::GetSplit() const { return fSplit.Get(); }

const ScoreValue* SplitPredicate::GetScoreValue(const ScoreDictVar& variable, const ScoreCaseRecord* record,
                                                const ScoreCaseRecord* derived) {
  const ScoreCaseRecord* source = derived != nullptr && variable.IsDerivedVariable() ? derived : record;
  if (source == nullptr) return nullptr;
  if (source->HasMap()) {
    if (const ScoreValue* value = source->Get(variable.GetValueIndex())) return value;
  }
  return source->Get(variable.GetName());
}

double SplitPredicate::GetScoreEncodeValue(const ScoreDictVar& variable, const ScoreValue* value) {
  const ScoreEncoder* encoder = variable.GetEncoder();
  return value == nullptr || encoder == nullptr ? NumericValue::gSysmisValue : encoder->EncodeConst(value);
}

ScorePredicate::PredicateResult SplitPredicate::Decide(const ScoreDictVar& variable, const ScoreValue& value,
                                                       double code) const {
  const bool isByCode =
      variable.GetEncoder() != nullptr && fSplit->GetSplitVarType() == ScoreSplitVar::kDiscreteSplit;
  const int child = isByCode ? fSplit->GetSplitChildIndex(code) : fSplit->GetSplitChildIndex(&value);
  return child == ScoreSplitVar::kNoChild ? kFalse : kTrue;
}

double SplitPredicate::NumberOf(const ScoreDictVar& variable, const std::vector<double>& values) {
  const int index = variable.GetEncodedValueIndex();
  if (index >= 0 && static_cast<std::size_t>(index) < values.size()) {
    return values[static_cast<std::size_t>(index)];
  }
  return variable.GetMLevel() == ScoreDictVar::kContinuous ? NumericValue::gSysmisValue : kUnknownCode;
}

bool SplitPredicate::IsMissingNumber(const ScoreDictVar& variable, double number) {
  return variable.GetMLevel() == ScoreDictVar::kContinuous ? NumericValue::IsSystemMissingValue(number)
                                                           : number == kMissingCode;
}

}  // namespace KxVeyra_940
