#include "data/ReadNumber.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdlib>
#include <locale>
#include <random>
#include <sstream>
#include <string>

#include "AllocationCounter.h"
#include "data/NumericValue.h"

namespace KxVeyra_940 {
namespace {

constexpr double kSysmis = NumericValue::gSysmisValue;
constexpr double kInfinity = NumericValue::gInfinity;

// What a number text means, said with the standard library alone.
double ReadSlowly(const std::string& text) {
  if (!text.empty() && std::atof(text.c_str()) >= kInfinity) return kInfinity;
  double number = kSysmis;
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  stream >> number;
  return number;
}

TEST(ReadNumber, ReadsWhatAStreamReads) {
  const struct {
    const char* what;
    std::string text;
    double want;
  } kRows[] = {
      {"empty is missing", "", kSysmis},
      {"white space is missing", " \t\r\n\v\f", kSysmis},
      {"no number is 0", "abc", 0},
      {"a plus sign", "+7", 7},
      {"white space before, text behind", "  12.5kg", 12.5},
      {"an exponent that breaks off", "1e", 0},
      {"an exponent without digits", "12e x", 0},
      {"a sign alone", "-", 0},
      {"a point alone", ".", 0},
      {"a second point ends it", "1.2.3", 1.2},
      {"a comma ends it", "1,5", 1},
      {"-inf is no number", "-inf", 0},
      {"nan is no number", "nan", 0},
      {"inf is, in any case", " +InFinity", kInfinity},
      {"too large", "1e999", kInfinity},
      {"too large without exponent", std::string(400, '9'), kInfinity},
      {"too large the other way is missing", "-1e400", kSysmis},
      {"too large in hexadecimal", "0x1p2000", kInfinity},
      {"hexadecimal is read up to the x", "0x10", 0},
      {"the largest number is not too large", "1.7976931348623157e308", 1.7976931348623157e308},
      {"too small is 0", "1e-999", 0},
      {"a long number that is too small", "0." + std::string(500, '0') + "1e+100", 0},
      {"a long number that is not", "0." + std::string(400, '0') + "1e+401", 1},
      {"a NUL ends it", std::string("1") + '\0' + "2", 1},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ReadNumber(row.text), row.want);
    EXPECT_EQ(ReadSlowly(row.text), row.want);
  }
}

TEST(ReadNumber, AgreesWithTheStreamOnRandomTexts) {
  const std::string kPieces[] = {
      "0",    "1", "9", "5",  ".",  "e",     "E",    "+",      "-",    " ",    "00",
      "17",   "x", "p", "0x", "in", "f",     "inf",  "nan",    "e30",  "e308", "e-308",
      "e-32", "a", "F", ",",  "\t", "99999", "0000", "179769", "\r\n", "308",  std::string(1, '\0')};
  constexpr unsigned kSeed = 20240607;
  std::mt19937 random(kSeed);
  for (int i = 0; i < 100000; ++i) {
    std::string text;
    for (unsigned long n = random() % 9; n > 0; --n) text += kPieces[random() % std::size(kPieces)];
    // Bits, so that the sign of 0 counts.
    ASSERT_EQ(std::bit_cast<std::uint64_t>(ReadNumber(text)), std::bit_cast<std::uint64_t>(ReadSlowly(text)))
        << "seed " << kSeed << ", text '" << text << "'";
  }
}

TEST(ReadNumber, AllocatesNothing) {
  const std::string text = " -123456789012345678901234567890.5e-7 and more";
  const AllocationCounter counter;
  EXPECT_NE(ReadNumber(text), 0);
  EXPECT_EQ(counter.Count(), 0);
}

}  // namespace
}  // namespace KxVeyra_940
