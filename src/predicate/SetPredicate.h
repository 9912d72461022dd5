// A condition on one variable: true when its value is among the values of the split.
//
// The split holds the values for which the predicate is true, whatever the operator; missing values, invalid
// and unknown categories are unknown, and the split's missing child plays no part.

#ifndef VEYRA_PREDICATE_SETPREDICATE_H_
#define VEYRA_PREDICATE_SETPREDICATE_H_

#include <string>

#include "predicate/SplitPredicate.h"
#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API SetPredicate : public SplitPredicate {
 public:
  enum SetOperator : int {
    kIsIn = 0,
    kIsNotIn = 1,  // and every text that is not "isIn"
  };

  SetPredicate() = default;
  explicit SetPredicate(ScoreSplitVar* split);  // takes it
  SetPredicate(const SetPredicate& other) = default;
  SetPredicate& operator=(const SetPredicate& other) = default;
  ~SetPredicate() override;

  void SetPredicateOperator(const std::string& text);
  SetOperator GetPredicateOperator() const { return fOperator; }
  // The codes of the values for which the predicate is true; an empty vector changes nothing.
  void SetArrayData(const std::vector<double>& data);
  const std::vector<double>& GetArrayData() const { return fArrayData; }

  ScorePredicate* Clone() const override;
  PredicateResult Evaluate(const ScoreCaseRecord* record, const ScoreCaseRecord* derived) const override;
  PredicateResult Evaluate(const std::vector<double>& values) const override;
  PredicateType GetPredType() const override;
  void Display(std::ostream& out) const override;

 private:
  SetOperator fOperator = kIsIn;
  std::vector<double> fArrayData;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_PREDICATE_SETPREDICATE_H_
