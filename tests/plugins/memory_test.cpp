// Memory that runs out while a case is scored: nothing is thrown, nothing is half an answer, and the model
// goes on.

#include "AllocationCounter.h"
#include "factory/BaseModel.h"
#include "plugins/GeneralRegressionDocument.h"
#include "plugins/NeighborDocument.h"
#include "plugins/TreeDocument.h"

namespace {

using namespace VeyraTest;

// Whether the result is as Reset leaves it.
void ExpectReset(const ScoreResult& result) {
  EXPECT_EQ(result.GetPredictedValue(), nullptr);
  EXPECT_TRUE(NumericValue::IsSystemMissingValue(result.GetProbability()));
  for (int i = 0; i < result.GetNumberOfOutputs(); ++i) EXPECT_EQ(result.GetOutputValue(i), nullptr);
  for (int i = 0; i < result.GetNumberOfCategories(); ++i)
    EXPECT_TRUE(NumericValue::IsSystemMissingValue(result.GetCategoryProbability(i)));
}

// Lets each allocation of a case fail in turn, in a model that scored the cases before it; all cases are
// answered afterwards as if it had not been.  Returns how many allocations there are.
int LetEachAllocationFail(const ScoreModel& pristine, const std::vector<CaseRecord>& records,
                          const std::vector<std::string>& answers, std::size_t failing) {
  for (int successes = 0;; ++successes) {
    SCOPED_TRACE("allocation " + std::to_string(successes) + " of case " + std::to_string(failing));
    const std::unique_ptr<ScoreModel> model(pristine.Clone());
    model->PrepareForCases(records.front());
    const std::unique_ptr<ScoreResult> result(model->NewResult());
    for (std::size_t i = 0; i < failing; ++i) model->Score(records[i], *result);
    bool hasFailed = false;
    KxScore::KxStatus status;
    {
      const AllocationFailure failure(successes);
      status = model->Score(records[failing], *result);
      hasFailed = failure.HasHappened();
    }
    if (!hasFailed) return successes;
    EXPECT_TRUE(status.IsError());
    EXPECT_EQ(status.GetErrorCode(), KxVeyra_940::BaseModel::kOutOfMemory);
    ExpectReset(*result);
    for (std::size_t i = 0; i < records.size(); ++i) {
      model->Score(records[i], *result);
      EXPECT_EQ(Answer(*result), answers[i]) << "case " << i;
    }
    if (::testing::Test::HasFailure()) return successes;
  }
}

// The same for all cases, whose allocations it adds up.
int LetEachAllocationFail(const ScoreModel& pristine, const std::vector<std::string>& cases) {
  std::vector<CaseRecord> records;
  for (const std::string& data : cases) records.push_back(MakeCase(data));
  std::vector<std::string> answers;
  const std::unique_ptr<ScoreModel> whole(pristine.Clone());
  whole->PrepareForCases(records.front());
  const std::unique_ptr<ScoreResult> answered(whole->NewResult());
  for (const CaseRecord& record : records) {
    whole->Score(record, *answered);
    answers.push_back(Answer(*answered));
  }
  int allocations = 0;
  for (std::size_t i = 0; i < records.size(); ++i)
    allocations += LetEachAllocationFail(pristine, records, answers, i);
  return allocations;
}

const std::string kLongText = "a text that is too long to be kept without an allocation";

// Derived fields of many kinds, read one through the other.
std::string DerivedFields() {
  const auto field = [](const std::string& name, bool isText, const std::string& expression) {
    return "<DerivedField name='" + name + "' " +
           (isText ? "optype='categorical' dataType='string'>" : "optype='continuous' dataType='double'>") +
           expression + "</DerivedField>";
  };
  return field("joined", true,
               "<Apply function='concat'><Constant dataType='string'>" + kLongText +
                   "</Constant><FieldRef field='free'/></Apply>") +
         field(
             "upper", true,
             "<Apply function='if'><Apply function='greaterThan'><FieldRef field='x'/><Constant>1</Constant>"
             "</Apply><Apply function='uppercase'><FieldRef field='joined'/></Apply>"
             "<FieldRef field='joined'/></Apply>") +
         field("mapped", true,
               "<MapValues outputColumn='out' dataType='string' defaultValue='" + kLongText +
                   "'><FieldColumnPair field='upper' column='in'/><InlineTable><row><in>" + kLongText +
                   "</in><out>small</out></row></InlineTable></MapValues>") +
         field("wide", false,
               "<Apply function='+'><Apply function='length'><FieldRef field='upper'/></Apply>"
               "<Apply function='sqrt'><FieldRef field='x'/></Apply></Apply>") +
         field("bin", true,
               "<Discretize field='wide' defaultValue='" + kLongText +
                   "'><DiscretizeBin binValue='few, as far as texts of letters go'><Interval "
                   "closure='openClosed' rightMargin='3'/></DiscretizeBin></Discretize>") +
         field("sum", false, "<Apply function='+'><FieldRef field='wide'/><FieldRef field='x'/></Apply>");
}

const std::string kOutputs =
    "<Output><OutputField name='v'/><OutputField name='t' feature='transformedValue' dataType='string' "
    "optype='categorical'><Apply function='if'><Apply function='isMissing'><FieldRef field='v'/></Apply>"
    "<Constant dataType='string'>nothing</Constant><Constant dataType='string'>" +
    kLongText + "</Constant></Apply></OutputField></Output>";

TEST(Memory, MayRunOutWhileACaseIsScored) {
  const std::string local = "<LocalTransformations>" + DerivedFields() + "</LocalTransformations>";
  const std::string nodes =
      Node("score='1' recordCount='9'",
           "<True/>" + Node("score='2' recordCount='4'", Simple("mapped", "equal", kLongText.c_str())) +
               Node("score='3' recordCount='5'", Simple("sum", "greaterThan", "50")));
  std::string regression = OfNumber(local + kOutputs + "@").Text();
  for (const std::string tag : {"TreeModel", "TreeModel"})
    regression.replace(regression.find(tag), tag.size(), "RegressionModel");
  regression.replace(regression.find('@'), 1,
                     "<RegressionTable intercept='0'><NumericPredictor name='sum' coefficient='1'/>"
                     "<CategoricalPredictor name='mapped' value='" +
                         kLongText + "' coefficient='1000'/></RegressionTable>");
  GeneralRegressionDocument general = {
      .design = Cell("p1", "x", "1"), .estimates = Beta("p1", "1") + Beta("p0", "1"), .more = kOutputs};
  NeighborDocument neighbors;
  neighbors.attributes = "functionName='regression' numberOfNeighbors='2'";
  neighbors.targets = "<MiningField name='y' usageType='target'/>";
  neighbors.content = kOutputs;
  const auto tree = [&](const char* strategy) {
    return OfNumber(local + kOutputs + nodes, "missingValueStrategy='" + std::string(strategy) + "'").Text();
  };
  const TreeDocument fallback = OfClass(
      "<Targets><Target field='class' optype='categorical'><TargetValue value='may' priorProbability='0.7'/>"
      "</Target></Targets>" +
      kOutputs + Node("score='yes'", Simple("x", "lessThan", "-5")));
  const struct {
    const char* what;
    std::string document;
    const char* kind;
  } rows[] = {
      {"a tree", tree("none"), "TreeModel"},
      {"a tree of several nodes", tree("weightedConfidence"), "TreeModel"},
      {"a fallback", fallback.Text(), "TreeModel"},
      {"a regression", regression, "RegressionModel"},
      {"a general regression", general.Text(), kGeneralRegression},
      {"neighbours", neighbors.Text(), kNeighborModel},
  };
  const std::vector<std::string> cases = {
      "x=4, z=1, free=abc, c=a, n=5, o=low, r=3, rank=1, day=, t=1",
      "x=0, z=2, free=, c=b, n=7, o=mid, r=1, rank=1, day=, t=2",
      "x=9, z=2, free=" + kLongText + ", c=b, n=7, o=mid, r=1, rank=1, day=, t=2",
      "x=, z=2, free=q, c=b, n=7, o=mid, r=1, rank=1, day=, t=2"};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    ASSERT_EQ(Refusal(row.document, row.kind), row.kind);
    EXPECT_GT(LetEachAllocationFail(*MakeModel(row.document, row.kind), cases), 0);
  }
}

}  // namespace
