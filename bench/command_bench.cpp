// The command line on a million rows of 20 columns, against libcsv alone on the same file.
//
// Time is that of the clock, for two threads are to be faster than one; on a machine that has other work only
// the processor time of one thread tells.  The floor reads the file and lets libcsv find its cells; nothing
// is done with them.

#include <benchmark/benchmark.h>
#include <csv.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "Comparison.h"
#include "Program.h"

namespace {

using namespace VeyraBench;

constexpr int kNumbers = 16;
constexpr int kClasses = 4;
constexpr int kCategories = 12;
constexpr std::size_t kRows = 1'000'000;
constexpr std::size_t kBlockRows = 10'000;  // different ones, over and over
constexpr int kRounds = 5;
constexpr double kLimitOneThread = 2.0;
constexpr double kLimitTwoThreads = 1.2;
constexpr double kLimitMegabytes = 64;

std::string Text(double number) {
  char text[32];
  return std::string(text, std::to_chars(text, text + sizeof text, number).ptr);
}

// A model, rows for it, and what the model makes of them.
struct Inputs {
  std::string document;
  std::string header;
  std::string rows;  // kBlockRows of them
  std::vector<double> answers;
};

Inputs MakeInputs() {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> coefficient(-2, 2);
  std::uniform_real_distribution<double> value(-100, 100);
  Inputs inputs;
  std::string fields;
  std::string schema;
  std::string terms;
  std::vector<double> slopes;
  std::vector<std::vector<double>> effects(kClasses);
  for (int i = 0; i < kNumbers; ++i) {
    const std::string name = "number " + std::to_string(i);
    slopes.push_back(coefficient(random));
    fields += "<DataField name='" + name + "' optype='continuous' dataType='double'/>";
    schema += "<MiningField name='" + name + "'/>";
    terms += "<NumericPredictor name='" + name + "' coefficient='" + Text(slopes.back()) + "'/>";
    inputs.header += name + ",";
  }
  for (int i = 0; i < kClasses; ++i) {
    const std::string name = "class " + std::to_string(i);
    fields += "<DataField name='" + name + "' optype='categorical' dataType='string'>";
    schema += "<MiningField name='" + name + "'/>";
    for (int j = 0; j < kCategories; ++j) {
      const std::string category = "category " + std::to_string(j);
      effects[i].push_back(coefficient(random));
      fields += "<Value value='" + category + "'/>";
      terms += "<CategoricalPredictor name='" + name + "' value='" + category + "' coefficient='" +
               Text(effects[i].back()) + "'/>";
    }
    fields += "</DataField>";
    inputs.header += name + (i + 1 < kClasses ? "," : "\n");
  }
  inputs.document = "<PMML version='4.4'><DataDictionary numberOfFields='21'>" + fields +
                    "<DataField name='answer' optype='continuous' dataType='double'/></DataDictionary>"
                    "<RegressionModel functionName='regression'><MiningSchema>" +
                    schema + "<MiningField name='answer' usageType='target'/></MiningSchema>" +
                    "<RegressionTable intercept='1'>" + terms + "</RegressionTable></RegressionModel></PMML>";
  for (std::size_t row = 0; row < kBlockRows; ++row) {
    double answer = 1;
    for (int i = 0; i < kNumbers; ++i) {
      char text[32];
      std::snprintf(text, sizeof text, "%.6g", value(random));
      answer += slopes[i] * std::strtod(text, nullptr);
      inputs.rows.append(text).append(",");
    }
    for (int i = 0; i < kClasses; ++i) {
      const auto category = random() % kCategories;
      answer += effects[i][category];
      inputs.rows += "category " + std::to_string(category) + (i + 1 < kClasses ? "," : "\n");
    }
    inputs.answers.push_back(answer);
  }
  return inputs;
}

// The inputs as files, gone afterwards.
class Files {
 public:
  explicit Files(const Inputs& inputs) {
    std::string name = (std::filesystem::temp_directory_path() / "veyra_bench.XXXXXX").string();
    Require(mkdtemp(name.data()) != nullptr, "no temporary directory");
    fPath = name;
    std::ofstream(Path("model.pmml")) << inputs.document;
    std::ofstream rows(Path("rows.csv"), std::ios::binary);
    rows << inputs.header;
    for (std::size_t i = 0; i < kRows; i += kBlockRows) rows << inputs.rows;
  }
  ~Files() { std::filesystem::remove_all(fPath); }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  std::string Path(const char* name) const { return (fPath / name).string(); }

 private:
  std::filesystem::path fPath;
};

void ParseWithLibcsv(const std::string& path) {
  csv_parser parser;
  Require(csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) == 0, "libcsv");
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  std::vector<char> buffer(256 * 1024);
  std::size_t cells = 0;
  const auto onCell = [](void*, std::size_t, void* count) { ++*static_cast<std::size_t*>(count); };
  for (ssize_t size; (size = read(file, buffer.data(), buffer.size())) > 0;) {
    csv_parse(&parser, buffer.data(), static_cast<std::size_t>(size), onCell, nullptr, &cells);
  }
  close(file);
  csv_free(&parser);
  Require(cells == (kRows + 1) * (kNumbers + kClasses), "the number of cells");
}

void CheckAnswers(const Inputs& inputs, const std::string& path) {
  std::ifstream in(path);
  std::string line;
  std::getline(in, line);
  Require(line == "answer", "the header of the results");
  std::size_t row = 0;
  for (; std::getline(in, line); ++row) {
    const double want = inputs.answers[row % kBlockRows];
    Require(std::abs(std::stod(line) - want) <= 1e-12 * std::max(1.0, std::abs(want)), "an answer");
  }
  Require(row == kRows, "the number of results");
}

double gRatios[2];
double gProcessorRatio;  // of one thread

void Score(benchmark::State& state, const Files& files) {
  const auto threads = std::to_string(state.range(0));
  const std::string rows = files.Path("rows.csv");
  std::vector<double> floors;
  std::vector<double> scores;
  std::vector<double> processorFloors;
  std::vector<double> processorScores;
  for ([[maybe_unused]] const auto iteration : state) {
    floors.push_back(
        WallSecondsOf([&] { processorFloors.push_back(SecondsOf([&] { ParseWithLibcsv(rows); })); }));
    scores.push_back(WallSecondsOf([&] {
      const Usage usage =
          RunCommand({"score", files.Path("model.pmml"), rows, "--threads", threads, "-o", "/dev/null"}, -1);
      processorScores.push_back(usage.processorSeconds);
    }));
    state.SetIterationTime(scores.back());
  }
  state.counters["libcsv"] = Median(floors);
  if (state.range(0) == 1) gProcessorRatio = Median(processorScores) / Median(processorFloors);
  state.counters["ratio"] = gRatios[state.range(0) - 1] = Median(scores) / Median(floors);
}

// Peak memory for so many rows that come through a pipe.
double PeakMegabytes(const Inputs& inputs, const Files& files, std::size_t rows) {
  int ends[2];
  Require(pipe2(ends, O_CLOEXEC) == 0, "no pipe");
  const pid_t writer = fork();
  if (writer == 0) {
    close(ends[0]);
    const auto put = [&](const std::string& text) {
      for (std::size_t at = 0; at < text.size();) {
        const ssize_t written = write(ends[1], text.data() + at, text.size() - at);
        if (written < 0) _exit(1);
        at += static_cast<std::size_t>(written);
      }
    };
    put(inputs.header);
    for (std::size_t i = 0; i < rows; i += kBlockRows) put(inputs.rows);
    _exit(0);
  }
  close(ends[1]);
  const Usage usage = RunCommand({"score", files.Path("model.pmml"), "-o", "/dev/null"}, ends[0]);
  waitpid(writer, nullptr, 0);
  return usage.peakMegabytes;
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const Inputs inputs = MakeInputs();
  const Files files(inputs);
  const std::string results = files.Path("results.csv");
  for (const char* threads : {"1", "2"}) {
    RunCommand(
        {"score", files.Path("model.pmml"), files.Path("rows.csv"), "--threads", threads, "-o", results}, -1);
    CheckAnswers(inputs, results);
  }
  benchmark::RegisterBenchmark("score", [&](benchmark::State& state) { Score(state, files); })
      ->Arg(1)
      ->Arg(2)
      ->UseManualTime()
      ->Iterations(kRounds)
      ->Unit(benchmark::kMillisecond);
  benchmark::RunSpecifiedBenchmarks();
  PrintRatio("one thread / libcsv", gRatios[0], kLimitOneThread);
  PrintRatio("one thread / libcsv, processor time", gProcessorRatio, kLimitOneThread);
  PrintRatio("two threads / libcsv", gRatios[1], kLimitTwoThreads);
  PrintRatio("peak memory, MB, 100,000 rows", PeakMegabytes(inputs, files, kRows / 10), kLimitMegabytes);
  PrintRatio("peak memory, MB, 10,000,000 rows", PeakMegabytes(inputs, files, 10 * kRows), kLimitMegabytes);
  return 0;
}
