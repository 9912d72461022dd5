#include "data/DictVar.h"
#include "data/ScoreCatStringEncoder.h"
#include "translate/Documents.h"

using namespace KxVeyra_940;
using namespace veyra_tests;

namespace {

template <typename Item>
std::string Joined(const std::vector<Item>& items) {
  std::ostringstream text;
  for (const Item& item : items) text << '<' << item << '>';
  return text.str();
}

// The items, or what was raised.
template <typename Read>
std::string Outcome(Read read) {
  std::string items;
  const std::string refusal = Refusal([&] { items = Joined(read()); });
  return refusal == "nothing" ? items : refusal;
}

struct Row {
  const char *xml, *want;
};

}  // namespace

TEST(PMMLArrays, NumericArraysMustHoldAsManyItemsAsStated) {
  const Row kRows[] = {
      {"<Array n='2'>1 2.5</Array>", "<1><2.5>"},
      {"<Array>\n\t1\r\n -2e1 </Array>", "<1><-20>"},
      {"<Array n=''>1 2</Array>", "<1><2>"},
      {"<Array>1<!-- 2 --> <![CDATA[3]]></Array>", "<1><3>"},
      {"<Array>1<b/>2</Array>", "<1>"},
      {"<Array><b/>2</Array>", "260284 Value|Array"},
      {"<x-BasisRow n='7'>1 2 3</x-BasisRow>", "<1><2><3>"},
      {"<X-BasisRow>1 2 3</X-BasisRow>", "<1><2><3>"},
      {"<X-BasisRow>1 2</X-BasisRow>", "260241 3|n|2"},
      {"<Array n='3'>1 2</Array>", "260241 3|n|2"},
      {"<Array n='0'>1</Array>", "260241 0|n|1"},
      {"<Array n='-1'>1</Array>", "260241 -1|n|1"},
      {"<Array n='3'>1 x</Array>", "260241 3|n|2"},
      {"<Array n='2'>1 x</Array>", "260151 x|double"},
      {"<Array>\"1\"</Array>", "260151 \"1\"|double"},
      {"<Array n='x'/>", "260151 x|integer"},
      {"<Array/>", "260283 Array"},
      {"<Array> \n</Array>", "260284 Value|Array"},
      {"<Array><!-- 1 --></Array>", "260284 Value|Array"},
      {"<Row>1</Row>", "260172 Row|Array"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.xml);
    const Document document(row.xml);
    EXPECT_EQ(Outcome([&] { return PMMLTranslator::VerifyDoubleArray(document.Root(), 3); }), row.want);
  }
  EXPECT_EQ(Outcome([] { return PMMLTranslator::VerifyIntArray(nullptr, 0); }),
            "260114 Array, x-BasisRow,X-BasisRow");
  const Document document("<Array>1 2.0</Array>");
  EXPECT_EQ(Outcome([&] { return PMMLTranslator::VerifyIntArray(document.Root(), 0); }),
            "260151 2.0|integer");
}

TEST(PMMLArrays, TextItemsArePartedBySpacesAndQuotes) {
  const Row kRows[] = {
      {R"(<Array>"a b" c "d\"e"</Array>)", R"(<a b><c><d"e>)"},
      {R"(<Array>"" "a"b</Array>)", "<><a><b>"},
      {R"(<Array>dropped"kept"</Array>)", "<kept>"},
      {R"(<Array>\" a\"b</Array>)", R"(<a\"b>)"},
      {R"(<Array>a \"</Array>)", "<a>"},
      {R"(<Array>\a b\</Array>)", R"(<\a><b\>)"},
      {"<Array>a\tb c</Array>", "<a\tb><c>"},
      {"<Array>a\nb \n\"c\nd\"\n</Array>", "<a\nb><c\nd>"},
      {"<Array n='2'>a b\n\n</Array>", "<a><b>"},
      {"<Array>\n a\n b\n</Array>", "<a><b>"},
      {"<Array>a<![CDATA[ \"b]]> c\"</Array>", "<a><b c>"},
      {"<Array n='0'>a b</Array>", "<a><b>"},
      {"<Array>gr\xC3\xBCn</Array>", "<gr\xC3\xBCn>"},
      {"<Array type='real'>1 \"2e1\"</Array>", "<1><2e1>"},
      {"<Array type='int'>1 2\n</Array>", "<1><2>"},
      {"<Array type='real'>1 x</Array>", "260151 x|double"},
      {"<Array type='int'>1 2.0</Array>", "260151 2.0|integer"},
      {"<Array n='3'>a b</Array>", "260241 3|n|2"},
      {"<Array n='-2'>a b</Array>", "260241 -2|n|2"},
      {"<Array n='x'/>", "260151 x|integer"},
      {"<Array>a \"b c</Array>", "260156 a \"b c|Array"},
      {R"(<Array>"a\"</Array>)", R"(260156 "a\"|Array)"},
      {"<Array>  </Array>", "260284 Value|Array"},
      {"<Array/>", "260115 Array|SimpleSetPredicate"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.xml);
    const Document document(row.xml);
    EXPECT_EQ(Outcome([&] { return PlainTranslator().ParseStrArray(document.Root()); }), row.want);
  }
  EXPECT_EQ(Joined(PlainTranslator().ParseStrArray(nullptr)), "");
}

TEST(PMMLArrays, ABackslashThatIsACategoryEscapesNothing) {
  const Document document(R"(<Array>"a\" b</Array>)");
  DictVar variable("x", ScoreDictVar::STRING_VAR);
  const auto read = [&] { return PlainTranslator().GetArrayElements(document.Root(), "string", &variable); };
  EXPECT_EQ(Outcome(read), R"(260156 "a\" b|Array)");
  auto* encoder = new ScoreCatStringEncoder(2);
  variable.SetEncoder(encoder);
  encoder->Encode("\\\\");
  EXPECT_EQ(Outcome(read), R"(260156 "a\" b|Array)");
  encoder->Encode("\\");
  EXPECT_EQ(Outcome(read), R"(<a\><b>)");
}

TEST(PMMLArrays, ItemsAreInTheTranslatorsEncoding) {
  const Document document("<P><?Array no?><Array>\xC3\xA4 b</Array></P>");
  PlainTranslator translator("ISO-8859-1");
  translator.CreateTranscoder("ISO-8859-1");
  EXPECT_EQ(Joined(translator.ParseStrArray(PMMLTranslator::GetArrayNode(document.Root()))), "<\xE4><b>");
  EXPECT_EQ(Refusal([&] { PMMLTranslator::GetArrayNode(PMMLTranslator::GetArrayNode(document.Root())); }),
            "260115 Array|SimpleSetPredicate");
}
