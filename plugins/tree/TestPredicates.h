// Predicates that say what the PMML standard says where the library's own objects do not.
//
// The split of "notEqual" and "isNotIn" holds what is listed, which answers the wrong way round for one and
// leaves values that no document lists out of the other; a question about missing values must never itself be
// unknown. Each wraps the predicate that it corrects; its split, which points to the variable, is passed
// through.

#ifndef VEYRA_PLUGINS_TREE_TESTPREDICATES_H_
#define VEYRA_PLUGINS_TREE_TESTPREDICATES_H_

#include <vector>

#include "data/Owned.h"
#include "veyra/ScorePredicate.h"

namespace KxVeyra_940::Plugin {

class WrappedPredicate : public ScorePredicate {
 public:
  ~WrappedPredicate() override;
  PredicateType GetPredType() const override { return fInner->GetPredType(); }
  bool IsDerivedPredictor() const override { return fInner->IsDerivedPredictor(); }
  void SetSplit(ScoreSplitVar* split) override { fInner->SetSplit(split); }
  ScoreSplitVar* GetSplit() const override { return fInner->GetSplit(); }
  void Display(std::ostream& out) const override { fInner->Display(out); }

  const ScorePredicate& GetInner() const { return *fInner; }

 protected:
  // Takes the predicate.  REQUIRES: not null; its split has a variable.
  explicit WrappedPredicate(ScorePredicate* inner) : fInner(inner) {}
  WrappedPredicate(const WrappedPredicate& other) = default;
  WrappedPredicate& operator=(const WrappedPredicate& other) = default;

 private:
  OwnedPart<ScorePredicate> fInner;
};

// True where the inner predicate is false, and the other way round; unknown where it is unknown.
class ComplementPredicate final : public WrappedPredicate {
 public:
  explicit ComplementPredicate(ScorePredicate* inner) : WrappedPredicate(inner) {}
  ~ComplementPredicate() override;
  ScorePredicate* Clone() const override { return new ComplementPredicate(*this); }
  PredicateResult Evaluate(const ScoreCaseRecord* record, const ScoreCaseRecord* derived) const override;
  PredicateResult Evaluate(const std::vector<double>& values) const override;
};

// Whether the value of the inner predicate's variable is missing, or is not; never unknown.
class MissingPredicate final : public WrappedPredicate {
 public:
  MissingPredicate(ScorePredicate* inner, bool wantsMissing)
      : WrappedPredicate(inner), fWantsMissing(wantsMissing) {}
  ~MissingPredicate() override;
  ScorePredicate* Clone() const override { return new MissingPredicate(*this); }
  PredicateResult Evaluate(const ScoreCaseRecord* record, const ScoreCaseRecord* derived) const override;
  PredicateResult Evaluate(const std::vector<double>& values) const override;

  bool WantsMissing() const { return fWantsMissing; }

 private:
  bool fWantsMissing;
};

// Whether surrogates stand anywhere in the predicate.
bool HasSurrogates(const ScorePredicate& predicate);

// How many surrogates had a part in the answer that the predicate gave to the values: of an "or" that is true
// and an "and" that is false those of the first child that says so, of others those of all children, and of a
// surrogate itself those of the child that decided, and one more when that was not the first.
// REQUIRES: `result` is that answer, and known.
int CountDecidingSurrogates(const ScorePredicate& predicate, ScorePredicate::PredicateResult result,
                            const std::vector<double>& values);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_TREE_TESTPREDICATES_H_
