// Models that another program fitted, scored by veyra score, against that program's own answers.

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "tools/RunProgram.h"

namespace {

using namespace VeyraTest;

constexpr double kTolerance = 1e-12;  // relative

const std::filesystem::path kFolder = Document("general_regression");

bool IsDocument(const std::filesystem::path& path) {
  return path.extension() == ".pmml" || path.extension() == ".xml";
}

void ExpectColumn(const Table& got, const Table& want, std::size_t column) {
  const std::string& name = want[0][column];
  const auto found = std::find(got[0].begin(), got[0].end(), name);
  ASSERT_NE(found, got[0].end()) << name;
  const auto of = static_cast<std::size_t>(found - got[0].begin());
  const bool isText = std::isalpha(static_cast<unsigned char>(want[1][column][0])) != 0;
  for (std::size_t row = 1; row < want.size(); ++row) {
    SCOPED_TRACE(name + ", row " + std::to_string(row));
    const std::string& answer = got[row].at(of);
    if (isText) {
      EXPECT_EQ(answer, want[row][column]);
      continue;
    }
    const double number = std::stod(want[row][column]);
    ASSERT_FALSE(answer.empty());
    EXPECT_NEAR(std::stod(answer), number, kTolerance * std::fabs(number));
  }
}

TEST(GeneralModels, EqualTheFittingProgram) {
  int documents = 0;
  for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
    if (!IsDocument(entry.path())) continue;
    SCOPED_TRACE(entry.path().filename());
    ++documents;
    const ProgramRun run = RunProgram({"score", entry.path(), kFolder / "clinic.csv"});
    ASSERT_EQ(run.status, 0) << run.err;
    const Table got = ReadCells(run.out);
    const Table want = ReadCells(ReadFile(kFolder / (entry.path().stem().string() + ".expected.csv")));
    ASSERT_EQ(want.size(), 121U);
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t column = 0; column < want[0].size(); ++column) ExpectColumn(got, want, column);
  }
  EXPECT_EQ(documents, 23);
}

}  // namespace
