// The one place that raises: a rule reads "condition, Raise(id, arguments)".

#ifndef VEYRA_ERROR_RAISE_H_
#define VEYRA_ERROR_RAISE_H_

#include <initializer_list>
#include <string_view>

#include "error/Messages.h"
#include "veyra/Export.h"

namespace KxVeyra_940 {

// Throws a VYException that carries the message with its arguments (UTF-8, in placeholder order), built with
// the process-wide formatter.
[[noreturn]] VEYRA_API void Raise(MessageId id, std::initializer_list<std::string_view> arguments);

// The same with a detail text, which follows the message as it stands.
[[noreturn]] VEYRA_API void RaiseWithDetail(MessageId id, std::initializer_list<std::string_view> arguments,
                                            std::string_view detail);

}  // namespace KxVeyra_940

#endif  // VEYRA_ERROR_RAISE_H_
