// A category value with its display label, and an ordered set of them.

#ifndef VEYRA_SCOREVALUELABEL_H_
#define VEYRA_SCOREVALUELABEL_H_

#include <iosfwd>
#include <string>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreValueLabel {
 public:
  virtual ~ScoreValueLabel();
  // Takes the value and deletes the one it replaces.  False for a null value or an empty label: nothing
  // changes and the value stays the caller's.
  virtual bool SetValueLabel(ScoreValue* value, const std::string& label) = 0;
  virtual bool SetLabel(const std::string& label) = 0;  // false for an empty label
  virtual ScoreValueLabel* Clone() const = 0;           // new; the caller owns it
  // The values compare; labels play no part.  REQUIRES: both have a value.
  virtual bool operator==(const ScoreValueLabel& label) const = 0;
  virtual bool operator>(const ScoreValueLabel& label) const = 0;
  virtual bool operator<(const ScoreValueLabel& label) const = 0;
  virtual bool operator<=(const ScoreValueLabel& label) const = 0;
  virtual bool operator>=(const ScoreValueLabel& label) const = 0;
  virtual const std::string& GetLabel() const = 0;
  // Lent.  A set looks values up by what they were when it took the label, or by what SetValueLabel made of
  // them: a value that is changed by its own setters, behind the label's back, is not seen.
  virtual ScoreValue* GetValue() const = 0;
  virtual void Display(std::ostream& out) const = 0;
};

class VEYRA_API ScoreValueLabelSet {
 public:
  virtual ~ScoreValueLabelSet();
  virtual ScoreValueLabelSet* Clone() const = 0;  // new; the caller owns it
  // Takes the label, a duplicate value too; false for null and for a label held already.
  virtual bool Add(ScoreValueLabel* label) = 0;
  // Deletes the first held label of the given label's value; false when there is none.
  virtual bool Remove(const ScoreValueLabel* label) = 0;
  virtual int Size() const = 0;
  virtual const std::vector<ScoreValueLabel*>& GetAllValueLabels() const = 0;  // lent
  // The label of the first held value equal to `value`; empty when none is, and for null.
  virtual std::string GetLabelOfValue(const ScoreValue* value) const = 0;
  virtual bool Contains(const ScoreValue* value) const = 0;
  virtual void Display(std::ostream& out) const = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREVALUELABEL_H_
