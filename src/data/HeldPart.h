// A part of a set that tells its holder when what the holder looks up by has changed.
//
// Sets index the values of their parts as they take them.  A part lent by its set can be edited in place, so
// each part of the library's own classes knows a flag of its holder and raises it.  Parts of other classes
// raise nothing: a holder goes over those one by one.
// Threads: a part that is edited, and its holder with it, belong to one thread.

#ifndef VEYRA_DATA_HELDPART_H_
#define VEYRA_DATA_HELDPART_H_

namespace KxVeyra_940 {

class HeldPart {
 public:
  // The flag to raise, or null.  It must outlive the part or be replaced.
  void SetHolder(bool* isEdited) { fIsEdited = isEdited; }

 protected:
  HeldPart() = default;
  // A copy is nobody's; what is assigned to stays where it is, edited.
  HeldPart(const HeldPart&) {}
  HeldPart& operator=(const HeldPart& other) {
    if (this != &other) Edited();
    return *this;
  }
  ~HeldPart() = default;

  void Edited() {
    if (fIsEdited != nullptr) *fIsEdited = true;
  }

 private:
  bool* fIsEdited = nullptr;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_HELDPART_H_
