#include "data/DateTimeValue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

namespace KxVeyra_940 {
namespace {

using enum ScoreDictVar::DateTimeType;
using enum DateTimeValue::DateTimeValType;
using Type = ScoreDictVar::DateTimeType;
constexpr double kSysmis = NumericValue::gSysmisValue;

TEST(DateTimeValue, TextsAndHowTheyPrint) {
  const struct {
    const char *what, *text;
    Type type;
    double seconds;
    const char* prints;
  } kRows[] = {
      {"a leap day", "2020-02-29", kDate, 1582934400, "2020-2-29"},
      {"a century that has one", "2000-02-29", kDate, 951782400, "2000-2-29"},
      {"a century that has none", "1900-02-29", kDate, kSysmis, "Undefined"},
      {"no leap year", "2019-02-29", kDate, kSysmis, "Undefined"},
      {"blanks around parts", " 2021 - 3 - 7 ", kDate, 1615075200, "2021-3-7"},
      {"a separator at the end belongs to the day", "2021-3-7-", kDate, 1615075200, "2021-3-7"},
      {"a fourth part is ignored", "2021-3-7-99", kDate, 1615075200, "2021-3-7"},
      {"a year of 0", "0000-01-01", kDate, -62167219200, "0-1-1"},
      {"two parts", "2021-3", kDate, kSysmis, "Undefined"},
      {"month 13", "2021-13-1", kDate, kSysmis, "Undefined"},
      {"day 0", "2021-1-0", kDate, kSysmis, "Undefined"},
      {"a letter", "2021-Mar-7", kDate, kSysmis, "Undefined"},
      {"a year beyond an int", "99999999999-1-1-1", kDate, kSysmis, "Undefined"},
      {"an empty date", "", kDate, kSysmis, "Undefined"},
      {"a time with blanks", " 12 : 30 : 05 ", kTime, 45005, "12:30:5"},
      {"a time without seconds", "12:30", kTime, kSysmis, "Undefined"},
      {"hour 24", "24:00:00", kTime, kSysmis, "Undefined"},
      {"an empty time", "", kTime, kSysmis, "Undefined"},
      {"date and time", "2020-01-01T12:00:00", kDateTime, 1577880000, "2020-1-1T12:0:0"},
      {"no T between them", "2020-1-1 12:00:00", kDateTime, kSysmis, "Undefined"},
      {"an empty time is midnight", "2020-01-01T", kDateTime, 1577836800, "2020-1-1T0:0:0"},
      {"an empty date is none", "T12:00:00", kDateTime, kSysmis, "Undefined"},
      {"an empty date and time", "", kDateTime, kSysmis, "Undefined"},
      {"days since 1960", "3653", kDateDaysSince1960, 0, "1970-1-1"},
      {"no number is 0", "abc", kDateDaysSince1970, 0, "1970-1-1"},
      {"an empty number", "", kTimeSeconds, kSysmis, "Undefined"},
      {"no type", "2020-01-01", kNoDateTime, kSysmis, "Undefined"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    const DateTimeValue value(row.text, row.type);
    EXPECT_EQ(value.GetNumber(), row.seconds);
    EXPECT_EQ(value.GetString(), row.prints);
    EXPECT_EQ(value.GetDateTimeType(), DateTimeValue::GetValType(row.type));
  }
  const DateTimeValue leapDay("2020-02-29", kDate);
  EXPECT_EQ(leapDay.GetDouble(), 18321);
  EXPECT_EQ(leapDay.GetInt(), 18321);
  EXPECT_EQ(leapDay.GetNumericString(), "1582934400.000000");
  EXPECT_EQ(DateTimeValue().GetNumericString(), "Undefined");
  EXPECT_EQ(DateTimeValue(kSysmis, kDate).GetDouble(), kSysmis);
}

TEST(DateTimeValue, NumbersOfEveryTypeGoThereAndBack) {
  const struct {
    Type type;
    double number, seconds;
    DateTimeValue::DateTimeValType kind;
  } kRows[] = {
      {kDate, 5, 5, kDateVal},
      {kTime, 5, 5, kTimeVal},
      {kDateTime, 5, 5, kDateTimeVal},
      {kDateDaysSince0, 0, -62167219200, kDateVal},
      {kDateDaysSince1960, 0, -315619200, kDateVal},
      {kDateDaysSince1970, 2, 172800, kDateVal},
      {kDateDaysSince1980, 0, 315532800, kDateVal},
      {kTimeSeconds, 5, 5, kTimeVal},
      {kDateTimeSecondsSince0, 0, -62167219200, kDateTimeVal},
      {kDateTimeSecondsSince1960, 0, -315619200, kDateTimeVal},
      {kDateTimeSecondsSince1970, 5, 5, kDateTimeVal},
      {kDateTimeSecondsSince1980, 0, 315532800, kDateTimeVal},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.type);
    const DateTimeValue value(row.number, row.type);
    EXPECT_EQ(value.GetNumber(), row.seconds);
    EXPECT_EQ(value.GetDateTimeType(), row.kind);
    EXPECT_EQ(DateTimeValue::GetValType(DateTimeValue::GetDateTimeType(row.kind)), row.kind);
    const std::unique_ptr<ScoreValue> back(value.GetValue(row.type));
    EXPECT_EQ(back->GetType(), ScoreValue::kNumericValueType);
    EXPECT_EQ(back->GetDouble(), row.number);
    EXPECT_EQ(DateTimeValue(kSysmis, row.type).GetNumber(), kSysmis);
    EXPECT_EQ(DateTimeValue(kSysmis, row.type).GetDoubleValue(row.type), kSysmis);
  }
  for (const int unknown : {0, 13, -1}) {
    EXPECT_EQ(DateTimeValue(5.0, static_cast<Type>(unknown)).GetNumber(), kSysmis);
    EXPECT_EQ(DateTimeValue(5.0, kDateVal).GetDoubleValue(static_cast<Type>(unknown)), kSysmis);
  }
}

// The calendar, day by day, from 800 years before year 0 to 2400: dates and the counts that they are made of.
TEST(DateTimeValue, EveryDayComesOutAsItWentIn) {
  long long day = DateTimeValue::DaysBetweenYear(1970, -800);
  long long leapYears = 0;
  for (long long year = -800; year < 2400; ++year) {
    ASSERT_EQ(DateTimeValue::DaysBetweenYear(1970, year), day) << year;
    ASSERT_EQ(DateTimeValue::NumberOfLeapYear(year, -800), leapYears) << year;
    leapYears += DateTimeValue::IsLeapYear(year) ? 1 : 0;
    for (long long month = 1; month <= 12; ++month) {
      ASSERT_EQ(day - DateTimeValue::DaysBetweenYear(1970, year),
                DateTimeValue::DaysBeforeMonth(year, month));
      for (long long d = 1; d <= DateTimeValue::DaysInMonth(year, month); ++d, ++day) {
        long long y = 0, m = 0, dd = 0;
        DateTimeValue::ExtractDate(static_cast<double>(day) * 86400 + 86399, y, m, dd);
        ASSERT_TRUE(y == year && m == month && dd == d) << year << '-' << month << '-' << d;
      }
    }
  }
  EXPECT_EQ(DateTimeValue::DaysBetweenYear(1970, 1960), -3653);
  EXPECT_EQ(DateTimeValue::DaysBetweenYear(0, 1970), 719528);
  EXPECT_EQ(DateTimeValue::NumberOfLeapYear(1897, 1905), 1);
  EXPECT_EQ(DateTimeValue::NumberOfLeapYear(1896, 1905), 2);
  EXPECT_EQ(DateTimeValue::DaysInMonth(2020, 13), 0);
  EXPECT_EQ(DateTimeValue::DaysInYear(1900), 365);
}

TEST(DateTimeValue, ExtremesAreCalculatedWithoutOverflow) {
  constexpr long long kLowest = std::numeric_limits<long long>::min();
  constexpr long long kHighest = std::numeric_limits<long long>::max();
  EXPECT_EQ(DateTimeValue::DaysBetweenYear(kHighest, kHighest), 0);
  EXPECT_GT(DateTimeValue::NumberOfLeapYear(kLowest, 0), 0);
  EXPECT_NE(DateTimeValue::DaysBetweenYear(kLowest, kHighest), 0);
  // The first whole second that a 64-bit count holds, for everything beyond.
  const std::string first = DateTimeValue(-9223372036854775808.0, kDateTimeVal).GetString();
  EXPECT_EQ(first, "-292277022657-1-27T8:29:52");
  EXPECT_EQ(DateTimeValue(1e300, kDateTimeVal).GetString(), first);
  EXPECT_EQ(DateTimeValue(9223372036854774784.0, kDateTimeVal).GetString(), "292277026596-12-4T15:13:4");
  EXPECT_EQ(DateTimeValue(-43200.0, kDateTimeVal).GetString(), "1969-12-31T12:0:0");
  EXPECT_EQ(DateTimeValue(-0.5, kTimeVal).GetString(), "0:0:0");
  EXPECT_EQ(DateTimeValue(7.5, static_cast<DateTimeValue::DateTimeValType>(9)).GetString(), "7.5");
  for (const double seconds : {HUGE_VAL, -HUGE_VAL, std::nan("")})
    for (const auto kind : {kDateVal, kTimeVal, kDateTimeVal})
      EXPECT_EQ(DateTimeValue(seconds, kind).GetString(), "Undefined") << seconds;
}

TEST(DateTimeValue, PartsAndDurations) {
  const DateTimeValue value("2021-03-07T09:05:01", kDateTime);
  const double parts[] = {value.ExtractYear(), value.ExtractMonth(),  value.ExtractDay(),
                          value.ExtractHour(), value.ExtractMinute(), value.ExtractSecond()};
  const double want[] = {2021, 3, 7, 9, 5, 1};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(parts[i], want[i]) << i;

  const DateTimeValue from("2021-03-01T09:05:01", kDateTime);
  EXPECT_EQ(value.ComputeDurationSeconds(from), 518400);
  EXPECT_EQ(value.ComputeDurationMinutes(from), 8640);
  EXPECT_EQ(value.ComputeDurationHours(from), 144);
  EXPECT_EQ(value.ComputeDurationDays(from), 6);
  EXPECT_EQ(value.ComputeDurationMonths(from), 6 / 30.4375);
  EXPECT_EQ(from.ComputeDurationYears(value), -6 / 365.25);

  const DateTimeValue missing;
  for (const double part : {missing.ExtractYear(), missing.ExtractSecond(),
                            missing.ComputeDurationDays(value), value.ComputeDurationYears(missing)})
    EXPECT_EQ(part, kSysmis);
}

TEST(DateTimeValue, ParseDoubleTakesPlainNumbersOnly) {
  for (const char* text : {"1.5e-3", "-2", "+2", ".5", "0", "12E+4", "-1e-5", "1.5e3"}) {
    double number = -99;
    EXPECT_TRUE(DateTimeValue::ParseDouble(text, number)) << text;
    EXPECT_EQ(number, std::stod(text)) << text;
    EXPECT_TRUE(DateTimeValue::IsValidDateTime(text, kTimeSeconds));
  }
  for (const char* text : {"", "1e", "e1", ".5.", "5.", "1-2", "+-1", "1.e5", "1e5.5", "1e5e5", "1e5E5",
                           "1e+", "1e--5", "1 ", "abc", "0x1", "+", "1+"}) {
    double number = -99;
    EXPECT_FALSE(DateTimeValue::ParseDouble(text, number)) << text;
    EXPECT_EQ(number, -99) << text;
    EXPECT_FALSE(DateTimeValue::IsValidDateTime(text, kDateTimeSecondsSince0));
  }
}

TEST(DateTimeValue, TheParsersAcceptAnEmptyText) {
  long long a = 7, b = 7, c = 7, d = 7, e = 7, f = 7;
  EXPECT_TRUE(DateTimeValue::ParseDate("", a, b, c) && a == 7 && b == 7 && c == 7);
  EXPECT_TRUE(DateTimeValue::ParseTime("", a, b, c) && a == 7 && b == 7 && c == 7);
  EXPECT_TRUE(DateTimeValue::ParseDateTime("", a, b, c, d, e, f));
  EXPECT_TRUE(a == 0 && b == 0 && c == 0 && d == 0 && e == 0 && f == 0);
  EXPECT_TRUE(DateTimeValue::IsValidDateTime("", kDateTime));
  EXPECT_TRUE(DateTimeValue::IsValidDateTime("whatever", kNoDateTime));
  EXPECT_FALSE(DateTimeValue::IsValidDateTime("2021-2-30", kDate));
  EXPECT_FALSE(DateTimeValue::IsValidDateTime("1", static_cast<Type>(13)));
  EXPECT_EQ(DateTimeValue::TrimString("xxabxcxx", 'x'), "abxc");
  EXPECT_EQ(DateTimeValue::TrimString("xxx", 'x'), "xxx");
}

}  // namespace
}  // namespace KxVeyra_940
