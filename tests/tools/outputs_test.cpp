// What a command writes destroys nothing that it reads, and packed documents do not fill the memory.

#include <gtest/gtest.h>

#include "tools/Pack.h"
#include "tools/RunProgram.h"

namespace {

using namespace VeyraTest;

const std::string kTree =
    "<PMML version='4.4'><Header/><DataDictionary numberOfFields='1'>"
    "<DataField name='x' optype='continuous' dataType='double'/></DataDictionary>"
    "<TransformationDictionary><DerivedField name='d' optype='continuous' dataType='double'>"
    "<FieldRef field='x'/></DerivedField></TransformationDictionary>"
    "<TreeModel functionName='regression'><MiningSchema><MiningField name='x'/></MiningSchema>"
    "<Node id='1' score='1'><True/></Node></TreeModel></PMML>";

class Outputs : public testing::Test {
 protected:
  Outputs() {
    for (const auto& [name, text] : fInputs) fFiles.Write(name, text);
    std::filesystem::create_directory(fFiles.Path("folder"));
    std::filesystem::create_symlink("model.pmml", fFiles.Path("link"));
    std::filesystem::create_hard_link(fFiles.Path("data.csv"), fFiles.Path("hard"));
    fCount = fFiles.CountFiles();
  }

  // In the directory of the files.
  ProgramRun Run(const std::vector<std::string>& arguments) const {
    return RunProgram(arguments, "x\n1\n", fFiles.Path("."));
  }
  void ExpectUntouched() const {
    for (const auto& [name, text] : fInputs) EXPECT_EQ(ReadFile(fFiles.Path(name)), text) << name;
    EXPECT_EQ(fFiles.CountFiles(), fCount);
  }

  const std::vector<std::pair<std::string, std::string>> fInputs = {
      {"model.pmml", kTree},           {"data.csv", "x\n1\n"},   {"train.csv", "x\n1\n"},
      {"modeldll.txt", "TreeModel\n"}, {"broken.pmml", "<PMML"},
  };
  TemporaryDirectory fFiles;
  std::size_t fCount = 0;
};

TEST_F(Outputs, ReplaceNoInput) {
  const std::string here = fFiles.Path("");
  const struct {
    std::vector<std::string> arguments;
    std::string want;
  } rows[] = {
      {{"score", "model.pmml", "data.csv", "-o", "model.pmml"},
       "model.pmml: the output would replace the document"},
      {{"score", "model.pmml", "-o", "link"}, "link: the output would replace the document"},
      {{"score", "link", "-o", here + "folder/../model.pmml"},
       here + "folder/../model.pmml: the output would replace the document"},
      {{"score", "model.pmml", "data.csv", "-o", "hard"}, "hard: the output would replace the data"},
      {{"score", "model.pmml", "data.csv", "--aux", "train.csv", "-o", "./train.csv"},
       "./train.csv: the output would replace the training data"},
      {{"score", "model.pmml", "data.csv", "-o", "modeldll.txt"},
       "modeldll.txt: the output would replace the catalogue"},
      {{"score", "model.pmml", "--catalog", "broken.pmml", "-o", "broken.pmml"},
       "broken.pmml: the output would replace the catalogue"},
      {{"score", "model.pmml", "data.csv", "-o", "folder"},
       "folder: cannot write the file: it is a directory"},
      {{"derive", "model.pmml", "data.csv", "-o", "data.csv"}, "data.csv: the output would replace the data"},
      {{"derive", "model.pmml", "data.csv", "-o", "link"}, "link: the output would replace the document"},
      {{"derive", "model.pmml", "data.csv", "-o", "folder/"},
       "folder/: cannot write the file: it is a directory"},
      {{"inspect", "model.pmml", "--svg", "link"}, "link: the output would replace the document"},
      {{"inspect", "model.pmml", "--svg", "."}, ".: cannot write the file: it is a directory"},
      // Nothing has been read by then: the document would be refused with another status.
      {{"inspect", "broken.pmml", "--svg", "broken.pmml"},
       "broken.pmml: the output would replace the document"},
      {{"score", "broken.pmml", "none.csv", "-o", "folder"},
       "folder: cannot write the file: it is a directory"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.want);
    const ProgramRun run = Run(row.arguments);
    EXPECT_EQ(run.err, "veyra: " + row.want + "\n");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 1);
    ExpectUntouched();
  }
}

TEST_F(Outputs, ReplaceOtherFiles) {
  fFiles.Write("old.csv", "old");
  std::filesystem::create_symlink("old.csv", fFiles.Path("other"));
  EXPECT_EQ(Run({"score", "model.pmml", "data.csv", "-o", "other"}).status, 0);
  EXPECT_EQ(ReadFile(fFiles.Path("old.csv")), "predicted\n1\n");
  EXPECT_EQ(Run({"score", "model.pmml", "-o", "/dev/null"}).status, 0);
}

// Blanks in a document pack to a thousandth.
std::string Blanks(std::size_t count) {
  std::string text = kTree;
  text.insert(text.find("<Header"), count, ' ');
  return Pack(text);
}

TEST_F(Outputs, PackedDocumentsAreBounded) {
  constexpr std::size_t kMegabyte = std::size_t{1} << 20U;
  fFiles.Write("small.gz", Blanks(2 * kMegabyte));
  fFiles.Write("blank.gz", Blanks(70 * kMegabyte));
  const std::string bytes = "small.gz: it unpacks to more than 2 MiB (--unpack-limit allows more)";
  const std::string ratio = "blank.gz: it unpacks to more than 200 times its size (--unpack-limit allows it)";
  const struct {
    std::vector<std::string> arguments;
    std::string want;  // empty: it is read
  } rows[] = {
      {{"small.gz"}, ""},
      {{"small.gz", "--unpack-limit", "2"}, bytes},
      {{"small.gz", "--unpack-limit", "3"}, ""},
      {{"blank.gz"}, ratio},
  };
  for (const std::string command : {"score", "derive", "inspect", "doctor"}) {
    for (const auto& row : rows) {
      std::vector<std::string> arguments = {command};
      arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
      const ProgramRun run = Run(arguments);
      SCOPED_TRACE(command + " " + row.arguments.back() + ": " + run.err);
      EXPECT_EQ(run.status, row.want.empty() ? 0 : 2);
      EXPECT_TRUE(row.want.empty() || run.err == "veyra: " + row.want + "\n");
    }
  }
  const ProgramRun more = Run({"inspect", "blank.gz", "--unpack-limit", "100"});
  EXPECT_EQ(more.status, 0) << more.err;
}

}  // namespace
