// Numbers that no rule touches are read without a look at the rules.  Every answer must be what the
// dictionary's variable, which always looks, says.

#include <cmath>
#include <limits>

#include "plugins/Scoring.h"

namespace {

using namespace VeyraTest;

struct FieldRow {
  const char* what;
  const char* values;  // of the data field
  const char* bounds;  // of the mining field
  double low = -std::numeric_limits<double>::infinity();
  double high = std::numeric_limits<double>::infinity();
};

std::string Document(const FieldRow& row) {
  return std::string("<PMML version='4.4'><DataDictionary numberOfFields='1'>") +
         "<DataField name='x' optype='continuous' dataType='double'>" + row.values +
         "</DataField></DataDictionary><RegressionModel functionName='regression'><MiningSchema>"
         "<MiningField name='x' " +
         row.bounds +
         "/></MiningSchema><RegressionTable intercept='0'><NumericPredictor name='x' coefficient='1'/>"
         "</RegressionTable></RegressionModel></PMML>";
}

// Around every number that the rows mention, as near as the tolerance and nearer.
std::vector<double> Numbers() {
  const double infinity = std::numeric_limits<double>::infinity();
  std::vector<double> numbers = {0.0, -0.0, 1e-320, infinity, -infinity, std::nan("")};
  for (const double bound : {-1e6, -999., -1., 0., 1., 5., 10., 99., 1e6, 1.7976931348623157e308}) {
    for (const double factor : {0.0, 1e-16, 1e-15, 2e-14, 1e-13, 1e-12, 1e-11, 0.1}) {
      for (const double sign : {-1., 1.}) {
        numbers.push_back(bound + sign * factor * std::max(std::fabs(bound), 1.0));
        numbers.push_back(-numbers.back());
      }
    }
  }
  return numbers;
}

TEST(PlainNumbers, AreThoseThatTheVariableCallsValid) {
  const FieldRow rows[] = {
      {"no rule", "", ""},
      {"a closed interval", "<Interval closure='closedClosed' leftMargin='-1' rightMargin='10'/>", ""},
      {"an open interval", "<Interval closure='openOpen' leftMargin='0' rightMargin='10'/>", ""},
      {"an interval without an end", "<Interval closure='openOpen' leftMargin='0'/>", ""},
      {"a missing number below", "<Value value='-999' property='missing'/>", ""},
      {"a missing number above", "<Value value='99' property='missing'/>", ""},
      {"the missing number 0", "<Value value='0' property='missing'/>", ""},
      {"missing numbers inside an interval",
       "<Interval closure='closedOpen' leftMargin='0' rightMargin='1000000'/>"
       "<Value value='5' property='missing'/><Value value='99' property='invalid'/>",
       ""},
      {"a missing number beyond the interval",
       "<Interval closure='closedClosed' leftMargin='0' rightMargin='10'/><Value value='-999' "
       "property='missing'/>",
       ""},
      {"extreme values", "", "outliers='asMissingValues' lowValue='-1' highValue='10'", -1, 10},
      {"extreme values beyond an interval",
       "<Interval closure='openClosed' leftMargin='1' rightMargin='99'/>",
       "outliers='asMissingValues' lowValue='0' highValue='10'", 0, 10},
  };
  for (const FieldRow& row : rows) {
    SCOPED_TRACE(row.what);
    const std::unique_ptr<ScoreModel> model = MakeModel(Document(row), "RegressionModel");
    CaseRecord record;
    record.Add("x", nullptr);
    ASSERT_TRUE(model->PrepareForCases(record).IsOK());
    const std::unique_ptr<ScoreResult> result(model->NewResult());
    int answered = 0;
    for (const double number : Numbers()) {
      SCOPED_TRACE(number);
      record.SetValue(0, number);
      const bool isValid =
          !std::isnan(number) && !model->GetDictionary()->GetVar("x")->IsMissingValue(record.Get(0));
      // An infinite number is valid, but no answer.
      const bool hasAnswer = isValid && number >= row.low && number <= row.high && std::isfinite(number);
      ASSERT_EQ(model->Score(record, *result).IsOK(), hasAnswer);
      if (!hasAnswer) continue;
      ++answered;
      EXPECT_EQ(result->GetPredictedValue()->GetDouble(), number);
    }
    EXPECT_GT(answered, 20);
  }
}

}  // namespace
