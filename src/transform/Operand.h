// A work value of an expression: what a field, a constant or a function contributes to its parent.
//
// Work values are made once per expression and reused case after case: numbers cost nothing, texts keep the
// capacity they have reached.  Threads: they belong to one evaluation.

#ifndef VEYRA_TRANSFORM_OPERAND_H_
#define VEYRA_TRANSFORM_OPERAND_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "veyra/Export.h"

namespace KxVeyra_940 {

struct VEYRA_API Operand {
  enum Kind : unsigned char { kNumber, kText, kDateTime };

  Operand() = default;
  Operand(const Operand&) = delete;  // `text` may point into `buffer`
  Operand& operator=(const Operand&) = delete;

  double number = NumericValue::gSysmisValue;  // seconds since 1970 (since midnight) for a date-time
  std::string_view text;                       // lent by a field or a constant, or in `buffer`
  std::string buffer;
  std::int64_t length = 0;  // the declared length of a text
  Kind kind = kNumber;
  DateTimeValue::DateTimeValType dateTimeKind = DateTimeValue::kDateTimeVal;
  bool isMissing = true;         // no value: an absent field, the system-missing number, a text without value
  bool isCountedMissing = true;  // what "isMissing" answers: missing, or missing by the field's own account
  bool isInvalid = false;        // the field calls it neither missing nor valid

  void SetNumber(double value) {
    number = value;
    kind = kNumber;
    isMissing = isCountedMissing = value == NumericValue::gSysmisValue;
  }
  void SetDateTime(double seconds, DateTimeValue::DateTimeValType type) {
    SetNumber(seconds);
    kind = kDateTime;
    dateTimeKind = type;
  }
  // `lent` outlives the use of the operand.
  void LendText(std::string_view lent, std::int64_t declaredLength) {
    text = lent;
    length = declaredLength;
    kind = kText;
    isMissing = isCountedMissing = false;
  }
  // The text is what `buffer` holds.
  void SetBufferAsText(std::int64_t declaredLength) { LendText(buffer, declaredLength); }
  void SetMissingNumber() { SetNumber(NumericValue::gSysmisValue); }
  void SetMissingText() {
    LendText(std::string_view(), 0);
    isMissing = isCountedMissing = true;
  }
  // Takes a value's content; null makes it missing.  A text is lent by the value.
  void Lend(const ScoreValue* value);
  // Takes another's content; a text is lent by it.
  void Lend(const Operand& other);
};

// The number that a text writes, blanks around it left out; the system-missing number when the text as a
// whole is no decimal number.
VEYRA_API double NumberOfText(std::string_view text);

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_OPERAND_H_
