#include "predicate/SimplePredicate.h"

#include <iterator>
#include <memory>
#include <ostream>

#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940 {

namespace {

using namespace PMMLModelTags;

// By code; any other text has the last one too.
constexpr const char* kOperators[] = {XML_VAL_OPERATOR_EQUAL,       XML_VAL_OPERATOR_NOTEQUAL,
                                      XML_VAL_OPERATOR_LESSTHAN,    XML_VAL_OPERATOR_LESSOREQUAL,
                                      XML_VAL_OPERATOR_GREATERTHAN, XML_VAL_OPERATOR_GREATEROREQUAL,
                                      XML_VAL_OPERATOR_ISMISSING,   XML_VAL_OPERATOR_ISNOTMISSING};
static_assert(std::size(kOperators) == SimplePredicate::kIsNotMissing + 1);

}  // namespace

SimplePredicate::SimplePredicate(ScoreSplitVar* split) : SplitPredicate(split) {}
SimplePredicate::~SimplePredicate() = default;

void SimplePredicate::SetPredicateOperator(const std::string& text) {
  int code = 0;
  while (code < kIsNotMissing && text != kOperators[code]) ++code;
  fOperator = static_cast<PredicateOperator>(code);
}

const char* SimplePredicate::GetOperatorText(PredicateOperator predicateOperator) {
  return kOperators[predicateOperator];
}

void SimplePredicate::SetPredicateValue(const std::string& text) {
  fText = text;
  fNumber = NumericValue::gSysmisValue;
  const ScoreDictVar* variable = GetVariable();
  if (variable == nullptr) return;
  if (const ScoreEncoder* encoder = variable->GetEncoder()) {
    fNumber = encoder->EncodeConst(text);
    return;
  }
  const std::unique_ptr<ScoreValue> value(variable->ToMyValue(text));
  if (value != nullptr) fNumber = value->GetDouble();
}

ScorePredicate* SimplePredicate::Clone() const { return new SimplePredicate(*this); }

bool SimplePredicate::CanDecide(const ScoreDictVar& variable, const ScoreValue& value, double code) const {
  if (variable.GetMLevel() != ScoreDictVar::kNominal) return !variable.IsMissingValue(&value);
  if (variable.GetEncoder() == nullptr) return variable.IsValidValue(&value);
  return code != kUnknownCode && !variable.IsMissingValue(&value);
}

ScorePredicate::PredicateResult SimplePredicate::AnswerToMissing() const {
  return fSplit->GetMissvalMap() == ScoreSplitVar::kNoChild ? kUnknown : kTrue;
}

ScorePredicate::PredicateResult SimplePredicate::Evaluate(const ScoreCaseRecord* record,
                                                          const ScoreCaseRecord* derived) const {
  const ScoreDictVar* variable = GetVariable();
  if (variable == nullptr) return kUnknown;
  const ScoreValue* value = GetScoreValue(*variable, record, derived);
  if (value == nullptr) return AnswerToMissing();
  const double code = GetScoreEncodeValue(*variable, value);
  return CanDecide(*variable, *value, code) ? Decide(*variable, *value, code) : AnswerToMissing();
}

ScorePredicate::PredicateResult SimplePredicate::Evaluate(const std::vector<double>& values) const {
  const ScoreDictVar* variable = GetVariable();
  if (variable == nullptr) return kUnknown;
  const double number = NumberOf(*variable, values);
  if (IsMissingNumber(*variable, number)) return AnswerToMissing();
  return fSplit->GetSplitChildIndex(number) == ScoreSplitVar::kNoChild ? kFalse : kTrue;
}

ScorePredicate::PredicateType SimplePredicate::GetPredType() const { return kSimplePredicate; }

void SimplePredicate::Display(std::ostream& out) const { out << "Simple Predicate: \n"; }

}  // namespace KxVeyra_940
