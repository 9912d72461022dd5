// A condition of three-valued logic on one case: true, false or unknown.
//
//   std::unique_ptr<ScorePredicate> predicate(translator.ParsePredicate(...));
//   switch (predicate->Evaluate(record, nullptr)) ...
//
// Threads: evaluation changes nothing; a predicate may be evaluated from several threads at once on distinct
// records.  Nothing here throws.

#ifndef VEYRA_SCOREPREDICATE_H_
#define VEYRA_SCOREPREDICATE_H_

#include <iosfwd>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreCaseRecord.h"
#include "veyra/ScoreSplitVar.h"

namespace KxVeyra_940 {

class VEYRA_API ScorePredicate {
 public:
  enum PredicateResult : int {
    kTrue = 0,
    kFalse = 1,
    kUnknown = 2,
    kTrueBySurrogate = 3,  // a "surrogate" compound was true whose first predicate was unknown
  };

  enum PredicateType : int {
    kCompoundPredicate = 0,
    kSimplePredicate = 1,
    kSetPredicate = 2,
    kTruePredicate = 3,
    kFalsePredicate = 4,
  };

  enum CompoundBoolOperator : int {
    kOr = 0,
    kAnd = 1,
    kXor = 2,
    kSurrogate = 3,
  };

  virtual ~ScorePredicate();
  virtual ScorePredicate* Clone() const = 0;  // a new deep copy; the caller owns it
  // The values of a case.  A derived variable's value is looked for in `derived`, any other one's in
  // `record`; without a derived record everything is looked for in `record`.  Either may be null.
  virtual PredicateResult Evaluate(const ScoreCaseRecord* record, const ScoreCaseRecord* derived) const = 0;
  // Encoded numbers by the variables' encoded value index.  For categorical and ordinal variables: the code,
  // -1 for an unknown category, -2 for a missing value.  For others: the number, system-missing for a missing
  // value.
  virtual PredicateResult Evaluate(const std::vector<double>& values) const = 0;
  virtual PredicateType GetPredType() const = 0;
  virtual bool IsDerivedPredictor() const = 0;  // a variable of it is derived
  // Simple and set predicates take the split and delete the one before.  Others have none: SetSplit does
  // nothing and leaves the split with the caller, GetSplit answers null.
  virtual void SetSplit(ScoreSplitVar* split) = 0;
  virtual ScoreSplitVar* GetSplit() const = 0;  // lent
  virtual void Display(std::ostream& out) const = 0;
};

// Whether the result counts as true, by a surrogate or not.
inline bool IsTrue(ScorePredicate::PredicateResult result) {
  return result == ScorePredicate::kTrue || result == ScorePredicate::kTrueBySurrogate;
}

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREPREDICATE_H_
