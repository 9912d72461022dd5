#include "translate/BaseTranslator.h"

#include <climits>
#include <cmath>

#include "AllocationCounter.h"
#include "data/DateTimeValue.h"
#include "data/DictVar.h"
#include "translate/Documents.h"
#include "xml/VeyraTranscoder.h"
#include "xml/XmlText.h"

using namespace KxVeyra_940;
using namespace veyra_tests;

TEST(BaseTranslator, NumbersAreReadFromBothKindsOfText) {
  const std::pair<const char*, double> kRows[] = {
      {"1.5e-3", 1.5e-3},  {"-2", -2},        {"+7", 7},    {"3E+2", 300},     {"-1e-5", -1e-5},
      {"  12  ", 12},      {".5", 0.5},       {"1-e-5", 1}, {"1e2E3", 100},    {"-e5", 0},
      {"1e999", HUGE_VAL}, {"-0.1e+2-", NAN}, {"", NAN},    {"   ", NAN},      {"e5", NAN},
      {"5e", NAN},         {"5E", NAN},       {"5.", NAN},  {"1.e5", NAN},     {"1.E5", NAN},
      {"1e5.5", NAN},      {"1-2", NAN},      {"+-1", NAN}, {"--1", NAN},      {"1,5", NAN},
      {"1 5", NAN},        {"\t1", NAN},      {"1\n", NAN}, {"0x10", NAN},     {"inf", NAN},
      {"1e1e1", NAN},      {"1.2.3", NAN},    {"1e-", NAN}, {"\xC2\xB2", NAN},
  };
  for (const auto& [text, want] : kRows) {
    SCOPED_TRACE(text);
    const std::u16string utf16 = KxXML_940::ToUTF16(text);
    double from8 = NAN;
    double from16 = NAN;
    const std::string refusal =
        std::isnan(want) ? "260151 " + BaseTranslator::TrimBlanks(text) + "|double" : "nothing";
    EXPECT_EQ(Refusal([&, text = text] { from8 = BaseTranslator::VerifyDouble(text); }), refusal);
    EXPECT_EQ(Refusal([&] { from16 = BaseTranslator::VerifyDouble(utf16.c_str()); }), refusal);
    EXPECT_TRUE(std::isnan(want) || (from8 == want && from16 == want)) << from8 << ' ' << from16;
  }
  // Longer than any buffer for numbers.
  EXPECT_EQ(BaseTranslator::VerifyDouble((u"1" + std::u16string(100, u'0')).c_str()), 1e100);
}

TEST(BaseTranslator, WholeNumbersAreReadWithoutSpaces) {
  const std::pair<const char*, int> kRows[] = {{"-0", 0},
                                               {"+5", 5},
                                               {"-17", -17},
                                               {"007", 7},
                                               {"2147483647", INT_MAX},
                                               {"99999999999999999999", INT_MAX},
                                               {"-99999999999999999999", INT_MIN}};
  for (const auto& [text, want] : kRows) EXPECT_EQ(BaseTranslator::VerifyInt(text), want) << text;
  for (const char* text : {"", "-", "+", "5-", "+-5", "--5", " 12 ", "12 ", "1.0", "1e2", "x1"}) {
    const std::u16string utf16 = KxXML_940::ToUTF16(text);
    EXPECT_EQ(Refusal([&] { BaseTranslator::VerifyInt(utf16.c_str()); }),
              "260151 " + std::string(text) + "|integer");
  }
}

TEST(BaseTranslator, DateTimesAnswerInTheRepresentationOfTheirType) {
  const auto verify = [](const std::string& text, ScoreDictVar::DateTimeType type) {
    return BaseTranslator::VerifyDateTime(text, type);
  };
  EXPECT_EQ(verify("1970-01-02", ScoreDictVar::kDate), 86400);
  EXPECT_EQ(verify("0:1:5", ScoreDictVar::kTime), 65);
  EXPECT_EQ(verify("1970-1-1T0:0:9", ScoreDictVar::kDateTime), 9);
  EXPECT_EQ(verify("12.5", ScoreDictVar::kDateDaysSince1960), 12.5);
  EXPECT_EQ(verify("3e2", ScoreDictVar::kDateTimeSecondsSince1980), 300);
  EXPECT_EQ(Refusal([] { BaseTranslator::VerifyDateTime(u"2019-02-29", ScoreDictVar::kDate); }),
            "260151 2019-02-29|dateTime");
  EXPECT_EQ(Refusal([] { BaseTranslator::VerifyDateTime(u"x", ScoreDictVar::kTimeSeconds); }),
            "260151 x|dateTime");
}

TEST(BaseTranslator, ValuesTakeTheVariablesType) {
  const PlainTranslator translator;
  DictVar variable("x", ScoreDictVar::STRING_VAR);
  const auto make = [&](const XMLCh* text) {
    return std::unique_ptr<ScoreValue>(translator.CarefullyMakeVarValue(&variable, text));
  };
  EXPECT_EQ(make(u" 1\u20AC")->GetString(), " 1\xE2\x82\xAC");
  variable.SetVarType(ScoreDictVar::kNUMERIC_VAR);
  EXPECT_EQ(make(u" 1 ")->GetDouble(), 1);
  EXPECT_EQ(Refusal([&] { make(u"one"); }), "260151 one|double");
  variable.SetVarType(ScoreDictVar::kDATETIME_VAR);
  variable.SetDateTimeType(ScoreDictVar::kDateDaysSince1960);
  EXPECT_EQ(make(u"3654")->GetString(), "1970-1-2");
  EXPECT_EQ(Refusal([&] { make(u"1970-1-2"); }), "260151 1970-1-2|double");
  variable.SetVarType(static_cast<ScoreDictVar::VariableType>(2));
  EXPECT_EQ(make(u"1"), nullptr);
}

TEST(BaseTranslator, ChildrenAndDescendantsAreFoundByTag) {
  const Document document("<A>text<B/><!-- C --><C><B/></C></A>");
  const xercesc::DOMElement* root = document.Root();
  EXPECT_EQ(BaseTranslator::GetChildByTag(root, "C"),
            BaseTranslator::GetNextSiblingElt(BaseTranslator::GetFirstChildElt(root)));
  EXPECT_EQ(BaseTranslator::GetChildByTag(root, "c"), nullptr);
  EXPECT_EQ(BaseTranslator::GetChildTag(nullptr, u"B"), nullptr);
  EXPECT_EQ(Refusal([&] { BaseTranslator::GetChildTagForced(root, u"D"); }), "260114 D");
  EXPECT_EQ(Refusal([&] { BaseTranslator::GetChildByTagForced(nullptr, "B"); }), "260114 B");
  EXPECT_EQ(BaseTranslator::GetElementsByTagName(root, "B")->getLength(), 2u);
  EXPECT_EQ(BaseTranslator::GetElementsByTagName(document.Get(), "A")->getLength(), 1u);
  const xercesc::DOMDocument* noDocument = nullptr;
  EXPECT_EQ(Refusal([&] { BaseTranslator::GetElementsByTagName(noDocument, "B"); }), "260114 B");
}

TEST(BaseTranslator, TextsGoThroughTheEncodingAndNamesDoNot) {
  const Document document("<A/>");
  PlainTranslator translator("ISO-8859-1");
  BaseTranslator& base = translator;
  EXPECT_EQ(translator.ToUTF16("x"), nullptr);
  EXPECT_FALSE(translator.XStrEqualsUTF8Str(u"x", "x"));
  EXPECT_EQ(base.ToString(u"\u00E4"), "\xC3\xA4");

  translator.CreateTranscoder("ISO-8859-1");
  EXPECT_EQ(base.ToString(u"\u00E4"), "\xE4");
  EXPECT_EQ(translator.ToString(u"\u00E4"), "\xC3\xA4");
  EXPECT_EQ(base.ToString(nullptr), "");
  EXPECT_TRUE(translator.XStrEqualsUTF8Str(u"\u00E4", "\xE4"));
  EXPECT_FALSE(translator.XStrEqualsUTF8Str(u"\u00E4", "\xE5"));
  PlainTranslator utf8;
  utf8.CreateTranscoder("UTF-8");
  EXPECT_TRUE(utf8.XStrEqualsUTF8Str(u"ab", "ab") && utf8.XStrEqualsUTF8Str(u"", ""));
  for (const char* cut : {"ab\xFF", "ab\xC3", "ab\xFF."}) EXPECT_FALSE(utf8.XStrEqualsUTF8Str(u"ab", cut));
  EXPECT_TRUE(BaseTranslator::IsEqual(u"\u00E4", "\xC3\xA4"));
  EXPECT_FALSE(BaseTranslator::IsEqual(u"ab", "abc"));
  EXPECT_TRUE(BaseTranslator::IsEqual(translator.GetTranscoder(), u"\u00E4", "\xE4"));
  EXPECT_FALSE(BaseTranslator::IsEqual(nullptr, u"\u00E4", "\xE4"));

  // A transcoder that knows nothing would make every text of the model empty.
  EXPECT_EQ(Refusal([&] { translator.CreateTranscoder("no-such-code"); }), "260303 no-such-code|encoding");
  EXPECT_EQ(base.ToString(u"\u00E4"), "\xE4");
}

// An ASCII text goes past the converter of every encoding that contains ASCII: the value and its text are all
// that is allocated.
TEST(BaseTranslator, AnAsciiTextReachesItsValueWithOneCopy) {
  const std::u16string text(100, u'x');
  const DictVar variable("v", ScoreDictVar::STRING_VAR);
  const Document platform("<r/>");
  for (const char* encoding : {"UTF-8", "ISO-8859-1", "Shift_JIS"}) {
    SCOPED_TRACE(encoding);
    PlainTranslator translator;
    translator.CreateTranscoder(encoding);
    const AllocationCounter counter;
    const std::unique_ptr<ScoreValue> value(translator.CarefullyMakeVarValue(&variable, text.c_str()));
    EXPECT_EQ(counter.Count(), 2);
    EXPECT_EQ(value->GetString(), std::string(100, 'x'));
  }
}
