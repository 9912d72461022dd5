// Trees: scoring case by case, filling of the record included, compared with a hand-written loop over the
// same tree as an array; a simple predicate compared with one virtual call; loading compared with a bare
// parse.

#include <array>
#include <cmath>

#include "AllocationCounter.h"
#include "Loading.h"
#include "NumberScoring.h"
#include "TreeDocument.h"
#include "data/CaseRecord.h"
#include "data/DictVar.h"
#include "data/NumericValue.h"
#include "data/Range.h"
#include "predicate/ScaleSplit.h"
#include "predicate/SimplePredicate.h"
#include "veyra/VYException.h"

namespace {

using namespace VeyraBench;
using KxVeyra_940::CaseRecord;
using KxVeyra_940::DictVar;
using KxVeyra_940::ModelFactory;
using KxVeyra_940::NumericValue;
using KxVeyra_940::Range;
using KxVeyra_940::ScaleSplit;
using KxVeyra_940::ScoreCaseRecord;
using KxVeyra_940::ScoreDictVar;
using KxVeyra_940::ScorePredicate;
using KxVeyra_940::SimplePredicate;

constexpr const char* kModelName = "TreeModel";
constexpr int kLeaves = 10000;
constexpr std::size_t kCases = 10000;
constexpr double kScoreLimit = 4;
constexpr std::size_t kPredicateCases = 1000;
constexpr double kPredicateLimit = 12;
constexpr double kOwnLimit = 0.4;
constexpr double kGrowthLimit = 1.2;

using Case = std::array<double, kTreeFields>;

std::vector<Case> MakeCases() {
  std::mt19937_64 random(25);
  std::uniform_real_distribution<double> number(-1, 1);
  std::vector<Case> cases(kCases);
  for (Case& one : cases) {
    for (double& value : one) value = number(random);
  }
  return cases;
}

class HandWritten {
 public:
  explicit HandWritten(const TreeDocument& document) : fNodes(document.Nodes()) {}

  double Score(const Case& one) const {
    const TreeDocument::Node* node = fNodes.data();
    while (node->field >= 0) {
      const bool isLeft = one[static_cast<std::size_t>(node->field)] <= node->threshold;
      node = fNodes.data() + node->left + (isLeft ? 0 : 1);
    }
    return node->score;
  }

 private:
  std::vector<TreeDocument::Node> fNodes;
};

// What a predicate costs at the least: a virtual call that fetches a number from the record and compares it.
class BareCondition {
 public:
  explicit BareCondition(double bound) : fBound(bound) {}
  virtual ~BareCondition() = default;
  virtual bool Holds(const ScoreCaseRecord& record) const { return record.Get(0)->GetDouble() < fBound; }

 private:
  double fBound;
};

std::vector<CaseRecord> MakeRecords() {
  std::mt19937_64 random(26);
  std::uniform_real_distribution<double> number(-1, 1);
  std::vector<CaseRecord> records(kPredicateCases);
  for (CaseRecord& record : records) record.Add("x", new NumericValue(number(random)));
  return records;
}

SimplePredicate MakePredicate(const DictVar& variable) {
  auto* split = new ScaleSplit(&variable);
  split->PutSplit(new Range(-NumericValue::gInfinity, 0, false, false), 0);
  return SimplePredicate(split);
}

struct Ratios {
  double score = 0;
  double scoreAllocations = 0;
  double predicate = 0;
  double predicateAllocations = 0;
};

void RegisterScoring(const TreeDocument& document, Ratios& ratios) {
  const auto run = [&](benchmark::State& state) {
    const std::vector<Case> cases = MakeCases();
    const HandWritten floor(document);
    NumberScoring scoring(document.Text(), kModelName, TreeDocument::FieldNames());
    for (const Case& one : cases) Require(scoring.Score(one) == floor.Score(one), "prediction");
    const AllocationCounter counter;
    SumOf(scoring, cases);
    ratios.scoreAllocations = static_cast<double>(counter.Count()) / static_cast<double>(kCases);
    ratios.score = Compare(
        state, [&] { benchmark::DoNotOptimize(SumOf(floor, cases)); },
        [&] { benchmark::DoNotOptimize(SumOf(scoring, cases)); });
  };
  benchmark::RegisterBenchmark("10000 cases through a tree of 10000 leaves", run)
      ->UseManualTime()
      ->MinTime(2)
      ->Unit(benchmark::kMillisecond);
}

void RegisterPredicate(Ratios& ratios) {
  const auto run = [&](benchmark::State& state) {
    const std::vector<CaseRecord> records = MakeRecords();
    DictVar variable("x", ScoreDictVar::kNUMERIC_VAR);
    variable.SetValueIndex(0);
    const SimplePredicate predicate = MakePredicate(variable);
    const ScorePredicate* object = &predicate;
    const BareCondition bare(0);
    const BareCondition* floor = &bare;
    benchmark::DoNotOptimize(object);
    benchmark::DoNotOptimize(floor);
    const auto count = [&records](auto&& holds) {
      long sum = 0;
      for (const CaseRecord& record : records) sum += holds(record) ? 1 : 0;
      benchmark::DoNotOptimize(sum);
      return sum;
    };
    const auto ofObject = [object](const CaseRecord& record) {
      return object->Evaluate(&record, nullptr) == ScorePredicate::kTrue;
    };
    const auto ofFloor = [floor](const CaseRecord& record) { return floor->Holds(record); };
    Require(count(ofObject) == count(ofFloor), "predicate");
    const AllocationCounter counter;
    count(ofObject);
    ratios.predicateAllocations = static_cast<double>(counter.Count());
    ratios.predicate = Compare(
        state, [&] { count(ofFloor); }, [&] { count(ofObject); });
  };
  benchmark::RegisterBenchmark("1000 cases of a simple predicate", run)
      ->UseManualTime()
      ->MinTime(1)
      ->Unit(benchmark::kMicrosecond);
}

void MeasureLoad(benchmark::State& state, Load& load) {
  const TreeDocument document(load.size, true);
  const HandWritten floor(document);
  NumberScoring scoring(document.Text(), kModelName, TreeDocument::FieldNames());
  for (const Case& one : MakeCases()) Require(scoring.Score(one) == floor.Score(one), "prediction");
  MeasureLoading(state, document.Text(), kModelName, load);
}

}  // namespace

int main(int argc, char** argv) try {
  ModelFactory::Initialize("");
  benchmark::Initialize(&argc, argv);
  Ratios ratios;
  const TreeDocument document(kLeaves, false);
  RegisterScoring(document, ratios);
  RegisterPredicate(ratios);
  std::vector<Load> loads = {{"0.5 MB", 1400, 60}, {"5 MB", 14000, 15}, {"50 MB", 137000, 5}};
  RegisterLoading(loads, MeasureLoad);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("tree: heap allocations per case = %g (limit 0)\n", ratios.scoreAllocations);
  PrintRatio("tree: scoring / hand-written floor", ratios.score, kScoreLimit);
  std::printf("tree: heap allocations of 1000 predicates = %g (limit 0)\n", ratios.predicateAllocations);
  PrintRatio("tree: a predicate / a virtual call that fetches and compares", ratios.predicate,
             kPredicateLimit);
  PrintLoading("tree: load", loads, kOwnLimit, kGrowthLimit);
  ModelFactory::Terminate();
} catch (const KxVeyra_940::VYException& e) {
  std::fprintf(stderr, "%s\n", e.GetErrorMessage().c_str());
  return EXIT_FAILURE;
}
