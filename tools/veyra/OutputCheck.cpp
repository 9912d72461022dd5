#include "veyra/OutputCheck.h"

#include <sys/stat.h>
#include <unistd.h>

#include <optional>

#include "veyra/Failures.h"

namespace VeyraTool {

namespace {

using Status = struct stat;

// Of the file behind links; nothing when there is none.
std::optional<Status> StatusOf(const std::string& path) {
  Status status{};
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

std::optional<Status> StatusOf(int descriptor) {
  Status status{};
  if (fstat(descriptor, &status) != 0) return std::nullopt;
  return status;
}

std::optional<Status> StatusOf(const InputFile& input) {
  if (!input.path.empty()) return StatusOf(input.path);
  return input.isStandardInput ? StatusOf(STDIN_FILENO) : std::nullopt;
}

}  // namespace

void CheckOutput(const std::string& output, const std::vector<InputFile>& inputs) {
  const std::string name = output.empty() ? "standard output" : output;
  const std::optional<Status> target = output.empty() ? StatusOf(STDOUT_FILENO) : StatusOf(output);
  if (!target.has_value()) return;
  if (S_ISDIR(target->st_mode)) {
    throw CommandFailure(kWrongUsage, name + ": cannot write the file: it is a directory");
  }
  if (!S_ISREG(target->st_mode)) return;
  for (const InputFile& input : inputs) {
    const std::optional<Status> source = StatusOf(input);
    if (!source.has_value() || source->st_dev != target->st_dev || source->st_ino != target->st_ino) continue;
    throw CommandFailure(kWrongUsage, name + ": the output would replace " + input.what);
  }
}

}  // namespace VeyraTool
