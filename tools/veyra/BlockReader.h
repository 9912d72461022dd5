// Cuts a text into blocks of whole records by a quick scan: a record ends with a line end that stands outside
// quotes.  Which cells a record has is not looked at.
//
// Threads: one at a time.

#ifndef VEYRA_TOOLS_BLOCKREADER_H_
#define VEYRA_TOOLS_BLOCKREADER_H_

#include <string>
#include <string_view>

#include "veyra/TextSource.h"

namespace VeyraTool {

// The end of the first record of `text`, behind its line end ("\n", "\r\n" or "\r"); npos when it does not
// end. A "\r" that ends the text ends no record unless `isWhole`, for it may be half of "\r\n".
std::size_t EndOfRecord(std::string_view text, bool isWhole);

// How many lines end in the text.
std::size_t CountLines(std::string_view text);

class BlockReader {
 public:
  // Blocks have this size, those of long records more, those of a source that makes one wait less.
  static constexpr std::size_t kBlockSize = 256 * 1024;
  static constexpr std::size_t kLongestRecord = 64 * 1024 * 1024;

  explicit BlockReader(TextSource& source) : fSource(source) {}

  // The next record with its line end; false at the end.  REQUIRES: no block has been read.
  bool ReadRecord(std::string& record);
  // The next records, the last one as it is when the text ends without a line end; false at the end.  What is
  // read before a failure of the source is given first.  Throws SourceFailure when the source fails, with
  // what it gave of the next record in `block`, and for a record beyond kLongestRecord, with nothing.
  bool ReadBlock(std::string& block);

  // Whether the last block has been read.  Without it there may be one more, or none.
  bool IsAtEnd() const { return fAtEnd && !fIsFailed && fTail.empty(); }

 private:
  bool Fill(std::string& text);
  bool Scan(std::string_view text);
  bool EndBlock(std::string& block);

  TextSource& fSource;
  std::string fTail;     // begins with a record
  std::string fFailure;  // of the source, kept until what it gave is used up
  bool fIsFailed = false;
  bool fAtEnd = false;
  // The scan of the block that is being read.
  std::size_t fScanned = 0;  // bytes
  std::size_t fRecordsEnd = 0;
  bool fIsQuoted = false;  // at fScanned
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_BLOCKREADER_H_
