// Targets and result fields: what they make of a dictionary, and what is refused.

#include "data/ResultVar.h"
#include "translate/Documents.h"

namespace {

using namespace KxVeyra_940;
using namespace veyra_tests;

const char* const kFields =
    "<DataDictionary numberOfFields='4'><DataField name='y' optype='continuous' dataType='double'/>"
    "<DataField name='c' optype='categorical' dataType='string'><Value value='a' displayValue='A'/>"
    "<Value value='x' property='missing'/></DataField>"
    "<DataField name='o' optype='ordinal' dataType='integer'/>"
    "<DataField name='f' optype='categorical' dataType='string'><Extension name='x-measure' value='flag'/>"
    "</DataField></DataDictionary>";

std::string Target(const std::string& field, const std::string& optype, const std::string& content = "") {
  return "<Target field='" + field + "' optype='" + optype + "'>" + content + "</Target>";
}

// The dictionary after the targets.
std::unique_ptr<ScoreDictionary> Handle(const std::string& targets) {
  const Document document("<PMML>" + std::string(kFields) + "<Targets>" + targets + "</Targets></PMML>");
  PlainTranslator translator;
  std::unique_ptr<ScoreDictionary> dictionary(
      translator.ParseDictionary(BaseTranslator::GetChildByTag(document.Root(), "DataDictionary"), false));
  EXPECT_TRUE(
      translator.HandleTargets(BaseTranslator::GetChildByTag(document.Root(), "Targets"), dictionary.get()));
  return dictionary;
}

std::string Priors(const ScoreDictVar& variable) {
  if (variable.GetValueProbabilities() == nullptr) return "none";
  std::ostringstream text;
  for (const auto* prior : variable.GetValueProbabilities()->GetAllValueProbabilities())
    text << prior->GetValue()->GetString() << ':' << prior->GetProbability() << ' ';
  return text.str();
}

TEST(Targets, CompleteTheirVariables) {
  const struct {
    const char* what;
    std::string targets;
    const char *field, *labels, *priors, *defaultValue;
  } rows[] = {
      {"nothing said", Target("c", "categorical"), "c", "a=A", "none", "none"},
      {"a category that is there gets no second label, but its prior",
       Target("c", "categorical", "<TargetValue value='a' displayValue='Z' priorProbability='0.25'/>"), "c",
       "a=A", "a:0.25 ", "none"},
      {"a new category",
       Target("c", "categorical",
              "<TargetValue value='b' displayValue='B' priorProbability='0.75'/><TargetValue value='d'/>"),
       "c", "a=A b=B d=d", "b:0.75 ", "none"},
      {"a variable without categories",
       Target("o", "ordinal", "<TargetValue value='2'/><TargetValue value='1'/>"), "o", "2=2 1=1", "none",
       "none"},
      {"the last default wins",
       Target("y", "continuous",
              "<TargetValue defaultValue='3'/><TargetValue defaultValue='4'/><TargetValue/>"),
       "y", "none", "none", "4"},
      {"other elements are passed over", "<Extension/>" + Target("y", "continuous", "<Extension/>"), "y",
       "none", "none", "none"},
      {"a target given twice",
       Target("c", "categorical", "<TargetValue value='a' priorProbability='0.5'/>") +
           Target("c", "categorical", "<TargetValue value='a' priorProbability='1'/>"),
       "c", "a=A", "a:1 ", "none"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const std::unique_ptr<ScoreDictionary> dictionary = Handle(row.targets);
    const ScoreDictVar& variable = *dictionary->GetVar(row.field);
    EXPECT_EQ(Labels(variable), row.labels);
    EXPECT_EQ(Priors(variable), row.priors);
    EXPECT_EQ(variable.GetDefValue() == nullptr ? "none" : variable.GetDefValue()->GetString(),
              row.defaultValue);
  }
}

TEST(Targets, Refusals) {
  const auto value = [](const std::string& text) { return "<TargetValue value='" + text + "'/>"; };
  const std::pair<std::string, const char*> rows[] = {
      {"<Target optype='continuous'/>", "260120 field|Target"},
      {Target("", "continuous"), "260285 field|Target"},
      {Target("q", "continuous"), "260124 q|DataDictionary"},
      {"<Target field='y'/>", "260120 optype|Target"},
      {Target("y", "nominal"), "260152 nominal|optype"},
      {Target("y", "categorical"), "260214 continuous|optype|DataDictionary|categorical|optype|Target"},
      {Target("c", "categorical", "<TargetValue/>"), "260120 value|TargetValue"},
      {Target("o", "ordinal", value("")), "260285 value|Value"},
      {Target("o", "ordinal", value("two")), "260151 two|double"},
      {Target("c", "categorical", "<TargetValue value='b' priorProbability='half'/>"), "260151 half|double"},
      {Target("c", "categorical", value("x")), "260294 x|c"},
      {Target("f", "categorical", value("1") + value("2") + value("3")), "260271 categorical|flag"},
      {Target("c", "categorical", "<TargetValue value='b' priorProbability=''/>"), "260151 |double"},
      {Target("y", "continuous", "<TargetValue defaultValue='none'/>"), "260151 none|double"},
      {Target("y", "continuous", "<TargetValue defaultValue=''/>"), "260151 |double"},
  };
  for (const auto& [targets, want] : rows)
    EXPECT_EQ(Refusal([text = targets] { Handle(text); }), want) << targets;
}

std::unique_ptr<ScoreDictionary> ParseResults(const std::string& fields) {
  const Document document("<Output><Deep>" + fields + "</Deep></Output>");
  PlainTranslator translator;
  return std::unique_ptr<ScoreDictionary>(translator.ParseResultDictionary(document.Root()));
}

TEST(ResultDictionary, Fields) {
  EXPECT_EQ(ParseResults("<OutputField name='p'/>"), nullptr);
  constexpr auto kNumber = ScoreDictVar::kNUMERIC_VAR;
  constexpr auto kScale = ScoreDictVar::kContinuous;
  const struct {
    const char *attributes, *label;
    ScoreDictVar::MeasureLevel level;
    ScoreDictVar::VariableType type;
    int feature;
    const char* value;
  } rows[] = {
      {"feature=''", "p", kScale, kNumber, 0, "none"},
      {"feature='predictedValue' displayName='P' optype='categorical' dataType='string' value='v'", "P",
       ScoreDictVar::kNominal, ScoreDictVar::STRING_VAR, 1, "v"},
      {"feature='categorical' optype='ordinal'", "p", ScoreDictVar::kOrdinal, kNumber, 2, "none"},
      {"feature='predictedDisplayValue'", "p", kScale, kNumber, 2, "none"},
      {"feature='residual'", "p", kScale, kNumber, 4, "none"},
      {"feature='standardDeviation'", "p", kScale, kNumber, 12, "none"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.attributes);
    const auto dictionary = ParseResults("<ResultField name='p' " + std::string(row.attributes) + "/>");
    ASSERT_NE(dictionary, nullptr);
    const auto& variable = dynamic_cast<const ResultVar&>(*dictionary->GetVar("p"));
    EXPECT_EQ(variable.GetLabel(), row.label);
    EXPECT_EQ(variable.GetMLevel(), row.level);
    EXPECT_EQ(variable.GetVarType(), row.type);
    EXPECT_EQ(variable.GetFeature(), row.feature);
    EXPECT_EQ(variable.GetDefValue() == nullptr ? "none" : variable.GetDefValue()->GetString(), row.value);
  }
}

TEST(ResultDictionary, Refusals) {
  const std::pair<const char*, const char*> rows[] = {
      {"<ResultField feature=''/>", "260120 name|ResultField"},
      {"<ResultField name='' feature=''/>", "260285 name|ResultField"},
      {"<ResultField name='p'/>", "260120 feature|ResultField"},
      {"<ResultField name='p' feature='magic'/>", "260153 magic|feature|ResultField"},
      {"<ResultField name='p' feature='' optype='nominal'/>", "260152 nominal|optype"},
  };
  for (const auto& [fields, want] : rows) {
    SCOPED_TRACE(fields);
    EXPECT_EQ(Refusal([text = fields] { ParseResults(text); }), want);
  }
}

TEST(MeasureLevel, HasAWord) {
  EXPECT_EQ(PMMLTranslator::ToString(ScoreDictVar::kOrdinal), "ordinal");
  EXPECT_EQ(PMMLTranslator::ToString(static_cast<ScoreDictVar::MeasureLevel>(7)), "");
}

}  // namespace
