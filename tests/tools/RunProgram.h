// Running the command line as a person does, and looking at all that it says.

#ifndef VEYRA_TESTS_TOOLS_RUNPROGRAM_H_
#define VEYRA_TESTS_TOOLS_RUNPROGRAM_H_

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace VeyraTest {

// A directory of its own for one test, gone afterwards.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "veyra_test.XXXXXX").string();
    if (mkdtemp(name.data()) != nullptr) fPath = name;
  }
  ~TemporaryDirectory() { std::filesystem::remove_all(fPath); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  std::string Path(const std::string& name) const { return (fPath / name).string(); }
  // Writes a file and returns its path.
  std::string Write(const std::string& name, const std::string& content) const {
    std::ofstream(Path(name), std::ios::binary) << content;
    return Path(name);
  }
  std::size_t CountFiles() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(fPath), std::filesystem::directory_iterator()));
  }

 private:
  std::filesystem::path fPath;
};

inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

using Table = std::vector<std::vector<std::string>>;

// The cells of every line; no cell is quoted.
inline Table ReadCells(const std::string& text) {
  std::istringstream in(text);
  Table table;
  for (std::string line; std::getline(in, line);) {
    std::istringstream cells(line);
    table.emplace_back();
    for (std::string cell; std::getline(cells, cell, ',');) table.back().push_back(cell);
  }
  return table;
}

struct ProgramRun {
  int status = -1;  // exit status; -1 when a signal ended it
  std::string out;
  std::string err;
};

// Runs the program with these arguments, `input` on its standard input, in the directory `workingDirectory`.
inline ProgramRun RunProgram(const std::vector<std::string>& arguments, const std::string& input = "",
                             const std::string& workingDirectory = "/") {
  const TemporaryDirectory files;
  const std::string in = files.Write("in", input);
  const std::string out = files.Path("out");
  const std::string err = files.Path("err");
  std::vector<char*> words = {const_cast<char*>(VEYRA_TEST_PROGRAM)};
  for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    const int flags = O_WRONLY | O_CREAT | O_TRUNC;
    if (dup2(open(in.c_str(), O_RDONLY), 0) < 0 || dup2(open(out.c_str(), flags, 0600), 1) < 0 ||
        dup2(open(err.c_str(), flags, 0600), 2) < 0 || chdir(workingDirectory.c_str()) != 0) {
      _exit(127);
    }
    execv(words[0], words.data());
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(out), ReadFile(err)};
}

inline std::string Document(const std::string& name) {
  return std::string(VEYRA_TEST_DOCUMENTS) + "/" + name;
}

}  // namespace VeyraTest

#endif  // VEYRA_TESTS_TOOLS_RUNPROGRAM_H_
