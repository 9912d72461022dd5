// A file, or standard input, as UTF-8 text.

#ifndef VEYRA_TOOLS_TEXTSOURCE_H_
#define VEYRA_TOOLS_TEXTSOURCE_H_

#include <memory>
#include <string>

#include "veyra/ByteSource.h"

struct UConverter;

namespace VeyraTool {

class TextSource {
 public:
  // `encoding` is any name that ICU knows; empty or "UTF-8" passes bytes through.  Throws CommandFailure when
  // the file cannot be opened or the encoding is not known.
  TextSource(const std::string& path, const std::string& encoding);
  ~TextSource();
  TextSource(const TextSource&) = delete;
  TextSource& operator=(const TextSource&) = delete;

  const std::string& GetName() const { return fBytes.GetName(); }
  ByteSource& GetBytes() { return fBytes; }

  // Appends what is there, `wanted` bytes at most before conversion; false at the end.  A byte order mark is
  // no part of the text.  Throws SourceFailure, with `out` as far as it was converted, for bytes that the
  // encoding does not have and when reading fails.
  bool Append(std::string& out, std::size_t wanted);

 private:
  struct CloseConverter {
    void operator()(UConverter* converter) const;
  };

  void AppendConverted(std::size_t size, std::string& out);
  void AppendUnits(const char16_t* begin, const char16_t* end, std::string& out);
  void SkipMark(std::string& out, std::size_t begin);

  ByteSource fBytes;
  std::unique_ptr<UConverter, CloseConverter> fToUTF16;  // null: bytes pass through
  std::unique_ptr<UConverter, CloseConverter> fToUTF8;
  std::string fUnconverted;
  bool fAtStart = true;
  bool fAtEnd = false;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_TEXTSOURCE_H_
