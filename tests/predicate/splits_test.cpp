// Splits: which child a value, a number or a code goes to, what they lend, how they show.

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <sstream>
#include <thread>

#include "data/CategoryList.h"
#include "data/DictVar.h"
#include "data/MissingValueSet.h"
#include "data/NumericValue.h"
#include "data/Range.h"
#include "data/Shown.h"
#include "data/StringValue.h"
#include "data/ValueLabelSet.h"
#include "data/ValueLbl.h"
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

// What a split answers and lists, as text.
std::string Answers(const DiscreteSplit& split, int categories) {
  std::ostringstream text;
  for (int i = -1; i <= categories; ++i) {
    const StringValue value("c" + std::to_string(i) + (i % 2 == 0 ? "" : "  "));
    text << split.GetSplitChildIndex(&value) << ' ' << split.GetSplitChildIndex(static_cast<double>(i))
         << ' ';
  }
  std::map<double, int> codes;
  split.ForEachCode([&codes](double code, int child) { codes.emplace(code, child); });
  for (const auto& [code, child] : codes) text << code << ':' << child << ' ';
  for (const ScoreValue* value : split.GetSplitValues()) text << value->GetString() << ' ';
  text << split.GetSplitValuesFirst().size() << ' ' << split.GetSplitValuesForIndex(3).size() << '\n';
  split.Display(text);
  return text.str();
}

// Positions of a shared list answer and list what values and codes that were put one by one do.
TEST(DiscreteSplit, SharesAListOfCategories) {
  constexpr int kCategories = 30;
  DictVar color("color", ScoreDictVar::STRING_VAR);
  ValueLabelSet labels;
  std::vector<double> codes;
  for (int i = 0; i < kCategories; ++i) {
    // Two are the same to the variable and share a code; one has no value and no code.
    const int number = i == 12 ? 11 : i;
    labels.Add(new ValueLbl(i == 20 ? nullptr : new StringValue("c" + std::to_string(number)), "label"));
    codes.push_back(i == 20 ? std::numeric_limits<double>::quiet_NaN() : number);
  }
  const auto byValue =
      std::make_shared<const CategoryList>(labels.GetAllValueLabels(), std::vector<double>());
  const auto byCode = std::make_shared<const CategoryList>(labels.GetAllValueLabels(), codes);
  const struct {
    const char* what;
    int start, end;
    std::vector<int> leftOut;
  } rows[] = {
      {"none", 5, 4, {}},
      {"few", 5, 6, {}},
      {"all", 0, kCategories - 1, {}},
      {"a range with the pair and the hole", 11, 24, {}},
      {"a range that divides the pair", 12, 24, {}},
      {"all but one of the pair and others", 0, kCategories - 1, {0, 12, 29}},
      {"a range with positions left out that lie outside too", 3, 17, {1, 11, 12, 17, 28}},
  };
  for (const auto& row : rows) {
    for (const bool isByCode : {false, true}) {
      SCOPED_TRACE(std::string(row.what) + (isByCode ? ", codes" : ", values"));
      DiscreteSplit want(&color);
      for (int i = row.start; i <= row.end; ++i) {
        if (i == 20 || std::ranges::find(row.leftOut, i) != row.leftOut.end()) continue;
        if (isByCode) {
          want.PutSplit(codes[static_cast<std::size_t>(i)], 3);
        } else {
          want.PutSplit(byValue->ValueAt(i)->Clone(), 3);
        }
      }
      DiscreteSplit split(&color);
      split.PutCategories(isByCode ? byCode : byValue, row.start, row.end, row.leftOut, 3);
      const DiscreteSplit copy(split);
      EXPECT_EQ(Answers(split, kCategories), Answers(want, kCategories));
      DiscreteSplit assigned(&color);
      assigned = split;
      EXPECT_EQ(Answers(copy, kCategories), Answers(want, kCategories));
      // What is put later comes behind them.
      for (DiscreteSplit* more : {&assigned, &want}) {
        more->PutSplit(new StringValue("c-1"), 4);
        more->PutSplit(new StringValue("c13"), 5);
        more->PutSplit(13.0, 6);
        more->PutSplit(-1.0, 7);
      }
      EXPECT_EQ(Answers(assigned, kCategories), Answers(want, kCategories));
    }
  }
}

// The lists are made once, whoever asks first.
TEST(DiscreteSplit, ListsInSeveralThreads) {
  DictVar color("color", ScoreDictVar::STRING_VAR);
  ValueLabelSet labels;
  for (int i = 0; i < 100; ++i) labels.Add(new ValueLbl(new StringValue("c" + std::to_string(i)), "label"));
  DiscreteSplit split(&color);
  split.PutCategories(std::make_shared<const CategoryList>(labels.GetAllValueLabels(), std::vector<double>()),
                      0, 99, {}, 0);
  std::vector<std::vector<ScoreValue*>> lists(4);
  std::vector<std::thread> threads;
  for (auto& list : lists) threads.emplace_back([&] { list = split.GetSplitValues(); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(lists.front().size(), 100U);
  for (const auto& list : lists) EXPECT_EQ(list, lists.front());
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
