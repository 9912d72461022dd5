// One row of data: named slots, each empty or holding one value.
//
// Add every name once; then overwrite values case by case: the setters reuse the value in the slot.  A slot
// keeps the kind of its first value and a setter of another kind is refused: check every answer.
// Threads: a record belongs to one scoring call at a time.  Nothing here throws.

#ifndef VEYRA_SCORECASERECORD_H_
#define VEYRA_SCORECASERECORD_H_

#include <iosfwd>
#include <string>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreCaseRecord {
 public:
  virtual ~ScoreCaseRecord();
  // Takes the value (null makes an empty slot); a value it replaces is deleted.
  virtual void Add(const std::string& name, ScoreValue* value) = 0;
  // False for an unknown name or index and for a slot that holds another kind.  The text of a slot that holds
  // one changes as by StringValue::SetString: the declared length, by which functions of derived fields go,
  // stays; CaseRecord::SetText sets it too.
  virtual bool SetValue(const std::string& name, double value) = 0;
  virtual bool SetValue(int index, double value) = 0;
  virtual bool SetValue(const std::string& name, double value, ScoreDictVar::DateTimeType type) = 0;
  virtual bool SetValue(int index, double value, ScoreDictVar::DateTimeType type) = 0;
  virtual bool SetValue(const std::string& name, const std::string& text) = 0;
  virtual bool SetValue(int index, const std::string& text) = 0;
  // A text becomes empty, which is a value; a number becomes system-missing.  False for an empty slot.
  virtual bool SetMissingValue(const std::string& name) = 0;
  virtual bool SetMissingValue(int index) = 0;
  // Deletes the value and leaves the slot empty; the name and its index stay.
  virtual void Remove(const std::string& name) = 0;
  virtual ScoreValue* Get(const std::string& name) const = 0;  // lent; null for an empty slot
  virtual ScoreValue* Get(int index) const = 0;
  // Reserve room for as many slots; no names are added.
  virtual void SetUpNameIndexMap(const std::vector<ScoreDictVar*>& vars) = 0;
  virtual void SetUpNameIndexMap(const std::vector<std::string>& names) = 0;
  virtual bool HasMap() const = 0;                          // can be read by index
  virtual int GetIndex(const std::string& name) const = 0;  // -1 when unknown
  virtual int Size() const = 0;                             // the number of slots
  // In slot order, or sorted by name.
  virtual std::vector<std::string> GetVarNames(bool bySlot) const = 0;
  virtual const std::vector<ScoreValue*>& GetAllValues() const = 0;  // lent, in slot order
  virtual void Display(std::ostream& out) const = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCORECASERECORD_H_
