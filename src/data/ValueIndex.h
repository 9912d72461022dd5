// Finds the first of many values, or pairs of values, that equals a given one, without comparing it with all
// of them.
//
// Values that are equal under any of the library's equalities share a bucket or lie in neighbouring ones, so
// the caller's own comparison of a few candidates gives what a scan of all of them would give.  The index
// holds positions, no values: it may be copied with the list that it belongs to. Threads: FindFirst may run
// in several threads.

#ifndef VEYRA_DATA_VALUEINDEX_H_
#define VEYRA_DATA_VALUEINDEX_H_

#include <cstdint>
#include <vector>

#include "data/FlatTable.h"
#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ValueIndex {
 public:
  // Adds the value at the next position; null takes a position and is never found.
  void Append(const ScoreValue* value);
  void Append(const ScoreValue& first, const ScoreValue& second);
  // Forgets the value at a position, which stays taken; false when it is not where such a value would be.
  bool Remove(int position, const ScoreValue* value);
  bool Remove(int position, const ScoreValue& first, const ScoreValue& second);
  void Clear();
  // How many positions are taken.
  int Size() const { return static_cast<int>(fNext.size()); }

  // The smallest position that holds a value equal to `value` and for which `matches(position)` is true, else
  // -1.  `matches` must be true for equal values only.  Allocates nothing.
  template <class Matches>
  int FindFirst(const ScoreValue& value, Matches matches) const {
    return FindInBuckets(KeysOf(value), matches);
  }
  // The same for pairs of which both values are equal.
  template <class Matches>
  int FindFirst(const ScoreValue& first, const ScoreValue& second, Matches matches) const {
    const Keys lefts = KeysOf(first);
    const Keys rights = KeysOf(second);
    const int found = FindInBuckets({Joined(lefts.low, rights.low), Joined(lefts.low, rights.high)}, matches);
    if (lefts.high == lefts.low) return found;
    return Earlier(found,
                   FindInBuckets({Joined(lefts.high, rights.low), Joined(lefts.high, rights.high)}, matches));
  }

 private:
  // The buckets that may hold an equal value: two at most.
  struct Keys {
    std::uint64_t low;
    std::uint64_t high;
  };
  // One chain of positions, in ascending order.
  struct Chain {
    std::uint64_t key = 0;
    int first = -1;
    int last = -1;
    bool IsEmpty() const { return first < 0; }
    std::uint64_t Key() const { return key; }
  };

  static Keys KeysOf(const ScoreValue& value);
  static std::uint64_t KeyOf(const ScoreValue& value);
  static std::uint64_t Joined(std::uint64_t left, std::uint64_t right) {
    return left ^ ((right << 29 | right >> 35) * 0xbf58476d1ce4e5b9U);
  }
  static int Earlier(int left, int right) { return left < 0 || (right >= 0 && right < left) ? right : left; }

  void Link(std::uint64_t key);
  bool Unlink(int position, std::uint64_t key);

  template <class Matches>
  int FindInBuckets(const Keys& keys, Matches& matches) const {
    const int found = FirstInBucket(keys.low, matches);
    return keys.high == keys.low ? found : Earlier(found, FirstInBucket(keys.high, matches));
  }

  template <class Matches>
  int FirstInBucket(std::uint64_t key, Matches& matches) const {
    const Chain* const chain = fChains.Find(key);
    if (chain == nullptr) return -1;
    int position = chain->first;
    while (position >= 0 && !matches(position)) position = fNext[static_cast<std::size_t>(position)];
    return position;
  }

  FlatTable<Chain> fChains;
  std::vector<int> fNext;  // by position; -1 ends a chain
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_VALUEINDEX_H_
