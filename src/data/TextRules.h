// The rule that every comparison of texts shares: trailing blanks do not count.

#ifndef VEYRA_DATA_TEXTRULES_H_
#define VEYRA_DATA_TEXTRULES_H_

#include <string_view>

namespace KxVeyra_940 {

// `text` up to its last character that is no space (byte 0x20 only); empty for a blank text.
inline std::string_view TrimTrailingBlanks(std::string_view text) {
  const std::size_t last = text.find_last_not_of(' ');
  return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_TEXTRULES_H_
