// Equality of texts without their trailing blanks, compared with equality of views that were trimmed by hand.

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "AllocationCounter.h"
#include "Comparison.h"
#include "data/StringValue.h"

namespace {

using namespace VeyraBench;
using KxVeyra_940::ScoreValue;
using KxVeyra_940::StringValue;

constexpr int kPairs = 10000;

struct Pair {
  std::string left;
  std::string right;
};

struct ValuePair {
  StringValue left;
  StringValue right;
};

// Texts of 1 to 24 characters; half of the pairs are equal, a third of the texts end in up to 8 blanks.
std::vector<Pair> MakePairs() {
  std::mt19937 random(3);
  const auto whole = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
  const auto blanks = [&] {
    return std::string(static_cast<std::size_t>(whole(0, 2) == 0 ? whole(1, 8) : 0), ' ');
  };
  std::vector<Pair> pairs(kPairs);
  for (auto& [left, right] : pairs) {
    for (int length = whole(1, 24); length > 0; --length) left += static_cast<char>(whole('a', 'z'));
    right = left;
    if (whole(0, 1) == 0) right.back() = right.back() == 'z' ? 'a' : 'z';
    left += blanks();
    right += blanks();
  }
  return pairs;
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

int CountEqual(const std::vector<Pair>& pairs) {
  int count = 0;
  for (const Pair& pair : pairs) count += Trim(pair.left) == Trim(pair.right);
  return count;
}

bool AreEqual(const ScoreValue& left, const ScoreValue& right) { return left == right; }

int CountEqual(const std::vector<ValuePair>& pairs) {
  int count = 0;
  for (const ValuePair& pair : pairs) count += AreEqual(pair.left, pair.right);
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const std::vector<Pair> pairs = MakePairs();
  std::vector<ValuePair> values;
  const AllocationCounter ofAll;
  for (const Pair& pair : pairs) values.push_back({StringValue(pair.left), StringValue(pair.right)});
  Require(ofAll.Count() > 0, "values allocate, so the counter does not count");
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    Require(AreEqual(values[i].left, values[i].right) == (Trim(pairs[i].left) == Trim(pairs[i].right)),
            "equality");
  }
  const AllocationCounter ofComparisons;
  Require(CountEqual(values) == CountEqual(pairs), "number of equal pairs");
  const long allocations = ofComparisons.Count();

  double ratio = 0;
  benchmark::RegisterBenchmark("compare 10000 pairs",
                               [&](benchmark::State& state) {
                                 ratio = Compare(
                                     state, [&] { benchmark::DoNotOptimize(CountEqual(pairs)); },
                                     [&] { benchmark::DoNotOptimize(CountEqual(values)); });
                                 state.counters["allocations"] = static_cast<double>(allocations);
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMicrosecond);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("text: heap allocations in %d comparisons = %ld (limit 0)\n", kPairs, allocations);
  PrintRatio("text: equality of values / equality of trimmed views", ratio);
}
