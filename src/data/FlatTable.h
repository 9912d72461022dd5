// A hash table of small entries, side by side in one array: a search touches one or two cache lines.
//
// An `Entry` knows its key (Key()) and whether it is one (IsEmpty()); a new one is empty.  Threads: const
// operations may run in several.

#ifndef VEYRA_DATA_FLATTABLE_H_
#define VEYRA_DATA_FLATTABLE_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KxVeyra_940 {

template <class Entry>
class FlatTable {
 public:
  // The entry of the key, or null; lent until the table changes.
  const Entry* Find(std::uint64_t key) const {
    if (fPlaces.empty()) return nullptr;
    const Entry& entry = fPlaces[PlaceOf(key)];
    return entry.IsEmpty() ? nullptr : &entry;
  }
  Entry* Find(std::uint64_t key) {
    return const_cast<Entry*>(static_cast<const FlatTable*>(this)->Find(key));
  }

  // Adds an entry of a key that the table does not have.
  void Add(const Entry& entry) {
    if (2 * (fSize + 1) > fPlaces.size()) Grow();
    fPlaces[PlaceOf(entry.Key())] = entry;
    ++fSize;
  }

  // REQUIRES: the table has the key.
  void Erase(std::uint64_t key) {
    std::size_t hole = PlaceOf(key);
    --fSize;
    // What was put further on because its place was taken moves up.
    for (std::size_t i = Next(hole); !fPlaces[i].IsEmpty(); i = Next(i)) {
      const std::size_t distance = (i - HomeOf(fPlaces[i].Key())) & Mask();
      if (distance < ((i - hole) & Mask())) continue;
      fPlaces[hole] = fPlaces[i];
      hole = i;
    }
    fPlaces[hole] = Entry();
  }

  void Clear() {
    fPlaces.clear();
    fSize = 0;
  }

 private:
  std::size_t Mask() const { return fPlaces.size() - 1; }  // the size is a power of 2
  std::size_t Next(std::size_t place) const { return (place + 1) & Mask(); }

  // The multiplier of a Weyl sequence spreads keys at any distance over the table.
  std::size_t HomeOf(std::uint64_t key) const {
    return static_cast<std::size_t>((key * 0x9e3779b97f4a7c15U) >> 32) & Mask();
  }

  // Where the entry of the key is, or would be.
  std::size_t PlaceOf(std::uint64_t key) const {
    std::size_t place = HomeOf(key);
    while (!fPlaces[place].IsEmpty() && fPlaces[place].Key() != key) place = Next(place);
    return place;
  }

  void Grow() {
    std::vector<Entry> old(fPlaces.empty() ? 16 : 2 * fPlaces.size());
    old.swap(fPlaces);
    for (const Entry& entry : old) {
      if (!entry.IsEmpty()) fPlaces[PlaceOf(entry.Key())] = entry;
    }
  }

  std::vector<Entry> fPlaces;  // at most half of them are taken
  std::size_t fSize = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_FLATTABLE_H_
