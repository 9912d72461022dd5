// Trees: strategies for missing values, nodes that answer together, last predictions, penalties.

#include "plugins/TreeDocument.h"

namespace {

using namespace VeyraTest;
using Document = TreeDocument;

// The standard's own example of missing values: records and shares of three classes in five nodes.
std::string Golf() {
  const auto shares = [](int yes, int may, int no) {
    return "<ScoreDistribution value='yes' recordCount='" + std::to_string(yes) +
           "'/><ScoreDistribution value='may' recordCount='" + std::to_string(may) +
           "'/><ScoreDistribution value='no' recordCount='" + std::to_string(no) + "'/>";
  };
  const std::string hot = Compound("surrogate", Simple("x", "lessThan", "50") + Simple("r", "equal", "1"));
  const std::string cold =
      Compound("surrogate", Simple("x", "greaterOrEqual", "50") + Simple("r", "notEqual", "1"));
  return Node(
      "id='1' score='yes' recordCount='100' defaultChild='2'",
      "<True/>" + shares(60, 30, 10) +
          Node("id='2' score='yes' recordCount='50' defaultChild='3'",
               Simple("c", "equal", "a") + shares(40, 2, 8) +
                   Node("id='3' score='yes' recordCount='40'", hot + shares(36, 2, 2)) +
                   Node("id='4' score='no' recordCount='10'", cold + shares(4, 0, 6))) +
          Node("id='5' score='may' recordCount='50'", Simple("c", "notEqual", "a") + shares(20, 28, 2)));
}

const std::string kOutputs =
    "<Output><OutputField name='id' feature='entityId'/><OutputField name='conf' feature='confidence'/>"
    "<OutputField name='p' feature='probability' value='no'/></Output>";

TEST(Tree, StrategiesForMissingValues) {
  const char* const kTargets =
      "<Targets><Target field='class' optype='categorical'><TargetValue value='may' priorProbability='0.7'/>"
      "<TargetValue value='no' priorProbability='0.3'/></Target></Targets>";
  const struct {
    const char *strategy, *data, *want;
  } rows[] = {
      {"none", "c=a, x=45, r=", "yes|id=3|conf=0.9|p=0.05"},
      {"none", "c=a, x=, r=1", "yes|id=3|conf=0.72|p=0.05"},
      {"none", "c=a, x=, r=", "missing|id=missing|conf=missing|p=missing"},
      {"none' noTrueChildStrategy='returnLastPrediction", "c=a, x=, r=", "yes|id=2|conf=0.8|p=0.16"},
      {"lastPrediction", "c=a, x=, r=", "yes|id=2|conf=0.8|p=0.16"},
      {"lastPrediction", "c=, x=45, r=", "yes|id=1|conf=0.6|p=0.1"},
      {"nullPrediction", "c=a, x=, r=", "missing|id=missing|conf=missing|p=missing"},
      {"defaultChild", "c=, x=45, r=", "yes|id=3|conf=0.72|p=0.05"},
      {"defaultChild", "c=, x=, r=", "yes|id=3|conf=0.576|p=0.05"},
      {"defaultChild", "c=, x=, r=2", "no|id=4|conf=0.384|p=0.6"},
      // 0.8 * 0.9 + 0.2 * 0.4 of yes, 0.8 * 0.05 + 0.2 * 0.6 of no
      {"weightedConfidence", "c=a, x=, r=", "yes|id=missing|conf=0.8|p=0.16"},
      // 0.5 * 0.9 + 0.5 * 0.4, 0.5 * 0.05 + 0.5 * 0.04
      {"weightedConfidence", "c=, x=45, r=", "yes|id=missing|conf=0.65|p=0.045"},
      {"weightedConfidence", "c=, x=, r=", "yes|id=missing|conf=0.6|p=0.1"},
      // (36 + 20) of 90, (2 + 2) of 90
      {"aggregateNodes", "c=, x=45, r=", "yes|id=missing|conf=0.622222|p=0.0444444"},
      {"aggregateNodes", "c=b, x=, r=", "may|id=5|conf=0.56|p=0.04"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.strategy) + " of " + row.data);
    const std::string attributes =
        "missingValuePenalty='0.8' missingValueStrategy='" + std::string(row.strategy) + "'";
    const std::unique_ptr<ScoreModel> model =
        MakeModel(OfClass(kOutputs + Golf(), attributes).Text(), "TreeModel");
    EXPECT_EQ(Answer(*Scored(*model, row.data)), row.want);
    const std::unique_ptr<ScoreModel> withPriors =
        MakeModel(OfClass(kTargets + kOutputs + Golf(), attributes).Text(), "TreeModel");
    const std::unique_ptr<ScoreModel> clone(withPriors->Clone());
    const bool hasAnswer = std::string(row.want).rfind("missing", 0) != 0;
    EXPECT_EQ(Answer(*Scored(*clone, row.data)), hasAnswer ? row.want : "may|id=missing|conf=missing|p=0.3");
  }
}

TEST(Tree, NumbersOfSeveralNodes) {
  const std::string nodes = "<True/>" + Node("score='10' recordCount='30'", Simple("x", "lessThan", "5")) +
                            Node("score='20' recordCount='10'", Simple("x", "greaterOrEqual", "5"));
  const std::pair<const char*, const char*> rows[] = {{"weightedConfidence", "12.5"},
                                                      {"aggregateNodes", "12.5"},
                                                      {"lastPrediction", "7"},
                                                      {"nullPrediction", "42"}};
  for (const auto& [strategy, want] : rows) {
    const std::string target =
        "<Targets><Target field='y' optype='continuous'><TargetValue defaultValue='42'/></Target></Targets>";
    const Document document = OfNumber(target + Node("score='7' recordCount='40'", nodes),
                                       "missingValueStrategy='" + std::string(strategy) + "'");
    const std::unique_ptr<ScoreModel> model = MakeModel(document.Text(), "TreeModel");
    EXPECT_EQ(Answer(*Scored(*model, "x=")), want) << strategy;
    EXPECT_EQ(Answer(*Scored(*model, "x=5")), "20");
  }
}

// Parts of a tree that come to no answer, by what is left of it.
TEST(Tree, BranchesWithoutAnAnswer) {
  const std::string ofX = Simple("x", "lessThan", "5");
  const std::string deadEnd = Node("score='9' recordCount='1'", "<False/>");
  const auto branch = [&](const char* attributes, const std::string& content = "") {
    return Node(attributes, ofX + content);
  };
  const std::string a = branch("recordCount='1'", branch("id='A1' score='0' recordCount='1'") +
                                                      branch("id='A2' recordCount='1'", deadEnd));
  const std::string b = branch("id='B' score='10' recordCount='1'");
  const std::string scored =
      branch("id='S' score='4' recordCount='3'", Node("recordCount='1'", "<True/>" + deadEnd));
  const struct {
    const char* what;
    std::string children;
    const char* attributes;
    const char *weighted, *aggregated;
  } rows[] = {
      // A and B have a record each, whatever becomes of A's parts.
      {"left out inside a branch", a + b, "", "5|id=missing", "5|id=missing"},
      {"left out with all of its branch", branch("recordCount='7'", deadEnd) + a + b, "", "5|id=missing",
       "5|id=missing"},
      {"a single child is left", branch("recordCount='7'", deadEnd) + b, "", "10|id=B", "10|id=B"},
      {"even without records", branch("id='Z' score='3' recordCount='0'") + deadEnd, "", "3|id=Z", "3|id=Z"},
      {"a single child of a child", a, "", "0|id=A1", "0|id=A1"},
      {"nothing is left", branch("recordCount='7'", deadEnd), "", "missing|id=missing", "missing|id=missing"},
      // The last prediction inside a branch is the nearest one; S weighs 3 records, B 1.
      {"no true child", scored + b, "noTrueChildStrategy='returnLastPrediction'", "5.5|id=missing",
       "5.5|id=missing"},
      {"no prediction inside the branch", branch("recordCount='3'", deadEnd) + b,
       "noTrueChildStrategy='returnLastPrediction'", "10|id=B", "10|id=B"},
  };
  for (const auto& row : rows) {
    for (const bool isAggregate : {false, true}) {
      SCOPED_TRACE(row.what);
      const std::string strategy = isAggregate ? "aggregateNodes" : "weightedConfidence";
      const Document document =
          OfNumber("<Output><OutputField name='id' feature='entityId'/></Output>" +
                       Node("id='R' score='7' recordCount='9'", "<True/>" + row.children),
                   std::string(row.attributes) + " missingValueStrategy='" + strategy + "'");
      const std::unique_ptr<ScoreModel> model = MakeModel(document.Text(), "TreeModel");
      EXPECT_EQ(Answer(*Scored(*model, "x=")), isAggregate ? row.aggregated : row.weighted);
    }
  }
}

TEST(Tree, TheLastPredictionIsTheNearestOneWithAScore) {
  const auto nodes = [](const std::string& root, const std::string& inner) {
    return "<Output><OutputField name='id' feature='entityId'/></Output>" +
           Node(root + " id='R'",
                "<True/>" + Node(inner + " id='I'",
                                 "<True/>" + Node("id='U'", "<True/>" + Node("score='1'",
                                                                             Simple("x", "lessThan", "5")))));
  };
  const struct {
    std::string content;
    const char* want;
  } rows[] = {{nodes("score='7'", "score='8'"), "8|id=I"},
              {nodes("score='7'", ""), "7|id=R"},
              {nodes("", ""), "missing|id=missing"}};
  for (const auto& row : rows) {
    for (const auto& [attributes, data] : {std::pair("missingValueStrategy='lastPrediction'", "x="),
                                           std::pair("noTrueChildStrategy='returnLastPrediction'", "x=9")}) {
      const Document document = OfNumber(row.content, attributes);
      EXPECT_EQ(Answer(*Scored(*MakeModel(document.Text(), "TreeModel"), data)), row.want);
    }
  }
}

// Each surrogate that had a part in the answer, wherever it stands, halves the confidence.
TEST(Tree, PenaltiesOfSurrogates) {
  const std::string unknown = Simple("c", "equal", "a");
  const std::string yes = Simple("x", "lessThan", "5");
  const std::string no = Simple("x", "greaterThan", "5");
  const auto surrogate = [&](const std::string& second) { return Compound("surrogate", unknown + second); };
  const std::string unused = Compound("surrogate", yes + no);
  const struct {
    std::string predicate;
    const char* want;
  } rows[] = {
      {yes, "1"},
      {unused, "1"},
      {surrogate(yes), "0.5"},
      {Compound("surrogate", unknown + unknown + yes), "0.5"},
      {Compound("surrogate", unknown + surrogate(yes)), "0.25"},
      {Compound("surrogate", surrogate(yes) + no), "0.5"},
      {Compound("and", yes + surrogate(yes)), "0.5"},
      {Compound("and", surrogate(yes) + surrogate(yes)), "0.25"},
      {Compound("or", no + surrogate(yes)), "0.5"},
      {Compound("or", surrogate(no) + yes), "1"},
      {Compound("or", surrogate(yes) + surrogate(yes)), "0.5"},
      {Compound("xor", surrogate(no) + surrogate(yes)), "0.25"},
      {Compound("xor", yes + Compound("and", surrogate(yes) + surrogate(no))), "0.5"},
      {Compound("and", unused + Compound("or", no + Compound("and", yes + surrogate(yes)))), "0.5"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.predicate);
    for (const char* strategy : {"none", "weightedConfidence"}) {
      const std::string shares = "<ScoreDistribution value='yes' recordCount='2'/>";
      const Document document = OfClass(
          "<Output><OutputField name='conf' feature='confidence'/></Output>" +
              Node("recordCount='2'", "<True/>" + shares + Node("recordCount='2'", row.predicate + shares)),
          "missingValuePenalty='0.5' missingValueStrategy='" + std::string(strategy) + "'");
      const std::unique_ptr<ScoreModel> model = MakeModel(document.Text(), "TreeModel");
      EXPECT_EQ(Answer(*Scored(*model, "x=1, c=")), std::string("yes|conf=") + row.want) << strategy;
    }
  }
}

// Clones share the array; predicates and working state are their own.
TEST(TreeThreads, ScoreWithClonesOfTheirOwn) {
  const std::unique_ptr<ScoreModel> model =
      MakeModel(OfClass(kOutputs + Golf(), "missingValueStrategy='weightedConfidence'").Text(), "TreeModel");
  ExpectAnswersOfClones(*model, {{"c=, x=45, r=", "yes|id=missing|conf=0.65|p=0.045"},
                                 {"c=a, x=60, r=", "no|id=4|conf=0.6|p=0.6"}});
}

}  // namespace
