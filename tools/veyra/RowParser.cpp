#include "veyra/RowParser.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "xml/XmlText.h"

namespace VeyraTool {

namespace {

constexpr std::size_t kBufferStep = 64 * 1024;  // by which the room for one cell grows

// Blanks belong to the cell.
int IsNoSpace(unsigned char) { return 0; }

bool IsClean(std::string_view text) {
  if (std::memchr(text.data(), 0, text.size()) != nullptr) return false;
  return KxXML_940::IsAscii(text) || KxXML_940::WellFormedPrefix(text) == text.size();
}

bool IsLineEnd(char c) { return c == '\n' || c == '\r'; }

}  // namespace

RowParser::RowParser(char delimiter, std::size_t columns) : fDelimiter(delimiter), fColumns(columns) {
  if (csv_init(&fParser, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
  csv_set_delim(&fParser, static_cast<unsigned char>(delimiter));
  csv_set_space_func(&fParser, IsNoSpace);
  csv_set_blk_size(&fParser, kBufferStep);
}

RowParser::~RowParser() { csv_free(&fParser); }

void RowParser::Start(std::string_view block) {
  fBlock = block;
  fPosition = 0;
  fLineCount = 0;
  fHasQuotes = block.find('"') != std::string_view::npos;
  fHasReturns = block.find('\r') != std::string_view::npos;
  fIsClean = IsClean(block);
}

std::size_t RowParser::EndOfLine(std::size_t begin) const {
  const std::string_view rest = fBlock.substr(begin);
  const std::size_t feed = rest.find('\n');
  if (fHasReturns) {
    const std::size_t atReturn = rest.substr(0, feed).find('\r');
    if (atReturn != std::string_view::npos) return begin + atReturn + (atReturn + 1 == feed ? 2 : 1);
  }
  return feed == std::string_view::npos ? fBlock.size() : begin + feed + 1;
}

// Every line but the last one of a text has an end.
void RowParser::GoTo(std::size_t lineEnd) {
  fPosition = lineEnd;
  ++fLineCount;
}

bool RowParser::Next() {
  while (fPosition < fBlock.size() && !fIsBroken) {
    fRowBegin = fPosition;
    const std::size_t end = EndOfLine(fPosition);
    std::string_view line = fBlock.substr(fPosition, end - fPosition);
    if (fHasQuotes && line.find('"') != std::string_view::npos) return ReadQuotedRow(end);
    GoTo(end);
    while (!line.empty() && IsLineEnd(line.back())) line.remove_suffix(1);
    if (line.empty() && fColumns != 1) continue;
    SplitLine(line);
    return true;
  }
  return false;
}

void RowParser::SplitLine(std::string_view line) {
  fCells.clear();
  std::size_t begin = 0;
  for (std::size_t end; (end = line.find(fDelimiter, begin)) != std::string_view::npos; begin = end + 1) {
    fCells.push_back(line.substr(begin, end - begin));
  }
  fCells.push_back(line.substr(begin));
}

void RowParser::OnCell(void* text, std::size_t size, void* self) {
  auto& parser = *static_cast<RowParser*>(self);
  parser.fText.append(static_cast<const char*>(text), size);
  parser.fEnds.push_back(parser.fText.size());
}

void RowParser::OnRow(int, void* self) { static_cast<RowParser*>(self)->fIsComplete = true; }

bool RowParser::Break(const char* reason) {
  fFailure.Set("quote", fEnds.size() + 1, {}, reason);
  fIsBroken = true;
  return false;
}

// Hands the parser line after line until the row is complete.
bool RowParser::ReadQuotedRow(std::size_t lineEnd) {
  fText.clear();
  fEnds.clear();
  fIsComplete = false;
  while (!fIsComplete && fPosition < fBlock.size()) {
    const std::size_t size = lineEnd - fPosition;
    if (csv_parse(&fParser, fBlock.data() + fPosition, size, OnCell, OnRow, this) != size) {
      if (csv_error(&fParser) != CSV_EPARSE) throw std::bad_alloc();
      return Break("a quote stands inside a cell that is not quoted, or text follows the closing quote");
    }
    GoTo(lineEnd);
    lineEnd = EndOfLine(fPosition);
  }
  if (!fIsComplete && csv_fini(&fParser, OnCell, OnRow, this) != 0)
    return Break("the quoted cell does not end");
  fCells.clear();
  std::size_t begin = 0;
  for (const std::size_t end : fEnds) {
    fCells.push_back(std::string_view(fText).substr(begin, end - begin));
    begin = end;
  }
  return true;
}

bool RowParser::CheckText(RowFailure& failure) const {
  if (fIsClean) return true;
  for (std::size_t i = 0; i < fCells.size(); ++i) {
    if (fCells[i].find('\0') != std::string_view::npos) {
      failure.Set("nul-byte", i + 1, {}, "the cell holds a NUL byte");
      return false;
    }
    if (KxXML_940::WellFormedPrefix(fCells[i]) != fCells[i].size()) {
      failure.Set("not-utf-8", i + 1, {}, "the cell is not valid UTF-8 (see --encoding)");
      return false;
    }
  }
  return true;
}

}  // namespace VeyraTool
