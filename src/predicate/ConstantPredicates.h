// The predicates that hold always and never.  They have no split.

#ifndef VEYRA_PREDICATE_CONSTANTPREDICATES_H_
#define VEYRA_PREDICATE_CONSTANTPREDICATES_H_

#include "veyra/Export.h"
#include "veyra/ScorePredicate.h"

namespace KxVeyra_940 {

class VEYRA_API TruePredicate : public ScorePredicate {
 public:
  ~TruePredicate() override;
  ScorePredicate* Clone() const override;
  PredicateResult Evaluate(const ScoreCaseRecord* record, const ScoreCaseRecord* derived) const override;
  PredicateResult Evaluate(const std::vector<double>& values) const override;
  PredicateType GetPredType() const override;
  bool IsDerivedPredictor() const override;
  void SetSplit(ScoreSplitVar* split) override;
  ScoreSplitVar* GetSplit() const override;
  void Display(std::ostream& out) const override;
};

class VEYRA_API FalsePredicate : public ScorePredicate {
 public:
  ~FalsePredicate() override;
  ScorePredicate* Clone() const override;
  PredicateResult Evaluate(const ScoreCaseRecord* record, const ScoreCaseRecord* derived) const override;
  PredicateResult Evaluate(const std::vector<double>& values) const override;
  PredicateType GetPredType() const override;
  bool IsDerivedPredictor() const override;
  void SetSplit(ScoreSplitVar* split) override;
  ScoreSplitVar* GetSplit() const override;
  void Display(std::ostream& out) const override;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_PREDICATE_CONSTANTPREDICATES_H_
