#include "tree/TestPredicates.h"

#include <algorithm>

#include "data/NumericValue.h"
#include "predicate/CompoundPredicate.h"
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

bool HasSurrogates(const ScorePredicate& predicate) {
  if (predicate.GetPredType() != ScorePredicate::kCompoundPredicate) return false;
  const auto& compound = static_cast<const CompoundPredicate&>(predicate);
  return compound.GetBoolOperator() == ScorePredicate::kSurrogate ||
         std::ranges::any_of(compound.GetPredicates(),
                             [](const ScorePredicate* child) { return HasSurrogates(*child); });
}

int CountDecidingSurrogates(const ScorePredicate& predicate, Result result,
                            const std::vector<double>& values) {
  if (predicate.GetPredType() != ScorePredicate::kCompoundPredicate) return 0;
  const auto& compound = static_cast<const CompoundPredicate&>(predicate);
  const ScorePredicate::CompoundBoolOperator boolOperator = compound.GetBoolOperator();
  const bool endsAtOne = boolOperator == (IsTrue(result) ? ScorePredicate::kOr : ScorePredicate::kAnd);
  int count = 0;
  bool isFirst = true;
  for (const ScorePredicate* child : compound.GetPredicates()) {
    const Result answer = child->Evaluate(values);
    const int ofChild =
        answer == ScorePredicate::kUnknown ? 0 : CountDecidingSurrogates(*child, answer, values);
    if (boolOperator == ScorePredicate::kSurrogate) {
      if (answer != ScorePredicate::kUnknown) return ofChild + (isFirst ? 0 : 1);
    } else if (endsAtOne) {
      if (answer != ScorePredicate::kUnknown && IsTrue(answer) == IsTrue(result)) return ofChild;
    } else {
      count += ofChild;
    }
    isFirst = false;
  }
  return count;
}

}  // namespace KxVeyra_940::Plugin
