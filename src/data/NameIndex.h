// Finds the position of a name in a list of names that its owner keeps.
//
// Open addressing over 8 bytes a place: a search touches one or two cache lines of the index and the name
// that it finds.  The index holds no names; it asks for the name at a position.  Threads: Find may run in
// several.

#ifndef VEYRA_DATA_NAMEINDEX_H_
#define VEYRA_DATA_NAMEINDEX_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace KxVeyra_940 {

class NameIndex {
 public:
  static constexpr std::uint32_t kNone = UINT32_MAX;

  // The position whose name is `name`, or kNone.  `nameAt(position)` gives the name at a position.
  template <class NameAt>
  std::uint32_t Find(std::string_view name, NameAt nameAt) const {
    if (fPlaces.empty()) return kNone;
    const std::uint32_t hash = HashOf(name);
    for (std::size_t i = hash & Mask();; i = (i + 1) & Mask()) {
      const Place& place = fPlaces[i];
      if (place.position == kNone) return kNone;
      if (place.hash == hash && nameAt(place.position) == name) return place.position;
    }
  }

  // Adds a name that the index does not have, at the next position.
  void Append(std::string_view name) {
    if (2 * (fSize + 1) > fPlaces.size()) Grow();
    Put({HashOf(name), static_cast<std::uint32_t>(fSize++)});
  }

  void Clear() {
    fPlaces.clear();
    fSize = 0;
  }

 private:
  struct Place {
    std::uint32_t hash;
    std::uint32_t position;  // kNone: empty
  };

  static std::uint32_t HashOf(std::string_view name) {
    const std::size_t hash = std::hash<std::string_view>()(name);
    return static_cast<std::uint32_t>(hash ^ (hash >> 32));
  }

  std::size_t Mask() const { return fPlaces.size() - 1; }  // the size is a power of 2

  void Put(const Place& place) {
    std::size_t i = place.hash & Mask();
    while (fPlaces[i].position != kNone) i = (i + 1) & Mask();
    fPlaces[i] = place;
  }

  void Grow() {
    std::vector<Place> old(fPlaces.empty() ? 16 : 2 * fPlaces.size(), Place{0, kNone});
    old.swap(fPlaces);
    for (const Place& place : old) {
      if (place.position != kNone) Put(place);
    }
  }

  std::vector<Place> fPlaces;  // at most half of them are taken
  std::size_t fSize = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_NAMEINDEX_H_
