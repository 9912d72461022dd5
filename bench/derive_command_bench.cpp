// veyra derive on a million rows with one thread, against a program written by hand: libcsv finds the cells,
// from_chars reads the numbers, a hand-written function computes the same hundred fields, to_chars and one
// write a block put them out.
//
// Times are processor times: one thread is compared with one thread.

#include <csv.h>
#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "Comparison.h"
#include "DerivedFields.h"
#include "Program.h"

namespace {

using namespace VeyraBench;

constexpr std::size_t kDataRows = 1'000'000;
constexpr std::size_t kBlockRows = 5'000;  // different ones, over and over
constexpr double kLimit = 2.0;

std::string RowsText(const std::vector<Case>& cases) {
  std::string text;
  char buffer[32];
  for (const Case& one : cases) {
    for (const double x : one.numbers) {
      text.append(buffer,
                  std::to_chars(buffer, buffer + sizeof buffer, x, std::chars_format::general, 6).ptr);
      text += ',';
    }
    for (std::size_t i = 0; i < kTexts; ++i) text += one.texts[i] + (i + 1 < kTexts ? ',' : '\n');
  }
  return text;
}

// The same work by hand.
class ByHand {
 public:
  explicit ByHand(const std::string& output)
      : fOut(open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600)) {}
  ~ByHand() { close(fOut); }
  ByHand(const ByHand&) = delete;
  ByHand& operator=(const ByHand&) = delete;

  void Run(const std::string& path) {
    csv_parser parser;
    Require(csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) == 0, "libcsv");
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    std::vector<char> buffer(256 * 1024);
    const auto onCell = [](void* cell, std::size_t size, void* self) {
      static_cast<ByHand*>(self)->Read(static_cast<const char*>(cell), size);
    };
    const auto onRow = [](int, void* self) { static_cast<ByHand*>(self)->EndRow(); };
    for (ssize_t size; (size = read(file, buffer.data(), buffer.size())) > 0;)
      csv_parse(&parser, buffer.data(), static_cast<std::size_t>(size), onCell, onRow, this);
    Flush();
    close(file);
    csv_free(&parser);
    Require(fRow == kDataRows + 1, "the number of rows");
  }

 private:
  void Read(const char* cell, std::size_t size) {
    if (fColumn < kNumbers) {
      std::from_chars(cell, cell + size, fCase.numbers[fColumn]);
    } else {
      fCase.texts[fColumn - kNumbers].assign(cell, size);
    }
    ++fColumn;
  }

  void EndRow() {
    fColumn = 0;
    if (fRow++ == 0) return;  // the header
    const HandWritten::Values& values = fHandWritten.Compute(fCase);
    for (std::size_t i = 0; i < kOfEach; ++i) {
      Put(values.arithmetic[i]);
      Put(values.comparison[i]);
      Put(values.norm[i]);
      fText.append(*values.bin[i]).append(1, ',');
      Put(values.mapped[i]);
    }
    fText.back() = '\n';
    if (fText.size() > 256 * 1024) Flush();
  }

  void Put(double number) {
    char buffer[32];
    fText.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr).append(1, ',');
  }

  void Flush() {
    Require(write(fOut, fText.data(), fText.size()) == static_cast<ssize_t>(fText.size()), "written");
    fText.clear();
  }

  HandWritten fHandWritten;
  Case fCase;
  std::size_t fColumn = 0;
  std::size_t fRow = 0;
  std::string fText;
  int fOut;
};

// Every number of both outputs is close to its counterpart, every text the same.
void RequireTheSame(const std::string& derived, const std::string& byHand) {
  std::ifstream left(derived), right(byHand);
  std::string cell, wanted;
  std::getline(left, cell);  // the header
  std::size_t cells = 0;
  while (std::getline(right, wanted, ',') && std::getline(left, cell, ',')) {
    ++cells;
    if (cell == wanted) continue;
    Require(
        std::fabs(std::stod(cell) - std::stod(wanted)) <= 1e-9 * std::max(1.0, std::fabs(std::stod(wanted))),
        "a derived value");
  }
  Require(cells > 99 * kBlockRows, "the number of cells");
}

}  // namespace

int main() {
  std::string name = (std::filesystem::temp_directory_path() / "veyra_bench.XXXXXX").string();
  Require(mkdtemp(name.data()) != nullptr, "no temporary directory");
  const std::filesystem::path folder = name;
  const auto path = [&](const char* file) { return (folder / file).string(); };
  const std::string block = RowsText(MakeCases(kBlockRows));
  std::ofstream(path("model.pmml")) << DocumentText();
  {
    std::ofstream rows(path("rows.csv"), std::ios::binary);
    for (std::size_t i = 0; i < kNumbers; ++i) rows << 'x' << i << ',';
    for (std::size_t i = 0; i < kTexts; ++i) rows << 's' << i << (i + 1 < kTexts ? ',' : '\n');
    for (std::size_t i = 0; i < kDataRows; i += kBlockRows) rows << block;
  }
  const double floor = SecondsOf([&] { ByHand(path("by_hand.csv")).Run(path("rows.csv")); });
  const Usage usage = RunCommand(
      {"derive", path("model.pmml"), path("rows.csv"), "--threads", "1", "-o", path("derived.csv")}, -1);
  RequireTheSame(path("derived.csv"), path("by_hand.csv"));
  std::filesystem::remove_all(folder);
  PrintRatio("veyra derive, one thread / by hand", usage.processorSeconds / floor, kLimit);
  std::printf("%.1f s and %.1f s; %.1f MB at its peak\n", usage.processorSeconds, floor, usage.peakMegabytes);
}
