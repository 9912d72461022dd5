// Rows of a CSV file: RFC 4180, with quotes, embedded line ends, and "\n", "\r\n" or "\r" as line ends.
//
// A blank line is a row with one empty cell when the file has one column, and nothing otherwise.

#ifndef VEYRA_TOOLS_CSVREADER_H_
#define VEYRA_TOOLS_CSVREADER_H_

#include <csv.h>

#include <string>
#include <string_view>
#include <vector>

#include "veyra/TextSource.h"

namespace VeyraTool {

class CsvReader {
 public:
  CsvReader(TextSource& source, char delimiter);
  ~CsvReader();
  CsvReader(const CsvReader&) = delete;
  CsvReader& operator=(const CsvReader&) = delete;

  // Reads the next row; false at the end.  Throws DataFailure, with the place, for a quote in the wrong
  // place, a quoted cell that does not end, a NUL byte and text that is no UTF-8.  Nothing is allocated once
  // rows have reached their size.
  bool ReadRow();

  std::size_t GetCellCount() const { return fEnds.size(); }
  // REQUIRES: index < GetCellCount().  Lent until the next ReadRow.
  std::string_view GetCell(std::size_t index) const;
  // The number of the line in which the row begins, from 1.
  std::size_t GetLineNumber() const { return fRowLine; }
  const std::string& GetFileName() const { return fSource.GetName(); }

 private:
  static void OnCell(void* text, std::size_t size, void* self);
  static void OnRow(int character, void* self);
  void StartRow();
  bool IsBlankRow(std::string_view line);
  void CheckText() const;
  [[noreturn]] void Fail(std::size_t column, const std::string& reason) const;

  TextSource& fSource;
  csv_parser fParser;
  std::string fText;               // the row's cells, one behind the other
  std::vector<std::size_t> fEnds;  // of each cell in fText
  std::size_t fRowLine = 0;
  std::size_t fColumns = 0;  // of the first row
  bool fIsComplete = false;
  bool fAtEnd = false;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_CSVREADER_H_
