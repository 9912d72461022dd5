#include "error/Raise.h"

#include <string>
#include <vector>

#include "error/ProcessState.h"
#include "veyra/VYException.h"

namespace KxVeyra_940 {

void RaiseWithDetail(MessageId id, std::initializer_list<std::string_view> arguments,
                     std::string_view detail) {
  VYException exception(&gErrorFormater);
  exception.PutErrorMessage(static_cast<int>(id),
                            std::vector<std::string>(arguments.begin(), arguments.end()));
  exception.SetDetail(std::string(detail));
  throw exception;
}

void Raise(MessageId id, std::initializer_list<std::string_view> arguments) {
  RaiseWithDetail(id, arguments, {});
}

}  // namespace KxVeyra_940
