// A split of a continuous variable: ranges of values, each with a child.
//
//   ScaleSplit split(&age);
//   split.PutSplit(new Range(0, 10, true, false), 0);    // takes the range
//   split.PutSplit(new Range(10, 20, true, true), 1);
//   split.GetSplitChildIndex(10.0);                      // 1
//
// Ranges carry their own ends; of ranges that overlap the earlier one wins.

#ifndef VEYRA_PREDICATE_SCALESPLIT_H_
#define VEYRA_PREDICATE_SCALESPLIT_H_

#include <vector>

#include "data/Owned.h"
#include "veyra/Export.h"
#include "veyra/ScoreSplitVar.h"
#include "veyra/ScoreValueRange.h"

namespace KxVeyra_940 {

class VEYRA_API ScaleSplit : public ScoreSplitVar {
 public:
  explicit ScaleSplit(const ScoreDictVar* variable);
  // Copies clone every range and share the variable.
  ScaleSplit(const ScaleSplit& other) = default;
  ScaleSplit& operator=(const ScaleSplit& other) = default;
  ~ScaleSplit() override;

  // Takes the range; null is ignored.
  void PutSplit(ScoreValueRange* range, int child);
  // The first range with that child, and the first of all; lent, null when there is none.
  ScoreValueRange* GetSplitValueRangeForIndex(int child) const;
  ScoreValueRange* GetSplitValueRangeFirst() const;

  ScoreSplitVar* Clone() const override;
  int GetSplitVarType() const override;
  // Null and what the variable counts as missing go to the missing child.
  int GetSplitChildIndex(const ScoreValue* value) const override;
  // The system-missing number goes to the missing child; the variable is not asked.
  int GetSplitChildIndex(double number) const override;
  void Display(std::ostream& out) const override;

 private:
  OwnedList<ScoreValueRange> fRanges;
  std::vector<int> fChildren;  // by range
};

}  // namespace KxVeyra_940

#endif  // VEYRA_PREDICATE_SCALESPLIT_H_
