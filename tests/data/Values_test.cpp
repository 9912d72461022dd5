// Numbers and texts, and how values of all kinds compare.

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <limits>
#include <memory>
#include <sstream>

#include "AllocationCounter.h"
#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"

namespace KxVeyra_940 {
namespace {

constexpr double kSysmis = NumericValue::gSysmisValue;
constexpr double kInfinity = NumericValue::gInfinity;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kLowestInt = std::numeric_limits<int>::min();

// Which of ==, <, >, <=, >= hold, as text.
std::string Relations(const ScoreValue& left, const ScoreValue& right) {
  return std::string(left == right ? "== " : "") + (left < right ? "< " : "") + (left > right ? "> " : "") +
         (left <= right ? "<= " : "") + (left >= right ? ">= " : "");
}

using Number = NumericValue;
using Text = StringValue;

DateTimeValue Date(double seconds) { return DateTimeValue(seconds, DateTimeValue::kDateVal); }
DateTimeValue Moment(double seconds) { return DateTimeValue(seconds, DateTimeValue::kDateTimeVal); }

constexpr char kAlike[] = "== <= >= ";
constexpr char kLess[] = "< <= ";
constexpr char kGreater[] = "> >= ";
constexpr char kClose[] = "<= >= ";  // neither less nor greater, but not equal
constexpr char kNothing[] = "";

TEST(Values, ComparisonsWithinAndAcrossKinds) {
  const struct {
    const char* what;
    std::shared_ptr<ScoreValue> left, right;
    const char *want, *reversed;
  } kRows[] = {
#define NUM(x) std::make_shared<Number>(x)
#define TXT(x) std::make_shared<Text>(x)
#define DAT(x) std::make_shared<DateTimeValue>(Date(x))
#define MOM(x) std::make_shared<DateTimeValue>(Moment(x))
      {"within the relative tolerance", NUM(1.0), NUM(1.0 + 1e-15), kAlike, kAlike},
      {"large numbers: equal though ordered", NUM(1e20), NUM(1e20 + 1e5), "== < <= ", "== > >= "},
      {"within the absolute tolerance only", NUM(1e-3), NUM(1e-3 + 5e-15), kClose, kClose},
      {"0 equals no other number", NUM(0.0), NUM(1e-300), kClose, kClose},
      {"0 equals -0", NUM(0.0), NUM(-0.0), kAlike, kAlike},
      {"5 and a little more", NUM(5.0), NUM(5.0 + 5e-15), kAlike, kAlike},
      {"plainly less", NUM(1.0), NUM(2.0), kLess, kGreater},
      {"missing equals missing and has no order", NUM(kSysmis), NUM(kSysmis), "== ", "== "},
      {"missing against a number", NUM(kSysmis), NUM(0.0), kNothing, kNothing},
      {"infinity has no distance from itself", NUM(kInfinity), NUM(kInfinity), kNothing, kNothing},
      {"infinity is greater than numbers", NUM(kInfinity), NUM(1e308), kGreater, kLess},
      {"NaN compares with nothing", NUM(kNaN), NUM(kNaN), kNothing, kNothing},
      {"trailing blanks do not count", TXT("abc  "), TXT("abc"), kAlike, kAlike},
      {"leading blanks do", TXT(" abc"), TXT("abc"), kLess, kGreater},
      {"case does", TXT("ABC"), TXT("abc"), kLess, kGreater},
      {"a prefix is smaller", TXT("ab "), TXT("abc"), kLess, kGreater},
      {"a blank text is smaller than any other", TXT("  "), TXT("\x01"), kLess, kGreater},
      {"blank texts are equal", TXT(""), TXT("   "), kAlike, kAlike},
      {"bytes are unsigned", TXT("\xc3\xa4"), TXT("z"), kGreater, kLess},
      {"a tab is no blank", TXT("a\t"), TXT("a"), kGreater, kLess},
      {"number with text: the text's number", NUM(5.0), TXT("5"), kClose, kNothing},
      {"number with a text that is none: 0", NUM(1.0), TXT("abc"), kGreater, kNothing},
      {"number with date: days", NUM(3.0), DAT(2 * 86400.0), kGreater, kGreater},
      {"number with missing date", NUM(3.0), DAT(kSysmis), kNothing, kNothing},
      {"text with date", TXT("1"), DAT(86400.0), kNothing, kGreater},
      {"dates order by seconds", DAT(86400.0), DAT(2 * 86400.0), kLess, kGreater},
      {"date with moment: seconds", DAT(86400.0), MOM(86399.0), kGreater, kLess},
      {"same seconds, other kind", DAT(86400.0), MOM(86400.0), kClose, kClose},
      {"date-times equal exactly", MOM(1e9), MOM(1e9), kAlike, kAlike},
      {"and without tolerance", MOM(1e9), MOM(1e9 + 2e-7), kLess, kGreater},
      {"missing date-times are equal", MOM(kSysmis), MOM(kSysmis), "== ", "== "},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Relations(*row.left, *row.right), row.want);
    EXPECT_EQ(Relations(*row.right, *row.left), row.reversed);
    // Equal of numbers and date-times is plain equality, whatever the options.
    if (row.left->GetType() != ScoreValue::kStringValueType) {
      EXPECT_EQ(row.left->Equal(row.right.get(), true, true), *row.left == *row.right);
    }
    EXPECT_FALSE(row.left->Equal(nullptr, false, false));
  }
}

// The concrete types compare, too, by the left operand's rule; no base class is asked for.
TEST(Values, ConcreteTypesCompare) {
  const Number five(5.0);
  const Text text("5");
  const DateTimeValue moment = Moment(5);
  EXPECT_FALSE(text == five || five == text || moment == five || five == moment || text == moment);
  EXPECT_TRUE(text == Text("5 ") && five == Number(5.0) && moment == Moment(5) && text != five);
  const ScoreValue& value = five;
  EXPECT_TRUE(value == five && five == value && moment != value);
}

TEST(Values, EqualOfTextsHasTwoOptions) {
  // want: for (noSpaceTrim, emptyStringOK) = (0, 0), (0, 1), (1, 0), (1, 1)
  const struct {
    const char *what, *left, *right, *want;
  } kRows[] = {
      {"identical", "abc", "abc", "1111"},    {"trailing blanks", "abc ", "abc", "1100"},
      {"empty and blank", "", "   ", "1000"}, {"blank texts of two lengths", "  ", " ", "1100"},
      {"one blank", "", "a", "0000"},         {"different", "abc", "abd", "0000"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    const Text left(row.left), right(row.right);
    for (int options = 0; options < 4; ++options) {
      SCOPED_TRACE(options);
      const bool want = row.want[options] == '1';
      EXPECT_EQ(left.Equal(&right, (options & 2) != 0, (options & 1) != 0), want);
      EXPECT_EQ(right.Equal(&left, (options & 2) != 0, (options & 1) != 0), want);
    }
  }
  EXPECT_FALSE(Text("5").Equal(std::make_unique<Number>(5.0).get(), false, false));
}

TEST(Values, NumbersAsTextAreWrittenAsAStreamWrites) {
  for (const double number :
       {0.0, -0.0, 0.1, 1234567.0, 123456.0, 1e-5, 0.0001, -1.5e300, 100000.5, kInfinity}) {
    std::ostringstream stream;
    stream << number;
    EXPECT_EQ(Number(number).GetString(), stream.str());
  }
  EXPECT_EQ(Number().GetString(), "Undefined");
  EXPECT_EQ(Number(-kInfinity).GetString(), "Undefined");
}

TEST(Values, CastsToIntAreDefined) {
  const std::pair<double, int> kInside[] = {{2.9, 2}, {-2.9, -2}, {2147483647.9, 2147483647}};
  for (const auto& [number, want] : kInside) EXPECT_EQ(Number(number).GetInt(), want) << number;
  for (const double outside : {2147483648.0, -2147483648.5, 1e300, kNaN, kSysmis})
    EXPECT_EQ(Number(outside).GetInt(), kLowestInt) << outside;

  const std::pair<const char*, int> kTexts[] = {
      {" 12x", 12}, {"-7", -7}, {"+7", 7}, {"+-7", 0}, {"abc", 0}, {"", 0}, {"99999999999", kLowestInt}};
  for (const auto& [text, want] : kTexts) EXPECT_EQ(Text(text).GetInt(), want) << text;
}

struct CommaDecimal : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

TEST(Values, ATextReadsItsNumberInTheGlobalLocale) {
  EXPECT_EQ(Text(" 1.5x").GetDouble(), 1.5);
  EXPECT_EQ(Text("").GetDouble(), 0);
  EXPECT_EQ(Text("inf").GetDouble(), 0);
  EXPECT_EQ(Text("1e999").GetDouble(), std::numeric_limits<double>::max());

  const std::locale comma(std::locale::classic(), new CommaDecimal);
  const std::locale before = std::locale::global(comma);
  const std::locale outputBefore = std::cout.imbue(comma);
  EXPECT_EQ(Text("1.5").GetDouble(), 1.5);
  EXPECT_EQ(Text("1,5").GetDouble(), 1.5);
  EXPECT_EQ(Number("1,5").GetDouble(), 1.0);  // numbers of documents never depend on the process
  EXPECT_EQ(Number(1.5).GetString(), "1.5");
  std::cout.imbue(std::locale::classic());
  EXPECT_EQ(Text("1.5").GetDouble(), 1.0);  // the point is the output's, the reading is the process's
  std::locale::global(before);
  std::cout.imbue(comma);
  EXPECT_EQ(Text("1.5").GetDouble(), 1.0);
  std::cout.imbue(outputBefore);
}

TEST(Values, CopiesAndTakingOver) {
  Text text("abc");
  text.SetLength(7);
  text.SetString("wxyz");
  EXPECT_EQ(text.GetLength(), 7);
  const Text copied(text);
  EXPECT_EQ(copied.GetLength(), 4);
  Text assigned("");
  assigned = text;
  EXPECT_EQ(assigned.GetLength(), 7);
  assigned = *&assigned;
  EXPECT_EQ(assigned.GetText(), "wxyz");
  EXPECT_EQ(Text().GetText(), std::string(255, '\0'));
  EXPECT_EQ(Text().GetLength(), 0);

  const Number number(3.0);
  const DateTimeValue date = Date(86400);
  text.SetValue(&copied);
  EXPECT_EQ(text.GetText(), "wxyz");
  text.SetValue(&number);
  EXPECT_EQ(text.GetText(), "");

  Number target(1.0);
  for (const ScoreValue* other : std::initializer_list<const ScoreValue*>{&date, &copied, nullptr}) {
    target.SetValue(other);
    EXPECT_EQ(target.GetDouble(), 1.0);
  }
  target.SetValue(&number);
  EXPECT_EQ(target.GetDouble(), 3.0);

  DateTimeValue moment = Moment(5);
  moment.SetValue(&number);
  EXPECT_EQ(moment.GetNumber(), 3);
  EXPECT_EQ(moment.GetDateTimeType(), DateTimeValue::kDateTimeVal);
  moment.SetValue(&date);
  EXPECT_EQ(moment.GetNumber(), 86400);
  EXPECT_EQ(moment.GetDateTimeType(), DateTimeValue::kDateVal);
  moment.SetValue(&text);
  EXPECT_TRUE(moment.IsSystemMissingValue());
}

TEST(Values, ComparingTextsAllocatesNothing) {
  const Text left(std::string(100, 'x') + "  ");
  const Text right(std::string(100, 'x') + "     ");
  const AllocationCounter counter;
  const ScoreValue& other = right;
  EXPECT_TRUE(left == other && left <= other && !(left < other) && left.Equal(&right, false, true));
  EXPECT_EQ(left.GetDouble(), 0);
  EXPECT_EQ(counter.Count(), 0);
}

}  // namespace
}  // namespace KxVeyra_940
