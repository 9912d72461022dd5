// An owning holder of one null-terminated UTF-16 text, or of none (null).
//
// Null and the empty text are both empty.  Narrow texts are UTF-8.  One object is used by one thread at a
// time.

#ifndef VEYRA_XML_VEYRASTRING_H_
#define VEYRA_XML_VEYRASTRING_H_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API VeyraString {
 public:
  VeyraString() = default;
  VeyraString(const char16_t* text);  // a copy; null stays null
  VeyraString(const char* text);      // converted from UTF-8; null stays null
  VeyraString(const VeyraString& other);
  ~VeyraString();

  // A null or empty argument changes nothing.
  void append(const VeyraString& text);
  void append(const char16_t* text);
  void append(const char* text);
  void append(char16_t unit);  // a null unit changes nothing

  // Null stays null.  The argument may be part of this text.
  void assign(const VeyraString& text);
  void assign(const char16_t* text);
  void assign(const char* text);
  void assign(char16_t unit);
  VeyraString& operator=(const VeyraString& text);
  VeyraString& operator=(const char16_t* text);
  VeyraString& operator=(const char* text);
  VeyraString& operator=(char16_t unit);

  const char16_t* xc_str() const { return fText.get(); }  // lent; may be null
  bool empty() const { return fText == nullptr || fText[0] == 0; }
  std::size_t length() const;  // units

  // False when either text is null.
  bool equals(const VeyraString& other) const;
  bool operator==(const VeyraString& other) const { return equals(other); }
  // Null counts as empty on both sides.
  bool equals(const char16_t* text) const;

  void clear();  // the text becomes null

  // False for a null argument and for a null text; the empty argument occurs in every other text.
  bool ContainsString(const char16_t* text) const;

  // Replaces each occurrence, from left to right, without overlap; a null `to` removes it.  Returns their
  // number.
  int replaceSubstring(const char16_t* from, const char16_t* to);

  // Removes the last `count` units, all of them when there are fewer.
  void truncateString(unsigned count);

  // The UTF-8 form up to the first lone surrogate; empty for null.
  std::string toUTF8() const;
  // The UTF-16 form up to the first ill-formed sequence; an empty argument gives null.
  void assignUTF8(const std::string& text);

  // The value of a text of decimal digits, modulo 2 to the 32; 0 for every other text.
  unsigned convertToInteger() const;

 private:
  void Set(std::u16string_view head, std::u16string_view tail);

  std::unique_ptr<char16_t[]> fText;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_XML_VEYRASTRING_H_
