// Making regression models from documents of different sizes.

#include <cmath>

#include "Loading.h"
#include "RegressionDocument.h"
#include "data/CaseRecord.h"
#include "veyra/VYException.h"

namespace {

using namespace VeyraBench;
using KxVeyra_940::CaseRecord;
using KxVeyra_940::ModelFactory;
using KxVeyra_940::ScoreModel;
using KxVeyra_940::ScoreResult;

constexpr const char* kModelName = "RegressionModel";
constexpr double kOwnLimit = 0.25;
constexpr double kGrowthLimit = 1.2;

// All numbers 1.5, all categories the first one.
void CheckAnswer(const RegressionDocument& document, ScoreModel& model) {
  double expected = document.Intercept();
  CaseRecord record;
  for (std::size_t i = 0; i < document.Coefficients().size(); ++i) {
    record.Add(RegressionDocument::NumberName(i), nullptr);
    record.SetValue(RegressionDocument::NumberName(i), 1.5);
    expected += 1.5 * document.Coefficients()[i];
  }
  for (std::size_t i = 0; i < document.Categories().size(); ++i) {
    record.Add(RegressionDocument::CategoryName(i), nullptr);
    record.SetValue(RegressionDocument::CategoryName(i), document.Categories()[i].front().text);
    expected += document.Categories()[i].front().coefficient;
  }
  Require(model.PrepareForCases(record).IsOK(), "layout");
  const std::unique_ptr<ScoreResult> result(model.NewResult());
  Require(model.Score(record, *result).IsOK(), "status");
  Require(std::fabs(result->GetPredictedValue()->GetDouble() - expected) < 1e-6, "prediction");
}

void Measure(benchmark::State& state, Load& load) {
  const RegressionDocument document(load.size, true);
  std::istringstream in(document.Text());
  CheckAnswer(document, *MakeModel(in, kModelName));
  MeasureLoading(state, document.Text(), kModelName, load);
}

}  // namespace

int main(int argc, char** argv) try {
  ModelFactory::Initialize("");
  benchmark::Initialize(&argc, argv);
  std::vector<Load> loads = {{"10 kB", 3, 500}, {"1 MB", 325, 45}, {"50 MB", 16000, 7}};
  for (Load& load : loads) {
    benchmark::RegisterBenchmark(load.name, [&load](benchmark::State& state) { Measure(state, load); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(load.iterations);
  }
  benchmark::RunSpecifiedBenchmarks();
  PrintLoading("load", loads, kOwnLimit, kGrowthLimit);
  ModelFactory::Terminate();
} catch (const KxVeyra_940::VYException& e) {
  std::fprintf(stderr, "%s\n", e.GetErrorMessage().c_str());
  return EXIT_FAILURE;
}
