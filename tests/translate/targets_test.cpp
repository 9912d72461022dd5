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
  struct Row {
    const char* what;
    const char* targets;
    const char* field;
    const char* labels;
    const char* priors;
    const char* defaultValue;
  };
  const Row rows[] = {
      {"nothing said", "<Target field='c' optype='categorical'/>", "c", "a=A", "none", "none"},
      {"a category that is there gets no second label, but its prior",
       "<Target field='c' optype='categorical'><TargetValue value='a' displayValue='Z' "
       "priorProbability='0.25'/>"
       "</Target>",
       "c", "a=A", "a:0.25 ", "none"},
      {"a new category",
       "<Target field='c' optype='categorical'><TargetValue value='b' displayValue='B' "
       "priorProbability='0.75'/>"
       "<TargetValue value='d'/></Target>",
       "c", "a=A b=B d=d", "b:0.75 ", "none"},
      {"a variable without categories",
       "<Target field='o' optype='ordinal'><TargetValue value='2'/><TargetValue value='1'/></Target>", "o",
       "2=2 1=1", "none", "none"},
      {"the last default wins",
       "<Target field='y' optype='continuous'><TargetValue defaultValue='3'/><TargetValue defaultValue='4'/>"
       "<TargetValue/></Target>",
       "y", "none", "none", "4"},
      {"other elements are passed over",
       "<Extension/><Target field='y' optype='continuous'><Extension/></Target>", "y", "none", "none",
       "none"},
      {"a target given twice",
       "<Target field='c' optype='categorical'><TargetValue value='a' priorProbability='0.5'/></Target>"
       "<Target field='c' optype='categorical'><TargetValue value='a' priorProbability='1'/></Target>",
       "c", "a=A", "a:1 ", "none"},
  };
  for (const Row& row : rows) {
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
  struct Row {
    const char* targets;
    const char* want;
  };
  const Row rows[] = {
      {"<Target optype='continuous'/>", "260120 field|Target"},
      {"<Target field='' optype='continuous'/>", "260285 field|Target"},
      {"<Target field='q' optype='continuous'/>", "260124 q|DataDictionary"},
      {"<Target field='y'/>", "260120 optype|Target"},
      {"<Target field='y' optype='nominal'/>", "260152 nominal|optype"},
      {"<Target field='y' optype='categorical'/>",
       "260214 continuous|optype|DataDictionary|categorical|optype|Target"},
      {"<Target field='c' optype='categorical'><TargetValue/></Target>", "260120 value|TargetValue"},
      {"<Target field='o' optype='ordinal'><TargetValue value=''/></Target>", "260285 value|Value"},
      {"<Target field='o' optype='ordinal'><TargetValue value='two'/></Target>", "260151 two|double"},
      {"<Target field='c' optype='categorical'><TargetValue value='b' priorProbability='half'/></Target>",
       "260151 half|double"},
      {"<Target field='c' optype='categorical'><TargetValue value='x'/></Target>", "260294 x|c"},
      {"<Target field='f' optype='categorical'><TargetValue value='1'/><TargetValue value='2'/>"
       "<TargetValue value='3'/></Target>",
       "260271 categorical|flag"},
      {"<Target field='y' optype='continuous'><TargetValue defaultValue='none'/></Target>",
       "260151 none|double"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.targets);
    EXPECT_EQ(Refusal([&] { Handle(row.targets); }), row.want);
  }
}

std::unique_ptr<ScoreDictionary> ParseResults(const std::string& fields) {
  const Document document("<Output><Deep>" + fields + "</Deep></Output>");
  PlainTranslator translator;
  return std::unique_ptr<ScoreDictionary>(translator.ParseResultDictionary(document.Root()));
}

TEST(ResultDictionary, Fields) {
  EXPECT_EQ(ParseResults("<OutputField name='p'/>"), nullptr);
  struct Row {
    const char* attributes;
    const char* label;
    ScoreDictVar::MeasureLevel level;
    ScoreDictVar::VariableType type;
    int feature;
    const char* value;
  };
  const Row rows[] = {
      {"feature=''", "p", ScoreDictVar::kContinuous, ScoreDictVar::kNUMERIC_VAR, 0, "none"},
      {"feature='predictedValue' displayName='P' optype='categorical' dataType='string' value='v'", "P",
       ScoreDictVar::kNominal, ScoreDictVar::STRING_VAR, 1, "v"},
      {"feature='categorical' optype='ordinal'", "p", ScoreDictVar::kOrdinal, ScoreDictVar::kNUMERIC_VAR, 2,
       "none"},
      {"feature='predictedDisplayValue'", "p", ScoreDictVar::kContinuous, ScoreDictVar::kNUMERIC_VAR, 2,
       "none"},
      {"feature='residual'", "p", ScoreDictVar::kContinuous, ScoreDictVar::kNUMERIC_VAR, 4, "none"},
      {"feature='standardDeviation'", "p", ScoreDictVar::kContinuous, ScoreDictVar::kNUMERIC_VAR, 12, "none"},
  };
  for (const Row& row : rows) {
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
