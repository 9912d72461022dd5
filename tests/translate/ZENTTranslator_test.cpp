#include "translate/ZENTTranslator.h"

#include "data/DictVar.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "translate/Documents.h"
#include "veyra/ScoreVarStats.h"
#include "vocabulary/ZENTModelTags.h"

using namespace KxVeyra_940;
using namespace veyra_tests;

namespace {

constexpr char kAge[] = "name='x' storage-type='NUMERIC' measurement-level='CONTINUOUS'";
constexpr char kCode[] = "name='x' storage-type='NUMERIC' measurement-level='ORDINAL'";
constexpr char kText[] = "name='x' storage-type='STRING' measurement-level='NOMINAL'";

std::string Variable(const std::string& attributes, const std::string& content = "") {
  return "<variable " + attributes + ">" + content + "</variable>";
}

std::unique_ptr<ScoreDictionary> Parse(const std::string& content, const std::string& encoding = "") {
  const Document document("<dictionary>" + content + "</dictionary>");
  ZENTTranslator translator(encoding);
  return std::unique_ptr<ScoreDictionary>(translator.ParseDictionary(document.Root()));
}

// The only variable of a dictionary, with the dictionary that owns it.
class One {
 public:
  One(const std::string& attributes, const std::string& content = "")
      : fDictionary(Parse(Variable(attributes, content))) {}
  ScoreDictVar* operator->() const { return fDictionary->GetVar("x"); }
  ScoreDictVar& operator*() const { return *fDictionary->GetVar("x"); }

 private:
  std::unique_ptr<ScoreDictionary> fDictionary;
};

TEST(ZENTTranslator, TypesFollowStorageAndLevel) {
  const struct {
    const char *storage, *level;
    ScoreDictVar::VariableType type;
    ScoreDictVar::MeasureLevel mLevel;
    bool hasEncoder;
  } kRows[] = {
      {"NUMERIC", "CONTINUOUS", ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::kContinuous, false},
      {"NUMERIC", "NOMINAL", ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::kNominal, false},
      {"string", "ORDINAL", ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::kOrdinal, false},
      {"STRING", "ORDINAL", ScoreDictVar::STRING_VAR, ScoreDictVar::kOrdinal, true},
      {"STRING", "NOMINAL", ScoreDictVar::STRING_VAR, ScoreDictVar::kNominal, true},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(std::string(row.storage) + row.level);
    const One x(std::string("name='x' storage-type='") + row.storage + "' measurement-level='" + row.level +
                "'");
    EXPECT_EQ(x->GetVarType(), row.type);
    EXPECT_EQ(x->GetMLevel(), row.mLevel);
    EXPECT_EQ(x->GetEncoder() != nullptr, row.hasEncoder);
    EXPECT_EQ(x->GetLabel(), "x");
    EXPECT_EQ(x->GetVarStats(), nullptr);
    EXPECT_EQ(x->GetMissingValues(), nullptr);
    EXPECT_EQ(x->GetValueLabels(), nullptr);
  }
}

TEST(ZENTTranslator, ChildrenOfAVariableComeInAnyOrder) {
  const One x(std::string(kCode) + " label='Ex'",
              "<categories><category value='1' display-value='one'/><category value='2' "
              "display-value=''/></categories>"
              "<var-stats minimum='1' standard-deviation='0.5' maximum='2.5'/>"
              "<missing-values><range><category value='8'/><any value='9'/><ignored/></range>"
              "<category value='-1'/></missing-values>"
              "<format-spec width=' 8 ' decimals='+2'/>");
  EXPECT_EQ(x->GetLabel(), "Ex");
  EXPECT_EQ(Labels(*x), "1=one 2=2");
  EXPECT_EQ(MissingRanges(*x), "[8, 9] [-1, -1]");
  EXPECT_EQ(x->GetWidth(), 8);
  EXPECT_EQ(x->GetDecimal(), 2);
  const ScoreVarStats& statistics = *x->GetVarStats();
  EXPECT_EQ(statistics.GetMin(), 1);
  EXPECT_EQ(statistics.GetMax(), 2.5);
  EXPECT_EQ(statistics.GetMean(), NumericValue::gSysmisValue);
  EXPECT_EQ(statistics.GetStddev(), 0.5);
}

TEST(ZENTTranslator, TextsAreInTheTranslatorsEncoding) {
  const auto dictionary =
      Parse(Variable("name='\xC3\xA9' label='\xC3\xBC' storage-type='STRING' measurement-level='NOMINAL'",
                     "<categories><category value='\xC3\xA4'/></categories>"),
            "ISO-8859-1");
  const ScoreDictVar* variable = dictionary->GetVar("\xE9");
  ASSERT_NE(variable, nullptr);
  EXPECT_EQ(variable->GetLabel(), "\xFC");
  EXPECT_EQ(Labels(*variable), "\xE4=\xE4");
  const StringValue category("\xE4");
  EXPECT_EQ(variable->GetEncoder()->EncodeConst(&category), 0);
  const auto named = [](const std::string& name) {
    return Variable("name='" + name + "' storage-type='NUMERIC' measurement-level='CONTINUOUS'");
  };
  const std::string foreign = "\xE6\x97\xA5";
  EXPECT_EQ(Refusal([&] { Parse(named(foreign), "ISO-8859-1"); }), "260303 " + foreign + "|name");
  EXPECT_EQ(Refusal([&] { Parse(named("a") + named("a" + foreign), "ISO-8859-1"); }),
            "260202 a" + foreign + "|dictionary");
}

// The parts that go are released, which the leak check sees.
TEST(ZENTTranslator, OfAPartGivenTwiceTheLaterCounts) {
  const One x(kCode,
              "<missing-values><category value='8'/></missing-values><missing-values><category "
              "value='9'/></missing-values><categories><category value='1'/></categories><categories>"
              "<category value='2'/></categories><var-stats mean='1'/><var-stats mean='2'/>");
  EXPECT_EQ(MissingRanges(*x), "[9, 9]");
  EXPECT_EQ(Labels(*x), "2=2");
  EXPECT_EQ(x->GetVarStats()->GetMean(), 2);
}

TEST(ZENTTranslator, RefusesWhatTheGrammarDoesNotHave) {
  const auto in = [](const char* element, const char* content) {
    return Variable(kCode, std::string("<") + element + ">" + content + "</" + element + ">");
  };
  const std::pair<std::string, const char*> kRows[] = {
      {"", "260283 dictionary"},
      {"<!-- nothing -->text", "260283 dictionary"},
      {"<field/>", "260178 field|variable|dictionary"},
      {Variable(kAge) + "<Variable/>", "260178 Variable|variable|dictionary"},
      {"<variable storage-type='STRING'/>", "260120 name|variable"},
      {"<variable name=''/>", "260285 name|variable"},
      {"<variable name='x'/>", "260120 storage-type|variable"},
      {"<variable name='x' storage-type=''/>", "260285 storage-type|variable"},
      {Variable(kAge) + Variable(kText), "260202 x|dictionary"},
      {"<variable name='x' storage-type='s'/>", "260120 measurement-level|variable"},
      {"<variable name='x' storage-type='s' measurement-level=''/>", "260285 measurement-level|variable"},
      {"<variable name='x' storage-type='s' measurement-level='UNKNOWN'/>",
       "260152 UNKNOWN|measurement-level"},
      {"<variable name='x' storage-type='s' measurement-level='ordinal'/>",
       "260152 ordinal|measurement-level"},
      {"<variable name='x' storage-type='STRING' measurement-level='CONTINUOUS'/>",
       "260211 CONTINUOUS|measurement-level|STRING|storage-type"},
      {Variable(kAge, "<cell/>"), "260154 cell"},
      {Variable(kAge, "<format-spec width='8'/>"), "260151 |integer"},
      {Variable(kAge, "<format-spec decimals='2.0' width='8'/>"), "260151 2.0|integer"},
      {Variable(kAge, "<format-spec decimals='2' width='99999999999'/>"), "260151 99999999999|integer"},
      {Variable(kAge, "<var-stats mean='LOWEST'/>"), "260151 LOWEST|double"},
      {Variable(kAge, "<var-stats mean=''/>"), "260151 |double"},
      {Variable(kAge, "<var-stats standard-deviation='d' mean='c' maximum='b' minimum='a'/>"),
       "260151 a|double"},
      {in("missing-values", "<category/>"), "260120 value|category"},
      {in("missing-values", "<category value=''/>"), "260120 value|category"},
      {in("missing-values", "<category value='a'/>"), "260151 a|double"},
      {in("missing-values", "<value value='1'/>"), "260154 value"},
      {in("missing-values", "<range/>"), "260117 category|range"},
      {in("missing-values", "<range><category value='1'/></range>"), "260118 category|range"},
      {in("missing-values", "<range><category value='1'/><category/></range>"), "260120 value|category"},
      {in("missing-values", "<range><category value='LOWEST'/><category value='1'/></range>"),
       "260151 LOWEST|double"},
      {in("categories", "<value/>"), "260152 value|category"},
      {in("categories", "<category/>"), "260120 value|category"},
      {in("categories", "<category value=''/>"), "260151 |double"},
      {Variable(kCode, "<categories/><missing-values/>"), "260126 x"},
      {Variable(kText,
                "<categories><category value='a'/></categories>"
                "<missing-values><category value='a'/></missing-values>"),
       "260292 0|x"},
      // No rule is broken here: numbers stay categories inside a missing range.
      {Variable(kCode,
                "<missing-values><range><category value='2'/><category value='3'/></range></missing-values>"
                "<categories><category value='1'/><category value='2'/></categories>"),
       "nothing"},
      {Variable(kAge, "<categories/><missing-values/>"), "nothing"},
      {Variable(kCode, "<categories/>"), "nothing"},
  };
  for (const auto& [content, want] : kRows)
    EXPECT_EQ(Refusal([&content = content] { Parse(content); }), want) << content;

  const Document document("<zent-ml/>");
  EXPECT_EQ(Refusal([] { ZENTTranslator("").ParseDictionary(nullptr); }), "260115 dictionary|zent-ml");
}

TEST(ZENTTranslator, EncodesCategoriesInTheirOrder) {
  const One x(kText, "<categories><category value='m'/><category value='f'/></categories>");
  ASSERT_NE(x->GetEncoder(), nullptr);
  const StringValue second("f");
  EXPECT_EQ(x->GetEncoder()->EncodeConst(&second), 1);

  DictVar number("n", ScoreDictVar::kNUMERIC_VAR);
  EXPECT_FALSE(ZENTTranslator::SetupCatEncoder(&number));
  EXPECT_EQ(number.GetEncoder(), nullptr);
}

// Constants whose texts another one shares, or that look like another format's.
TEST(ZENTTranslator, HasAVocabularyOfItsOwn) {
  const std::pair<std::string, const char*> kRows[] = {
      {ZENTModelTags::XML_ATT_RM_TARGET_VAR, "target-variable-name"},
      {ZENTModelTags::XML_ATT_DM_TARGET_VAR, "target-variable-name"},
      {ZENTModelTags::XML_ATT_PC_TARGET_CAT, "target-category"},
      {ZENTModelTags::XML_ELE_PREDICTOR, "predictor"},
      {ZENTModelTags::XML_VAL_MT_LOGLIN, "log-linear"},
      {ZENTModelTags::XML_NEG_INF, "-INF"},
  };
  for (const auto& [constant, text] : kRows) EXPECT_EQ(constant, text);
}

}  // namespace
