#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "AllocationCounter.h"
#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/ScoreBinningEncoder.h"
#include "data/ScoreCatNumericEncoder.h"
#include "data/ScoreCatStringEncoder.h"
#include "data/Shown.h"
#include "data/StringValue.h"

namespace KxVeyra_940 {
namespace {

using Texts = std::vector<std::string>;

TEST(ScoreBinningEncoder, BinsAreClosedOnTheRight) {
  ScoreBinningEncoder encoder({10, 20, 30});
  const std::pair<double, double> kRows[] = {
      {-1e300, 0}, {10, 0}, {10.0001, 1}, {20, 1}, {21, 2}, {30, 2}, {31, 3}, {NumericValue::gInfinity, 3}};
  for (const auto& [number, bin] : kRows) {
    EXPECT_EQ(encoder.Encode(number), bin) << number;
    const NumericValue value(number);
    EXPECT_EQ(encoder.EncodeConst(&value), bin) << number;
  }
  EXPECT_EQ(encoder.GetNumberOfCategories(), 4);
  EXPECT_EQ(encoder.EncodeConst("20.5"), 2);
  EXPECT_EQ(encoder.Encode(std::string()), 0);  // system-missing is the smallest number
  const StringValue text("20");
  const DateTimeValue date(20.0, DateTimeValue::kDateTimeVal);
  for (const ScoreValue* wrong : std::initializer_list<const ScoreValue*>{&text, &date, nullptr})
    EXPECT_EQ(encoder.EncodeConst(wrong), -1);

  encoder.SetValueLabels({"a"});
  EXPECT_EQ(encoder.GetValueLabels(), nullptr);
  EXPECT_EQ(encoder.DecodeNum(0), NumericValue::gSysmisValue);
  EXPECT_EQ(Shown(encoder), "\tScoreBinningEncoder: number of bins = 4\n\t\tCutpoints: 10 20 30 \n");
  const std::unique_ptr<ScoreEncoder> clone(encoder.Clone());
  encoder.SetBinningCutpoints({});
  EXPECT_EQ(encoder.GetNumberOfCategories(), 1);
  EXPECT_EQ(encoder.Encode(99.0), 0);
  EXPECT_EQ(clone->GetNumberOfCategories(), 4);
  EXPECT_EQ(ScoreBinningEncoder().GetNumberOfCategories(), 0);
}

TEST(ScoreCatNumericEncoder, CodesFollowFirstAppearance) {
  ScoreCatNumericEncoder encoder(std::vector<double>{3, 1, 3, 2});
  const std::pair<double, int> kRows[] = {{3, 0},  {1, 1},          {2, 2},
                                          {4, -1}, {3 + 1e-15, -1}, {std::nan(""), -1}};
  for (const auto& [number, code] : kRows) EXPECT_EQ(encoder.EncodeConst(number), code) << number;
  EXPECT_EQ(encoder.GetNumberOfCategories(), 3);
  EXPECT_EQ(encoder.Encode(std::nan("")), -1);
  EXPECT_EQ(encoder.Encode(4.0), 3);
  EXPECT_EQ(encoder.DecodeNum(3), 4);
  EXPECT_EQ(encoder.DecodeNum(7), NumericValue::gSysmisValue);
  EXPECT_EQ(encoder.DecodeNum(-1), NumericValue::gSysmisValue);
  EXPECT_EQ(encoder.Encode(0.0), 4);
  EXPECT_EQ(encoder.Encode(-0.0), 4);

  const StringValue one("1"), none("x");
  EXPECT_EQ(encoder.EncodeConst(&one), 1);
  EXPECT_EQ(encoder.EncodeConst(&none), 4);  // a text that is no number reads as 0
  EXPECT_EQ(encoder.EncodeConst("2 items"), 2);
  EXPECT_EQ(encoder.EncodeConst(static_cast<const ScoreValue*>(nullptr)), -1);
  for (const double more : {5, 6, 7}) encoder.Encode(more);
  EXPECT_EQ(
      Shown(encoder),
      "\tScoreCatNumericEncoder: Last code = 7\n\t\tNumeric values of categories: 3 1 2 4 0 5 6 \n7 \n");
}

TEST(ScoreCatStringEncoder, KeysAreTrimmed) {
  ScoreCatStringEncoder encoder(Texts{"a", "b ", ""});
  const std::pair<const char*, int> kRows[] = {{"a", 0}, {"a  ", 0}, {" a", -1}, {"A", -1},
                                               {"b", 1}, {"b ", 1},  {"", 2},    {"   ", -1}};
  for (const auto& [text, code] : kRows) EXPECT_EQ(encoder.EncodeConst(text), code) << '"' << text << '"';
  EXPECT_EQ(encoder.Encode("   "), 3);
  EXPECT_EQ(encoder.EncodeConst(" "), 3);
  EXPECT_EQ(encoder.Decode(3), " ");
  EXPECT_EQ(encoder.Decode(1), "b");
  EXPECT_EQ(encoder.Decode(-1) + encoder.Decode(4), "");
  EXPECT_EQ(
      Shown(encoder),
      "\tScoreCatStringEncoder object:  Last code = 3\n\t\t0\t\ta\n\t\t1\t\tb\n\t\t2\t\t\n\t\t3\t\t \n");

  const NumericValue number(1.5);
  EXPECT_EQ(encoder.Encode(&number), 4);
  EXPECT_EQ(encoder.EncodeConst("1.5"), 4);
  EXPECT_EQ(encoder.EncodeConst(static_cast<const ScoreValue*>(nullptr)), -1);

  encoder.SetNoSpaceTrim(true);
  EXPECT_EQ(encoder.EncodeConst("a "), -1);
  EXPECT_EQ(encoder.Encode("a "), 5);
  EXPECT_EQ(encoder.Decode(5), "a ");

  ScoreCatStringEncoder blanks(10);
  blanks.SetEmptyStringOK(false);
  EXPECT_EQ(blanks.Encode("  "), 0);
  EXPECT_EQ(blanks.EncodeConst(""), 0);

  const std::string longText(100, 'x');
  encoder.SetNoSpaceTrim(false);
  encoder.Encode(longText);
  const StringValue value(longText + "  ");
  const AllocationCounter counter;
  EXPECT_EQ(encoder.EncodeConst(&value), 6);
  EXPECT_EQ(counter.Count(), 0);
}

TEST(ScoreCatStringEncoder, CopiesAndAssignmentsDiffer) {
  auto source = std::make_unique<ScoreCatStringEncoder>(Texts{"a", "b"});
  source->SetNoSpaceTrim(true);
  source->SetEmptyStringOK(false);
  source->SetValueLabel(0, "first");
  ScoreCatStringEncoder copy(*source);
  ScoreCatStringEncoder assigned(Texts{"old"});
  assigned = *source;
  assigned = *&assigned;
  source.reset();  // the links must not point into it
  EXPECT_TRUE(copy.GetNoSpaceTrim() && !copy.GetEmptyStringOK());
  EXPECT_TRUE(!assigned.GetNoSpaceTrim() && assigned.GetEmptyStringOK());
  for (ScoreCatStringEncoder* encoder : {&copy, &assigned}) {
    EXPECT_EQ(encoder->GetNumberOfCategories(), 2);
    EXPECT_EQ(encoder->Decode(0) + encoder->Decode(1), "ab");
    EXPECT_EQ(encoder->Encode("c"), 2);
    EXPECT_TRUE(encoder->GetValueLabels()->empty());
  }
}

TEST(ScoreCatEncoder, LabelsGrowToTheCategories) {
  ScoreCatNumericEncoder encoder(std::vector<double>{5, 6, 7});
  encoder.SetValueLabels({"five"});
  encoder.SetValueLabel(3, "outside");
  EXPECT_EQ(*encoder.GetValueLabels(), (Texts{"five", "", ""}));
  encoder.SetValueLabel(2, "seven");
  encoder.SetValueLabel(-1, "outside");
  EXPECT_EQ(*encoder.GetValueLabels(), (Texts{"five", "", "seven"}));

  // A label of the encoder's own, too long for the small buffer, was freed when the labels grew.
  const std::string label(100, 'x');
  ScoreCatStringEncoder texts(Texts{"a", "b", "c"});
  texts.SetValueLabels({label});
  texts.SetValueLabel(2, texts.GetValueLabels()->front());
  EXPECT_EQ(*texts.GetValueLabels(), (Texts{label, "", label}));
}

}  // namespace
}  // namespace KxVeyra_940
