#include "veyra/Progress.h"

#include <unistd.h>

#include <array>
#include <cstdio>

namespace VeyraTool {

using Clock = std::chrono::steady_clock;

namespace {

constexpr std::chrono::milliseconds kInterval(250);

}  // namespace

std::string ProgressText(std::size_t rows, double seconds, double share) {
  std::array<char, 160> text{};
  const double rate = seconds > 0 ? static_cast<double>(rows) / seconds : 0;
  int size = std::snprintf(text.data(), text.size(), "%zu rows, %.0f rows/s", rows, rate);
  if (share > 0) {
    size += std::snprintf(text.data() + size, text.size() - static_cast<std::size_t>(size),
                          ", %.0f %%, %.0f s left", 100 * share, seconds * (1 - share) / share);
  }
  return std::string(text.data(), static_cast<std::size_t>(size));
}

Progress::Progress(bool quiet, const ByteSource& source)
    : fSource(source),
      fIsShown(!quiet && isatty(STDERR_FILENO) == 1),
      fStart(Clock::now()),
      fNext(fStart + kInterval) {}

Progress::~Progress() { Wipe(); }

double Progress::Seconds() const { return std::chrono::duration<double>(Clock::now() - fStart).count(); }

void Progress::Wipe() {
  if (fHasLine) std::fputs("\r\033[K", stderr);
  fHasLine = false;
}

void Progress::Show(const RowTotals& totals) {
  if (!fIsShown) return;
  const Clock::time_point now = Clock::now();
  if (now < fNext) return;
  fNext = now + kInterval;
  const auto size = static_cast<double>(fSource.GetSize());
  const double share = size > 0 ? static_cast<double>(fSource.GetPosition()) / size : 0;
  std::fprintf(stderr, "\r%s\033[K", ProgressText(totals.rows, Seconds(), share).c_str());
  fHasLine = true;
}

void Progress::Finish(const RowTotals& totals) {
  Wipe();
  if (!fIsShown) return;
  const auto counted = [](std::size_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
  };
  std::fprintf(stderr, "%s, %s, %.1f s\n", counted(totals.rows, "row").c_str(),
               counted(totals.missingResults, "missing result").c_str(), Seconds());
}

}  // namespace VeyraTool
