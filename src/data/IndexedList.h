// The list behind value labels and value probabilities: owned entries in order, found by their value.

#ifndef VEYRA_DATA_INDEXEDLIST_H_
#define VEYRA_DATA_INDEXEDLIST_H_

#include "data/Owned.h"
#include "data/ValueIndex.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

// `Entry` has GetValue() and Clone().  The value of an entry must not change while the list holds it.  An
// entry without a value is never found.
template <class Entry>
class IndexedList {
 public:
  const std::vector<Entry*>& All() const { return fEntries.All(); }
  int Size() const { return static_cast<int>(fEntries.Size()); }
  const Entry& At(int position) const { return *fEntries.At(static_cast<std::size_t>(position)); }

  // Takes the entry; false for null and for an entry held already.
  bool Add(Entry* entry) {
    if (entry == nullptr || Holds(entry)) return false;
    fEntries.Append(entry);
    fIndex.Append(entry->GetValue());
    return true;
  }

  // Deletes the first entry of the value; false when there is none.
  bool Remove(const ScoreValue* value) {
    const int position = Find(value);
    if (position < 0) return false;
    fEntries.Erase(static_cast<std::size_t>(position));
    fIndex.Clear();
    for (const Entry* entry : fEntries.All()) fIndex.Append(entry->GetValue());
    return true;
  }

  // The first position whose value equals `value`, else -1.
  int Find(const ScoreValue* value) const {
    return FindFirst(value, [value](const ScoreValue& held) { return held == *value; });
  }

  // The first position for whose value `matches` is true, which it may be for equal values only; else -1.
  template <class Matches>
  int FindFirst(const ScoreValue* value, Matches matches) const {
    if (value == nullptr) return -1;
    return fIndex.FindFirst(*value, [&](int position) { return matches(*At(position).GetValue()); });
  }

 private:
  bool Holds(const Entry* entry) const {
    if (entry->GetValue() == nullptr) return fEntries.Holds(entry);
    return fIndex.FindFirst(*entry->GetValue(), [&](int position) { return &At(position) == entry; }) >= 0;
  }

  OwnedList<Entry> fEntries;
  ValueIndex fIndex;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_INDEXEDLIST_H_
