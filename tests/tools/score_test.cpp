// veyra score: rows in, results out, and every kind of bad input with its line and status.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <iterator>

#include "tools/RunProgram.h"

namespace {

using namespace VeyraTest;

// The words of a text.
std::vector<std::string> Words(const std::string& text) {
  std::istringstream in(text);
  return {std::istream_iterator<std::string>(in), {}};
}

const char* const kModel =
    "<PMML version='4.4'><DataDictionary numberOfFields='4'>"
    "<DataField name='x' optype='continuous' dataType='double'/>"
    "<DataField name='color' optype='categorical' dataType='string'><Value value='red'/><Value value='a,b'/>"
    "</DataField><DataField name='day' optype='continuous' dataType='date'/>"
    "<DataField name='y' optype='continuous' dataType='double'/></DataDictionary>"
    "<RegressionModel functionName='regression'><MiningSchema>"
    "<MiningField name='x' missingValueReplacement='0'/><MiningField name='color'/>"
    "<MiningField name='day' missingValueReplacement='0'/><MiningField name='y' usageType='target'/>"
    "</MiningSchema><RegressionTable intercept='1'><NumericPredictor name='x' coefficient='2'/>"
    "<NumericPredictor name='day' coefficient='1'/>"
    "<CategoricalPredictor name='color' value='red' coefficient='100'/>"
    "<CategoricalPredictor name='color' value='a,b' coefficient='1000'/>"
    "</RegressionTable></RegressionModel></PMML>";

class Score : public ::testing::Test {
 protected:
  Score() : fModel(fFiles.Write("model.pmml", kModel)) {}

  ProgramRun Run(const std::string& data, const std::string& options = "") const {
    return RunProgram(Words("score " + fModel + " " + options), data);
  }

  TemporaryDirectory fFiles;
  std::string fModel;
};

struct Row {
  const char* what;
  std::string data;
  const char* options;
  std::string want;
};

TEST_F(Score, Rows) {
  const Row rows[] = {
      {"columns in any order", "color,day,x\nred,1970-01-02,3\n", "", "y\n86507\n"},
      {"columns that the model does not know", "id,x,color,day\n7,3,red,\n", "", "y\n107\n"},
      {"a missing cell is replaced, adds nothing, or an invalid one leaves no result",
       "x,color,day\n,red,\n1,,\n1,green,\n", "", "y\n101\n3\n\n"},
      {"texts that mean missing", "x,color,day\nNA,red,?\n", "--missing NA --missing ?", "y\n101\n"},
      {"a quoted delimiter and CR LF", "x,color,day\r\n\"1\",\"a,b\",\r\n", "", "y\n1003\n"},
      {"no line end behind the last row", "x,color,day\n1,red,", "", "y\n103\n"},
      {"a byte order mark", "\xEF\xBB\xBFx,color,day\n1,red,\n", "", "y\n103\n"},
      {"another delimiter", "x;color;day\n1;red;\n", "--delimiter ;", "y\n103\n"},
      {"a tabulator", "x\tcolor\tday\n1\tred\t\n", "--delimiter \\t", "y\n103\n"},
      {"blank lines are no rows", "x,color,day\n\n1,red,\n\n\n", "", "y\n103\n"},
      {"blanks around a number", "x,color,day\n 1 ,red,\n", "", "y\n103\n"},
      {"a header and no rows", "x,color,day\n", "", "y\n"},
      {"input columns first", "x,color,day\n1,\"a,b\",\n", "--append", "x,color,day,y\n1,\"a,b\",,1003\n"},
      {"an absent column counts as missing", "x,color\n1,red\n", "--lax-columns", "y\n103\n"},
      {"data in another encoding", "x,color,day,\xE9\n1,red,,\n", "--encoding ISO-8859-1 --append",
       "x,color,day,\xC3\xA9,y\n1,red,,,103\n"},
      {"one name twice in the header, of a column that is not needed", "x,note,color,day,note\n1,a,red,,b\n",
       "", "y\n103\n"},
      {"line ends of CR alone", "x,color,day\r1,red,\r2,red,\r", "", "y\n103\n105\n"},
      {"no header", "1,red,\n2,red,\n", "--no-header --columns x,color,day", "y\n103\n105\n"},
      {"ten million bytes in one cell", "x,color,day,note\n1,red,," + std::string(10000000, 'n') + "\n", "",
       "y\n103\n"},
      {"a cell of many lines", "x,color,day,note\n1,red,,\"a\r\n\"\"b\"\"\n\"\n", "--append",
       "x,color,day,note,y\n1,red,,\"a\r\n\"\"b\"\"\n\",103\n"},
      {"the shortest text of a number", "x,color,day\n0.05,red,\n", "", "y\n101.1\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const ProgramRun run = Run(row.data, row.options);
    EXPECT_EQ(run.out, row.want);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
  }
}

TEST_F(Score, OneColumnMayHaveBlankLines) {
  const std::string model = fFiles.Write(
      "one.pmml",
      "<PMML version='4.4'><DataDictionary numberOfFields='1'><DataField name='x' optype='continuous'/>"
      "</DataDictionary><RegressionModel functionName='regression'><MiningSchema><MiningField name='x'"
      " missingValueReplacement='5'/></MiningSchema><RegressionTable intercept='0'>"
      "<NumericPredictor name='x' coefficient='1'/></RegressionTable></RegressionModel></PMML>");
  EXPECT_EQ(RunProgram({"score", model}, "x\n1\n\n2\n").out, "predicted\n1\n5\n2\n");
}

TEST_F(Score, BadData) {
  std::vector<Row> rows = {
      {"no header", "", "", "there is no header row"},
      {"no column", "x,day\n1,\n", "", "there is no column 'color', which the model needs"},
      {"a needed column stands there twice", "x,color,day,x\n1,red,,1\n", "",
       "line 1, column 4 (x): the model needs this column, and the header has it twice"},
      {"too few", "x,color,day\n1,red,\n1,red\n", "", "line 3: the number of cells is 2, the header has 3"},
      {"too many", "x,color,day\n1,red,,\n", "", "line 2: the number of cells is 4, the header has 3"},
      {"no date", "x,color,day\n1,red,2021-02-30\n", "",
       "line 2, column 3 (day): '2021-02-30' is not a date or time of the field's type"},
      {"the empty cell, when another text means missing", "x,color,day\n,red,NA\n", "--missing NA",
       "line 2, column 1 (x): '' is not a number"},
      {"a line number counts lines, not rows", "x,color,day,note\n1,red,,\"two\nlines\"\nq,red,,\n", "",
       "line 4, column 1 (x): 'q' is not a number"},
      {"a NUL byte", std::string("x,color,day\n1,r\0d,\n", 18), "",
       "line 2, column 2: the cell holds a NUL byte"},
      {"bytes that are no UTF-8", "x,color,day\n1,\xE9,\n", "",
       "line 2, column 2: the cell is not valid UTF-8 (see --encoding)"},
      {"bytes that the encoding does not have", "x,color,day\n1,\x81,\n", "--encoding Shift_JIS",
       "line 2: the text is not in the encoding that --encoding names"},
      {"a quote inside a cell", "x,color,day\n1,re\"d,\n", "",
       "line 2, column 2: a quote stands inside a cell that is not quoted, or text follows the closing "
       "quote"},
      {"a cell that is no number is cut short", "x,color,day\n" + std::string(1000, '7') + "q,red,\n", "",
       "line 2, column 1 (x): '" + std::string(80, '7') + "...' is not a number"},
      {"a quote left open in a long text", "x,color,day\n1,\"" + std::string(65 << 20, '\n'), "",
       "line 2: the row is longer than 64 MiB: is a quote left open?"},
      {"a quote left open", "x,color,day\n1,\"red,\n", "", "line 2, column 2: the quoted cell does not end"},
  };
  // Words that other programs take for numbers, one beyond the numbers, and the one that stands for missing.
  for (const std::string cell : {"information", "inf", "nan", "1.5x", "-1e999", "-1.7976931348623157e308"}) {
    rows.push_back({"no number", "x,color,day\n" + cell + ",red,\n", "",
                    "line 2, column 1 (x): '" + cell + "' is not a number"});
  }
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const ProgramRun run = Run(row.data, row.options);
    EXPECT_EQ(run.err, "veyra: standard input: " + row.want + "\n");
    EXPECT_EQ(run.status, 3);
  }
}

TEST_F(Score, WrongUsageAndRefusedDocuments) {
  const std::string notXml = fFiles.Write("not.pmml", "no XML");
  const std::string data = fFiles.Write("data.csv", "x,color,day\n1,red,\n");
  const std::string badCatalog = fFiles.Write("crlf.txt", "RegressionModel\r\nTreeModel\r\n");
  const std::string directory = std::filesystem::path(data).parent_path().string();
  const std::string none = directory + "/none";
  const std::string score = "score " + fModel + " ";
  const struct {
    const char* what;
    std::string arguments;
    int status;
    std::string want;  // at the start of standard error
  } rows[] = {
      {"no command", "", 1, "veyra: A subcommand is required (see veyra --help)"},
      {"an unknown command", "frobnicate", 1, "veyra: there is no command 'frobnicate' (see veyra --help)"},
      {"an unknown option", score + "--fast", 1,
       "veyra: The following argument was not expected: --fast (see veyra score --help)"},
      {"no model", "score", 1, "veyra: MODEL is required"},
      {"a long delimiter", score + "--delimiter ;;", 1, "veyra: --delimiter: takes one ASCII character"},
      {"no such data", score + none, 1, "veyra: " + none + ": cannot open the file: No such file"},
      {"an unknown encoding", score + data + " --encoding nonsense", 1, "veyra: unknown encoding 'nonsense'"},
      {"an output in no directory", score + data + " -o " + none + "/out", 1,
       "veyra: " + none + "/out: cannot write the file: No such file"},
      {"no such document", "score " + none, 2,
       "veyra: " + none + ": error 260104: Unexpected error in opening PMML file: '"},
      {"a directory as document", "score " + directory, 2, "veyra: " + directory + ": error 260104: "},
      {"no XML", "score " + notXml, 2, "veyra: " + notXml + ": error 260110: Missing root element"},
      {"no such catalogue", score + "--catalog " + none, 2,
       "veyra: " + none + ": error 260103: Could not open file: '"},
      {"a directory as catalogue", score + "--catalog " + directory, 2,
       "veyra: " + directory + ": error 260103: "},
      {"a catalogue with CR LF", score + "--catalog " + badCatalog, 2,
       "veyra: " + fModel + ": error 260301: Unsupported model: ''."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const ProgramRun run = RunProgram(Words(row.arguments));
    EXPECT_EQ(run.status, row.status);
    EXPECT_EQ(run.err.substr(0, row.want.size()), row.want);
    EXPECT_EQ(run.out, "");
  }
}

TEST_F(Score, AFileIsThereCompleteOrNotAtAll) {
  const TemporaryDirectory out;
  const std::string path = out.Write("out.csv", "what stood there\n");
  EXPECT_EQ(Run("x,color,day\n1,red,\nq,red,\n", "-o " + path).status, 3);
  EXPECT_EQ(ReadFile(path), "what stood there\n");
  EXPECT_EQ(Run("x,color,day\n1,red,\n", "-o " + path).status, 0);
  EXPECT_EQ(ReadFile(path), "y\n103\n");
  EXPECT_EQ(out.CountFiles(), 1U);
  // A link and a device stay what they are.
  out.Write("out.csv", "");
  std::filesystem::create_symlink(path, out.Path("link.csv"));
  EXPECT_EQ(Run("x,color,day\n1,red,\n", "-o " + out.Path("link.csv")).status, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(out.Path("link.csv")));
  EXPECT_EQ(ReadFile(path), "y\n103\n");
  EXPECT_EQ(Run("x,color,day\n1,red,\n", "-o /dev/null").status, 0);
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(Veyra, TellsItsVersion) { EXPECT_EQ(RunProgram({"--version"}).out, "veyra 9.4.0\n"); }

// Texts that are not equal are numbers that nearly are; small numbers are compared as they stand.
void ExpectCell(const std::string& answer, const std::string& want, double tolerance) {
  if (answer == want) return;
  double got = 0;
  double wanted = 0;
  const bool areNumbers =
      std::from_chars(answer.data(), answer.data() + answer.size(), got).ec == std::errc() &&
      std::from_chars(want.data(), want.data() + want.size(), wanted).ec == std::errc();
  ASSERT_TRUE(areNumbers) << answer << " instead of " << want;
  EXPECT_NEAR(got, wanted, tolerance * std::max(1.0, std::abs(wanted)));
}

// The documents were made by other programs, which also gave the expected answers.
TEST(Veyra, EqualsTheTrainingProgram) {
  const struct {
    const char* name;
    double tolerance;
  } models[] = {
      {"diabetes", 1e-12},
      {"breast_cancer", 1e-12},
      {"iris", 1e-12},
      {"diabetes_tree", 0},
      {"iris_tree", 1e-12},
      {"wide_regression_tree", 0},
      {"wide_classification_tree", 1e-12},
      {"iris_neighbors", 0},
      {"breast_cancer_neighbors", 1e-12},
      {"diabetes_neighbors", 1e-12},
      {"wine_neighbors", 1e-12},
      {"simpleMatching_neighbors", 1e-12},
      {"jaccard_neighbors", 1e-12},
      {"tanimoto_neighbors", 1e-12},
      {"dice_neighbors", 1e-12},
  };
  for (const auto& [name, tolerance] : models) {
    SCOPED_TRACE(name);
    const std::string base = Document(name);
    std::vector<std::string> arguments = {"score", base + ".pmml", base + ".csv"};
    const std::string training = base + ".training.csv";
    if (std::filesystem::exists(training)) arguments.insert(arguments.end(), {"--aux", training});
    const ProgramRun run = RunProgram(arguments);
    ASSERT_EQ(run.status, 0) << run.err;
    const Table got = ReadCells(run.out);
    const Table want = ReadCells(ReadFile(base + ".expected.csv"));
    ASSERT_EQ(got.size(), want.size());
    ASSERT_GT(want.size(), 100U);
    for (std::size_t i = 0; i < want[0].size(); ++i) {
      const auto found = std::find(got[0].begin(), got[0].end(), want[0][i]);
      ASSERT_NE(found, got[0].end()) << want[0][i];
      const auto column = static_cast<std::size_t>(found - got[0].begin());
      for (std::size_t row = 1; row < want.size(); ++row) {
        SCOPED_TRACE(want[0][i] + ", row " + std::to_string(row));
        ExpectCell(got[row].at(column), want[row][i], tolerance);
      }
    }
  }
}

// The training data stand in a file beside the document.
TEST(Veyra, TakesAnAuxiliaryPath) {
  const TemporaryDirectory files;
  const std::string base = Document("diabetes_neighbors");
  const std::string model = base + ".pmml";
  const std::string training = base + ".training.csv";
  const ProgramRun without = RunProgram({"score", model, base + ".csv"});
  EXPECT_EQ(without.status, 2);
  EXPECT_EQ(without.out, "");
  const std::string refusal =
      "veyra: " + model + ": error 260174: Require 'auxiliary path' in 'TableLocator'.\n";
  EXPECT_TRUE(without.err.starts_with(refusal)) << without.err;
  const std::string cutShort = files.Write("short.csv", ReadFile(training).substr(0, 5000));
  const ProgramRun cut = RunProgram({"score", model, base + ".csv", "--aux", cutShort});
  EXPECT_EQ(cut.status, 2);
  EXPECT_NE(cut.err.find(cutShort + ", line "), std::string::npos) << cut.err;
  const ProgramRun doctor = RunProgram({"doctor", model, "--aux", training});
  EXPECT_EQ(doctor.status, 0) << doctor.out;
  EXPECT_EQ(doctor.out.find("unknown element"), std::string::npos) << doctor.out;
  EXPECT_EQ(RunProgram({"doctor", model}).status, 2);
  const ProgramRun inspect = RunProgram({"inspect", model});
  EXPECT_NE(inspect.out.find("NearestNeighborModel 'diabetes_neighbors', regression\n"), std::string::npos);
  const std::string outputs = RunProgram({"inspect", Document("wine_neighbors.pmml")}).out;
  EXPECT_NE(outputs.find("predictedValue for alcohol\n"), std::string::npos) << outputs;
  EXPECT_NE(outputs.find("entityId of rank 5\n"), std::string::npos) << outputs;
  const ProgramRun unused =
      RunProgram({"score", Document("iris.pmml"), "--aux", training}, ReadFile(Document("iris.csv")));
  EXPECT_EQ(unused.status, 0);
  EXPECT_NE(unused.err.find("warning: a RegressionModel does not use --aux"), std::string::npos)
      << unused.err;
}

}  // namespace
