// What labels and prior probabilities of categories have in common: a part is a value with something about
// it, and a set of them is found by the values.
//
// Interfaces are the documented ones; only what is said about a value, and its name there, is the classes'
// own.

#ifndef VEYRA_DATA_VALUEDPARTS_H_
#define VEYRA_DATA_VALUEDPARTS_H_

#include <ostream>
#include <vector>

#include "data/HeldPart.h"
#include "data/IndexedList.h"
#include "data/Owned.h"
#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

// A part that compares by its value.  Without one it cannot be compared.
template <class Interface>
class VEYRA_API ValuedPart : public Interface, public HeldPart {
 public:
  bool operator==(const Interface& other) const override { return *fValue == *other.GetValue(); }
  bool operator>(const Interface& other) const override { return *fValue > *other.GetValue(); }
  bool operator<(const Interface& other) const override { return *fValue < *other.GetValue(); }
  bool operator<=(const Interface& other) const override { return *fValue <= *other.GetValue(); }
  bool operator>=(const Interface& other) const override { return *fValue >= *other.GetValue(); }
  ScoreValue* GetValue() const override { return fValue.Get(); }

 protected:
  // Takes the value, which may be null.
  explicit ValuedPart(ScoreValue* value) : fValue(value) {}
  ValuedPart(const ValuedPart& other) = default;
  ValuedPart& operator=(const ValuedPart& other) = default;
  ~ValuedPart() override = default;

  // Takes the value and deletes the one before; the same one may be another by now.
  void ReplaceValue(ScoreValue* value) {
    fValue.Replace(value);
    Edited();
  }
  // Writes the value and what is said about it under that name.
  template <class Text>
  void DisplayAs(std::ostream& out, const char* name, const Text& text) const {
    out << "Value: " << (fValue ? fValue->GetString() : "NULL") << ";  " << name << ": " << text << '\n';
  }

 private:
  OwnedPart<ScoreValue> fValue;
};

// `Own` is the library's class of `Part`.
template <class Interface, class Part, class Own>
class VEYRA_API ValuedPartSet : public Interface {
 public:
  bool Add(Part* part) override { return fParts.Add(part); }
  bool Remove(const Part* part) override { return part != nullptr && fParts.Remove(part->GetValue()); }
  int Size() const override { return fParts.Size(); }
  bool Contains(const ScoreValue* value) const override { return Find(value) >= 0; }

  // The position of the first held part whose value equals `value` by operator==; -1 when there is none and
  // for null.  Allocates nothing.
  int Find(const ScoreValue* value) const { return fParts.Find(value); }

 protected:
  ValuedPartSet() = default;
  ValuedPartSet(const ValuedPartSet& other) = default;
  ValuedPartSet& operator=(const ValuedPartSet& other) = default;
  ~ValuedPartSet() override = default;

  const IndexedList<Part, Own>& Parts() const { return fParts; }
  void DisplayAs(std::ostream& out, const char* name) const {
    out << "Start " << name << " Display:\n";
    for (const Part* part : fParts.All()) part->Display(out);
    out << "End of " << name << " Display.\n\n";
  }

 private:
  IndexedList<Part, Own> fParts;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_VALUEDPARTS_H_
