// A range of values: an interval with open or closed ends, or one single value.

#ifndef VEYRA_SCOREVALUERANGE_H_
#define VEYRA_SCOREVALUERANGE_H_

#include <iosfwd>

#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreValueRange {
 public:
  virtual ~ScoreValueRange();
  // Equal bounds and equal end flags.
  virtual bool operator==(const ScoreValueRange& range) const = 0;
  virtual ScoreValueRange* Clone() const = 0;  // new; the caller owns it
  // Take the value and delete the bound that they replace; null is ignored, the bound held already stays.
  virtual void SetMin(ScoreValue* value) = 0;
  virtual void SetMax(ScoreValue* value) = 0;
  virtual bool IsInRange(const ScoreValue* value) const = 0;
  virtual bool IsInRange(double value) const = 0;
  // Lent.  Ranges and their sets go by what SetMin and SetMax gave them: a bound that is changed by its own
  // setters, behind the range's back, is not seen.
  virtual ScoreValue* GetMin() const = 0;
  virtual ScoreValue* GetMax() const = 0;
  virtual bool GetHighEnd() const = 0;  // high end included
  virtual bool GetLowEnd() const = 0;   // low end included
  virtual void Display(std::ostream& out) const = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREVALUERANGE_H_
