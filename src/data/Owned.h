// Owners of parts that are known by an abstract interface and copied through its Clone().
//
// A class built from them gets copying, assignment and destruction right with "= default"; self-assignment is
// safe.  No locks.

#ifndef VEYRA_DATA_OWNED_H_
#define VEYRA_DATA_OWNED_H_

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace KxVeyra_940 {

// One part or none.
template <class T>
class OwnedPart {
 public:
  OwnedPart() = default;
  explicit OwnedPart(T* part) : fPart(part) {}  // takes it
  OwnedPart(const OwnedPart& other) : fPart(CloneOf(other.fPart.get())) {}
  OwnedPart& operator=(const OwnedPart& other) {
    if (this != &other) fPart.reset(CloneOf(other.fPart.get()));
    return *this;
  }
  OwnedPart(OwnedPart&& other) noexcept = default;
  OwnedPart& operator=(OwnedPart&& other) noexcept = default;
  ~OwnedPart() = default;

  T* Get() const { return fPart.get(); }
  T* operator->() const { return fPart.get(); }
  T& operator*() const { return *fPart; }
  explicit operator bool() const { return fPart != nullptr; }

  // Takes `part` and deletes the part held before; the part held already just stays.
  void Replace(T* part) {
    if (part != fPart.get()) fPart.reset(part);
  }
  // Takes `part` and leaves the part held before to whoever else knows it.
  void ReplaceKeepingOld(T* part) {
    if (part == fPart.get()) return;
    static_cast<void>(fPart.release());
    fPart.reset(part);
  }

 private:
  static T* CloneOf(const T* part) { return part == nullptr ? nullptr : part->Clone(); }

  std::unique_ptr<T> fPart;
};

// Parts in order, some of which may be null.  The vector of plain pointers is what interfaces hand out.
template <class T>
class OwnedList {
 public:
  OwnedList() = default;
  // The object stands before its parts are cloned: when memory runs out, the destructor deletes those made.
  OwnedList(const OwnedList& other) : OwnedList() {
    fParts.reserve(other.fParts.size());
    for (const T* part : other.fParts) Append(part == nullptr ? nullptr : part->Clone());
  }
  OwnedList& operator=(const OwnedList& other) {
    if (this != &other) {
      OwnedList copy(other);
      fParts.swap(copy.fParts);
    }
    return *this;
  }
  ~OwnedList() {
    for (T* part : fParts) delete part;
  }

  const std::vector<T*>& All() const { return fParts; }
  std::size_t Size() const { return fParts.size(); }
  T* At(std::size_t position) const { return fParts[position]; }
  void Reserve(std::size_t size) { fParts.reserve(size); }

  // Takes `part`; the caller keeps it when memory runs out.
  void Append(T* part) { fParts.push_back(part); }
  // Takes `part` and deletes what was there, unless it is the same.
  void Replace(std::size_t position, T* part) {
    if (fParts[position] != part) delete std::exchange(fParts[position], part);
  }
  // Hands the part to the caller and leaves null.
  T* Release(std::size_t position) { return std::exchange(fParts[position], nullptr); }
  // Deletes the part and closes the gap.
  void Erase(std::size_t position) {
    delete fParts[position];
    fParts.erase(fParts.begin() + static_cast<std::ptrdiff_t>(position));
  }
  // Closes the gaps that null parts are.
  void EraseNulls() { std::erase(fParts, nullptr); }

 private:
  std::vector<T*> fParts;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_OWNED_H_
