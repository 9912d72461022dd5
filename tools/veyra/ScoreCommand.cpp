#include "veyra/ScoreCommand.h"

#include <memory>
#include <new>

#include "data/NumericValue.h"
#include "data/ResultVar.h"
#include "factory/BaseModel.h"
#include "veyra/CsvWriter.h"
#include "veyra/LibrarySession.h"
#include "veyra/OutputCheck.h"
#include "veyra/ScoreModel.h"

namespace VeyraTool {

using KxVeyra_940::BaseModel;
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

void BindFields(const ScoreModel& model, CaseLayout& layout) {
  const ScoreDictionary& dictionary = *model.GetDictionary();
  const bool readsTarget = ReadsTarget(model);
  for (const std::string& name : dictionary.GetVarNames()) {
    const ScoreModel::VarRole role = model.GetVarRole(name);
    if (role == ScoreModel::kPredictorRole) layout.Bind(*dictionary.GetVar(name), true);
    if (role == ScoreModel::kTargetRole && readsTarget) layout.Bind(*dictionary.GetVar(name), false);
  }
}

std::vector<std::string> NameResults(const ScoreModel& model, const ScoreResult& result) {
  const ScoreDictVar* target = model.GetTargetVar();
  std::vector<std::string> names = {target == nullptr ? "predicted" : target->GetName()};
  for (int i = 0; i < result.GetNumberOfCategories(); ++i) {
    std::string category;
    CsvWriter(category, '\0').AddValue(result.GetCategory(i));
    names.push_back("probability(" + category + ")");
  }
  for (int i = 0; i < result.GetNumberOfOutputs(); ++i) names.push_back(result.GetOutputName(i));
  return names;
}

class ScoreWorker : public RowWorker {
 public:
  // The layout is lent.
  ScoreWorker(std::unique_ptr<ScoreModel> model, const CaseLayout& layout)
      : fModel(std::move(model)), fReader(layout), fResult(fModel->NewResult()) {
    fModel->PrepareForCases(fReader.GetRecord());
  }

  RowOutcome Work(Row row, CsvWriter& out, RowFailure& failure) override {
    if (!fReader.ReadCase(row, failure)) return RowOutcome::kFailed;
    const long code = fModel->Score(fReader.GetRecord(), *fResult).GetErrorCode();
    if (code == BaseModel::kOutOfMemory) throw std::bad_alloc();  // no row is left out silently
    WriteResult(out);
    return fResult->GetPredictedValue() == nullptr ? RowOutcome::kMissingResult : RowOutcome::kResult;
  }

 private:
  void WriteResult(CsvWriter& out) const {
    out.AddValue(fResult->GetPredictedValue());
    for (int i = 0; i < fResult->GetNumberOfCategories(); ++i) {
      const double probability = fResult->GetCategoryProbability(i);
      if (NumericValue::IsSystemMissingValue(probability)) {
        out.AddText({});
      } else {
        out.AddNumber(probability);
      }
    }
    for (int i = 0; i < fResult->GetNumberOfOutputs(); ++i) out.AddValue(fResult->GetOutputValue(i));
  }

  std::unique_ptr<ScoreModel> fModel;
  CaseReader fReader;
  std::unique_ptr<ScoreResult> fResult;
};

}  // namespace

ExitStatus RunScore(const ScoreOptions& options) {
  CheckOutput(options.rows.output, {{"the document", options.model.path},
                                    {"the data", options.rows.data, true},
                                    {"the training data", options.auxPath},
                                    {"the catalogue", ChooseCatalog(options.catalog)}});
  const LibrarySession library(options.catalog);
  const LoadedModel loaded = library.LoadModel(options.model, options.auxPath, options.isLenient);
  const std::unique_ptr<ScoreModel>& model = loaded.model;
  RowPipeline rows(loaded.keepsHistory ? WithOneThread(options.rows, options.model.path) : options.rows);
  CaseLayout layout(rows.GetDataName(), rows.GetHeader(), options.cells);
  BindFields(*model, layout);
  const std::unique_ptr<ScoreResult> result(model->NewResult());
  return rows.Run(NameResults(*model, *result), [&] {
    return std::make_unique<ScoreWorker>(std::unique_ptr<ScoreModel>(model->Clone()), layout);
  });
}

}  // namespace VeyraTool
