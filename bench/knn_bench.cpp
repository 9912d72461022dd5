// Nearest neighbours: a case against 10,000 instances of 20 numbers, filling of the record included, compared
// with a hand-written scan of the same matrix; making the model compared with a bare parse of its document.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <random>
#include <utility>

#include "AllocationCounter.h"
#include "Loading.h"
#include "NumberScoring.h"
#include "veyra/VYException.h"

namespace {

using namespace VeyraBench;
using KxVeyra_940::ModelFactory;

constexpr const char* kModelName = "NearestNeighborModel";
constexpr std::size_t kFields = 20;
constexpr std::size_t kInstances = 10000;
constexpr std::size_t kCases = 200;
constexpr std::size_t kNeighbors = 5;
constexpr double kLimit = 1.5;
constexpr double kOwnLimit = 0.4;
constexpr double kGrowthLimit = 1.2;

using Point = std::array<double, kFields>;

struct Instance {
  Point place;
  double answer;
};

struct Kind {
  const char* measure;
  double share;  // of the cells that are missing
  double ratio = 0;
  double allocations = 0;
};

class Data {
 public:
  explicit Data(double missingShare, std::size_t size = kInstances) {
    std::mt19937_64 random(31);
    std::uniform_real_distribution<double> number(-1, 1);
    std::uniform_real_distribution<double> share(0, 1);
    const auto fill = [&](Point& place) {
      for (double& value : place) value = share(random) < missingShare ? std::nan("") : number(random);
    };
    fInstances.resize(size);
    for (Instance& instance : fInstances) {
      fill(instance.place);
      instance.answer = number(random);
    }
    fCases.resize(kCases);
    for (Point& one : fCases) {
      for (double& value : one) value = number(random);
    }
  }

  const std::vector<Instance>& GetInstances() const { return fInstances; }
  const std::vector<Point>& GetCases() const { return fCases; }

  static std::string FieldName(std::size_t field) { return "x" + std::to_string(field); }
  static std::vector<std::string> FieldNames() {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < kFields; ++i) names.push_back(FieldName(i));
    return names;
  }

  std::string Document(const std::string& measure) const {
    std::string fields;
    std::string schema;
    std::string instanceFields;
    std::string inputs;
    for (std::size_t i = 0; i < kFields; ++i) {
      const std::string name = FieldName(i);
      fields += "<DataField name='" + name + "' optype='continuous' dataType='double'/>";
      schema += "<MiningField name='" + name + "'/>";
      instanceFields += "<InstanceField field='" + name + "' column='" + name + "'/>";
      inputs += "<KNNInput field='" + name + "'/>";
    }
    std::string text = "<PMML version='4.4'><DataDictionary numberOfFields='21'>" + fields +
                       "<DataField name='y' optype='continuous' dataType='double'/></DataDictionary>"
                       "<NearestNeighborModel functionName='regression' numberOfNeighbors='" +
                       std::to_string(kNeighbors) + "'><MiningSchema>" + schema +
                       "<MiningField name='y' usageType='target'/></MiningSchema>"
                       "<TrainingInstances><InstanceFields>" +
                       instanceFields + "<InstanceField field='y' column='y'/></InstanceFields><InlineTable>";
    for (const Instance& instance : fInstances) {
      text += "<row>";
      for (std::size_t i = 0; i < kFields; ++i) AddCell(FieldName(i), instance.place[i], text);
      AddCell("y", instance.answer, text);
      text += "</row>";
    }
    return text + "</InlineTable></TrainingInstances><ComparisonMeasure kind='distance'><" + measure +
           "/></ComparisonMeasure><KNNInputs>" + inputs + "</KNNInputs></NearestNeighborModel></PMML>";
  }

 private:
  static void AddCell(const std::string& column, double number, std::string& text) {
    if (std::isnan(number)) return;
    char digits[32];
    const std::string shown(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
    text.append("<").append(column).append(">").append(shown).append("</").append(column).append(">");
  }

  std::vector<Instance> fInstances;
  std::vector<Point> fCases;
};

// What one would write for this model: a row after the other, the nearest ones in a heap.
template <bool kIsEuclidean, bool kHasMissing>
class HandWritten {
 public:
  explicit HandWritten(const Data& data) : fInstances(data.GetInstances()) { fBest.reserve(kNeighbors + 1); }

  double Score(const Point& one) {
    fBest.clear();
    for (std::size_t row = 0; row < fInstances.size(); ++row) {
      const double distance = DistanceOf(one, fInstances[row].place);
      if (fBest.size() == kNeighbors && !(distance < fBest.front().first)) continue;
      fBest.emplace_back(distance, row);
      std::push_heap(fBest.begin(), fBest.end());
      if (fBest.size() <= kNeighbors) continue;
      std::pop_heap(fBest.begin(), fBest.end());
      fBest.pop_back();
    }
    std::sort_heap(fBest.begin(), fBest.end());
    double sum = 0;
    for (const auto& [distance, row] : fBest) sum += fInstances[row].answer;
    return sum / static_cast<double>(fBest.size());
  }

 private:
  static double DistanceOf(const Point& one, const Point& other) {
    double sum = 0;
    int present = 0;
    for (std::size_t i = 0; i < kFields; ++i) {
      const double difference = one[i] - other[i];
      if (kHasMissing && std::isnan(difference)) continue;
      sum += kIsEuclidean ? difference * difference : std::abs(difference);
      ++present;
    }
    return kHasMissing ? sum * (static_cast<double>(kFields) / present) : sum;
  }

  const std::vector<Instance>& fInstances;
  std::vector<std::pair<double, std::size_t>> fBest;
};

template <bool kIsEuclidean, bool kHasMissing>
void Measure(benchmark::State& state, Kind& kind) {
  const Data data(kind.share);
  HandWritten<kIsEuclidean, kHasMissing> floor(data);
  NumberScoring scoring(data.Document(kind.measure), kModelName, Data::FieldNames());
  for (const Point& one : data.GetCases())
    Require(std::abs(scoring.Score(one) - floor.Score(one)) < 1e-12, "prediction");
  const AllocationCounter counter;
  SumOf(scoring, data.GetCases());
  kind.allocations = static_cast<double>(counter.Count()) / static_cast<double>(kCases);
  kind.ratio = Compare(
      state, [&] { benchmark::DoNotOptimize(SumOf(floor, data.GetCases())); },
      [&] { benchmark::DoNotOptimize(SumOf(scoring, data.GetCases())); });
}

void Register(const char* name, void (*measure)(benchmark::State&, Kind&), Kind& kind) {
  benchmark::RegisterBenchmark(name, [&kind, measure](benchmark::State& state) { measure(state, kind); })
      ->UseManualTime()
      ->MinTime(2)
      ->Unit(benchmark::kMillisecond);
}

void MeasureLoad(benchmark::State& state, Load& load) {
  const Data data(0, static_cast<std::size_t>(load.size));
  HandWritten<true, false> floor(data);
  const std::string document = data.Document("euclidean");
  NumberScoring scoring(document, kModelName, Data::FieldNames());
  for (const Point& one : data.GetCases())
    Require(std::abs(scoring.Score(one) - floor.Score(one)) < 1e-12, "prediction");
  MeasureLoading(state, document, kModelName, load);
}

void Print(const char* name, const Kind& kind) {
  std::printf("knn, %s: heap allocations per case = %g (limit 0)\n", name, kind.allocations);
  PrintRatio(std::string("knn, ") + name + ": scoring / hand-written scan", kind.ratio, kLimit);
}

}  // namespace

int main(int argc, char** argv) try {
  ModelFactory::Initialize("");
  benchmark::Initialize(&argc, argv);
  Kind euclidean{"euclidean", 0};
  Kind cityBlock{"cityBlock", 0};
  Kind missing{"euclidean", 0.05};
  Register("200 cases, euclidean", Measure<true, false>, euclidean);
  Register("200 cases, cityBlock", Measure<false, false>, cityBlock);
  Register("200 cases, euclidean, a twentieth missing", Measure<true, true>, missing);
  std::vector<Load> loads = {{"1,000 instances", 1000, 20}, {"10,000 instances", 10000, 5}};
  RegisterLoading(loads, MeasureLoad);
  benchmark::RunSpecifiedBenchmarks();
  Print("euclidean", euclidean);
  Print("cityBlock", cityBlock);
  Print("euclidean, a twentieth missing", missing);
  PrintLoading("knn: load", loads, kOwnLimit, kGrowthLimit);
  ModelFactory::Terminate();
} catch (const KxVeyra_940::VYException& e) {
  std::fprintf(stderr, "%s\n", e.GetErrorMessage().c_str());
  return EXIT_FAILURE;
}
