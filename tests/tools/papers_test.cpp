// Help, manual page and completion say the same, because they are made from the same options.

#include <regex>

#include "tools/RunProgram.h"

namespace {

using namespace VeyraTest;

TEST(Papers, EveryOptionIsInAllOfThem) {
  const std::string manual = std::regex_replace(RunProgram({"manual"}).out, std::regex("\\\\-"), "-");
  const std::string completion = RunProgram({"completion"}).out;
  std::size_t count = 0;
  for (const char* command : {"score", "derive", "inspect", "doctor", "functions"}) {
    const ProgramRun help = RunProgram({command, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("Example:\n  veyra "), std::string::npos) << command;
    const std::regex name("--[a-z][a-z-]*");
    const std::string options = help.out.substr(0, help.out.find("\nExample:"));
    for (std::sregex_iterator at(options.begin(), options.end(), name), end; at != end; ++at, ++count) {
      EXPECT_NE(manual.find("\\fB" + at->str() + "\\fR"), std::string::npos) << at->str();
      EXPECT_NE(completion.find(at->str()), std::string::npos) << at->str();
    }
  }
  EXPECT_GT(count, 15U);
}

TEST(Papers, BashCompletes) {
  const TemporaryDirectory files;
  const std::string script = files.Write("completion", RunProgram({"completion"}).out);
  files.Write("model.pmml", "");
  const auto complete = [&](const std::string& words, int current) {
    const std::string out = files.Path("out");
    const std::string command = "cd " + files.Path("") + " && bash -c 'source " + script + "; COMP_WORDS=(" +
                                words + "); COMP_CWORD=" + std::to_string(current) +
                                "; _veyra; echo \"${COMPREPLY[@]}\"' > " + out;
    EXPECT_EQ(std::system(command.c_str()), 0);
    return ReadFile(out);
  };
  EXPECT_EQ(complete("veyra sc", 1), "score\n");
  EXPECT_EQ(complete("veyra score --l", 2), "--lenient --lax-columns\n");
  EXPECT_EQ(complete("veyra score mod", 2), "model.pmml\n");
}

}  // namespace
