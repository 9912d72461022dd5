// The trace and the locks.  Each test runs in a process of its own, so each reads its own configuration.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

#include "error/Locks.h"
#include "error/ScoringLog.h"
#include "veyra/VYException.h"

namespace {

using namespace KxVeyra_940;
namespace fs = std::filesystem;

// Runs in an empty current directory, which is removed afterwards.
class TraceTest : public testing::Test {
 protected:
  TraceTest() {
    std::string name = (fs::temp_directory_path() / "veyra-trace-XXXXXX").string();
    fDirectory = mkdtemp(name.data());
    fs::current_path(fDirectory);
  }
  ~TraceTest() override {
    fs::current_path("/");
    fs::remove_all(fDirectory);
  }

  static void Configure(const std::string& text) { std::ofstream("sc.cfg", std::ios::binary) << text; }
  static std::string LogDirectory() { return "log" + std::to_string(getpid()); }
  static std::string OwnFile() {
    return LogDirectory() + "/" + std::to_string(gettid()) + "_scoring_trace.log";
  }
  static std::string Read(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
  }

  fs::path fDirectory;
};

TEST_F(TraceTest, WritesUpToItsLevel) {
  Configure("trace_leve,2\n");
  ScoringLog* const log = ScoringLog::GetInstance();
  log->TraceText(1, "Enter:%s", "x");
  log->TraceText(2, "details %d", 7);
  log->TraceText(3, "not written");
  EXPECT_EQ(Read(OwnFile()), "Enter:x\ndetails 7\n");
  log->Trace("shared", 1, false, "all");
  log->Trace("not written", 3, false, "all");
  EXPECT_EQ(Read(LogDirectory() + "/all.log"), "shared\n");
}

TEST_F(TraceTest, OffTouchesNothing) {
  ScoringLog::GetInstance()->TraceText(1, "x");
  ScoringLog::GetInstance()->Trace("x", 0, true, "scoring_trace");
  Configure("trace_leve,3\n");
  ScoringLog::GetInstance()->TraceText(1, "the configuration is read once");
  EXPECT_FALSE(fs::exists(LogDirectory()));
}

TEST_F(TraceTest, ReadsTheConfiguration) {
  const struct {
    const char* what;
    std::string text;
    int want;  // 0: no level is found, and the one before stays
  } kRows[] = {
      {"plain", "trace_leve,3\n", 3},
      {"no line feed at the end", "trace_leve,1", 1},
      {"blanks and a carriage return", " \t\ftrace_leve \f,\t2 \r\n", 2},
      {"a level below 1 is passed over", "trace_leve,0\ntrace_leve,-1\ntrace_leve,3\n", 3},
      {"the first level counts", "trace_leve,1\ntrace_leve,3\n", 1},
      {"only the first comma divides", "trace_leve,2,9\n", 2},
      {"other lines are passed over", "\nnothing\nkey,5\ntrace_leve,2\n", 2},
      {"a line of 63 characters", std::string(63, 'x') + "\ntrace_leve,2\n", 2},
      {"a line of 64 characters ends the reading", std::string(64, 'x') + "\ntrace_leve,3\n", 0},
      {"and is not used itself", "trace_leve,3" + std::string(52, ' ') + "\n", 0},
      {"the longer key", "trace_level,3\n", 0},
      {"another case", "Trace_leve,3\n", 0},
      {"no number", "trace_leve,on\n", 0},
      {"no comma", "trace_leve 3\n", 0},
      {"an empty file", "", 0},
  };
  ScoringLog* const log = ScoringLog::GetInstance();
  int level = 0;
  const auto expectLevel = [&] {
    EXPECT_EQ(log->IsOn(1), level > 0);
    EXPECT_TRUE(level == 0 || log->IsOn(level));
    EXPECT_FALSE(log->IsOn(level + 1));
  };
  log->Initialize();
  expectLevel();
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    Configure(row.text);
    log->Initialize();
    level = row.want > 0 ? row.want : level;
    expectLevel();
  }
}

TEST_F(TraceTest, CutsLongTexts) {
  Configure("trace_leve,1\n");
  ScoringLog::GetInstance()->TraceText(1, "%s", std::string(200000, 'x').c_str());
  EXPECT_EQ(Read(OwnFile()), std::string(102399, 'x') + "\n");
}

TEST_F(TraceTest, FirstUseMayBeInSeveralThreads) {
  Configure("trace_leve,1\n");
  std::vector<std::thread> threads;
  std::vector<ScoringLog*> instances(4);
  for (ScoringLog*& instance : instances)
    threads.emplace_back([&instance] {
      instance = ScoringLog::GetInstance();
      for (int i = 0; i < 50; ++i) instance->TraceText(1, "line");
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::set(instances.begin(), instances.end()).size(), 1u);
  int files = 0;
  for (const auto& entry : fs::directory_iterator(LogDirectory())) {
    EXPECT_EQ(Read(entry.path()).size(), 50 * 5u);
    ++files;
  }
  EXPECT_EQ(files, 4);
}

TEST_F(TraceTest, SilentWithoutADirectory) {
  Configure("trace_leve,1\n");
  std::ofstream(LogDirectory()) << "a file is in the way";
  ScoringLog::GetInstance()->TraceText(1, "x");
  EXPECT_EQ(Read(LogDirectory()), "a file is in the way");
}

TEST_F(TraceTest, ComposedMessagesAreTraced) {
  Configure("trace_leve,3\n");
  EXPECT_EQ(VYException(0, "100%s", nullptr).GetErrorMessage(), "100%s");
  EXPECT_EQ(Read(OwnFile()), "Error message : 100%s\n");
}

TEST(Trim, RemovesBlanksAtTheEnds) {
  const char* const kRows[][2] = {{"  a b\t\f", "a b"}, {" \t\f", ""}, {"", ""}, {"\na\r", "\na\r"}};
  for (const auto& row : kRows) EXPECT_EQ(ScoringLog::TrimWhitespace(row[0]), row[1]);
}

bool OtherThreadGets(sfMutex& mutex) {
  bool locked = false;
  std::thread([&] {
    locked = mutex.trylock("", 0);
    if (locked) mutex.unlock("", 0);
  }).join();
  return locked;
}

TEST(Locks, AreRecursive) {
  sfMutex mutex;
  EXPECT_TRUE(mutex.lock(sfMutex::kWaitLock, "", 0));
  EXPECT_TRUE(mutex.lock(sfMutex::kTryLock, "", 0));
  EXPECT_TRUE(mutex.unlock("", 0));
  EXPECT_FALSE(OtherThreadGets(mutex)) << "one of two locks is still held";
  EXPECT_TRUE(mutex.unlock("", 0));
  EXPECT_TRUE(OtherThreadGets(mutex));
  EXPECT_FALSE(mutex.lock(static_cast<sfMutex::LockType>(2), "", 0));
  EXPECT_TRUE(OtherThreadGets(mutex));
}

TEST(Locks, GuardHoldsForItsScope) {
  sfMutex mutex;
  {
    const sfGuard guard(mutex, sfMutex::kWaitLock);
    EXPECT_FALSE(OtherThreadGets(mutex));
  }
  EXPECT_TRUE(OtherThreadGets(mutex));
}

}  // namespace
