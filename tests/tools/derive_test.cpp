// veyra derive: derived fields for the rows of a file, and what it refuses.

#include <algorithm>
#include <charconv>
#include <cmath>

#include "tools/RunProgram.h"

namespace {

using namespace VeyraTest;

std::string Derived(const std::string& name, const std::string& dataType, const std::string& expression) {
  return "<DerivedField name='" + name + "' optype='" +
         (dataType == "string" ? "categorical" : "continuous") + "' dataType='" + dataType + "'>" +
         expression + "</DerivedField>";
}

std::string DocumentOf(const std::string& derived, const std::string& doctype = "") {
  return doctype +
         "<PMML version='4.4'><DataDictionary numberOfFields='4'>"
         "<DataField name='x' optype='continuous' dataType='double'/>"
         "<DataField name='s' optype='categorical' dataType='string'/>"
         "<DataField name='day' optype='continuous' dataType='date'/>"
         "<DataField name='n' optype='continuous' dataType='dateDaysSince[1960]'/></DataDictionary>"
         "<TransformationDictionary>" +
         derived + "</TransformationDictionary></PMML>";
}

const std::string kAll =
    Derived("twice", "double", "<Apply function='*'><FieldRef field='x'/><Constant>2</Constant></Apply>") +
    Derived("text", "string",
            "<Apply function='concat'><FieldRef field='s'/><Constant>,!</Constant></Apply>") +
    Derived("when", "date", "<FieldRef field='day'/>") +
    Derived("count", "dateDaysSince[1960]", "<FieldRef field='n'/>") +
    Derived("four", "double", "<Apply function='*'><FieldRef field='twice'/><Constant>2</Constant></Apply>");
const std::string kLag = Derived("before", "double", "<Lag field='x'/>");

TEST(Derive, WritesWhatReadsBack) {
  const TemporaryDirectory files;
  const std::string model = files.Write("m.pmml", DocumentOf(kAll));
  const std::string data = "s,x,n,day\na,0.1,3.5,2020-02-29\n,,,\nb,1e300,-1,1969-12-31\n";
  const ProgramRun all = RunProgram({"derive", model}, data);
  EXPECT_EQ(all.status, 0) << all.err;
  EXPECT_EQ(all.out,
            "twice,text,when,count,four\n0.2,\"a,!\",2020-2-29,3.5,0.4\n,,,,\n2e+300,\"b,!\",1969-12-31,-1,"
            "4e+300\n");
  // Only what is needed: the columns of the others may be absent, and the order stays that of evaluation.
  const ProgramRun some = RunProgram({"derive", model, "--only", "four,twice", "--append"}, "id,x\n7,2\n");
  EXPECT_EQ(some.out, "id,x,twice,four\n7,2,4,8\n") << some.err;
  EXPECT_EQ(RunProgram({"derive", model, "--only", "four", "--lax-columns"}, "id\n7\n").out, "four\n\n");
}

// The cells of a line of a file whose quoted cells hold no quotes.
std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells(1);
  bool isQuoted = false;
  for (const char c : line) {
    if (c == '"') {
      isQuoted = !isQuoted;
    } else if (c == ',' && !isQuoted) {
      cells.emplace_back();
    } else {
      cells.back() += c;
    }
  }
  return cells;
}

bool IsClose(const std::string& cell, const std::string& wanted) {
  if (cell == wanted) return true;
  double number = 0, expected = 0;
  const auto read = [](const std::string& text, double& value) {
    return !text.empty() &&
           std::from_chars(text.data(), text.data() + text.size(), value).ptr == text.data() + text.size();
  };
  return read(cell, number) && read(wanted, expected) &&
         std::fabs(number - expected) <= 1e-12 * std::fabs(expected);
}

// Every function, kind of expression and rule for missing values, against values computed apart from the
// library (tests/documents/make_derived_fields.py).
TEST(Derive, EqualsWhatIsComputedApart) {
  const ProgramRun run = RunProgram(
      {"derive", VeyraTest::Document("derived_fields.pmml"), VeyraTest::Document("derived_fields.csv")});
  ASSERT_EQ(run.status, 0) << run.err;
  std::istringstream out(run.out), expected(ReadFile(VeyraTest::Document("derived_fields.expected.csv")));
  std::string line, wanted;
  std::vector<std::string> names;
  int rows = 0;
  while (std::getline(expected, wanted)) {
    ASSERT_TRUE(std::getline(out, line));
    const std::vector<std::string> cells = Cells(line), wantedCells = Cells(wanted);
    ASSERT_EQ(cells.size(), wantedCells.size()) << line;
    if (names.empty()) names = cells;
    for (std::size_t i = 0; i < cells.size(); ++i)
      EXPECT_TRUE(IsClose(cells[i], wantedCells[i]))
          << names[i] << ", row " << rows << ": " << cells[i] << " instead of " << wantedCells[i];
    ++rows;
  }
  EXPECT_EQ(rows, 121);
  EXPECT_FALSE(std::getline(out, line));
}

TEST(Derive, SaysWhatIsWrong) {
  const TemporaryDirectory files;
  const auto write = [&](const char* name, const std::string& text) { return files.Write(name, text); };
  const std::string model = write("m.pmml", DocumentOf(kAll));
  const std::string entity = "<!DOCTYPE PMML [<!ENTITY a 'b'>]>";
  const std::string own =
      "<DefineFunction name='f' optype='continuous'><ParameterField name='p'/><FieldRef "
      "field='p'/></DefineFunction>" +
      Derived("v", "double", "<Apply function='f'><FieldRef field='x'/></Apply>");
  const struct {
    std::vector<std::string> arguments;
    int status;
    std::string says;
  } rows[] = {
      {{model, "--only", "five"}, 1, ": there is no derived field 'five'"},
      {{model}, 3, "standard input: there is no column 's', which the derived field 'text' needs"},
      {{write("e.pmml", DocumentOf(kAll, entity))},
       2,
       "the document declares an entity, which is read only with --trust-dtd"},
      {{write("x.pmml", DocumentOf(kAll, "<!DOCTYPE PMML SYSTEM 'other.dtd'>"))},
       2,
       "refers to an external DTD"},
      {{write("f.pmml", DocumentOf(own))},
       2,
       "the document defines 'f' itself (DefineFunction), which is not supported"},
      {{write("t.pmml", DocumentOf(kAll) + "<")}, 2, "line 1, column"},
      {{write("z.pmml", "<zent-ml/>")}, 2, "the document derives no field"},
      {{write("n.pmml", "<PMML/>")}, 2, "error 260114: Missing node: 'DataDictionary'."},
      {{files.Path("none.pmml")}, 1, "none.pmml"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> arguments = {"derive"};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    const ProgramRun run = RunProgram(arguments, "x\n1\n");
    EXPECT_EQ(run.status, row.status) << row.says;
    EXPECT_NE(run.err.find(row.says), std::string::npos) << run.err;
    EXPECT_EQ(run.out, "") << row.says;
  }
  const ProgramRun trusted =
      RunProgram({"derive", files.Path("e.pmml"), "--trust-dtd", "--only", "twice"}, "x\n1\n");
  EXPECT_EQ(trusted.out, "twice\n2\n") << trusted.err;
}

TEST(Derive, ALagSeesTheRowsInOrder) {
  const TemporaryDirectory files;
  const std::string model = files.Write("m.pmml", DocumentOf(kLag));
  std::string data = "x\n", expected = "before\n\n";
  for (int i = 0; i < 200000; ++i) data += std::to_string(i % 997) + "\n";
  for (int i = 0; i + 1 < 200000; ++i) expected += std::to_string(i % 997) + "\n";
  for (const char* threads : {"1", "4"}) {
    const ProgramRun run = RunProgram({"derive", model, "--threads", threads}, data);
    EXPECT_TRUE(run.out == expected) << threads;
    EXPECT_EQ(run.err.find("one thread is used") != std::string::npos, std::string(threads) == "4")
        << run.err;
  }
}

TEST(Derive, FunctionsAreListed) {
  const ProgramRun run = RunProgram({"functions"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 80);
  EXPECT_NE(run.out.find("\nlog10, lg10 "), std::string::npos);
}

}  // namespace
