// UTF-16 and UTF-8 texts, and the transcoder, with ill-formed and unconvertible input.

#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "xml/VeyraString.h"
#include "xml/VeyraTranscoder.h"
#include "xml/XercesWrapper.h"
#include "xml/XmlText.h"

namespace {

using namespace KxVeyra_940;
using namespace KxXML_940;
using namespace std::string_literals;

TEST(XmlText, ConvertsAndReplaces) {
  const struct {
    const char* what;
    std::u16string utf16;
    std::string utf8;
    std::size_t wellFormed;  // units
  } kRows[] = {
      {"empty", u"", "", 0},
      {"ASCII", u"abc", "abc", 3},
      {"two, three and four bytes", u"\u00e4\u20ac\U0001F600", "\u00e4\u20ac\U0001F600", 4},
      {"the last characters of each length", u"\x7f\u07ff\uffff\U0010FFFF", "\x7f\u07ff\uffff\U0010FFFF", 5},
      {"a high surrogate at the end", u"a\xD83D", "a\uFFFD", 1},
      {"a high surrogate before a letter", u"\xD83Dz", "\uFFFDz", 0},
      {"a low surrogate", u"ab\xDE00z", "ab\uFFFDz", 2},
      {"surrogates in the wrong order", u"\xDE00\xD83D", "\uFFFD\uFFFD", 0},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ToUTF8(row.utf16), row.utf8);
    EXPECT_EQ(WellFormedPrefix(row.utf16), row.wellFormed);
    if (row.wellFormed == row.utf16.size()) {
      EXPECT_EQ(ToUTF16(row.utf8), row.utf16);
    }
  }
  EXPECT_EQ(ToUTF8(static_cast<const XMLCh*>(nullptr)), "");
}

TEST(XmlText, ReplacesIllFormedUTF8) {
  const struct {
    const char* what;
    std::string utf8;
    std::u16string want;
    std::size_t wellFormed;  // bytes
  } kRows[] = {
      {"a cut sequence", "a\xE2\x82", u"a\uFFFD", 1},
      {"a lone trail byte", "\x80z", u"\uFFFDz", 0},
      {"an overlong slash", "\xC0\xAF", u"\uFFFD\uFFFD", 0},
      {"beyond Unicode", "ab\xF5", u"ab\uFFFD", 2},
      {"a surrogate", "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", 0},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ToUTF16(row.utf8), row.want);
    EXPECT_EQ(WellFormedPrefix(row.utf8), row.wellFormed);
  }
}

TEST(XmlText, ComparesInPlace) {
  const struct {
    const char16_t* text;
    std::string name;
    bool asAscii;
    bool asUTF8;
  } kRows[] = {
      {u"PMML", "PMML", true, true},
      {u"PMML", "PMM", false, false},
      {u"PMM", "PMML", false, false},
      {u"pmml", "PMML", false, false},
      {u"", "", true, true},
      {nullptr, "", true, true},
      {nullptr, "a", false, false},
      {u"\u00e4", "\u00e4", false, true},
      {u"\u00e4", "\xE4", false, false},
      {u"\U0001F600", "\U0001F600", false, true},
      {u"\xD83D", "\uFFFD", false, false},
      {u"\u0141", "A", false, false},
      {u"a", "a\xFF", false, false},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(EqualsAscii(row.text, row.name.c_str()), row.asAscii) << row.name;
    EXPECT_EQ(EqualsUTF8(row.text, row.name), row.asUTF8) << row.name;
  }
}

TEST(VeyraStringTest, NullAndEmpty) {
  VeyraString text;
  EXPECT_TRUE(text.empty() && text.length() == 0 && text.xc_str() == nullptr);
  EXPECT_FALSE(text == VeyraString());
  EXPECT_TRUE(text.equals(nullptr) && text.equals(u""));
  EXPECT_FALSE(text.ContainsString(u""));
  EXPECT_EQ(text.toUTF8(), "");
  text.append(u"");
  text.append(static_cast<const char16_t*>(nullptr));
  text.append(static_cast<const char*>(nullptr));
  text.append("");
  text.append(u'\0');
  text.append(VeyraString(u""));
  text.truncateString(3);
  EXPECT_EQ(text.replaceSubstring(u"a", u"b"), 0);
  EXPECT_EQ(text.xc_str(), nullptr);
  text.assign(u"");
  EXPECT_NE(text.xc_str(), nullptr);
  EXPECT_TRUE(text.empty() && text == VeyraString(u"") && text.equals(nullptr));
  text.assignUTF8("");
  EXPECT_EQ(text.xc_str(), nullptr);
  EXPECT_EQ(VeyraString(static_cast<const char*>(nullptr)).xc_str(), nullptr);
}

TEST(VeyraStringTest, AppendsAndAssigns) {
  VeyraString text;
  text.append(u"ab");
  text.append(u'c');
  text.append("d\u00e4");
  text.append(text);
  EXPECT_TRUE(text.equals(u"abcd\u00e4abcd\u00e4"));
  text = text.xc_str() + 5;
  EXPECT_TRUE(text.equals(u"abcd\u00e4")) << "a part of a text may be assigned to it";
  VeyraString copy(text);
  const VeyraString& same = text;
  text = same;
  copy.append(u'!');
  EXPECT_EQ(text.toUTF8(), "abcd\u00e4");
  EXPECT_FALSE(copy == text);
  text = u'x';
  EXPECT_EQ(text.toUTF8(), "x");
  text = static_cast<const char16_t*>(nullptr);
  EXPECT_EQ(text.xc_str(), nullptr);
}

TEST(VeyraStringTest, Replaces) {
  const struct {
    const char16_t *text, *from, *to, *want;
    int count;
  } kRows[] = {
      {u"banana", u"an", u"AN", u"bANANa", 2},
      {u"banana", u"a", u"xyz", u"bxyznxyznxyz", 3},
      {u"banana", u"q", u"x", u"banana", 0},
      {u"banana", u"an", nullptr, u"ba", 2},
      {u"aaa", u"aa", u"b", u"ba", 1},
      {u"aaa", u"aaaa", u"b", u"aaa", 0},
      {u"banana", u"", u"x", u"banana", 0},
      {u"banana", nullptr, u"x", u"banana", 0},
      {u"aa", u"a", u"", u"", 2},
  };
  for (const auto& row : kRows) {
    VeyraString text(row.text);
    EXPECT_EQ(text.replaceSubstring(row.from, row.to), row.count);
    EXPECT_TRUE(text.equals(row.want)) << text.toUTF8();
  }
}

TEST(VeyraStringTest, TruncatesSearchesAndCounts) {
  const std::pair<unsigned, const char16_t*> kCuts[] = {{0, u"abcde"}, {2, u"abc"}, {5, u""}, {9, u""}};
  for (const auto& [count, want] : kCuts) {
    VeyraString text(u"abcde");
    text.truncateString(count);
    EXPECT_TRUE(text.equals(want)) << count;
  }
  const VeyraString text(u"abcde");
  EXPECT_TRUE(text.ContainsString(u"") && text.ContainsString(u"de") && text.ContainsString(u"abcde"));
  EXPECT_FALSE(text.ContainsString(u"abcdef") || text.ContainsString(u"ed") || text.ContainsString(nullptr));
  const std::pair<const char*, unsigned> kNumbers[] = {
      {"0042", 42}, {"4294967295", 4294967295u}, {"4294967298", 2}};
  for (const auto& [digits, want] : kNumbers) EXPECT_EQ(VeyraString(digits).convertToInteger(), want);
  for (const char* const none : {"4 2", "-5", "12a", "", "\u0663"})
    EXPECT_EQ(VeyraString(none).convertToInteger(), 0u) << none;
}

TEST(VeyraStringTest, StopsAtIllFormedText) {
  const std::u16string units = std::u16string(5000, u'\u20ac') + u"\xD83D" + u"rest";
  EXPECT_EQ(VeyraString(units.c_str()).toUTF8().size(), 15000u);
  VeyraString text;
  text.assignUTF8(std::string(5000, 'a') + "\xE2\x82");
  EXPECT_EQ(text.length(), 5000u);
}

TEST(Transcoder, ConvertsUpToWhatItCannot) {
  const XercesWrapper guard(false);
  const struct {
    const char *what, *encoding;
    const char16_t* utf16;  // null: only the bytes are converted
    std::string bytes;
    std::u16string back;
  } kRows[] = {
      {"ASCII through UTF-8", "UTF-8", u"abc", "abc", u"abc"},
      {"UTF-8", "utf-8", u"a\u00e4\u20ac\U0001F600", "a\u00e4\u20ac\U0001F600", u"a\u00e4\u20ac\U0001F600"},
      {"UTF-8, lone high surrogate at the end", "UTF-8", u"a\u00e4\xD83D", "a\u00e4", u"a\u00e4"},
      {"Latin 1", "ISO-8859-1", u"a\u00e4z", "a\xE4z", u"a\u00e4z"},
      {"Latin 1 has no euro", "ISO-8859-1", u"a\u00e4\u20acz", "a\xE4", u"a\u00e4"},
      {"nor an emoji", "ISO-8859-1", u"\u00e4\U0001F600z", "\xE4", u"\u00e4"},
      {"windows-1252", "windows-1252", u"\u20ac1", "\x80"s + "1", u"\u20ac1"},
      {"ASCII", "US-ASCII", u"ab\u00e4", "ab", u"ab"},
      {"two bytes", "windows-31j", u"\u65e5\u672c", "\x93\xFA\x96\x7B", u"\u65e5\u672c"},
      {"two bytes, then none", "windows-31j", u"\u65e5\u672c\u05d0z", "\x93\xFA\x96\x7B", u"\u65e5\u672c"},
      {"four bytes", "GB18030", u"\U0001F600a", "\x94\x39\xFC\x36"s + "a", u"\U0001F600a"},
      {"an encoding without ASCII", "IBM037", u"AB", "\xC1\xC2", u"AB"},
      {"empty", "ISO-8859-1", u"", "", u""},
      {"cut UTF-8", "UTF-8", nullptr, "ab\xE2\x82", u"ab"},
      {"an ill-formed byte", "UTF-8", nullptr, "ab\xFFz", u"ab"},
      {"at the start", "UTF-8", nullptr, "\x80", u""},
      {"a byte beyond ASCII", "US-ASCII", nullptr, "ab\xE4z", u"ab"},
      {"one of two bytes", "windows-31j", nullptr, "\x93\xFA\x96", u"\u65e5"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    const VeyraTranscoder transcoder(row.encoding);
    if (row.utf16 != nullptr) {
      EXPECT_EQ(transcoder.transcodeTo(row.utf16), row.bytes);
    }
    const std::unique_ptr<char16_t[]> back(transcoder.ChangeChar2XML(row.bytes.c_str()));
    EXPECT_EQ(std::u16string(back.get()), row.back);
  }
}

// The state of an encoding, and what a text left unfinished, do not reach the next text; a text in an
// encoding with shift sequences is ended by its last one.
TEST(Transcoder, EveryTextIsConvertedForItself) {
  const XercesWrapper guard(false);
  const std::string japanese = "\x1B$BF|\x1B(B";
  const struct {
    const char* encoding;
    std::vector<std::pair<std::u16string, std::string>> texts;   // to bytes and back
    std::vector<std::pair<std::string, std::u16string>> broken;  // to text only
  } kRows[] = {
      {"Shift_JIS",
       {{u"bc\u65e5", "bc\x93\xFA"}},
       {{"a\x93", u"a"}, {"A\xFD"s + "B", u"A"}, {"\x93\xFA\xFF", u"\u65e5"}}},
      {"ISO-2022-JP",
       {{u"\u65e5", japanese}, {u"a\u65e5", "a" + japanese}, {u"b", "b"}},
       {{"a\x1B$BF", u"a"}}},
      {"UTF-7", {{u"a\u00e9", "a+AOk-"}, {u"b", "b"}, {u"\u00e9", "+AOk-"}}, {{"a+AO", u"a"}}},
      {"GB18030", {{u"\U0001F600", "\x94\x39\xFC\x36"}}, {{"A\xFF"s + "B", u"A"}, {"A\x94\x39", u"A"}}},
      {"Big5", {{u"\u65e5", "\xA4\xE9"}}, {{"A\xA4 B", u"A"}}},
      {"EUC-JP", {{u"\u65e5", "\xC6\xFC"}}, {{"A\xFF"s + "B", u"A"}}},
      {"EUC-KR", {{u"\u65e5", "\xEC\xED"}}, {{"A\xFF"s + "B", u"A"}}},
      {"GBK", {{u"\u65e5", "\xC8\xD5"}}, {{"A\xC8 B", u"A"}}},
  };
  for (const auto& row : kRows) {
    const VeyraTranscoder transcoder(row.encoding);
    ASSERT_TRUE(transcoder.IsKnown()) << row.encoding;
    const auto back = [&](const std::string& bytes) {
      const std::unique_ptr<char16_t[]> text(transcoder.ChangeChar2XML(bytes.c_str()));
      return std::u16string(text.get());
    };
    for (int round = 0; round < 2; ++round) {
      for (const auto& [bytes, text] : row.broken) {
        EXPECT_EQ(back(bytes), text) << row.encoding;
        for (const auto& [whole, encoded] : row.texts) {
          EXPECT_EQ(transcoder.transcodeTo(whole.c_str()), encoded) << row.encoding;
          EXPECT_EQ(back(encoded), whole) << row.encoding;
        }
      }
    }
  }
}

// A converter keeps back bytes that do not fit its output: a character at the end of a chunk was lost.
TEST(Transcoder, LosesNothingBetweenChunks) {
  const XercesWrapper guard(false);
  std::mt19937 random(940);
  for (const char* const encoding : {"UTF-8", "windows-31j", "GB18030", "UTF-16LE", "ISO-8859-1"}) {
    const VeyraTranscoder transcoder(encoding);
    for (int i = 0; i < 50; ++i) {
      std::u16string text;
      for (auto units = random() % 4000; units > 0; --units) {
        const char16_t* const kCharacters[] = {u"a", *encoding == 'I' ? u"\u00e4" : u"\u65e5",
                                               *encoding == 'U' || *encoding == 'G' ? u"\U0001F600" : u"b"};
        text += kCharacters[random() % 3];
      }
      const std::string bytes = transcoder.transcodeTo(text.c_str());
      if (std::string_view(encoding) == "UTF-16LE") {
        EXPECT_EQ(bytes.size(), text.size() * 2);
        continue;
      }
      const std::unique_ptr<char16_t[]> back(transcoder.ChangeChar2XML(bytes.c_str()));
      ASSERT_EQ(std::u16string(back.get()), text) << encoding;
    }
  }
}

TEST(Transcoder, ConvertsNothingWhenUnknown) {
  EXPECT_FALSE(VeyraTranscoder("UTF-8").IsKnown()) << "the parser platform is down";
  const XercesWrapper guard(false);
  for (const char* const encoding : {"", "none", "\xE4"}) {
    const VeyraTranscoder transcoder(encoding);
    EXPECT_FALSE(transcoder.IsKnown()) << encoding;
    EXPECT_EQ(transcoder.transcodeTo(u"a"), "");
    EXPECT_EQ(transcoder.ChangeChar2XML("a"), nullptr);
  }
  const VeyraTranscoder known("UTF-8");
  EXPECT_EQ(known.transcodeTo(nullptr), "");
  EXPECT_EQ(known.ChangeChar2XML(nullptr), nullptr);
}

}  // namespace
