// Nearest neighbours against a slow, obvious reference: random instances of numbers and categories, some
// cells missing, sizes that fill blocks and that do not, every measure and compare function.

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>

#include "plugins/NeighborDocument.h"

namespace {

using namespace VeyraTest;

constexpr std::uint64_t kSeed = 41;
constexpr std::size_t kNumbers = 3;  // behind them two categories
const char* const kNames[] = {"x", "z", "y", "c", "free"};
const char* const kColors[] = {"a", "b"};
constexpr double kWeights[] = {1, 0.5, 2, 3, 1};
const char* const kFunctions[] = {"absDiff", "gaussSim", "delta", "equal", "delta"};

// A row: nothing for a missing cell; categories are indexes of kColors.
using Cells = std::vector<std::optional<double>>;

struct Measure {
  const char* element;
  double (*join)(double sum, double weight, double comparison);
  double (*finish)(double sum);
};

constexpr Measure kMeasures[] = {
    {"<euclidean/>", [](double s, double w, double c) { return s + w * c * c; },
     [](double s) { return std::sqrt(s); }},
    {"<squaredEuclidean/>", [](double s, double w, double c) { return s + w * c * c; },
     [](double s) { return s; }},
    {"<chebychev/>", [](double s, double w, double c) { return std::max(s, w * c); },
     [](double s) { return s; }},
    {"<cityBlock/>", [](double s, double w, double c) { return s + w * c; }, [](double s) { return s; }},
    {"<minkowski p-parameter='3'/>", [](double s, double w, double c) { return s + w * c * c * c; },
     [](double s) { return std::cbrt(s); }},
};

double Comparison(std::size_t field, double left, double right) {
  const double difference = left - right;
  const std::string function = kFunctions[field];
  if (function == "absDiff") return std::abs(difference);
  if (function == "gaussSim") return std::exp2(-difference * difference / 4);  // of scale 2
  return (function == "equal") == (left == right) ? 1 : 0;
}

// Nothing when no field has a value on both sides.
std::optional<double> Reference(const Measure& measure, const Cells& left, const Cells& right) {
  double sum = 0;
  int present = 0;
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (!left[i] || !right[i]) continue;
    sum = measure.join(sum, kWeights[i], Comparison(i, *left[i], *right[i]));
    ++present;
  }
  if (present == 0) return std::nullopt;
  return measure.finish(sum * static_cast<double>(left.size()) / present);
}

std::string CellText(std::size_t field, double value) {
  return field < kNumbers ? std::to_string(value) : kColors[static_cast<std::size_t>(value)];
}

class Random {
 public:
  explicit Random(std::uint64_t seed) : fEngine(seed) {}

  Cells Row() {
    Cells cells(std::size(kNames));
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (fEngine() % 4 == 0) continue;
      // Sixteenths: their texts hold them whole, and some numbers are equal.
      cells[i] = static_cast<double>(i < kNumbers ? fEngine() % 64 : fEngine() % 2) / (i < kNumbers ? 16 : 1);
    }
    return cells;
  }

 private:
  std::mt19937_64 fEngine;
};

NeighborDocument MakeDocument(const Measure& measure, bool isSimilarity,
                              const std::vector<Cells>& instances) {
  NeighborDocument document;
  document.measure = measure.element;
  document.comparison = isSimilarity ? "kind='similarity'" : "kind='distance'";
  document.attributes = "functionName='clustering' numberOfNeighbors='6'";
  document.inputs = document.schema = document.content = "";
  for (std::size_t i = 0; i < std::size(kNames); ++i) {
    const std::string name = std::string("'") + kNames[i] + "'";
    document.inputs += "<KNNInput field=" + name + " similarityScale='2' compareFunction='" + kFunctions[i] +
                       "' fieldWeight='" + std::to_string(kWeights[i]) + "'/>";
    document.schema += "<MiningField name=" + name + "/>";
  }
  for (const char* rank : {"1", "2", "3", "4", "5", "6"}) {
    document.content +=
        std::string("<OutputField name='id") + rank + "' feature='entityId' rank='" + rank + "'/>";
    document.content +=
        std::string("<OutputField name='d") + rank + "' feature='affinity' rank='" + rank + "'/>";
  }
  document.content = "<Output>" + document.content + "</Output>";
  document.rows = "<InlineTable>";
  for (std::size_t row = 0; row < instances.size(); ++row) {
    document.rows += "<row><id>i" + std::to_string(row) + "</id>";
    for (std::size_t i = 0; i < std::size(kNames); ++i) {
      const std::string name = kNames[i];
      if (instances[row][i])
        document.rows += "<" + name + ">" + CellText(i, *instances[row][i]) + "</" + name + ">";
    }
    document.rows += "</row>";
  }
  document.rows += "</InlineTable>";
  return document;
}

TEST(NeighborReference, EqualsTheScan) {
  for (const Measure& measure : kMeasures) {
    for (const std::size_t size : {6U, 8U, 37U, 64U}) {
      for (const bool isSimilarity : {false, true}) {
        SCOPED_TRACE(std::string(measure.element) + ", " + std::to_string(size) + " instances, seed " +
                     std::to_string(kSeed) + (isSimilarity ? ", similarity" : ""));
        Random random(kSeed + size);
        std::vector<Cells> instances(size);
        for (Cells& row : instances) row = random.Row();
        const std::string document = MakeDocument(measure, isSimilarity, instances).Text();
        ASSERT_EQ(Refusal(document, kNeighborModel), kNeighborModel);
        const std::unique_ptr<ScoreModel> model = MakeModel(document, kNeighborModel);
        CaseRecord record(static_cast<int>(std::size(kNames)));
        for (const char* name : kNames) record.Add(name, nullptr);
        model->PrepareForCases(record);
        const std::unique_ptr<ScoreResult> result(model->NewResult());
        for (int round = 0; round < 40; ++round) {
          const Cells one = random.Row();
          for (std::size_t i = 0; i < one.size(); ++i) {
            const int slot = static_cast<int>(i);
            record.Clear(slot);
            if (!one[i]) continue;
            i < kNumbers ? record.SetValue(slot, *one[i]) : record.SetText(slot, CellText(i, *one[i]));
          }
          model->Score(record, *result);
          std::vector<double> affinities;
          for (const Cells& row : instances) {
            if (const std::optional<double> affinity = Reference(measure, one, row))
              affinities.push_back(*affinity);
          }
          std::ranges::sort(affinities);
          if (isSimilarity) std::ranges::reverse(affinities);
          for (std::size_t rank = 0; rank < 6; ++rank) {
            const int output = static_cast<int>(2 * rank);
            const std::string id = Text(result->GetOutputValue(output));
            if (rank >= affinities.size()) {
              EXPECT_EQ(id, "missing");
              continue;
            }
            const double affinity = result->GetOutputValue(output + 1)->GetDouble();
            EXPECT_NEAR(affinity, affinities[rank], 1e-12);
            const Cells& found = instances[static_cast<std::size_t>(std::stoi(id.substr(1)))];
            EXPECT_NEAR(affinity, Reference(measure, one, found).value_or(-1), 1e-12);
          }
        }
      }
    }
  }
}

}  // namespace
