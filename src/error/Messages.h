// The message catalogue: numbers with names, and the table that the formatter loads.

#ifndef VEYRA_ERROR_MESSAGES_H_
#define VEYRA_ERROR_MESSAGES_H_

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "veyra/ErrorFormater.h"

namespace KxVeyra_940 {

enum class MessageId : int {
#define VEYRA_MESSAGE(name, id, text) name = id,
#include "error/Messages.def"
#undef VEYRA_MESSAGE
};

// How many arguments a text has: its placeholders are numbered from 0.
consteval std::size_t CountArguments(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t i = 0; i + 2 < text.size(); ++i)
    if (text[i] == '{' && text[i + 2] == '}')
      count = std::max(count, static_cast<std::size_t>(text[i + 1] - '0') + 1);
  return count;
}

consteval std::size_t ArgumentCount(MessageId id) {
  switch (id) {
#define VEYRA_MESSAGE(name, number, text) \
  case MessageId::name:                   \
    return CountArguments(text);
#include "error/Messages.def"
#undef VEYRA_MESSAGE
  }
  return 0;
}

inline constexpr int kMessageCount = 135;

extern const ScoreContext::MessageItem gVYMessages[kMessageCount];

}  // namespace KxVeyra_940

#endif  // VEYRA_ERROR_MESSAGES_H_
