// Regression models of zent-ml documents, which the factory finds by their root.

#include "plugins/Scoring.h"

namespace {

using namespace VeyraTest;

struct Document {
  std::string type = "general-linear";
  std::string target = "y";
  std::string estimates = "<p-cell parameter-name='b' beta='2' df='1'/><p-cell parameter-name='a' beta='1'/>";
  std::string design = "<pp-cell value='1' predictor-name='x' parameter-name='b'/>";
  std::string predictors =
      "<factor-list><predictor name='color'/></factor-list><covariate-list><predictor "
      "name='x'/></covariate-list>";
  std::string more = "";
  std::string count = "2";

  std::string Text() const {
    return "<zent-ml version='1.2'><dictionary>"
           "<variable name='x' storage-type='NUMERIC' measurement-level='CONTINUOUS'>"
           "<missing-values><category value='-9'/></missing-values></variable>"
           "<variable name='color' storage-type='STRING' measurement-level='NOMINAL'><categories>"
           "<category value='red'/><category value='blue'/></categories></variable>"
           "<variable name='y' storage-type='NUMERIC' measurement-level='CONTINUOUS'/>"
           "<variable name='kind' storage-type='NUMERIC' measurement-level='NOMINAL'><categories>"
           "<category value='1' display-value='one'/><category value='2'/><category value='3'/></categories>"
           "</variable></dictionary><regression-model model-type='" +
           type + "' target-variable-name='" + target + "' number-parameters='" + count +
           "' model-df='2'><parameter-list><parameter name='a' label='Intercept'/>"
           "<parameter name='b'/></parameter-list>" +
           predictors + "<pp-matrix>" + design + "</pp-matrix>" + more + "<p-table>" + estimates +
           "</p-table></regression-model></zent-ml>";
  }
};

// The catalogue plays no part.
std::unique_ptr<ScoreModel> Made(const Document& document) { return MakeModel(document.Text(), "NoModel"); }

TEST(ZentRegression, Answers) {
  const std::string factors =
      "<pp-cell value='blue' predictor-name='color' parameter-name='b'/>"
      "<pp-cell value='2' predictor-name='x' parameter-name='b'/>";
  const struct {
    const char* what;
    Document document;
    const char* data;
    const char* want;
  } rows[] = {
      {"a linear model", {}, "x=3", "7"},
      {"the older name", {.type = "regression"}, "x=3", "7"},
      {"a logarithmic model", {.type = "log-linear"}, "x=-0.5", "1"},
      {"a factor and an exponent", {.design = factors}, "x=3, color=blue", "19"},
      {"another category", {.design = factors}, "x=3, color=red", "1"},
      {"a category that the dictionary does not list", {.design = factors}, "x=3, color=mauve", "missing"},
      {"a value that counts as missing", {}, "x=-9", "missing"},
      {"a covariate without a field of its own",
       {.predictors = "<covariate-list><predictor name='x'/>"
                      "</covariate-list>"},
       "x=3",
       "7"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Answer(*Scored(*Made(row.document), row.data)), row.want);
  }
}

TEST(ZentRegression, Categories) {
  for (const char* type : {"multinomial-logistic", "conditional-logistic"}) {
    SCOPED_TRACE(type);
    const Document document{.type = type,
                            .target = "kind",
                            .estimates =
                                "<p-cell parameter-name='a' beta='2000' target-category='3'/>"
                                "<p-cell parameter-name='b' beta='1000' target-category='1'/>"};
    const std::unique_ptr<ScoreModel> model = Made(document);
    EXPECT_EQ(Probabilities(*Scored(*model, "x=2")), (std::vector<double>{0.5, 0, 0.5}));
    EXPECT_EQ(Answer(*Scored(*model, "x=1")), "3");
    EXPECT_EQ(Answer(*Scored(*model, "x=3")), "1");
  }
}

TEST(ZentRegression, WhatTheModelSaysOfItself) {
  const std::unique_ptr<ScoreModel> model = Made({});
  EXPECT_EQ(model->GetModelKind(), "GeneralRegressionModel");
  EXPECT_EQ(model->GetVersionInfo()->GetVersionInfo(), "1.2");
  EXPECT_EQ(model->GetTargetVar()->GetName(), "y");
  EXPECT_EQ(model->GetVarRole("x"), ScoreModel::kPredictorRole);
  EXPECT_EQ(model->GetVarRole("kind"), ScoreModel::kNoRole);
  // A dictionary of the host's plays no part.
  EXPECT_EQ(OutcomeWithDictionary(Document{}.Text(), {"NoModel"}), "GeneralRegressionModel");
  // Inside another element, as deep as it likes.
  std::string nested = Document{}.Text();
  nested.insert(nested.find("<regression-model"), "<model>");
  nested.insert(nested.find("</zent-ml>"), "</model>");
  EXPECT_EQ(Answer(*Scored(*MakeModel(nested, "NoModel"), "x=3")), "7");
}

TEST(ZentRegression, Refusals) {
  const auto withFactors = [](const std::string& factors) {
    return Document{.predictors = "<factor-list>" + factors + "</factor-list>"};
  };
  const struct {
    const char* what;
    Document document;
    const char* want;
  } rows[] = {
      {"an unknown model type", {.type = "CoxRegression"}, "260152: CoxRegression, model-type"},
      {"no model type", {.type = ""}, "260285: model-type, regression-model"},
      {"a number of parameters that is none", {.count = "two"}, "260151: two, integer"},
      {"no target", {.target = ""}, "260285: target-variable-name, regression-model"},
      {"a target that the dictionary does not have", {.target = "q"}, "260124: q, dictionary"},
      {"a target among the predictors", {.target = "x"}, "260202: x, regression-model"},
      {"a predictor that the dictionary does not have", withFactors("<predictor name='q'/>"),
       "260124: q, dictionary"},
      {"a predictor twice", withFactors("<predictor name='x'/><predictor name='x'/>"),
       "260203: predictor, x, factor-list"},
      {"a predictor without a name", withFactors("<predictor/>"), "260120: name, predictor"},
      {"a cell of an unknown predictor",
       {.design = "<pp-cell value='1' predictor-name='y' parameter-name='b'/>"},
       "260125: y, factor-list, covariate-list"},
      {"a cell of an unknown parameter",
       {.design = "<pp-cell value='1' predictor-name='x' parameter-name='c'/>"},
       "260122: c, parameter-list"},
      {"something in the table", {.estimates = "<PCell/>"}, "260159: PCell, p-table"},
      {"an unlisted category",
       {.type = "multinomial-logistic",
        .target = "kind",
        .estimates = "<p-cell parameter-name='a' beta='1' target-category='4'/>"},
       "260127: 4, kind"},
      {"two categories without estimates",
       {.type = "multinomial-logistic",
        .target = "kind",
        .estimates = "<p-cell parameter-name='a' beta='1' target-category='2'/>"},
       "260128: 3, p-table"},
      {"nothing tells the reference",
       {.type = "multinomial-logistic", .target = "kind"},
       "260174: target-category, regression-model"},
      {"covariances of an unknown parameter",
       {.more = "<pcov-matrix><pcov-cell p-row='a' p-col='c' value='1'/></pcov-matrix>"},
       "260122: c, parameter-list"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Refusal(row.document.Text(), "NoModel"), row.want);
  }
  std::string noDictionary = Document{}.Text();
  const std::string end = "</dictionary>";
  const std::size_t begin = noDictionary.find("<dictionary>");
  noDictionary.erase(begin, noDictionary.find(end) + end.size() - begin);
  EXPECT_EQ(Refusal(noDictionary, "NoModel"), "260115: dictionary, zent-ml");
  const std::string otherFormat = "<zent-ml><GeneralRegressionModel/></zent-ml>";
  EXPECT_EQ(Refusal(otherFormat, "GeneralRegressionModel"), "260114: regression-model");
}

}  // namespace
