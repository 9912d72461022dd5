#include "veyra/Progress.h"

#include <unistd.h>

#include <cstdio>

namespace VeyraTool {

using Clock = std::chrono::steady_clock;

namespace {

constexpr std::chrono::milliseconds kInterval(250);

}  // namespace

Progress::Progress(bool quiet)
    : fIsShown(!quiet && isatty(STDERR_FILENO) == 1), fStart(Clock::now()), fNext(fStart + kInterval) {}

Progress::~Progress() {
  if (fHasLine) std::fputs("\r\033[K", stderr);
}

void Progress::Show() {
  const Clock::time_point now = Clock::now();
  if (now < fNext) return;
  fNext = now + kInterval;
  const double seconds = std::chrono::duration<double>(now - fStart).count();
  std::fprintf(stderr, "\r%zu rows, %.0f rows/s", fRows, static_cast<double>(fRows) / seconds);
  fHasLine = true;
}

}  // namespace VeyraTool
