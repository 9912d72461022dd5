#include "nearestneighbor/TrainingRows.h"

#include <csv.h>
#include <zlib.h>

#include <exception>
#include <memory>
#include <new>
#include <string_view>

#include "error/Raise.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMElement;

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::u16string_view WithoutPrefix(std::u16string_view name) { return name.substr(name.find(u':') + 1); }

// The index of the column that the element is a cell of; the number of columns for none.  Cells mostly stand
// in the order in which they are asked for, so that the first look is at `expected`.  Prefixes count only
// where names with them are equal.
std::size_t FindColumn(const std::vector<std::u16string>& columns, std::u16string_view tag,
                       std::size_t expected) {
  const auto find = [&](auto isColumn) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const std::size_t index = (expected + i) % columns.size();
      if (isColumn(columns[index])) return index;
    }
    return columns.size();
  };
  const std::size_t exact = find([&](const std::u16string& column) { return column == tag; });
  if (exact != columns.size()) return exact;
  return find([&](const std::u16string& column) { return WithoutPrefix(column) == WithoutPrefix(tag); });
}

}  // namespace

std::size_t ForEachRow(const DOMElement& inlineTable, const std::vector<std::string>& columns,
                       const RowAction& action) {
  std::vector<std::u16string> tags;
  for (const std::string& column : columns) tags.push_back(KxXML_940::ToUTF16(column));
  std::vector<std::u16string> buffers(columns.size());
  std::vector<bool> isKnown(columns.size());
  std::size_t rowCount = 0;
  ForEachChildElement(&inlineTable, [&](const DOMElement& row) {
    if (!HasTag(row, Tags::XML_ELE_ROW)) return;
    std::vector<const XMLCh*> cells(columns.size(), nullptr);
    std::vector<bool> isGiven(columns.size());
    std::size_t expected = 0;
    ForEachChildElement(&row, [&](const DOMElement& cell) {
      const std::size_t column = FindColumn(tags, KxXML_940::View(cell.getTagName()), expected);
      if (column == columns.size()) return;
      if (isGiven[column]) Raise(MessageId::kMoreThanOneIn, {columns[column], Tags::XML_ELE_ROW});
      isGiven[column] = isKnown[column] = true;
      const XMLCh* const text = TextOf(cell, buffers[column]);
      cells[column] = IsEmpty(text) ? nullptr : text;
      expected = column + 1;
    });
    action({cells, "row " + std::to_string(++rowCount)});
  });
  for (std::size_t i = 0; i < columns.size() && rowCount > 0; ++i) {
    if (!isKnown[i]) Raise(MessageId::kMissingDefinitionIn, {columns[i], Tags::XML_ELE_INLTABLE});
  }
  return rowCount;
}

namespace {

// The lines of a file, which may be packed by gzip.
class LineSource {
 public:
  explicit LineSource(const std::string& path) : fFile(gzopen(path.c_str(), "rb")), fBuffer(64 * 1024, ' ') {}

  // False at the end, and where reading fails.  The line keeps its end, if it has one.
  bool Next(std::string& line) {
    line.clear();
    while (fFile != nullptr) {
      if (fRest.empty() && !Fill()) return !HasFailed() && !line.empty();
      const std::size_t feed = fRest.find('\n');
      const std::size_t size = feed == std::string_view::npos ? fRest.size() : feed + 1;
      line += fRest.substr(0, size);
      fRest.remove_prefix(size);
      if (feed != std::string_view::npos) return true;
    }
    return false;
  }

  bool IsOpen() const { return fFile != nullptr; }
  // Whether reading ended before the end: a folder, a packed file that is cut off or damaged.
  bool HasFailed() const {
    int error = Z_OK;
    gzerror(fFile.get(), &error);
    return error != Z_OK && error != Z_STREAM_END;
  }

 private:
  struct Close {
    void operator()(gzFile file) const { gzclose(file); }
  };

  bool Fill() {
    const int size = gzread(fFile.get(), fBuffer.data(), static_cast<unsigned>(fBuffer.size()));
    fRest = std::string_view(fBuffer).substr(0, size > 0 ? static_cast<std::size_t>(size) : 0);
    return size > 0;
  }

  std::unique_ptr<gzFile_s, Close> fFile;
  std::string fBuffer;
  std::string_view fRest;  // of what was read
};

class DelimitedFile {
 public:
  DelimitedFile(const std::string& path, const std::vector<std::string>& columns, const RowAction& action)
      : fPath(path), fColumns(columns), fAction(action) {
    if (csv_init(&fParser, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
    csv_set_space_func(&fParser, [](unsigned char) { return 0; });  // blanks belong to the cell
  }
  DelimitedFile(const DelimitedFile&) = delete;
  DelimitedFile& operator=(const DelimitedFile&) = delete;
  ~DelimitedFile() { csv_free(&fParser); }

  std::size_t Read() {
    LineSource source(fPath);
    std::string line;
    while (source.Next(line)) {
      if (++fLine == 1) Begin(line);
      Parse(line);
    }
    if (!source.IsOpen() || fLine == 0) Raise(MessageId::kCannotOpenFile, {fPath});
    if (source.HasFailed())
      Raise(MessageId::kInvalidContent, {"packed data that is cut off or damaged", fPath});
    if (csv_fini(&fParser, OnCell, OnRow, this) != 0) Refuse("a quoted cell that does not end");
    if (fFailure != nullptr) std::rethrow_exception(fFailure);
    return fRowCount;
  }

 private:
  // No exception crosses the parser, which is C: the first one waits for its end.
  template <class Action>
  void Guard(Action action) {
    if (fFailure != nullptr) return;
    try {
      action();
    } catch (...) {
      fFailure = std::current_exception();
    }
  }

  static void OnCell(void* text, std::size_t size, void* self) {
    auto& file = *static_cast<DelimitedFile*>(self);
    file.Guard([&] { file.fCells.emplace_back(static_cast<const char*>(text), size); });
  }

  static void OnRow(int, void* self) {
    auto& file = *static_cast<DelimitedFile*>(self);
    file.Guard([&] { file.TakeRow(); });
    file.fCells.clear();
  }

  std::string Place() const { return fPath + ", line " + std::to_string(fRowLine); }

  [[noreturn]] void Refuse(std::string_view what) const {
    Raise(MessageId::kInvalidContent, {what, Place()});
  }

  void Begin(std::string& line) {
    if (std::string_view(line).starts_with(kByteOrderMark)) line.erase(0, kByteOrderMark.size());
    const bool hasTab = line.find('\t') != std::string::npos;
    const bool hasComma = line.find(',') != std::string::npos;
    const char delimiter = hasTab ? '\t' : (hasComma || line.find(';') == std::string::npos) ? ',' : ';';
    csv_set_delim(&fParser, static_cast<unsigned char>(delimiter));
  }

  void Parse(const std::string& line) {
    if (fIsRowComplete && line.find_first_not_of("\r\n") == std::string::npos) return;
    if (fIsRowComplete) fRowLine = fLine;
    fIsRowComplete = false;
    if (line.find('\0') != std::string::npos || KxXML_940::WellFormedPrefix(line) != line.size())
      Refuse("text that is not UTF-8");
    if (csv_parse(&fParser, line.data(), line.size(), OnCell, OnRow, this) != line.size()) {
      if (csv_error(&fParser) != CSV_EPARSE) throw std::bad_alloc();
      Refuse("a quote in a wrong place");
    }
    if (fFailure != nullptr) std::rethrow_exception(fFailure);
  }

  void TakeRow() {
    fIsRowComplete = true;
    if (fPlaces.empty()) return TakeHeader();
    if (fCells.size() != fWidth) {
      Refuse(std::to_string(fCells.size()) + " cells instead of " + std::to_string(fWidth));
    }
    for (std::size_t i = 0; i < fPlaces.size(); ++i) {
      const std::string& cell = fCells[fPlaces[i]];
      fTexts[i] = KxXML_940::ToUTF16(cell);
      fRow[i] = cell.empty() ? nullptr : fTexts[i].c_str();
    }
    ++fRowCount;
    fAction({fRow, Place()});
  }

  void TakeHeader() {
    fWidth = fCells.size();
    for (const std::string& column : fColumns) {
      std::size_t place = fWidth;
      for (std::size_t i = 0; i < fWidth; ++i) {
        if (fCells[i] != column) continue;
        if (place != fWidth) Raise(MessageId::kMoreThanOneIn, {column, fPath});
        place = i;
      }
      if (place == fWidth) Raise(MessageId::kMissingDefinitionIn, {column, fPath});
      fPlaces.push_back(place);
    }
    fTexts.resize(fColumns.size());
    fRow.resize(fColumns.size());
  }

  const std::string& fPath;
  const std::vector<std::string>& fColumns;
  const RowAction& fAction;
  csv_parser fParser{};
  std::size_t fLine = 0;
  std::size_t fRowLine = 0;  // where the row began
  bool fIsRowComplete = true;
  std::size_t fRowCount = 0;
  std::vector<std::string> fCells;
  std::size_t fWidth = 0;
  std::vector<std::size_t> fPlaces;  // of the columns asked for
  std::vector<std::u16string> fTexts;
  std::vector<const XMLCh*> fRow;
  std::exception_ptr fFailure;
};

}  // namespace

std::size_t ForEachRow(const std::string& path, const std::vector<std::string>& columns,
                       const RowAction& action) {
  return DelimitedFile(path, columns, action).Read();
}

}  // namespace KxVeyra_940::Plugin
