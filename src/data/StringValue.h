// A text: bytes, passed through unchanged, with a declared length of its own.
//
// Comparisons are byte by byte and ignore trailing blanks; they work in place and allocate nothing.
// Threads: const operations may be called by several threads; a value that changes belongs to one.
// Nothing throws.

#ifndef VEYRA_DATA_STRINGVALUE_H_
#define VEYRA_DATA_STRINGVALUE_H_

#include <string>
#include <string_view>

#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API StringValue : public ScoreValue {
 public:
  // 255 NUL characters with declared length 0; make an empty text from "".
  StringValue();
  // The declared length becomes the number of bytes.
  explicit StringValue(const char* text);  // null gives the empty text
  explicit StringValue(const std::string& text);
  explicit StringValue(std::string&& text);
  StringValue(const StringValue& other);
  StringValue& operator=(const StringValue& other) = default;  // takes the other's declared length
  ~StringValue() override;

  // The text, lent until the value changes.
  const std::string& GetText() const { return fText; }
  // Changes the text, keeps its capacity and the declared length.
  void SetString(std::string_view text) { fText.assign(text); }
  int GetLength() const { return fLength; }
  void SetLength(int length) { fLength = length; }

  // Takes a string value's text; the text becomes empty for other kinds and null.  The declared length stays.
  void SetValue(const ScoreValue* value) override;
  ScoreValue* GetValue() const override;
  ScoreValue* Clone() const override;
  bool operator==(const ScoreValue& value) const override;
  // noSpaceTrim: only identical texts are equal.  emptyStringOK: the empty text differs from a text of
  // blanks.
  bool Equal(const ScoreValue* value, bool noSpaceTrim, bool emptyStringOK) const override;
  bool operator>(const ScoreValue& value) const override;
  bool operator<(const ScoreValue& value) const override;
  bool operator<=(const ScoreValue& value) const override;
  bool operator>=(const ScoreValue& value) const override;
  bool IsSystemMissingValue() const override;  // never
  // The decimal number that the text begins with, 0 without one; the smallest int when it does not fit.
  int GetInt() const override;
  // The number that the text begins with in the process's global locale, whose decimal point "." stands for;
  // 0 without one.
  double GetDouble() const override;
  std::string GetString() const override;
  ValueType GetType() const override;

 private:
  std::string fText;
  int fLength = 0;
};

// `value` as a string value when that is its kind, else null.
inline const StringValue* AsString(const ScoreValue* value) {
  return value != nullptr && value->GetType() == ScoreValue::kStringValueType
             ? static_cast<const StringValue*>(value)
             : nullptr;
}

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_STRINGVALUE_H_
