// A hundred derived fields case by case, filling of the record included, compared with a hand-written
// function of the same fields over plain arrays.

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "AllocationCounter.h"
#include "Comparison.h"
#include "DerivedFields.h"
#include "data/CaseRecord.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "transform/TransformationDictionary.h"
#include "veyra/ModelFactory.h"

namespace {

using namespace VeyraBench;
using namespace KxVeyra_940;

constexpr std::size_t kCases = 5000;
constexpr double kLimit = 8;

class Deriving {
 public:
  Deriving() {
    std::istringstream in(DocumentText());
    ScoreDictionary* data = nullptr;
    fDerived.reset(ModelFactory::GetTransformationDictionaryFromXML(in, data, ""));
    fData.reset(data);
    for (const std::string& name : fData->GetVarNames()) fRecord.Add(name, nullptr);
  }

  const std::vector<ScoreValue*>& Compute(const Case& one) {
    int slot = 0;
    for (const double x : one.numbers) fRecord.SetValue(slot++, x);
    for (const std::string& text : one.texts) fRecord.SetText(slot++, text);
    return fDerived->GetValuesForDerivedVars(&fRecord, fData.get())->GetAllValues();
  }

 private:
  std::unique_ptr<ScoreDictionary> fData;
  std::unique_ptr<TransformationDictionary> fDerived;
  CaseRecord fRecord;
};

bool Close(const ScoreValue* value, double expected) {
  return std::fabs(value->GetDouble() - expected) <= 1e-12 * std::max(1.0, std::fabs(expected));
}

void RequireTheSameAnswers(const std::vector<Case>& cases, HandWritten& handWritten, Deriving& deriving) {
  for (const Case& one : cases) {
    const HandWritten::Values& wanted = handWritten.Compute(one);
    const std::vector<ScoreValue*>& values = deriving.Compute(one);
    for (std::size_t i = 0; i < kOfEach; ++i) {
      const std::size_t at = 5 * i;
      Require(Close(values[at], wanted.arithmetic[i]), "arithmetic");
      Require(Close(values[at + 1], wanted.comparison[i]), "comparison");
      Require(Close(values[at + 2], wanted.norm[i]), "piecewise linear");
      Require(values[at + 3]->GetString() == *wanted.bin[i], "bin");
      Require(Close(values[at + 4], wanted.mapped[i]), "map");
    }
  }
}

double gRatio = 0;

void CompareCases(benchmark::State& state) {
  const std::vector<Case> cases = MakeCases(kCases);
  HandWritten handWritten;
  Deriving deriving;
  RequireTheSameAnswers(cases, handWritten, deriving);
  const AllocationCounter counter;
  for (const Case& one : cases) deriving.Compute(one);
  std::printf("allocations per case = %.3f\n", static_cast<double>(counter.Count()) / kCases);
  gRatio = Compare(
      state,
      [&] {
        for (const Case& one : cases) benchmark::DoNotOptimize(handWritten.Compute(one));
      },
      [&] {
        for (const Case& one : cases) benchmark::DoNotOptimize(deriving.Compute(one));
      });
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(kCases));
}
BENCHMARK(CompareCases)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  PrintRatio("100 derived fields / hand-written", gRatio, kLimit);
}
