// The ranges of values that count as missing for one variable.
//
// Single values are found through an index, intervals through a tree, so a set may hold many.  A held range
// may be edited through its own setters: from then on, until a range is added or removed, look-ups go over
// the ranges one by one, as they do where a host's class of range is among them. Threads: const operations
// may be called by several threads.  Nothing throws.

#ifndef VEYRA_DATA_MISSINGVALUESET_H_
#define VEYRA_DATA_MISSINGVALUESET_H_

#include "data/CoveredNumbers.h"
#include "data/Owned.h"
#include "data/ValueIndex.h"
#include "veyra/Export.h"
#include "veyra/ScoreMissingValueSet.h"

namespace KxVeyra_940 {

class VEYRA_API MissingValueSet : public ScoreMissingValueSet {
 public:
  MissingValueSet() = default;
  MissingValueSet(const MissingValueSet& other);
  MissingValueSet& operator=(const MissingValueSet& other);
  ~MissingValueSet() override;

  ScoreMissingValueSet* Clone() const override;
  // A range held already, or one equal to it, is refused and stays whose it was.
  bool Add(ScoreValueRange* range) override;
  bool Remove(const ScoreValueRange* range) override;
  int Size() const override;
  bool Contains(const ScoreValueRange* range) const override;
  std::vector<ScoreValueRange*> GetMissingValues() const override;
  void Display(std::ostream& out) const override;

  // Whether some range contains the value.  Allocates nothing.
  bool Covers(const ScoreValue* value) const;

 private:
  const ScoreValueRange& At(int position) const;
  void Index(int position);
  bool Forget(int position);
  void Rebuild();
  int Find(const ScoreValueRange* range) const;  // the range or one equal to it; -1 when absent
  template <class Matches>
  int Scan(Matches matches) const;

  OwnedList<ScoreValueRange> fRanges;  // null where one was removed
  int fSize = 0;                       // of ranges that are there
  ValueIndex fBounds;                  // of all ranges
  ValueIndex fSingles;                 // of single values
  CoveredNumbers fCovered;             // by the others
  bool fIsStale = false;               // what is indexed is not what is held; raised by the ranges
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_MISSINGVALUESET_H_
