// The bytes of a file or of standard input; what gzip has packed is unpacked, whatever the file is called.
//
// Threads: one reads; Interrupt and GetPosition may be called by any other.

#ifndef VEYRA_TOOLS_BYTESOURCE_H_
#define VEYRA_TOOLS_BYTESOURCE_H_

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

namespace VeyraTool {

// Reading cannot go on; the text is the reason, without the file's name.
class SourceFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// How much may come out of packed bytes: a small file can hold a text that fills the memory.
struct UnpackLimit {
  std::uint64_t bytes;
  std::uint64_t ratio;  // to the packed bytes, where more than kFreeOfRatio come out
  static constexpr std::uint64_t kFreeOfRatio = std::uint64_t{64} << 20U;
  static constexpr std::uint64_t kNone = std::numeric_limits<std::uint64_t>::max();
};

inline constexpr UnpackLimit kUnlimited{UnpackLimit::kNone, UnpackLimit::kNone};
// Documents pack to between a tenth and a fiftieth of their size.
inline constexpr UnpackLimit kDocumentLimit{std::uint64_t{1} << 30U, 200};

// A document, packed by gzip or not.
struct DocumentFile {
  std::string path;
  UnpackLimit limit = kDocumentLimit;
};

class ByteSource {
 public:
  // An empty path is standard input.  Throws CommandFailure when the file cannot be opened.
  explicit ByteSource(const std::string& path, UnpackLimit limit = kUnlimited);
  ~ByteSource();
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  // What messages call it.
  const std::string& GetName() const { return fName; }

  // Reads what is there, at least one byte and at most `size`; waits when there is nothing.  0 at the end,
  // and after Interrupt.  Throws SourceFailure when reading fails, and when packed bytes are damaged, cut off
  // or beyond the limit.
  std::size_t Read(char* buffer, std::size_t size);
  // Whether Read would not wait.
  bool IsReady() const;
  // Ends the Read that waits, and every later one.
  void Interrupt();

  // How much of the file has been read, and its size (0 when that is not known), both as it is stored.
  std::uint64_t GetPosition() const { return fPosition.load(std::memory_order_relaxed); }
  std::uint64_t GetSize() const { return fSize; }

 private:
  class Unpacker;

  std::size_t ReadStored(char* buffer, std::size_t size);
  std::size_t ReadFirst(char* buffer, std::size_t size);
  void CountUnpacked(std::size_t count);
  bool WaitForBytes() const;

  std::string fName;
  int fDescriptor = 0;
  int fWakeUp = -1;
  std::uint64_t fSize = 0;
  std::atomic<std::uint64_t> fPosition = 0;
  bool fIsFirst = true;
  std::string fAhead;  // bytes that were read to find out what they are
  std::unique_ptr<Unpacker> fUnpacker;
  UnpackLimit fLimit;
  std::uint64_t fUnpacked = 0;
};

// Everything that the file holds, unpacked.  Throws CommandFailure.
std::string ReadWhole(const DocumentFile& document);
// Whether the file begins as gzip's do.  False as well when it cannot be read.
bool IsPacked(const std::string& path);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_BYTESOURCE_H_
