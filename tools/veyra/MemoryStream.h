// A seekable input stream over a text in memory, which is lent.

#ifndef VEYRA_TOOLS_MEMORYSTREAM_H_
#define VEYRA_TOOLS_MEMORYSTREAM_H_

#include <istream>
#include <streambuf>
#include <string_view>

namespace VeyraTool {

class MemoryBuffer : public std::streambuf {
 public:
  explicit MemoryBuffer(std::string_view text) {
    char* const begin = const_cast<char*>(text.data());  // never written to
    setg(begin, begin, begin + text.size());
  }

 protected:
  pos_type seekoff(off_type offset, std::ios_base::seekdir way, std::ios_base::openmode) override {
    const off_type base = way == std::ios_base::beg   ? 0
                          : way == std::ios_base::cur ? gptr() - eback()
                                                      : egptr() - eback();
    const off_type target = base + offset;
    if (target < 0 || target > egptr() - eback()) return pos_type(off_type(-1));
    setg(eback(), eback() + target, egptr());
    return pos_type(target);
  }
  pos_type seekpos(pos_type position, std::ios_base::openmode mode) override {
    return seekoff(off_type(position), std::ios_base::beg, mode);
  }
};

class MemoryStream : private MemoryBuffer, public std::istream {
 public:
  explicit MemoryStream(std::string_view text) : MemoryBuffer(text), std::istream(this) {}
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_MEMORYSTREAM_H_
