// A condition on one variable: true when the split maps its value to a child.
//
// The operator and the value are kept for whoever reads the predicate; the split alone decides.  A split of a
// categorical variable holds the named value whatever the operator.

#ifndef VEYRA_PREDICATE_SIMPLEPREDICATE_H_
#define VEYRA_PREDICATE_SIMPLEPREDICATE_H_

#include <string>

#include "data/NumericValue.h"
#include "predicate/SplitPredicate.h"
#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API SimplePredicate : public SplitPredicate {
 public:
  enum PredicateOperator : int {
    kEqual = 0,
    kNotEqual = 1,
    kLessThan = 2,
    kLessOrEqual = 3,
    kGreaterThan = 4,
    kGreaterOrEqual = 5,
    kIsMissing = 6,
    kIsNotMissing = 7,  // and every text that is no operator
  };

  SimplePredicate() = default;
  explicit SimplePredicate(ScoreSplitVar* split);  // takes it
  SimplePredicate(const SimplePredicate& other) = default;
  SimplePredicate& operator=(const SimplePredicate& other) = default;
  ~SimplePredicate() override;

  // By its documented text, such as "lessThan".
  void SetPredicateOperator(const std::string& text);
  PredicateOperator GetPredicateOperator() const { return fOperator; }
  static const char* GetOperatorText(PredicateOperator predicateOperator);
  // Stores the text and its number: the code that the split variable's encoder has for it, or else the number
  // of the text as a value of the variable; system-missing without a split, and for dates.
  void SetPredicateValue(const std::string& text);
  double GetPredValueByDouble() const { return fNumber; }
  const std::string& GetPredValueByString() const { return fText; }
  // Tells that the predicate asks for a missing value.
  void SetValueToMissing(bool isMissing) { fIsMissing = isMissing; }
  bool IsMissingValue() const { return fIsMissing; }

  ScorePredicate* Clone() const override;
  // A missing value, an invalid or unknown category and an absent value are true when the split has a missing
  // child, and unknown otherwise; everything is unknown without a split.
  PredicateResult Evaluate(const ScoreCaseRecord* record, const ScoreCaseRecord* derived) const override;
  PredicateResult Evaluate(const std::vector<double>& values) const override;
  PredicateType GetPredType() const override;
  void Display(std::ostream& out) const override;

 private:
  bool CanDecide(const ScoreDictVar& variable, const ScoreValue& value, double code) const;
  PredicateResult AnswerToMissing() const;

  bool fIsMissing = false;
  double fNumber = NumericValue::gSysmisValue;
  std::string fText;
  PredicateOperator fOperator = kEqual;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_PREDICATE_SIMPLEPREDICATE_H_
