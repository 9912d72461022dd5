// veyra functions

#ifndef VEYRA_TOOLS_FUNCTIONSCOMMAND_H_
#define VEYRA_TOOLS_FUNCTIONSCOMMAND_H_

namespace VeyraTool {

// Lists the built-in functions: names, parameters, classes.  Throws CommandFailure or ClosedPipe.
void RunFunctions();

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_FUNCTIONSCOMMAND_H_
