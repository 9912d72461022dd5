#include "data/ResultField.h"

#include <gtest/gtest.h>

#include "data/CountedValue.h"
#include "data/DateTimeValue.h"
#include "data/StringValue.h"

namespace KxVeyra_940 {
namespace {

TEST(ResultField, AnEntryKeepsItsKind) {
  ResultField field;
  EXPECT_TRUE(field.SetResultValue("n", 1.0));
  EXPECT_TRUE(field.SetResultValue("t", std::string("x")));
  const DateTimeValue date(86400.0, DateTimeValue::kDateVal);
  EXPECT_TRUE(field.SetResultValue("d", &date));
  field.AddResultField("null", nullptr);

  const NumericValue number(2.0);
  const StringValue text("y");
  const struct {
    const char* name;
    bool number, text, date;
  } kRows[] = {{"n", true, false, false}, {"t", false, true, false}, {"d", false, false, false}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(field.SetResultValue(row.name, &number), row.number);
    EXPECT_EQ(field.SetResultValue(row.name, &text), row.text);
    EXPECT_EQ(field.SetResultValue(row.name, &date), row.date);
    EXPECT_EQ(field.SetResultValue(row.name, 3.0), row.number);
    EXPECT_EQ(field.SetResultValue(row.name, std::string("z")), row.text);
    EXPECT_FALSE(field.SetResultValue(row.name, nullptr));
    EXPECT_EQ(field.GetResultType(row.name), 0);
  }
  EXPECT_EQ(field.GetResultValue("n")->GetDouble(), 3);
  EXPECT_EQ(field.GetResultValue("t")->GetString(), "z");
  EXPECT_EQ(field.GetResultValue("d")->GetString(), "1970-1-2");
  EXPECT_EQ(field.GetResultValue("unknown"), nullptr);
  EXPECT_TRUE(field.SetResultValue("null", std::string("was no value")));
  EXPECT_EQ(field.GetResultFields(), (std::vector<std::string>{"d", "n", "null", "t"}));
}

TEST(ResultField, OwnsItsValues) {
  const NoneSurvives check;
  ResultField field;
  auto* const first = new CountedValue(1);
  CountedValue mine(9);
  field.AddResultField("a", first);
  field.AddResultField("a", &mine);
  field.AddResultField("b", first);  // held already
  EXPECT_EQ(field.GetResultSize(), 1);
  field.AddResultField("b", new CountedValue(2));
  field.SetMapResultValue({{"x", first}, {"y", new CountedValue(3)}});
  EXPECT_EQ(CountedValue::gLiving, 3);
  field.SetMapResultValue(field.GetMapResultValue());
  EXPECT_EQ(field.GetResultValue("x"), first);
  EXPECT_EQ(field.GetResultValue("a"), nullptr);
  EXPECT_EQ(field.GetResultSize(), 2);
  // A value under two names is still one; a name without a value keeps its place.
  field.SetMapResultValue({{"x", first}, {"z", first}, {"null", nullptr}});
  EXPECT_EQ(CountedValue::gLiving, 2);
  field.AddResultField("null", &mine);
  EXPECT_EQ(field.GetResultValue("null"), nullptr);
  EXPECT_TRUE(field.SetResultValue("null", &mine));
  EXPECT_EQ(CountedValue::gLiving, 3);
}

// Comparing each with all would take minutes.
TEST(ResultField, TakesManyValues) {
  constexpr int kCount = 200000;
  const NoneSurvives check;
  ResultField field;
  for (int i = 0; i < kCount; ++i) field.AddResultField("f" + std::to_string(i), new CountedValue(i));
  field.SetMapResultValue(field.GetMapResultValue());
  EXPECT_EQ(CountedValue::gLiving, kCount);
  field.SetMapResultValue({});
}

}  // namespace
}  // namespace KxVeyra_940
