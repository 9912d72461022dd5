// Nearest neighbours: measures and compare functions, missing values, ties, votes and averages, several
// targets.

#include <cmath>

#include "data/DateTimeValue.h"
#include "plugins/NeighborDocument.h"

namespace {

using namespace VeyraTest;
using KxVeyra_940::DateTimeValue;
using KxVeyra_940::ScoreDictVar;

std::unique_ptr<ScoreResult> Scored(ScoreModel& model, const char* data) {
  CaseRecord record = MakeCase(data);
  if (const ScoreValue* seconds = record.Get("day"))
    record.Add("day", new DateTimeValue(seconds->GetDouble(), ScoreDictVar::kDate));
  model.PrepareForCases(record);
  std::unique_ptr<ScoreResult> result(model.NewResult());
  model.Score(record, *result);
  return result;
}

// Outputs of all four ranks.
std::string RankedOutputs() {
  std::string outputs;
  for (const char* rank : {"1", "2", "3", "4"}) {
    outputs.append("<OutputField name='id' feature='entityId' rank='").append(rank).append("'/>");
    outputs.append("<OutputField name='d' feature='affinity' rank='").append(rank).append("'/>");
    outputs.replace(outputs.rfind("'id'"), 4, std::string("'id") + rank + "'");
    outputs.replace(outputs.rfind("'d'"), 3, std::string("'d") + rank + "'");
  }
  return "<Output>" + outputs + "</Output>";
}

struct Ranked {
  const char* id;
  double affinity;
};

struct Row {
  const char* what;
  NeighborDocument document;
  const char* data;
  std::vector<Ranked> want;
};

template <std::size_t kCount>
void ExpectNeighbors(const Row (&rows)[kCount]) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    NeighborDocument document = row.document;
    document.content += RankedOutputs();
    ASSERT_EQ(Refusal(document.Text(), kNeighborModel), kNeighborModel);
    const std::unique_ptr<ScoreModel> model = MakeModel(document.Text(), kNeighborModel);
    const std::unique_ptr<ScoreResult> result = Scored(*model, row.data);
    EXPECT_EQ(Text(result->GetPredictedValue()), row.want.empty() ? "missing" : row.want[0].id);
    for (std::size_t i = 0; i < 4; ++i) {
      SCOPED_TRACE("rank " + std::to_string(i + 1));
      const ScoreValue* const id = result->GetOutputValue(static_cast<int>(2 * i));
      const ScoreValue* const affinity = result->GetOutputValue(static_cast<int>(2 * i + 1));
      ASSERT_EQ(Text(id), i < row.want.size() ? row.want[i].id : "missing");
      if (i >= row.want.size()) continue;
      EXPECT_NEAR(affinity->GetDouble(), row.want[i].affinity, 1e-13);
    }
  }
}

std::string Input(const std::string& field, const std::string& attributes = "") {
  return "<KNNInput field='" + field + "' " + attributes + "/>";
}

NeighborDocument By(const std::string& measure, const std::string& inputs = Input("x") + Input("z")) {
  return {.inputs = inputs, .measure = measure};
}

NeighborDocument BySimilarity(const std::string& measure, const std::string& inputs,
                              const std::string& more = "") {
  return {.inputs = inputs, .measure = measure, .comparison = "kind='similarity' " + more};
}

TEST(Neighbors, MeasuresOfNumbers) {
  const std::string weighted = Input("x") + Input("z", "fieldWeight='4'");
  const std::string scaled = Input("x", "compareFunction='gaussSim' similarityScale='3'") +
                             Input("z", "compareFunction='gaussSim' similarityScale='4'");
  ExpectNeighbors({
      {"euclidean", By("<euclidean/>"), "x=0, z=0", {{"A", 0}, {"B", 5}, {"D", 5}, {"C", 10}}},
      {"squaredEuclidean",
       By("<squaredEuclidean/>"),
       "x=0, z=0",
       {{"A", 0}, {"B", 25}, {"D", 25}, {"C", 100}}},
      {"chebychev", By("<chebychev/>"), "x=0, z=0", {{"A", 0}, {"B", 4}, {"D", 4}, {"C", 8}}},
      {"cityBlock", By("<cityBlock/>"), "x=0, z=0", {{"A", 0}, {"B", 7}, {"D", 7}, {"C", 14}}},
      {"minkowski of power 3",
       By("<minkowski p-parameter='3'/>"),
       "x=0, z=0",
       {{"A", 0}, {"B", std::cbrt(91)}, {"D", std::cbrt(91)}, {"C", 2 * std::cbrt(91)}}},
      {"minkowski of power 1/2",
       By("<minkowski p-parameter='0.5'/>"),
       "x=1, z=0",
       {{"A", 1}, {"B", 6 + 4 * std::sqrt(2)}, {"D", 16}, {"C", 13 + 2 * std::sqrt(40)}}},
      {"weights: euclidean",
       By("<euclidean/>", weighted),
       "x=0, z=0",
       {{"A", 0}, {"B", std::sqrt(73)}, {"D", std::sqrt(73)}, {"C", 2 * std::sqrt(73)}}},
      {"weights: chebychev",
       By("<chebychev/>", weighted),
       "x=0, z=0",
       {{"A", 0}, {"B", 16}, {"D", 16}, {"C", 32}}},
      {"weights: minkowski weighs the power",
       By("<minkowski p-parameter='2'/>", weighted),
       "x=0, z=0",
       {{"A", 0}, {"B", std::sqrt(73)}, {"D", std::sqrt(73)}, {"C", 2 * std::sqrt(73)}}},
      {"a weight of 0",
       By("<cityBlock/>", Input("x") + Input("z", "fieldWeight='0'")),
       "x=5, z=0",
       {{"C", 1}, {"B", 2}, {"A", 5}, {"D", 8}}},
      {"gaussian similarity, halved at its scale",
       BySimilarity("<cityBlock/>", scaled),
       "x=0, z=0",
       {{"A", 2}, {"B", 1}, {"D", 1}, {"C", 0.125}}},
      {"the same, squared",
       BySimilarity("<squaredEuclidean/>", scaled),
       "x=0, z=0",
       {{"A", 2}, {"B", 0.5}, {"D", 0.5}, {"C", 2.0 / 256}}},
      {"numbers are equal or not",
       By("<cityBlock/>", Input("x", "compareFunction='delta'")),
       "x=6",
       {{"C", 0}, {"A", 1}, {"B", 1}, {"D", 1}}},
      {"dates as such and as seconds since 1970",
       By("<cityBlock/>", Input("day")),
       "day=1578528000",
       {{"B", 2 * 86400.0}, {"A", 8 * 86400.0}, {"C", 30 * 86400.0}}},
      {"an interval's end",
       By("<cityBlock/>", Input("x")),
       "x=1000",
       {{"C", 994}, {"B", 997}, {"A", 1000}, {"D", 1003}}},
  });
}

TEST(Neighbors, MeasuresOfCategories) {
  const std::string delta = Input("c", "compareFunction='delta'");
  const std::string equal = Input("c", "compareFunction='equal'") + Input("free", "compareFunction='equal'");
  ExpectNeighbors({
      {"delta; an instance without the value is not compared",
       By("<cityBlock/>", delta),
       "c=a",
       {{"A", 0}, {"C", 0}, {"B", 1}}},
      {"trailing blanks do not count", By("<cityBlock/>", delta), "c=b ", {{"B", 0}, {"A", 1}, {"C", 1}}},
      {"a category that no instance has",
       By("<cityBlock/>", delta),
       "c=other",
       {{"A", 1}, {"B", 1}, {"C", 1}}},
      {"the function of the measure is that of fields that name none",
       {.inputs = Input("c"), .comparison = "kind='distance' compareFunction='delta'"},
       "c=b",
       {{"B", 0}, {"A", 1}, {"C", 1}}},
      {"equal", BySimilarity("<cityBlock/>", equal), "c=a, free=r", {{"C", 2}, {"A", 1}, {"B", 0}}},
      {"both kinds of fields",
       By("<cityBlock/>", Input("x") + Input("c", "compareFunction='delta' fieldWeight='9'")),
       "x=4, c=a",
       {{"C", 2}, {"A", 4}, {"B", 10}, {"D", 14}}},
  });
}

TEST(Neighbors, MissingValues) {
  const std::string withCategory = Input("x") + Input("c", "compareFunction='delta'");
  NeighborDocument weighted = By("<cityBlock/>");
  weighted.last = "<MissingValueWeights><Array n='2' type='real'>1 3</Array></MissingValueWeights>";
  NeighborDocument replaced = By("<cityBlock/>", withCategory);
  replaced.schema = "<MiningField name='x'/><MiningField name='c' missingValueReplacement='a'/>";
  ExpectNeighbors({
      {"the others count for it", By("<cityBlock/>"), "x=1, z=", {{"A", 2}, {"B", 4}, {"D", 8}, {"C", 10}}},
      {"within the root",
       By("<euclidean/>"),
       "x=1, z=",
       {{"A", std::sqrt(2)}, {"B", std::sqrt(8)}, {"D", std::sqrt(32)}, {"C", std::sqrt(50)}}},
      {"of the largest difference", By("<chebychev/>"), "x=1, z=", {{"A", 2}, {"B", 4}, {"D", 8}, {"C", 10}}},
      {"a value that is declared missing",
       By("<cityBlock/>"),
       "x=-99, z=1",
       {{"A", 2}, {"B", 6}, {"D", 6}, {"C", 14}}},
      {"of an instance",
       By("<cityBlock/>", withCategory),
       "x=0, c=a",
       {{"A", 0}, {"B", 4}, {"C", 6}, {"D", 6}}},
      {"their weights", weighted, "x=0, z=", {{"A", 0}, {"B", 12}, {"D", 12}, {"C", 24}}},
      {"replacements hold for instances too", replaced, "x=0, c=", {{"A", 0}, {"D", 3}, {"B", 4}, {"C", 6}}},
      {"nothing to compare", By("<cityBlock/>"), "x=, z=", {}},
      {"an invalid value ends the case", By("<cityBlock/>"), "x=2000, z=0", {}},
  });
}

// Categories of numbers went past the bounds and replacements of their field, and two values that were not
// known were equal.
TEST(Neighbors, CategoriesAreTreatedLikeNumbers) {
  const std::string outlier =
      "<row><id>P</id><x>9</x></row><row><id>Q</id><x>2</x></row><row><id>R</id><x>0</x></row>";
  const auto with = [](const std::string& rows, const std::string& schema, const std::string& input) {
    NeighborDocument document = By("<cityBlock/>", input);
    document.rows = "<InlineTable>" + rows + "</InlineTable>";
    document.schema = schema;
    return document;
  };
  const auto bounded = [&](const char* function, const char* attributes = "") {
    NeighborDocument document =
        with(outlier, "<MiningField name='x' outliers='asExtremeValues' lowValue='0' highValue='2'/>",
             Input("x", std::string("compareFunction='") + function + "'"));
    document.instances = attributes;
    return document;
  };
  const std::string delta = "compareFunction='delta'";
  const NeighborDocument replaced =
      with("<row><id>P</id><x>5</x></row><row><id>Q</id><x></x></row>",
           "<MiningField name='x' missingValueReplacement='7'/>", Input("x", delta));
  const NeighborDocument unlisted =
      with("<row><id>P</id><c>a</c></row><row><id>Q</id><c>q</c></row>",
           "<MiningField name='c' invalidValueTreatment='asIs'/>", Input("c", delta));
  const char* const kTransformed = "isTransformed='true'";
  ExpectNeighbors({
      {"bounds of a case", bounded("delta", kTransformed), "x=9", {{"Q", 0}, {"P", 1}, {"R", 1}}},
      {"as of numbers", bounded("absDiff", kTransformed), "x=9", {{"Q", 0}, {"R", 2}, {"P", 7}}},
      {"bounds of instances", bounded("delta"), "x=9", {{"P", 0}, {"Q", 0}, {"R", 1}}},
      {"as of numbers", bounded("absDiff"), "x=9", {{"P", 0}, {"Q", 0}, {"R", 2}}},
      {"a replacement of an instance", replaced, "x=7", {{"Q", 0}, {"P", 1}}},
      {"is no unknown value", replaced, "x=8", {{"P", 1}, {"Q", 1}}},
      {"nor is the case's the instance's", replaced, "x=", {{"Q", 0}, {"P", 1}}},
      {"an unlisted category as it is", unlisted, "c=q", {{"Q", 0}, {"P", 1}}},
      {"and another one", unlisted, "c=r", {{"P", 1}, {"Q", 1}}},
  });
}

// Each bit of the case beside that of the instance.
NeighborDocument Bits(const std::string& measure, const std::string& rows) {
  NeighborDocument document = BySimilarity(measure, Input("x") + Input("z") + Input("y") + Input("n"));
  document.schema =
      "<MiningField name='x'/><MiningField name='z'/><MiningField name='y'/><MiningField name='n'/>";
  document.rows = "<InlineTable>" + rows + "</InlineTable>";
  return document;
}

std::string BitRow(const std::string& id, const std::string& bits) {
  std::string row = "<row><id>" + id + "</id>";
  const char* const kColumns[] = {"x", "z", "y", "n"};
  for (std::size_t i = 0; i < bits.size(); ++i) {
    if (bits[i] == '?') continue;
    row.append("<").append(kColumns[i]).append(">").append(1, bits[i]);
    row.append("</").append(kColumns[i]).append(">");
  }
  return row + "</row>";
}

TEST(Neighbors, MeasuresOfBits) {
  // Against 1100: a11 = 1, a10 = 1, a01 = 0, a00 = 2; a11 = 2, a01 = 1, a00 = 1; a10 = 2, a01 = 2.
  const std::string rows = BitRow("P", "1000") + BitRow("Q", "1110") + BitRow("R", "0011");
  const std::string own =
      "<binarySimilarity c11-parameter='1' c10-parameter='10' c01-parameter='100' c00-parameter='1000' "
      "d11-parameter='1' d10-parameter='0' d01-parameter='0' d00-parameter='1'/>";
  NeighborDocument texts = BySimilarity("<jaccard/>", Input("c") + Input("free"));
  texts.rows = "<InlineTable>" + BitRow("P", "00") + "<row><id>Q</id><free>true</free></row></InlineTable>";
  texts.schema = "<MiningField name='free'/><MiningField name='x'/>";
  texts.inputs = Input("free") + Input("x");
  const char* const kCase = "x=1, z=1, y=0, n=0";
  ExpectNeighbors({
      {"simpleMatching", Bits("<simpleMatching/>", rows), kCase, {{"P", 0.75}, {"Q", 0.75}, {"R", 0}}},
      {"jaccard", Bits("<jaccard/>", rows), kCase, {{"Q", 2.0 / 3}, {"P", 0.5}, {"R", 0}}},
      {"tanimoto", Bits("<tanimoto/>", rows), kCase, {{"P", 0.6}, {"Q", 0.6}, {"R", 0}}},
      {"a measure of its own", Bits(own, rows), kCase, {{"P", 2011.0 / 3}, {"Q", 1102.0 / 3}, {"R", 0}}},
      {"other numbers than 0 count as 1",
       Bits("<jaccard/>", rows),
       "x=3, z=-2, y=0, n=0",
       {{"Q", 2.0 / 3}, {"P", 0.5}, {"R", 0}}},
      {"missing bits are not counted",
       Bits("<simpleMatching/>", BitRow("P", "1?00") + BitRow("Q", "?00?")),
       "x=1, z=1, y=0, n=",
       {{"P", 1}, {"Q", 0.5}}},
      {"nothing in common with nothing",
       Bits("<jaccard/>", BitRow("P", "0000") + BitRow("Q", "0001")),
       "x=0, z=0, y=0, n=0",
       {{"P", 0}, {"Q", 0}}},
      {"texts that are bits", texts, "free=true, x=0", {{"Q", 1}, {"P", 0}}},
  });
}

using ScoredRow = AnswerRow<NeighborDocument>;

template <std::size_t kCount>
void ExpectAnswers(const ScoredRow (&rows)[kCount]) {
  ExpectAnswersOf(kNeighborModel, rows);
}

std::string Target(const std::string& name) {
  return "<MiningField name='" + name + "' usageType='target'/>";
}

NeighborDocument Predicting(const std::string& target, int neighbors, const std::string& more = "",
                            const std::string& outputs = "") {
  const std::string function = target == "y" ? "regression" : "classification";
  return {.attributes =
              "functionName='" + function + "' numberOfNeighbors='" + std::to_string(neighbors) + "' " + more,
          .targets = Target(target),
          .content = outputs.empty() ? "" : "<Output>" + outputs + "</Output>"};
}

TEST(Neighbors, Numbers) {
  NeighborDocument rounded = Predicting("y", 3);
  rounded.content = "<Targets><Target field='y' optype='continuous' castInteger='floor'/></Targets>";
  NeighborDocument similar = Predicting("y", 2, "continuousScoringMethod='weightedAverage' threshold='0'");
  similar.inputs = Input("x", "compareFunction='gaussSim' similarityScale='3'");
  similar.comparison = "kind='similarity'";
  NeighborDocument gaps = Predicting("y", 3);
  gaps.rows =
      "<InlineTable><row><id>A</id><x>0</x><z>0</z></row><row><x>1</x><z>0</z><y>5</y></row><row><x>2</"
      "x><z>0</z>"
      "<y>7</y></row><row><x>3</x><z>0</z><y>9</y></row></InlineTable>";
  NeighborDocument exact = Predicting("y", 3, "continuousScoringMethod='weightedAverage' threshold='0'");
  exact.rows =
      "<InlineTable><row><id>A</id><x>0</x><z>0</z></row><row><x>1</x><z>0</z><y>5</y></row>"
      "<row><x>-1</x><z>0</z><y>7</y></row></InlineTable>";
  NeighborDocument infinite = Predicting("y", 1);
  infinite.rows = "<InlineTable><row><id>A</id><x>0</x><z>0</z><y>1e999</y></row></InlineTable>";
  NeighborDocument fallback = Predicting("y", 1);
  fallback.rows =
      "<InlineTable><row><id>A</id><x>0</x><z>0</z></row><row><x>9</x><z>0</z><y>1</y></row></InlineTable>";
  fallback.content =
      "<Targets><Target field='y' optype='continuous'><TargetValue defaultValue='77'/></Target></Targets>";
  ExpectAnswers({
      {"the nearest one", Predicting("y", 1), "x=4, z=5", "20"},
      {"an average", Predicting("y", 2), "x=1, z=1", "15"},
      {"more neighbours than instances", Predicting("y", 9), "x=0, z=0", "37.5"},
      {"the median of an even number", Predicting("y", 4, "continuousScoringMethod='median'"), "x=0, z=0",
       "30"},
      {"the median of an odd number", Predicting("y", 3, "continuousScoringMethod='median'"), "x=0, z=0",
       "20"},
      // A at 1, B at 6: weights 1 and 1/6.
      {"a weighted average", Predicting("y", 2, "continuousScoringMethod='weightedAverage' threshold='0'"),
       "x=0, z=1", "11.4286"},
      // Weights 1 / (1 + 1) and 1 / (6 + 1).
      {"the threshold is added to distances",
       Predicting("y", 2, "continuousScoringMethod='weightedAverage' threshold='1'"), "x=0, z=1", "12.2222"},
      {"at the place of an instance, without a threshold",
       Predicting("y", 2, "continuousScoringMethod='weightedAverage' threshold='0'"), "x=0, z=0", "10"},
      // B at 0 and A at 3, whose similarity is a half.
      {"similarities are weights", similar, "x=3", "16.6667"},
      {"the rules of the target", rounded, "x=0, z=0", "36"},
      {"an instance without the target's value has no say", gaps, "x=0, z=0", "6"},
      {"nobody has a say", fallback, "x=0, z=0", "77"},
      {"an exact match without a value has no say either", exact, "x=0, z=0", "6"},
      {"an infinite average is no answer", infinite, "x=0, z=0", "missing"},
  });
}

TEST(Neighbors, Votes) {
  const std::string outputs =
      "<OutputField name='p' feature='probability'/><OutputField name='no' feature='probability' value='no'/>"
      "<OutputField name='shown' feature='predictedDisplayValue'/>";
  NeighborDocument more = Predicting("k", 2);
  more.rows =
      std::string("<InlineTable>") + kNeighborRows + "<row><x>500</x><z>0</z><k>no</k></row></InlineTable>";
  NeighborDocument numbers = Predicting("n", 2);
  numbers.rows =
      "<InlineTable><row><id>A</id><x>1</x><z>0</z><n>10</n></row><row><x>0</x><z>0</z><n>9</n></row></"
      "InlineTable>";
  NeighborDocument unlisted = Predicting("free", 2);
  unlisted.schema = "<MiningField name='x'/><MiningField name='z'/>";
  NeighborDocument exact =
      Predicting("k", 2, "categoricalScoringMethod='weightedMajorityVote' threshold='0'", outputs);
  exact.rows =
      "<InlineTable><row><id>A</id><x>0</x><z>0</z></row><row><x>1</x><z>0</z><k>no</k></row></InlineTable>";
  ExpectAnswers({
      {"an exact match without a category has no say", exact, "x=0, z=0", "no|p=1|no=1|shown=no"},
      {"a majority", Predicting("k", 3, "", outputs), "x=4, z=5", "no|p=0.666667|no=0.666667|shown=no"},
      {"shares and how they are shown", Predicting("k", 1, "", outputs), "x=0, z=0",
       "yes|p=1|no=0|shown=Yes!"},
      {"equal votes: the category with most instances", more, "x=0, z=0", "no"},
      {"then the smaller text", Predicting("k", 2), "x=0, z=0", "no"},
      {"then the smaller number", numbers, "x=0, z=0", "9"},
      {"categories that the dictionary does not list", unlisted, "x=2, z=3", "p"},
      // Of A at 1 and B at 6: 1 / 1.001 and 1 / 6.001.
      {"weighted votes", Predicting("k", 2, "categoricalScoringMethod='weightedMajorityVote'", outputs),
       "x=0, z=1", "yes|p=0.857041|no=0.142959|shown=Yes!"},
  });
}

TEST(Neighbors, SeveralTargets) {
  NeighborDocument mixed;
  mixed.attributes = "functionName='mixed' numberOfNeighbors='2'";
  mixed.targets = Target("k") + Target("y");
  mixed.content =
      "<Output><OutputField name='a'/><OutputField name='b' targetField='y'/>"
      "<OutputField name='r' feature='residual' targetField='y'/>"
      "<OutputField name='p' feature='probability' value='no' targetField='k'/>"
      "<OutputField name='e' feature='entityId' targetField='y'/></Output>"
      "<Targets><Target field='y' optype='continuous' rescaleFactor='2'/></Targets>";
  NeighborDocument numberFirst = mixed;
  numberFirst.targets = Target("y") + Target("k");
  ExpectAnswers({
      {"the first one is the model's", mixed, "x=0, z=1, y=40", "no|a=no|b=30|r=10|p=0.5|e=A"},
      {"in the other order", numberFirst, "x=0, z=1", "30|a=30|b=30|r=missing|p=0.5|e=A"},
      {"nothing is known", mixed, "x=, z=", "missing|a=missing|b=missing|r=missing|p=missing|e=missing"},
  });
  const std::unique_ptr<ScoreModel> model = MakeModel(mixed.Text(), kNeighborModel);
  EXPECT_EQ(model->GetTargetVar()->GetName(), "k");
  EXPECT_EQ(model->GetVarRole("y"), ScoreModel::kTargetRole);
}

// Instances that are not transformed go the way of a case; transformed ones hold what is compared.
TEST(Neighbors, DerivedInputs) {
  const std::string derived =
      "<LocalTransformations><DerivedField name='double x' optype='continuous' dataType='double'>"
      "<Apply function='*'><FieldRef field='x'/><Constant "
      "dataType='double'>2</Constant></Apply></DerivedField>"
      "<DerivedField name='side' optype='categorical' dataType='string'><Discretize field='x'>"
      "<DiscretizeBin binValue='left'><Interval closure='openOpen' rightMargin='1'/></DiscretizeBin>"
      "<DiscretizeBin binValue='right'><Interval closure='closedOpen' leftMargin='1'/></DiscretizeBin>"
      "</Discretize></DerivedField>"
      "<DerivedField name='last x' optype='continuous' dataType='double'><Lag field='x'/></DerivedField>"
      "</LocalTransformations>";
  NeighborDocument raw = By("<cityBlock/>", Input("double x"));
  raw.content = derived;
  NeighborDocument sides = By("<cityBlock/>", Input("side", "compareFunction='delta'") + Input("double x"));
  sides.content = derived;
  NeighborDocument lagged = By("<cityBlock/>", Input("x") + Input("last x", "fieldWeight='100'"));
  lagged.content = derived;
  ExpectNeighbors({
      {"instances are transformed", raw, "x=1", {{"A", 2}, {"B", 4}, {"D", 8}, {"C", 10}}},
      {"to categories as well", sides, "x=1", {{"A", 3}, {"B", 4}, {"D", 9}, {"C", 10}}},
      // Behind A, B and C stand 0, 3 and 6; A has nothing before it, nor has the case.
      {"a field that looks back starts anew with the cases",
       lagged,
       "x=2",
       {{"B", 2}, {"A", 4}, {"C", 8}, {"D", 10}}},
  });
  NeighborDocument done = By("<cityBlock/>", Input("double x"));
  done.content = derived;
  done.instances = "isTransformed='true'";
  std::string text = done.Text();
  text.replace(text.find("<InstanceField field='x'"), 24, "<InstanceField field='double x'");
  const std::unique_ptr<ScoreModel> model = MakeModel(text, kNeighborModel);
  EXPECT_EQ(Answer(*Scored(*model, "x=1.4")), "B");  // 2.8 is next to 3
}

// Clones share the instances; working state is their own.
TEST(NeighborThreads, ScoreWithClonesOfTheirOwn) {
  const std::unique_ptr<ScoreModel> model = MakeModel(Predicting("y", 2).Text(), kNeighborModel);
  ExpectAnswersOfClones(*model, {{"x=1, z=1", "15"}, {"x=5, z=7", "30"}});
}

}  // namespace
