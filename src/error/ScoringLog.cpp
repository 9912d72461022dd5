#include "error/ScoringLog.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#ifdef __APPLE__
#include <pthread.h>
#endif

namespace KxVeyra_940 {

namespace {

constexpr char kConfigurationFile[] = "sc.cfg";
constexpr char kLevelKey[] = "trace_leve";
constexpr char kTraceName[] = "scoring_trace";
constexpr int kLineBuffer = 64;  // a line has fewer characters than this, its line feed not counted
constexpr std::size_t kLongestText = 102399;

struct FileCloser {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

int ThreadNumber() {
#ifdef __APPLE__
  std::uint64_t number = 0;
  pthread_threadid_np(nullptr, &number);
  return static_cast<int>(number);
#else
  return static_cast<int>(gettid());
#endif
}

// Reads one line without its line feed.  False at the end of the file and for a line that is too long.
bool ReadLine(std::FILE* file, std::string& line) {
  char buffer[kLineBuffer + 1];
  if (std::fgets(buffer, sizeof buffer, file) == nullptr) return false;
  line = buffer;
  if (line.ends_with('\n')) line.pop_back();
  return line.size() < kLineBuffer;
}

// The level that a line sets; 0 for every other line.
int LevelOf(const std::string& line) {
  const std::size_t comma = line.find(',');
  if (comma == std::string::npos) return 0;
  if (ScoringLog::TrimWhitespace(line.substr(0, comma)) != kLevelKey) return 0;
  return std::max(0, std::atoi(ScoringLog::TrimWhitespace(line.substr(comma + 1)).c_str()));
}

int ConfiguredLevel() {
  const File file(std::fopen(kConfigurationFile, "r"));
  if (file == nullptr) return 0;
  std::string line;
  while (ReadLine(file.get(), line)) {
    const int level = LevelOf(line);
    if (level > 0) return level;
  }
  return 0;
}

}  // namespace

std::atomic<ScoringLog*> ScoringLog::fInstance{nullptr};

ScoringLog::ScoringLog() { Initialize(); }

ScoringLog* ScoringLog::MakeInstance() {
  static ScoringLog* const instance = [] {
    auto* const made =
        new ScoringLog;  // never deleted: other static objects may trace while they are destroyed
    fInstance.store(made, std::memory_order_release);
    return made;
  }();
  return instance;
}

void ScoringLog::Initialize() {
  const int level = ConfiguredLevel();
  if (level == 0) return;  // what was configured before stays
  fLevel = level;
  fLogDirectory = MakeLogDir();
}

std::string ScoringLog::TrimWhitespace(const std::string& text) {
  constexpr char kBlanks[] = " \t\f";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string ScoringLog::MakeLogDir() {
  std::string directory = "log" + std::to_string(getpid());
  mkdir(directory.c_str(), 0777);
  return directory;
}

void ScoringLog::TraceText(int level, const char* format, ...) {
  if (!IsOn(level)) return;
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  std::string text(std::min(static_cast<std::size_t>(std::max(length, 0)), kLongestText), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  Trace(text, level, true, kTraceName);
}

void ScoringLog::Trace(const std::string& text, int level, bool perThread, const char* baseName) {
  if (fLevel == 0) return;
  std::string path = fLogDirectory + '/';
  if (perThread) path += std::to_string(ThreadNumber()) + '_';
  path += std::string(baseName) + ".log";
  const File file(std::fopen(path.c_str(), "a"));
  if (file == nullptr || fLevel < level) return;
  std::fwrite(text.data(), 1, text.size(), file.get());
  std::fputc('\n', file.get());
}

}  // namespace KxVeyra_940
