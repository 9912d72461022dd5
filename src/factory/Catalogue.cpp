// The catalogue file of model names, and paths of files.

#include <sys/stat.h>

#include <array>
#include <fstream>
#include <string_view>

#include "error/Raise.h"
#include "factory/FactoryInternal.h"
#include "xml/ExtNameStr.h"

namespace KxVeyra_940 {

namespace {

constexpr std::size_t kLineBuffer = 32767;  // a line's characters and the terminator
constexpr std::string_view kSeparators = " ,\t\n";

void AppendNames(std::string_view line, std::vector<std::string>& names) {
  for (std::size_t begin = line.find_first_not_of(kSeparators); begin != std::string_view::npos;) {
    const std::size_t end = std::min(line.find_first_of(kSeparators, begin), line.size());
    names.emplace_back(line.substr(begin, end - begin));
    begin = line.find_first_not_of(kSeparators, end);
  }
}

}  // namespace

bool IsDirectory(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string ConvertedPath(const std::string& path) {
  KxXML_940::ExtNameStr name;
  name.SetU8(path);
  const std::string& converted = name.GetCP();
  return converted.empty() ? path : converted;
}

void GetModelNames(const std::string& file, std::vector<std::string>& names) {
  names.clear();
  const std::string path = file.empty() ? "modeldll.txt" : file;
  std::ifstream in(path);
  if (!in.is_open() || IsDirectory(path)) Raise(MessageId::kCannotOpenFile, {path});
  std::array<char, kLineBuffer> line;
  // An over-long line sets the fail flag: its first part counts, and it is the last.
  while (in.rdstate() == std::ios::goodbit) {
    in.getline(line.data(), line.size());
    if (in.gcount() > 0) AppendNames(std::string_view(line.data()), names);
  }
  if (in.bad()) Raise(MessageId::kCannotOpenFile, {path});
}

}  // namespace KxVeyra_940
