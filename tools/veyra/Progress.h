// A line on a terminal's standard error while rows are worked on, and one at the end; nothing anywhere else.

#ifndef VEYRA_TOOLS_PROGRESS_H_
#define VEYRA_TOOLS_PROGRESS_H_

#include <chrono>
#include <cstddef>
#include <string>

#include "veyra/ByteSource.h"

namespace VeyraTool {

struct RowTotals {
  std::size_t rows = 0;
  std::size_t missingResults = 0;
};

// "12345 rows, 6789 rows/s, 42 %, 12 s left"; the last two when `share` (from 0 to 1) is above 0.
std::string ProgressText(std::size_t rows, double seconds, double share);

class Progress {
 public:
  // `source` is lent; it tells how much there is to do.
  Progress(bool quiet, const ByteSource& source);
  // Wipes the line.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Shows the line, a few times a second however often it is called.
  void Show(const RowTotals& totals);
  // Shows the last line: rows, missing results, seconds.
  void Finish(const RowTotals& totals);

 private:
  double Seconds() const;
  void Wipe();

  const ByteSource& fSource;
  bool fIsShown;
  bool fHasLine = false;
  std::chrono::steady_clock::time_point fStart;
  std::chrono::steady_clock::time_point fNext;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_PROGRESS_H_
