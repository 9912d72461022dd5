#include "veyra/TextTable.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>

#include "xml/XmlText.h"

namespace VeyraTool {

namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kLeastForLast = 20;  // columns; with less, the last cell begins a line of its own
constexpr std::size_t kDeepIndent = 6;
constexpr std::string_view kEllipsis = "...";

std::size_t WidthOf(UChar32 c) {
  const auto category = u_charType(c);
  if (category == U_NON_SPACING_MARK || category == U_ENCLOSING_MARK || category == U_FORMAT_CHAR) return 0;
  const int width = u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

// Calls `action(character, columns)`; it answers whether to go on.
template <class Action>
void ForEachCharacter(std::u16string_view text, Action action) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t begin = i;
    UChar32 c = 0;
    U16_NEXT(text.data(), i, text.size(), c);
    if (!action(text.substr(begin, i - begin), WidthOf(c))) return;
  }
}

std::string WithoutControls(std::string_view text) {
  std::string plain(text);
  std::replace_if(
      plain.begin(), plain.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; },
      ' ');
  return plain;
}

// The text in lines of at most so many columns, broken at blanks; a word that is longer is cut.
std::vector<std::string> Break(std::string_view text, std::size_t width) {
  std::vector<std::string> lines(1);
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    const std::string word = FitTo(text.substr(begin, end - begin), width);
    const std::size_t gap = lines.back().empty() ? 0 : 1;
    if (DisplayWidth(lines.back()) + gap + DisplayWidth(word) > width) {
      lines.push_back(word);
    } else {
      lines.back().append(gap, ' ').append(word);
    }
    begin = end + 1;
  }
  return lines;
}

}  // namespace

std::size_t DisplayWidth(std::string_view text) {
  if (KxXML_940::IsAscii(text)) return text.size();
  std::size_t width = 0;
  ForEachCharacter(KxXML_940::ToUTF16(text), [&](std::u16string_view, std::size_t columns) {
    width += columns;
    return true;
  });
  return width;
}

std::string FitTo(std::string_view text, std::size_t width) {
  const std::string plain = WithoutControls(text);
  if (DisplayWidth(plain) <= width) return plain;
  std::u16string cut;
  std::size_t used = kEllipsis.size();
  ForEachCharacter(KxXML_940::ToUTF16(plain), [&](std::u16string_view character, std::size_t columns) {
    used += columns;
    if (used > width) return false;
    cut += character;
    return true;
  });
  return KxXML_940::ToUTF8(cut).append(kEllipsis);
}

TextTable::TextTable(std::vector<std::string> header, std::size_t widest) : fWidest(widest) {
  AddRow(std::move(header));
}

void TextTable::AddRow(std::vector<std::string> cells) {
  for (std::size_t i = 0; i + 1 < cells.size(); ++i) cells[i] = FitTo(cells[i], fWidest);
  cells.back() = WithoutControls(cells.back());
  fRows.push_back(std::move(cells));
}

void TextTable::WriteTo(std::string& out) const {
  std::vector<std::size_t> widths(fRows.front().size() - 1, 0);
  std::size_t indent = kGap;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    for (const auto& row : fRows) widths[i] = std::max(widths[i], DisplayWidth(row[i]));
    indent += widths[i] + kGap;
  }
  const bool isDeep = indent + kLeastForLast > kTerminalWidth;
  const std::size_t lastIndent = isDeep ? kDeepIndent : indent;
  for (const auto& row : fRows) {
    std::string line;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      line.append(kGap, ' ').append(row[i]).append(widths[i] - DisplayWidth(row[i]), ' ');
    }
    line.append(kGap, ' ');
    std::vector<std::string> last = Break(row.back(), kTerminalWidth - lastIndent);
    if (!isDeep) {
      line += last.front();
      last.erase(last.begin());
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out.append(line).append("\n");
    for (const std::string& text : last) {
      if (!text.empty()) out.append(lastIndent, ' ').append(text).append("\n");
    }
  }
}

}  // namespace VeyraTool
