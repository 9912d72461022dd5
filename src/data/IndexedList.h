// The list behind value labels and value probabilities: owned entries in order, found by their value.

#ifndef VEYRA_DATA_INDEXEDLIST_H_
#define VEYRA_DATA_INDEXEDLIST_H_

#include <algorithm>
#include <cstdint>
#include <typeinfo>
#include <vector>

#include "data/Identity.h"
#include "data/Owned.h"
#include "data/PointerSet.h"
#include "data/ValueIndex.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

// `Entry` has GetValue() and Clone(); `Own` is the library's class of it, a HeldPart.  Entries of that very
// class are found through an index as long as none was edited; otherwise, and where a host's class is among
// them, all are compared, so that the answer is always that of what is held.  Adding and removing bring the
// index up to date, looking up never does: many threads may do that.  An entry without a value is never
// found.
//
// Entries keep their numbers in the index when others go; what is behind these moves up in the list alone,
// and the index is made again when most of its numbers stand for nothing.
template <class Entry, class Own>
class IndexedList {
 public:
  IndexedList() = default;
  IndexedList(const IndexedList& other) : fEntries(other.fEntries) {
    if (!other.fIsStale) {
      fIndex = other.fIndex;
      fNumbers = other.fNumbers;
    }
    WatchAll();
    if (other.fIsStale) Rebuild();
  }
  IndexedList& operator=(const IndexedList& other) {
    if (this == &other) return *this;
    fEntries = other.fEntries;
    fContentId = NextIdentity();
    fHeld.Clear();
    WatchAll();
    Rebuild();
    return *this;
  }
  ~IndexedList() = default;

  const std::vector<Entry*>& All() const { return fEntries.All(); }
  int Size() const { return static_cast<int>(fEntries.Size()); }
  const Entry& At(int position) const { return *fEntries.At(static_cast<std::size_t>(position)); }

  // Two lists, or one at two times, with equal numbers hold the same entries with the same values; 0 when
  // nothing can be said because an entry was edited in place or may be unnoticed.
  std::uint64_t GetContentId() const { return fIsStale ? 0 : fContentId; }

  // Takes the entry; false for null and for an entry held already.
  bool Add(Entry* entry) {
    if (entry == nullptr || fHeld.Contains(entry)) return false;
    fEntries.Append(entry);
    fContentId = NextIdentity();
    Watch(entry);
    if (fIsStale) {
      Rebuild();
    } else {
      Index(*entry);
    }
    return true;
  }

  // Deletes the first entry of the value; false when there is none.
  bool Remove(const ScoreValue* value) {
    const int position = Find(value);
    if (position < 0) return false;
    const auto place = static_cast<std::size_t>(position);
    const bool isForgotten = !fIsStale && fIndex.Remove(fNumbers[place], At(position).GetValue());
    fHeld.Erase(fEntries.At(place));
    fEntries.Erase(place);
    fContentId = NextIdentity();
    if (isForgotten && fIndex.Size() <= 2 * Size()) {
      fNumbers.erase(fNumbers.begin() + position);
    } else {
      Rebuild();
    }
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
    const auto isMatch = [&](int position) { return matches(*At(position).GetValue()); };
    if (!fIsStale) {
      const int number =
          fIndex.FindFirst(*value, [&](int candidate) { return isMatch(PositionOf(candidate)); });
      return number < 0 ? -1 : PositionOf(number);
    }
    for (int i = 0; i < Size(); ++i) {
      if (At(i).GetValue() != nullptr && isMatch(i)) return i;
    }
    return -1;
  }

 private:
  static bool IsOwn(const Entry& entry) { return typeid(entry) == typeid(Own); }

  // Of an entry that the index knows by `number`.
  int PositionOf(int number) const {
    if (fIndex.Size() == Size()) return number;  // none has gone
    return static_cast<int>(std::lower_bound(fNumbers.begin(), fNumbers.end(), number) - fNumbers.begin());
  }

  void Watch(Entry* entry) {
    fHeld.Insert(entry);
    if (IsOwn(*entry)) {
      static_cast<Own*>(entry)->SetHolder(&fIsStale);
    } else {
      fIsStale = true;
    }
  }
  void WatchAll() {
    for (Entry* entry : fEntries.All()) Watch(entry);
  }

  void Index(const Entry& entry) {
    fNumbers.push_back(fIndex.Size());
    fIndex.Append(entry.GetValue());
  }

  // A host's entry keeps the index stale: it may change at any time.
  void Rebuild() {
    fIndex.Clear();
    fNumbers.clear();
    fIsStale = false;
    for (const Entry* entry : fEntries.All()) fIsStale = fIsStale || !IsOwn(*entry);
    if (fIsStale) return;
    for (const Entry* entry : fEntries.All()) Index(*entry);
  }

  OwnedList<Entry> fEntries;
  PointerSet fHeld;           // the entries
  ValueIndex fIndex;          // by number, in the order of addition
  std::vector<int> fNumbers;  // by position, ascending; of entries in the index
  bool fIsStale = false;      // raised by the entries
  std::uint64_t fContentId = NextIdentity();
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_INDEXEDLIST_H_
