#include "veyra/KnownFunctions.h"

#include "transform/FunctionTable.h"

namespace VeyraTool {

bool IsKnownFunction(std::string_view name) { return KxVeyra_940::FindFunction(name) != nullptr; }

}  // namespace VeyraTool
