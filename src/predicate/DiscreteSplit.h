// A split of a categorical or ordinal variable: values, or codes of categories, each with a child.
//
//   DiscreteSplit split(&color);
//   split.PutSplit(new StringValue("red"), 0);           // takes the value
//   split.PutSplit(3.0, 1);                              // a code
//
// Values and codes are two tables: the form of GetSplitChildIndex decides which one is read.
//
// A split of many of its variable's categories shares their list with others and holds positions alone; its
// tables are made once, when they are asked for.

#ifndef VEYRA_PREDICATE_DISCRETESPLIT_H_
#define VEYRA_PREDICATE_DISCRETESPLIT_H_

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "data/CategoryList.h"
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
  // Puts the categories at the positions from `start` to `end` but those of `leftOut`, which ascend: their
  // codes when the list has codes, else their values.  REQUIRES: the split is empty.
  void PutCategories(std::shared_ptr<const CategoryList> categories, int start, int end,
                     std::vector<int> leftOut, int child);
  // Lent: the first value alone (empty when there is none), those of a child, all of them; in order.
  std::vector<ScoreValue*> GetSplitValuesFirst() const;
  std::vector<ScoreValue*> GetSplitValuesForIndex(int child) const;
  std::vector<ScoreValue*> GetSplitValues() const;
  // Calls `visit(code, child)` for each code, in no order; categories that share a code may repeat it.
  template <class Visit>
  void ForEachCode(Visit visit) const {
    if (fSelection) {
      fSelection->ForEachCode([&](double code) { visit(code, fSelection->child); });
    } else {
      for (const auto& [code, child] : fTables.codes) visit(code, child);
    }
  }
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
  struct Tables {
    OwnedList<ScoreValue> values;
    std::vector<int> children;  // by value
    ValueIndex index;           // of the values
    std::map<double, int> codes;

    void Put(ScoreValue* value, int child);
    void Put(double code, int child);
  };

  // Positions of a shared list that go to one child.
  struct Selection {
    std::shared_ptr<const CategoryList> categories;
    int start;
    int end;
    std::vector<int> leftOut;  // ascending
    int child;
    mutable std::once_flag isListed;
    mutable Tables tables;  // made when they are asked for

    Selection(std::shared_ptr<const CategoryList> list, int first, int last, std::vector<int> without,
              int ofChild);
    Selection* Clone() const { return new Selection(categories, start, end, leftOut, child); }
    bool Has(int position) const;
    template <class Matches>
    int ChildOf(const ScoreValue& value, Matches isEqual) const;
    int ChildOf(double code) const;
    const Tables& Listed() const;
    void PutInto(Tables& to) const;

    template <class Visit>
    void ForEachPosition(Visit visit) const {
      auto skipped = leftOut.begin();
      for (int i = start; i <= end; ++i) {
        while (skipped != leftOut.end() && *skipped < i) ++skipped;
        if (skipped == leftOut.end() || *skipped != i) visit(i);
      }
    }
    template <class Visit>
    void ForEachCode(Visit visit) const {
      if (!categories->HasCodes()) return;
      ForEachPosition([&](int position) {
        const double code = categories->CodeAt(position);
        if (code == code) visit(code);  // NaN is none
      });
    }
  };

  const Tables& Listed() const { return fSelection ? fSelection->Listed() : fTables; }
  // Makes the tables the split's own, to put more into them.
  Tables& OwnTables();

  OwnedPart<Selection> fSelection;  // or the tables
  Tables fTables;
  int fStart = -1;
  int fEnd = -1;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_PREDICATE_DISCRETESPLIT_H_
