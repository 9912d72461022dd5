// General regression models: links, designs, categories, survival, standard errors.

#include <algorithm>
#include <cmath>

#include "plugins/GeneralRegressionDocument.h"

namespace {

using namespace VeyraTest;
using Document = GeneralRegressionDocument;

const char* const kLogistic = "functionName='classification' modelType='multinomialLogistic'";
const char* const kBinomial =
    "functionName='classification' modelType='generalizedLinear' linkFunction='cauchit'";
const char* const kOrdinal =
    "functionName='classification' modelType='ordinalMultinomial' cumulativeLink='cauchit'";
const char* const kCox = "functionName='regression' modelType='CoxRegression' endTimeVariable='t'";

using Row = AnswerRow<Document>;

template <std::size_t kCount>
void ExpectAnswers(const Row (&rows)[kCount]) {
  ExpectAnswersOf(kGeneralRegression, rows);
}

// Values and derivatives of the functions to 18 digits, from a table of 40 digits; the standard error of the
// linear predictor is 1.
TEST(GeneralRegression, LinksAndStandardErrors) {
  const struct {
    const char* link;
    const char* data;
    double mean;
    double slope;
  } rows[] = {
      {"linkFunction='identity'", "x=-3", -3, 1},
      {"linkFunction='log'", "x=2", 7.38905609893065023, 7.38905609893065023},
      {"linkFunction='logc'", "x=-1", 0.632120558828557678, 0.367879441171442322},
      {"linkFunction='logit'", "x=1", 0.731058578630004879, 0.196611933241481853},
      {"linkFunction='probit'", "x=-2", 0.0227501319481792072, 0.053990966513188052},
      {"linkFunction='cloglog'", "x=-2", 0.126576981506883357, 0.118204951593143146},
      {"linkFunction='loglog'", "x=1", 0.692200627555346354, 0.254646380043582496},
      {"linkFunction='cauchit'", "x=-3", 0.102416382349566726, 0.0318309886183790672},
      {"linkFunction='power' linkParameter='2'", "x=5", 2.2360679774997897, 0.22360679774997897},
      {"linkFunction='power' linkParameter='-1'", "x=4", 0.25, 0.0625},
      {"linkFunction='power' linkParameter='-2'", "x=4", 0.5, 0.0625},
      {"linkFunction='power' linkParameter='0'", "x=2", 7.38905609893065023, 7.38905609893065023},
      {"linkFunction='power' linkParameter='0.5'", "x=-3", 9, 6},
      {"linkFunction='power' linkParameter='3'", "x=-8", -2, 1. / 12},
      {"linkFunction='oddspower' linkParameter='0.5'", "x=3", 0.862068965517241379, 0.0475624256837098692},
      {"linkFunction='oddspower' linkParameter='-2'", "x=0.25", 0.585786437626904951, 0.485281374238570293},
      {"linkFunction='oddspower' linkParameter='0'", "x=1", 0.731058578630004879, 0.196611933241481853},
      {"linkFunction='negbin' distParameter='2'", "x=-1", 0.290988353434663212, 0.460336797103896159},
      {"linkFunction='negbin' distParameter='0.5'", "x=-0.25", 7.04162332837559693, 31.8338528777373068},
      {"linkFunction='log' trialsValue='3'", "x=2", 22.1671682967919507, 22.1671682967919507},
      {"linkFunction='logit' distribution='binomial' trialsVariable='t'", "x=0, t=4", 2, 1},
      {"linkFunction='logit' offsetValue='1'", "x=0", 0.731058578630004879, 0.196611933241481853},
      {"linkFunction='logit' offsetVariable='t'", "x=3, t=-2", 0.731058578630004879, 0.196611933241481853},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.link) + " of " + row.data);
    const Document document{
        .design = Cell("p1", "x", "1"),
        .estimates = Beta("p1", "1"),
        .attributes = "functionName='regression' modelType='generalizedLinear' " + std::string(row.link),
        .more =
            "<Output><OutputField name='se' feature='standardError'/></Output>"
            "<PCovMatrix><PCovCell pRow='p0' pCol='p0' value='1'/></PCovMatrix>"};
    const std::unique_ptr<ScoreModel> model = MakeModel(document.Text(), kGeneralRegression);
    const std::unique_ptr<ScoreResult> result = Scored(*model, row.data);
    EXPECT_NEAR(result->GetPredictedValue()->GetDouble(), row.mean, 1e-14 * std::abs(row.mean));
    EXPECT_NEAR(result->GetOutputValue(0)->GetDouble(), row.slope, 1e-14 * row.slope);
  }
}

TEST(GeneralRegression, LinksWithoutAMean) {
  const std::string generalized = "functionName='regression' modelType='generalizedLinear' ";
  const auto ofLink = [&](const char* link) {
    return Document{.design = Cell("p1", "x", "1"),
                    .estimates = Beta("p1", "1"),
                    .attributes = generalized + "linkFunction='" + link};
  };
  ExpectAnswers({
      {"an even root of a negative number", ofLink("power' linkParameter='2'"), "x=-4", "missing"},
      {"odds below 0", ofLink("oddspower' linkParameter='0.4'"), "x=-3", "missing"},
      {"infinity less infinity", ofLink("log' offsetVariable='t'"), "x=inf, t=-inf", "missing"},
      {"a logarithmic mean of a general model",
       {.design = Cell("p1", "x", "1"),
        .estimates = Beta("p1", "0"),
        .attributes = "functionName='regression' modelType='logLinear' offsetValue='0'"},
       "x=5",
       "1"},
      {"the link as an extension",
       {.design = Cell("p1", "x", "1"),
        .estimates = Beta("p1", "1"),
        .attributes = generalized,
        .more = "<Extension name='link' value='identity'/><Extension name='offsetValue' value='100'/>"},
       "x=5",
       "105"},
  });
}

TEST(GeneralRegression, Designs) {
  const std::string colors = Cell("p1", "color", "red") + Cell("p2", "color", "blue");
  const std::string colorBetas = Beta("p0", "1") + Beta("p1", "10") + Beta("p2", "100");
  const std::string both = Cell("p3", "color", "red") + Cell("p3", "grade", "2") + Cell("p3", "x", "2");
  ExpectAnswers({
      {"an intercept", {.design = "", .estimates = Beta("p0", "3")}, "", "3"},
      {"a covariate", {.design = Cell("p1", "x", "1"), .estimates = Beta("p1", "2")}, "x=4", "8"},
      {"exponents", {.design = Cell("p1", "x", "-1"), .estimates = Beta("p1", "2")}, "x=4", "0.5"},
      {"a root", {.design = Cell("p1", "x", "0.5"), .estimates = Beta("p1", "2")}, "x=4", "4"},
      {"a product of covariates",
       {.design = Cell("p1", "x", "1") + Cell("p1", "z", "2"), .estimates = Beta("p1", "2")},
       "x=5, z=3",
       "90"},
      {"categories", {.design = colors, .estimates = colorBetas}, "color=blue", "101"},
      {"the category without a parameter", {.design = colors, .estimates = colorBetas}, "color=green", "1"},
      {"an unlisted category", {.design = colors, .estimates = colorBetas}, "color=mauve", "1"},
      {"a numeric category",
       {.design = Cell("p1", "grade", "2.0"), .estimates = Beta("p1", "5")},
       "grade=2",
       "5"},
      {"a category of a field that lists none",
       {.design = Cell("p1", "free", "q"), .estimates = Beta("p1", "5")},
       "free=q",
       "5"},
      {"a product of two factors and a power",
       {.design = colors + both, .estimates = colorBetas + Beta("p3", "7")},
       "color=red, grade=2, x=2",
       "39"},
      {"the same, another category",
       {.design = colors + both, .estimates = colorBetas + Beta("p3", "7")},
       "color=red, grade=1, x=2",
       "11"},
      {"a parameter without an estimate",
       {.design = Cell("p1", "x", "1"), .estimates = Beta("p0", "1")},
       "x=4",
       "1"},
      {"a predictor that no parameter has may be missing",
       {.design = Cell("p1", "x", "1"), .estimates = Beta("p1", "1")},
       "x=4, z=, color=",
       "4"},
      {"a missing covariate",
       {.design = Cell("p1", "x", "1"), .estimates = Beta("p1", "1")},
       "x=",
       "missing"},
      {"a missing factor", {.design = colors, .estimates = colorBetas}, "color=", "missing"},
  });
}

// A factor of three categories with contrasts, in all the ways to write them.
TEST(GeneralRegression, Contrasts) {
  const std::string categories =
      "<Categories><Category value='green'/><Category value='red'/><Category value='blue'/></Categories>";
  const auto factor = [](const std::string& content) {
    return "<Predictor name='color' contrastMatrixType='own'>" + content + "</Predictor>";
  };
  const std::string rows =
      "<Matrix nbRows='3' nbCols='2'><Array n='2' type='real'>0.5 2</Array><Array>1.5 4</Array>"
      "<Array>-1 8</Array></Matrix>";
  const auto with = [&](const std::string& content) {
    return Document{.design = Cell("p1", "color", "green") + Cell("p2", "color", "red"),
                    .estimates = Beta("p1", "10") + Beta("p2", "1"),
                    .factors = factor(content)};
  };
  // The data dictionary's order is red, blue, green.
  const Document inDictionaryOrder{.design = Cell("p1", "color", "red") + Cell("p2", "color", "blue"),
                                   .estimates = Beta("p1", "10") + Beta("p2", "1"),
                                   .factors = factor(rows)};
  ExpectAnswers({
      {"a row", with(categories + rows), "color=red", "19"},
      {"another row", with(categories + rows), "color=blue", "-2"},
      {"the categories of the dictionary", inDictionaryOrder, "color=blue", "19"},
      {"a category without a row", with(categories + rows), "color=mauve", "missing"},
      {"an extension", with("<Extension name='contrastMatrix'>" + categories + rows + "</Extension>"),
       "color=red", "19"},
      {"a diagonal",
       with(categories + "<Matrix kind='diagonal' offDiagDefault='1'><Array>2 3 4</Array></Matrix>"),
       "color=red", "13"},
      {"half of a symmetric matrix",
       with(categories +
            "<Matrix kind='symmetric'><Array>1</Array><Array>2 3</Array><Array>4 5 6</Array></Matrix>"),
       "color=blue", "45"},
      {"cells",
       with(categories + "<Matrix nbRows='3' nbCols='3' diagDefault='7'><MatCell row='2' col='1'>0.5"
                         "</MatCell></Matrix>"),
       "color=red", "12"},
  });
}

TEST(GeneralRegression, Categories) {
  const std::string x = Cell("p1", "x", "1");
  const double half = 0.5;
  const struct {
    const char* what;
    Document document;
    const char* data;
    std::vector<double> want;
  } rows[] = {
      {"two equations and the category without one",
       {x, Beta("p0", "0", "b") + Beta("p1", "0", "c"), kLogistic, "kind"},
       "x=1",
       {1. / 3, 1. / 3, 1. / 3}},
      {"the order of the dictionary",
       {x, Beta("p0", "2000", "c") + Beta("p1", "1", "a"), kLogistic, "kind"},
       "x=0",
       {0, 0, 1}},
      {"a reference by name",
       {x, Beta("p0", "2000"), std::string(kLogistic) + " targetReferenceCategory='a'", "class"},
       "x=0",
       {0, 1}},
      {"an estimate of all categories",
       {x, Beta("p0", "0", "a") + Beta("p0", "0", "b") + Beta("p1", "2000"), kLogistic, "kind"},
       "x=1",
       {half, half, 0}},
      {"an estimate of one category in place of that of all",
       {x, Beta("p0", "0", "a") + Beta("p0", "0", "b") + Beta("p1", "2000") + Beta("p1", "0", "a"), kLogistic,
        "kind"},
       "x=1",
       {0, 1, 0}},
      {"every category has an equation",
       {x, Beta("p0", "5", "a") + Beta("p0", "5", "b"), kLogistic, "class"},
       "x=0",
       {half, half}},
      {"a column of one category",
       {Cell("p1", "x", "1", "targetCategory='a'") + Cell("p1", "z", "1", "targetCategory='b'"),
        Beta("p1", "2000", "a") + Beta("p1", "2000", "b"), kLogistic, "kind"},
       "x=0, z=1",
       {0, 1, 0}},
      {"a column of one category in place of that of all",
       {x + Cell("p1", "x", "2", "targetCategory='b'"), Beta("p1", "1", "a") + Beta("p1", "1", "b"),
        kLogistic, "kind"},
       "x=2000",
       {0, 1, 0}},
      {"an offset leaves the reference alone",
       {x, Beta("p0", "0", "a"), std::string(kLogistic) + " offsetValue='2000'", "class"},
       "x=0",
       {1, 0}},
      {"an offset from the data",
       {x, Beta("p0", "0", "b"), std::string(kLogistic) + " offsetVariable='t'", "class"},
       "x=0, t=2000",
       {0, 1}},
      {"categories that only the model names",
       {x, Beta("p0", "2000", "q"), std::string(kLogistic) + " targetReferenceCategory='r'", "open"},
       "x=0",
       {1, 0}},
      {"the older name of the model type",
       {x, Beta("p0", "0", "a"), "functionName='classification' modelType='conditionalLogistic'", "class"},
       "x=0",
       {half, half}},
      {"two categories: the one with an equation",
       {x, Beta("p1", "1", "b"), kBinomial, "class"},
       "x=1",
       {0.25, 0.75}},
      {"two categories: the first", {x, Beta("p1", "1", "a"), kBinomial, "class"}, "x=1", {0.75, 0.25}},
      {"two categories: the reference is named",
       {x, Beta("p1", "1"), std::string(kBinomial) + " targetReferenceCategory='b'", "class"},
       "x=1",
       {0.75, 0.25}},
      {"ordered: thresholds and a common slope",
       {x, Beta("p0", "-1", "S") + Beta("p0", "1", "M") + Beta("p1", "5"), kOrdinal, "size"},
       "x=0",
       {0.25, half, 0.25}},
      {"ordered, written in another order",
       {x, Beta("p0", "1", "M") + Beta("p0", "-1", "S") + Beta("p1", "1"),
        std::string(kOrdinal) + " offsetValue='-2'", "size"},
       "x=2",
       {0.25, half, 0.25}},
      {"ordered: the last category's own estimates play no part",
       {x, Beta("p0", "-1", "S") + Beta("p0", "1", "M") + Beta("p0", "8", "L"), kOrdinal, "size"},
       "x=0",
       {0.25, half, 0.25}},
      {"ordered: a cumulative link of an older document",
       {x, Beta("p0", "-1", "S") + Beta("p0", "1", "M"),
        "functionName='classification' modelType='ordinalMultinomial'", "size",
        "<Extension name='link' value='cumcauchit'/>"},
       "x=0",
       {0.25, half, 0.25}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const std::unique_ptr<ScoreModel> model = MakeModel(row.document.Text(), kGeneralRegression);
    const std::unique_ptr<ScoreResult> result = Scored(*model, row.data);
    const std::vector<double> got = Probabilities(*result);
    ASSERT_EQ(got.size(), row.want.size());
    for (std::size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(got[i], row.want[i], 1e-14);
    EXPECT_EQ(result->GetProbability(), *std::max_element(got.begin(), got.end()));
  }
}

// Categories are texts then, in the order of the document.
TEST(GeneralRegression, CategoriesOfNoTarget) {
  std::string text = Document{.design = Cell("p1", "x", "1"),
                              .estimates = Beta("p1", "2000", "q") + Beta("p1", "1", "b"),
                              .attributes = std::string(kLogistic) + " targetReferenceCategory='a'",
                              .target = "class"}
                         .Text();
  const std::string field = "<MiningField name='class' usageType='target'/>";
  text.erase(text.find(field), field.size());
  const std::unique_ptr<ScoreModel> model = MakeModel(text, kGeneralRegression);
  EXPECT_EQ(model->GetTargetVar(), nullptr);
  EXPECT_EQ(Probabilities(*Scored(*model, "x=1")), (std::vector<double>{1, 0, 0}));
  EXPECT_EQ(Answer(*Scored(*model, "x=-1")), "a");
}

TEST(GeneralRegression, CumulativeHazards) {
  const std::string cells =
      "<BaselineCell time='5' cumHazard='0.5'/><BaselineCell time='2' cumHazard='0.25'/>";
  const auto cox = [](const std::string& tables, const std::string& attributes = "",
                      const std::string& parameters = "<Parameter name='p1'/>") {
    return Document{.design = Cell("p1", "x", "1"),
                    .estimates = Beta("p1", "1"),
                    .attributes = kCox + attributes,
                    .more = tables,
                    .parameters = parameters};
  };
  const std::string one = "<BaseCumHazardTables maxTime='8'>" + cells + "</BaseCumHazardTables>";
  const std::string strata = "<BaseCumHazardTables><BaselineStratum value='red' maxTime='8'>" + cells +
                             "</BaselineStratum><BaselineStratum value='blue' label='Blue' maxTime='3'>"
                             "<BaselineCell time='1' cumHazard='4'/></BaselineStratum></BaseCumHazardTables>";
  const std::string byColor = " baselineStrataVariable='color'";
  const std::string extension =
      "<Extension name='X-BaseCumHazardTables'><X-BaseCumHazardTable>"
      "<X-Stratum varName='color' value='red' label='Red'/><X-BaseMaxTime time='8'/><X-BaseMinTime time='2'/>"
      "<X-Baseline time='2' cumHazard='0.25'/></X-BaseCumHazardTable>"
      "<X-Stratum varName='color' value='blue'><X-BaseCumHazardTable maxTime='3'>"
      "<X-Baseline time='1' cumHazard='4'/></X-BaseCumHazardTable></X-Stratum></Extension>";
  const Document reference = cox(one, "", "<Parameter name='p1' referencePoint='3'/>");
  const Document listedReference =
      cox(one + "<Extension name='referencePoint'><X-BasePoint parameterName='p1' value='3'/></Extension>");
  const std::string survival =
      "<Output><OutputField name='hazard' feature='predictedValue'/>"
      "<OutputField name='survival' feature='transformedValue' dataType='double'><Apply function='exp'>"
      "<Apply function='*'><Constant>-1</Constant><FieldRef field='hazard'/></Apply></Apply></OutputField>"
      "</Output>";
  const Document settings{.design = "",
                          .estimates = Beta("p0", "0"),
                          .attributes = "functionName='regression' modelType='CoxRegression'",
                          .more = one +
                                  "<Extension name='endTimeVariable' value='t'/>"
                                  "<Extension name='status' value='1'/><EventValues><Value value='1'/>"
                                  "<Interval closure='closedOpen' leftMargin='2'/></EventValues>"};
  ExpectAnswers({
      {"at a time of the table", cox(one), "x=0, t=5", "0.5"},
      {"between two times", cox(one), "x=0, t=4.9", "0.25"},
      {"before the first time, whatever the predictor", cox(one), "x=1000, t=1.9", "0"},
      {"beyond all numbers", cox(one), "x=1000, t=2", "missing"},
      {"before the first time", cox(one), "x=0, t=1.9", "0"},
      {"behind the last time", cox(one), "x=0, t=8", "0.5"},
      {"behind the greatest time", cox(one), "x=0, t=8.1", "missing"},
      {"no time", cox(one), "x=0, t=", "missing"},
      {"a reference point", reference, "x=3, t=5", "0.5"},
      {"reference points of an older document", listedReference, "x=3, t=5", "0.5"},
      {"an offset", cox(one, " offsetVariable='z'"), "x=1, z=-1, t=2", "0.25"},
      {"the first stratum", cox(strata, byColor), "x=0, t=5, color=red", "0.5"},
      {"the second stratum", cox(strata, byColor), "x=0, t=3, color=blue", "4"},
      {"behind the stratum's greatest time", cox(strata, byColor), "x=0, t=5, color=blue", "missing"},
      {"a stratum without a table", cox(strata, byColor), "x=0, t=2, color=green", "missing"},
      {"a stratum that is no category", cox(strata, byColor), "x=0, t=2, color=mauve", "missing"},
      {"strata as extensions", cox(extension), "x=0, t=5, color=red", "0.25"},
      {"a stratum around its table", cox(extension), "x=0, t=2, color=blue", "4"},
      {"the probability of survival", cox(one + survival), "x=0, t=5", "0.5|hazard=0.5|survival=0.606531"},
      {"settings as extensions", settings, "t=5", "0.5"},
  });
}

TEST(GeneralRegression, WithoutEstimatesThePredictorIs0) {
  const auto without = [](const std::string& attributes, const std::string& target) {
    return Document{
        .design = Cell("p1", "x", "1"), .estimates = "", .attributes = attributes, .target = target};
  };
  const std::string log = "functionName='regression' modelType='generalizedLinear' linkFunction='log'";
  const std::string ofC = std::string(kLogistic) + " targetReferenceCategory='c'";
  Document infinite = without(
      "functionName='regression' modelType='generalizedLinear' linkFunction='negbin' "
      "distParameter='2'",
      "y");
  infinite.more = "<Targets><Target field='y' optype='continuous' min='-1' max='9'/></Targets>";
  ExpectAnswers({
      {"a number", without(log, "y"), "x=5", "1"},
      {"categories are equally probable", without(ofC, "kind"), "x=5", "a"},
      {"a link without a mean there", infinite, "x=5", "missing"},
  });
  EXPECT_EQ(Probabilities(*Scored(*MakeModel(without(ofC, "kind").Text(), kGeneralRegression), "x=5")),
            (std::vector<double>{1. / 3, 1. / 3, 1. / 3}));
}

TEST(GeneralRegression, Outputs) {
  const std::string outputs =
      "<Output><OutputField name='v'/><OutputField name='se' feature='standardError'/>"
      "<OutputField name='r' feature='residual'/></Output>";
  const std::string covariances =
      "<PCovMatrix><PCovCell pRow='p0' pCol='p0' value='4'/><PCovCell pRow='p1' pCol='p0' value='-1'/>"
      "<PCovCell pRow='p1' pCol='p1' value='1'/>";
  const auto with = [&](const std::string& more) {
    return Document{.design = Cell("p1", "x", "1"),
                    .estimates = Beta("p0", "1") + Beta("p1", "1"),
                    .more = outputs + more};
  };
  const Document whole =
      with(covariances + "<PCovCell pRow='p0' pCol='p1' value='-1.0000001'/></PCovMatrix>");
  const Document half = with(covariances + "</PCovMatrix>");
  const Document rescaled =
      with(covariances +
           "</PCovMatrix><Targets><Target field='y' optype='continuous' rescaleFactor='-10'/></Targets>");
  const Document noMatrix = with("<PCovMatrix><PCovCell pRow='p0' pCol='p0' value='-4'/></PCovMatrix>");
  const Document classes{
      Cell("p1", "x", "1"), Beta("p1", "1", "b"), kBinomial, "class",
      "<Output><OutputField name='p' feature='probability'/><OutputField name='pa' feature='probability' "
      "value='a'/><OutputField name='r' feature='residual' value='b'/></Output>"};
  ExpectAnswers({
      {"a standard error from half of the matrix", half, "x=4, y=6", "5|v=5|se=3.4641|r=1"},
      {"from both halves, which differ by rounding", whole, "x=4", "5|v=5|se=3.4641|r=missing"},
      {"a rescaled target", rescaled, "x=4", "-50|v=-50|se=34.641|r=missing"},
      {"a variance below 0", noMatrix, "x=4", "5|v=5|se=missing|r=missing"},
      {"no answer", half, "x=", "missing|v=missing|se=missing|r=missing"},
      {"probabilities", classes, "x=1, class=b", "b|p=0.75|pa=0.25|r=0.25"},
  });
}

TEST(GeneralRegression, OlderDocumentsNameTheTargetInTheModel) {
  const auto naming = [](const std::string& target) {
    std::string text = Document{.design = Cell("p1", "x", "1"),
                                .estimates = Beta("p1", "1"),
                                .attributes =
                                    "functionName='regression' modelType='regression' "
                                    "targetVariableName='" +
                                    target + "'",
                                .more = "<Targets><Target field='y' optype='continuous' max='3'/></Targets>"}
                           .Text();
    const std::string field = "<MiningField name='y' usageType='target'/>";
    return text.erase(text.find(field), field.size());
  };
  const std::unique_ptr<ScoreModel> model = MakeModel(naming("y"), kGeneralRegression);
  ASSERT_NE(model->GetTargetVar(), nullptr);
  EXPECT_EQ(Answer(*Scored(*model, "x=5")), "3");
  EXPECT_EQ(Refusal(naming("q"), kGeneralRegression), "260124: q, DataDictionary");
}

// A clone must not point into the original's dictionary, and has its own working state.
TEST(GeneralRegression, ACloneScoresAfterItsOriginalIsGone) {
  const Document document{
      .design = Cell("p1", "color", "red") + Cell("p1", "x", "1"),
      .estimates = Beta("p0", "1") + Beta("p1", "10"),
      .more =
          "<Output><OutputField name='v'/><OutputField name='t' feature='transformedValue'>"
          "<Apply function='*'><FieldRef field='v'/><Constant>2</Constant></Apply></OutputField></Output>"};
  std::unique_ptr<ScoreModel> original = MakeModel(document.Text(), kGeneralRegression);
  const std::unique_ptr<ScoreModel> clone(original->Clone());
  EXPECT_EQ(clone->GetModelKind(), kGeneralRegression);
  original.reset();
  EXPECT_EQ(Answer(*Scored(*clone, "color=red, x=2")), "21|v=21|t=42");
}

}  // namespace
