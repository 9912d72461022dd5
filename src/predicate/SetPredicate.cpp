#include "predicate/SetPredicate.h"

#include <ostream>

#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940 {

SetPredicate::SetPredicate(ScoreSplitVar* split) : SplitPredicate(split) {}
SetPredicate::~SetPredicate() = default;

void SetPredicate::SetPredicateOperator(const std::string& text) {
  fOperator = text == PMMLModelTags::XML_ZENT_TRANFUNC_ISIN ? kIsIn : kIsNotIn;
}

void SetPredicate::SetArrayData(const std::vector<double>& data) {
  if (!data.empty()) fArrayData = data;
}

ScorePredicate* SetPredicate::Clone() const { return new SetPredicate(*this); }

ScorePredicate::PredicateResult SetPredicate::Evaluate(const ScoreCaseRecord* record,
                                                       const ScoreCaseRecord* derived) const {
  const ScoreDictVar* variable = GetVariable();
  if (variable == nullptr) return kUnknown;
  const ScoreValue* value = GetScoreValue(*variable, record, derived);
  if (value == nullptr) return kUnknown;
  const bool hasEncoder = variable->GetEncoder() != nullptr;
  const double code = GetScoreEncodeValue(*variable, value);
  const bool isKnown =
      hasEncoder ? code != kUnknownCode && !variable->IsMissingValue(value) : variable->IsValidValue(value);
  return isKnown ? Decide(*variable, *value, code) : kUnknown;
}

ScorePredicate::PredicateResult SetPredicate::Evaluate(const std::vector<double>& values) const {
  const ScoreDictVar* variable = GetVariable();
  if (variable == nullptr) return kUnknown;
  const double number = NumberOf(*variable, values);
  if (IsMissingNumber(*variable, number)) return kUnknown;
  // The split would send the negative code to its missing child.
  if (number < 0 && variable->GetMLevel() == ScoreDictVar::kNominal) return kFalse;
  return fSplit->GetSplitChildIndex(number) == ScoreSplitVar::kNoChild ? kFalse : kTrue;
}

ScorePredicate::PredicateType SetPredicate::GetPredType() const { return kSetPredicate; }

void SetPredicate::Display(std::ostream& out) const { out << "Set Predicate: \n"; }

}  // namespace KxVeyra_940
