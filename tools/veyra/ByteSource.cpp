#include "veyra/ByteSource.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <new>
#include <string_view>

#include "veyra/Failures.h"

namespace VeyraTool {

namespace {

constexpr std::string_view kGzipMark = "\x1F\x8B";
constexpr std::size_t kChunk = 64 * 1024;
constexpr int kGzipOnly = 16 + MAX_WBITS;

}  // namespace

// Inflates one gzip member after the other.
class ByteSource::Unpacker {
 public:
  explicit Unpacker(std::string first) : fBytes(kChunk, '\0') {
    std::memcpy(fBytes.data(), first.data(), first.size());
    fStream.next_in = reinterpret_cast<Bytef*>(fBytes.data());
    fStream.avail_in = static_cast<uInt>(first.size());
    if (inflateInit2(&fStream, kGzipOnly) != Z_OK) throw std::bad_alloc();
  }
  ~Unpacker() { inflateEnd(&fStream); }
  Unpacker(const Unpacker&) = delete;
  Unpacker& operator=(const Unpacker&) = delete;

  bool HasBytes() const { return fStream.avail_in > 0; }

  // `readStored(buffer, size)` gives packed bytes, 0 at the end.
  template <class ReadStored>
  std::size_t Read(char* buffer, std::size_t size, ReadStored readStored) {
    fStream.next_out = reinterpret_cast<Bytef*>(buffer);
    fStream.avail_out = static_cast<uInt>(std::min(size, std::size_t{1} << 30U));
    const uInt wanted = fStream.avail_out;
    while (fStream.avail_out == wanted) {
      if (fStream.avail_in == 0) {
        fStream.next_in = reinterpret_cast<Bytef*>(fBytes.data());
        fStream.avail_in = static_cast<uInt>(readStored(fBytes.data(), fBytes.size()));
        if (fStream.avail_in == 0) {
          if (!fIsMemberDone) throw SourceFailure("the gzip data is cut off");
          return 0;
        }
      }
      if (fIsMemberDone) StartMember();
      const int result = inflate(&fStream, Z_NO_FLUSH);
      if (result == Z_MEM_ERROR) throw std::bad_alloc();
      if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) Fail();
      fIsMemberDone = result == Z_STREAM_END;
    }
    return wanted - fStream.avail_out;
  }

 private:
  void StartMember() {
    fIsMemberDone = false;
    inflateReset(&fStream);
  }
  [[noreturn]] void Fail() const {
    throw SourceFailure(std::string("the gzip data is damaged") +
                        (fStream.msg == nullptr ? "" : std::string(": ") + fStream.msg));
  }

  z_stream fStream{};
  std::string fBytes;
  bool fIsMemberDone = false;
};

ByteSource::ByteSource(const std::string& path, UnpackLimit limit)
    : fName(path.empty() ? "standard input" : path), fLimit(limit) {
  if (!path.empty()) {
    fDescriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fDescriptor < 0) {
      throw CommandFailure(kWrongUsage, path + ": cannot open the file: " + std::strerror(errno));
    }
  }
  struct stat status {};
  if (fstat(fDescriptor, &status) == 0 && S_ISREG(status.st_mode)) {
    fSize = static_cast<std::uint64_t>(status.st_size);
  } else {
    fWakeUp = eventfd(0, EFD_CLOEXEC);
  }
}

ByteSource::~ByteSource() {
  if (fDescriptor != STDIN_FILENO) close(fDescriptor);
  if (fWakeUp >= 0) close(fWakeUp);
}

void ByteSource::Interrupt() {
  const std::uint64_t one = 1;
  if (fWakeUp >= 0 && write(fWakeUp, &one, sizeof one) < 0) return;  // it is awake already
}

// False when Interrupt came first.  A regular file never waits.
bool ByteSource::WaitForBytes() const {
  if (fWakeUp < 0) return true;
  std::array<pollfd, 2> events = {pollfd{fDescriptor, POLLIN, 0}, pollfd{fWakeUp, POLLIN, 0}};
  while (poll(events.data(), events.size(), -1) < 0) {
    if (errno != EINTR) return true;
  }
  return events[1].revents == 0;
}

bool ByteSource::IsReady() const {
  if (fWakeUp < 0 || !fAhead.empty() || (fUnpacker != nullptr && fUnpacker->HasBytes())) return true;
  pollfd event{fDescriptor, POLLIN, 0};
  return poll(&event, 1, 0) != 0;
}

std::size_t ByteSource::ReadStored(char* buffer, std::size_t size) {
  if (!WaitForBytes()) return 0;
  for (;;) {
    const ssize_t count = read(fDescriptor, buffer, size);
    if (count >= 0) {
      fPosition.fetch_add(static_cast<std::uint64_t>(count), std::memory_order_relaxed);
      return static_cast<std::size_t>(count);
    }
    if (errno != EINTR) throw SourceFailure(std::string("cannot read: ") + std::strerror(errno));
  }
}

// Finds out whether the bytes are packed.
std::size_t ByteSource::ReadFirst(char* buffer, std::size_t size) {
  fIsFirst = false;
  std::string first(kChunk, '\0');
  std::size_t count = 0;
  while (count < kGzipMark.size()) {
    const std::size_t more = ReadStored(first.data() + count, first.size() - count);
    if (more == 0) break;
    count += more;
  }
  first.resize(count);
  if (first.starts_with(kGzipMark)) {
    fUnpacker = std::make_unique<Unpacker>(std::move(first));
  } else {
    fAhead = std::move(first);
  }
  return fAhead.empty() && fUnpacker == nullptr ? 0 : Read(buffer, size);
}

void ByteSource::CountUnpacked(std::size_t count) {
  fUnpacked += count;
  if (fUnpacked > fLimit.bytes) {
    throw SourceFailure("it unpacks to more than " + std::to_string(fLimit.bytes >> 20U) +
                        " MiB (--unpack-limit allows more)");
  }
  if (fUnpacked > UnpackLimit::kFreeOfRatio && fUnpacked / fLimit.ratio > GetPosition()) {
    throw SourceFailure("it unpacks to more than " + std::to_string(fLimit.ratio) +
                        " times its size (--unpack-limit allows it)");
  }
}

std::size_t ByteSource::Read(char* buffer, std::size_t size) {
  if (fIsFirst) return ReadFirst(buffer, size);
  if (fUnpacker != nullptr) {
    const std::size_t count =
        fUnpacker->Read(buffer, size, [this](char* to, std::size_t most) { return ReadStored(to, most); });
    CountUnpacked(count);
    return count;
  }
  if (fAhead.empty()) return ReadStored(buffer, size);
  const std::size_t count = std::min(size, fAhead.size());
  std::memcpy(buffer, fAhead.data(), count);
  fAhead.erase(0, count);
  return count;
}

std::string ReadWhole(const DocumentFile& document) {
  ByteSource source(document.path, document.limit);
  std::string text;
  try {
    for (;;) {
      const std::size_t size = text.size();
      text.resize(size + std::max(size, kChunk));
      const std::size_t count = source.Read(text.data() + size, text.size() - size);
      text.resize(size + count);
      if (count == 0) return text;
    }
  } catch (const SourceFailure& failure) {
    throw CommandFailure(kModelRefused, document.path + ": " + failure.what());
  }
}

bool IsPacked(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return false;
  std::array<char, 2> mark{};
  const bool isRead = read(descriptor, mark.data(), mark.size()) == static_cast<ssize_t>(mark.size());
  close(descriptor);
  return isRead && std::string_view(mark.data(), mark.size()) == kGzipMark;
}

}  // namespace VeyraTool
