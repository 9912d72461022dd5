// One row of data: named slots, each empty or holding one value.
//
//   CaseRecord record(2);
//   record.Add("age", nullptr);                 // slot 0
//   record.Add("name", nullptr);                // slot 1
//   for each case: record.SetValue(0, 42.0); record.SetText(1, "Ann");
//
// Once every slot has held a value of its kind and texts have reached their length, no setter allocates:
// what Clear and Remove take out of a slot is used again for its next value of the kind.  A value of a class
// that the host derived is deleted.  Add deletes the value that it replaces, keeps the one that the slot
// holds already, and clones one that another slot holds.
// Threads: a record belongs to one scoring call at a time.  Nothing throws.

#ifndef VEYRA_DATA_CASERECORD_H_
#define VEYRA_DATA_CASERECORD_H_

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "data/Owned.h"
#include "data/PointerSet.h"
#include "veyra/Export.h"
#include "veyra/ScoreCaseRecord.h"

namespace KxVeyra_940 {

class VEYRA_API CaseRecord : public ScoreCaseRecord {
 public:
  // Reserves room for that many slots; there are none yet.
  explicit CaseRecord(int capacity = 0);
  // Copies clone every value; assignment deletes the own ones.
  CaseRecord(const CaseRecord& other);
  CaseRecord& operator=(const CaseRecord& other);
  ~CaseRecord() override;

  void Add(const std::string& name, ScoreValue* value) override;
  bool SetValue(const std::string& name, double value) override;
  bool SetValue(int index, double value) override;
  bool SetValue(const std::string& name, double value, ScoreDictVar::DateTimeType type) override;
  bool SetValue(int index, double value, ScoreDictVar::DateTimeType type) override;
  // A text in the slot keeps its declared length; that of a new one is its number of bytes.
  bool SetValue(const std::string& name, const std::string& text) override;
  bool SetValue(int index, const std::string& text) override;
  bool SetMissingValue(const std::string& name) override;
  bool SetMissingValue(int index) override;
  void Remove(const std::string& name) override;
  ScoreValue* Get(const std::string& name) const override;
  ScoreValue* Get(int index) const override;
  void SetUpNameIndexMap(const std::vector<ScoreDictVar*>& vars) override;
  void SetUpNameIndexMap(const std::vector<std::string>& names) override;
  bool HasMap() const override;
  int GetIndex(const std::string& name) const override;
  int Size() const override;
  std::vector<std::string> GetVarNames(bool bySlot) const override;
  const std::vector<ScoreValue*>& GetAllValues() const override;
  void Display(std::ostream& out) const override;

  // As SetValue with a text, and the declared length becomes its number of bytes, whatever it was.
  bool SetText(int index, std::string_view text);
  // Empties a slot; an index outside the slots is ignored.
  void Clear(int index);
  // Records with equal numbers hold the same names in the same slots; 0 without names.
  std::uint64_t GetLayoutId() const { return fLayoutId; }

 private:
  bool IsSlot(int index) const { return index >= 0 && static_cast<std::size_t>(index) < fSlots.Size(); }
  void Reserve(std::size_t size);
  void HoldAll();
  void Put(OwnedList<ScoreValue>& values, std::size_t slot, ScoreValue* value);
  template <class Value>
  Value* Slot(int index, ScoreValue::ValueType type);
  template <class Value>
  ScoreValue* Refill(std::size_t slot, ScoreValue::ValueType type);

  std::map<std::string, int> fIndexes;
  OwnedList<ScoreValue> fSlots;
  OwnedList<ScoreValue> fParked;  // by slot: a value for reuse, only where the slot is empty
  PointerSet fHeld;               // the values of both
  std::uint64_t fLayoutId = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_CASERECORD_H_
