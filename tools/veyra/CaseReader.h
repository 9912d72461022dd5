// Fills a case record from the cells of a row.
//
// A CaseLayout binds the columns of a file to fields once, from the header; each thread reads rows by
// position with a CaseReader of its own.

#ifndef VEYRA_TOOLS_CASEREADER_H_
#define VEYRA_TOOLS_CASEREADER_H_

#include <string>
#include <unordered_map>
#include <vector>

#include "data/CaseRecord.h"
#include "veyra/RowParser.h"
#include "veyra/ScoreDictVar.h"

namespace VeyraTool {

struct CellRules {
  std::vector<std::string> missingTexts = {""};  // a cell that is exactly one of these is missing
  bool absentColumnsAreMissing = false;
};

class CaseLayout {
 public:
  // `file` is what messages call the data.
  CaseLayout(std::string file, std::vector<std::string> header, CellRules rules);

  // Gives the field a slot in the records and, when the header has its column, binds it to that.  Throws
  // DataFailure when a needed column is absent (unless absent columns are missing) or stands there twice.
  void Bind(const KxVeyra_940::ScoreDictVar& field, bool isNeeded);

 private:
  friend class CaseReader;

  struct Binding {
    std::size_t column;
    int slot;
    std::string name;
    KxVeyra_940::ScoreDictVar::VariableType type;
    KxVeyra_940::ScoreDictVar::DateTimeType dateTimeType;
  };
  // The columns of one name.
  struct Columns {
    std::size_t first;
    std::size_t second;  // 0 when there is no second one
  };

  std::string fFile;
  bool fAbsentColumnsAreMissing;
  bool fEmptyIsMissing = false;
  std::vector<std::string> fMissingTexts;  // but the empty one
  std::unordered_map<std::string, Columns> fColumns;
  std::vector<std::string> fNames;  // by slot
  std::vector<Binding> fBindings;
};

class CaseReader {
 public:
  // The layout is lent, is complete, and outlives the reader.
  explicit CaseReader(const CaseLayout& layout);

  // Reads the cells into the record.  False, with the reason, for a cell that its field cannot take.
  // REQUIRES: the row has as many cells as the header.
  bool ReadCase(Row row, RowFailure& failure);

  const KxVeyra_940::CaseRecord& GetRecord() const { return fRecord; }

 private:
  bool StoreCell(const CaseLayout::Binding& binding, std::string_view cell);
  bool IsMissingText(std::string_view cell) const;

  const CaseLayout& fLayout;
  KxVeyra_940::CaseRecord fRecord;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_CASEREADER_H_
