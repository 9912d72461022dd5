// The one place that raises: a rule reads "condition, Raise(id, {arguments})".
//
// The compiler counts: a call with more or fewer arguments than the placeholders of its message is refused.

#ifndef VEYRA_ERROR_RAISE_H_
#define VEYRA_ERROR_RAISE_H_

#include <cstddef>
#include <span>
#include <string_view>
#include <type_traits>

#include "error/Messages.h"
#include "veyra/Export.h"

namespace KxVeyra_940 {

// A message that has just so many arguments.
template <std::size_t kArguments>
struct MessageWith {
  // NOLINTNEXTLINE(google-explicit-constructor): callers write the message itself.
  consteval MessageWith(MessageId message) : id(message) {
    if (ArgumentCount(message) != kArguments) throw "another number of arguments than the message has";
  }

  MessageId id;
};

// Throws a VYException that carries the message with its arguments (UTF-8, in placeholder order), built with
// the process-wide formatter.  The detail follows the message as it stands.
[[noreturn]] VEYRA_API void RaiseMessage(MessageId id, std::span<const std::string_view> arguments,
                                         std::string_view detail = {});

template <std::size_t kArguments>
[[noreturn]] void Raise(std::type_identity_t<MessageWith<kArguments>> message,
                        const std::string_view (&arguments)[kArguments], std::string_view detail = {}) {
  RaiseMessage(message.id, arguments, detail);
}

[[noreturn]] inline void Raise(MessageWith<0> message) { RaiseMessage(message.id, {}); }

// A message without arguments, and a detail.
[[noreturn]] inline void RaiseWithDetail(MessageWith<0> message, std::string_view detail) {
  RaiseMessage(message.id, {}, detail);
}

}  // namespace KxVeyra_940

#endif  // VEYRA_ERROR_RAISE_H_
