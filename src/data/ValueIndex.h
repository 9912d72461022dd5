// Finds the first of many values that equals a given one, without comparing it with all of them.
//
// Values that are equal under any of the library's equalities share a bucket or lie in neighbouring ones, so
// the caller's own comparison of a few candidates gives what a scan of all of them would give.  The index
// holds positions, no values: it may be copied with the list that it belongs to. Threads: FindFirst may run
// in several threads.

#ifndef VEYRA_DATA_VALUEINDEX_H_
#define VEYRA_DATA_VALUEINDEX_H_

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class ValueIndex {
 public:
  // Adds the value at the next position; null takes a position and is never found.
  void Append(const ScoreValue* value);
  void Clear();
  void Reserve(std::size_t size);

  // The smallest position that holds a value equal to `value` and for which `matches(position)` is true, else
  // -1.  `matches` must be true for equal values only.  Allocates nothing.
  template <class Matches>
  int FindFirst(const ScoreValue& value, Matches matches) const {
    const Keys keys = KeysOf(value);
    const int first = FirstInBucket(keys.low, matches);
    if (keys.high == keys.low) return first;
    const int second = FirstInBucket(keys.high, matches);
    return first < 0 || (second >= 0 && second < first) ? second : first;
  }

 private:
  // The buckets that may hold an equal value: two at most.
  struct Keys {
    std::uint64_t low;
    std::uint64_t high;
  };
  // One chain of positions, in ascending order.
  struct Chain {
    int first;
    int last;
  };

  static Keys KeysOf(const ScoreValue& value);
  static std::uint64_t KeyOf(const ScoreValue& value);

  template <class Matches>
  int FirstInBucket(std::uint64_t key, Matches& matches) const {
    const auto chain = fChains.find(key);
    if (chain == fChains.end()) return -1;
    int position = chain->second.first;
    while (position >= 0 && !matches(position)) position = fNext[static_cast<std::size_t>(position)];
    return position;
  }

  std::unordered_map<std::uint64_t, Chain> fChains;
  std::vector<int> fNext;  // by position; -1 ends a chain
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_VALUEINDEX_H_
