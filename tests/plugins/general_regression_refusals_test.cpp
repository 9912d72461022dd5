// General regression models that cannot be: what each is refused with.

#include "plugins/GeneralRegressionDocument.h"

namespace {

using namespace VeyraTest;
using Document = GeneralRegressionDocument;

const std::string kModel = "GeneralRegressionModel";
const std::string kX = Cell("p1", "x", "1");
const std::string kBeta = Beta("p1", "1");

Document OfType(const std::string& attributes, const std::string& target = "y",
                const std::string& estimates = kBeta) {
  return {.design = kX, .estimates = estimates, .attributes = attributes, .target = target};
}

Document WithLink(const std::string& attributes) {
  return OfType("functionName='regression' modelType='generalizedLinear' " + attributes);
}

Document OfClass(const std::string& attributes, const std::string& target, const std::string& estimates) {
  return OfType("functionName='classification' modelType=" + attributes, target, estimates);
}

Document WithDesign(const std::string& design) { return {.design = design, .estimates = kBeta}; }
Document WithEstimates(const std::string& estimates) { return {.design = kX, .estimates = estimates}; }
Document WithFactor(const std::string& content) {
  return {.design = Cell("p1", "color", "red"),
          .estimates = kBeta,
          .factors = "<Predictor name='color'>" + content + "</Predictor>"};
}
Document WithCovariances(const std::string& cells) {
  return {.design = kX, .estimates = kBeta, .more = "<PCovMatrix>" + cells + "</PCovMatrix>"};
}
Document WithTables(const std::string& tables, const std::string& attributes = "endTimeVariable='t'") {
  return {.design = kX,
          .estimates = kBeta,
          .attributes = "functionName='regression' modelType='CoxRegression' " + attributes,
          .more = tables};
}
Document WithHazards(const std::string& content, const std::string& attributes = "endTimeVariable='t'") {
  return WithTables("<BaseCumHazardTables maxTime='9'>" + content + "</BaseCumHazardTables>", attributes);
}

struct Row {
  const char* what;
  Document document;
  const char* want;
};

template <std::size_t kCount>
void ExpectRefusals(const Row (&rows)[kCount]) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Refusal(row.document.Text(), kGeneralRegression), row.want);
  }
}

TEST(GeneralRegressionRefusals, Settings) {
  ExpectRefusals({
      {"no model type", OfType("functionName='regression'"), "260120: modelType, GeneralRegressionModel"},
      {"an unknown model type", OfType("functionName='regression' modelType='magic'"),
       "260152: magic, modelType"},
      {"a number of categories", OfType("functionName='regression' modelType='multinomialLogistic'"),
       "260211: regression, functionName, multinomialLogistic, modelType"},
      {"a category of a number", OfClass("'CoxRegression'", "class", kBeta),
       "260211: classification, functionName, CoxRegression, modelType"},
      {"another function", OfType("functionName='clustering' modelType='regression'"),
       "260211: clustering, functionName, regression, modelType"},
      {"no link", WithLink(""), "260120: linkFunction, GeneralRegressionModel"},
      {"an unknown link", WithLink("linkFunction='softmax'"), "260152: softmax, linkFunction"},
      {"a cumulative link of a number", WithLink("linkFunction='cumlogit'"),
       "260211: regression, functionName, generalizedLinear, modelType"},
      {"power of nothing", WithLink("linkFunction='power'"), "260120: linkParameter, GeneralRegressionModel"},
      {"oddspower of no number", WithLink("linkFunction='oddspower' linkParameter='d'"), "260151: d, double"},
      {"negbin without its parameter", WithLink("linkFunction='negbin'"),
       "260120: distParameter, GeneralRegressionModel"},
      {"negbin with a negative parameter", WithLink("linkFunction='negbin' distParameter='-1'"),
       "260182: -1, distParameter"},
      {"an unknown distribution", WithLink("linkFunction='log' distribution='uniform'"),
       "260152: uniform, distribution"},
      {"two offsets", WithLink("linkFunction='log' offsetValue='1' offsetVariable='z'"),
       "260212: offsetVariable, offsetValue"},
      {"an offset that is a text", WithLink("linkFunction='log' offsetVariable='color'"), "260187: color"},
      {"an offset that is no field", WithLink("linkFunction='log' offsetVariable='q'"),
       "260125: q, DataDictionary, TransformationDictionary"},
      {"an offset that is no input", WithLink("linkFunction='log' offsetVariable='open'"), "260161: open"},
      {"two counts of trials", WithLink("linkFunction='logit' trialsValue='1' trialsVariable='z'"),
       "260212: trialsVariable, trialsValue"},
      {"no trials", WithLink("linkFunction='logit' trialsValue='0'"), "260182: 0, trialsValue"},
      {"trials of a category",
       OfClass("'generalizedLinear' linkFunction='logit' trialsVariable='z'", "class", Beta("p1", "1", "a")),
       "260211: classification, functionName, z, trialsVariable"},
      {"degrees of freedom that are no number",
       OfType("functionName='regression' modelType='regression' "
              "modelDF='many'"),
       "260151: many, double"},
      {"no cumulative link", OfClass("'ordinalMultinomial'", "size", kBeta),
       "260120: cumulativeLink, GeneralRegressionModel"},
      {"an unknown cumulative link", OfClass("'ordinalMultinomial' cumulativeLink='log'", "size", kBeta),
       "260152: log, cumulativeLink"},
      {"a standard error without covariances",
       {.design = kX,
        .estimates = kBeta,
        .more = "<Output><OutputField name='o' feature='standardError'/></Output>"},
       "260303: standardError, feature"},
  });
}

TEST(GeneralRegressionRefusals, Structure) {
  const auto withParameters = [](const std::string& parameters) {
    return Document{.design = "", .estimates = kBeta, .parameters = parameters};
  };
  const auto withCovariates = [](const std::string& covariates) {
    return Document{.design = kX, .estimates = kBeta, .covariates = covariates};
  };
  ExpectRefusals({
      {"no parameter", withParameters(""), "260283: ParameterList"},
      {"a parameter without a name", withParameters("<Parameter/>"), "260120: name, Parameter"},
      {"a parameter twice", withParameters("<Parameter name='p1'/><Parameter name='p1'/>"),
       "260203: Parameter, p1, ParameterList"},
      {"something among the parameters", withParameters("<Predictor name='x'/>"),
       "260159: Predictor, ParameterList"},
      {"a reference point that is no number", withParameters("<Parameter name='p1' referencePoint='r'/>"),
       "260151: r, double"},
      {"a predictor twice", withCovariates("<Predictor name='x'/><Predictor name='x'/>"),
       "260203: Predictor, x, CovariateList"},
      {"a covariate that is a factor", withCovariates("<Predictor name='x'/><Predictor name='color'/>"),
       "260203: Predictor, color, CovariateList"},
      {"a predictor that is no field", withCovariates("<Predictor name='q'/>"),
       "260125: q, DataDictionary, TransformationDictionary"},
      {"a predictor that is no input", withCovariates("<Predictor name='x'/><Predictor name='open'/>"),
       "260161: open"},
      {"a text as a covariate",
       {.design = Cell("p1", "color", "1"),
        .estimates = kBeta,
        .factors = "",
        .covariates = "<Predictor name='color'/>"},
       "260187: color"},
      {"a cell of an unknown parameter", WithDesign(Cell("q", "x", "1")), "260122: q, ParameterList"},
      {"a cell of an unknown predictor", WithDesign(Cell("p1", "t", "1")),
       "260125: t, FactorList, CovariateList"},
      {"a cell without a value", WithDesign("<PPCell parameterName='p1' predictorName='x'/>"),
       "260120: value, PPCell"},
      {"an exponent that is no number", WithDesign(Cell("p1", "x", "two")), "260151: two, double"},
      {"a category that is no number", WithDesign(Cell("p1", "grade", "two")), "260151: two, double"},
      {"a cell twice", WithDesign(kX + Cell("p1", "x", "2")), "260203: PPCell, x, p1, PPMatrix"},
      {"something in the design", WithDesign("<PCell/>"), "260159: PCell, PPMatrix"},
      {"an estimate of an unknown parameter", WithEstimates(Beta("q", "1")), "260122: q, ParameterList"},
      {"an estimate without a number", WithEstimates("<PCell parameterName='p1'/>"), "260120: beta, PCell"},
      {"an estimate that is no number", WithEstimates(Beta("p1", "1,5")), "260151: 1,5, double"},
      {"degrees of freedom that are no number", WithEstimates("<PCell parameterName='p1' beta='1' df='x'/>"),
       "260151: x, double"},
      {"an estimate twice", WithEstimates(Beta("p1", "1", "a") + Beta("p1", "2", "b")),
       "260203: PCell, p1, ParamMatrix"},
      {"a covariance of an unknown parameter", WithCovariances("<PCovCell pRow='p1' pCol='q' value='1'/>"),
       "260122: q, ParameterList"},
      {"a covariance without a value", WithCovariances("<PCovCell pRow='p1' pCol='p1'/>"),
       "260120: value, PCovCell"},
      {"a covariance twice",
       WithCovariances("<PCovCell pRow='p1' pCol='p0' value='1'/><PCovCell pRow='p1' pCol='p0' value='1'/>"),
       "260203: PCovCell, p1, p0, PCovMatrix"},
      {"covariances that are not symmetric",
       WithCovariances("<PCovCell pRow='p1' pCol='p0' value='1'/><PCovCell pRow='p0' pCol='p1' value='2'/>"),
       "260258: 1, value, 2, value, PCovMatrix"},
  });
}

TEST(GeneralRegressionRefusals, Contrasts) {
  const std::string two = "<Categories><Category value='red'/><Category value='blue'/></Categories>";
  const std::string matrix = "<Matrix><Array>1 2</Array><Array>3 4</Array></Matrix>";
  const auto withMatrix = [&](const std::string& attributes, const std::string& content) {
    return WithFactor(two + "<Matrix " + attributes + ">" + content + "</Matrix>");
  };
  ExpectRefusals({
      {"a category twice",
       WithFactor("<Categories><Category value='red'/><Category value='red'/></Categories>"),
       "260203: Category, red, color"},
      {"a cell of another category",
       {.design = Cell("p1", "color", "green"),
        .estimates = kBeta,
        .factors = "<Predictor name='color'>" + two + "</Predictor>"},
       "260127: green, color"},
      {"a cell of a category without a column",
       {.design = Cell("p1", "color", "blue"),
        .estimates = kBeta,
        .factors = "<Predictor name='color'>" + two +
                   "<Matrix><Array>1</Array><Array>2</Array></Matrix></Predictor>"},
       "260127: blue, color"},
      {"contrasts of no categories",
       {.design = Cell("p1", "free", "q"),
        .estimates = kBeta,
        .factors = "<Predictor name='free'>" + matrix + "</Predictor>"},
       "260126: free"},
      {"a row for each category", WithFactor(matrix), "260249: 2, nbRows, 3, color"},
      {"an empty extension", WithFactor("<Extension name='contrastMatrix'/>"), "260114: Matrix"},
      {"an empty matrix", withMatrix("", ""), "260283: Matrix"},
      {"something in a matrix", withMatrix("", "<Row/>"), "260159: Row, Matrix"},
      {"an unknown kind", withMatrix("kind='round'", "<Array>1</Array>"), "260152: round, kind"},
      {"another number of rows", withMatrix("nbRows='3'", "<Array>1 2</Array><Array>1 2</Array>"),
       "260242: 3, nbRows, 2, Array, Matrix"},
      {"another number of columns", withMatrix("nbCols='3'", "<Array>1 2</Array><Array>1 2</Array>"),
       "260242: 3, nbCols, 2, Array, Matrix"},
      {"no columns", withMatrix("nbCols='0'", "<Array>1 2</Array>"), "260182: 0, nbCols"},
      {"rows of different length", withMatrix("", "<Array>1 2</Array><Array>1</Array>"), "260241: 2, n, 1"},
      {"a symmetric matrix in whole", withMatrix("kind='symmetric'", "<Array>1 2</Array><Array>1 2</Array>"),
       "260241: 1, n, 2"},
      {"no number", withMatrix("", "<Array>1 x</Array><Array>1 2</Array>"), "260151: x, double"},
      {"cells without a size", withMatrix("nbRows='2'", "<MatCell row='1' col='1'>1</MatCell>"),
       "260120: nbCols, Matrix"},
      {"a cell outside", withMatrix("nbRows='2' nbCols='2'", "<MatCell row='3' col='1'>1</MatCell>"),
       "260153: 3, row, MatCell"},
      {"a cell without a number", withMatrix("nbRows='2' nbCols='2'", "<MatCell row='1' col='1'/>"),
       "260151: , double"},
      {"a matrix beyond all measure",
       withMatrix("nbRows='2000000000' nbCols='2000000000'", "<MatCell row='1' col='1'>1</MatCell>"),
       "260303: 2000000000, nbCols"},
  });
}

TEST(GeneralRegressionRefusals, Categories) {
  const std::string ofA = Beta("p1", "1", "a");
  const std::string logit = "'generalizedLinear' linkFunction='logit'";
  const std::string ordinal = "'ordinalMultinomial' cumulativeLink='logit'";
  ExpectRefusals({
      {"an unlisted category", OfClass("'multinomialLogistic'", "class", Beta("p1", "1", "q")),
       "260127: q, class"},
      {"an unlisted reference", OfClass("'multinomialLogistic' targetReferenceCategory='q'", "class", ofA),
       "260127: q, class"},
      {"two categories without estimates", OfClass("'multinomialLogistic'", "kind", ofA),
       "260128: c, ParamMatrix"},
      {"one category without estimates beside the reference",
       OfClass("'multinomialLogistic' targetReferenceCategory='b'", "kind", ofA), "260128: c, ParamMatrix"},
      {"nothing tells the reference", OfClass("'multinomialLogistic'", "class", kBeta),
       "260174: targetReferenceCategory, GeneralRegressionModel"},
      {"nothing tells the reference without estimates", OfClass("'multinomialLogistic'", "class", ""),
       "260174: targetReferenceCategory, GeneralRegressionModel"},
      {"no thresholds", OfClass(ordinal, "size", ""), "260128: S, ParamMatrix"},
      {"nothing tells the reference of two", OfClass(logit, "class", ofA + Beta("p1", "1", "b")),
       "260174: targetReferenceCategory, GeneralRegressionModel"},
      {"three categories of a mean", OfClass(logit, "kind", ofA + Beta("p1", "1", "b")),
       "260271: targetCategory, generalizedLinear"},
      {"a single category", OfClass("'multinomialLogistic'", "open", ofA),
       "260176: targetCategory, ParamMatrix"},
      {"a missing threshold", OfClass(ordinal, "size", Beta("p0", "1", "S") + kBeta),
       "260128: M, ParamMatrix"},
      {"an output of an unknown category",
       {.design = kX,
        .estimates = ofA,
        .attributes = "functionName='classification' modelType='multinomialLogistic'",
        .target = "class",
        .more = "<Output><OutputField name='o' feature='probability' value='q'/></Output>"},
       "260128: q, class"},
  });
}

TEST(GeneralRegressionRefusals, Survival) {
  const std::string cell = "<BaselineCell time='1' cumHazard='1'/>";
  const std::string red = "<BaselineStratum value='red' maxTime='9'>" + cell + "</BaselineStratum>";
  const std::string byColor = "endTimeVariable='t' baselineStrataVariable='color'";
  const std::string extension = "<Extension name='X-BaseCumHazardTables'>";
  const std::string table =
      "<X-BaseCumHazardTable maxTime='9'><X-Baseline time='1' cumHazard='1'/></X-BaseCumHazardTable>";
  ExpectRefusals({
      {"no time", WithHazards(cell, ""), "260120: endTimeVariable, GeneralRegressionModel"},
      {"a time that is a text", WithHazards(cell, "endTimeVariable='color'"), "260187: color"},
      {"a status that is no field", WithHazards(cell, "endTimeVariable='t' statusVariable='q'"),
       "260125: q, DataDictionary, TransformationDictionary"},
      {"no tables", WithTables(""), "260174: BaseCumHazardTables, GeneralRegressionModel"},
      {"empty tables", WithHazards(""), "260283: BaseCumHazardTables"},
      {"something in the tables", WithHazards("<Row/>"), "260159: Row, BaseCumHazardTables"},
      {"strata and cells", WithHazards(cell + red, byColor), "260216: BaselineStratum, BaselineCell"},
      {"strata of no field", WithHazards(red), "260120: baselineStrataVariable, GeneralRegressionModel"},
      {"a field of no strata", WithHazards(cell, byColor), "260115: BaselineStratum, BaseCumHazardTables"},
      {"a stratum twice", WithHazards(red + red, byColor),
       "260203: BaselineStratum, red, BaseCumHazardTables"},
      {"a stratum without a value", WithHazards("<BaselineStratum maxTime='1'/>", byColor),
       "260120: value, BaselineStratum"},
      {"a stratum without cells", WithHazards("<BaselineStratum value='red' maxTime='1'/>", byColor),
       "260283: BaselineStratum"},
      {"no greatest time", WithTables("<BaseCumHazardTables>" + cell + "</BaseCumHazardTables>"),
       "260120: maxTime, BaseCumHazardTables"},
      {"a cell without a hazard", WithHazards("<BaselineCell time='1'/>"), "260120: cumHazard, BaselineCell"},
      {"a negative hazard", WithHazards("<BaselineCell time='1' cumHazard='-1'/>"), "260183: -1, cumHazard"},
      {"a time twice", WithHazards(cell + cell), "260203: time, 1, BaseCumHazardTables"},
      {"a hazard that falls", WithHazards(cell + "<BaselineCell time='2' cumHazard='0.5'/>"),
       "260258: 1, cumHazard, 0.5, cumHazard, BaseCumHazardTables"},
      {"something among the events",
       WithHazards(cell + "</BaseCumHazardTables><EventValues><Row/></EventValues><BaseCumHazardTables>"),
       "260159: Row, EventValues"},
      {"two tables without strata", WithTables(extension + table + table + "</Extension>"),
       "260272: X-BaseCumHazardTable, X-BaseCumHazardTables"},
      {"an empty extension", WithTables(extension + "</Extension>"), "260283: X-BaseCumHazardTables"},
      {"a reference point of an unknown parameter",
       WithHazards(cell + "</BaseCumHazardTables><Extension name='referencePoint'><X-BasePoint "
                          "parameterName='q' value='1'/></Extension><BaseCumHazardTables>"),
       "260122: q, ParameterList"},
  });
}

}  // namespace
