// The categories of a variable as they are at one moment: values in the order of its labels and, where
// predicates go by codes, the code of each.
//
// Never changes, so that any number of splits share one list and say only which of its positions they take.
// Threads: may be read by any number of threads.

#ifndef VEYRA_DATA_CATEGORYLIST_H_
#define VEYRA_DATA_CATEGORYLIST_H_

#include <algorithm>
#include <utility>
#include <vector>

#include "data/Owned.h"
#include "data/ValueIndex.h"
#include "veyra/Export.h"
#include "veyra/ScoreValueLabel.h"

namespace KxVeyra_940 {

class VEYRA_API CategoryList {
 public:
  // Clones the values.  `codes` has one for each label, NaN where there is none, or is empty.
  CategoryList(const std::vector<ScoreValueLabel*>& labels, std::vector<double> codes);
  CategoryList(const CategoryList&) = delete;
  CategoryList& operator=(const CategoryList&) = delete;
  ~CategoryList();

  int Size() const { return static_cast<int>(fValues.Size()); }
  // The value at a position; null for a label without one.
  const ScoreValue* ValueAt(int position) const { return fValues.At(static_cast<std::size_t>(position)); }
  bool HasCodes() const { return !fCodes.empty(); }
  double CodeAt(int position) const { return fCodes[static_cast<std::size_t>(position)]; }

  // The first position that holds a value equal to `value` and for which `matches(position)` is true, else
  // -1.
  template <class Matches>
  int FindFirst(const ScoreValue& value, Matches matches) const {
    return fIndex.FindFirst(value, matches);
  }
  // Whether `matches(position)` is true for a position of that code.
  template <class Matches>
  bool AnyOfCode(double code, Matches matches) const {
    auto entry = std::lower_bound(fByCode.begin(), fByCode.end(), std::pair(code, 0));
    for (; entry != fByCode.end() && entry->first == code; ++entry) {
      if (matches(entry->second)) return true;
    }
    return false;
  }

 private:
  OwnedList<ScoreValue> fValues;
  ValueIndex fIndex;
  std::vector<double> fCodes;                   // by position
  std::vector<std::pair<double, int>> fByCode;  // positions by ascending code
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_CATEGORYLIST_H_
