// Which functions an Apply element may name.

#ifndef VEYRA_TOOLS_KNOWNFUNCTIONS_H_
#define VEYRA_TOOLS_KNOWNFUNCTIONS_H_

#include <string_view>

namespace VeyraTool {

bool IsKnownFunction(std::string_view name);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_KNOWNFUNCTIONS_H_
