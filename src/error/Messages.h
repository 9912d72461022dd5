// The message catalogue: numbers with names, and the table that the formatter loads.

#ifndef VEYRA_ERROR_MESSAGES_H_
#define VEYRA_ERROR_MESSAGES_H_

#include "veyra/ErrorFormater.h"

namespace KxVeyra_940 {

enum class MessageId : int {
#define VEYRA_MESSAGE(name, id, text) name = id,
#include "error/Messages.def"
#undef VEYRA_MESSAGE
};

inline constexpr int kMessageCount = 135;

extern const ScoreContext::MessageItem gVYMessages[kMessageCount];

}  // namespace KxVeyra_940

#endif  // VEYRA_ERROR_MESSAGES_H_
