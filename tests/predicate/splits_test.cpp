// Splits: which child a value, a number or a code goes to, what they lend, how they show.

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "data/DictVar.h"
#include "data/MissingValueSet.h"
#include "data/NumericValue.h"
#include "data/Range.h"
#include "data/Shown.h"
#include "data/StringValue.h"
#include "predicate/DiscreteSplit.h"
#include "predicate/ScaleSplit.h"

namespace {

using namespace KxVeyra_940;

constexpr double kMissing = NumericValue::gSysmisValue;

// 99 counts as missing.
DictVar Age() {
  DictVar age("age", ScoreDictVar::kNUMERIC_VAR);
  age.SetLabel("Age");
  auto* missing = new MissingValueSet;
  missing->Add(new Range(new NumericValue(99)));
  age.SetMissingValues(missing);
  return age;
}

TEST(ScaleSplit, SendsValuesToTheFirstRangeThatContainsThem) {
  const DictVar age = Age();
  ScaleSplit split(&age);
  split.PutSplit(new Range(0, 10, true, false), 0);
  split.PutSplit(new Range(10, 20, true, true), 1);
  split.PutSplit(new Range(15, 200, true, true), 2);
  split.SetMissvalMap(7);
  const struct {
    double number;
    int byNumber, byValue;
  } rows[] = {{0, 0, 0},        {10, 1, 1}, {20, 1, 1},
              {15, 1, 1},       {25, 2, 2}, {-1, -1, -1},
              {kMissing, 7, 7}, {99, 2, 7}, {std::numeric_limits<double>::quiet_NaN(), -1, -1}};
  const std::unique_ptr<ScoreSplitVar> clone(split.Clone());
  for (const auto& row : rows) {
    SCOPED_TRACE(row.number);
    const NumericValue value(row.number);
    for (const ScoreSplitVar* either : {static_cast<ScoreSplitVar*>(&split), clone.get()}) {
      EXPECT_EQ(either->GetSplitChildIndex(row.number), row.byNumber);
      EXPECT_EQ(either->GetSplitChildIndex(&value), row.byValue);
    }
  }
  EXPECT_EQ(split.GetSplitChildIndex(nullptr), 7);
  EXPECT_EQ(split.GetSplitValueRangeForIndex(1)->GetMin()->GetDouble(), 10);
  EXPECT_EQ(split.GetSplitValueRangeForIndex(5), nullptr);
  EXPECT_EQ(split.GetSplitValueRangeFirst()->GetMin()->GetDouble(), 0);
  EXPECT_NE(static_cast<ScaleSplit&>(*clone).GetSplitValueRangeFirst(), split.GetSplitValueRangeFirst());
  EXPECT_EQ(ScaleSplit(&age).GetSplitValueRangeFirst(), nullptr);
}

TEST(Splits, KnowTheirVariable) {
  DictVar age = Age();
  age.SetMLevel(ScoreDictVar::kOrdinal);
  DiscreteSplit split(&age);
  EXPECT_EQ(split.GetSplitVar(), &age);
  EXPECT_EQ(split.GetSplitName() + "," + split.GetSplitLabel(), "age,Age");
  EXPECT_EQ(split.GetSplitType(), ScoreDictVar::kNUMERIC_VAR);
  EXPECT_EQ(split.GetSplitMLevel(), ScoreDictVar::kOrdinal);
  EXPECT_EQ(split.GetMissvalMap(), -1);
  EXPECT_EQ(split.GetSplitVarType() + ScaleSplit(&age).GetSplitVarType() * 10, 1);
  split.SetSplitVar(nullptr);
  EXPECT_EQ(split.GetSplitName(), "");
}

TEST(DiscreteSplit, ComparesTextsAsTheVariableHasIt) {
  DictVar color("color", ScoreDictVar::STRING_VAR);
  DiscreteSplit few(&color);
  few.PutSplit(new StringValue("A"), 0);
  few.PutSplit(new StringValue("B"), 1);
  few.PutSplit(new StringValue("B"), 2);
  DiscreteSplit many(few);  // found by hash instead
  for (int i = 0; i < 20; ++i) many.PutSplit(new StringValue("C" + std::to_string(i)), 3);
  for (const DiscreteSplit* split : {&few, &many}) {
    const auto childOf = [split](const char* text) {
      const StringValue value(text);
      return split->GetSplitChildIndex(&value);
    };
    color.SetNoSpaceTrim(false);
    EXPECT_EQ(childOf("B"), 1);
    EXPECT_EQ(childOf("B  "), 1);
    EXPECT_EQ(childOf("b"), -1);
    EXPECT_EQ(split->GetSplitChildIndex(nullptr), -1);
    color.SetNoSpaceTrim(true);
    EXPECT_EQ(childOf("B  "), -1);
    const NumericValue number(1);
    EXPECT_EQ(split->GetSplitChildIndex(&number), -1);
  }
  EXPECT_EQ(DiscreteSplit(&color).GetSplitValuesFirst().size(), 0U);
  EXPECT_EQ(few.GetSplitValuesFirst().front()->GetString(), "A");
  EXPECT_EQ(few.GetSplitValuesForIndex(2).size(), 1U);
  EXPECT_EQ(few.GetSplitValues().size(), 3U);
}

TEST(DiscreteSplit, LooksCodesUp) {
  DictVar grade("grade", ScoreDictVar::kNUMERIC_VAR);
  DiscreteSplit split(&grade);
  split.PutSplit(3.0, 0);
  split.PutSplit(3.0, 1);
  split.PutSplit(std::numeric_limits<double>::quiet_NaN(), 1);
  split.SetMissvalMap(5);
  for (const auto level : {ScoreDictVar::kNominal, ScoreDictVar::kOrdinal}) {
    grade.SetMLevel(level);
    EXPECT_EQ(split.GetSplitChildIndex(3.0), 0);
    EXPECT_EQ(split.GetSplitChildIndex(3.0000001), -1);
    EXPECT_EQ(split.GetSplitChildIndex(-1.0), level == ScoreDictVar::kNominal ? 5 : -1);
    EXPECT_EQ(split.GetSplitChildIndex(std::numeric_limits<double>::quiet_NaN()), -1);
  }
  split.PutSplit(-1.0, 4);
  EXPECT_EQ(split.GetSplitChildIndex(-1.0), 4);
  const NumericValue value(3);
  EXPECT_EQ(split.GetSplitChildIndex(&value), -1) << "codes are no values";
}

TEST(Splits, Show) {
  DictVar age = Age();
  ScaleSplit scale(&age);
  scale.PutSplit(new Range(1, 2, true, false), 3);
  EXPECT_EQ(Shown(scale),
            "SplitVarName = age\nMissing Value index: -1\nIndex = 3\n  Start Range Display   \nMinValue: 1;  "
            "MaxValue: 2; High End not included; lower End included\n End of Range Display\n\n\n");
  DiscreteSplit discrete(&age);
  discrete.PutSplit(new NumericValue(7), 0);
  discrete.SetStartAndEndIndex(0, -1);
  EXPECT_EQ(Shown(discrete),
            "SplitVarName = age; Var type: Ordinal\nMissing Value index: -1\nValue = 7; Index = 0\n\n");
  age.SetMLevel(ScoreDictVar::kNominal);
  discrete.SetStartAndEndIndex(0, 1);
  discrete.SetMissvalMap(2);
  EXPECT_EQ(
      Shown(discrete),
      "SplitVarName = age; Var type: Categorical\nMissing Value index: 2\nSplit value index starts from  "
      "0 to 1\nValue = 7; Index = 0\n\n");
  int start = 0;
  int end = 0;
  discrete.GetStartAndEndIndex(start, end);
  EXPECT_EQ(start * 10 + end, 1);
}

}  // namespace
