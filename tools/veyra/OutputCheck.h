// What a command would write, compared with what it reads, before it does either.

#ifndef VEYRA_TOOLS_OUTPUTCHECK_H_
#define VEYRA_TOOLS_OUTPUTCHECK_H_

#include <string>
#include <vector>

namespace VeyraTool {

struct InputFile {
  const char* what;              // "the data"
  std::string path;              // empty: nothing is read, or standard input
  bool isStandardInput = false;  // what an empty path means
};

// Throws CommandFailure when writing to `output` would destroy one of the inputs, and when `output` is a
// directory.  An empty path is standard output.  Files are compared by themselves: links and other spellings
// of a path do not hide them.  Devices, pipes and terminals may be both.
void CheckOutput(const std::string& output, const std::vector<InputFile>& inputs);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_OUTPUTCHECK_H_
