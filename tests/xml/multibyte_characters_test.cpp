// Functions on whole characters, in UTF-8 and in the code page.  Each test has its own process.

#include <gtest/gtest.h>

#include <clocale>
#include <memory>
#include <string>
#include <vector>

#include "xml/Multibyte.h"

namespace {

using namespace KxXML_940;
using namespace std::string_literals;

// In this locale the code page is UTF-8 as well: what is well-formed has the same lengths in both flavours.
void SetCodePageToUTF8() { ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr); }

TEST(Characters, HaveLengths) {
  SetCodePageToUTF8();
  const struct {
    const char* what;
    std::string text;
    int mbclen8, mbclenC;
    std::vector<int> mblen8, mblenC;  // for n = 0, 1, 2 ... (the last one stays)
  } kRows[] = {
      {"empty", "", 1, 1, {0}, {0}},
      {"ASCII", "ab", 1, 1, {0, 1}, {0, 1}},
      {"two bytes", "\xC3\xA4z", 2, 2, {0, -1, 2}, {0, 1, 2}},
      {"three bytes", "\xE2\x82\xACz", 3, 3, {0, -1, -1, 3}, {0, 1, 2, 3}},
      {"four bytes", "\xF0\x9F\x98\x80z", 4, 4, {0, -1, -1, -1, 4}, {0, 1, 2, 2, 4}},
      {"an overlong lead", "\xC1\x81", 1, 2, {0, -1}, {0, 1, 2}},
      {"a trail byte", "\x80z", 1, 2, {0, -1}, {0, 1, 2}},
      {"beyond the leads", "\xF5z", 1, 2, {0, -1}, {0, 1, 2}},
      {"overlong in three bytes", "\xE0\x80\x80", 3, 2, {0, -1}, {0, 1, 2}},
      {"a surrogate", "\xED\xA0\x80", 3, 2, {0, -1}, {0, 1, 2}},
      {"overlong in four bytes", "\xF0\x80\x80\x80", 4, 2, {0, -1}, {0, 1, 2}},
      {"cut after one byte", "\xF0", 1, 1, {0, -1}, {0, 1}},
      {"cut after two bytes", "\xE2\x82", 2, 2, {0, -1}, {0, 1, 2}},
      {"cut after three bytes", "\xF0\x9F\x98", 3, 2, {0, -1}, {0, 1, 2}},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(mbclen_8(row.text.c_str()), row.mbclen8);
    EXPECT_EQ(mbclen_C(row.text.c_str()), row.mbclenC);
    for (int n = 0; n < 6; ++n) {
      const auto at = [n](const std::vector<int>& lengths) {
        return lengths[std::min(static_cast<std::size_t>(n), lengths.size() - 1)];
      };
      // Exactly what may be read stands on the heap.
      const auto readable = std::min(static_cast<std::size_t>(n), row.text.size() + 1);
      const auto text = std::make_unique<char[]>(readable);
      std::copy_n(row.text.c_str(), readable, text.get());
      EXPECT_EQ(mblen_8(text.get(), n), at(row.mblen8)) << n;
      EXPECT_EQ(mblen_C(text.get(), n), at(row.mblenC)) << n;
    }
  }
  EXPECT_EQ(mblen_8(nullptr, 3), 0);
  EXPECT_EQ(mblen_C(nullptr, 3), 0);
  EXPECT_FALSE(IsLeadByte_C('a'));
  EXPECT_TRUE(IsLeadByte_C(0xE4));
}

TEST(Characters, AreCopiedWhole) {
  SetCodePageToUTF8();
  const std::string source = "a\u00e4\u20ac\U0001F600";
  const int kWhole[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 10, 10};
  for (int n = 0; n < 13; ++n) {
    SCOPED_TRACE(n);
    const int whole = kWhole[n];
    const std::string want = source.substr(0, static_cast<std::size_t>(whole)) +
                             std::string(static_cast<std::size_t>(n - whole), '\0');
    for (char* (*copy)(char*, const char*, int) : {strncpy_8, strncpy_C, strncpy_A}) {
      const auto out = std::make_unique<char[]>(static_cast<std::size_t>(n));
      EXPECT_EQ(copy(out.get(), source.c_str(), n), out.get());
      EXPECT_EQ(std::string(out.get(), static_cast<std::size_t>(n)), want);
    }
    const auto out = std::make_unique<char[]>(static_cast<std::size_t>(whole));
    EXPECT_EQ(ZENTMBLimitedCopy_8(out.get(), source.c_str(), n), whole);
    if (n <= 10) {
      EXPECT_EQ(ZENTMBCheckFinalChar_8(source.c_str(), n), whole);
    }
  }
}

TEST(Characters, AreSearchedAndStepped) {
  SetCodePageToUTF8();
  const std::string text = "a\u00e4b\u20acb\u00e4\xE4z";  // at 0, 1, 3, 4, 7, 8, 10 (ill-formed), 11
  const struct {
    char32_t code;
    int first, last;
  } kSearches[] = {{U'a', 0, 0}, {U'b', 3, 7},   {U'\u00e4', 1, 8},   {U'\u20ac', 4, 4},
                   {0, 12, 12},  {U'q', -1, -1}, {U'\u00df', -1, -1}, {0x110000, -1, -1}};
  const auto index = [&](const char* found) {
    return found == nullptr ? -1 : static_cast<int>(found - text.c_str());
  };
  for (const auto& row : kSearches) {
    SCOPED_TRACE(static_cast<unsigned>(row.code));
    EXPECT_EQ(index(SearchChar_8(text.c_str(), row.code, 0)), row.first);
    EXPECT_EQ(index(SearchChar_C(text.c_str(), row.code, 1)), row.last);
    EXPECT_EQ(index(strchr_A(text.c_str(), row.code)), row.first);
    EXPECT_EQ(index(strrchr_8(text.c_str(), row.code)), row.last);
    EXPECT_EQ(index(strchr_C(text.c_str(), row.code)), row.first);
  }
  EXPECT_EQ(strchr_8(nullptr, U'a'), nullptr);

  const std::pair<const char*, std::size_t> kSets[] = {{"", 12},       {"b", 3},       {"\u20acz", 4},
                                                       {"\u00e5", 12}, {"z\u00e4", 1}, {"\xA4", 12}};
  for (const auto& [set, want] : kSets) {
    EXPECT_EQ(strcspn_8(text.c_str(), set), want) << set;
    EXPECT_EQ(strcspn_C("a\u00e4b", set), std::min<std::size_t>(want, 4)) << set;
  }

  const int kPrevious[] = {0, 0, 1, 1, 3, 4, 4, 4, 7, 8, 8};
  for (int i = 0; i < 11; ++i) {
    EXPECT_EQ(PreviousIndex_8(text.c_str(), i), kPrevious[i]) << i;
    EXPECT_EQ(AnsiPrev_C(text.c_str(), text.c_str() + i), text.c_str() + kPrevious[i]) << i;
  }
  EXPECT_EQ(PreviousIndex_A(text.c_str(), -1), 0);
  EXPECT_EQ(PreviousIndex_C("ab", 9), 1) << "a text ends at its null";
  EXPECT_EQ(index(strinc_8(text.c_str() + 4)), 7);
  EXPECT_EQ(index(strinc_C(text.c_str() + 1)), 3);
  EXPECT_EQ(index(strinc_A(text.c_str() + 12)), 12);
}

TEST(Texts, AreComparedByCodePoints) {
  const struct {
    const char* what;
    std::string a, b;
    int alen, blen, ignoringCase, exactly, error;
  } kRows[] = {
      {"equal", "abc", "abc", -1, -1, 0, 0, 0},
      {"case", "stra\u00dfE \u0394", "STRA\u00dfe \u03b4", -1, -1, 0, 1, 0},
      {"the shorter", "ab", "abc", -1, -1, -1, -1, 0},
      {"empty", "", "a", -1, -1, -1, -1, 0},
      {"lengths", "abX", "abY", 2, 2, 0, 0, 0},
      {"a null within the length", "ab\0x"s, "ab", 4, 2, 0, 0, 0},
      {"beyond the surrogates", "\uffff", "\U00010000", -1, -1, -1, -1, 0},
      {"an ill-formed byte is itself", "\xE4", "\u00e4", -1, -1, 0, 0, 3},
      {"an ill-formed byte has no case", "\xC9", "\xE9", -1, -1, -1, -1, 3},
      {"nor has one that a capital would be", "\xCE", "\xE2", 1, 1, -1, -1, 3},
      {"a cut character", "\u20ac", "\u20ac", 2, 3, -1, -1, 3},
      {"behind the difference", "b\xFF", "a\xFF", -1, -1, 1, 1, 0},
  };
  const std::unique_ptr<UConverter, decltype(&ucnv_close)> utf8(ZENTMBConverterNew_C("UTF-8"), ucnv_close);
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    const char* const a = row.a.c_str();
    const char* const b = row.b.c_str();
    int error = -1;
    EXPECT_EQ(ZENTMBBinaryCompare_8(0, a, row.alen, b, row.blen, &error), row.ignoringCase);
    EXPECT_EQ(error, row.error);
    EXPECT_EQ(ZENTMBBinaryCompare_C(0, utf8.get(), b, row.blen, a, row.alen, &error), -row.ignoringCase);
    EXPECT_EQ(error, row.error);
    EXPECT_EQ(ZENTMBBinaryCompare_8(1, a, row.alen, b, row.blen, nullptr), row.exactly);
    EXPECT_EQ(qstricmp_A(a, row.alen, b, row.blen, &error), row.ignoringCase == 0);
    EXPECT_EQ(error, row.error);
  }
  EXPECT_EQ(strnicmp_8("ABc", "abd", 2), 0);
  EXPECT_EQ(strnicmp_8("ABc", "abd", 3), -1);
}

// In Shift-JIS a backslash is the second byte of a character too.
TEST(CodePage, IsThatOfTheDefaultConverter) {
  UConverter* const first = ZENTMBGetDefaultConverter();
  const std::unique_ptr<UConverter, decltype(&ucnv_close)> japanese(ZENTMBConverterNew_A("932"), ucnv_close);
  ZENTMBSetDefaultConverter(japanese.get());
  ZENTMBSetDefaultCollator(nullptr);
  const std::string text = "\x95\x5C\\\xB1\x93\xFA";  // U+8868, backslash, U+FF71, U+65E5
  EXPECT_EQ(SearchChar_C(text.c_str(), U'\\', 0), text.c_str() + 2);
  EXPECT_EQ(strrchr_C(text.c_str(), U'\uFF71'), text.c_str() + 3);
  EXPECT_EQ(strchr_A(text.c_str(), U'\\'), text.c_str() + 1) << "the mode is still UTF-8";
  SetUTF8mode(0);
  EXPECT_EQ(strchr_A(text.c_str(), U'\\'), text.c_str() + 2);

  const struct {
    const char* text;
    int n, valid;
    UChar32 code;
    int length;
  } kRows[] = {
      {"\x95\x5C\\", -1, 3, 0x8868, 2}, {"\x95\x5C\\", 1, 0, -1, 1}, {"\xB1\x93", -1, 1, 0xFF71, 1},
      {"a\xFF\x62", 3, 1, U'a', 1},     {"\xFF", -1, 0, -1, 1},      {"", 5, 0, -1, 0},
      {"ab\0c", 4, 2, U'a', 1},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(ZENTMBValidCount_C(nullptr, row.text, row.n), row.valid) << row.text;
    int length = -1;
    EXPECT_EQ(ZENTMBU32Get_C(japanese.get(), row.text, row.n, &length), row.code) << row.text;
    EXPECT_EQ(length, row.length) << row.text;
  }
  int error = -1;
  EXPECT_TRUE(qstricmp_A("\x83\xB6", 2, "\x83\xD6", 2, &error)) << "capital and small omega";
  EXPECT_EQ(error, 0);
  EXPECT_EQ(strnicmp_C("a\x93\xFA", "A\x93\xFB", 2), 0) << "the same byte of a cut character";
  ZENTMBSetDefaultConverter(first);
}

TEST(CodePage, LengthsInTheCLocale) {
  ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
  EXPECT_EQ(mbclen_C("a"), 1);
  SetUTF8mode(0);
  EXPECT_EQ(mbclen_A("\xF0\x9F\x98\x80"), mbclen_C("\xF0\x9F\x98\x80"));
  EXPECT_LT(mbclen_A("\xF0\x9F\x98\x80"), mbclen_8("\xF0\x9F\x98\x80"));
}

}  // namespace
