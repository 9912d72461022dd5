// Models that read derived fields: the document's and their own.

#include "AllocationCounter.h"
#include "plugins/Scoring.h"

namespace {

using namespace VeyraTest;

std::string Derived(const std::string& name, const std::string& dataType, const std::string& expression) {
  const bool isText = dataType == "string";
  return "<DerivedField name='" + name + "' optype='" + (isText ? "categorical" : "continuous") +
         "' dataType='" + dataType + "'>" + expression + "</DerivedField>";
}

const std::string kShared =
    Derived("double", "double", "<Apply function='*'><FieldRef field='x'/><Constant>2</Constant></Apply>") +
    Derived("size", "string",
            "<Discretize field='x'><DiscretizeBin binValue='small'><Interval closure='openOpen' "
            "rightMargin='10'/>"
            "</DiscretizeBin><DiscretizeBin binValue='large'><Interval closure='closedOpen' leftMargin='10'/>"
            "</DiscretizeBin></Discretize>") +
    Derived("unused", "double", "<FieldRef field='other'/>");
const std::string kLocal =
    Derived("sum", "double", "<Apply function='+'><FieldRef field='double'/><FieldRef field='y'/></Apply>") +
    Derived("before", "double", "<Lag field='x'/>") +
    Derived("filled", "double",
            "<Apply function='if'><Apply function='isMissing'><FieldRef field='y'/></Apply>"
            "<Constant>1000</Constant><FieldRef field='y'/></Apply>") +
    Derived("word", "string", "<Apply function='uppercase'><FieldRef field='s'/></Apply>");

std::string Document(const std::string& schema, const std::string& model, const std::string& tag,
                     const std::string& local = kLocal) {
  return "<PMML version='4.4'><DataDictionary numberOfFields='5'>"
         "<DataField name='x' optype='continuous' dataType='double'/>"
         "<DataField name='y' optype='continuous' dataType='double'/>"
         "<DataField name='s' optype='categorical' dataType='string'/>"
         "<DataField name='other' optype='continuous' dataType='double'/>"
         "<DataField name='answer' optype='continuous' dataType='double'/></DataDictionary>"
         "<TransformationDictionary>" +
         kShared + "</TransformationDictionary><" + tag + " functionName='regression'><MiningSchema>" +
         schema + "<MiningField name='answer' usageType='target'/></MiningSchema><LocalTransformations>" +
         local + "</LocalTransformations>" + model + "</" + tag + "></PMML>";
}

std::string Regression(const std::string& terms, const std::string& schema =
                                                     "<MiningField name='x'/><MiningField name='y'/>"
                                                     "<MiningField name='s'/>") {
  return Document(schema, "<RegressionTable intercept='0'>" + terms + "</RegressionTable>",
                  "RegressionModel");
}

std::string Term(const std::string& name, int coefficient = 1) {
  return "<NumericPredictor name='" + name + "' coefficient='" + std::to_string(coefficient) + "'/>";
}

struct Row {
  const char* what;
  std::string document;
  const char* values;
  const char* answer;
};

TEST(DerivedInputs, AreComputedFromTheCase) {
  const std::string size = "<CategoricalPredictor name='size' value='large' coefficient='5'/>" + Term("x");
  const std::string word = "<CategoricalPredictor name='word' value='RED' coefficient='5'/>" + Term("x");
  const char* const kReplaced =
      "<MiningField name='x' missingValueReplacement='3'/><MiningField name='y'/>"
      "<MiningField name='s'/>";
  const char* const kBounded =
      "<MiningField name='x' outliers='asExtremeValues' lowValue='0' highValue='4'/>"
      "<MiningField name='y' outliers='asMissingValues' lowValue='0' highValue='4'/>"
      "<MiningField name='s'/>";
  for (const Row& row : {
           Row{"of the document", Regression(Term("double")), "x=3, y=1, s=a", "6"},
           Row{"of the model, from one of the document", Regression(Term("sum") + Term("y")), "x=3, y=1, s=a",
               "8"},
           Row{"a category", Regression(size), "x=10, y=, s=", "15"},
           Row{"another category", Regression(size), "x=9, y=, s=", "9"},
           Row{"a text", Regression(word), "x=1, y=, s=red", "6"},
           Row{"a text without value adds nothing", Regression(word), "x=1, y=, s=", "1"},
           Row{"missing", Regression(Term("sum")), "x=3, y=, s=", "missing"},
           Row{"missing is for the field to deal with", Regression(Term("filled")), "x=, y=, s=", "1000"},
           Row{"the schema's replacement comes first", Regression(Term("double"), kReplaced),
               "x=, y=, s=", "6"},
           Row{"so do its bounds", Regression(Term("double"), kBounded), "x=9, y=, s=", "8"},
           Row{"and what it takes for missing", Regression(Term("filled"), kBounded), "x=, y=9, s=", "1000"},
       }) {
    const auto model = MakeModel(row.document, "RegressionModel");
    CaseRecord record = MakeCase(row.values);
    ASSERT_TRUE(model->PrepareForCases(record).IsOK()) << row.what;
    const std::unique_ptr<ScoreResult> result(model->NewResult());
    model->Score(record, *result);
    EXPECT_EQ(Answer(*result), row.answer) << row.what;
    // A copy shares nothing with its original.
    const std::unique_ptr<ScoreModel> copy(model->Clone());
    ASSERT_TRUE(copy->PrepareForCases(record).IsOK());
    copy->Score(record, *result);
    EXPECT_EQ(Answer(*result), row.answer) << row.what << ", copied";
  }
}

TEST(DerivedInputs, DecideNodesOfTrees) {
  const auto node = [](const std::string& score, const std::string& predicate) {
    return "<Node score='" + score + "'>" + predicate + "</Node>";
  };
  const std::string tree = Document(
      "<MiningField name='x'/><MiningField name='y'/><MiningField name='s'/>",
      "<Node><True/>" + node("1", "<SimplePredicate field='sum' operator='greaterThan' value='10'/>") +
          node("2", "<SimplePredicate field='size' operator='equal' value='large'/>") +
          node("3",
               "<SimpleSetPredicate field='word' booleanOperator='isIn'><Array type='string' n='2'>RED BLUE"
               "</Array></SimpleSetPredicate>") +
          node("4",
               "<CompoundPredicate booleanOperator='surrogate'>"
               "<SimplePredicate field='double' operator='lessThan' value='0'/>"
               "<SimplePredicate field='word' operator='isMissing'/></CompoundPredicate>") +
          node("5", "<True/>") + "</Node>",
      "TreeModel");
  const auto model = MakeModel(tree, "TreeModel");
  const std::unique_ptr<ScoreModel> copy(model->Clone());
  const std::unique_ptr<ScoreResult> result(model->NewResult());
  for (const auto& [values, answer] : {std::pair("x=3, y=9, s=a", "1"), std::pair("x=12, y=-20, s=a", "2"),
                                       std::pair("x=1, y=1, s=blue", "3"), std::pair("x=-1, y=1, s=a", "4"),
                                       std::pair("x=1, y=1, s=a", "5")}) {
    CaseRecord record = MakeCase(values);
    for (ScoreModel* each : {model.get(), copy.get()}) {
      ASSERT_TRUE(each->PrepareForCases(record).IsOK());
      each->Score(record, *result);
      EXPECT_EQ(Answer(*result), answer) << values;
    }
  }
}

TEST(DerivedInputs, ALagRemembersTheCaseBefore) {
  const auto model = MakeModel(Regression(Term("before") + Term("x", 100)), "RegressionModel");
  CaseRecord record = MakeCase("x=1, y=1, s=a");
  ASSERT_TRUE(model->PrepareForCases(record).IsOK());
  const std::unique_ptr<ScoreResult> result(model->NewResult());
  std::string answers;
  for (const double x : {1.0, 2.0, 3.0}) {
    record.SetValue("x", x);
    model->Score(record, *result);
    answers += Answer(*result) + " ";
  }
  EXPECT_EQ(answers, "missing 201 302 ");
}

TEST(DerivedInputs, ACaseAllocatesNothing) {
  const auto model = MakeModel(Regression(Term("sum") + Term("filled") +
                                          "<CategoricalPredictor name='word' value='RED' coefficient='5'/>"),
                               "RegressionModel");
  CaseRecord record = MakeCase("x=1, y=1, s=a text that is long enough to be stored elsewhere");
  ASSERT_TRUE(model->PrepareForCases(record).IsOK());
  const std::unique_ptr<ScoreResult> result(model->NewResult());
  for (int i = 0; i < 3; ++i) model->Score(record, *result);
  const AllocationCounter counter;
  for (int i = 0; i < 100; ++i) model->Score(record, *result);
  EXPECT_EQ(counter.Count(), 0);
}

TEST(DerivedInputs, AreRefusedWithTheMessageOfTheRule) {
  EXPECT_EQ(Refusal(Regression(Term("unused")), "RegressionModel"), "260161: other");
  EXPECT_EQ(Refusal(Regression(Term("nothing")), "RegressionModel"),
            "260125: nothing, DataDictionary, TransformationDictionary");
  EXPECT_EQ(Refusal(Regression(Term("word")), "RegressionModel"), "260187: word");
  const std::string twice = Derived("double", "double", "<FieldRef field='x'/>");
  EXPECT_EQ(Refusal(Document("<MiningField name='x'/>", "<RegressionTable intercept='0'/>", "RegressionModel",
                             twice),
                    "RegressionModel"),
            "260202: double, DataDictionary");
}

}  // namespace
