#include "translate/Documents.h"

using namespace KxVeyra_940;
using namespace veyra_tests;

namespace {

constexpr char kText[] = "optype='categorical' dataType='string'";
constexpr char kCodes[] = "optype='ordinal' dataType='integer'";
constexpr char kReal[] = "optype='continuous' dataType='double'";
constexpr char kDays[] = "optype='continuous' dataType='dateDaysSince[1960]'";

std::string Ext(const std::string& name, const std::string& value) {
  return "<Extension name='" + name + "' value='" + value + "'/>";
}

std::string Labelled(const std::string& value, const std::string& label) {
  return "<Value value='" + value + "' displayValue='" + label + "'/>";
}
std::string Invalid(const std::string& value) { return "<Value value='" + value + "' property='invalid'/>"; }
std::string Valid(const std::string& value) { return "<Value value='" + value + "'/>"; }
std::string Missing(const std::string& value) { return "<Value value='" + value + "' property='missing'/>"; }

// Variable type, numeric data type and date-time type.
std::string TypeOf(const ScoreDictVar& x) {
  std::ostringstream text;
  text << x.GetVarType() << ' ' << x.GetNumericDataType() << ' ' << x.GetDateTimeType();
  return text.str();
}

struct Row {
  std::string attributes, content;
  const char* want;
};

// The only field of a dictionary, with the dictionary that owns it.
class Field {
 public:
  Field(const std::string& attributes, const std::string& content, bool setUpEncoders = false)
      : fDictionary(ParseDictionary(OneField(attributes, content), setUpEncoders)) {}
  ScoreDictVar* operator->() const { return fDictionary->GetVar("x"); }
  ScoreDictVar& operator*() const { return *fDictionary->GetVar("x"); }

 private:
  std::unique_ptr<ScoreDictionary> fDictionary;
};

}  // namespace

TEST(PMMLDataDictionary, TypesFollowStorageThenDataType) {
  const Row kRows[] = {
      {"dataType='string'", "", "1 0 0"},
      {"dataType='integer'", "", "0 1 0"},
      {"dataType='double'", "", "0 2 0"},
      {"dataType='float'", "", "0 0 0"},
      {"dataType='boolean'", "", "0 0 0"},
      {"", "", "0 0 0"},
      {"dataType='date'", "", "4 0 1"},
      {"dataType='dateTime'", "", "4 0 3"},
      {"dataType='timeSeconds'", "", "4 0 8"},
      {"dataType='dateTimeSecondsSince[1980]'", "", "4 0 12"},
      {"dataType='double' x-storageType='string'", "", "1 0 0"},
      {"dataType='string' x-storageType='numeric'", "", "1 0 0"},
      {"dataType='integer'", "<Extension>" + Ext("x-storageType", "string") + "</Extension>", "1 0 0"},
      {"dataType='integer'", Ext("x-storageType", "numeric") + Ext("x-storageType", "string"), "0 1 0"},
      {"dataType='integer' x-storageType='numeric'", Ext("x-storageType", "string"), "0 1 0"},
  };
  for (const Row& row : kRows)
    EXPECT_EQ(TypeOf(*Field("optype='ordinal' " + row.attributes, row.content)), row.want)
        << row.attributes << row.content;
}

TEST(PMMLDataDictionary, ExtensionsSetWhatTheySay) {
  const Field x(std::string(kText) + " displayName='Ex'",
                Ext("width", "0") + Ext("stringLength", "12") + Ext("width", "-1") + Ext("decimals", "0") +
                    Ext("decimals", "-2") + Ext("format", "3") + Ext("flagTypeTrueValue", "b") +
                    Ext("unknown", "") +
                    "<Value value='b'><Extension name='measure' value='flag'>"
                    "<UsageType value='disable'/></Extension></Value>" +
                    Ext("noSpaceTrim", "true") + Ext("emptyStringOk", "false"));
  EXPECT_EQ(x->GetLabel(), "Ex");
  EXPECT_EQ(x->GetMLevel(), ScoreDictVar::kNominal);
  EXPECT_EQ(x->GetWidth(), 12);
  EXPECT_EQ(x->GetDecimal(), 0);
  EXPECT_EQ(x->GetFalgTypeTrueValue(), "b");
  EXPECT_EQ(x->GetXMeasure(), "flag");
  EXPECT_TRUE(x->IsFlagVariable());
  EXPECT_FALSE(x->IsUsageTypeEnable());
  EXPECT_TRUE(x->GetNoSpaceTrim());
  EXPECT_TRUE(x->GetEmptyStringOK());

  const Field y(kReal, Ext("width", "-3") + Ext("decimals", "-2") + Ext("x-measure", "scale") +
                           "<Extension><UsageType value='enable'/></Extension><Other/>");
  EXPECT_EQ(y->GetLabel(), "x");
  EXPECT_EQ(y->GetWidth(), -3);
  EXPECT_EQ(y->GetDecimal(), -2);
  EXPECT_EQ(y->GetXMeasure(), "scale");
  EXPECT_FALSE(y->IsFlagVariable());
  EXPECT_TRUE(y->IsUsageTypeEnable());
  EXPECT_TRUE(y->IsEmptyCateValues());
}

TEST(PMMLDataDictionary, ValuesBecomeLabelsOrMissingRanges) {
  const struct {
    const char* attributes;
    std::string content;
    const char *labels, *missing;
  } kRows[] = {
      {kText, Labelled("b", "Bee") + "<Value value='a' property='valid'/>", "b=Bee a=a", "none"},
      {kText, Valid("") + Invalid("? "), "=", "['? ', '? ']"},
      {kText, "", "none", "none"},
      {kText, Valid("a") + Labelled("a ", "") + Ext("noSpaceTrim", "true"), "a=a a =a ", "none"},
      {kCodes, Valid(" 1 ") + Missing("9"), "1= 1 ", "[9, 9]"},
      {kCodes, Missing("9") + Missing("9") + Invalid("8"), "none", "[9, 9] [8, 8]"},
      // A category inside a missing range is still a category.
      {kCodes, Valid("5") + Ext("invalidRangeLower", "0"), "5=5", "[0, inf]"},
      {kReal, Labelled("5", "five") + Missing("9"), "5=five", "[9, 9]"},
      {kDays, Valid("3654") + Missing("3653"), "1970-1-2=3654", "[0, 0]"},
      {kReal, "<Interval closure='closedOpen' leftMargin='0' rightMargin='10'/>", "none",
       "[-inf, 0) [10, inf]"},
      {kReal, "<Interval closure='closedClosed' leftMargin='-1' rightMargin='1'/>", "none",
       "[-inf, -1.0000000000000011) (1.0000000000000011, inf]"},
      {kReal, "<Interval closure='openClosed' rightMargin='0'/>", "none", "(0, inf]"},
      {kReal, "<Interval closure='openOpen' leftMargin='5'/>", "none", "[-inf, 5]"},
      {kReal, "<Interval leftMargin='5' rightMargin=''/>", "none", "[-inf, 5]"},
      {kReal, "<Interval/>", "none", "none"},
      {kReal, Ext("invalidRangeLower", "-9"), "none", "[-9, inf]"},
      {kReal, Ext("invalidRangeUpper", "-9"), "none", "[-inf, -9]"},
      {kReal, Ext("invalidRangeUpper", "3") + Ext("invalidRangeLower", "1"), "none", "[1, 3]"},
      {kReal,
       "<Extension><X-DataField><Interval closure='closedOpen' leftMargin='1' rightMargin='2'/></X-DataField>"
       "</Extension><Extension><X-DataField/></Extension><Extension><Other/></Extension>",
       "none", "[1, 2)"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.content);
    const Field x(row.attributes, row.content);
    EXPECT_EQ(Labels(*x), row.labels);
    EXPECT_EQ(MissingRanges(*x), row.missing);
    EXPECT_EQ(x->IsEmptyCateValues(), Labels(*x) == "none");
  }
}

TEST(PMMLDataDictionary, EncodersCountInTheOrderOfTheValues) {
  const std::string content = Valid("b") + Valid("") + Valid("a ");
  const Field x(kText, content, true);
  const ScoreEncoder* encoder = x->GetEncoder();
  ASSERT_NE(encoder, nullptr);
  EXPECT_EQ(encoder->GetNumberOfCategories(), 3);
  EXPECT_EQ(encoder->EncodeConst(std::string("a")), 2);
  EXPECT_EQ(encoder->EncodeConst(std::string(" ")), -1);
  EXPECT_EQ(Field(kText, content)->GetEncoder(), nullptr);
  const Field noTrim(kText, content + Ext("noSpaceTrim", "true"), true);
  EXPECT_EQ(noTrim->GetEncoder()->EncodeConst(std::string("a")), -1);

  const Field n(kCodes, Valid("3") + Valid("1"), true);
  EXPECT_EQ(n->GetEncoder(), nullptr);
  EXPECT_TRUE(PMMLTranslator::SetupCatEncoder(&*n));
  EXPECT_TRUE(PMMLTranslator::SetupCatEncoder(&*n));
  EXPECT_EQ(n->GetEncoder()->GetEncoderType(), ScoreEncoder::kCatNumericEncoder);
  EXPECT_EQ(n->GetEncoder()->EncodeConst(std::string("1")), 1);
  EXPECT_FALSE(PMMLTranslator::SetupCatEncoder(&*Field(kReal, "")));
}

TEST(PMMLDataDictionary, BrokenFieldsAreRefused) {
  const Row kRows[] = {
      {"", "", "260120 optype|DataField"},
      {"optype=''", "", "260285 optype|DataField"},
      {"optype='nominal'", "", "260152 nominal|optype"},
      {"optype='continuous' dataType='string'", "<Value/>", "260211 continuous|optype|string|dataType"},
      {"optype='continuous' x-storageType='string'", "", "260211 continuous|optype|string|dataType"},
      {kReal, Ext("x-measure", "flag"), "260282 flag|categorical"},
      {kText, Valid("1") + Valid("2") + Valid("3") + Ext("measure", "flag"), "260271 categorical|flag"},
      {kText, "<Interval/>", "260172 Interval|Extension, Value"},
      {kText, "<Value/>", "260120 value|Value"},
      {kReal, "<Value property='missing'/>", "260120 value|Value"},
      {kText, "<Value value='a' property='odd'/>", "260153 odd|property|Value"},
      {kReal, "<Value value='1' property='odd'/>", "260153 odd|property|Value"},
      {kCodes, Missing(""), "260153 |value|MapValues"},
      {kCodes, Valid(""), "260153 |value|MapValues"},
      {"optype='ordinal' x-storageType='numeric'", Valid(""), "260153 |value|MapValues"},
      {"optype='ordinal'", Valid("1") + Valid(""), "260153 |value|MapValues"},
      {"optype='ordinal'", Valid(""), "260151 |double"},
      {kCodes, Valid("one"), "260151 one|double"},
      {kReal, Valid(""), "260285 value|Value"},
      {"optype='continuous'", Valid(""), "260151 |double"},
      {kReal, Invalid(""), "260151 |double"},
      {kDays, Valid(""), "260151 |double"},
      {"optype='ordinal' dataType='date'", Valid("2020-02-29"), "260151 2020-02-29|double"},
      {kReal, "<Interval leftMargin='x'/>", "260151 x|double"},
      {kReal, "<Interval leftMargin='1'/><Interval/>", "260272 Interval|DataField"},
      {kText, Ext("format", "x"), "260151 x|integer"},
      {kText, Ext("width", "1.5"), "260151 1.5|integer"},
      {kReal, Ext("decimals", ""), "260151 |integer"},
      {kReal, Ext("invalidRangeUpper", "x"), "260151 x|double"},
      {kText, Valid("A") + Missing("a"), "260213 a"},
      {kText, Valid("stra\u00dfe \u00c4") + Invalid("STRASSE \u00e4"), "260213 STRASSE \u00e4"},
      {kReal, Valid("9") + Missing("9"), "260213 9"},
      {kText, Labelled("a", "Ay") + Missing("a "), "260294 Ay|x"},
      {kText, Labelled("", "empty") + Invalid(" "), "260294 empty|x"},
      {kCodes, Labelled("-1.7976931348623157e308", "none"), "260294 none|x"},
      {kText, Valid("a") + Valid("b") + Valid("a  "), "260203 value|a  |DataDictionary"},
      {kCodes, Valid("3") + Valid("1") + Valid("3.00000000000001"), "260203 value|3|DataDictionary"},
      {kDays, Valid("3653") + Valid("3653.0"), "260203 value|1970-1-1|DataDictionary"},
  };
  for (const Row& row : kRows) {
    const std::string xml = OneField(row.attributes, row.content);
    EXPECT_EQ(Refusal([&] { ParseDictionary(xml); }), row.want) << xml;
  }
  // Neither two lower bounds nor ten are an upper one.
  std::string lowers = Ext("invalidRangeLower", "1");
  for (int i = 2; i <= 10; ++i) {
    lowers += Ext("invalidRangeLower", "1");
    EXPECT_EQ(Refusal([&] { ParseDictionary(OneField(kReal, lowers)); }),
              "260272 invalidRangeLower, invalidRangeUpper|Value");
  }
}

TEST(PMMLDataDictionary, BrokenDictionariesAreRefused) {
  const std::string age = "<DataField name='age' optype='continuous'/>";
  const Row kRows[] = {
      {"numberOfFields=' 2 '", age + "<Extension/><DataField name='b' optype='ordinal'/>", "nothing"},
      {"numberOfFields='+0'", "", "nothing"},
      {"numberOfFields='3'", age, "260242 3|numberOfFields|1|DataField|DataDictionary"},
      {"numberOfFields=''", age, "260285 numberOfFields|DataDictionary"},
      {"numberOfFields='x'", age, "260151 x|integer"},
      {"numberOfFields='1.0'", age, "260151 1.0|integer"},
      {"numberOfFields='  '", age, "260151   |integer"},
      {"numberOfFields='4294967297'", age, "260151 4294967297|integer"},
      {"", age, "260120 numberOfFields|DataDictionary"},
      {"", age + age, "260202 age|DataDictionary"},
      {"", "<DataField optype='continuous'/>", "260120 name|DataField"},
      {"", "<DataField name='' optype='continuous'/>", "260285 name|DataField"},
      {"", age + "<Taxonomy/>", "260178 Taxonomy|DataDictionary|Extension"},
  };
  for (const Row& row : kRows) {
    const std::string xml = "<DataDictionary " + row.attributes + ">" + row.content + "</DataDictionary>";
    EXPECT_EQ(Refusal([&] { ParseDictionary(xml); }), row.want) << xml;
  }
  PlainTranslator translator("no-such-code");
  EXPECT_EQ(Refusal([&] { translator.ParseDictionary(nullptr, true); }), "260115 DataDictionary|PMML");
  const Document document("<DataDictionary numberOfFields='0'/>");
  EXPECT_EQ(Refusal([&] { translator.ParseDictionary(document.Root(), true); }),
            "260303 no-such-code|encoding");
}

TEST(PMMLDataDictionary, TextsAreInTheTranslatorsEncodingAndMessagesInUtf8) {
  const std::string field =
      "<DataField name='\xC3\xA4' displayName='\xC3\xB6' optype='categorical' dataType='string'>";
  const std::string value = "<Value value='\xC3\xBC'/>";
  const std::string end = "</DataField></DataDictionary>";
  const std::string start = "<DataDictionary numberOfFields='1'>";
  const auto dictionary = ParseDictionary(start + field + value + end, false, "ISO-8859-1");
  ASSERT_EQ(dictionary->GetVarNames(), std::vector<std::string>{"\xE4"});
  EXPECT_EQ(dictionary->GetVar("\xE4")->GetLabel(), "\xF6");
  EXPECT_EQ(Labels(*dictionary->GetVar("\xE4")), "\xFC=\xFC");
  EXPECT_EQ(Refusal([&] { ParseDictionary(start + field + value + value + end, false, "ISO-8859-1"); }),
            "260203 value|\xC3\xBC|DataDictionary");
  const auto named = [&](const std::string& name) {
    return "<DataField name='" + name + "' optype='continuous'/>";
  };
  const std::string foreign = "\xE6\x97\xA5";
  const std::pair<std::string, std::string> kNames[] = {
      {named(foreign), "260303 " + foreign + "|name"},
      {named("a") + named("a" + foreign), "260202 a" + foreign + "|DataDictionary"},
      {named("a" + foreign) + named("b"), "nothing"},
  };
  for (const auto& [fields, want] : kNames) {
    const std::string xml = "<DataDictionary numberOfFields='" + std::to_string(want == "nothing" ? 2 : 1) +
                            "'>" + fields + "</DataDictionary>";
    EXPECT_EQ(Refusal([&] { ParseDictionary(xml, false, "ISO-8859-1"); }), want);
  }
}

// Both would take minutes if anything compared all pairs.
TEST(PMMLDataDictionary, SizeIsNoConcern) {
  constexpr int kCount = 100000;
  for (const char* attributes : {kText, kCodes, kDays}) {
    SCOPED_TRACE(attributes);
    std::ostringstream values;
    values << Ext("invalidRangeLower", "0");
    for (int i = 0; i < kCount; ++i)
      values << "<Value value='" << (i % 2 == 0 ? i : -i) << "' property='"
             << (i % 4 == 3 ? "missing" : "valid") << "'/>";
    const Field x(attributes, values.str(), true);
    EXPECT_EQ(x->GetValueLabels()->Size(), kCount * 3 / 4);
    EXPECT_EQ(x->GetMissingValues()->Size(), kCount / 4 + 1);
  }
  std::ostringstream xml;
  xml << "<DataDictionary numberOfFields='" << kCount << "'>";
  for (int i = 0; i < kCount; ++i) xml << "<DataField name='f" << i << "' optype='continuous'/>";
  const auto dictionary = ParseDictionary(xml.str() + "</DataDictionary>");
  EXPECT_EQ(dictionary->Size(), kCount);
  EXPECT_EQ(dictionary->GetVarNames().back(), "f99999");
}
