#include "veyra/CsvReader.h"

#include <cstring>
#include <new>

#include "xml/XmlText.h"

namespace VeyraTool {

namespace {

constexpr std::size_t kLongestRow = 64 * 1024 * 1024;

// Blanks belong to the cell.
int IsNoSpace(unsigned char) { return 0; }

}  // namespace

CsvReader::CsvReader(TextSource& source, char delimiter) : fSource(source) {
  if (csv_init(&fParser, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
  csv_set_delim(&fParser, static_cast<unsigned char>(delimiter));
  csv_set_space_func(&fParser, IsNoSpace);
}

CsvReader::~CsvReader() { csv_free(&fParser); }

void CsvReader::OnCell(void* text, std::size_t size, void* self) {
  auto& reader = *static_cast<CsvReader*>(self);
  reader.fText.append(static_cast<const char*>(text), size);
  reader.fEnds.push_back(reader.fText.size());
}

void CsvReader::OnRow(int, void* self) { static_cast<CsvReader*>(self)->fIsComplete = true; }

std::string_view CsvReader::GetCell(std::size_t index) const {
  const std::size_t begin = index == 0 ? 0 : fEnds[index - 1];
  return std::string_view(fText).substr(begin, fEnds[index] - begin);
}

void CsvReader::Fail(std::size_t column, const std::string& reason) const {
  throw DataFailure(fSource.GetName(), DataPlace{fRowLine, column, {}}, reason);
}

void CsvReader::StartRow() {
  fText.clear();
  fEnds.clear();
  fIsComplete = false;
  fRowLine = fSource.GetLineNumber() + 1;
}

// A line with nothing but its end, where a row begins.
bool CsvReader::IsBlankRow(std::string_view line) {
  return fRowLine == fSource.GetLineNumber() && line.find_first_not_of("\r\n") == std::string_view::npos;
}

bool CsvReader::ReadRow() {
  if (fAtEnd) return false;
  StartRow();
  std::string_view line;
  std::size_t size = 0;
  while (!fIsComplete && fSource.ReadLine(line)) {
    if (IsBlankRow(line)) {
      if (fColumns != 1) {
        StartRow();
        continue;
      }
      fEnds.push_back(0);
      return true;
    }
    size += line.size();
    if (size > kLongestRow) Fail(0, "the row is longer than 64 MiB: is a quote left open?");
    if (csv_parse(&fParser, line.data(), line.size(), OnCell, OnRow, this) != line.size()) {
      if (csv_error(&fParser) != CSV_EPARSE) throw std::bad_alloc();
      Fail(fEnds.size() + 1,
           "a quote stands inside a cell that is not quoted, or text follows the closing quote");
    }
  }
  if (!fIsComplete) {
    fAtEnd = true;
    if (csv_fini(&fParser, OnCell, OnRow, this) != 0) Fail(fEnds.size() + 1, "the quoted cell does not end");
    if (fEnds.empty()) return false;
  }
  if (fColumns == 0) fColumns = fEnds.size();
  CheckText();
  return true;
}

void CsvReader::CheckText() const {
  if (KxXML_940::IsAscii(fText) && std::memchr(fText.data(), 0, fText.size()) == nullptr) return;
  for (std::size_t i = 0; i < fEnds.size(); ++i) {
    const std::string_view cell = GetCell(i);
    if (cell.find('\0') != std::string_view::npos) Fail(i + 1, "the cell holds a NUL byte");
    if (KxXML_940::WellFormedPrefix(cell) != cell.size())
      Fail(i + 1, "the cell is not valid UTF-8 (see --encoding)");
  }
}

}  // namespace VeyraTool
