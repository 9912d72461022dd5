// Other predicates, combined.
//
//   or         true at the first child that is true, else unknown if one was unknown, else false
//   and        false at the first child that is false, else unknown if one was unknown, else true
//   xor        unknown at the first unknown child, else whether the number of true ones is odd
//   surrogate  the first child's answer; when that is unknown the next one's that is not, and true then is
//              "true by surrogate"
//
// A child that is true by surrogate counts as true.  Any other operator is unknown.

#ifndef VEYRA_PREDICATE_COMPOUNDPREDICATE_H_
#define VEYRA_PREDICATE_COMPOUNDPREDICATE_H_

#include "data/Owned.h"
#include "veyra/Export.h"
#include "veyra/ScorePredicate.h"

namespace KxVeyra_940 {

class VEYRA_API CompoundPredicate : public ScorePredicate {
 public:
  CompoundPredicate() = default;
  explicit CompoundPredicate(CompoundBoolOperator boolOperator);
  // Copies clone every child.
  CompoundPredicate(const CompoundPredicate& other) = default;
  CompoundPredicate& operator=(const CompoundPredicate& other) = default;
  ~CompoundPredicate() override;

  // Takes the predicate, which is not held yet; null is ignored.
  void AddPredicate(ScorePredicate* predicate);
  // Hands the predicate back to the caller; false when it is not here.
  bool RemovePredicate(const ScorePredicate* predicate);
  // Puts the predicate, which it takes, in the place of another one, which goes back to the caller.
  // REQUIRES: not null; 0 <= position < GetCount().
  ScorePredicate* Exchange(int position, ScorePredicate* predicate);
  int GetCount() const { return static_cast<int>(fPredicates.Size()); }
  const std::vector<ScorePredicate*>& GetPredicates() const { return fPredicates.All(); }  // lent
  void SetBoolOperator(CompoundBoolOperator boolOperator) { fOperator = boolOperator; }
  CompoundBoolOperator GetBoolOperator() const { return fOperator; }
  // The answer of a "surrogate" compound whose children before `start` are left out; false for another
  // operator and for a start outside the list.
  PredicateResult EvaluateSurrogate(const std::vector<double>& values, int start) const;

  ScorePredicate* Clone() const override;
  PredicateResult Evaluate(const ScoreCaseRecord* record, const ScoreCaseRecord* derived) const override;
  PredicateResult Evaluate(const std::vector<double>& values) const override;
  PredicateType GetPredType() const override;
  bool IsDerivedPredictor() const override;
  void SetSplit(ScoreSplitVar* split) override;
  ScoreSplitVar* GetSplit() const override;
  void Display(std::ostream& out) const override;

 private:
  template <class Answer>
  PredicateResult Combine(Answer answer) const;
  template <class Answer>
  PredicateResult CombineSurrogates(std::size_t start, Answer answer) const;

  CompoundBoolOperator fOperator = kOr;
  OwnedList<ScorePredicate> fPredicates;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_PREDICATE_COMPOUNDPREDICATE_H_
