#include "veyra/DeriveCommand.h"

#include <algorithm>
#include <memory>
#include <set>

#include "data/DateTimeValue.h"
#include "transform/TransformVar.h"
#include "transform/TransformationDictionary.h"
#include "veyra/CsvWriter.h"
#include "veyra/DerivingDocument.h"
#include "veyra/OutputCheck.h"

namespace VeyraTool {

using KxVeyra_940::DateTimeValue;
using KxVeyra_940::ScoreCaseRecord;
using KxVeyra_940::ScoreDictionary;
using KxVeyra_940::ScoreDictVar;
using KxVeyra_940::ScoreValue;
using KxVeyra_940::TransformationDictionary;
using KxVeyra_940::TransformVar;

namespace {

const TransformVar& FieldOf(const TransformationDictionary& dictionary, const std::string& name) {
  return static_cast<const TransformVar&>(*dictionary.GetVar(name));
}

// The fields of these names with those that they depend on, in the order of evaluation, ready for cases.
std::unique_ptr<TransformationDictionary> Select(const TransformationDictionary& all,
                                                 const std::vector<std::string>& names) {
  auto selected = std::make_unique<TransformationDictionary>();
  for (const std::string& name : all.GetDerivedVarNames()) {
    selected->AddVar(name, FieldOf(all, name).Clone());
    selected->AddDerievedVarName(name);
  }
  selected->KeepOnly(names);
  selected->SetUpDerivedCaseRecord();
  return selected;
}

[[noreturn]] void RefuseColumn(const std::string& data, const std::string& name, const std::string& field) {
  std::string reason = "there is no column '";
  reason.append(name).append("', which the derived field '").append(field).append("' needs");
  throw DataFailure(data, {}, reason);
}

// Binds the columns that the derived fields read.
void BindFields(const DerivingDocument& document, const TransformationDictionary& derived,
                const std::vector<std::string>& header, const std::string& data, bool absentIsMissing,
                CaseLayout& layout) {
  std::set<std::string> bound;
  for (const std::string& field : derived.GetDerivedVarNames()) {
    for (const std::string& name : FieldOf(derived, field).GetReads()) {
      const ScoreDictVar* const var = std::as_const(*document.data).GetVar(name);
      if (var == nullptr || !bound.insert(name).second) continue;
      const bool isThere = std::find(header.begin(), header.end(), name) != header.end();
      if (!isThere && !absentIsMissing) RefuseColumn(data, name, field);
      layout.Bind(*var, true);
    }
  }
}

bool KeepsHistory(const TransformationDictionary& derived) {
  return std::ranges::any_of(derived.GetDerivedVarNames(), [&](const std::string& name) {
    return FieldOf(derived, name).GetTransExpression() == TransformationDictionary::TE_LAG;
  });
}

// Dates and times are written as texts, those that count from an epoch as the numbers that read back.
bool IsCounted(const ScoreDictVar& var) {
  return var.GetVarType() == ScoreDictVar::kDATETIME_VAR && var.GetDateTimeType() > ScoreDictVar::kDateTime;
}

void AddCounted(const ScoreDictVar& var, const ScoreValue* value, CsvWriter& out) {
  const bool isDate = value != nullptr && value->GetType() == ScoreValue::kDateTimeValueType;
  if (!isDate || value->IsSystemMissingValue()) return out.AddValue(value);
  out.AddNumber(static_cast<const DateTimeValue*>(value)->GetDoubleValue(var.GetDateTimeType()));
}

class DeriveWorker : public RowWorker {
 public:
  // `names` and the layout are lent.
  DeriveWorker(const ScoreDictionary& data, const TransformationDictionary& derived,
               const std::vector<std::string>& names, const CaseLayout& layout)
      : fData(data.Clone()), fDerived(derived), fReader(layout) {
    const ScoreCaseRecord& record = *fDerived.GetValuesForDerivedVars(nullptr, nullptr);
    for (const std::string& name : names)
      fColumns.push_back({static_cast<std::size_t>(record.GetIndex(name)), &FieldOf(fDerived, name),
                          IsCounted(FieldOf(fDerived, name))});
  }

  RowOutcome Work(Row row, CsvWriter& out, RowFailure& failure) override {
    if (!fReader.ReadCase(row, failure)) return RowOutcome::kFailed;
    const std::vector<ScoreValue*>& values =
        fDerived.GetValuesForDerivedVars(&fReader.GetRecord(), fData.get())->GetAllValues();
    bool isAny = false;
    for (const Column& column : fColumns) {
      const ScoreValue* const value = values[column.slot];
      column.isCounted ? AddCounted(*column.field, value, out) : out.AddValue(value);
      isAny = isAny || !column.field->IsMissingValue(value);
    }
    return isAny ? RowOutcome::kResult : RowOutcome::kMissingResult;
  }

 private:
  struct Column {
    std::size_t slot;
    const TransformVar* field;
    bool isCounted;
  };

  std::unique_ptr<ScoreDictionary> fData;
  TransformationDictionary fDerived;
  CaseReader fReader;
  std::vector<Column> fColumns;
};

// The names to write, in the order of evaluation.
std::vector<std::string> NamesToWrite(const DeriveOptions& options, const TransformationDictionary& all) {
  if (options.only.empty()) return all.GetDerivedVarNames();
  for (const std::string& name : options.only) {
    if (all.GetVar(name) == nullptr)
      throw CommandFailure(kWrongUsage, options.document.path + ": there is no derived field '" + name + "'");
  }
  std::vector<std::string> names;
  for (const std::string& name : all.GetDerivedVarNames())
    if (std::ranges::find(options.only, name) != options.only.end()) names.push_back(name);
  return names;
}

}  // namespace

ExitStatus RunDerive(const DeriveOptions& options) {
  CheckOutput(options.rows.output,
              {{"the document", options.document.path}, {"the data", options.rows.data, true}});
  const DerivingDocument document(options.document, options.trustsDtd, options.isLenient);
  const std::vector<std::string> names = NamesToWrite(options, *document.transformations);
  const std::unique_ptr<TransformationDictionary> derived = Select(*document.transformations, names);
  RowPipeline rows(KeepsHistory(*derived) ? WithOneThread(options.rows, options.document.path)
                                          : options.rows);
  CaseLayout layout(rows.GetDataName(), rows.GetHeader(), options.cells);
  BindFields(document, *derived, rows.GetHeader(), rows.GetDataName(), options.cells.absentColumnsAreMissing,
             layout);
  return rows.Run(names,
                  [&] { return std::make_unique<DeriveWorker>(*document.data, *derived, names, layout); });
}

}  // namespace VeyraTool
