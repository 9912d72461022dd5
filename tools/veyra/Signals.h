// What happens when the user or the system ends the program: a partial file goes, the line of progress ends.

#ifndef VEYRA_TOOLS_SIGNALS_H_
#define VEYRA_TOOLS_SIGNALS_H_

#include <string>

namespace VeyraTool {

// From now on SIGINT, SIGTERM and SIGHUP remove the file before they end the program, as they would without;
// one that is ignored stays ignored.  One file at a time.
void RemoveOnSignal(const std::string& path);
// The file stays from now on.
void KeepOnSignal();

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_SIGNALS_H_
