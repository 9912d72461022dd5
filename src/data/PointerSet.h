// Which objects an owner holds, by address.
//
// Open addressing over one pointer a place: owners ask at every addition whether they hold the object
// already. Copies of owners hold other objects, so there is no reason to copy a set.  Threads: Contains may
// run in several.

#ifndef VEYRA_DATA_POINTERSET_H_
#define VEYRA_DATA_POINTERSET_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KxVeyra_940 {

class PointerSet {
 public:
  PointerSet() = default;
  PointerSet(const PointerSet&) = delete;
  PointerSet& operator=(const PointerSet&) = delete;
  ~PointerSet() = default;

  bool Contains(const void* object) const {
    return object != nullptr && !fPlaces.empty() && fPlaces[PlaceOf(object)] == object;
  }

  // Adds the object, which the set does not have; null is ignored.
  void Insert(const void* object) {
    if (object == nullptr) return;
    if (2 * (fSize + 1) > fPlaces.size()) Grow();
    fPlaces[PlaceOf(object)] = object;
    ++fSize;
  }

  // Takes out an object that the set has; null is ignored.
  void Erase(const void* object) {
    if (!Contains(object)) return;
    std::size_t hole = PlaceOf(object);
    --fSize;
    // What was put further on because its place was taken moves up.
    for (std::size_t i = Next(hole); fPlaces[i] != nullptr; i = Next(i)) {
      const std::size_t distance = (i - HomeOf(fPlaces[i])) & Mask();
      if (distance < ((i - hole) & Mask())) continue;
      fPlaces[hole] = fPlaces[i];
      hole = i;
    }
    fPlaces[hole] = nullptr;
  }

  void Clear() {
    fPlaces.clear();
    fSize = 0;
  }

 private:
  std::size_t Mask() const { return fPlaces.size() - 1; }  // the size is a power of 2
  std::size_t Next(std::size_t place) const { return (place + 1) & Mask(); }

  // The multiplier of a Weyl sequence spreads addresses at any distance over the table.
  std::size_t HomeOf(const void* object) const {
    const std::uint64_t spread = reinterpret_cast<std::uintptr_t>(object) * 0x9e3779b97f4a7c15U;
    return static_cast<std::size_t>(spread >> 32) & Mask();
  }

  // Where the object is, or would be.
  std::size_t PlaceOf(const void* object) const {
    std::size_t place = HomeOf(object);
    while (fPlaces[place] != nullptr && fPlaces[place] != object) place = Next(place);
    return place;
  }

  void Grow() {
    std::vector<const void*> old(fPlaces.empty() ? 16 : 2 * fPlaces.size());
    old.swap(fPlaces);
    for (const void* object : old) {
      if (object != nullptr) fPlaces[PlaceOf(object)] = object;
    }
  }

  std::vector<const void*> fPlaces;  // at most half of them are taken
  std::size_t fSize = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_POINTERSET_H_
