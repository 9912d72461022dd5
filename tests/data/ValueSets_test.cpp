// Labels and probabilities of categories, the sets that hold them and the index that finds them; statistics.

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

#include "AllocationCounter.h"
#include "data/CountedValue.h"
#include "data/DateTimeValue.h"
#include "data/Shown.h"
#include "data/StringValue.h"
#include "data/ValueLabelSet.h"
#include "data/ValueLbl.h"
#include "data/ValueProbability.h"
#include "data/ValueProbabilitySet.h"
#include "data/VarStats.h"

namespace KxVeyra_940 {
namespace {

TEST(ValueLbl, SettersReplaceOrRefuse) {
  const NoneSurvives check;
  ValueLbl label(new CountedValue(1), "one");
  CountedValue mine(2);
  EXPECT_FALSE(label.SetValueLabel(&mine, ""));
  EXPECT_FALSE(label.SetValueLabel(nullptr, "x"));
  EXPECT_FALSE(label.SetLabel(""));
  EXPECT_EQ(label.GetLabel(), "one");
  EXPECT_TRUE(label.SetValueLabel(label.GetValue(), "uno"));
  EXPECT_TRUE(label.SetValueLabel(new CountedValue(3), "three"));
  EXPECT_EQ(CountedValue::gLiving, 2);
  // The label may be the text of the value that goes.
  ValueLbl text(new StringValue(std::string(100, 'x')), "x");
  EXPECT_TRUE(
      text.SetValueLabel(new StringValue("y"), static_cast<StringValue*>(text.GetValue())->GetText()));
  EXPECT_EQ(text.GetLabel(), std::string(100, 'x'));

  ValueLbl copy(label);
  copy = label;
  copy = *&copy;
  EXPECT_EQ(copy.GetValue()->GetDouble(), 3);
  EXPECT_EQ(CountedValue::gLiving, 3);
  copy.SetLabel("other");
  const ScoreValueLabel& left = label;
  EXPECT_TRUE(left == copy && left <= copy && left >= copy && !(left < copy) && !(left > copy));
}

TEST(ValueProbability, SettersReplaceOrRefuse) {
  ValueProbability entry(new NumericValue(1.0), 7);  // the constructor does not check
  EXPECT_EQ(entry.GetProbability(), 7);
  NumericValue mine(2.0);
  for (const double wrong : {1.5, -0.1, std::nan("")}) {
    EXPECT_FALSE(entry.SetProbability(wrong));
    EXPECT_FALSE(entry.SetValueProbability(&mine, wrong));
  }
  EXPECT_FALSE(entry.SetValueProbability(nullptr, 0.5));
  EXPECT_TRUE(entry.SetProbability(0) && entry.SetProbability(1));
  EXPECT_TRUE(entry.SetValueProbability(new NumericValue(2.0), 0.25));
  const ValueProbability smaller(new NumericValue(1.0), 0.9);
  const ScoreValueProbability& left = smaller;
  EXPECT_TRUE(left < entry && left <= entry && !(left > entry) && !(left >= entry) && !(left == entry));
}

TEST(ValueLabelSet, FirstMatchDecides) {
  ValueLabelSet set;
  auto* const first = new ValueLbl(new StringValue("a "), "first");
  EXPECT_TRUE(set.Add(first));
  EXPECT_FALSE(set.Add(first));
  EXPECT_FALSE(set.Add(nullptr));
  EXPECT_TRUE(set.Add(new ValueLbl(new StringValue("a"), "second")));
  auto* const empty = new ValueLbl(nullptr, "no value");
  EXPECT_TRUE(set.Add(empty));
  EXPECT_FALSE(set.Add(empty));
  EXPECT_TRUE(set.Add(new ValueLbl(new NumericValue(5.0), "five")));

  const StringValue a("a   "), b("b");
  const NumericValue five(5 + 1e-15);
  EXPECT_EQ(set.GetLabelOfValue(&a), "first");
  EXPECT_EQ(set.GetLabelOfValue(&five), "five");
  EXPECT_EQ(set.GetLabelOfValue(&b), "");
  EXPECT_EQ(set.GetLabelOfValue(nullptr), "");
  EXPECT_FALSE(set.Contains(nullptr));

  const ValueLabelSet copy(set);
  const std::uint64_t contentId = set.GetContentId();
  EXPECT_NE(copy.GetContentId(), contentId);
  const ValueLbl like(new StringValue("a"), "label plays no part");
  const ValueLbl unlike(new StringValue("b"), "first");
  EXPECT_FALSE(set.Remove(&unlike));
  EXPECT_FALSE(set.Remove(nullptr));
  EXPECT_FALSE(set.Remove(empty));
  EXPECT_TRUE(set.Remove(&like));
  EXPECT_NE(set.GetContentId(), contentId);
  EXPECT_EQ(set.GetLabelOfValue(&a), "second");
  EXPECT_EQ(set.GetLabelOfValue(&five), "five");
  EXPECT_EQ(set.Size(), 3);
  EXPECT_EQ(copy.GetLabelOfValue(&a), "first");
  EXPECT_TRUE(set.GetAllValueLabels().front()->SetLabel("second") && set.GetContentId() != 0);
  EXPECT_TRUE(set.GetAllValueLabels().front()->SetValueLabel(new StringValue("a"), "second"));
  EXPECT_EQ(set.GetContentId(), 0U);

  EXPECT_EQ(Shown(set),
            "Start ScoreValueLabelSet Display:\nValue: a;  Label: second\nValue: NULL;  Label: no value\n"
            "Value: 5;  Label: five\nEnd of ScoreValueLabelSet Display.\n\n");
}

TEST(ValueProbabilitySet, FirstMatchDecides) {
  ValueProbabilitySet set;
  EXPECT_TRUE(set.Add(new ValueProbability(new NumericValue(1.0), 0.25)));
  EXPECT_TRUE(set.Add(new ValueProbability(new NumericValue(1.0), 0.5)));
  const NumericValue one(1.0), two(2.0);
  EXPECT_EQ(set.GetProbabilityOfValue(&one), 0.25);
  EXPECT_EQ(set.GetProbabilityOfValue(&two), 0);
  EXPECT_EQ(set.GetProbabilityOfValue(nullptr), 0);
  const std::unique_ptr<ScoreValueProbabilitySet> copy(set.Clone());
  EXPECT_TRUE(set.Remove(set.GetAllValueProbabilities()[0]));
  EXPECT_EQ(set.GetProbabilityOfValue(&one), 0.5);
  EXPECT_EQ(copy->Size(), 2);
  // Edited through what the set lends.
  const std::unique_ptr<ScoreValueProbabilitySet> edited(copy->Clone());
  edited->GetAllValueProbabilities()[0]->SetValueProbability(new NumericValue(2.0), 0.75);
  EXPECT_EQ(edited->GetProbabilityOfValue(&two), 0.75);
  EXPECT_EQ(edited->GetProbabilityOfValue(&one), 0.5);
  EXPECT_EQ(Shown(set),
            "Start ScoreValueProbabilitySet Display:\nValue: 1;  Probability: 0.5\n"
            "End of ScoreValueProbabilitySet Display.\n\n");
}

// Values crowded together, so that equality within the tolerance, blanks and bucket borders all matter.
ScoreValue* RandomValue(std::mt19937& random) {
  const double bases[] = {0.0,  -0.0, 1.0, 2.0, std::ldexp(1.0, 40), -3.0, 1e-310, 1.7976931348623157e308,
                          1e300};
  double number = bases[random() % std::size(bases)];
  if (random() % 4 != 0) {
    number *= 1 + (static_cast<double>(random() % 2001) - 1000) * 1e-16;
  }
  if (random() % 50 == 0) number = NumericValue::gInfinity;
  if (random() % 50 == 0) number = std::nan("");
  switch (random() % 4) {
    case 0: {
      const char* const texts[] = {"", " ", "   ", "a", "a ", "a  ", " a", "b", "A"};
      return new StringValue(texts[random() % std::size(texts)]);
    }
    case 1:
      return new DateTimeValue(number, static_cast<DateTimeValue::DateTimeValType>(random() % 3));
    default:
      return new NumericValue(number);
  }
}

// A host's label, whose value no set is told of.
class HostLabel : public ValueLbl {
 public:
  using ValueLbl::ValueLbl;
  ScoreValueLabel* Clone() const override { return new HostLabel(*this); }
};

// Some labels are edited in place, through the objects that the set lends, by each way that there is; now and
// then labels go and come afterwards, and one is of a host's class.
void EditSome(ValueLabelSet& set, std::mt19937& random) {
  if (random() % 8 == 0) set.Add(new HostLabel(RandomValue(random), "host"));
  for (unsigned long n = random() % 4; n > 0 && set.Size() > 0; --n) {
    const auto& labels = set.GetAllValueLabels();
    ScoreValueLabel* const label = labels[random() % labels.size()];
    if (random() % 2 == 0) {
      label->SetValueLabel(RandomValue(random), "edited");
    } else {
      static_cast<ValueLbl&>(*label) = ValueLbl(RandomValue(random), "assigned");
    }
  }
  if (random() % 4 == 0) set.Add(new ValueLbl(RandomValue(random), "later"));
  if (random() % 4 == 0 && set.Size() > 0) set.Remove(set.GetAllValueLabels().front());
}

TEST(ValueLabelSet, FindsWhatAScanFinds) {
  constexpr unsigned kSeed = 4711;
  std::mt19937 random(kSeed);
  for (int round = 0; round < 400; ++round) {
    ValueLabelSet built;
    for (unsigned long n = random() % 120; n > 0; --n) built.Add(new ValueLbl(RandomValue(random), "label"));
    // Some go, among them the first and the last, and some come afterwards.
    for (unsigned long n = round % 4 < 2 ? random() % 100 : 0; n > 0 && built.Size() > 0; --n) {
      const auto& labels = built.GetAllValueLabels();
      const std::size_t place = random() % 4 == 0 ? 0 : random() % labels.size();
      const auto first = built.Find(labels[place]->GetValue());
      std::vector<ScoreValueLabel*> rest = labels;
      if (first >= 0) rest.erase(rest.begin() + first);
      ASSERT_EQ(built.Remove(labels[place]), first >= 0);
      ASSERT_EQ(labels, rest);
      if (random() % 4 == 0) built.Add(new ValueLbl(RandomValue(random), "later"));
    }
    if (round % 2 != 0) EditSome(built, random);
    const ValueLabelSet copy(built);
    ValueLabelSet assigned;
    assigned = built;
    const ValueLabelSet& set = round % 3 == 0 ? copy : round % 3 == 1 ? assigned : built;
    const auto scan = [&](auto matches) {
      const auto& labels = set.GetAllValueLabels();
      for (std::size_t i = 0; i < labels.size(); ++i)
        if (matches(*labels[i]->GetValue())) return static_cast<int>(i);
      return -1;
    };
    for (int probe = 0; probe < 200; ++probe) {
      const std::unique_ptr<ScoreValue> value(RandomValue(random));
      SCOPED_TRACE(testing::Message()
                   << "seed " << kSeed << ", round " << round << ", '" << value->GetString());
      ASSERT_EQ(set.Find(value.get()), scan([&](const ScoreValue& held) { return held == *value; }));
      for (int options = 0; options < 4; ++options)
        ASSERT_EQ(set.FindEqual(value.get(), (options & 1) != 0, (options & 2) != 0),
                  scan([&](const ScoreValue& held) {
                    return held.Equal(value.get(), (options & 1) != 0, (options & 2) != 0);
                  }));
    }
  }
}

TEST(ValueLabelSet, LookingUpAllocatesNothing) {
  ValueLabelSet set;
  for (int i = 0; i < 1000; ++i) {
    set.Add(new ValueLbl(new StringValue("a category with a long name " + std::to_string(i)), "label"));
    set.Add(new ValueLbl(new NumericValue(i), "label"));
  }
  const StringValue text("a category with a long name 999   ");
  const NumericValue number(999);
  const AllocationCounter counter;
  EXPECT_EQ(set.Find(&text), 1998);
  EXPECT_EQ(set.Find(&number), 1999);
  EXPECT_EQ(counter.Count(), 0);
}

TEST(VarStats, DefaultsAndTheReplacement) {
  const NoneSurvives check;
  const VarStats defaults;
  EXPECT_EQ(defaults.GetMin(), NumericValue::gSysmisValue);
  EXPECT_EQ(defaults.GetMax(), 1.7976931348623157e308);
  EXPECT_EQ(defaults.GetMean(), 0);
  EXPECT_EQ(defaults.GetStddev(), 1);
  EXPECT_EQ(defaults.GetMissingReplacement(), nullptr);

  VarStats stats(1, 2, 3, 4);
  const CountedValue mine(9);
  stats.SetMissingReplacement(&mine);
  stats.SetMissingReplacement(stats.GetMissingReplacement());
  EXPECT_EQ(CountedValue::gLiving, 2);
  VarStats copy;
  copy = stats;
  EXPECT_NE(copy.GetMissingReplacement(), stats.GetMissingReplacement());
  EXPECT_EQ(copy.GetMissingReplacement()->GetDouble(), 9);
  EXPECT_TRUE(copy.GetMin() == 1 && copy.GetMax() == 2 && copy.GetMean() == 3 && copy.GetStddev() == 4);
  stats.SetMissingReplacement(nullptr);
  EXPECT_EQ(stats.GetMissingReplacement(), nullptr);
  EXPECT_EQ(CountedValue::gLiving, 2);
}

}  // namespace
}  // namespace KxVeyra_940
