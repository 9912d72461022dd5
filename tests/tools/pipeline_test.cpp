// What does not depend on the number of threads, what becomes of rows that fail, and of files and signals.

#include <signal.h>

#include <random>
#include <thread>

#include "tools/Pack.h"
#include "tools/RunProgram.h"

namespace {

using namespace VeyraTest;

const char* const kModel =
    "<PMML version='4.4'><DataDictionary numberOfFields='2'>"
    "<DataField name='x' optype='continuous' dataType='double'/>"
    "<DataField name='y' optype='continuous' dataType='double'/></DataDictionary>"
    "<RegressionModel functionName='regression'><MiningSchema><MiningField name='x'/>"
    "<MiningField name='y' usageType='target'/></MiningSchema><RegressionTable intercept='1'>"
    "<NumericPredictor name='x' coefficient='2'/></RegressionTable></RegressionModel></PMML>";

struct Rows {
  std::string data = "x,note\n";
  std::string want = "y\n";
};

// Some blocks of rows, with every kind of line end and of cell, and what their results are.
Rows MakeRows(std::size_t count) {
  std::mt19937 random(11);
  const std::string notes[] = {"plain", "\"a,b\"", "\"two\nlines\"", "\"two\r\nmore \"\"lines\"\"\"",
                               std::string(500, 'n')};
  const std::string ends[] = {"\n", "\r\n", "\r"};
  Rows rows;
  for (std::size_t i = 0; i < count; ++i) {
    const bool isMissing = random() % 50 == 0;
    rows.data += isMissing ? "" : std::to_string(i);
    rows.data += "," + notes[random() % std::size(notes)] + ends[random() % std::size(ends)];
    rows.want += (isMissing ? "" : std::to_string(2 * i + 1)) + "\n";
  }
  return rows;
}

class ScoreThreads : public ::testing::Test {
 protected:
  ScoreThreads() : fModel(fFiles.Write("model.pmml", kModel)) {}

  TemporaryDirectory fFiles;
  std::string fModel;
};

TEST_F(ScoreThreads, ResultsDoNotDependOnTheirNumber) {
  const Rows rows = MakeRows(40000);
  const std::string data = fFiles.Write("rows.csv", rows.data);
  const std::string bad = fFiles.Write("bad.csv", rows.data + "1,a\nq,b\n");

  for (const char* threads : {"1", "2", "5"}) {
    SCOPED_TRACE(threads);
    const ProgramRun run = RunProgram({"score", fModel, data, "--threads", threads});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out == rows.want);
    // Rows before the first that fails are written.
    const ProgramRun failed = RunProgram({"score", fModel, bad, "--threads", threads});
    EXPECT_EQ(failed.status, 3);
    EXPECT_TRUE(failed.out == rows.want + "3\n");
    EXPECT_NE(failed.err.find(", column 1 (x): 'q' is not a number\n"), std::string::npos) << failed.err;
  }
}

TEST_F(ScoreThreads, RowsThatFailMayBePassedOver) {
  const ProgramRun run = RunProgram({"score", fModel, "--keep-going", "--append", "--threads", "2"},
                                    "x,note\n1,a\nq,b\n2\n3,\xFF\n4,d,e\n,f\n5,g\n");
  EXPECT_EQ(run.out,
            "x,note,y,error\n1,a,3,\nq,b,,not-a-number: column 1 (x): 'q' is not a number\n"
            "2,,,\"cell-count: the number of cells is 1, the header has 2\"\n"
            "3,\xFF,,not-utf-8: column 2: the cell is not valid UTF-8 (see --encoding)\n"
            "4,d,,\"cell-count: the number of cells is 3, the header has 2\"\n,f,,\n5,g,11,\n");
  EXPECT_EQ(run.err,
            "veyra: standard input: 4 of 7 rows failed: 2 cell-count, 1 not-a-number, 1 not-utf-8\n");
  EXPECT_EQ(run.status, 3);
  // Where the next row begins cannot be told behind a broken quote.
  const ProgramRun broken = RunProgram({"score", fModel, "--keep-going"}, "x,note\n1,a\n2,b\"c\n3,d\n");
  EXPECT_EQ(broken.out, "y,error\n3,\n");
  EXPECT_EQ(broken.status, 3);
  EXPECT_NE(broken.err.find("line 3, column 2: a quote stands inside"), std::string::npos);
}

TEST_F(ScoreThreads, PackedFilesAreReadAsTheyAre) {
  const Rows rows = MakeRows(2000);
  const std::size_t half = rows.data.size() / 2;
  // One file of two members, as when packed files are put together.
  const std::string packed = Pack(rows.data.substr(0, half)) + Pack(rows.data.substr(half));
  EXPECT_TRUE(RunProgram({"score", fModel}, packed).out == rows.want);
  const ProgramRun cut = RunProgram({"score", fModel}, packed.substr(0, packed.size() - 20));
  EXPECT_EQ(cut.status, 3);
  EXPECT_NE(cut.err.find("the gzip data is cut off"), std::string::npos) << cut.err;
  std::string damaged = packed;
  damaged[packed.size() / 3] ^= 1;
  EXPECT_NE(RunProgram({"score", fModel}, damaged).err.find("the gzip data is damaged"), std::string::npos);
}

TEST_F(ScoreThreads, OutputsThatCannotBe) {
  const TemporaryDirectory out;
  const std::string data = out.Write("data.csv", "x\n1\n");
  const struct {
    const char* what;
    std::string path;
    std::string want;
  } rows[] = {
      {"a full disk", "/dev/full", "/dev/full: cannot write: No space left on device"},
      {"no directory", out.Path("none/x"), out.Path("none/x") + ": cannot write the file: No such file"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const ProgramRun run = RunProgram({"score", fModel, data, "-o", row.path});
    EXPECT_EQ(run.err.substr(0, row.want.size() + 7), "veyra: " + row.want);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(ReadFile(data), "x\n1\n");
    EXPECT_EQ(out.CountFiles(), 1U);
  }
}

TEST_F(ScoreThreads, AnOldFileKeepsItsMode) {
  const std::string path = fFiles.Write("out.csv", "");
  std::filesystem::permissions(path,
                               std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  EXPECT_EQ(RunProgram({"score", fModel, "-o", path}, "x\n1\n").status, 0);
  EXPECT_EQ(std::filesystem::status(path).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

// The program at work on rows that come through a pipe, of which it has written the first results.
class RunningProgram {
 public:
  RunningProgram(std::vector<std::string> arguments, const std::string& first) {
    int in[2];
    int out[2];
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0) return;
    std::vector<char*> words = {const_cast<char*>(VEYRA_TEST_PROGRAM)};
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    fChild = fork();
    if (fChild == 0) {
      dup2(in[0], 0);
      dup2(out[1], 1);
      execv(words[0], words.data());
      _exit(127);
    }
    close(in[0]);
    close(out[1]);
    fIn = in[1];
    fOut = out[0];
    Feed(first);
  }
  ~RunningProgram() {
    close(fIn);
    if (fOut >= 0) close(fOut);
  }
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  void Feed(const std::string& text) const {
    EXPECT_EQ(write(fIn, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  std::string ReadSome() const {
    std::string text(4096, '\0');
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(0, read(fOut, text.data(), text.size()))));
    return text;
  }
  void CloseOutput() {
    close(fOut);
    fOut = -1;
  }
  pid_t GetPid() const { return fChild; }
  void Kill(int signal) const { kill(fChild, signal); }
  // The status as waitpid gives it.
  int Wait() const {
    int status = -1;
    waitpid(fChild, &status, 0);
    return status;
  }

 private:
  pid_t fChild = -1;
  int fIn = -1;
  int fOut = -1;
};

TEST_F(ScoreThreads, ASignalLeavesTheOldFile) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "the thread sanitizer keeps signals back while a thread waits for input";
#endif
  for (const int signal : {SIGINT, SIGTERM}) {
    const TemporaryDirectory out;
    const std::string path = out.Write("out.csv", "what stood there\n");
    RunningProgram program({"score", fModel, "-o", path}, "x\n1\n");
    const std::string partial = path + ".partial." + std::to_string(program.GetPid());
    while (ReadFile(partial) != "y\n3\n") std::this_thread::yield();
    program.Kill(signal);
    const int status = program.Wait();
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
    EXPECT_EQ(ReadFile(path), "what stood there\n");
    EXPECT_EQ(out.CountFiles(), 1U);
  }
}

TEST_F(ScoreThreads, RowsAreScoredAsTheyComeAndAClosedPipeEndsQuietly) {
  RunningProgram program({"score", fModel, "--threads", "2"}, "x\n1\n");
  std::string got;
  while (got.size() < 4) got += program.ReadSome();
  EXPECT_EQ(got, "y\n3\n");
  program.CloseOutput();
  program.Feed("2\n");
  // The other thread waits for rows that never come; it must not keep the program from ending.
  const int status = program.Wait();
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

}  // namespace
