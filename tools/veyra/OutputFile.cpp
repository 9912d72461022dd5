#include "veyra/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "veyra/Signals.h"

namespace VeyraTool {

namespace {

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
  try {
    if (!path.empty()) fPath = ResolveLinks(path);
    Open();
  } catch (...) {
    Discard();
    throw;
  }
}

OutputFile::~OutputFile() { Discard(); }

void OutputFile::Discard() {
  if (fDescriptor >= 0 && fDescriptor != STDOUT_FILENO) close(fDescriptor);
  if (fPartialPath.empty()) return;
  unlink(fPartialPath.c_str());
  KeepOnSignal();
}

void OutputFile::Open() {
  if (fPath.empty() || IsSpecialFile(fPath)) {
    if (!fPath.empty()) fDescriptor = open(fPath.c_str(), O_WRONLY | O_CLOEXEC);
    if (fDescriptor < 0) Fail("cannot write the file");
    return;
  }
  struct stat old {};
  const bool isThere = stat(fPath.c_str(), &old) == 0;
  const std::string partialPath = fPath + ".partial." + std::to_string(getpid());
  RemoveOnSignal(partialPath);
  fDescriptor = open(partialPath.c_str(), O_WRONLY | O_CLOEXEC | O_CREAT | O_EXCL, 0666);
  if (fDescriptor < 0) {
    KeepOnSignal();
    Fail("cannot write the file");
  }
  fPartialPath = partialPath;
  // Whoever could not read the old file cannot read the new one.
  if (isThere && S_ISREG(old.st_mode) && fchmod(fDescriptor, old.st_mode & 07777U) != 0) {
    Fail("cannot write the file");
  }
}

std::string OutputFile::GetName() const { return fPath.empty() ? "standard output" : fPath; }

void OutputFile::Fail(const char* what) const {
  throw CommandFailure(kWrongUsage, GetName() + ": " + what + ": " + std::strerror(errno));
}

void OutputFile::Write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(fDescriptor, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
      continue;
    }
    if (errno == EINTR) continue;
    if (errno == EPIPE) throw ClosedPipe();
    Fail("cannot write");
  }
}

void OutputFile::Finish() {
  if (fPartialPath.empty()) return;
  if (fsync(fDescriptor) != 0) Fail("cannot write");
  if (std::rename(fPartialPath.c_str(), fPath.c_str()) != 0) Fail("cannot give the finished file its name");
  KeepOnSignal();
  fPartialPath.clear();
}

}  // namespace VeyraTool
