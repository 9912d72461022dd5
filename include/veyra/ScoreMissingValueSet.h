// The ranges of values that count as missing for one variable.

#ifndef VEYRA_SCOREMISSINGVALUESET_H_
#define VEYRA_SCOREMISSINGVALUESET_H_

#include <iosfwd>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreValueRange.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreMissingValueSet {
 public:
  virtual ~ScoreMissingValueSet();
  virtual ScoreMissingValueSet* Clone() const = 0;  // new; the caller owns it
  // Takes the range.  False for null and for a range equal to one held; it then stays the caller's.
  virtual bool Add(ScoreValueRange* range) = 0;
  // Deletes the held range equal to the given one; false when there is none.
  virtual bool Remove(const ScoreValueRange* range) = 0;
  virtual int Size() const = 0;
  virtual bool Contains(const ScoreValueRange* range) const = 0;
  // A copy of the list; the ranges stay the set's.
  virtual std::vector<ScoreValueRange*> GetMissingValues() const = 0;
  virtual void Display(std::ostream& out) const = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREMISSINGVALUESET_H_
