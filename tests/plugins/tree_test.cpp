// Trees: predicates, which node answers and with what, outputs, refusals.

#include "plugins/TreeDocument.h"

namespace {

using namespace VeyraTest;
using Document = TreeDocument;

// "1" where a predicate is true, "0" where it is false, "?" where it is unknown, for each of the values; "-"
// is an empty slot.
std::string TruthTable(const std::string& field, const std::string& predicate, const std::string& values,
                       const std::string& rules) {
  Document document =
      OfNumber(Node("score='0'", "<True/>" + Node("score='1'", predicate)),
               "missingValueStrategy='nullPrediction' noTrueChildStrategy='returnLastPrediction'");
  document.rules = rules;
  document.ruled = field;
  const std::unique_ptr<ScoreModel> model = MakeModel(document.Text(), "TreeModel");
  std::istringstream in(values);
  std::string answers;
  for (std::string value; in >> value;) {
    const std::string answer = Answer(*Scored(*model, field + "=" + (value == "-" ? "" : value)));
    answers += answer == "missing" ? "?" : answer;
  }
  return answers;
}

// By the standard: operators are what they are called, a question about missing values is never unknown, and
// a value that is not listed differs from all that are.
TEST(Tree, PredicatesAreTheStandards) {
  const char* const kAsIs = "invalidValueTreatment='asIs'";
  const char* const kMissing = "invalidValueTreatment='asMissing'";
  const struct {
    const char* field;
    std::string predicate;
    const char *values, *rules, *want;
  } rows[] = {
      {"x", Simple("x", "lessThan", "5"), "-7 4.999 5 6 -", "", "1100?"},
      {"x", Simple("x", "lessOrEqual", "5"), "4 5 5.000000000000001 5.1 -", "", "1110?"},
      {"x", Simple("x", "greaterThan", "5"), "4 5 5.1 -", "", "001?"},
      {"x", Simple("x", "greaterOrEqual", "5"), "4 4.999999999999999 5 6 -", "", "0111?"},
      {"x", Simple("x", "equal", "0"), "0 1e-300 -1 -", "", "100?"},
      {"x", Simple("x", "notEqual", "5"), "4 5 6 -", "", "101?"},
      {"x", Simple("x", "isMissing"), "4 -", "", "01"},
      {"x", Simple("x", "isNotMissing"), "4 -", "", "10"},
      {"x", Simple("x", "equal", ""), "4 -", "", "01"},
      {"c", Simple("c", "equal", "a"), "a b z m -", kAsIs, "100??"},
      {"c", Simple("c", "notEqual", "a"), "a b z m -", kAsIs, "011??"},
      {"c", Simple("c", "notEqual", "a"), "a b z m -", kMissing, "01???"},
      {"c", Simple("c", "isMissing"), "a z m -", kAsIs, "0011"},
      {"c", Simple("c", "isMissing"), "a z m -", kMissing, "0111"},
      {"c", Simple("c", "isNotMissing"), "a z m -", kAsIs, "1100"},
      {"c", Set("c", "isIn", "a d"), "a b d z m -", kAsIs, "1010??"},
      {"c", Set("c", "isNotIn", "a d"), "a b d z m -", kAsIs, "0101??"},
      {"free", Simple("free", "equal", "p"), "p q -", "", "10?"},
      {"free", Simple("free", "notEqual", "p"), "p q -", "", "01?"},
      {"free", Set("free", "isIn", "p q"), "p q s -", "", "110?"},
      {"free", Set("free", "isNotIn", "p q"), "p q s -", "", "001?"},
      {"n", Simple("n", "equal", "7"), "5 7 -", "", "01?"},
      {"n", Set("n", "isNotIn", "7", "int"), "5 7 9 -", kAsIs, "101?"},
      {"o", Simple("o", "lessThan", "mid"), "low mid high -", "", "100?"},
      {"o", Simple("o", "greaterOrEqual", "mid"), "low mid high -", "", "011?"},
      {"o", Simple("o", "notEqual", "mid"), "low mid high top -", kAsIs, "1011?"},
      {"o", Simple("o", "isNotMissing"), "low -", "", "10"},
      {"o", Set("o", "isNotIn", "mid"), "low mid high -", "", "101?"},
      {"r", Simple("r", "lessThan", "2"), "3 1 2 -", "", "110?"},
      {"r", Set("r", "isIn", "3 2", "int"), "3 1 2 -", "", "101?"},
      {"r", Set("r", "isNotIn", "3 2", "int"), "3 1 2 -", "", "010?"},
      {"rank", Simple("rank", "lessThan", "3"), "-2 2 3 -", "", "110?"},
      {"x", Compound("xor", Simple("x", "lessThan", "5") + Simple("x", "isMissing")), "4 6 -", "", "10?"},
      {"x", Compound("or", Simple("x", "lessThan", "5") + Simple("x", "isMissing")), "4 6 -", "", "101"},
      {"c", Compound("and", Simple("c", "notEqual", "a") + Simple("c", "isNotMissing")), "a b m -", "",
       "0100"},
      {"c", Compound("surrogate", Set("c", "isNotIn", "a") + Simple("c", "isMissing")), "a b -", "", "011"},
      {"x", Compound("xor", "<False/>"), "4 -", "", "00"},
      {"x", Compound("and", "<True/>" + Compound("xor", "<False/>")), "4 -", "", "00"},
      {"x", "<True/>", "4 -", "", "11"},
      {"x", "<False/>", "4 -", "", "00"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.predicate + row.rules);
    EXPECT_EQ(TruthTable(row.field, row.predicate, row.values, row.rules), row.want);
    // A compound hides the predicate from the array: the object itself must answer the same.
    EXPECT_EQ(TruthTable(row.field, Compound("or", row.predicate + Compound("xor", "<False/><False/>")),
                         row.values, row.rules),
              row.want);
  }
}

// The answers to days of a date field, "1" where the predicate holds.  The fields have an interval from day 0
// to day 10 and the attributes `rules`.
std::string AnswersToDays(const std::string& predicate, const std::string& type, const std::string& rules,
                          const std::vector<double>& days) {
  const std::string document =
      "<PMML version='4.4'><DataDictionary numberOfFields='2'><DataField name='d' optype='continuous' "
      "dataType='" +
      type +
      "'><Interval closure='closedClosed' leftMargin='0' rightMargin='10'/></DataField>"
      "<DataField name='y' optype='continuous' dataType='double'/></DataDictionary>"
      "<TreeModel functionName='regression' noTrueChildStrategy='returnLastPrediction'><MiningSchema>"
      "<MiningField name='d' " +
      rules + "/><MiningField name='y' usageType='target'/></MiningSchema>" +
      Node("score='0'", "<True/>" + Node("score='1'", predicate)) + "</TreeModel></PMML>";
  const std::unique_ptr<ScoreModel> model = MakeModel(document, "TreeModel");
  CaseRecord record(1);
  record.Add("d", nullptr);
  model->PrepareForCases(record);
  const std::unique_ptr<ScoreResult> result(model->NewResult());
  std::string answers;
  for (const double day : days) {
    record.Clear(0);
    if (day >= 0) record.SetValue(0, day, KxVeyra_940::ScoreDictVar::kDateDaysSince1970);
    model->Score(record, *result);
    answers += Answer(*result).substr(0, 1);
  }
  return answers;
}

// The array counted seconds of a date where its interval counted days.
TEST(Tree, DatesAreComparedInDays) {
  const std::vector<double> days = {0, 1, 9, 10, -1, 11};
  const struct {
    std::string predicate;
    const char *rules, *want;
  } rows[] = {
      {Simple("d", "lessOrEqual", "9"), "", "11100m"},
      {Simple("d", "equal", "777600"), "", "00000m"},
      {Simple("d", "equal", "9"), "", "00100m"},
      {Simple("d", "lessThan", "1970-01-10"), "", "11000m"},
      {Simple("d", "notEqual", "1970-1-2"), "", "10110m"},
      {Simple("d", "greaterOrEqual", "1970-01-10"), "", "00110m"},
      {Simple("d", "equal", "9"), "missingValueReplacement='1970-01-10'", "00101m"},
      {Simple("d", "equal", "9"), "missingValueReplacement='9'", "00101m"},
      {Simple("d", "equal", "9"), "outliers='asExtremeValues' highValue='9'", "00110m"},
      {Simple("d", "isMissing"), "outliers='asMissingValues' lowValue='1'", "10001m"},
      {Simple("d", "equal", "8"), "invalidValueTreatment='asValue' invalidValueReplacement='1970-01-09'",
       "000001"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.predicate + row.rules);
    EXPECT_EQ(AnswersToDays(row.predicate, "date", row.rules, days), row.want);
    // A compound hides the predicate from the array.
    EXPECT_EQ(AnswersToDays(Compound("or", row.predicate + Compound("xor", "<False/><False/>")), "date",
                            row.rules, days),
              row.want);
  }
  // Other types count in days since their own epoch: 3653 is the day 0 of 1970.
  EXPECT_EQ(AnswersToDays(Simple("d", "lessOrEqual", "3662"), "dateDaysSince[1960]", "", days), "11100m");
}

TEST(Tree, InfiniteNumbersAreNumbers) {
  const std::unique_ptr<ScoreModel> model =
      MakeModel(OfNumber(Node("score='0'", "<True/>" + Node("score='1'", Simple("x", "lessThan", "5")) +
                                               Node("score='2'", Simple("x", "greaterThan", "5"))))
                    .Text(),
                "TreeModel");
  for (const double sign : {-1.0, 1.0}) {
    CaseRecord record(1);
    record.Add("x", new NumericValue(sign * NumericValue::gInfinity));
    model->PrepareForCases(record);
    const std::unique_ptr<ScoreResult> result(model->NewResult());
    model->Score(record, *result);
    EXPECT_EQ(Answer(*result), sign < 0 ? "1" : "2");
  }
  const Document replaced = {
      .content = Node("score='0'", "<True/>" + Node("score='1'", Simple("x", "greaterThan", "5"))),
      .rules = "missingValueReplacement='1e999'"};
  EXPECT_EQ(Answer(*Scored(*MakeModel(replaced.Text(), "TreeModel"), "x=")), "1");
}

TEST(Tree, Answers) {
  const std::string shares =
      "<ScoreDistribution value='no' recordCount='3'/><ScoreDistribution value='yes' recordCount='3'/>";
  const std::string given =
      "<ScoreDistribution value='no' recordCount='1' probability='0.25' confidence='0.5'/>"
      "<ScoreDistribution value='yes' recordCount='1' probability='0.75'/>";
  const std::string outputs =
      "<Output><OutputField name='d' feature='predictedDisplayValue'/><OutputField name='p' "
      "feature='probability'/>"
      "<OutputField name='n' feature='confidence' value='no'/><OutputField name='id' "
      "feature='entityId'/></Output>";
  const std::string number = "<Output><OutputField name='id' feature='entityId'/></Output>";
  const std::string split =
      Node("score='1'", "<False/>") +
      Node("score='2'", "<True/>" + Node("id='deep' score='3'", Simple("x", "lessThan", "5")));
  const struct {
    const char* what;
    Document document;
    const char *data, *want;
  } rows[] = {
      {"the category that occurs most often, the first of several",
       OfClass(outputs + Node("", "<True/>" + shares)), "x=1", "no|d=No|p=0.5|n=0.5|id=1"},
      {"the score counts, not the shares", OfClass(outputs + Node("score='may'", "<True/>" + shares)), "x=1",
       "may|d=may|p=0|n=0.5|id=1"},
      {"probabilities and confidences as they are given",
       OfClass(outputs + Node("score='no'", "<True/>" + given)), "x=1", "no|d=No|p=0.25|n=0.5|id=1"},
      {"no shares, no probabilities", OfClass(outputs + Node("score='no'", "<True/>")), "x=1",
       "no|d=No|p=missing|n=missing|id=1"},
      {"an id", OfNumber(number + Node("score='0'", "<True/>" + split)), "x=1", "3|id=deep"},
      {"without ids nodes are counted",
       OfNumber(number + Node("score='0'", "<True/>" + split), "noTrueChildStrategy='returnLastPrediction'"),
       "x=9", "2|id=3"},
      {"no true child", OfNumber(number + Node("score='0'", "<True/>" + split)), "x=9", "missing|id=missing"},
      {"a root that is false", OfNumber(Node("score='0'", Simple("x", "lessThan", "5"))), "x=9", "missing"},
      {"a target's rules",
       OfNumber("<Targets><Target field='y' optype='continuous' rescaleFactor='2'/></Targets>" +
                Node("score='4'", "<True/>")),
       "x=9", "8"},
      {"a replacement comes before the walk",
       {.content = Node("score='0'", "<True/>" + Node("score='1'", Simple("x", "equal", "3"))),
        .rules = "missingValueReplacement='3'"},
       "x=",
       "1"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Answer(*Scored(*MakeModel(row.document.Text(), "TreeModel"), row.data)), row.want);
  }
}

TEST(Tree, AnInvalidValueEndsTheCase) {
  const Document document =
      OfNumber(Node("score='0'", "<True/>" + Node("score='1'", Simple("c", "equal", "a"))),
               "noTrueChildStrategy='returnLastPrediction'");
  EXPECT_EQ(Answer(*Scored(*MakeModel(document.Text(), "TreeModel"), "c=z")), "missing");
}

// Deeper than any stack: nodes are neither read nor walked by recursion.
TEST(Tree, MayBeVeryDeep) {
  constexpr int kDepth = 100000;
  std::string text;
  std::string end;
  for (int i = 0; i < kDepth; ++i) {
    text += "<Node score='" + std::to_string(i) + "'><True/>";
    end += "</Node>";
  }
  const std::unique_ptr<ScoreModel> model = MakeModel(OfNumber(text + end).Text(), "TreeModel");
  EXPECT_EQ(Scored(*model, "x=1")->GetPredictedValue()->GetDouble(), kDepth - 1);
}

TEST(Tree, Refusals) {
  const auto root = [](const std::string& content) { return OfNumber(Node("score='0'", content)); };
  const auto withPredicate = [&](const std::string& predicate) { return root(predicate); };
  const auto shares = [](const std::string& content) { return OfClass(Node("", "<True/>" + content)); };
  const std::string leaf = Node("id='l' score='1' recordCount='1'", "<True/>");
  const struct {
    const char* what;
    Document document;
    const char* want;
  } rows[] = {
      {"another function",
       {.content = leaf, .attributes = "functionName='clustering'"},
       "260303: clustering, functionName"},
      {"no node", OfNumber(""), "260174: Node, TreeModel"},
      {"two roots", OfNumber(leaf + leaf), "260272: Node, TreeModel"},
      {"an unknown strategy", OfNumber(leaf, "missingValueStrategy='guess'"),
       "260152: guess, missingValueStrategy"},
      {"an unknown strategy for no child", OfNumber(leaf, "noTrueChildStrategy='guess'"),
       "260152: guess, noTrueChildStrategy"},
      {"an unknown characteristic", OfNumber(leaf, "splitCharacteristic='none'"),
       "260152: none, splitCharacteristic"},
      {"a penalty above 1", OfNumber(leaf, "missingValuePenalty='2'"), "260152: 2, missingValuePenalty"},
      {"no predicate", root(""), "260115: SimplePredicate, Node"},
      {"two predicates", root("<True/><False/>"), "260272: False, Node"},
      {"an embedded model", root("<True/><Regression/>"), "260302: Regression, TreeModel"},
      {"an unknown element", root("<True/><Magic/>"), "260159: Magic, Node"},
      {"a binary split of three",
       {.content = Node("", "<True/>" + leaf + leaf + leaf),
        .attributes = "functionName='regression' splitCharacteristic='binarySplit'"},
       "260246: binarySplit, splitCharacteristic, 3, Node, Node"},
      {"a leaf without a score", OfNumber(Node("", "<True/>")), "260120: score, Node"},
      {"a leaf with an empty score", OfNumber(Node("score=''", "<True/>")), "260285: score, Node"},
      {"a score that is no number", OfNumber(Node("score='a'", "<True/>")), "260151: a, double"},
      {"a score that is no category", OfClass(Node("score='q'", "<True/>")), "260127: q, class"},
      {"a count below 0", OfNumber(Node("score='1' recordCount='-1'", "<True/>")), "260183: -1, recordCount"},
      {"a default child that is none", OfNumber(Node("defaultChild='q'", "<True/>" + leaf)),
       "260153: q, defaultChild, Node"},
      {"no default child", OfNumber(Node("", "<True/>" + leaf), "missingValueStrategy='defaultChild'"),
       "260120: defaultChild, Node"},
      {"no count to weight by",
       OfNumber(Node("", "<True/>" + Node("score='1'", "<True/>")),
                "missingValueStrategy='weightedConfidence'"),
       "260120: recordCount, Node"},
      {"no shares to add up",
       OfClass(Node("score='yes' recordCount='1'", "<True/>"), "missingValueStrategy='aggregateNodes'"),
       "260115: ScoreDistribution, Node"},
      {"a share without a category", shares("<ScoreDistribution recordCount='1'/>"),
       "260120: value, ScoreDistribution"},
      {"a share of nothing", shares("<ScoreDistribution value='yes'/>"),
       "260120: recordCount, ScoreDistribution"},
      {"a share above 1", shares("<ScoreDistribution value='yes' probability='2'/>"),
       "260152: 2, probability"},
      {"a share given twice",
       shares("<ScoreDistribution value='yes' recordCount='1'/><ScoreDistribution value='yes' "
              "recordCount='1'/>"),
       "260203: ScoreDistribution, yes, Node"},
      {"a probability for some",
       shares(
           "<ScoreDistribution value='yes' probability='1'/><ScoreDistribution value='no' recordCount='0'/>"),
       "260164: ScoreDistribution, probability"},
      {"a field that is none", withPredicate(Simple("q", "equal", "1")),
       "260125: q, DataDictionary, TransformationDictionary"},
      {"a field that is no input", withPredicate(Simple("y", "equal", "1")), "260161: y"},
      {"a field that is no input, in a compound",
       withPredicate(Compound("or", Simple("x", "equal", "1") + Simple("y", "equal", "1"))), "260161: y"},
      {"an order of categories", withPredicate(Simple("c", "lessThan", "b")),
       "260153: lessThan, operator, c"},
      {"an unknown operator",
       withPredicate(Compound("or", Simple("x", "equal", "1") + Simple("c", "like", "b"))),
       "260303: like, operator"},
      {"a set of numbers", withPredicate(Set("x", "isIn", "1 2", "real")),
       "260185: x, categorical, ordinal, optype"},
      {"a set of numbers, in a compound",
       withPredicate(Compound("or", Simple("x", "equal", "1") + Set("x", "isIn", "1 2", "real"))),
       "260185: x, categorical, ordinal, optype"},
      {"an unknown predicate", withPredicate(Compound("or", Simple("x", "equal", "1") + "<Magic/>")),
       "260159: Magic, CompoundPredicate"},
      {"an empty compound", withPredicate("<CompoundPredicate booleanOperator='or'/>"),
       "260283: CompoundPredicate"},
      {"confidence of a number",
       OfNumber("<Output><OutputField name='o' feature='confidence'/></Output>" + leaf),
       "260303: confidence, feature"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Refusal(row.document.Text(), "TreeModel"), row.want);
  }
}

TEST(Tree, OlderDocumentsSayLess) {
  const std::string document =
      "<PMML version='2.0'><DataDictionary numberOfFields='2'><DataField name='x' optype='continuous'/>"
      "<DataField name='k' optype='categorical'/></DataDictionary>"
      "<TreeModel modelName='old' functionName='classification'><MiningSchema><MiningField name='x'/>"
      "<MiningField name='k' usageType='predicted'/></MiningSchema><Node score='3' recordCount='4'><True/>"
      "<Node score='1' recordCount='2'><SimplePredicate field='x' operator='lessThan' value='5'/>"
      "<ScoreDistribution value='1' recordCount='2'/></Node></Node></TreeModel></PMML>";
  const std::unique_ptr<ScoreModel> model = MakeModel(document, "TreeModel");
  const std::unique_ptr<ScoreResult> result = Scored(*model, "x=1");
  EXPECT_EQ(Answer(*result), "1");
  EXPECT_EQ(Probabilities(*result), (std::vector<double>{0, 1}));
}

}  // namespace
