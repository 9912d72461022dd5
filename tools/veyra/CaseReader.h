// Fills a case record from the cells of a row.
//
// Columns are bound to the fields of a dictionary once, from the header; a row is then read by position.

#ifndef VEYRA_TOOLS_CASEREADER_H_
#define VEYRA_TOOLS_CASEREADER_H_

#include <string>
#include <unordered_map>
#include <vector>

#include "data/CaseRecord.h"
#include "veyra/CsvReader.h"
#include "veyra/ScoreDictionary.h"

namespace VeyraTool {

struct CellRules {
  std::vector<std::string> missingTexts = {""};  // a cell that is exactly one of these is missing
  bool absentColumnsAreMissing = false;
};

class CaseReader {
 public:
  // Reads the header row of `csv`.  Throws DataFailure when there is none.
  CaseReader(CsvReader& csv, CellRules rules);

  const std::vector<std::string>& GetHeader() const { return fHeader; }

  // Gives the field a slot in the record and, when the header has its column, reads it from there.  Throws
  // DataFailure when a needed column is absent (unless absent columns are missing) or stands there twice.
  // REQUIRES: `field` outlives the reader.
  void Bind(const KxVeyra_940::ScoreDictVar& field, bool isNeeded);

  // Reads the next row into the record; false at the end.  Throws DataFailure for a row that is shorter or
  // longer than the header and for a cell that its field cannot take.
  bool ReadCase();

  const KxVeyra_940::CaseRecord& GetRecord() const { return fRecord; }
  const CsvReader& GetRow() const { return fCsv; }

 private:
  struct Binding {
    std::size_t column;
    int slot;
    const KxVeyra_940::ScoreDictVar* field;
    KxVeyra_940::ScoreDictVar::VariableType type;
  };

  void ReadCell(const Binding& binding);
  bool StoreCell(const Binding& binding, std::string_view cell);
  bool IsMissingText(std::string_view cell) const;

  // The columns of one name.
  struct Columns {
    std::size_t first;
    std::size_t second;  // 0 when there is no second one
  };

  CsvReader& fCsv;
  CellRules fRules;
  std::vector<std::string> fHeader;
  std::unordered_map<std::string, Columns> fColumns;
  std::vector<Binding> fBindings;
  KxVeyra_940::CaseRecord fRecord;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_CASEREADER_H_
