// A case allocates nothing once a model, a record and a result are warm, whatever is in the case.

#include <variant>

#include "AllocationCounter.h"
#include "plugins/NeighborDocument.h"

namespace {

using namespace VeyraTest;

struct Day {
  double number;
};
constexpr auto kEmpty = std::monostate();
using Cell = std::variant<std::monostate, double, Day, const char*>;

// Texts are long enough to live on the heap.
const char* const kRed = "red, as roses and fire engines are";
const char* const kBlue = "blue, as the sky and the sea are  ";
const char* const kGreen = "green, which the document does not list";
const char* const kYes = "yes, the one that was hoped for";

std::string Document(const std::string& kind, const std::string& attributes, const std::string& target,
                     const std::string& content) {
  const std::string red = kRed;
  return "<PMML version='4.4'><DataDictionary numberOfFields='6'>"
         "<DataField name='x' optype='continuous' dataType='double'>"
         "<Interval closure='closedClosed' leftMargin='-100' rightMargin='100'/>"
         "<Value value='-99' property='missing'/><Value value='99' property='invalid'/></DataField>"
         "<DataField name='grade' optype='categorical' dataType='integer'>"
         "<Value value='1'/><Value value='2'/></DataField>"
         "<DataField name='color' optype='categorical' dataType='string'>"
         "<Value value='" +
         red + "'/><Value value='" + kBlue +
         "'/></DataField>"
         "<DataField name='day' optype='continuous' dataType='dateDaysSince[1960]'/>"
         "<DataField name='amount' optype='continuous' dataType='double'/>"
         "<DataField name='answer' optype='categorical' dataType='string'><Value value='" +
         kYes +
         "' displayValue='Yes, to be shown in full length'/><Value value='no'/></DataField>"
         "</DataDictionary><" +
         kind + " " + attributes +
         "><MiningSchema>"
         "<MiningField name='x' missingValueReplacement='7' outliers='asExtremeValues' highValue='50'/>"
         "<MiningField name='grade' missingValueReplacement='2' invalidValueTreatment='asMissing'/>"
         "<MiningField name='color' missingValueReplacement='" +
         red +
         "' invalidValueTreatment='asIs'/>"
         "<MiningField name='day' missingValueReplacement='3'/>"
         "<MiningField name='" +
         target + "' usageType='target'/></MiningSchema>" + content + "</" + kind + "></PMML>";
}

std::string Regression(const std::string& function, const std::string& target, const std::string& content) {
  return Document("RegressionModel", "functionName='" + function + "' normalizationMethod='logit'", target,
                  content);
}

// A product of everything, and parts of it.
std::string GeneralRegression(const std::string& attributes, const std::string& target,
                              const std::string& estimates) {
  const auto cell = [](const std::string& parameter, const std::string& predictor, const std::string& value) {
    return "<PPCell parameterName='" + parameter + "' predictorName='" + predictor + "' value='" + value +
           "'/>";
  };
  return Document("GeneralRegressionModel", attributes, target,
                  "<ParameterList><Parameter name='p'/><Parameter name='q'/></ParameterList>"
                  "<FactorList><Predictor name='color'/><Predictor name='grade'/></FactorList>"
                  "<CovariateList><Predictor name='x'/><Predictor name='day'/></CovariateList><PPMatrix>" +
                      cell("p", "color", kBlue) + cell("p", "grade", "2") + cell("p", "x", "1") +
                      cell("q", "x", "1") + cell("q", "day", "3") + "</PPMatrix><ParamMatrix>" + estimates +
                      "</ParamMatrix>");
}

std::string Estimates(const std::string& category) {
  return "<PCell parameterName='p' beta='0.01'" + category + "/><PCell parameterName='q' beta='0.001'" +
         category + "/>";
}

std::string Tables(const std::string& attributes) {
  return "<RegressionTable intercept='1' " + attributes +
         "><NumericPredictor name='x' coefficient='0.01'/>"
         "<NumericPredictor name='day' exponent='2' coefficient='0.01'/>"
         "<CategoricalPredictor name='grade' value='2' coefficient='0.5'/>"
         "<CategoricalPredictor name='color' value='" +
         kBlue +
         "' coefficient='-0.5'/>"
         "<PredictorTerm coefficient='0.01'><FieldRef field='x'/><FieldRef field='day'/></PredictorTerm>"
         "</RegressionTable>";
}

void Fill(CaseRecord& record, const std::vector<Cell>& cells) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const int slot = static_cast<int>(i);
    record.Clear(slot);
    if (const double* number = std::get_if<double>(&cells[i])) {
      record.SetValue(slot, *number);
    } else if (const Day* day = std::get_if<Day>(&cells[i])) {
      record.SetValue(slot, day->number, KxVeyra_940::ScoreDictVar::kDateDaysSince1960);
    } else if (const char* const* text = std::get_if<const char*>(&cells[i])) {
      record.SetText(slot, *text);
    }
  }
}

using Cases = std::vector<std::pair<const char*, std::vector<Cell>>>;

// Scores the cases once, then again, and expects nothing to be allocated the second time, and equal answers.
void ExpectNoAllocations(const std::string& document, const std::string& modelName,
                         const std::vector<std::string>& fields, const Cases& cases) {
  SCOPED_TRACE(document);
  const AllocationCounter ofLoading;
  const std::unique_ptr<ScoreModel> model = MakeModel(document, modelName);
  ASSERT_GT(ofLoading.Count(), 0) << "allocations of the library are not counted";
  CaseRecord record(static_cast<int>(fields.size()));
  for (const std::string& name : fields) record.Add(name, nullptr);
  ASSERT_TRUE(model->PrepareForCases(record).IsOK());
  const std::unique_ptr<ScoreResult> result(model->NewResult());
  std::vector<std::string> cold;
  for (const auto& [what, cells] : cases) {
    Fill(record, cells);
    model->Score(record, *result);
    cold.push_back(Answer(*result));
  }
  EXPECT_NE(cold[0], cold[1]);
  auto before = cold.begin();
  for (const auto& [what, cells] : cases) {
    SCOPED_TRACE(what);
    const AllocationCounter counter;
    Fill(record, cells);
    model->Score(record, *result);
    const long allocations = counter.Count();
    EXPECT_EQ(allocations, 0);
    EXPECT_EQ(Answer(*result), *before++);
  }
}

TEST(Allocations, NoneForAWarmCase) {
  const std::string regression = "functionName='regression' modelType=";
  const std::string classification = "functionName='classification' modelType=";
  const std::string errors =
      "<PCovMatrix><PCovCell pRow='p' pCol='q' value='1'/><PCovCell pRow='q' pCol='q' "
      "value='9'/></PCovMatrix>"
      "<Output><OutputField name='v'/><OutputField name='e' feature='standardError'/></Output>";
  const std::string hazards =
      "<BaseCumHazardTables><BaselineStratum maxTime='20' value='" + std::string(kRed) +
      "'><BaselineCell time='1' cumHazard='2'/></BaselineStratum><BaselineStratum "
      "maxTime='20' value='" +
      kBlue + "'><BaselineCell time='1' cumHazard='1'/></BaselineStratum></BaseCumHazardTables>";
  const std::string outputs =
      "<OutputField name='v'/><OutputField name='d' feature='predictedDisplayValue'/>"
      "<OutputField name='r' feature='residual'/><OutputField name='t' feature='transformedValue'>"
      "<Apply function='exp'><FieldRef field='r'/></Apply></OutputField>";
  const std::string number = "<Output>" + outputs + "</Output>" + Tables("");
  const std::string category =
      "<Output>" + outputs + "<OutputField name='p' feature='probability'/></Output>" +
      Tables("targetCategory='no'") + "<RegressionTable intercept='0' targetCategory='" + kYes + "'/>";
  // x, grade, color, day, amount, answer
  const Cases cases = {
      {"complete", {3., 1., kRed, Day{10}, 5., kYes}},
      {"the other answer", {-50., 1., kBlue, Day{1}, 5., "no"}},
      {"missing cells and the actual value too", {kEmpty, kEmpty, kEmpty, kEmpty, kEmpty, kEmpty}},
      {"a value declared missing", {-99., 2., kRed, Day{10}, 5., kYes}},
      {"declared invalid: no answer", {99., 2., kRed, Day{10}, 5., kYes}},
      {"beyond the interval: no answer", {101., 2., kRed, Day{10}, 5., kYes}},
      {"invalid as missing, invalid as it is", {3., 9., kGreen, Day{10}, 5., kYes}},
      {"beyond the bound", {70., 2., kRed, Day{10}, 5., kYes}},
      {"an actual value of no category", {3., 2., kBlue, Day{10}, 5., kGreen}},
  };
  const std::string ofNo = Estimates(" targetCategory='no'");
  const std::pair<const char*, std::string> documents[] = {
      {"RegressionModel", Regression("regression", "amount", number)},
      {"RegressionModel", Regression("classification", "answer", category)},
      {"GeneralRegressionModel",
       GeneralRegression(regression + "'generalizedLinear' linkFunction='log' trialsVariable='day'", "amount",
                         Estimates("") + "</ParamMatrix>" + errors + "<ParamMatrix>")},
      {"GeneralRegressionModel",
       GeneralRegression(classification + "'multinomialLogistic' offsetValue='-1'", "answer", ofNo)},
      {"GeneralRegressionModel",
       GeneralRegression(classification + "'ordinalMultinomial' cumulativeLink='probit' "
                                          "targetReferenceCategory='no'",
                         "answer", Estimates(" targetCategory='" + std::string(kYes) + "'"))},
      {"GeneralRegressionModel",
       GeneralRegression(
           regression +
               "'CoxRegression' offsetVariable='x' endTimeVariable='day' baselineStrataVariable='color'",
           "amount", Estimates("") + "</ParamMatrix>" + hazards + "<ParamMatrix>")},
  };
  for (const auto& [kind, document] : documents)
    ExpectNoAllocations(document, kind, {"x", "grade", "color", "day", "amount", "answer"}, cases);
}

TEST(Allocations, NoneForTheNeighborsOfAWarmCase) {
  const Cases cases = {
      {"a case", {0., 1., "a"}},
      {"another one", {6., 8., "b"}},
      {"missing cells", {kEmpty, kEmpty, "a"}},
      {"nothing to compare", {kEmpty, kEmpty, kEmpty}},
      {"an unlisted category", {3., 4., kGreen}},
      {"an invalid value", {5000., 4., "a"}},
  };
  NeighborDocument document;
  document.inputs = "<KNNInput field='x'/><KNNInput field='z'/><KNNInput field='c' compareFunction='delta'/>";
  for (std::size_t id = document.rows.find("<id>"); id != std::string::npos;
       id = document.rows.find("<id>", id + 9))
    document.rows.insert(id + 4, kYes);
  document.content =
      "<Output><OutputField name='id' feature='entityId' rank='2'/>"
      "<OutputField name='d' feature='affinity' rank='2'/></Output>";
  ExpectNoAllocations(document.Text(), kNeighborModel, {"x", "z", "c"}, cases);
  document.attributes =
      "functionName='mixed' numberOfNeighbors='3' continuousScoringMethod='median' "
      "categoricalScoringMethod='weightedMajorityVote'";
  document.targets = "<MiningField name='k' usageType='target'/><MiningField name='y' usageType='target'/>";
  document.content =
      "<Output><OutputField name='y' targetField='y'/><OutputField name='p' feature='probability'/>"
      "<OutputField name='id' feature='entityId'/></Output>";
  ExpectNoAllocations(document.Text(), kNeighborModel, {"x", "z", "c"}, cases);
}

}  // namespace
