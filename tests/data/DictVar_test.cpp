#include "data/DictVar.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#include "AllocationCounter.h"
#include "data/BaseDictionary.h"
#include "data/CountedValue.h"
#include "data/DateTimeValue.h"
#include "data/MissingValueSet.h"
#include "data/Range.h"
#include "data/ResultVar.h"
#include "data/ScoreCatNumericEncoder.h"
#include "data/Shown.h"
#include "data/StringValue.h"
#include "data/ValueLabelSet.h"
#include "data/ValueLbl.h"
#include "data/ValueProbability.h"
#include "data/ValueProbabilitySet.h"
#include "data/VarStats.h"

namespace KxVeyra_940 {
namespace {

using Level = ScoreDictVar::MeasureLevel;
constexpr auto kNumeric = ScoreDictVar::kNUMERIC_VAR;
constexpr auto kString = ScoreDictVar::STRING_VAR;
constexpr auto kDateTime = ScoreDictVar::kDATETIME_VAR;

// A variable whose listed values and single missing values are given as texts of its type.
DictVar MakeVar(ScoreDictVar::VariableType type, Level level, const std::vector<const char*>& listed,
                const std::vector<const char*>& missing) {
  DictVar var("v", type);
  var.SetMLevel(level);
  for (const char* text : listed) var.AddScoreValueLabel(var.ToMyValue(text), text[0] == 0 ? "empty" : text);
  if (missing.empty()) return var;
  auto* const set = new MissingValueSet;
  for (const char* text : missing) set->Add(new Range(var.ToMyValue(text)));
  var.SetMissingValues(set);
  return var;
}

TEST(DictVar, MissingInvalidAndValid) {
  const DictVar nominal = MakeVar(kNumeric, Level::kNominal, {"99", "1"}, {"99", "98"});
  const DictVar scale = MakeVar(kNumeric, Level::kContinuous, {"99", "1"}, {"99"});
  const DictVar plain = MakeVar(kNumeric, Level::kContinuous, {}, {});
  const DictVar text = MakeVar(kString, Level::kNominal, {"NA", "A", "   "}, {"NA"});
  DictVar exactText = text;
  exactText.SetNoSpaceTrim(true);
  DictVar emptyText = text;
  emptyText.SetEmptyStringOK(true);
  const DictVar freeText = MakeVar(kString, Level::kNominal, {}, {});
  DictVar date("d", kDateTime);
  const NumericValue n99(99), n98(98), n97(97), n1(1 + 1e-15), sysmis;
  const StringValue na("NA "), a("A"), blankA("A  "), empty(""), b("B"), one("1");
  const DateTimeValue day(86400.0, DateTimeValue::kDateVal), noDay;
  const struct {
    const char* what;
    const DictVar& var;
    const ScoreValue* value;
    char want;  // m missing, i invalid, v valid
  } kRows[] = {
      {"null is missing", plain, nullptr, 'm'},
      {"system-missing is missing", plain, &sysmis, 'm'},
      {"a missing date is missing", date, &noDay, 'm'},
      {"system-missing for a string variable is a value", freeText, &sysmis, 'v'},
      {"a labelled number escapes the missing range", nominal, &n99, 'v'},
      {"an unlabelled one does not", nominal, &n98, 'm'},
      {"not listed", nominal, &n97, 'i'},
      {"listed, within the tolerance", nominal, &n1, 'v'},
      {"a text for a number", nominal, &one, 'i'},
      {"continuous: labels only label", scale, &n97, 'v'},
      {"continuous with labels takes any kind", scale, &one, 'v'},
      {"without labels a text is no number", plain, &one, 'i'},
      {"without labels a date is", plain, &day, 'v'},
      {"a labelled text does not escape", text, &na, 'm'},
      {"listed text", text, &a, 'v'},
      {"trailing blanks do not count", text, &blankA, 'v'},
      {"unless they do", exactText, &blankA, 'i'},
      {"empty against listed blanks", text, &empty, 'v'},
      {"empty on its own", emptyText, &empty, 'i'},
      {"not listed text", text, &b, 'i'},
      {"a string variable without labels takes all", freeText, &n1, 'v'},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(row.var.IsMissingValue(row.value), row.want == 'm');
    EXPECT_EQ(row.var.IsValidValue(row.value), row.want == 'v');
  }
  const AllocationCounter counter;
  for (const auto& row : kRows) static_cast<void>(row.var.IsValidValue(row.value));
  EXPECT_EQ(counter.Count(), 0);
}

TEST(DictVar, DefaultsAndSettersThatRefuse) {
  DictVar var("v", kNumeric);
  EXPECT_TRUE(var.GetDecimal() == -1 && var.GetValueIndex() == -1 && var.IsUsageTypeEnable());
  EXPECT_FALSE(var.SetName(""));
  EXPECT_FALSE(var.SetFlagVariable(true));
  EXPECT_FALSE(var.IsFlagVariable());
  EXPECT_EQ(var.GetNumberOfCats(), 1);
  var.SetNoSpaceTrim(true);
  var.SetEmptyStringOK(true);
  EXPECT_FALSE(var.GetNoSpaceTrim() || var.GetEmptyStringOK());

  var.SetVarType(kString);
  var.SetMLevel(Level::kOrdinal);
  var.SetNoSpaceTrim(true);
  EXPECT_TRUE(var.GetNoSpaceTrim() && var.SetFlagVariable(true) && var.IsFlagVariable());
  EXPECT_EQ(var.GetNumberOfCats(), 0);
  const std::unique_ptr<ScoreValue> text(var.ToMyValue("5"));
  EXPECT_EQ(text->GetType(), ScoreValue::kStringValueType);
  EXPECT_EQ(DictVar("d", kDateTime).ToMyValue("2020-01-01"), nullptr);
  const ScoreDictVar& other = DictVar("v", kDateTime);
  EXPECT_TRUE(var == other);
}

TEST(DictVar, AddsEachCategoryOnce) {
  const NoneSurvives check;
  DictVar var("v", kNumeric);
  CountedValue mine(1);
  EXPECT_FALSE(var.AddScoreValueLabel(&mine, ""));
  EXPECT_FALSE(var.AddScoreValueLabel(nullptr, "x"));
  EXPECT_EQ(var.GetValueLabels(), nullptr);
  auto* const first = new CountedValue(1);
  EXPECT_TRUE(var.AddScoreValueLabel(first, "one"));
  EXPECT_FALSE(var.AddScoreValueLabel(new CountedValue(1 + 1e-15), "again"));
  EXPECT_FALSE(var.AddScoreValueLabel(first, "the object held already"));
  EXPECT_EQ(CountedValue::gLiving, 2);
  EXPECT_EQ(var.GetLabelOfValue(&mine), "one");
}

TEST(DictVar, ManyCategoriesAreAddedInReasonableTime) {
  DictVar var("v", kString);
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 100000; ++i) var.AddScoreValueLabel(new StringValue(std::to_string(i)), "x");
  EXPECT_EQ(var.GetValueLabels()->Size(), 100000);
  // A scan per category would take minutes.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

// A variable with every part, all of them counted or holding a counted value.
DictVar MakeFullVar() {
  DictVar var("full", kNumeric);
  auto* const missing = new MissingValueSet;
  missing->Add(new Range(new CountedValue(-1)));
  var.SetMissingValues(missing);
  var.AddScoreValueLabel(new CountedValue(1), "one");
  auto* const stats = new VarStats;
  const CountedValue replacement(2);
  stats->SetMissingReplacement(&replacement);
  var.SetVarStats(stats);
  var.SetDefValue(new CountedValue(3));
  auto* const probabilities = new ValueProbabilitySet;
  probabilities->Add(new ValueProbability(new CountedValue(1), 0.5));
  var.SetValueProbabilities(probabilities);
  var.SetEncoder(new ScoreCatNumericEncoder(std::vector<double>{1}));
  var.SetXMeasure("kg");
  var.SetFalgTypeTrueValue("yes");
  return var;
}

TEST(DictVar, CopiesOwnTheirParts) {
  const NoneSurvives check;
  const DictVar var = MakeFullVar();
  const int living = CountedValue::gLiving;
  const std::unique_ptr<ScoreDictVar> clone(var.Clone());
  DictVar assigned = MakeFullVar();
  assigned = var;
  assigned = *&assigned;
  EXPECT_EQ(CountedValue::gLiving, 3 * living);
  for (ScoreDictVar* copy : {clone.get(), static_cast<ScoreDictVar*>(&assigned)}) {
    EXPECT_NE(copy->GetMissingValues(), var.GetMissingValues());
    EXPECT_NE(copy->GetEncoder(), var.GetEncoder());
    EXPECT_EQ(copy->GetVarStats()->GetMissingReplacement()->GetDouble(), 2);
    EXPECT_EQ(copy->GetDefValue()->GetDouble(), 3);
    EXPECT_EQ(copy->GetValueProbabilities()->Size(), 1);
    EXPECT_EQ(copy->GetXMeasure() + copy->GetFalgTypeTrueValue(), "kgyes");
  }
}

TEST(DictVar, SettersOfPartsNeverDelete) {
  const NoneSurvives check;
  DictVar var = MakeFullVar();
  const int living = CountedValue::gLiving;
  // Handed what it holds, it keeps it.
  var.SetDefValue(var.GetDefValue());
  // What is replaced is left to whoever knows it.
  const std::unique_ptr<ScoreValue> oldDefault(var.GetDefValue());
  const std::unique_ptr<ScoreMissingValueSet> oldMissing(var.GetMissingValues());
  const std::unique_ptr<ScoreValueLabelSet> oldLabels(var.GetValueLabels());
  const std::unique_ptr<ScoreVarStats> oldStats(var.GetVarStats());
  const std::unique_ptr<ScoreEncoder> oldEncoder(var.GetEncoder());
  const std::unique_ptr<ScoreValueProbabilitySet> oldProbabilities(var.GetValueProbabilities());
  var.SetDefValue(nullptr);
  var.SetMissingValues(new MissingValueSet);
  var.SetValueLabels(nullptr);
  var.SetVarStats(nullptr);
  var.SetEncoder(nullptr);
  var.SetValueProbabilities(nullptr);
  EXPECT_EQ(CountedValue::gLiving, living);
}

TEST(DictVar, Displays) {
  DictVar var = MakeVar(kString, Level::kNominal, {"A"}, {"NA"});
  var.SetLabel("a label");
  var.SetXMeasure("kg");
  EXPECT_EQ(
      Shown(var),
      "Start ScoreDictVar Display:\nVar Name = v; Var Lable = a label; Var Type = STRING_VAR; "
      "Var level =  Nominal; \nStart ScoreValueLabelSet Display:\nValue: A;  Label: A\n"
      "End of ScoreValueLabelSet Display.\n\n Begin MissingValueSet Display:\n  Start Range Display   \n"
      "MinValue: NA;  MaxValue: NA; High End included; lower End included\n End of Range Display\n\n"
      "End MissingValueSet Display.\nx-Measure: kg\nEnd of ScoreDictVar Display.\n\n");
  DictVar date("d", kDateTime);
  date.SetMLevel(static_cast<Level>(7));
  BaseDictionary dictionary;
  dictionary.AddVar("d", date.Clone());
  EXPECT_EQ(Shown(dictionary),
            "\n ############ Begin dictionary display ################ \nStart ScoreDictVar Display:\n"
            "Var Name = d; Var Lable = ; Var level = unknown;\nEnd of ScoreDictVar Display.\n\n"
            "End Of ScoreDictionary display.\n\n");
}

TEST(ResultVar, CopiesItsFeature) {
  ResultVar var("r", kNumeric);
  EXPECT_EQ(var.GetFeature(), ScoreResultField::kNoFeature);
  var.SetFeature(ScoreResultField::kResidual);
  const std::unique_ptr<ScoreDictVar> clone(var.Clone());
  EXPECT_EQ(dynamic_cast<const ResultVar&>(*clone).GetFeature(), ScoreResultField::kResidual);
}

TEST(BaseDictionary, KeepsTwoOrders) {
  BaseDictionary dictionary;
  auto* const b = new DictVar("b", kNumeric);
  EXPECT_TRUE(dictionary.AddVar("b", b));
  EXPECT_TRUE(dictionary.AddVar("a", new DictVar("a", kNumeric)));
  EXPECT_TRUE(dictionary.AddVar("B", new DictVar("B", kNumeric)));

  DictVar mine("a", kString);
  EXPECT_FALSE(dictionary.AddVar("", &mine));
  EXPECT_FALSE(dictionary.AddVar("a", &mine));
  EXPECT_FALSE(dictionary.AddVar("c", nullptr));
  EXPECT_FALSE(dictionary.AddVar("c", b));
  EXPECT_EQ(dictionary.Size(), 3);

  const auto vars = dictionary.GetScoreDictVars();
  EXPECT_TRUE(vars[0]->GetName() == "B" && vars[1]->GetName() == "a" && vars[2] == b);
  using Names = std::vector<std::string>;
  EXPECT_EQ(dictionary.GetVarNames(), (Names{"b", "a", "B"}));

  const std::unique_ptr<ScoreDictionary> clone(dictionary.Clone());
  EXPECT_FALSE(dictionary.RemoveVar("") || dictionary.RemoveVar("zz"));
  EXPECT_TRUE(dictionary.RemoveVar(b->GetName()));  // the name goes with the variable
  EXPECT_EQ(dictionary.GetVarNames(), (Names{"a", "B"}));
  EXPECT_EQ(dictionary.GetVar("b"), nullptr);
  EXPECT_EQ(clone->GetVarNames(), (Names{"b", "a", "B"}));

  EXPECT_FALSE(dictionary.AddVar(clone.get()));
  EXPECT_FALSE(dictionary.AddVar(nullptr));
  EXPECT_FALSE(dictionary.AddVar(&dictionary));
  EXPECT_EQ(dictionary.GetVarNames(), (Names{"a", "B", "b"}));
  EXPECT_NE(dictionary.GetVar("b"), clone->GetVar("b"));

  // A new variable may lie where a removed one lay.
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(dictionary.AddVar("new", new DictVar("new", kNumeric)) && dictionary.RemoveVar("new"));

  dictionary = *&dictionary;
  BaseDictionary assigned;
  assigned.AddVar("old", new DictVar("old", kNumeric));
  assigned = dictionary;
  EXPECT_EQ(assigned.GetVarNames(), (Names{"a", "B", "b"}));
  EXPECT_EQ(assigned.GetVar("old"), nullptr);
}

}  // namespace
}  // namespace KxVeyra_940
