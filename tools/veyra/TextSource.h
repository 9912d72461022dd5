// A text file, or standard input, read line by line as UTF-8.
//
// Memory is one buffer of a fixed size, or the longest line when that is longer.

#ifndef VEYRA_TOOLS_TEXTSOURCE_H_
#define VEYRA_TOOLS_TEXTSOURCE_H_

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "veyra/Failures.h"

struct UConverter;

namespace VeyraTool {

class TextSource {
 public:
  // An empty path is standard input.  `encoding` is any name that ICU knows; empty or "UTF-8" passes bytes
  // through.  Throws CommandFailure when the file cannot be opened or the encoding is not known.
  TextSource(const std::string& path, const std::string& encoding);
  ~TextSource();
  TextSource(const TextSource&) = delete;
  TextSource& operator=(const TextSource&) = delete;

  // What messages call it.
  const std::string& GetName() const { return fName; }

  // The next line with its end ("\n", "\r\n", "\r"; none behind the last); false at the end.  A byte order
  // mark is not part of the first line.  The text is lent until the next call.  Throws DataFailure for bytes
  // that the encoding does not have, for a line beyond 64 MiB and when reading fails.
  bool ReadLine(std::string_view& line);

  // The number of the line that ReadLine gave last, from 1.
  std::size_t GetLineNumber() const { return fLineNumber; }

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  struct CloseConverter {
    void operator()(UConverter* converter) const;
  };

  bool Fill();
  void AppendConverted(const char* bytes, std::size_t size);
  void AppendUnits(const char16_t* begin, const char16_t* end);
  [[noreturn]] void Fail(const std::string& reason) const;

  std::string fName;
  std::unique_ptr<std::FILE, CloseFile> fFile;
  std::FILE* fStream;                                    // fFile or standard input
  std::unique_ptr<UConverter, CloseConverter> fToUTF16;  // null: bytes pass through
  std::unique_ptr<UConverter, CloseConverter> fToUTF8;
  std::string fBuffer;
  std::size_t fPosition = 0;  // of the next line in fBuffer
  std::size_t fLineNumber = 0;
  bool fAtStart = true;
  bool fAtEnd = false;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_TEXTSOURCE_H_
