// A split of a categorical or ordinal variable: values, or codes of categories, each with a child.
//
//   DiscreteSplit split(&color);
//   split.PutSplit(new StringValue("red"), 0);           // takes the value
//   split.PutSplit(3.0, 1);                              // a code
//
// Values and codes are two tables: the form of GetSplitChildIndex decides which one is read.

#ifndef VEYRA_PREDICATE_DISCRETESPLIT_H_
#define VEYRA_PREDICATE_DISCRETESPLIT_H_

#include <map>
#include <vector>

#include "data/Owned.h"
#include "data/ValueIndex.h"
#include "veyra/Export.h"
#include "veyra/ScoreSplitVar.h"

namespace KxVeyra_940 {

class VEYRA_API DiscreteSplit : public ScoreSplitVar {
 public:
  explicit DiscreteSplit(const ScoreDictVar* variable);
  // Copies clone every value and share the variable.
  DiscreteSplit(const DiscreteSplit& other) = default;
  DiscreteSplit& operator=(const DiscreteSplit& other) = default;
  ~DiscreteSplit() override;

  // Takes the value, which must not change from here on; null is ignored.  Of equal values the first counts.
  void PutSplit(ScoreValue* value, int child);
  // The first child of a code stays.  NaN is no code and is ignored.
  void PutSplit(double code, int child);
  // Lent: the first value alone (empty when there is none), those of a child, all of them; in order.
  std::vector<ScoreValue*> GetSplitValuesFirst() const;
  std::vector<ScoreValue*> GetSplitValuesForIndex(int child) const;
  std::vector<ScoreValue*> GetSplitValues() const;
  const std::map<double, int>& GetSplitCodes() const { return fCodes; }  // children by code
  // Which positions of the variable's categories the split stands for; -1 and -1 until they are set.
  void SetStartAndEndIndex(int start, int end);
  void GetStartAndEndIndex(int& start, int& end) const;

  ScoreSplitVar* Clone() const override;
  int GetSplitVarType() const override;
  // Null goes to the missing child.  Texts of a string variable are equal as the variable has it.
  int GetSplitChildIndex(const ScoreValue* value) const override;
  // A negative code of a categorical (nominal) variable goes to the missing child; other codes that are not
  // in the table have no child.
  int GetSplitChildIndex(double code) const override;
  void Display(std::ostream& out) const override;

 private:
  OwnedList<ScoreValue> fValues;
  std::vector<int> fChildren;  // by value
  ValueIndex fIndex;           // of the values
  std::map<double, int> fCodes;
  int fStart = -1;
  int fEnd = -1;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_PREDICATE_DISCRETESPLIT_H_
