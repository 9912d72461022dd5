// The rules of the catalogue file.

#include <gtest/gtest.h>

#include <filesystem>

#include "factory/FactoryInternal.h"
#include "tools/RunProgram.h"
#include "veyra/VYException.h"

namespace {

using namespace KxVeyra_940;
using VeyraTest::TemporaryDirectory;
using Names = std::vector<std::string>;

TEST(CatalogueFile, IsAListOfNames) {
  const std::string longest(32766, 'x');
  const struct {
    const char* what;
    std::string content;
    Names want;
  } kRows[] = {
      {"comma, space and tab", "a, b\tc\n", {"a", "b", "c"}},
      {"runs of separators", " ,,\t a ,\t, b,\n,\n", {"a", "b"}},
      {"separators alone", ", ,\t\n \n", {}},
      {"an empty file", "", {}},
      {"the order and duplicates stay", "b\na\nb\n", {"b", "a", "b"}},
      {"no newline at the end", "a\nb", {"a", "b"}},
      {"empty lines between", "a\n\n\nb\n", {"a", "b"}},
      {"a carriage return belongs to the name", "a\r\nb c\r\n", {"a\r", "b", "c\r"}},
      {"nothing is a comment", "# a;b=c\n", {"#", "a;b=c"}},
      {"other white space belongs to the name", "a\vb\fc\n", {"a\vb\fc"}},
      {"any bytes", "\xC3\xA4 \xFF\n", {"\xC3\xA4", "\xFF"}},
      {"the longest line", longest + "\nb\n", {longest, "b"}},
      {"a longer line ends the reading, its first part counts", "a\n" + longest + "y\nb\n", {"a", longest}},
      {"a name is cut where the line is", std::string(32764, ' ') + "abc d\ne\n", {"ab"}},
  };
  const TemporaryDirectory files;
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    Names names = {"left over"};
    GetModelNames(files.Write("names", row.content), names);
    EXPECT_EQ(names, row.want);
  }
}

TEST(CatalogueFile, HasADefaultNameInTheCurrentDirectory) {
  const TemporaryDirectory files;
  std::filesystem::current_path(files.Path(""));
  files.Write("modeldll.txt", "a");
  Names names;
  GetModelNames("", names);
  EXPECT_EQ(names, Names{"a"});
  std::filesystem::remove("modeldll.txt");
  EXPECT_THROW(GetModelNames("", names), VYException);
  EXPECT_TRUE(names.empty());
  std::filesystem::current_path("/");
}

}  // namespace
