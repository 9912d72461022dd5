#include "translate/Documents.h"

using namespace KxVeyra_940;
using namespace veyra_tests;

namespace {

constexpr char kCategorical[] = "optype='categorical' dataType='string'";
constexpr char kNumericCategories[] = "optype='ordinal' dataType='integer'";
constexpr char kContinuous[] = "optype='continuous' dataType='double'";
constexpr char kDays[] = "optype='continuous' dataType='dateDaysSince[1960]'";

std::string Extension(const std::string& name, const std::string& value) {
  return "<Extension name='" + name + "' value='" + value + "'/>";
}

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
  struct Row {
    const char* attributes;
    const char* content;
    ScoreDictVar::VariableType type;
    int detail;  // numeric data type or date-time type
  };
  const Row kRows[] = {
      {"dataType='string'", "", ScoreDictVar::STRING_VAR, 0},
      {"dataType='integer'", "", ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::kInteger},
      {"dataType='double'", "", ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::kDouble},
      {"dataType='float'", "", ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::kNumericUnspecified},
      {"dataType='boolean'", "", ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::kNumericUnspecified},
      {"", "", ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::kNumericUnspecified},
      {"dataType='date'", "", ScoreDictVar::kDATETIME_VAR, ScoreDictVar::kDate},
      {"dataType='dateTime'", "", ScoreDictVar::kDATETIME_VAR, ScoreDictVar::kDateTime},
      {"dataType='timeSeconds'", "", ScoreDictVar::kDATETIME_VAR, ScoreDictVar::kTimeSeconds},
      {"dataType='dateTimeSecondsSince[1980]'", "", ScoreDictVar::kDATETIME_VAR,
       ScoreDictVar::kDateTimeSecondsSince1980},
      {"dataType='double' x-storageType='string'", "", ScoreDictVar::STRING_VAR, 0},
      {"dataType='string' x-storageType='numeric'", "", ScoreDictVar::STRING_VAR, 0},
      {"dataType='integer'", "<Extension><Extension name='x-storageType' value='string'/></Extension>",
       ScoreDictVar::STRING_VAR, 0},
      {"dataType='integer'",
       "<Extension name='x-storageType' value='numeric'/><Extension name='x-storageType' value='string'/>",
       ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::kInteger},
      {"dataType='integer' x-storageType='numeric'", "<Extension name='x-storageType' value='string'/>",
       ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::kInteger},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.attributes);
    const Field x(std::string("optype='categorical' ") + row.attributes, row.content);
    EXPECT_EQ(x->GetVarType(), row.type);
    EXPECT_EQ(int{x->GetNumericDataType()} + int{x->GetDateTimeType()}, row.detail);
  }
}

TEST(PMMLDataDictionary, ExtensionsSetWhatTheySay) {
  const Field x(std::string(kCategorical) + " displayName='Ex'",
                Extension("width", "0") + Extension("stringLength", "12") + Extension("width", "-1") +
                    Extension("decimals", "0") + Extension("decimals", "-2") + Extension("format", "3") +
                    Extension("flagTypeTrueValue", "b") + Extension("unknown", "") +
                    "<Value value='b'><Extension name='measure' value='flag'>"
                    "<UsageType value='disable'/></Extension></Value>" +
                    Extension("noSpaceTrim", "true") + Extension("emptyStringOk", "false"));
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

  const Field y(kContinuous, Extension("width", "-3") + Extension("decimals", "-2") +
                                 Extension("x-measure", "scale") +
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
  struct Row {
    const char* attributes;
    std::string content;
    const char* labels;
    const char* missing;
  };
  const Row kRows[] = {
      {kCategorical, "<Value value='b' displayValue='Bee'/><Value value='a' property='valid'/>", "b=Bee a=a",
       "none"},
      {kCategorical, "<Value value=''/><Value value='? ' property='invalid'/>", "=", "['? ', '? ']"},
      {kCategorical, "", "none", "none"},
      {kCategorical,
       "<Value value='a'/><Value value='a ' displayValue=''/>" + Extension("noSpaceTrim", "true"),
       "a=a a =a ", "none"},
      {kNumericCategories, "<Value value=' 1 '/><Value value='9' property='missing'/>", "1= 1 ", "[9, 9]"},
      {kNumericCategories,
       "<Value value='9' property='missing'/><Value value='9' property='missing'/>"
       "<Value value='8' property='invalid'/>",
       "none", "[9, 9] [8, 8]"},
      // A category inside a missing range is still a category.
      {kNumericCategories, "<Value value='5'/>" + Extension("invalidRangeLower", "0"), "5=5", "[0, inf]"},
      {kContinuous, "<Value value='5' displayValue='five'/><Value value='9' property='missing'/>", "5=five",
       "[9, 9]"},
      {kDays, "<Value value='3654'/><Value value='3653' property='missing'/>", "1970-1-2=3654", "[0, 0]"},
      {kContinuous, "<Interval closure='closedOpen' leftMargin='0' rightMargin='10'/>", "none",
       "[-inf, 0) [10, inf]"},
      {kContinuous, "<Interval closure='closedClosed' leftMargin='-1' rightMargin='1'/>", "none",
       "[-inf, -1.0000000000000011) (1.0000000000000011, inf]"},
      {kContinuous, "<Interval closure='openClosed' rightMargin='0'/>", "none", "(0, inf]"},
      {kContinuous, "<Interval closure='openOpen' leftMargin='5'/>", "none", "[-inf, 5]"},
      {kContinuous, "<Interval leftMargin='5' rightMargin=''/>", "none", "[-inf, 5]"},
      {kContinuous, "<Interval/>", "none", "none"},
      {kContinuous, Extension("invalidRangeLower", "-9"), "none", "[-9, inf]"},
      {kContinuous, Extension("invalidRangeUpper", "-9"), "none", "[-inf, -9]"},
      {kContinuous, Extension("invalidRangeUpper", "3") + Extension("invalidRangeLower", "1"), "none",
       "[1, 3]"},
      {kContinuous,
       "<Extension><X-DataField><Interval closure='closedOpen' leftMargin='1' rightMargin='2'/></X-DataField>"
       "</Extension><Extension><X-DataField/></Extension><Extension><Other/></Extension>",
       "none", "[1, 2)"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.content);
    const Field x(row.attributes, row.content);
    EXPECT_EQ(Labels(*x), row.labels);
    EXPECT_EQ(MissingRanges(*x), row.missing);
    EXPECT_EQ(x->IsEmptyCateValues(), Labels(*x) == "none");
  }
}

TEST(PMMLDataDictionary, EncodersCountInTheOrderOfTheValues) {
  const std::string content = "<Value value='b'/><Value value=''/><Value value='a '/>";
  const Field x(kCategorical, content, true);
  const ScoreEncoder* encoder = x->GetEncoder();
  ASSERT_NE(encoder, nullptr);
  EXPECT_EQ(encoder->GetNumberOfCategories(), 3);
  EXPECT_EQ(encoder->EncodeConst(std::string("a")), 2);
  EXPECT_EQ(encoder->EncodeConst(std::string(" ")), -1);
  EXPECT_EQ(Field(kCategorical, content)->GetEncoder(), nullptr);
  const Field noTrim(kCategorical, content + Extension("noSpaceTrim", "true"), true);
  EXPECT_EQ(noTrim->GetEncoder()->EncodeConst(std::string("a")), -1);

  const Field n(kNumericCategories, "<Value value='3'/><Value value='1'/>", true);
  EXPECT_EQ(n->GetEncoder(), nullptr);
  EXPECT_TRUE(PMMLTranslator::SetupCatEncoder(&*n));
  EXPECT_TRUE(PMMLTranslator::SetupCatEncoder(&*n));
  EXPECT_EQ(n->GetEncoder()->GetEncoderType(), ScoreEncoder::kCatNumericEncoder);
  EXPECT_EQ(n->GetEncoder()->EncodeConst(std::string("1")), 1);
  EXPECT_FALSE(PMMLTranslator::SetupCatEncoder(&*Field(kContinuous, "")));
}

TEST(PMMLDataDictionary, BrokenFieldsAreRefused) {
  struct Row {
    const char* attributes;
    std::string content;
    const char* want;
  };
  const Row kRows[] = {
      {"", "", "260120 optype|DataField"},
      {"optype=''", "", "260285 optype|DataField"},
      {"optype='nominal'", "", "260152 nominal|optype"},
      {"optype='continuous' dataType='string'", "<Value/>", "260211 continuous|optype|string|dataType"},
      {"optype='continuous' x-storageType='string'", "", "260211 continuous|optype|string|dataType"},
      {kContinuous, Extension("x-measure", "flag"), "260282 flag|categorical"},
      {kCategorical, "<Value value='1'/><Value value='2'/><Value value='3'/>" + Extension("measure", "flag"),
       "260271 categorical|flag"},
      {kCategorical, "<Interval/>", "260172 Interval|Extension, Value"},
      {kCategorical, "<Value/>", "260120 value|Value"},
      {kContinuous, "<Value property='missing'/>", "260120 value|Value"},
      {kCategorical, "<Value value='a' property='odd'/>", "260153 odd|property|Value"},
      {kContinuous, "<Value value='1' property='odd'/>", "260153 odd|property|Value"},
      {kNumericCategories, "<Value value='' property='missing'/>", "260153 |value|MapValues"},
      {kNumericCategories, "<Value value=''/>", "260153 |value|MapValues"},
      {"optype='ordinal' x-storageType='numeric'", "<Value value=''/>", "260153 |value|MapValues"},
      {"optype='ordinal'", "<Value value='1'/><Value value=''/>", "260153 |value|MapValues"},
      {"optype='ordinal'", "<Value value=''/>", "260151 |double"},
      {kNumericCategories, "<Value value='one'/>", "260151 one|double"},
      {kContinuous, "<Value value=''/>", "260285 value|Value"},
      {"optype='continuous'", "<Value value=''/>", "260151 |double"},
      {kContinuous, "<Value value='' property='invalid'/>", "260151 |double"},
      {kDays, "<Value value=''/>", "260151 |double"},
      {"optype='ordinal' dataType='date'", "<Value value='2020-02-29'/>", "260151 2020-02-29|double"},
      {kContinuous, "<Interval leftMargin='x'/>", "260151 x|double"},
      {kContinuous, "<Interval leftMargin='1'/><Interval/>", "260272 Interval|DataField"},
      {kContinuous, Extension("invalidRangeLower", "1") + Extension("invalidRangeLower", "1"),
       "260272 invalidRangeLower, invalidRangeUpper|Value"},
      {kCategorical, Extension("format", "x"), "260151 x|integer"},
      {kCategorical, Extension("width", "1.5"), "260151 1.5|integer"},
      {kContinuous, Extension("decimals", ""), "260151 |integer"},
      {kContinuous, Extension("invalidRangeUpper", "x"), "260151 x|double"},
      {kCategorical, "<Value value='A'/><Value value='a' property='missing'/>", "260213 a"},
      {kCategorical,
       "<Value value='stra\xC3\x9F"
       "e \xC3\x84'/><Value value='STRASSE \xC3\xA4' property='invalid'/>",
       "260213 STRASSE \xC3\xA4"},
      {kContinuous, "<Value value='9'/><Value value='9' property='missing'/>", "260213 9"},
      {kCategorical, "<Value value='a' displayValue='Ay'/><Value value='a ' property='missing'/>",
       "260294 Ay|x"},
      {kCategorical, "<Value value='' displayValue='empty'/><Value value=' ' property='invalid'/>",
       "260294 empty|x"},
      {kNumericCategories, "<Value value='-1.7976931348623157e308' displayValue='none'/>", "260294 none|x"},
      {kCategorical, "<Value value='a'/><Value value='b'/><Value value='a  '/>",
       "260203 value|a  |DataDictionary"},
      {kNumericCategories, "<Value value='3'/><Value value='1'/><Value value='3.00000000000001'/>",
       "260203 value|3|DataDictionary"},
      {kDays, "<Value value='3653'/><Value value='3653.0'/>", "260203 value|1970-1-1|DataDictionary"},
  };
  for (const Row& row : kRows) {
    const std::string xml = OneField(row.attributes, row.content);
    EXPECT_EQ(Refusal([&] { ParseDictionary(xml); }), row.want) << xml;
  }
  // Ten lower bounds are not an upper one.
  std::string lowers;
  for (int i = 0; i < 10; ++i) lowers += Extension("invalidRangeLower", "1");
  EXPECT_EQ(Refusal([&] { ParseDictionary(OneField(kContinuous, lowers)); }),
            "260272 invalidRangeLower, invalidRangeUpper|Value");
}

TEST(PMMLDataDictionary, BrokenDictionariesAreRefused) {
  const std::string age = "<DataField name='age' optype='continuous'/>";
  struct Row {
    std::string attributes;
    std::string content;
    const char* want;
  };
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
}

// Both would take minutes if anything compared all pairs.
TEST(PMMLDataDictionary, SizeIsNoConcern) {
  constexpr int kCount = 100000;
  for (const char* attributes : {kCategorical, kNumericCategories, kDays}) {
    SCOPED_TRACE(attributes);
    std::ostringstream values;
    values << Extension("invalidRangeLower", "0");
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
