#include "tree/TestPredicates.h"

#include "data/NumericValue.h"
#include "predicate/SplitPredicate.h"

namespace KxVeyra_940::Plugin {

namespace {

using Result = ScorePredicate::PredicateResult;

Result Complement(Result result) {
  if (result == ScorePredicate::kUnknown) return result;
  return IsTrue(result) ? ScorePredicate::kFalse : ScorePredicate::kTrue;
}

Result AnswerOf(bool holds) { return holds ? ScorePredicate::kTrue : ScorePredicate::kFalse; }

}  // namespace

WrappedPredicate::~WrappedPredicate() = default;
ComplementPredicate::~ComplementPredicate() = default;
MissingPredicate::~MissingPredicate() = default;

Result ComplementPredicate::Evaluate(const ScoreCaseRecord* record, const ScoreCaseRecord* derived) const {
  return Complement(GetInner().Evaluate(record, derived));
}

Result ComplementPredicate::Evaluate(const std::vector<double>& values) const {
  return Complement(GetInner().Evaluate(values));
}

Result MissingPredicate::Evaluate(const ScoreCaseRecord* record, const ScoreCaseRecord* derived) const {
  const ScoreDictVar& variable = *GetSplit()->GetSplitVar();
  const bool isMissing = variable.IsMissingValue(SplitPredicate::GetScoreValue(variable, record, derived));
  return AnswerOf(isMissing == fWantsMissing);
}

Result MissingPredicate::Evaluate(const std::vector<double>& values) const {
  const ScoreDictVar& variable = *GetSplit()->GetSplitVar();
  const bool isMissing =
      SplitPredicate::IsMissingNumber(variable, SplitPredicate::NumberOf(variable, values));
  return AnswerOf(isMissing == fWantsMissing);
}

}  // namespace KxVeyra_940::Plugin
