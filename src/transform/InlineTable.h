// The rows of a value map: from a tuple of input values to an output value.
//
// Look-ups go through an index that is built on first use, hashed for one column of texts and sorted for all
// else: logarithmic at most, and nothing is allocated.  A key with a date-time, which matches whatever stands
// opposite, is compared with the rows in their order: the first one that matches is found.
// Ownership: the table owns keys and outputs.
// Threads: the info code and the index make a table usable by one thread at a time.  Nothing throws.

#ifndef VEYRA_TRANSFORM_INLINETABLE_H_
#define VEYRA_TRANSFORM_INLINETABLE_H_

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/NameIndex.h"
#include "data/NumericValue.h"
#include "transform/CaseContext.h"
#include "veyra/Export.h"
#include "veyra/ScoreCaseRecord.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class MapValues;

// The order of row keys: position by position; numbers and texts decide, other kinds pass.  A number that is
// missing, or NaN, passes too.  REQUIRES: `right` is not shorter than `left`.
struct VEYRA_API compare {
  bool operator()(const std::vector<ScoreValue*>& left, const std::vector<ScoreValue*>& right) const;
};

class VEYRA_API InlineTable {
 public:
  using Key = std::span<const ScoreValue* const>;

  enum InfoCode : int { kFound = 0, kInputMissing = 1, kNoRow = 2 };

  InlineTable();
  InlineTable(const InlineTable& other);  // clones the rows
  InlineTable& operator=(const InlineTable&) = delete;
  ~InlineTable();

  InlineTable* Clone() const { return new InlineTable(*this); }

  // The field of the next key column, lent.
  void AppendInputField(const ScoreDictVar* variable);
  const std::vector<const ScoreDictVar*>& GetInputFields() const { return fInputFields; }
  // Takes the values.  A key that is there already keeps its first row.  A key with a missing number or NaN
  // is never found.  REQUIRES: as many keys as in the other rows.
  void AddInputOutput(const std::vector<ScoreValue*>& keys, ScoreValue* output);
  int GetRowCount() const { return static_cast<int>(fRows.size()); }
  int GetInfoCode() const { return fInfoCode; }

  // The output for the case, lent; null when a field is missing or no row has its values.
  const ScoreValue* getValue(const ScoreCaseRecord* input, const ScoreDictionary* dataDictionary,
                             const ScoreDictionary* transformations, MapValues* owner);
  const ScoreValue* getValue(const CaseContext& context);
  // Appends the values of the input fields, lent; stops at the first that is missing.
  void GetInputValuesFromRecord(const ScoreCaseRecord* input, std::vector<ScoreValue*>& values,
                                const ScoreDictionary* dataDictionary,
                                const ScoreDictionary* transformations);
  // The names of the input fields.
  void AppendReads(std::vector<std::string>& names) const;
  // The output of the row whose key it is, lent; null when there is none.
  const ScoreValue* Find(Key key);

 private:
  // One position of a key.
  struct Cell {
    double number;
    std::string_view text;  // without trailing blanks
    ScoreValue::ValueType type;
  };

  static Cell CellOf(const ScoreValue* value);
  // Negative, 0 or positive; cells of different kinds and date-times pass as equal.
  static int Order(const Cell& left, const Cell& right);
  static bool IsEqual(const Cell& left, const Cell& right);
  static bool IsUsable(Key key);
  void CollectKey(const CaseContext& context);
  void BuildIndex();
  void BuildTextIndex();
  bool IsRow(std::size_t row, Key key) const;
  const ScoreValue* FindText(const ScoreValue& key) const;
  const ScoreValue* FindPassing(Key key) const;

  std::vector<const ScoreDictVar*> fInputFields;
  std::map<std::vector<ScoreValue*>, ScoreValue*, compare> fRows;  // all owned
  int fInfoCode = kFound;

  std::vector<FieldSource> fSources;
  CaseContext::Binding fBinding;
  bool fIsBound = false;
  std::vector<Cell> fCells;  // the keys of the rows in order
  std::vector<const ScoreValue*> fOutputs;
  // A short text and a number stand in the row itself, so that a look-up goes to few places in memory.
  struct TextRow {
    const ScoreValue* output;  // `number` or one of fOutputs
    NumericValue number;
    std::uint32_t size;
    std::uint32_t offset;  // of a long text in fLongTexts
    char shortText[16];
  };
  std::string_view TextOf(const TextRow& row) const {
    const bool isShort = row.size <= sizeof row.shortText;
    return {isShort ? row.shortText : fLongTexts.data() + row.offset, row.size};
  }
  NameIndex fTexts;  // of a table with one column of texts
  std::vector<TextRow> fTextRows;
  std::string fLongTexts;
  bool fHoldsDateTimes = false;
  bool fIsIndexed = false;
  std::vector<const ScoreValue*> fKey;  // of the case
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_INLINETABLE_H_
