// The diagnostic trace: off unless the file "sc.cfg" in the current directory switches it on with a line
// "trace_leve,LEVEL".  Lines go to one file a thread in a directory "log<process id>" of the current
// directory.
//
//   TraceEnter("Initialize");
//   ScoringLog::GetInstance()->TraceText(kTraceDetails, "%d names", count);
//
// The configuration is read once a process, at the first use.  Threads: every operation may be called by any
// number of threads.  Nothing is ever reported to the caller: what cannot be opened or made leaves the trace
// silent.

#ifndef VEYRA_ERROR_SCORINGLOG_H_
#define VEYRA_ERROR_SCORINGLOG_H_

#include <atomic>
#include <string>

#include "veyra/Export.h"

#define VEYRA_PRINTF(text, first) __attribute__((format(printf, text, first)))

namespace KxVeyra_940 {

// What a line of the trace says.  A level in the configuration writes the lines up to it.
enum TraceLevel : int {
  kTraceEnterAndExit = 1,  // the names of operations
  kTraceDetails = 2,
  kTraceErrors = 3,  // messages of exceptions
};

class VEYRA_API ScoringLog {
 public:
  // The one instance, made at the first call; it lives until the process ends.
  static ScoringLog* GetInstance() {
    ScoringLog* const instance = fInstance.load(std::memory_order_acquire);
    return instance != nullptr ? instance : MakeInstance();
  }

  // Whether lines of this level are written: one comparison, for callers whose arguments cost something.
  bool IsOn(int level) const { return fLevel != 0 && level <= fLevel; }

  // Writes one line, printf-style; cut to 102399 bytes.  Nothing is formatted while the level is off.
  void TraceText(int level, const char* format, ...) VEYRA_PRINTF(3, 4);

  // Appends the text and a newline to "<directory>/[<thread number>_]<baseName>.log" when the configured
  // level is at least `level`.  While the trace is off no file is touched.
  void Trace(const std::string& text, int level, bool perThread, const char* baseName);

  // Reads the configuration; called by the constructor.  A configuration without a level, or none, changes
  // nothing.
  void Initialize();

  // `text` without the spaces, tabs and form feeds around it.
  static std::string TrimWhitespace(const std::string& text);
  // Makes the directory for the trace files and returns its name; errors are ignored.
  static std::string MakeLogDir();

 private:
  ScoringLog();
  static ScoringLog* MakeInstance();

  static std::atomic<ScoringLog*> fInstance;

  int fLevel = 0;  // 0: off
  std::string fLogDirectory;
};

// The trace of an operation.  While it is off they cost one comparison.
inline void TraceEnter(const char* operation) {
  ScoringLog* const log = ScoringLog::GetInstance();
  if (log->IsOn(kTraceEnterAndExit)) log->TraceText(kTraceEnterAndExit, "Enter:%s", operation);
}
inline void TraceExit(const char* operation) {
  ScoringLog* const log = ScoringLog::GetInstance();
  if (log->IsOn(kTraceEnterAndExit)) log->TraceText(kTraceEnterAndExit, "Exit:%s", operation);
}

}  // namespace KxVeyra_940

#endif  // VEYRA_ERROR_SCORINGLOG_H_
