// What simple and set predicates share: the split that they evaluate through, and how a case's value reaches
// it.

#ifndef VEYRA_PREDICATE_SPLITPREDICATE_H_
#define VEYRA_PREDICATE_SPLITPREDICATE_H_

#include "data/Owned.h"
#include "veyra/Export.h"
#include "veyra/ScorePredicate.h"

namespace KxVeyra_940 {

class VEYRA_API SplitPredicate : public ScorePredicate {
 public:
  // The code of a missing value in vectors of encoded numbers.
  static constexpr double kMissingCode = -2;
  // The code of a category that the variable's encoder does not have.
  static constexpr double kUnknownCode = -1;

  ~SplitPredicate() override;

  bool IsDerivedPredictor() const override;
  void SetSplit(ScoreSplitVar* split) override;
  ScoreSplitVar* GetSplit() const override;

  // The variable's value, lent; null when there is none.  By value index when the record has a map, and by
  // name when that gives nothing.
  static const ScoreValue* GetScoreValue(const ScoreDictVar& variable, const ScoreCaseRecord* record,
                                         const ScoreCaseRecord* derived);
  // The value's code, kUnknownCode for a category without one; system-missing for null and for a variable
  // without an encoder.
  static double GetScoreEncodeValue(const ScoreDictVar& variable, const ScoreValue* value);
  // The variable's number in a vector of encoded numbers, and whether it stands for a missing value.
  static double NumberOf(const ScoreDictVar& variable, const std::vector<double>& values);
  static bool IsMissingNumber(const ScoreDictVar& variable, double number);

 protected:
  SplitPredicate() = default;
  explicit SplitPredicate(ScoreSplitVar* split) : fSplit(split) {}  // takes it
  // Copies clone the split.
  SplitPredicate(const SplitPredicate& other) = default;
  SplitPredicate& operator=(const SplitPredicate& other) = default;

  // The split's variable; null without a split.
  const ScoreDictVar* GetVariable() const { return fSplit ? fSplit->GetSplitVar() : nullptr; }
  // The answer of the split: by code when it is a discrete split and the variable has an encoder, else by
  // value.
  PredicateResult Decide(const ScoreDictVar& variable, const ScoreValue& value, double code) const;
  OwnedPart<ScoreSplitVar> fSplit;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_PREDICATE_SPLITPREDICATE_H_
