// A category value with its prior probability, and an ordered set of them.

#ifndef VEYRA_SCOREVALUEPROBABILITY_H_
#define VEYRA_SCOREVALUEPROBABILITY_H_

#include <iosfwd>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreValueProbability {
 public:
  virtual ~ScoreValueProbability();
  // Takes the value and deletes the one it replaces.  False for a null value or a probability outside
  // [0, 1]: nothing changes and the value stays the caller's.
  virtual bool SetValueProbability(ScoreValue* value, double probability) = 0;
  virtual bool SetProbability(double probability) = 0;  // false outside [0, 1]
  virtual ScoreValueProbability* Clone() const = 0;     // new; the caller owns it
  // The values compare; probabilities play no part.  REQUIRES: both have a value.
  virtual bool operator==(const ScoreValueProbability& other) const = 0;
  virtual bool operator>(const ScoreValueProbability& other) const = 0;
  virtual bool operator<(const ScoreValueProbability& other) const = 0;
  virtual bool operator<=(const ScoreValueProbability& other) const = 0;
  virtual bool operator>=(const ScoreValueProbability& other) const = 0;
  virtual double GetProbability() const = 0;
  // Lent.  A set looks values up by what they were when it took the entry, or by what SetValueProbability
  // made of them: a value that is changed by its own setters, behind the entry's back, is not seen.
  virtual ScoreValue* GetValue() const = 0;
  virtual void Display(std::ostream& out) const = 0;
};

class VEYRA_API ScoreValueProbabilitySet {
 public:
  virtual ~ScoreValueProbabilitySet();
  virtual ScoreValueProbabilitySet* Clone() const = 0;  // new; the caller owns it
  // Takes the entry, a duplicate value too; false for null and for an entry held already.
  virtual bool Add(ScoreValueProbability* probability) = 0;
  // Deletes the first held entry of the given entry's value; false when there is none.
  virtual bool Remove(const ScoreValueProbability* probability) = 0;
  virtual int Size() const = 0;
  virtual const std::vector<ScoreValueProbability*>& GetAllValueProbabilities() const = 0;  // lent
  // The probability of the first held value equal to `value`; 0 when none is, and for null.
  virtual double GetProbabilityOfValue(const ScoreValue* value) const = 0;
  virtual bool Contains(const ScoreValue* value) const = 0;
  virtual void Display(std::ostream& out) const = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREVALUEPROBABILITY_H_
