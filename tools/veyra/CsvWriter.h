// Appends cells to a text, quoted where RFC 4180 wants it.

#ifndef VEYRA_TOOLS_CSVWRITER_H_
#define VEYRA_TOOLS_CSVWRITER_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "veyra/ScoreValue.h"

namespace VeyraTool {

class CsvWriter {
 public:
  CsvWriter(std::string& out, char delimiter) : fOut(out), fDelimiter(delimiter) {}

  void AddText(std::string_view text);
  void AddNumber(double number);
  // A missing value (null, or the system-missing number) is an empty cell.
  void AddValue(const KxVeyra_940::ScoreValue* value);
  void EndRow();

  // A place in the text to go back to.
  struct Mark {
    std::size_t size;
    bool isFirst;
  };
  Mark GetMark() const { return {fOut.size(), fIsFirst}; }
  // Takes back what was added behind the mark.
  void GoBack(Mark mark);

 private:
  void Separate();

  std::string& fOut;
  char fDelimiter;
  bool fIsFirst = true;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_CSVWRITER_H_
