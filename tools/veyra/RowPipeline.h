// Rows in, rows out: what the commands that go over the rows of a file have in common.
//
// N threads take turns: each reads the next block of whole records, works on its rows, and writes their
// results when all blocks before it are written.  So the output does not depend on N, a block and its results
// are all the memory that a thread needs, and a slow reader or writer makes the others wait.
//
//   RowPipeline rows(options);                              // opens the data, reads the header
//   ... bind rows.GetHeader() to what the command needs ...
//   return rows.Run({"result"}, [&] { return std::make_unique<MyWorker>(...); });
//
// What a command adds is a RowWorker.

#ifndef VEYRA_TOOLS_ROWPIPELINE_H_
#define VEYRA_TOOLS_ROWPIPELINE_H_

#include <atomic>
#include <condition_variable>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "veyra/BlockReader.h"
#include "veyra/CsvWriter.h"
#include "veyra/Failures.h"
#include "veyra/OutputFile.h"
#include "veyra/Progress.h"
#include "veyra/RowParser.h"
#include "veyra/TextSource.h"

namespace VeyraTool {

// The options of every command that goes over rows.
struct RowOptions {
  std::string data;      // empty: standard input
  std::string output;    // empty: standard output
  std::string encoding;  // empty: UTF-8
  char delimiter = ',';
  bool hasHeader = true;
  std::vector<std::string> columns;  // names without a header
  int threads = 0;                   // 0: one for each processor
  bool append = false;               // input columns first
  bool keepGoing = false;            // a row that fails gets an empty result and its reason
  bool quiet = false;
};

// The options with one thread, for derived fields that look back at earlier rows; says so when more were
// asked for.
RowOptions WithOneThread(RowOptions options, const std::string& document);

enum class RowOutcome { kResult, kMissingResult, kFailed };

// Turns rows into results.  Each thread has one of its own; it may keep what it needs from row to row, but
// which rows it sees is not known unless there is one thread.
class RowWorker {
 public:
  virtual ~RowWorker();
  // Appends the cells of the row's results, as many as there are result columns, or gives the reason why
  // there are none; cells appended by then are taken back.  A VYException counts as a reason as well. The row
  // has as many cells as the header; they are UTF-8.
  virtual RowOutcome Work(Row row, CsvWriter& out, RowFailure& failure) = 0;
};

class RowPipeline {
 public:
  using MakeWorker = std::function<std::unique_ptr<RowWorker>()>;

  // Throws CommandFailure when the data cannot be opened, DataFailure when its header cannot be read.
  explicit RowPipeline(const RowOptions& options);

  const std::string& GetDataName() const { return fSource.GetName(); }
  const std::vector<std::string>& GetHeader() const { return fHeader; }

  // Goes over all rows, once.  `makeWorker` is called by this thread only, at most once for each thread.
  // Returns kDataRefused when rows failed and were passed over, having said how many, else kDone.  Throws
  // DataFailure for the first row that fails, having written those before it, CommandFailure when the output
  // cannot be written, ClosedPipe.
  ExitStatus Run(const std::vector<std::string>& resultColumns, const MakeWorker& makeWorker);

 private:
  using Counts = std::map<std::string, std::size_t>;

  struct Block {
    std::size_t index = 0;
    std::string text;
    std::string out;
    std::size_t lines = 0;
    RowTotals totals;
    Counts failedRows;
    std::optional<RowFailure> failure;  // ends the run
    std::size_t failureBegin = 0;       // of its row in the text
    std::exception_ptr error;           // the same, for everything else
  };
  struct Lane;

  void ReadHeader();
  void WriteHeader(const std::vector<std::string>& resultColumns);
  void RunLanes(std::vector<std::unique_ptr<Lane>>& lanes);
  bool Take(Block& block);
  void Process(Lane& lane);
  bool WorkOnRow(Lane& lane);
  RowOutcome TryRow(Lane& lane, Row row);
  void WriteFailedRow(Lane& lane, Row row);
  bool Deliver(Block& block);
  void Write(Block& block);
  void Stop();
  ExitStatus Report() const;

  RowOptions fOptions;
  TextSource fSource;
  BlockReader fReader;
  std::vector<std::string> fHeader;
  std::size_t fResultColumns = 0;
  std::optional<OutputFile> fOutput;
  std::optional<Progress> fProgress;

  std::mutex fReadMutex;
  std::size_t fBlocksRead = 0;
  bool fIsReadToTheEnd = false;

  std::mutex fTurnMutex;
  std::condition_variable fTurnChanged;
  std::size_t fTurn = 0;   // the block to be written next
  std::size_t fLines = 0;  // before it
  RowTotals fTotals;
  Counts fFailedRows;
  std::exception_ptr fError;
  std::atomic<bool> fIsStopped = false;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_ROWPIPELINE_H_
