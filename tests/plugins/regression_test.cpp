// Regression models: the equations, the normalisations, the treatment of values, the output fields, refusals.

#include <cmath>
#include <limits>

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
  std::string function = "regression";
  std::string target = "y";
  std::string schema = "<MiningField name='x'/>";
  std::string content = "";
  std::string attributes = "";

  std::string Text() const {
    return std::string("<PMML version='4.4'><Header/><DataDictionary numberOfFields='8'>") + kFields +
           "</DataDictionary><RegressionModel functionName='" + function + "' " + attributes +
           "><MiningSchema>" + schema + "<MiningField name='" + target +
           "' usageType='target'/></MiningSchema>" + content + "</RegressionModel></PMML>";
  }
};

std::string ScoreText(const std::string& document, const std::string& data) {
  const std::unique_ptr<ScoreModel> model = MakeModel(document, "RegressionModel");
  const CaseRecord record = MakeCase(data);
  model->PrepareForCases(record);
  const std::unique_ptr<ScoreResult> result(model->NewResult());
  model->Score(record, *result);
  return Answer(*result);
}

struct ScoreRow {
  const char* what;
  Document document;
  const char* data;
  const char* want;
};

const char* const kPlain =
    "<RegressionTable intercept='1'><NumericPredictor name='x' coefficient='2'/></RegressionTable>";
const char* const kOnZ =
    "<RegressionTable intercept='0'><NumericPredictor name='z' coefficient='1'/></RegressionTable>";
const char* const kOnColor =
    "<RegressionTable intercept='0'><CategoricalPredictor name='color' value='red' coefficient='1'/>"
    "<CategoricalPredictor name='color' value='blue' coefficient='2'/></RegressionTable>";

TEST(Regression, Equations) {
  const ScoreRow rows[] = {
      {"intercept and a number", {.content = kPlain}, "x=3", "7"},
      {"an exponent",
       {.content = "<RegressionTable intercept='0'><NumericPredictor name='x' exponent='3' coefficient='2'/>"
                   "</RegressionTable>"},
       "x=2",
       "16"},
      {"a negative exponent",
       {.content = "<RegressionTable intercept='0'><NumericPredictor name='x' exponent='-1' coefficient='2'/>"
                   "</RegressionTable>"},
       "x=4",
       "0.5"},
      {"a product of fields, one of them twice",
       {.schema = "<MiningField name='x'/><MiningField name='z'/>",
        .content = "<RegressionTable intercept='1'><PredictorTerm coefficient='2'><FieldRef field='x'/>"
                   "<FieldRef field='x'/><FieldRef field='z'/></PredictorTerm></RegressionTable>"},
       "x=3, z=4",
       "73"},
      {"a category", {.schema = "<MiningField name='color'/>", .content = kOnColor}, "color=blue", "2"},
      {"a category with trailing blanks",
       {.schema = "<MiningField name='color'/>", .content = kOnColor},
       "color=red  ",
       "1"},
      {"two predictors of one category add up",
       {.schema = "<MiningField name='color'/>",
        .content =
            "<RegressionTable intercept='0'><CategoricalPredictor name='color' value='red' coefficient='1'/>"
            "<CategoricalPredictor name='color' value='red' coefficient='4'/></RegressionTable>"},
       "color=red",
       "5"},
      {"a category of a field that lists none",
       {.schema = "<MiningField name='free'/>",
        .content =
            "<RegressionTable intercept='3'><CategoricalPredictor name='free' value='q' coefficient='1'/>"
            "</RegressionTable>"},
       "free=q",
       "4"},
      {"a category that no predictor names adds nothing",
       {.schema = "<MiningField name='free'/>",
        .content =
            "<RegressionTable intercept='3'><CategoricalPredictor name='free' value='q' coefficient='1'/>"
            "</RegressionTable>"},
       "free=other",
       "3"},
      {"a numeric category",
       {.schema = "<MiningField name='grade'/>",
        .content =
            "<RegressionTable intercept='0'><CategoricalPredictor name='grade' value='2' coefficient='7'/>"
            "</RegressionTable>"},
       "grade=2",
       "7"},
      {"one field as number and as category",
       {.schema = "<MiningField name='grade'/>",
        .content = "<RegressionTable intercept='0'><NumericPredictor name='grade' coefficient='10'/>"
                   "<CategoricalPredictor name='grade' value='2' coefficient='7'/></RegressionTable>"},
       "grade=2",
       "27"},
      {"an active field that no term reads may be absent",
       {.schema = "<MiningField name='x'/><MiningField name='z'/>", .content = kPlain},
       "x=1",
       "3"},
      {"a table without terms", {.content = "<RegressionTable intercept='4'/>"}, "x=1", "4"},
  };
  for (const ScoreRow& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ScoreText(row.document.Text(), row.data), row.want);
  }
}

TEST(Regression, MissingInvalidAndExtremeValues) {
  const auto onZ = [](const char* attributes) {
    return Document{.schema = std::string("<MiningField name='z' ") + attributes + "/>", .content = kOnZ};
  };
  const auto onColor = [](const char* attributes) {
    return Document{.schema = std::string("<MiningField name='color' ") + attributes + "/>",
                    .content = kOnColor};
  };
  const ScoreRow rows[] = {
      {"an empty slot is missing", onZ(""), "z=", "missing"},
      {"a field that the record does not have is missing", onZ(""), "x=1", "missing"},
      {"a missing value is replaced", onZ("missingValueReplacement='3'"), "z=", "3"},
      {"a value declared missing is replaced", onZ("missingValueReplacement='3'"), "z=-1", "3"},
      {"a missing value may be refused",
       onZ("missingValueReplacement='3' missingValueTreatment='returnInvalid'"), "z=", "missing"},
      {"beyond the interval: no answer, not even the replacement", onZ("missingValueReplacement='3'"), "z=11",
       "missing"},
      {"declared invalid: no answer", onZ("missingValueReplacement='3'"), "z=5", "missing"},
      {"beyond the interval, as it is", onZ("invalidValueTreatment='asIs'"), "z=11", "11"},
      {"declared invalid, as it is", onZ("invalidValueTreatment='asIs'"), "z=5", "5"},
      {"beyond the interval, as missing",
       onZ("missingValueReplacement='3' invalidValueTreatment='asMissing'"), "z=11", "3"},
      {"invalid, replaced by its own value",
       onZ("invalidValueTreatment='asValue' invalidValueReplacement='8'"), "z=11", "8"},
      {"at the margin of a closed interval", onZ(""), "z=10", "10"},
      {"a text where a number is wanted is invalid", onZ("missingValueReplacement='3'"), "z=abc", "missing"},
      {"a text cannot be taken as it is", onZ("missingValueReplacement='3' invalidValueTreatment='asIs'"),
       "z=abc", "3"},
      {"an extreme value becomes the bound", onZ("outliers='asExtremeValues' lowValue='2' highValue='4'"),
       "z=7", "4"},
      {"an extreme value below", onZ("outliers='asExtremeValues' lowValue='2' highValue='4'"), "z=1", "2"},
      {"an extreme value becomes missing",
       onZ("outliers='asMissingValues' lowValue='2' highValue='4' missingValueReplacement='9'"), "z=7", "9"},
      {"at the bound nothing happens", onZ("outliers='asMissingValues' lowValue='2' highValue='4'"), "z=4",
       "4"},
      {"bounds without a treatment", onZ("lowValue='2' highValue='4'"), "z=7", "7"},
      {"a bound on one side", onZ("outliers='asExtremeValues' highValue='4'"), "z=7", "4"},
      {"an unlisted category: no answer", onColor("missingValueReplacement='red'"), "color=green", "missing"},
      {"an unlisted category as it is adds nothing", onColor("invalidValueTreatment='asIs'"), "color=green",
       "0"},
      {"an unlisted category as missing",
       onColor("invalidValueTreatment='asMissing' missingValueReplacement='blue'"), "color=green", "2"},
      {"a category declared missing", onColor("missingValueReplacement='red'"), "color=n/a", "1"},
      {"letter case matters", onColor(""), "color=Red", "missing"},
  };
  for (const ScoreRow& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ScoreText(row.document.Text(), row.data), row.want);
  }
}

TEST(Regression, OutputFields) {
  const std::string tables =
      "<RegressionTable intercept='0' targetCategory='b'><NumericPredictor name='x' coefficient='1'/>"
      "</RegressionTable><RegressionTable intercept='0' targetCategory='a'/>";
  const std::string numberOutputs =
      "<Output><OutputField name='p'/><OutputField name='d' feature='predictedDisplayValue'/>"
      "<OutputField name='r' feature='residual'/></Output>";
  const std::string categoryOutputs =
      "<Output><OutputField name='p' feature='predictedValue'/><OutputField name='d' "
      "feature='predictedDisplayValue'/>"
      "<OutputField name='q' feature='probability'/><OutputField name='qa' feature='probability' value='a'/>"
      "<OutputField name='r' feature='residual'/><OutputField name='rb' feature='residual' "
      "value='b'/></Output>";
  const Document number{.content = numberOutputs + kPlain};
  const Document category{.function = "classification",
                          .target = "class",
                          .content = categoryOutputs + tables,
                          .attributes = "normalizationMethod='logit'"};
  const ScoreRow rows[] = {
      {"a number and its residual", number, "x=3, y=10", "7|p=7|d=7|r=3"},
      {"no actual value, no residual", number, "x=3, y=", "7|p=7|d=7|r=missing"},
      {"no target in the record", number, "x=3", "7|p=7|d=7|r=missing"},
      {"no answer, no outputs", number, "x=, y=10", "missing|p=missing|d=missing|r=missing"},
      {"a category", category, "x=0, class=b", "b|p=b|d=Beta|q=0.5|qa=0.5|r=0.5|rb=0.5"},
      {"another actual category", category, "x=0, class=a", "b|p=b|d=Beta|q=0.5|qa=0.5|r=-0.5|rb=-0.5"},
      {"no answer, no probabilities", category, "x=, class=a",
       "missing|p=missing|d=missing|q=missing|qa=missing|r=missing|rb=missing"},
      {"the library's own result fields",
       {.content = std::string("<Output><ResultField name='p' feature='predictedValue'/></Output>") + kPlain},
       "x=3",
       "7|p=7"},
  };
  for (const ScoreRow& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ScoreText(row.document.Text(), row.data), row.want);
  }
}

TEST(Regression, Targets) {
  const auto number = [](const char* attributes, const char* values = "") {
    return Document{.content = std::string("<Targets><Target field='y' optype='continuous' ") + attributes +
                               ">" + values + "</Target></Targets>" + kPlain};
  };
  const std::string categories =
      "<Targets><Target field='class' optype='categorical'><TargetValue value='b' priorProbability='0.6'/>"
      "<TargetValue value='a' priorProbability='0.4'/></Target></Targets>"
      "<Output><OutputField name='pa' feature='probability' value='a'/></Output>"
      "<RegressionTable intercept='9' targetCategory='a'><NumericPredictor name='x' coefficient='1'/>"
      "</RegressionTable><RegressionTable intercept='0' targetCategory='b'/>";
  const ScoreRow rows[] = {
      {"rescaling", number("rescaleFactor='10' rescaleConstant='-3'"), "x=3", "67"},
      {"bounds come before rescaling", number("rescaleFactor='10' min='1' max='5'"), "x=3", "50"},
      {"a lower bound", number("min='10'"), "x=3", "10"},
      {"round", number("castInteger='round' rescaleFactor='0.5'"), "x=3", "4"},
      {"round of a negative half", number("castInteger='round' rescaleFactor='-0.5'"), "x=3", "-4"},
      {"ceiling", number("castInteger='ceiling' rescaleFactor='0.1'"), "x=3", "1"},
      {"floor", number("castInteger='floor' rescaleFactor='0.1'"), "x=3", "0"},
      {"a default answers for a missing input, as it stands",
       number("rescaleFactor='10'", "<TargetValue defaultValue='42'/>"), "x=", "42"},
      {"rules of another field",
       {.content =
            std::string("<Targets><Target field='x' optype='continuous' rescaleFactor='2'/></Targets>") +
            kPlain},
       "x=3",
       "7"},
      {"priors answer for a missing input",
       {.function = "classification",
        .target = "class",
        .content = categories,
        .attributes = "normalizationMethod='logit'"},
       "x=",
       "b|pa=0.4"},
  };
  for (const ScoreRow& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ScoreText(row.document.Text(), row.data), row.want);
  }
}

// Values of the functions to 16 digits, from a table of 40 digits.
TEST(Regression, NormalizationOfANumber) {
  struct Row {
    const char* method;
    double y;
    double want;
  };
  const Row rows[] = {
      {"softmax", 1, 0.7310585786300049},
      {"logit", 1, 0.7310585786300049},
      {"logit", -40, 4.248354255291589e-18},
      {"logit", -800, 0},
      {"logit", 800, 1},
      {"probit", 1, 0.8413447460685429},
      {"probit", -10, 7.619853024160527e-24},
      {"cloglog", 0.5, 0.80770435445203507},
      {"cloglog", -40, 4.248354255291589e-18},
      {"cloglog", 1000, 1},
      {"loglog", 0.5, 0.54523921189260506},
      {"loglog", -1000, 0},
      {"cauchit", 1, 0.75},
      {"cauchit", -1e10, 3.183098861837907e-11},
      {"exp", 2, 7.38905609893065},
      {"none", -3, -3},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.method) + " of " + std::to_string(row.y));
    const Document document{.content =
                                "<RegressionTable intercept='0'><NumericPredictor name='x' coefficient='1'/>"
                                "</RegressionTable>",
                            .attributes = std::string("normalizationMethod='") + row.method + "'"};
    const std::unique_ptr<ScoreModel> model = MakeModel(document.Text(), "RegressionModel");
    CaseRecord record(1);
    record.Add("x", new NumericValue(row.y));
    model->PrepareForCases(record);
    const std::unique_ptr<ScoreResult> result(model->NewResult());
    ASSERT_TRUE(model->Score(record, *result).IsOK());
    EXPECT_NEAR(result->GetPredictedValue()->GetDouble(), row.want, 1e-14 * std::abs(row.want));
  }
}

struct ClassRow {
  const char* what;
  const char* method;
  const char* target;
  std::vector<std::pair<const char*, double>> tables;  // category, intercept
  std::vector<double> want;                            // empty: no answer
};

TEST(Regression, NormalizationOfCategories) {
  const double kInfinity = std::numeric_limits<double>::infinity();
  const ClassRow rows[] = {
      {"softmax", "softmax", "class", {{"a", 0}, {"b", 0}}, {0.5, 0.5}},
      {"softmax of values beyond the exponential", "softmax", "class", {{"a", 2000}, {"b", -2000}}, {1, 0}},
      {"simplemax", "simplemax", "class", {{"a", 1}, {"b", 3}}, {0.25, 0.75}},
      {"simplemax of nothing", "simplemax", "class", {{"a", 1}, {"b", -1}}, {}},
      {"none: the last has the rest", "none", "class", {{"a", 0.2}, {"b", 7}}, {0.2, 0.8}},
      {"a link: the first equation decides", "cauchit", "class", {{"a", 1}, {"b", 5}}, {0.75, 0.25}},
      {"a category without an equation", "cauchit", "class", {{"b", 1}}, {0.75, 0.25}},
      {"a tiny complement does not cancel",
       "logit",
       "class",
       {{"a", 40}, {"b", 0}},
       {1, 4.248354255291589e-18}},
      {"ordered categories", "cauchit", "size", {{"S", -1}, {"M", 1}, {"L", 0}}, {0.25, 0.5, 0.25}},
      {"ordered categories come in their own order",
       "cauchit",
       "size",
       {{"M", 1}, {"S", -1}},
       {0.25, 0.5, 0.25}},
      {"ordered categories by softmax are not cumulative",
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
  for (const ClassRow& row : rows) {
    SCOPED_TRACE(row.what);
    Document document{.function = "classification", .target = row.target};
    document.attributes = std::string("normalizationMethod='") + row.method + "'";
    for (const auto& [category, intercept] : row.tables) {
      document.content += "<RegressionTable targetCategory='" + std::string(category) + "' intercept='" +
                          std::to_string(intercept) + "'/>";
    }
    const std::unique_ptr<ScoreModel> model = MakeModel(document.Text(), "RegressionModel");
    const std::unique_ptr<ScoreResult> result(model->NewResult());
    const KxScore::KxStatus status = model->Score(CaseRecord(0), *result);
    EXPECT_EQ(status.IsOK(), !row.want.empty());
    if (row.want.empty()) continue;
    const std::vector<double> got = Probabilities(*result);
    ASSERT_EQ(got.size(), row.want.size());
    double largest = -kInfinity;
    for (std::size_t i = 0; i < got.size(); ++i) {
      EXPECT_NEAR(got[i], row.want[i], 1e-12 * row.want[i]);
      largest = std::max(largest, got[i]);
    }
    EXPECT_EQ(result->GetProbability(), largest);
  }
}

TEST(Regression, Refusals) {
  struct Row {
    const char* what;
    Document document;
    const char* want;
  };
  const char* const kNoTable = "";
  const Row rows[] = {
      {"no equation", {.content = kNoTable}, "260174: RegressionTable, RegressionModel"},
      {"two equations of a number",
       {.content = std::string(kPlain) + kPlain},
       "260272: RegressionTable, RegressionModel"},
      {"a predictor that is no field",
       {.content =
            "<RegressionTable intercept='0'><NumericPredictor name='q' coefficient='1'/></RegressionTable>"},
       "260125: q, DataDictionary, TransformationDictionary"},
      {"a predictor that the schema does not have",
       {.content =
            "<RegressionTable intercept='0'><NumericPredictor name='z' coefficient='1'/></RegressionTable>"},
       "260161: z"},
      {"a text as a number",
       {.schema = "<MiningField name='color'/>",
        .content = "<RegressionTable intercept='0'><NumericPredictor name='color' "
                   "coefficient='1'/></RegressionTable>"},
       "260187: color"},
      {"a coefficient that is no number",
       {.content = "<RegressionTable intercept='0'><NumericPredictor name='x' "
                   "coefficient='1,5'/></RegressionTable>"},
       "260151: 1,5, double"},
      {"an exponent that is not whole",
       {.content =
            "<RegressionTable intercept='0'><NumericPredictor name='x' exponent='0.5' coefficient='1'/>"
            "</RegressionTable>"},
       "260151: 0.5, integer"},
      {"no coefficient",
       {.content = "<RegressionTable intercept='0'><NumericPredictor name='x'/></RegressionTable>"},
       "260120: coefficient, NumericPredictor"},
      {"no intercept", {.content = "<RegressionTable/>"}, "260120: intercept, RegressionTable"},
      {"an unknown term",
       {.content = "<RegressionTable intercept='0'><Magic/></RegressionTable>"},
       "260159: Magic, RegressionTable"},
      {"a product of nothing",
       {.content = "<RegressionTable intercept='0'><PredictorTerm coefficient='1'/></RegressionTable>"},
       "260283: PredictorTerm"},
      {"an unknown normalisation",
       {.content = kPlain, .attributes = "normalizationMethod='maxmax'"},
       "260152: maxmax, normalizationMethod"},
      {"simplemax of a number",
       {.content = kPlain, .attributes = "normalizationMethod='simplemax'"},
       "260153: simplemax, normalizationMethod, RegressionModel"},
      {"another function", {.function = "clustering", .content = kPlain}, "260303: clustering, functionName"},
      {"not to be scored",
       {.content = kPlain, .attributes = "isScorable='false'"},
       "260303: false, isScorable"},
      {"a target of another level",
       {.content = std::string("<Targets><Target field='y' optype='ordinal'/></Targets>") + kPlain},
       "260214: continuous, optype, DataDictionary, ordinal, optype, Target"},
      {"a minimum above the maximum",
       {.content = std::string("<Targets><Target field='y' optype='continuous' min='2' max='1'/></Targets>") +
                   kPlain},
       "260258: 2, min, 1, max, Target"},
      {"an unknown cast",
       {.content =
            std::string("<Targets><Target field='y' optype='continuous' castInteger='up'/></Targets>") +
            kPlain},
       "260152: up, castInteger"},
      {"a field given twice",
       {.schema = "<MiningField name='x'/><MiningField name='x'/>", .content = kPlain},
       "260202: x, MiningSchema"},
      {"a schema field that is no field",
       {.schema = "<MiningField name='q'/>", .content = kPlain},
       "260124: q, DataDictionary"},
      {"two targets",
       {.schema = "<MiningField name='x' usageType='predicted'/>", .content = kPlain},
       "260273: x, y"},
      {"an unknown usage",
       {.schema = "<MiningField name='x' usageType='idle'/>", .content = kPlain},
       "260152: idle, usageType"},
      {"a replacement that is no number",
       {.schema = "<MiningField name='x' missingValueReplacement='none'/>", .content = kPlain},
       "260151: none, double"},
      {"bounds in the wrong order",
       {.schema = "<MiningField name='x' lowValue='2' highValue='1'/>", .content = kPlain},
       "260258: 2, lowValue, 1, highValue, MiningField"},
      {"asValue without a value",
       {.schema = "<MiningField name='x' invalidValueTreatment='asValue'/>", .content = kPlain},
       "260120: invalidValueReplacement, MiningField"},
      {"an unknown output",
       {.content = std::string("<Output><OutputField name='o' feature='ruleValue'/></Output>") + kPlain},
       "260303: ruleValue, feature"},
      {"a probability of a number",
       {.content = std::string("<Output><OutputField name='o' feature='probability'/></Output>") + kPlain},
       "260303: probability, feature"},
      {"an output given twice",
       {.content = std::string("<Output><OutputField name='o'/><OutputField name='o'/></Output>") + kPlain},
       "260203: OutputField, o, Output"},
      {"a category without an equation's category",
       {.function = "classification", .target = "class", .content = kPlain},
       "260120: targetCategory, RegressionTable"},
      {"a category that the target does not list",
       {.function = "classification",
        .target = "class",
        .content = "<RegressionTable intercept='0' targetCategory='q'/>"},
       "260127: q, class"},
      {"a category twice",
       {.function = "classification",
        .target = "class",
        .content = "<RegressionTable intercept='0' targetCategory='a'/><RegressionTable intercept='0' "
                   "targetCategory='a'/>"},
       "260203: targetCategory, a, RegressionModel"},
      {"two categories without equations",
       {.function = "classification",
        .target = "size",
        .content = "<RegressionTable intercept='0' targetCategory='S'/>"},
       "260128: L, RegressionTable"},
      {"an output of an unknown category",
       {.function = "classification",
        .target = "class",
        .content = "<Output><OutputField name='o' feature='probability' value='q'/></Output>"
                   "<RegressionTable intercept='0' targetCategory='a'/>"},
       "260128: q, class"},
      {"exp of categories",
       {.function = "classification",
        .target = "class",
        .content = "<RegressionTable intercept='0' targetCategory='a'/>",
        .attributes = "normalizationMethod='exp'"},
       "260153: exp, normalizationMethod, RegressionModel"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Refusal(row.document.Text(), "RegressionModel"), row.want);
  }
}

TEST(Regression, AModelInsideAnotherModelIsRefused) {
  const std::string document =
      "<PMML version='4.4'><DataDictionary numberOfFields='0'/><MiningModel "
      "functionName='regression'><Segmentation>"
      "<Segment><RegressionModel functionName='regression'/></Segment></Segmentation></MiningModel></PMML>";
  EXPECT_EQ(Refusal(document, "RegressionModel"), "260178: MiningModel, RegressionModel, PMML");
}

TEST(Regression, OlderDocumentsNameTheTargetAndTheLinkInOtherWays) {
  const std::string document =
      "<PMML version='2.0'><DataDictionary numberOfFields='2'><DataField name='x' optype='continuous'/>"
      "<DataField name='c' optype='categorical' dataType='string'/></DataDictionary>"
      "<RegressionModel functionName='classification' modelType='logisticRegression' targetFieldName='c'>"
      "<MiningSchema><MiningField name='x'/></MiningSchema>"
      "<RegressionTable intercept='0' targetCategory='yes'><NumericPredictor name='x' exponent='1' "
      "coefficient='1'/>"
      "</RegressionTable><RegressionTable intercept='0' targetCategory='no'/></RegressionModel></PMML>";
  const std::unique_ptr<ScoreModel> model = MakeModel(document, "RegressionModel");
  EXPECT_EQ(model->GetVersionInfo()->GetVersionInfo(), "2.0");
  ASSERT_NE(model->GetTargetVar(), nullptr);
  const CaseRecord record = MakeCase("x=1");
  model->PrepareForCases(record);
  const std::unique_ptr<ScoreResult> result(model->NewResult());
  model->Score(record, *result);
  EXPECT_NEAR(result->GetProbability(), 0.7310585786300049, 1e-15);
}

// A clone must not point into the original's dictionary.
TEST(Regression, ACloneScoresAfterItsOriginalIsGone) {
  const Document document{
      .schema = "<MiningField name='z' missingValueReplacement='3'/><MiningField name='color'/>",
      .content =
          "<RegressionTable intercept='0'><NumericPredictor name='z' coefficient='1'/>"
          "<CategoricalPredictor name='color' value='red' coefficient='100'/>"
          "</RegressionTable>"};
  std::unique_ptr<ScoreModel> original = MakeModel(document.Text(), "RegressionModel");
  const std::unique_ptr<ScoreModel> clone(original->Clone());
  EXPECT_NE(clone->GetDictionary(), original->GetDictionary());
  original.reset();
  for (const auto& [data, want] : {std::pair("z=1, color=red", "101"), std::pair("z=-1, color=blue", "3")}) {
    const CaseRecord record = MakeCase(data);
    clone->PrepareForCases(record);
    const std::unique_ptr<ScoreResult> result(clone->NewResult());
    clone->Score(record, *result);
    EXPECT_EQ(Answer(*result), want);
  }
}

}  // namespace
