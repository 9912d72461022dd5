// A line on a terminal's standard error that counts rows; nothing anywhere else.

#ifndef VEYRA_TOOLS_PROGRESS_H_
#define VEYRA_TOOLS_PROGRESS_H_

#include <chrono>
#include <cstddef>

namespace VeyraTool {

class Progress {
 public:
  explicit Progress(bool quiet);
  // Wipes the line.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void AddRow() {
    if (++fRows % kRowsPerLook == 0 && fIsShown) Show();
  }

 private:
  static constexpr std::size_t kRowsPerLook = 1024;

  void Show();

  bool fIsShown;
  bool fHasLine = false;
  std::size_t fRows = 0;
  std::chrono::steady_clock::time_point fStart;
  std::chrono::steady_clock::time_point fNext;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_PROGRESS_H_
