// The quick search of bins against trying the ranges one after the other.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "data/NumericValue.h"
#include "data/Range.h"
#include "transform/BinFinder.h"

namespace {

using namespace KxVeyra_940;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

class Bins {
 public:
  // Bins between neighbouring cuts; the ends are included by turns.
  explicit Bins(const std::vector<double>& cuts, bool withGaps) {
    for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
      if (withGaps && i % 3 == 2) continue;
      fOwned.push_back(std::make_unique<Range>(cuts[i], cuts[i + 1], i % 2 == 0, i % 4 == 1));
    }
    std::vector<const ScoreValueRange*> ranges;
    for (const auto& range : fOwned) ranges.push_back(range.get());
    fFinder.Build(std::move(ranges));
  }

  std::size_t Quick(double number) const { return fFinder.Find(number); }
  std::size_t OneByOne(double number) const {
    for (std::size_t i = 0; i < fOwned.size(); ++i)
      if (fOwned[i]->IsInRange(number)) return i;
    return BinFinder::kNone;
  }

 private:
  std::vector<std::unique_ptr<Range>> fOwned;
  BinFinder fFinder;
};

TEST(BinFinder, FindsWhatTryingEveryRangeFinds) {
  const std::vector<std::vector<double>> kCuts = {
      {-kInfinity, -1e6, -2, -1e-8, 0, 1e-9, 3, 1e7, 1e300, kInfinity},
      {0, 1},
      {-1e-300, 1e-300, 5},
      {-kInfinity, kInfinity},
      {10, 20, 30, 40, 50, 60, 70},
  };
  std::mt19937 random(5);
  std::uniform_real_distribution<double> exponent(-12, 12);
  for (const std::vector<double>& cuts : kCuts) {
    std::vector<double> numbers = {kInfinity, -kInfinity, NumericValue::gSysmisValue, std::nan(""), 0,
                                   1e308,     -1e308};
    for (const double cut : cuts) {
      for (const double share : {0.0, 1e-15, 2e-14, 3e-14, 1e-13, 1e-11, 1e-9, 0.1})
        for (const double sign : {-1.0, 1.0}) {
          numbers.push_back(cut + sign * share * std::fabs(cut));
          numbers.push_back(cut + sign * share);
        }
    }
    for (int i = 0; i < 2000; ++i)
      numbers.push_back((i % 2 == 0 ? 1 : -1) * std::pow(10.0, exponent(random)));
    for (const bool withGaps : {false, true}) {
      const Bins bins(cuts, withGaps);
      for (const double number : numbers) EXPECT_EQ(bins.Quick(number), bins.OneByOne(number)) << number;
    }
  }
}

}  // namespace
