// What an item costs when there are a thousand of its kind, ten thousand and a hundred thousand.
//
// An operation whose cost an item grows with the number of items shows as a ratio far beyond the limit; what
// is left below it is memory that no longer fits into the caches.

#include <cmath>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>

#include "Comparison.h"
#include "GrowthDocuments.h"
#include "TreeDocument.h"
#include "data/CaseRecord.h"
#include "data/MissingValueSet.h"
#include "data/NumericValue.h"
#include "data/Range.h"
#include "data/StringValue.h"
#include "data/ValueLabelSet.h"
#include "data/ValueLbl.h"
#include "data/ValueProbability.h"
#include "data/ValueProbabilitySet.h"
#include "transform/TransformationDictionary.h"
#include "veyra/ModelFactory.h"
#include "veyra/VYException.h"

namespace {

using namespace VeyraBench;
using namespace KxVeyra_940;

constexpr int kSizes[] = {1000, 10000, 100000};
constexpr double kMemoryLimit = 3;
constexpr double kDocumentLimit = 1.5;

enum class Order { kFirstFirst, kLastFirst, kRandom };

std::vector<int> Places(int n, Order order) {
  std::vector<int> places;
  for (int i = 0; i < n; ++i) places.push_back(order == Order::kLastFirst ? n - 1 - i : i);
  if (order == Order::kRandom) std::shuffle(places.begin(), places.end(), std::mt19937(5));
  return places;
}

// --- In memory: seconds for n items ------------------------------------------------------------------------

std::vector<std::string> Names(int n) {
  std::vector<std::string> names;
  for (int i = 0; i < n; ++i) names.push_back("column " + std::to_string(i));
  return names;
}

void FillAll(CaseRecord& record, const std::vector<std::string>& names) {
  for (const std::string& name : names) record.Add(name, new NumericValue(1));
}

double FillRecord(int n) {
  const std::vector<std::string> names = Names(n);
  CaseRecord record(n);
  return SecondsOf([&] { FillAll(record, names); });
}

double ReplaceInRecord(int n) {
  const std::vector<std::string> names = Names(n);
  CaseRecord record(n);
  FillAll(record, names);
  return SecondsOf([&] { FillAll(record, names); });
}

using Derivation = std::unique_ptr<TransformationDictionary>;

Derivation MakeDerivation(const std::string& text) {
  std::istringstream in(text);
  ScoreDictionary* dictionary = nullptr;
  Derivation derivation(ModelFactory::GetTransformationDictionaryFromXML(in, dictionary, ""));
  const std::unique_ptr<ScoreDictionary> owner(dictionary);
  Require(derivation != nullptr, "derived fields");
  return derivation;
}

// The loaded dictionary is set up already; one of clones of its fields is not.
double SetUpDerived(int n) {
  const Derivation loaded = MakeDerivation(DocumentOfDerivedFields(n));
  TransformationDictionary derivation;
  derivation.AddVar(loaded.get());
  for (const std::string& name : loaded->GetDerivedVarNames()) derivation.AddDerievedVarName(name);
  const double seconds = SecondsOf([&] { derivation.SetUpDerivedCaseRecord(); });
  Require(derivation.GetValuesForDerivedVars(nullptr, nullptr)->Size() == n, "derived values");
  return seconds;
}

// Removes all of n parts, which `make(i)` makes, by the value of each.
template <class Set, class Make>
double RemoveParts(int n, Order order, Make make) {
  Set set;
  std::vector<decltype(make(0))> parts;
  for (int i = 0; i < n; ++i) {
    parts.push_back(make(i));
    set.Add(parts.back());
  }
  const std::vector<int> places = Places(n, order);
  const double seconds = SecondsOf([&] {
    for (const int i : places) set.Remove(parts[static_cast<std::size_t>(i)]);
  });
  Require(set.Size() == 0, "removal");
  return seconds;
}

template <Order order>
double RemoveLabels(int n) {
  return RemoveParts<ValueLabelSet>(n, order, [](int i) {
    return new ValueLbl(new StringValue("category " + std::to_string(i)), "label");
  });
}

template <Order order>
double RemoveProbabilities(int n) {
  return RemoveParts<ValueProbabilitySet>(
      n, order, [](int i) { return new ValueProbability(new NumericValue(i), 0.5); });
}

// Intervals of one minimum: a number is in those that end behind it.
Range* FromZero(int i) { return new Range(0, 1 + i, true, false); }
Range* Apart(int i) { return new Range(i, i + 0.5, true, true); }
Range* Single(int i) { return new Range(new NumericValue(i)); }

template <Order order, Range* make(int)>
double RemoveMissing(int n) {
  return RemoveParts<MissingValueSet>(n, order, make);
}

template <Range* make(int)>
void AddMissing(int n, MissingValueSet& set) {
  for (const int i : Places(n, Order::kRandom)) set.Add(make(i));
}

template <Range* make(int)>
double AddMissing(int n) {
  MissingValueSet set;
  const double seconds = SecondsOf([&] { AddMissing<make>(n, set); });
  Require(set.Size() == n, "missing ranges");
  return seconds;
}

// n questions, half of them for numbers that are covered.
template <Range* make(int)>
double AskMissing(int n) {
  MissingValueSet set;
  AddMissing<make>(n, set);
  int covered = 0;
  NumericValue value(0);
  const std::vector<int> places = Places(n, Order::kRandom);
  const double seconds = SecondsOf([&] {
    for (const int i : places) {
      value.SetDoubleValue(i % 2 == 0 ? i + 0.25 : -1 - i);
      covered += set.Covers(&value) ? 1 : 0;
    }
  });
  Require(covered == (n + 1) / 2, "missing numbers");
  return seconds;
}

// --- Documents: seconds to load and to release one of n items ----------------------------------------------

template <std::string write(int)>
double Derive(int n) {
  const std::string text = write(n);
  return SecondsOf([&] { MakeDerivation(text); });
}

double LoadModel(const std::string& text, const std::string& modelName) {
  std::istringstream in(text);
  return SecondsOf([&] {
    const std::unique_ptr<ScoreModel> model(ModelFactory::MakeModelFromXML(in, modelName));
    Require(model != nullptr, "model");
  });
}

template <std::string write(int)>
double LoadRegression(int n) {
  return LoadModel(write(n), "RegressionModel");
}

template <std::string write(int)>
double LoadTree(int n) {
  return LoadModel(write(n), "TreeModel");
}

std::string DocumentOfNodes(int n) { return TreeDocument((n + 1) / 2, true).Text(); }

struct Growth {
  const char* name;
  double (*secondsOf)(int n);
  double limit;                                // 0: none
  int items;                                   // measured at least at a time
  double nanoseconds[std::size(kSizes)] = {};  // an item
};

constexpr int kMany = 100000;
constexpr int kFew = 20000;

Growth growths[] = {
    {"record: a column filled", FillRecord, kMemoryLimit, kMany},
    {"record: a column replaced", ReplaceInRecord, kMemoryLimit, kMany},
    {"derived fields: a field set up", SetUpDerived, kMemoryLimit, kMany},
    {"labels: one removed, the last first", RemoveLabels<Order::kLastFirst>, kMemoryLimit, kMany},
    {"labels: one removed, at random", RemoveLabels<Order::kRandom>, 0, kMany},
    {"labels: one removed, the first first", RemoveLabels<Order::kFirstFirst>, 0, kMany},
    {"probabilities: one removed, the last first", RemoveProbabilities<Order::kLastFirst>, kMemoryLimit,
     kMany},
    {"probabilities: one removed, the first first", RemoveProbabilities<Order::kFirstFirst>, 0, kMany},
    {"missing values: one removed, the first first", RemoveMissing<Order::kFirstFirst, Single>, kMemoryLimit,
     kMany},
    {"missing intervals: one removed, at random", RemoveMissing<Order::kRandom, Apart>, kMemoryLimit, kMany},
    {"intervals of one minimum: one removed", RemoveMissing<Order::kFirstFirst, FromZero>, kMemoryLimit,
     kMany},
    {"intervals of one minimum: one added", AddMissing<FromZero>, kMemoryLimit, kMany},
    {"intervals of one minimum: a question", AskMissing<FromZero>, kMemoryLimit, kMany},
    {"intervals apart: one added", AddMissing<Apart>, kMemoryLimit, kMany},
    {"intervals apart: a question", AskMissing<Apart>, kMemoryLimit, kMany},
    {"document: a field", LoadRegression<DocumentOfFields>, kDocumentLimit, kFew},
    {"document: a category", LoadRegression<DocumentOfCategories>, kDocumentLimit, kFew},
    {"document: a missing value", LoadRegression<DocumentOfMissingValues>, kDocumentLimit, kFew},
    {"document: a derived field", Derive<DocumentOfDerivedFields>, kDocumentLimit, kFew},
    {"document: a bin", Derive<DocumentOfBins>, kDocumentLimit, kFew},
    {"document: a row of a table", Derive<DocumentOfRows>, kDocumentLimit, kFew},
    {"document: a node of a binary tree", LoadTree<DocumentOfNodes>, kDocumentLimit, kFew},
    {"document: a node beside others", LoadTree<DocumentOfSiblings>, kDocumentLimit, kFew},
    {"document: a predicate of a compound", LoadTree<DocumentOfPredicates>, kDocumentLimit, kFew},
    {"document: a set predicate and a category", LoadTree<DocumentOfSets>, kDocumentLimit, kFew},
    {"document: a category of a set predicate", LoadTree<DocumentOfMembers>, kDocumentLimit, kFew},
};

// All sizes in turn, so that they meet the same machine.
void Measure(benchmark::State& state, Growth& growth) {
  std::vector<double> times[std::size(kSizes)];
  for ([[maybe_unused]] const auto iteration : state) {
    double total = 0;
    for (std::size_t size = 0; size < std::size(kSizes); ++size) {
      const int n = kSizes[size];
      const int rounds = std::max(1, growth.items / n);
      double seconds = 0;
      for (int i = 0; i < rounds; ++i) seconds += growth.secondsOf(n);
      times[size].push_back(1e9 * seconds / rounds / n);
      total += seconds;
    }
    state.SetIterationTime(total);
  }
  for (std::size_t size = 0; size < std::size(kSizes); ++size) {
    growth.nanoseconds[size] = Median(times[size]);
    state.counters["ns at " + std::to_string(kSizes[size])] = growth.nanoseconds[size];
  }
}

void PrintTable() {
  std::printf("%-46s", "ns an item of");
  for (const int size : kSizes) std::printf("%10d", size);
  std::printf("     ratio     limit\n");
  for (const Growth& growth : growths) {
    if (growth.nanoseconds[0] == 0) continue;  // filtered out
    std::printf("%-46s", growth.name);
    for (const double nanoseconds : growth.nanoseconds) std::printf("%10.0f", nanoseconds);
    std::printf("%10.2f", *std::rbegin(growth.nanoseconds) / growth.nanoseconds[0]);
    growth.limit > 0 ? std::printf("%10g\n", growth.limit) : std::printf("         -\n");
  }
}

}  // namespace

int main(int argc, char** argv) try {
  ModelFactory::Initialize("");
  benchmark::Initialize(&argc, argv);
  for (Growth& growth : growths) {
    benchmark::RegisterBenchmark(growth.name, [&growth](benchmark::State& state) { Measure(state, growth); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(3);
  }
  benchmark::RunSpecifiedBenchmarks();
  PrintTable();
  ModelFactory::Terminate();
} catch (const VYException& e) {
  std::fprintf(stderr, "%s\n", e.GetErrorMessage().c_str());
  return EXIT_FAILURE;
}
