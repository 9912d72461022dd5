// A map from the values of fields to a value: by a table of rows or, without one, of a single field.
//
// Ownership: the map owns its table, its missing value and its default value.
// Threads: one thread at a time.  Nothing throws.

#ifndef VEYRA_TRANSFORM_MAPVALUES_H_
#define VEYRA_TRANSFORM_MAPVALUES_H_

#include <map>
#include <string>
#include <vector>

#include "data/Owned.h"
#include "transform/CaseContext.h"
#include "transform/InlineTable.h"
#include "veyra/Export.h"
#include "veyra/ScoreCaseRecord.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API MapValues {
 public:
  // The derived variable that the map belongs to, lent.
  explicit MapValues(const ScoreDictVar* derivedVar) : fDerivedVar(derivedVar) {}
  MapValues(const MapValues& other) = default;  // clones what it owns
  MapValues& operator=(const MapValues&) = delete;
  ~MapValues();

  MapValues* Clone() const { return new MapValues(*this); }

  void AddFieldColumnPair(const std::string& field, const std::string& column);
  const std::map<std::string, std::string>& GetColumnToFieldMap() const { return fFieldOfColumn; }
  void AddRefVar(const ScoreDictVar* variable);  // lent
  // Each takes its argument and deletes what it replaces.
  void SetInlineTable(InlineTable* table) { fTable.Replace(table); }
  void SetMapMissingTo(ScoreValue* value) { fMissingValue.Replace(value); }
  void SetDefaultValue(ScoreValue* value) { fDefaultValue.Replace(value); }
  InlineTable* GetInlineTable() const { return fTable.Get(); }
  const ScoreValue* GetMapMissingTo() const { return fMissingValue.Get(); }
  const ScoreValue* GetDefaultValue() const { return fDefaultValue.Get(); }
  void SetOutputColumn(const std::string& column) { fOutputColumn = column; }
  const std::string& GetOutputColumn() const { return fOutputColumn; }
  void SetDataType(ScoreDictVar::VariableType type) { fDataType = type; }
  ScoreDictVar::VariableType GetDataType() const { return fDataType; }
  const ScoreDictVar* getDerivedVar() const { return fDerivedVar; }
  void SetDerivedVar(const ScoreDictVar* derivedVar) { fDerivedVar = derivedVar; }

  // The value for the case, lent: the row's output; without a row the value of the first field when the
  // derived variable copies what is unmatched, else the default value; with a missing field the missing
  // value.  Null when that is not there.
  const ScoreValue* getValue(const ScoreCaseRecord* input, const ScoreDictionary* dataDictionary,
                             const ScoreDictionary* transformations);
  const ScoreValue* getValue(const CaseContext& context);

  // The names of the fields that the map reads.
  void AppendReads(std::vector<std::string>& names) const;

 private:
  const ScoreValue* UnmatchedValue(const CaseContext& context) const;
  const ScoreValue* ValueOfOnlyField(const CaseContext& context);

  std::map<std::string, std::string> fFieldOfColumn;  // the first one counts as the map's first field
  std::vector<const ScoreDictVar*> fRefVars;
  OwnedPart<InlineTable> fTable;
  const ScoreDictVar* fDerivedVar;
  OwnedPart<ScoreValue> fMissingValue;
  OwnedPart<ScoreValue> fDefaultValue;
  std::string fOutputColumn;
  ScoreDictVar::VariableType fDataType = ScoreDictVar::kNUMERIC_VAR;

  std::vector<FieldSource> fSources;  // of the referenced variables
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_MAPVALUES_H_
