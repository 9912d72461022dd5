// Attributes whose text is one of a few words.

#ifndef VEYRA_PLUGINS_KEYWORDS_H_
#define VEYRA_PLUGINS_KEYWORDS_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "error/Raise.h"
#include "translate/DomReader.h"

namespace KxVeyra_940::Plugin {

template <typename Value>
struct Keyword {
  std::string_view text;
  Value value;
};

// The value of the attribute's word; the first row's when the attribute is absent or empty.  Raises 260152
// (text, attribute name) for any other word.
template <typename Value, std::size_t kCount>
Value ReadKeyword(const xercesc::DOMElement& element, const char* name,
                  const Keyword<Value> (&keywords)[kCount]) {
  const std::string text = OptionalText(element, name);
  if (text.empty()) return keywords[0].value;
  for (const Keyword<Value>& keyword : keywords) {
    if (keyword.text == text) return keyword.value;
  }
  Raise(MessageId::kInvalidAttributeValue, {text, name});
}

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_KEYWORDS_H_
