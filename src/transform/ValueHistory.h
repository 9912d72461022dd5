// The last values of a field, oldest first.  Values are copied; once the history is full, nothing is
// allocated for values of one kind.

#ifndef VEYRA_TRANSFORM_VALUEHISTORY_H_
#define VEYRA_TRANSFORM_VALUEHISTORY_H_

#include <cstddef>
#include <memory>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ValueHistory {
 public:
  explicit ValueHistory(std::size_t capacity = 1) : fCapacity(capacity) {}
  ValueHistory(const ValueHistory& other);
  ValueHistory& operator=(const ValueHistory& other);
  ~ValueHistory();

  bool IsFull() const { return fEntries.size() == fCapacity; }
  // Lent until the next Push; null for a value that was absent.  REQUIRES: IsFull().
  const ScoreValue* Oldest() const;
  // Appends a copy, null for an absent value; a full history drops its oldest one.
  void Push(const ScoreValue* value);

 private:
  struct Entry {
    std::unique_ptr<ScoreValue> value;  // kept for reuse when it is not there
    bool isThere = false;
  };
  static void Fill(Entry& entry, const ScoreValue* value);

  std::size_t fCapacity;
  std::vector<Entry> fEntries;  // grows up to the capacity, then a ring
  std::size_t fOldest = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_VALUEHISTORY_H_
