#include "data/Range.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "data/CountedValue.h"
#include "data/DateTimeValue.h"
#include "data/MissingValueSet.h"
#include "data/Shown.h"
#include "data/StringValue.h"

namespace KxVeyra_940 {
namespace {

constexpr double kInfinity = NumericValue::gInfinity;
constexpr double kSysmis = NumericValue::gSysmisValue;

TEST(Range, Membership) {
  const Range open(0.0, 10.0, false, false);
  const Range closed(0.0, 10.0, true, true);
  const Range below(-kInfinity, 5.0, false, true);
  const Range fromMissing(new NumericValue, nullptr, true, true);
  const Range nine(new NumericValue(9.0));
  const Range text(new StringValue("N/A"));
  const Range texts(new StringValue("1"), new StringValue("9"), true, true);
  const Range days(new DateTimeValue(5.0, DateTimeValue::kDateTimeVal));
  const NumericValue minus1(-1.0), zero(0.0), small(1e-20), ten(10.0), nearTen(10 - 1e-13), missing;
  const NumericValue nearNine(9 + 1e-15), far(-1e300), five(5.0), above5(5.0000001), infinity(kInfinity);
  const StringValue na("N/A  "), naLater(" N/A"), textFive("5");
  const DateTimeValue fiveDays(5.0 * 86400, DateTimeValue::kDateVal), five5(5.0, DateTimeValue::kDateTimeVal);
  const struct {
    const char* what;
    const Range& range;
    const ScoreValue* value;
    bool want;
  } kRows[] = {
      {"an open low end", open, &zero, false},
      {"an open high end", open, &ten, false},
      {"just inside", open, &small, true},
      {"just inside above", open, &nearTen, true},
      {"a closed low end", closed, &zero, true},
      {"a closed high end", closed, &ten, true},
      {"outside", closed, &minus1, false},
      {"null", closed, nullptr, false},
      {"missing is in no interval", below, &missing, false},
      {"a long way down", below, &far, true},
      {"the closed bound", below, &five, true},
      {"just above it", below, &above5, false},
      {"a missing minimum is open", fromMissing, &far, true},
      {"infinity reaches no end, not even a closed one", fromMissing, &infinity, false},
      {"a single value has a tolerance", nine, &nearNine, true},
      {"a single value", nine, &ten, false},
      {"a single text", text, &na, true},
      {"leading blanks count", text, &naLater, false},
      {"a text is in no interval", closed, &textFive, false},
      {"nor between texts", texts, &textFive, false},
      {"a date counts in days", closed, &fiveDays, true},
      {"a single date-time", days, &five5, true},
      {"of the same kind", days, &five, false},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(row.range.IsInRange(row.value), row.want);
  }
  EXPECT_TRUE(Range(kSysmis, kSysmis, true, true).IsInRange(kSysmis));
  EXPECT_FALSE(Range(kSysmis, 5.0, true, true).IsInRange(kSysmis));
}

TEST(Range, EqualityComparesBoundsAndEnds) {
  const Range range(-kInfinity, 5.0, false, true);
  EXPECT_TRUE(range == static_cast<const ScoreValueRange&>(Range(-kInfinity, 5.0 + 1e-15, false, true)));
  EXPECT_TRUE(range == static_cast<const ScoreValueRange&>(Range(kSysmis, 5.0, false, true)));
  const Range kOthers[] = {Range(-kInfinity, 5.1, false, true), Range(-kInfinity, 5.0, true, true),
                           Range(-kInfinity, 5.0, false, false), Range(-1.0, 5.0, false, true),
                           Range(nullptr, new StringValue("5"), false, true)};
  for (const ScoreValueRange& other : kOthers) EXPECT_FALSE(range == other);
}

TEST(Range, OwnsItsBounds) {
  const NoneSurvives check;
  auto* const shared = new CountedValue(3);
  Range range(shared, shared, false, false);
  EXPECT_TRUE(range.IsSingleValue());
  EXPECT_NE(range.GetMin(), range.GetMax());
  EXPECT_EQ(CountedValue::gLiving, 2);

  range.SetMin(shared);  // the bound held already
  range.SetMin(nullptr);
  EXPECT_EQ(range.GetMin(), shared);
  range.SetMax(new CountedValue(8));
  EXPECT_EQ(CountedValue::gLiving, 2);
  EXPECT_FALSE(range.IsSingleValue());
  EXPECT_TRUE(range.IsInRange(7.0));
  range.SetMax(range.GetMin());  // one object is never both bounds
  EXPECT_TRUE(range.IsSingleValue());
  range.SetMin(range.GetMax());
  EXPECT_NE(range.GetMin(), range.GetMax());

  Range other(range);
  other = *&other;
  other = range;
  EXPECT_TRUE(other == static_cast<const ScoreValueRange&>(range));
  EXPECT_EQ(CountedValue::gLiving, 4);
  other.SetMin(new NumericValue);
  EXPECT_EQ(other.GetMin()->GetDouble(), -kInfinity);
}

TEST(MissingValueSet, RefusesDuplicatesAndKeepsWhatItTook) {
  MissingValueSet set;
  auto* const first = new Range(-kInfinity, 0.0, true, false);
  Range same(-kInfinity, 0.0, true, false);
  Range other(1.0, 2.0, true, true);
  EXPECT_TRUE(set.Add(first));
  EXPECT_FALSE(set.Add(first));
  EXPECT_FALSE(set.Add(&same));
  EXPECT_FALSE(set.Add(nullptr));
  EXPECT_EQ(set.Size(), 1);
  EXPECT_TRUE(set.Contains(&same));
  EXPECT_FALSE(set.Contains(&other));
  EXPECT_FALSE(set.Contains(nullptr));

  auto* const nan = new Range(new NumericValue(std::nan("")));
  EXPECT_TRUE(set.Add(nan));
  EXPECT_FALSE(set.Add(nan));

  const MissingValueSet copy(set);
  EXPECT_NE(copy.GetMissingValues()[0], first);
  const NumericValue inside(-3.0), outside(3.0);
  EXPECT_TRUE(copy.Covers(&inside));
  EXPECT_FALSE(copy.Covers(&outside));
  EXPECT_FALSE(set.Remove(&other));
  EXPECT_FALSE(set.Remove(nullptr));
  EXPECT_TRUE(set.Remove(&same));
  EXPECT_EQ(set.Size(), 1);
  EXPECT_EQ(copy.Size(), 2);
}

// A host's range, of which no set is told when it changes.
class HostRange : public Range {
 public:
  using Range::Range;
  ScoreValueRange* Clone() const override { return new HostRange(*this); }
};

TEST(MissingValueSet, CoversWhatAScanOfAllRangesWould) {
  MissingValueSet set;
  for (int i = 0; i < 50; ++i) {
    set.Add(new Range(new NumericValue(i)));
    set.Add(new Range(new StringValue(std::to_string(i))));
  }
  set.Add(new Range(100.0, 200.0, true, false));
  const Range seven(7.0, 7.0, true, true);
  ASSERT_TRUE(set.Remove(&seven));
  const auto expectScans = [](const MissingValueSet& tested) {
    const auto expectScan = [&tested](const ScoreValue& value) {
      bool scanned = false;
      for (const ScoreValueRange* range : tested.GetMissingValues()) scanned |= range->IsInRange(&value);
      EXPECT_EQ(tested.Covers(&value), scanned) << value.GetString();
      const Range single(value.Clone());
      scanned = false;
      for (const ScoreValueRange* range : tested.GetMissingValues()) scanned |= *range == single;
      EXPECT_EQ(tested.Contains(&single), scanned) << value.GetString();
    };
    for (int i = -5; i < 250; ++i) {
      expectScan(NumericValue(i));
      expectScan(NumericValue(i * (1 + 1e-14)));
      expectScan(NumericValue(i * (1 - 1e-13)));
      expectScan(StringValue(std::to_string(i) + "  "));
    }
  };
  expectScans(set);
  expectScans(MissingValueSet(set));
  // Edited through what the set lends, and looked up before and after ranges come and go.
  ScoreValueRange* const nine = set.GetMissingValues()[18];
  nine->SetMin(new NumericValue(211.0));
  expectScans(set);
  expectScans(MissingValueSet(set));
  nine->SetMax(new NumericValue(211.0));
  static_cast<Range&>(*set.GetMissingValues()[0]) = Range(201.0, 209.0, true, true);
  expectScans(set);
  ASSERT_TRUE(set.Add(new Range(new NumericValue(220.0))));
  expectScans(set);
  ASSERT_TRUE(set.Add(new HostRange(new NumericValue(230.0))));
  set.GetMissingValues().back()->SetMax(new NumericValue(240.0));
  expectScans(set);
  MissingValueSet assigned;
  assigned = set;
  expectScans(assigned);
}

// Ends crowded together, so that the tolerance of equality, ends in the wrong order and ends that no number
// equals all matter.
double RandomEnd(std::mt19937& random) {
  const double bases[] = {0.0,
                          1.0,
                          1.0,
                          -1.0,
                          2.0,
                          1e-320,
                          5e-324,
                          1e300,
                          -kInfinity,
                          kInfinity,
                          std::nan(""),
                          NumericValue::gSysmisValue,
                          std::numeric_limits<double>::max()};
  const double base = bases[random() % std::size(bases)];
  return random() % 2 == 0 ? base : base * (1 + (static_cast<double>(random() % 801) - 400) * 1e-16);
}

ScoreValue* RandomBound(std::mt19937& random) {
  if (random() % 10 == 0) return new StringValue(random() % 2 == 0 ? "a" : "b");
  if (random() % 10 == 0) return new DateTimeValue(RandomEnd(random), DateTimeValue::kDateVal);
  return new NumericValue(RandomEnd(random));
}

std::unique_ptr<Range> RandomRange(std::mt19937& random) {
  const bool low = random() % 2 == 0, high = random() % 2 == 0;
  switch (random() % 3) {
    case 0:
      return std::make_unique<Range>(RandomBound(random));
    case 1:
      return std::make_unique<Range>(RandomEnd(random), RandomEnd(random), low, high);
    default:
      return std::make_unique<Range>(RandomBound(random), RandomBound(random), low, high);
  }
}

TEST(MissingValueSet, RangesComeAndGo) {
  constexpr unsigned kSeed = 97;
  std::mt19937 random(kSeed);
  for (int round = 0; round < 60; ++round) {
    MissingValueSet set;
    std::vector<const ScoreValueRange*> expected;  // held, in order
    const auto isHeld = [&](const ScoreValueRange& range) {
      return std::ranges::find_if(expected, [&](const ScoreValueRange* held) { return *held == range; });
    };
    for (int step = 0; step < 200; ++step) {
      SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", round " << round << ", step " << step);
      std::unique_ptr<Range> range = RandomRange(random);
      const auto equal = isHeld(*range);
      ASSERT_EQ(set.Contains(range.get()), equal != expected.end());
      if (!expected.empty() && random() % 3 == 0) {
        const auto gone = random() % 4 == 0
                              ? expected.begin()
                              : expected.begin() + static_cast<long>(random() % expected.size());
        ASSERT_TRUE(set.Remove(*gone));
        expected.erase(gone);
      } else if (set.Add(range.get())) {
        ASSERT_EQ(equal, expected.end());
        expected.push_back(range.release());
      } else {
        ASSERT_NE(equal, expected.end());
      }
      const auto held = set.GetMissingValues();
      ASSERT_TRUE(std::ranges::equal(held, expected));
      for (int probe = 0; probe < 10; ++probe) {
        const std::unique_ptr<ScoreValue> value(RandomBound(random));
        ASSERT_EQ(set.Covers(value.get()),
                  std::ranges::any_of(expected, [&](auto* one) { return one->IsInRange(value.get()); }))
            << value->GetString();
      }
    }
    const MissingValueSet copy(set);
    ASSERT_EQ(copy.Size(), static_cast<int>(expected.size()));
    for (const ScoreValueRange* range : expected)
      EXPECT_EQ(copy.Contains(range), isHeld(*range) != expected.end());
  }
}

TEST(MissingValueSet, Displays) {
  MissingValueSet set;
  set.Add(new Range(new NumericValue(-kInfinity), new StringValue("z"), false, true));
  EXPECT_EQ(
      Shown(set),
      " Begin MissingValueSet Display:\n  Start Range Display   \nMinValue: -inf;  MaxValue: z; "
      "High End included; lower End not included\n End of Range Display\n\nEnd MissingValueSet Display.\n");
}

}  // namespace
}  // namespace KxVeyra_940
