#include "veyra/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace VeyraTool {

namespace {

constexpr std::size_t kLarge = 256 * 1024;

struct Free {
  void operator()(char* text) const { std::free(text); }
};

// The file that a link stands for, so that the link itself is not replaced.
std::string ResolveLinks(const std::string& path) {
  const std::unique_ptr<char, Free> resolved(realpath(path.c_str(), nullptr));
  return resolved == nullptr ? path : std::string(resolved.get());
}

// Devices, pipes and sockets are written as they are: nothing can be renamed into their place.
bool IsSpecialFile(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : fDescriptor(STDOUT_FILENO) {
  fBuffer.reserve(2 * kLarge);
  if (path.empty()) return;
  fPath = ResolveLinks(path);
  int flags = O_WRONLY | O_CLOEXEC;
  std::string opened = fPath;
  if (!IsSpecialFile(fPath)) {
    flags |= O_CREAT | O_EXCL;
    opened = fPath + ".partial." + std::to_string(getpid());
  }
  fDescriptor = open(opened.c_str(), flags, 0666);
  if (fDescriptor < 0) Fail("cannot write the file");
  if ((flags & O_CREAT) != 0) fPartialPath = opened;
}

OutputFile::~OutputFile() {
  if (fDescriptor >= 0 && fDescriptor != STDOUT_FILENO) close(fDescriptor);
  if (!fPartialPath.empty()) unlink(fPartialPath.c_str());
}

void OutputFile::Fail(const char* what) const {
  const std::string name = fPath.empty() ? "standard output" : fPath;
  throw CommandFailure(kWrongUsage, name + ": " + what + ": " + std::strerror(errno));
}

void OutputFile::FlushIfLarge() {
  if (fBuffer.size() >= kLarge) Flush();
}

void OutputFile::Flush() {
  std::string_view left = fBuffer;
  while (!left.empty()) {
    const ssize_t written = write(fDescriptor, left.data(), left.size());
    if (written >= 0) {
      left.remove_prefix(static_cast<std::size_t>(written));
      continue;
    }
    if (errno == EINTR) continue;
    if (errno == EPIPE) throw ClosedPipe();
    Fail("cannot write");
  }
  fBuffer.clear();
}

void OutputFile::Finish() {
  Flush();
  if (fPartialPath.empty()) return;
  if (fsync(fDescriptor) != 0) Fail("cannot write");
  if (std::rename(fPartialPath.c_str(), fPath.c_str()) != 0) Fail("cannot give the finished file its name");
  fPartialPath.clear();
}

}  // namespace VeyraTool
