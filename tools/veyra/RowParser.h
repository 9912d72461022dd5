// The rows of a block of CSV: RFC 4180, with quotes, embedded line ends, and "\n", "\r\n" or "\r" as line
// ends.
//
// Lines without a quote are split in place; libcsv reads the others.  A blank line is a row with one empty
// cell when the file has one column, and nothing otherwise.
//
//   RowParser parser(',', 3);
//   parser.Start(block);
//   while (parser.Next()) ... parser.GetRow() ...

#ifndef VEYRA_TOOLS_ROWPARSER_H_
#define VEYRA_TOOLS_ROWPARSER_H_

#include <csv.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "veyra/Failures.h"

namespace VeyraTool {

using Row = std::span<const std::string_view>;

class RowParser {
 public:
  // `columns` decides what a blank line is; 0 for a header, which is no blank line.
  RowParser(char delimiter, std::size_t columns);
  ~RowParser();
  RowParser(const RowParser&) = delete;
  RowParser& operator=(const RowParser&) = delete;

  // Whole records, lent until the last Next.  REQUIRES: only the last record of a text lacks its line end.
  void Start(std::string_view block);

  // Finds the next row; false at the end of the block, and when it cannot be told where the row ends: a quote
  // in the wrong place, a quoted cell that does not end.  Nothing is allocated once rows have reached their
  // size.
  bool Next();
  // Cells lent until the next call of Next.
  Row GetRow() const { return fCells; }
  // Where the row begins in the block.
  std::size_t GetRowBegin() const { return fRowBegin; }

  // How many lines end in what Next has gone over.
  std::size_t GetLineCount() const { return fLineCount; }

  // Why Next ended the reading; null when it did not.
  const RowFailure* GetFailure() const { return fIsBroken ? &fFailure : nullptr; }
  // False, with the reason, for a cell with a NUL byte or with bytes that are no UTF-8.
  bool CheckText(RowFailure& failure) const;

 private:
  static void OnCell(void* text, std::size_t size, void* self);
  static void OnRow(int character, void* self);

  std::size_t EndOfLine(std::size_t begin) const;
  void GoTo(std::size_t lineEnd);
  void SplitLine(std::string_view line);
  bool ReadQuotedRow(std::size_t lineEnd);
  bool Break(const char* reason);

  csv_parser fParser;
  char fDelimiter;
  std::size_t fColumns;
  std::string_view fBlock;
  bool fHasQuotes = false;
  bool fHasReturns = false;
  bool fIsClean = true;  // no NUL bytes, all of it UTF-8
  std::size_t fPosition = 0;
  std::size_t fRowBegin = 0;
  std::size_t fLineCount = 0;
  std::vector<std::string_view> fCells;
  // A row that libcsv reads: its cells, one behind the other, and where each ends.
  std::string fText;
  std::vector<std::size_t> fEnds;
  bool fIsComplete = false;
  bool fIsBroken = false;
  RowFailure fFailure;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_ROWPARSER_H_
