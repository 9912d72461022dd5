#include "data/Range.h"

#include <ostream>

namespace KxVeyra_940 {

namespace {

bool IsNumeric(const ScoreValue& value) { return value.GetType() == ScoreValue::kNumericValueType; }

bool HasNumber(const ScoreValue& value) {
  return IsNumeric(value) || value.GetType() == ScoreValue::kDateTimeValueType;
}

// A minimum that is no number stands for one without end.
void OpenMissingMinimum(ScoreValue& min) {
  if (IsNumeric(min) && min.IsSystemMissingValue())
    static_cast<NumericValue&>(min).SetDoubleValue(-NumericValue::gInfinity);
}

void DisplayBound(std::ostream& out, const ScoreValue& bound) {
  if (HasNumber(bound)) {
    out << bound.GetDouble();
  } else {
    out << bound.GetString();
  }
}

}  // namespace

bool EqualBounds(const ScoreValue& left, const ScoreValue& right) {
  if (IsNumeric(left) && IsNumeric(right) && left.GetDouble() == right.GetDouble()) return true;
  return left == right;
}

Range::Range(ScoreValue* min, ScoreValue* max, bool lowIncluded, bool highIncluded)
    : fMin(min == nullptr ? new NumericValue(-NumericValue::gInfinity) : min),
      fHighIncluded(highIncluded),
      fLowIncluded(lowIncluded) {
  OpenMissingMinimum(*fMin);
  if (max == nullptr) {
    fMax.Replace(new NumericValue(NumericValue::gInfinity));
  } else {
    fMax.Replace(max == min ? fMin->Clone() : max);
  }
  if (IsNumeric(*fMin)) fMinNumber = fMin->GetDouble();
  if (IsNumeric(*fMax)) fMaxNumber = fMax->GetDouble();
  fSingleValue = (min != nullptr && max == min) || *fMin == *fMax;
}

Range::Range(double min, double max, bool lowIncluded, bool highIncluded)
    : fMin(new NumericValue(min)),
      fMax(new NumericValue(max)),
      fHighIncluded(highIncluded),
      fLowIncluded(lowIncluded),
      fSingleValue(min == max),
      fMinNumber(min),
      fMaxNumber(max) {
  OpenMissingMinimum(*fMin);
}

Range::Range(ScoreValue* value) : fMin(value), fHighIncluded(true), fLowIncluded(true), fSingleValue(true) {
  OpenMissingMinimum(*fMin);
  fMax.Replace(fMin->Clone());
  fMinNumber = fMin->GetDouble();
  fMaxNumber = fMax->GetDouble();
}

Range::~Range() = default;

bool Range::operator==(const ScoreValueRange& range) const {
  return EqualBounds(*fMin, *range.GetMin()) && EqualBounds(*fMax, *range.GetMax()) &&
         fHighIncluded == range.GetHighEnd() && fLowIncluded == range.GetLowEnd();
}

ScoreValueRange* Range::Clone() const { return new Range(*this); }

void Range::SetMin(ScoreValue* value) {
  if (value == nullptr) return;
  fMin.Replace(value == fMax.Get() ? value->Clone() : value);
  OpenMissingMinimum(*fMin);
  if (IsNumeric(*fMin)) fMinNumber = fMin->GetDouble();
  fSingleValue = *fMin == *fMax;
  Edited();
}

void Range::SetMax(ScoreValue* value) {
  if (value == nullptr) return;
  fMax.Replace(value == fMin.Get() ? value->Clone() : value);
  if (IsNumeric(*fMax)) fMaxNumber = fMax->GetDouble();
  fSingleValue = *fMin == *fMax;
  Edited();
}

bool Range::IsInRange(const ScoreValue* value) const {
  if (value == nullptr) return false;
  if (fSingleValue) return *value == *fMin;
  return HasNumber(*value) && !value->IsSystemMissingValue() && IsInRange(value->GetDouble());
}

bool Range::IsInRange(double value) const {
  if (fSingleValue) return NumericValue::IsEqual(value, fMinNumber);
  if (NumericValue::IsSystemMissingValue(value)) return false;
  if (fLowIncluded && NumericValue::IsEqual(value, fMinNumber)) return true;
  if (fHighIncluded && NumericValue::IsEqual(value, fMaxNumber)) return true;
  return fMinNumber < value && value < fMaxNumber;
}

ScoreValue* Range::GetMin() const { return fMin.Get(); }

ScoreValue* Range::GetMax() const { return fMax.Get(); }

bool Range::GetHighEnd() const { return fHighIncluded; }

bool Range::GetLowEnd() const { return fLowIncluded; }

void Range::Display(std::ostream& out) const {
  out << "  Start Range Display   \nMinValue: ";
  DisplayBound(out, *fMin);
  out << ";  MaxValue: ";
  DisplayBound(out, *fMax);
  out << (fHighIncluded ? "; High End included" : "; High End not included");
  out << (fLowIncluded ? "; lower End included" : "; lower End not included");
  out << "\n End of Range Display\n\n";
}

}  // namespace KxVeyra_940
