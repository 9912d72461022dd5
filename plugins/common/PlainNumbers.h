// The numbers of a field that no rule says anything about: most of those in the data, found by two
// comparisons.

#ifndef VEYRA_PLUGINS_PLAINNUMBERS_H_
#define VEYRA_PLUGINS_PLAINNUMBERS_H_

#include "common/MiningSchema.h"

namespace KxVeyra_940::Plugin {

// The numbers strictly between `low` and `high`; as it is made, none.
struct PlainNumbers {
  double low = 0;
  double high = 0;

  bool Contains(double number) const { return low < number && number < high; }
};

// Between two neighbouring ranges of missing values of the field's variable, and within the field's bounds
// when values beyond them are treated.  Each plain number is a valid value that stays as it is; not all such
// numbers are plain.
PlainNumbers FindPlainNumbers(const MiningField& field);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_PLAINNUMBERS_H_
