#include "error/Raise.h"

#include <string>
#include <vector>

#include "error/ProcessState.h"
#include "veyra/VYException.h"

namespace KxVeyra_940 {

void RaiseMessage(MessageId id, std::span<const std::string_view> arguments, std::string_view detail) {
  VYException exception(&gErrorFormater);
  exception.PutErrorMessage(static_cast<int>(id),
                            std::vector<std::string>(arguments.begin(), arguments.end()));
  exception.SetDetail(std::string(detail));
  throw exception;
}

}  // namespace KxVeyra_940
