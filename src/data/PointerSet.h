// Which objects an owner holds, by address: owners ask at every addition whether they hold the object
// already.
//
// Copies of owners hold other objects, so there is no reason to copy a set.  Threads: Contains may run in
// several.

#ifndef VEYRA_DATA_POINTERSET_H_
#define VEYRA_DATA_POINTERSET_H_

#include <cstdint>

#include "data/FlatTable.h"

namespace KxVeyra_940 {

class PointerSet {
 public:
  PointerSet() = default;
  PointerSet(const PointerSet&) = delete;
  PointerSet& operator=(const PointerSet&) = delete;
  ~PointerSet() = default;

  bool Contains(const void* object) const {
    return object != nullptr && fTable.Find(KeyOf(object)) != nullptr;
  }
  // Adds an object that the set does not have, and takes out one that it has; null is ignored.
  void Insert(const void* object) {
    if (object != nullptr) fTable.Add({object});
  }
  void Erase(const void* object) {
    if (object != nullptr) fTable.Erase(KeyOf(object));
  }
  void Clear() { fTable.Clear(); }

 private:
  static std::uint64_t KeyOf(const void* object) { return reinterpret_cast<std::uintptr_t>(object); }

  struct Held {
    const void* object = nullptr;
    bool IsEmpty() const { return object == nullptr; }
    std::uint64_t Key() const { return KeyOf(object); }
  };

  FlatTable<Held> fTable;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_POINTERSET_H_
