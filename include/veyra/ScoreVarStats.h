// Summary statistics of one variable, and the value that replaces missing ones.

#ifndef VEYRA_SCOREVARSTATS_H_
#define VEYRA_SCOREVARSTATS_H_

#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreVarStats {
 public:
  virtual ~ScoreVarStats();
  virtual ScoreVarStats* Clone() const = 0;  // new; the caller owns it
  virtual void SetMin(double value) = 0;
  virtual void SetMax(double value) = 0;
  virtual void SetStddev(double value) = 0;
  virtual void SetMean(double value) = 0;
  // Stores a clone; the caller keeps `value`.  Null clears.
  virtual void SetMissingReplacement(const ScoreValue* value) = 0;
  virtual double GetMin() const = 0;
  virtual double GetMax() const = 0;
  virtual double GetStddev() const = 0;
  virtual double GetMean() const = 0;
  virtual ScoreValue* GetMissingReplacement() const = 0;  // lent; null when there is none
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREVARSTATS_H_
