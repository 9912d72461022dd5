// A table of texts for people: columns that line up, in lines of at most 80 columns of a terminal.

#ifndef VEYRA_TOOLS_TEXTTABLE_H_
#define VEYRA_TOOLS_TEXTTABLE_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace VeyraTool {

inline constexpr std::size_t kTerminalWidth = 80;

// How many columns of a terminal the UTF-8 text takes: none for marks, two for wide characters.
std::size_t DisplayWidth(std::string_view text);
// The text in at most so many columns; what is cut ends in "...".  Control characters become blanks.
std::string FitTo(std::string_view text, std::size_t width);

class TextTable {
 public:
  // The last column holds long texts, broken at blanks into further lines; the others are cut to `widest`.
  explicit TextTable(std::vector<std::string> header, std::size_t widest = 26);

  // REQUIRES: as many cells as the header has.
  void AddRow(std::vector<std::string> cells);
  bool IsEmpty() const { return fRows.size() == 1; }
  void WriteTo(std::string& out) const;

 private:
  std::size_t fWidest;
  std::vector<std::vector<std::string>> fRows;  // the header first
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_TEXTTABLE_H_
