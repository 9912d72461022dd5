// Regression models: the equations, the normalisations, the treatment of values, the output fields, refusals.

#include <algorithm>
#include <cmath>

#include "plugins/Scoring.h"

namespace {

using namespace VeyraTest;

const char* const kFields =
    "<DataField name='x' optype='continuous' dataType='double'/>"
    "<DataField name='z' optype='continuous' dataType='double'>"
    "<Interval closure='closedClosed' leftMargin='0' rightMargin='10'/>"
    "<Value value='-1' property='missing'/><Value value='5' property='invalid'/></DataField>"
    "<DataField name='color' optype='categorical' dataType='string'>"
    "<Value value='red'/><Value value='blue'/><Value value='n/a' property='missing'/></DataField>"
    "<DataField name='free' optype='categorical' dataType='string'/>"
    "<DataField name='grade' optype='categorical' dataType='integer'><Value value='1'/><Value value='2'/>"
    "</DataField>"
    "<DataField name='y' optype='continuous' dataType='double'/>"
    "<DataField name='class' optype='categorical' dataType='string'>"
    "<Value value='a' displayValue='Alpha'/><Value value='b' displayValue='Beta'/></DataField>"
    "<DataField name='size' optype='ordinal' dataType='string'>"
    "<Value value='S'/><Value value='M'/><Value value='L'/></DataField>";

struct Document {
  std::string content;
  std::string attributes = "functionName='regression'";
  std::string target = "y";
  std::string schema =
      "<MiningField name='x'/><MiningField name='z'/><MiningField name='color'/><MiningField name='free'/>"
      "<MiningField name='grade'/>";

  std::string Text() const {
    return std::string("<PMML version='4.4'><Header/><DataDictionary numberOfFields='8'>") + kFields +
           "</DataDictionary><RegressionModel " + attributes + "><MiningSchema>" + schema +
           "<MiningField name='" + target + "' usageType='target'/></MiningSchema>" + content +
           "</RegressionModel></PMML>";
  }
};

std::string Numeric(const std::string& field, const std::string& coefficient, const std::string& more = "") {
  return "<NumericPredictor name='" + field + "' coefficient='" + coefficient + "' " + more + "/>";
}

std::string Category(const std::string& field, const std::string& value, const std::string& coefficient) {
  return "<CategoricalPredictor name='" + field + "' value='" + value + "' coefficient='" + coefficient +
         "'/>";
}

std::string Table(const std::string& attributes, const std::string& terms = "") {
  return "<RegressionTable " + attributes + ">" + terms + "</RegressionTable>";
}

std::string Equation(const std::string& terms) { return Table("intercept='0'", terms); }

// The equation 1 + 2x.
const std::string kPlain = Table("intercept='1'", Numeric("x", "2"));

// A model of a number, with these attributes besides the function.
Document OfNumber(const std::string& content, const std::string& attributes = "") {
  return {.content = content, .attributes = "functionName='regression' " + attributes};
}

Document OfCategory(const std::string& target, const std::string& content, const std::string& method) {
  return {.content = content,
          .attributes = "functionName='classification' normalizationMethod='" + method + "'",
          .target = target};
}

// The field with these attributes of its mining field, as it goes into an equation.
Document WithRules(const std::string& field, const std::string& rules) {
  const std::string terms =
      field == "color" ? Category("color", "red", "1") + Category("color", "blue", "2") : Numeric(field, "1");
  return {.content = Equation(terms), .schema = "<MiningField name='" + field + "' " + rules + "/>"};
}

Document WithTarget(const std::string& attributes, const std::string& values = "") {
  return {.content = "<Targets><Target " + attributes + ">" + values + "</Target></Targets>" + kPlain};
}

using Row = AnswerRow<Document>;

template <std::size_t kCount>
void ExpectAnswers(const Row (&rows)[kCount]) {
  ExpectAnswersOf("RegressionModel", rows);
}

TEST(Regression, Equations) {
  const std::string freeQ = Table("intercept='3'", Category("free", "q", "1"));
  const std::string colors = Equation(Category("color", "red", "1") + Category("color", "blue", "2"));
  const std::string redTwice = Equation(Category("color", "red", "1") + Category("color", "red", "4"));
  const std::string grades = Equation(Numeric("grade", "10") + Category("grade", "2", "7"));
  const std::string product = Table("intercept='1'",
                                    "<PredictorTerm coefficient='2'><FieldRef field='x'/><FieldRef "
                                    "field='x'/><FieldRef field='z'/></PredictorTerm>");
  ExpectAnswers({
      {"intercept and a number", OfNumber(kPlain), "x=3", "7"},
      {"an exponent", OfNumber(Equation(Numeric("x", "2", "exponent='3'"))), "x=2", "16"},
      {"a negative exponent", OfNumber(Equation(Numeric("x", "2", "exponent='-1'"))), "x=4", "0.5"},
      {"a product of fields, one of them twice", OfNumber(product), "x=3, z=4", "73"},
      {"a category", OfNumber(colors), "color=blue", "2"},
      {"a category with trailing blanks", OfNumber(colors), "color=red  ", "1"},
      {"two predictors of one category add up", OfNumber(redTwice), "color=red", "5"},
      {"a category of a field that lists none", OfNumber(freeQ), "free=q", "4"},
      {"a category that no predictor names adds nothing", OfNumber(freeQ), "free=other", "3"},
      {"one field as number and as numeric category", OfNumber(grades), "grade=2", "27"},
      {"a missing category adds nothing", OfNumber(freeQ), "free=", "3"},
      {"nor does one declared missing", OfNumber(colors), "color=n/a", "0"},
      {"but a field that is also read as a number is missing", OfNumber(grades), "grade=", "missing"},
      {"a table without terms", OfNumber(Table("intercept='4'")), "x=1", "4"},
  });
}

TEST(Regression, MissingInvalidAndExtremeValues) {
  const auto onZ = [](const char* rules) { return WithRules("z", rules); };
  const auto onColor = [](const char* rules) { return WithRules("color", rules); };
  const char* const kAsMissing = "missingValueReplacement='3' invalidValueTreatment='asMissing'";
  const char* const kAsIs = "missingValueReplacement='3' invalidValueTreatment='asIs'";
  const char* const kRefused = "missingValueReplacement='3' missingValueTreatment='returnInvalid'";
  const char* const kOwnValue = "invalidValueTreatment='asValue' invalidValueReplacement='8'";
  const char* const kExtremes = "outliers='asExtremeValues' lowValue='2' highValue='4'";
  const char* const kOutliers =
      "outliers='asMissingValues' lowValue='2' highValue='4' missingValueReplacement='9'";
  const char* const kBlue = "invalidValueTreatment='asMissing' missingValueReplacement='blue'";
  ExpectAnswers({
      {"an empty slot is missing", onZ(""), "z=", "missing"},
      {"a field that the record does not have is missing", onZ(""), "x=1", "missing"},
      {"a missing value is replaced", onZ("missingValueReplacement='3'"), "z=", "3"},
      {"a value declared missing is replaced", onZ("missingValueReplacement='3'"), "z=-1", "3"},
      {"a missing value may be refused", onZ(kRefused), "z=", "missing"},
      {"beyond the interval: not even the replacement", onZ("missingValueReplacement='3'"), "z=11",
       "missing"},
      {"declared invalid: no answer", onZ("missingValueReplacement='3'"), "z=5", "missing"},
      {"beyond the interval, as it is", onZ(kAsIs), "z=11", "11"},
      {"declared invalid, as it is", onZ(kAsIs), "z=5", "5"},
      {"beyond the interval, as missing", onZ(kAsMissing), "z=11", "3"},
      {"invalid, replaced by its own value", onZ(kOwnValue), "z=11", "8"},
      {"at the margin of a closed interval", onZ(""), "z=10", "10"},
      {"a text where a number is wanted is invalid", onZ("missingValueReplacement='3'"), "z=abc", "missing"},
      {"a text cannot be taken as it is", onZ(kAsIs), "z=abc", "3"},
      {"an extreme value becomes the bound", onZ(kExtremes), "z=7", "4"},
      {"an extreme value below", onZ(kExtremes), "z=1", "2"},
      {"an extreme value becomes missing", onZ(kOutliers), "z=7", "9"},
      {"at the bound nothing happens", onZ(kOutliers), "z=4", "4"},
      {"bounds without a treatment", onZ("lowValue='2' highValue='4'"), "z=7", "7"},
      {"a bound on one side", onZ("outliers='asExtremeValues' highValue='4'"), "z=7", "4"},
      {"an unlisted category", onColor("missingValueReplacement='red'"), "color=green", "missing"},
      {"an unlisted category as it is", onColor("invalidValueTreatment='asIs'"), "color=green", "0"},
      {"an unlisted category as missing", onColor(kBlue), "color=green", "2"},
      {"a category declared missing", onColor("missingValueReplacement='red'"), "color=n/a", "1"},
      {"letter case matters", onColor(""), "color=Red", "missing"},
  });
}

TEST(Regression, OutputFields) {
  const std::string outputs =
      "<OutputField name='p'/><OutputField name='d' feature='predictedDisplayValue'/>"
      "<OutputField name='r' feature='residual'/>";
  const std::string categoryOutputs =
      "<OutputField name='q' feature='probability'/><OutputField name='qa' feature='probability' value='a'/>"
      "<OutputField name='rb' feature='residual' value='b'/>";
  const std::string tables = Table("intercept='0' targetCategory='b'", Numeric("x", "1")) +
                             Table("intercept='0' targetCategory='a'");
  const Document number = OfNumber("<Output>" + outputs + "</Output>" + kPlain);
  const Document category =
      OfCategory("class", "<Output>" + outputs + categoryOutputs + "</Output>" + tables, "logit");
  const Document own = OfNumber("<Output><ResultField name='p' feature='predictedValue'/></Output>" + kPlain);
  const auto computed = [](const std::string& name, const std::string& expression) {
    return "<OutputField name='" + name + "' feature='transformedValue' " + expression + "</OutputField>";
  };
  const Document transformed =
      OfNumber("<Output>" +
               computed("t", "><Apply function='/'><FieldRef field='p'/><Constant>14</Constant></Apply>") +
               "<OutputField name='r' feature='residual'/>" +
               computed("u",
                        "dataType='double' optype='continuous'><Apply function='*'><Constant>-1</Constant>"
                        "<FieldRef field='t'/></Apply>") +
               "<OutputField name='p'/></Output>" + kPlain);
  const Document texts = OfCategory(
      "class",
      "<Output>" +
          computed("s",
                   "dataType='string'><Apply function='concat'><Apply function='uppercase'>"
                   "<FieldRef field='v'/></Apply><Constant dataType='string'> is </Constant>"
                   "<FieldRef field='d'/></Apply>") +
          "<OutputField name='v'/><OutputField name='d' feature='predictedDisplayValue'/></Output>" + tables,
      "logit");
  ExpectAnswers({
      {"a number and its residual", number, "x=3, y=10", "7|p=7|d=7|r=3"},
      {"no actual value, no residual", number, "x=3, y=", "7|p=7|d=7|r=missing"},
      {"no target in the record", number, "x=3", "7|p=7|d=7|r=missing"},
      {"no answer, no outputs", number, "x=, y=10", "missing|p=missing|d=missing|r=missing"},
      {"a category", category, "x=0, class=b", "b|p=b|d=Beta|r=0.5|q=0.5|qa=0.5|rb=0.5"},
      {"another actual category", category, "x=0, class=a", "b|p=b|d=Beta|r=-0.5|q=0.5|qa=0.5|rb=-0.5"},
      {"no answer, no probabilities", category, "x=, class=a",
       "missing|p=missing|d=missing|r=missing|q=missing|qa=missing|rb=missing"},
      {"the library's own result fields", own, "x=3", "7|p=7"},
      {"computed from other outputs, in any order", transformed, "x=3, y=10", "7|t=0.5|r=3|u=-0.5|p=7"},
      {"computed without an answer", transformed, "x=, y=10",
       "missing|t=missing|r=missing|u=missing|p=missing"},
      {"computed texts", texts, "x=0", "b|s=B is Beta|v=b|d=Beta"},
      {"computed texts of no answer", texts, "x=", "missing|s=missing|v=missing|d=missing"},
  });
}

TEST(Regression, Targets) {
  const auto number = [](const std::string& attributes, const char* values = "") {
    return WithTarget("field='y' optype='continuous' " + attributes, values);
  };
  const std::string categories =
      "<Targets><Target field='class' optype='categorical'><TargetValue value='b' priorProbability='0.6'/>"
      "<TargetValue value='a' priorProbability='0.4'/></Target></Targets>"
      "<Output><OutputField name='pa' feature='probability' value='a'/></Output>" +
      Table("intercept='9' targetCategory='a'", Numeric("x", "1")) +
      Table("intercept='0' targetCategory='b'");
  const Document withDefault = number("rescaleFactor='10'", "<TargetValue defaultValue='42'/>");
  const Document ofAnotherField = WithTarget("field='x' optype='continuous' rescaleFactor='2'");
  ExpectAnswers({
      {"rescaling", number("rescaleFactor='10' rescaleConstant='-3'"), "x=3", "67"},
      {"bounds come before rescaling", number("rescaleFactor='10' min='1' max='5'"), "x=3", "50"},
      {"a lower bound", number("min='10'"), "x=3", "10"},
      {"round", number("castInteger='round' rescaleFactor='0.5'"), "x=3", "4"},
      {"round of a negative half", number("castInteger='round' rescaleFactor='-0.5'"), "x=3", "-4"},
      {"ceiling", number("castInteger='ceiling' rescaleFactor='0.1'"), "x=3", "1"},
      {"floor", number("castInteger='floor' rescaleFactor='0.1'"), "x=3", "0"},
      {"a default answers for a missing input, as it stands", withDefault, "x=", "42"},
      {"rules of another field", ofAnotherField, "x=3", "7"},
      {"priors answer for a missing input", OfCategory("class", categories, "logit"), "x=", "b|pa=0.4"},
  });
}

// Bounds made a plausible number of an infinite one.
TEST(Regression, AnswersThatAreNotFiniteAreMissing) {
  const auto squared = [](const std::string& target, const std::string& normalization = "") {
    const std::string outputs =
        "<Output><OutputField name='v'/><OutputField name='t' feature='transformedValue'><NormContinuous "
        "field='v'><LinearNorm orig='0' norm='0'/><LinearNorm orig='1' norm='1e308'/></NormContinuous>"
        "</OutputField><OutputField name='r' feature='residual'/></Output>";
    return OfNumber("<Targets><Target field='y' optype='continuous' " + target + "/></Targets>" + outputs +
                        Equation(Numeric("x", "1", "exponent='2'")),
                    normalization);
  };
  ExpectAnswers({
      {"as it is", squared(""), "x=1e200", "missing|v=missing|t=missing|r=missing"},
      {"before bounds", squared("min='-1' max='5'"), "x=1e200", "missing|v=missing|t=missing|r=missing"},
      {"made by a rule", squared("rescaleFactor='1e200'"), "x=1e70", "missing|v=missing|t=missing|r=missing"},
      {"a residual", squared("rescaleFactor='-1'"), "x=1e154, y=1e308",
       "-1e+308|v=-1e+308|t=missing|r=missing"},
      {"of the fallback",
       OfNumber("<Targets><Target field='y' optype='continuous'><TargetValue "
                "defaultValue='1e999'/></Target></Targets>" +
                kPlain),
       "x=", "missing"},
      {"finite", squared("max='5'"), "x=1e100, y=6", "5|v=5|t=missing|r=1"},
  });
}

// Values of the functions to 16 digits, from a table of 40 digits.
TEST(Regression, NormalizationOfANumber) {
  const struct {
    const char* method;
    const char* data;
    double want;
  } rows[] = {
      {"softmax", "x=1", 0.7310585786300049},
      {"logit", "x=1", 0.7310585786300049},
      {"logit", "x=-40", 4.248354255291589e-18},
      {"logit", "x=-800", 0},
      {"logit", "x=800", 1},
      {"probit", "x=1", 0.8413447460685429},
      {"probit", "x=-10", 7.619853024160527e-24},
      {"cloglog", "x=0.5", 0.80770435445203507},
      {"cloglog", "x=-40", 4.248354255291589e-18},
      {"cloglog", "x=1000", 1},
      {"loglog", "x=0.5", 0.54523921189260506},
      {"loglog", "x=-1000", 0},
      {"cauchit", "x=1", 0.75},
      {"cauchit", "x=-1e10", 3.183098861837907e-11},
      {"exp", "x=2", 7.38905609893065},
      {"none", "x=-3", -3},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.method) + " of " + row.data);
    const std::string attributes = "normalizationMethod='" + std::string(row.method) + "'";
    const Document document = OfNumber(Equation(Numeric("x", "1")), attributes);
    const std::unique_ptr<ScoreModel> model = MakeModel(document.Text(), "RegressionModel");
    const double got = Scored(*model, row.data)->GetPredictedValue()->GetDouble();
    EXPECT_NEAR(got, row.want, 1e-14 * std::abs(row.want));
  }
}

TEST(Regression, NormalizationOfCategories) {
  struct Equation {
    const char* category;
    double intercept;
  };
  const struct {
    const char* what;
    const char* method;
    const char* target;
    std::vector<Equation> equations;
    std::vector<double> want;  // empty: no answer
  } rows[] = {
      {"softmax", "softmax", "class", {{"a", 0}, {"b", 0}}, {0.5, 0.5}},
      {"softmax of large values", "softmax", "class", {{"a", 2000}, {"b", -2000}}, {1, 0}},
      {"simplemax", "simplemax", "class", {{"a", 1}, {"b", 3}}, {0.25, 0.75}},
      {"simplemax of nothing", "simplemax", "class", {{"a", 1}, {"b", -1}}, {}},
      {"none: the last has the rest", "none", "class", {{"a", 0.2}, {"b", 7}}, {0.2, 0.8}},
      {"a link: the first equation decides", "cauchit", "class", {{"a", 1}, {"b", 5}}, {0.75, 0.25}},
      {"a category without an equation", "cauchit", "class", {{"b", 1}}, {0.75, 0.25}},
      {"a tiny complement", "logit", "class", {{"a", 40}, {"b", 0}}, {1, 4.248354255291589e-18}},
      {"ordered", "cauchit", "size", {{"S", -1}, {"M", 1}, {"L", 0}}, {0.25, 0.5, 0.25}},
      {"ordered, unlike its equations", "cauchit", "size", {{"M", 1}, {"S", -1}}, {0.25, 0.5, 0.25}},
      {"softmax is not cumulative",
       "softmax",
       "size",
       {{"S", 0}, {"M", 0}, {"L", 0}},
       {1. / 3, 1. / 3, 1. / 3}},
      {"ordered tails do not cancel",
       "logit",
       "size",
       {{"S", 40}, {"M", 41}, {"L", 0}},
       {1, 2.6854720659566002e-18, 1.5628821893349888e-18}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    std::string tables;
    for (const auto& [category, intercept] : row.equations) {
      tables += Table("targetCategory='" + std::string(category) + "' intercept='" +
                      std::to_string(intercept) + "'");
    }
    const std::unique_ptr<ScoreModel> model =
        MakeModel(OfCategory(row.target, tables, row.method).Text(), "RegressionModel");
    const std::unique_ptr<ScoreResult> result(model->NewResult());
    EXPECT_EQ(model->Score(CaseRecord(0), *result).IsOK(), !row.want.empty());
    if (row.want.empty()) continue;
    const std::vector<double> got = Probabilities(*result);
    ASSERT_EQ(got.size(), row.want.size());
    for (std::size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(got[i], row.want[i], 1e-12 * row.want[i]);
    EXPECT_EQ(result->GetProbability(), *std::max_element(got.begin(), got.end()));
  }
}

TEST(Regression, Refusals) {
  const auto withOutput = [](const std::string& attributes) {
    return OfNumber("<Output><OutputField name='o' " + attributes + "/></Output>" + kPlain);
  };
  const auto withMethod = [](const std::string& method) {
    return OfNumber(kPlain, "normalizationMethod='" + method + "'");
  };
  const auto ofTerms = [](const std::string& terms) { return OfNumber(Equation(terms)); };
  const auto ofClass = [](const std::string& content) { return OfCategory("class", content, "none"); };
  const auto ofY = [](const std::string& attributes) {
    return WithTarget("field='y' optype='continuous' " + attributes);
  };
  const std::string tableOfA = Table("intercept='0' targetCategory='a'");
  const std::string outputOfQ = "<Output><OutputField name='o' feature='probability' value='q'/></Output>";
  const struct {
    const char* what;
    Document document;
    const char* want;
  } rows[] = {
      {"no equation", OfNumber(""), "260174: RegressionTable, RegressionModel"},
      {"two equations of a number", OfNumber(kPlain + kPlain), "260272: RegressionTable, RegressionModel"},
      {"a predictor that is no field", ofTerms(Numeric("q", "1")),
       "260125: q, DataDictionary, TransformationDictionary"},
      {"a predictor that the schema does not have",
       {.content = Equation(Numeric("z", "1")), .schema = ""},
       "260161: z"},
      {"a text as a number", ofTerms(Numeric("color", "1")), "260187: color"},
      {"a coefficient that is no number", ofTerms(Numeric("x", "1,5")), "260151: 1,5, double"},
      {"an exponent that is not whole", ofTerms(Numeric("x", "1", "exponent='0.5'")), "260151: 0.5, integer"},
      {"no coefficient", ofTerms("<NumericPredictor name='x'/>"), "260120: coefficient, NumericPredictor"},
      {"no intercept", OfNumber(Table("")), "260120: intercept, RegressionTable"},
      {"an unknown term", ofTerms("<Magic/>"), "260159: Magic, RegressionTable"},
      {"a product of nothing", ofTerms("<PredictorTerm coefficient='1'/>"), "260283: PredictorTerm"},
      {"an unknown normalisation", withMethod("maxmax"), "260152: maxmax, normalizationMethod"},
      {"simplemax of a number", withMethod("simplemax"),
       "260153: simplemax, normalizationMethod, RegressionModel"},
      {"another function",
       {.content = kPlain, .attributes = "functionName='clustering'"},
       "260303: clustering, functionName"},
      {"not to be scored", OfNumber(kPlain, "isScorable='false'"), "260303: false, isScorable"},
      {"a minimum above the maximum", ofY("min='2' max='1'"), "260258: 2, min, 1, max, Target"},
      {"an unknown cast", ofY("castInteger='up'"), "260152: up, castInteger"},
      {"a field given twice", WithRules("x", "/><MiningField name='x'"), "260202: x, MiningSchema"},
      {"a schema field that is no field", WithRules("q", ""), "260124: q, DataDictionary"},
      {"two targets", WithRules("x", "usageType='predicted'"), "260273: x, y"},
      {"an unknown usage", WithRules("x", "usageType='idle'"), "260152: idle, usageType"},
      {"a replacement that is no number", WithRules("x", "missingValueReplacement='none'"),
       "260151: none, double"},
      {"bounds in the wrong order", WithRules("x", "lowValue='2' highValue='1'"),
       "260258: 2, lowValue, 1, highValue, MiningField"},
      {"asValue without a value", WithRules("x", "invalidValueTreatment='asValue'"),
       "260120: invalidValueReplacement, MiningField"},
      {"an unknown output", withOutput("feature='ruleValue'"), "260303: ruleValue, feature"},
      {"a probability of a number", withOutput("feature='probability'"), "260303: probability, feature"},
      {"an output given twice", withOutput("/><OutputField name='o'"), "260203: OutputField, o, Output"},
      {"an output that is computed from nothing", withOutput("feature='transformedValue'"),
       "260283: OutputField"},
      {"an output that is computed from an input",
       withOutput("feature='transformedValue'><FieldRef field='x'/></OutputField><OutputField name='p'"),
       "260125: x, DataDictionary, TransformationDictionary"},
      {"no category", ofClass(kPlain), "260120: targetCategory, RegressionTable"},
      {"an unlisted category", ofClass(Table("intercept='0' targetCategory='q'")), "260127: q, class"},
      {"a category twice", ofClass(tableOfA + tableOfA), "260203: targetCategory, a, RegressionModel"},
      {"two categories without equations",
       OfCategory("size", Table("intercept='0' targetCategory='S'"), "none"), "260128: L, RegressionTable"},
      {"an output of an unknown category", ofClass(outputOfQ + tableOfA), "260128: q, class"},
      {"exp of categories", OfCategory("class", tableOfA, "exp"),
       "260153: exp, normalizationMethod, RegressionModel"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Refusal(row.document.Text(), "RegressionModel"), row.want);
  }
  const std::string insideAnother =
      "<PMML version='4.4'><DataDictionary numberOfFields='0'/><MiningModel><Segmentation><Segment>"
      "<RegressionModel functionName='regression'/></Segment></Segmentation></MiningModel></PMML>";
  EXPECT_EQ(Refusal(insideAnother, "RegressionModel"), "260178: MiningModel, RegressionModel, PMML");
}

TEST(Regression, OlderDocumentsNameTheTargetAndTheLinkInOtherWays) {
  const std::string document =
      "<PMML version='2.0'><DataDictionary numberOfFields='2'><DataField name='x' optype='continuous'/>"
      "<DataField name='c' optype='categorical' dataType='string'/></DataDictionary>"
      "<RegressionModel functionName='classification' modelType='logisticRegression' targetFieldName='c'>"
      "<MiningSchema><MiningField name='x'/></MiningSchema>" +
      Table("intercept='0' targetCategory='yes'", Numeric("x", "1")) +
      Table("intercept='0' targetCategory='no'") + "</RegressionModel></PMML>";
  const std::unique_ptr<ScoreModel> model = MakeModel(document, "RegressionModel");
  EXPECT_EQ(model->GetVersionInfo()->GetVersionInfo(), "2.0");
  ASSERT_NE(model->GetTargetVar(), nullptr);
  EXPECT_NEAR(Scored(*model, "x=1")->GetProbability(), 0.7310585786300049, 1e-15);
}

// A clone must not point into the original's dictionary.
TEST(Regression, ACloneScoresAfterItsOriginalIsGone) {
  const Document document{
      .content = Equation(Numeric("z", "1") + Category("color", "red", "100")),
      .schema = "<MiningField name='z' missingValueReplacement='3'/><MiningField name='color'/>"};
  std::unique_ptr<ScoreModel> original = MakeModel(document.Text(), "RegressionModel");
  const std::unique_ptr<ScoreModel> clone(original->Clone());
  EXPECT_NE(clone->GetDictionary(), original->GetDictionary());
  original.reset();
  EXPECT_EQ(Answer(*Scored(*clone, "z=1, color=red")), "101");
  EXPECT_EQ(Answer(*Scored(*clone, "z=-1, color=blue")), "3");
}

}  // namespace
