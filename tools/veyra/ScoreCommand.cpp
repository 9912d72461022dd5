#include "veyra/ScoreCommand.h"

#include <memory>

#include "data/NumericValue.h"
#include "data/ResultVar.h"
#include "veyra/CsvWriter.h"
#include "veyra/LibrarySession.h"
#include "veyra/OutputFile.h"
#include "veyra/Progress.h"
#include "veyra/ScoreModel.h"

namespace VeyraTool {

using KxVeyra_940::NumericValue;
using KxVeyra_940::ResultVar;
using KxVeyra_940::ScoreDictionary;
using KxVeyra_940::ScoreDictVar;
using KxVeyra_940::ScoreModel;
using KxVeyra_940::ScoreResult;
using KxVeyra_940::ScoreResultField;

namespace {

// Whether an output field compares the answer with the target's value in the data.
bool ReadsTarget(const ScoreModel& model) {
  const ScoreDictionary* outputs = model.GetResultDictionary();
  if (outputs == nullptr) return false;
  for (const ScoreDictVar* output : outputs->GetScoreDictVars()) {
    const auto* var = dynamic_cast<const ResultVar*>(output);
    if (var != nullptr && var->GetFeature() == ScoreResultField::kResidual) return true;
  }
  return false;
}

void BindFields(const ScoreModel& model, CaseReader& reader) {
  const ScoreDictionary& dictionary = *model.GetDictionary();
  const bool readsTarget = ReadsTarget(model);
  for (const std::string& name : dictionary.GetVarNames()) {
    const ScoreModel::VarRole role = model.GetVarRole(name);
    if (role == ScoreModel::kPredictorRole) reader.Bind(*dictionary.GetVar(name), true);
    if (role == ScoreModel::kTargetRole && readsTarget) reader.Bind(*dictionary.GetVar(name), false);
  }
}

void WriteHeader(const ScoreModel& model, const ScoreResult& result, CsvWriter& writer) {
  const ScoreDictVar* target = model.GetTargetVar();
  writer.AddText(target == nullptr ? "predicted" : target->GetName());
  for (int i = 0; i < result.GetNumberOfCategories(); ++i) {
    std::string category;
    CsvWriter(category, '\0').AddValue(result.GetCategory(i));
    writer.AddText("probability(" + category + ")");
  }
  for (int i = 0; i < result.GetNumberOfOutputs(); ++i) writer.AddText(result.GetOutputName(i));
  writer.EndRow();
}

void WriteResult(const ScoreResult& result, CsvWriter& writer) {
  writer.AddValue(result.GetPredictedValue());
  for (int i = 0; i < result.GetNumberOfCategories(); ++i) {
    const double probability = result.GetCategoryProbability(i);
    if (NumericValue::IsSystemMissingValue(probability)) {
      writer.AddText({});
    } else {
      writer.AddNumber(probability);
    }
  }
  for (int i = 0; i < result.GetNumberOfOutputs(); ++i) writer.AddValue(result.GetOutputValue(i));
  writer.EndRow();
}

}  // namespace

void RunScore(const ScoreOptions& options) {
  const LibrarySession library(options.catalog);
  const std::unique_ptr<ScoreModel> model = library.LoadModel(options.model);
  TextSource source(options.data, options.encoding);
  CsvReader csv(source, options.delimiter);
  CaseReader reader(csv, options.cells);
  BindFields(*model, reader);
  model->PrepareForCases(reader.GetRecord());
  const std::unique_ptr<ScoreResult> result(model->NewResult());

  OutputFile output(options.output);
  CsvWriter writer(output.GetBuffer(), options.delimiter);
  if (options.append) {
    for (const std::string& name : reader.GetHeader()) writer.AddText(name);
  }
  WriteHeader(*model, *result, writer);
  Progress progress(options.quiet);
  while (reader.ReadCase()) {
    model->Score(reader.GetRecord(), *result);
    if (options.append) {
      for (std::size_t i = 0; i < csv.GetCellCount(); ++i) writer.AddText(csv.GetCell(i));
    }
    WriteResult(*result, writer);
    output.FlushIfLarge();
    progress.AddRow();
  }
  output.Finish();
}

}  // namespace VeyraTool
