// One datum: a number, a text, or a date and time.
//
// A value's type names its class: NumericValue, StringValue or DateTimeValue, or a class derived from it.
// Nothing else implements this interface.
//
// What the library computes goes by the content that those classes store (NumericValue::GetNumber,
// StringValue::GetText), not by what a derived class answers to GetDouble or GetString: comparisons of texts
// and of the left operand, look-ups of categories, codes, the setters of case records, scoring.
//
// Threads: const operations may be called by several threads; a value that changes belongs to one.
// Nothing here throws.

#ifndef VEYRA_SCOREVALUE_H_
#define VEYRA_SCOREVALUE_H_

#include <concepts>
#include <string>

#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreValue {
 public:
  enum ValueType : int {
    kNumericValueType = 0,
    kStringValueType = 1,
    kDateTimeValueType = 5,
  };

  virtual ~ScoreValue();

  // Takes over the other value's content where the kinds allow.
  virtual void SetValue(const ScoreValue* value) = 0;
  // Both return a new value of the same kind and content; the caller owns it.
  virtual ScoreValue* GetValue() const = 0;
  virtual ScoreValue* Clone() const = 0;
  // Numbers are equal within a relative tolerance, texts without their trailing blanks; kinds never mix.
  virtual bool operator==(const ScoreValue& value) const = 0;
  // Equality of texts with the options of a string variable; other kinds compare as operator== does.
  virtual bool Equal(const ScoreValue* value, bool noSpaceTrim, bool emptyStringOK) const = 0;
  // Orderings are false when an operand is missing or the kinds do not compare.
  virtual bool operator>(const ScoreValue& value) const = 0;
  virtual bool operator<(const ScoreValue& value) const = 0;
  virtual bool operator<=(const ScoreValue& value) const = 0;
  virtual bool operator>=(const ScoreValue& value) const = 0;
  virtual bool IsSystemMissingValue() const = 0;
  // A number out of range, and NaN, give the smallest int.
  virtual int GetInt() const = 0;
  virtual double GetDouble() const = 0;
  virtual std::string GetString() const = 0;
  virtual ValueType GetType() const = 0;
};

// Equality of two values of any classes, by the left operand's rule.  Between two derived classes the
// compiler could not choose, else, between the member of one and the reversed member of the other.
template <std::derived_from<ScoreValue> Left, std::derived_from<ScoreValue> Right>
bool operator==(const Left& left, const Right& right) {
  const ScoreValue& value = left;
  return value.operator==(right);
}

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREVALUE_H_
