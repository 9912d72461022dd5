// Standard output, or a file that is there complete or not at all.
//
// A file is written beside its place under a name of its own and renamed at the end; until then, and after
// any failure and any signal that ends the program, what stood under its name stays.

#ifndef VEYRA_TOOLS_OUTPUTFILE_H_
#define VEYRA_TOOLS_OUTPUTFILE_H_

#include <string>
#include <string_view>

#include "veyra/Failures.h"

namespace VeyraTool {

// At most one at a time writes to a file.
class OutputFile {
 public:
  // An empty path is standard output.  Throws CommandFailure when the file cannot be made.
  explicit OutputFile(const std::string& path);
  // Without Finish, the partial file goes.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Throws ClosedPipe when the reader has gone, CommandFailure when writing fails.
  void Write(std::string_view text);
  // Synchronises the file and gives it its name.
  void Finish();

 private:
  void Open();
  void Discard();
  std::string GetName() const;
  [[noreturn]] void Fail(const char* what) const;

  std::string fPath;
  std::string fPartialPath;
  int fDescriptor;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_OUTPUTFILE_H_
