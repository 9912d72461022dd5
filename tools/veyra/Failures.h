// How a command ends, and the failures that decide it.

#ifndef VEYRA_TOOLS_FAILURES_H_
#define VEYRA_TOOLS_FAILURES_H_

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace VeyraTool {

enum ExitStatus : int {
  kDone = 0,
  kWrongUsage = 1,    // options, and files that cannot be opened or written
  kModelRefused = 2,  // the document or a plug-in
  kDataRefused = 3,   // the data, or some of its rows when the others were scored
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

// The data is refused: "FILE: line 3, column 2 (age): reason".
class DataFailure : public CommandFailure {
 public:
  DataFailure(const std::string& file, const DataPlace& place, const std::string& reason);
};

// Why one row has no result.  Objects are reused, so that rows that fail allocate nothing either.
struct RowFailure {
  std::string kind;        // a word of docs/semantics.md, or the number of the library's message
  std::size_t column = 0;  // from 1; 0 means the row
  std::string field;
  std::string reason;

  void Set(std::string_view newKind, std::size_t newColumn, std::string_view newField,
           std::string_view newReason);
  // "KIND: column 2 (age): reason", as it stands in a column of results.
  std::string GetText() const;
};

// The cell in quotes, as it is shown in a message: cut when it is long, control characters escaped.
std::string Quoted(std::string_view cell);

// The reader of the output has gone; there is nothing to say about it.
struct ClosedPipe {};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_FAILURES_H_
