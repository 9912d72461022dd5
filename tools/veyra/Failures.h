// How a command ends, and the failures that decide it.

#ifndef VEYRA_TOOLS_FAILURES_H_
#define VEYRA_TOOLS_FAILURES_H_

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

namespace VeyraTool {

enum ExitStatus : int {
  kDone = 0,
  kWrongUsage = 1,    // options, and files that cannot be opened or written
  kModelRefused = 2,  // the document or a plug-in
  kDataRefused = 3,
};

// A line for standard error, without "veyra: ", and the status to end with.
class CommandFailure : public std::runtime_error {
 public:
  CommandFailure(ExitStatus status, const std::string& line) : std::runtime_error(line), fStatus(status) {}
  ExitStatus GetStatus() const { return fStatus; }

 private:
  ExitStatus fStatus;
};

// Where in the data something is wrong.  Lines and columns count from 1; 0 means the whole of it.
struct DataPlace {
  std::size_t line = 0;
  std::size_t column = 0;
  std::string field;
};

class DataFailure : public CommandFailure {
 public:
  DataFailure(const std::string& file, const DataPlace& place, const std::string& reason)
      : CommandFailure(kDataRefused, Line(file, place, reason)) {}

 private:
  static std::string Line(const std::string& file, const DataPlace& place, const std::string& reason) {
    std::string line = file + ": ";
    if (place.line > 0) line.append("line ").append(std::to_string(place.line));
    if (place.column > 0) line.append(", column ").append(std::to_string(place.column));
    if (!place.field.empty()) line.append(" (").append(place.field).append(")");
    if (place.line > 0) line += ": ";
    return line + reason;
  }
};

// The reader of the output has gone; there is nothing to say about it.
struct ClosedPipe {};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_FAILURES_H_
