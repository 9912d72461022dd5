// A range of values: an interval with open or closed ends, or one single value.
//
// Membership in an interval is decided on numbers; a text is never inside one, and bounds that are no numeric
// values count as infinite.  A single value compares as values do, texts included.
// Threads: const operations may be called by several threads.  Nothing throws.

#ifndef VEYRA_DATA_RANGE_H_
#define VEYRA_DATA_RANGE_H_

#include "data/HeldPart.h"
#include "data/NumericValue.h"
#include "data/Owned.h"
#include "veyra/Export.h"
#include "veyra/ScoreValueRange.h"

namespace KxVeyra_940 {

// Whether two bounds are the same: of one kind with identical numbers, infinities included, or equal by
// operator==.
VEYRA_API bool EqualBounds(const ScoreValue& left, const ScoreValue& right);

class VEYRA_API Range : public ScoreValueRange, public HeldPart {
 public:
  // Takes both bounds.  Null, and a system-missing minimum, stand for the infinity of their side.  The same
  // object twice makes a single value.
  Range(ScoreValue* min, ScoreValue* max, bool lowIncluded, bool highIncluded);
  Range(double min, double max, bool lowIncluded, bool highIncluded);
  // Takes the single value.  REQUIRES: not null.
  explicit Range(ScoreValue* value);
  Range(const Range& other) = default;
  Range& operator=(const Range& other) = default;
  ~Range() override;

  bool operator==(const ScoreValueRange& range) const override;
  ScoreValueRange* Clone() const override;
  // Take the value and delete the bound that they replace; null is ignored, the bound held already stays, and
  // the other bound is cloned.
  void SetMin(ScoreValue* value) override;
  void SetMax(ScoreValue* value) override;
  bool IsInRange(const ScoreValue* value) const override;
  bool IsInRange(double value) const override;
  ScoreValue* GetMin() const override;
  ScoreValue* GetMax() const override;
  bool GetHighEnd() const override;
  bool GetLowEnd() const override;
  void Display(std::ostream& out) const override;

  bool IsSingleValue() const { return fSingleValue; }
  // What numbers are compared with: infinite for bounds that are no numeric values.
  double GetMinNumber() const { return fMinNumber; }
  double GetMaxNumber() const { return fMaxNumber; }

 private:
  OwnedPart<ScoreValue> fMin;  // never null
  OwnedPart<ScoreValue> fMax;  // never null
  bool fHighIncluded;
  bool fLowIncluded;
  bool fSingleValue = false;
  double fMinNumber = -NumericValue::gInfinity;
  double fMaxNumber = NumericValue::gInfinity;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_RANGE_H_
