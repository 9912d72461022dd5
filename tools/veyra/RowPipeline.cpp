#include "veyra/RowPipeline.h"

#include <sched.h>

#include <algorithm>
#include <cstdio>
#include <thread>

#include "veyra/VYException.h"

namespace VeyraTool {

namespace {

constexpr std::size_t kKeptCapacity = 4 * BlockReader::kBlockSize;
constexpr const char* kErrorColumn = "error";

// The processors that this process may use.
int CountProcessors() {
  cpu_set_t set;
  CPU_ZERO(&set);
  return sched_getaffinity(0, sizeof set, &set) == 0 ? std::max(1, CPU_COUNT(&set)) : 1;
}

// What a very long row needed is given back.
void Trim(std::string& text) {
  if (text.capacity() <= kKeptCapacity) return;
  text.clear();
  text.shrink_to_fit();
}

}  // namespace

RowWorker::~RowWorker() = default;

// What one thread works with.
struct RowPipeline::Lane {
  Lane(const RowOptions& options, std::size_t columns, std::unique_ptr<RowWorker> rowWorker)
      : writer(block.out, options.delimiter),
        parser(options.delimiter, columns),
        worker(std::move(rowWorker)) {}

  Block block;
  CsvWriter writer;
  RowParser parser;
  std::unique_ptr<RowWorker> worker;
  RowFailure failure;
};

RowOptions WithOneThread(RowOptions options, const std::string& document) {
  if (options.threads > 1)
    std::fprintf(stderr, "veyra: %s: derived fields look back at earlier rows (Lag): one thread is used\n",
                 document.c_str());
  options.threads = 1;
  return options;
}

RowPipeline::RowPipeline(const RowOptions& options)
    : fOptions(options), fSource(options.data, options.encoding), fReader(fSource), fHeader(options.columns) {
  if (fOptions.hasHeader) ReadHeader();
}

void RowPipeline::ReadHeader() {
  const std::string& file = fSource.GetName();
  RowParser parser(fOptions.delimiter, 0);
  std::string record;
  try {
    // Blank lines before the header are passed over.
    while (fReader.ReadRecord(record)) {
      parser.Start(record);
      if (parser.Next() || parser.GetFailure() != nullptr) break;
      fLines += CountLines(record);
      record.clear();
    }
  } catch (const SourceFailure& failure) {
    throw DataFailure(file, {fLines + 1, 0, {}}, failure.what());
  }
  RowFailure failure;
  const RowFailure* broken = parser.GetFailure();
  if (broken == nullptr && !parser.CheckText(failure)) broken = &failure;
  if (broken != nullptr) throw DataFailure(file, {fLines + 1, broken->column, {}}, broken->reason);
  if (record.empty()) throw DataFailure(file, {}, "there is no header row");
  for (const std::string_view cell : parser.GetRow()) fHeader.emplace_back(cell);
  fLines += CountLines(record);
}

void RowPipeline::WriteHeader(const std::vector<std::string>& resultColumns) {
  std::string line;
  CsvWriter writer(line, fOptions.delimiter);
  if (fOptions.append) {
    for (const std::string& name : fHeader) writer.AddText(name);
  }
  for (const std::string& name : resultColumns) writer.AddText(name);
  if (fOptions.keepGoing) writer.AddText(kErrorColumn);
  writer.EndRow();
  fOutput->Write(line);
}

ExitStatus RowPipeline::Run(const std::vector<std::string>& resultColumns, const MakeWorker& makeWorker) {
  fResultColumns = resultColumns.size();
  const auto makeLane = [&] { return std::make_unique<Lane>(fOptions, fHeader.size(), makeWorker()); };
  std::vector<std::unique_ptr<Lane>> lanes;
  lanes.push_back(makeLane());
  fOutput.emplace(fOptions.output);
  fProgress.emplace(fOptions.quiet, fSource.GetBytes());
  WriteHeader(resultColumns);
  if (Take(lanes[0]->block)) {
    // One thread is enough for what fits into one block.
    const int threads = fOptions.threads > 0 ? fOptions.threads : CountProcessors();
    while (!fIsReadToTheEnd && static_cast<int>(lanes.size()) < threads) lanes.push_back(makeLane());
    RunLanes(lanes);
    if (fError != nullptr) std::rethrow_exception(fError);
  }
  fOutput->Finish();
  fProgress->Finish(fTotals);
  return Report();
}

void RowPipeline::RunLanes(std::vector<std::unique_ptr<Lane>>& lanes) {
  const auto run = [this](Lane& lane, bool hasBlock) {
    while (hasBlock || Take(lane.block)) {
      hasBlock = false;
      Process(lane);
      if (!Deliver(lane.block)) return;
    }
  };
  std::vector<std::jthread> threads;
  try {
    for (std::size_t i = 1; i < lanes.size(); ++i) {
      threads.emplace_back([&run, &lane = *lanes[i]] { run(lane, false); });
    }
  } catch (const std::system_error&) {
    // The threads that could be started do the work.
  }
  run(*lanes[0], true);
}

// Reads the next block; false when there is none.  What goes wrong is the block's own failure, so that it is
// told when all before it is written.
bool RowPipeline::Take(Block& block) {
  const std::scoped_lock lock(fReadMutex);
  if (fIsReadToTheEnd || fIsStopped) return false;
  try {
    Trim(block.text);
    Trim(block.out);
    if (!fReader.ReadBlock(block.text)) {
      fIsReadToTheEnd = true;
      return false;
    }
    fIsReadToTheEnd = fReader.IsAtEnd();
  } catch (const SourceFailure& failure) {
    fIsReadToTheEnd = true;
    block.failure.emplace().reason = failure.what();
    block.failureBegin = block.text.size();
  } catch (...) {
    fIsReadToTheEnd = true;
    block.error = std::current_exception();
  }
  block.index = fBlocksRead++;
  return true;
}

void RowPipeline::Process(Lane& lane) {
  Block& block = lane.block;
  block.out.clear();
  block.totals = {};
  block.failedRows.clear();
  if (block.failure.has_value() || block.error != nullptr) return;
  try {
    lane.parser.Start(block.text);
    while (lane.parser.Next()) {
      if (!WorkOnRow(lane)) return;
    }
    block.lines = lane.parser.GetLineCount();
    if (lane.parser.GetFailure() == nullptr) return;
    block.failure = *lane.parser.GetFailure();
    block.failureBegin = lane.parser.GetRowBegin();
  } catch (...) {
    block.error = std::current_exception();
  }
}

// False when the row ends the run.
bool RowPipeline::WorkOnRow(Lane& lane) {
  const Row row = lane.parser.GetRow();
  const CsvWriter::Mark mark = lane.writer.GetMark();
  const RowOutcome outcome = TryRow(lane, row);
  if (outcome == RowOutcome::kFailed) {
    lane.writer.GoBack(mark);
    if (!fOptions.keepGoing) {
      lane.block.failure = lane.failure;
      lane.block.failureBegin = lane.parser.GetRowBegin();
      return false;
    }
    WriteFailedRow(lane, row);
    ++lane.block.failedRows[lane.failure.kind];
  } else if (fOptions.keepGoing) {
    lane.writer.AddText({});
  }
  lane.writer.EndRow();
  ++lane.block.totals.rows;
  lane.block.totals.missingResults += outcome == RowOutcome::kResult ? 0 : 1;
  return true;
}

RowOutcome RowPipeline::TryRow(Lane& lane, Row row) {
  if (row.size() != fHeader.size()) {
    lane.failure.Set("cell-count", 0, {},
                     "the number of cells is " + std::to_string(row.size()) + ", the header has " +
                         std::to_string(fHeader.size()));
    return RowOutcome::kFailed;
  }
  if (!lane.parser.CheckText(lane.failure)) return RowOutcome::kFailed;
  if (fOptions.append) {
    for (const std::string_view cell : row) lane.writer.AddText(cell);
  }
  try {
    return lane.worker->Work(row, lane.writer, lane.failure);
  } catch (const KxVeyra_940::VYException& exception) {
    lane.failure.Set(std::to_string(exception.GetErrorCode()), 0, {}, exception.GetErrorMessage());
    return RowOutcome::kFailed;
  }
}

// The row's own cells as far as the header has columns, no results, the reason.
void RowPipeline::WriteFailedRow(Lane& lane, Row row) {
  if (fOptions.append) {
    for (std::size_t i = 0; i < fHeader.size(); ++i) lane.writer.AddText(i < row.size() ? row[i] : "");
  }
  for (std::size_t i = 0; i < fResultColumns; ++i) lane.writer.AddText({});
  lane.writer.AddText(lane.failure.GetText());
}

// Writes the block when its turn has come; false when the run has ended before.
bool RowPipeline::Deliver(Block& block) {
  std::unique_lock lock(fTurnMutex);
  fTurnChanged.wait(lock, [&] { return fTurn == block.index || fIsStopped; });
  if (fIsStopped) return false;
  try {
    Write(block);
  } catch (...) {
    fError = std::current_exception();
    Stop();
    return false;
  }
  ++fTurn;
  fTurnChanged.notify_all();
  return true;
}

void RowPipeline::Write(Block& block) {
  fOutput->Write(block.out);
  if (block.error != nullptr) std::rethrow_exception(block.error);
  if (block.failure.has_value()) {
    const std::size_t line = fLines + CountLines(block.text.substr(0, block.failureBegin)) + 1;
    throw DataFailure(fSource.GetName(), {line, block.failure->column, block.failure->field},
                      block.failure->reason);
  }
  fLines += block.lines;
  fTotals.rows += block.totals.rows;
  fTotals.missingResults += block.totals.missingResults;
  for (const auto& [kind, count] : block.failedRows) fFailedRows[kind] += count;
  fProgress->Show(fTotals);
}

void RowPipeline::Stop() {
  fIsStopped = true;
  fSource.GetBytes().Interrupt();
  fTurnChanged.notify_all();
}

ExitStatus RowPipeline::Report() const {
  if (fFailedRows.empty()) return kDone;
  std::size_t sum = 0;
  std::string kinds;
  for (const auto& [kind, count] : fFailedRows) {
    sum += count;
    kinds.append(kinds.empty() ? "" : ", ").append(std::to_string(count)).append(" ").append(kind);
  }
  std::fprintf(stderr, "veyra: %s: %zu of %zu rows failed: %s\n", fSource.GetName().c_str(), sum,
               fTotals.rows, kinds.c_str());
  return kDataRefused;
}

}  // namespace VeyraTool
