// veyra inspect --tree and --svg: what the nodes of a tree look like.

#include "tools/RunProgram.h"
#include "translate/Documents.h"
#include "translate/DomReader.h"

namespace {

using namespace VeyraTest;

const char* const kTree =
    "<PMML version='4.4'><DataDictionary numberOfFields='2'><DataField name='a &lt;b>' optype='continuous'/>"
    "<DataField name='c' optype='categorical' dataType='string'/></DataDictionary><TreeModel "
    "functionName='regression'>"
    "<MiningSchema/><Node recordCount='9'><True/><ScoreDistribution value='up' recordCount='1'/>"
    "<ScoreDistribution value='down' recordCount='3'/>"
    "<Node score='1.50'><SimplePredicate field='a &lt;b>' operator='lessOrEqual' "
    "value='0.333333333333'/></Node>"
    "<Node score='2'><CompoundPredicate booleanOperator='surrogate'>"
    "<SimpleSetPredicate field='c' booleanOperator='isNotIn'><Array type='string'>x "
    "y</Array></SimpleSetPredicate>"
    "<CompoundPredicate booleanOperator='or'><SimplePredicate field='c' operator='isMissing'/><False/>"
    "</CompoundPredicate></CompoundPredicate>"
    "<Node score='3'><True/></Node></Node></Node></TreeModel></PMML>";

TEST(TreeDrawing, AsText) {
  TemporaryDirectory files;
  const std::string document = files.Write("tree.pmml", kTree);
  const auto drawn = [&](std::vector<std::string> options) {
    options.insert(options.begin(), {"inspect", document, "--tree"});
    const ProgramRun run = RunProgram(options);
    EXPECT_EQ(run.status, 0) << run.err;
    return run.out.substr(run.out.find("Tree:\n"));
  };
  EXPECT_EQ(drawn({}),
            "Tree:\nalways: down (9)\n  a <b> \u2264 0.333333333333: 1.50\n"
            "  c not in {x y}, else (c is missing or never): 2\n    always: 3\n");
  EXPECT_EQ(drawn({"--depth", "1"}),
            "Tree:\nalways: down (9)\n  a <b> \u2264 0.333333333333: 1.50\n"
            "  c not in {x y}, else (c is missing or never): 2\n    ... 1 node below\n");
  EXPECT_EQ(drawn({"--depth", "0"}), "Tree:\nalways: down (9)\n  ... 3 nodes below\n");
}

TEST(TreeDrawing, AsAPicture) {
  TemporaryDirectory files;
  const std::string document = files.Write("tree.pmml", kTree);
  const std::string picture = document + ".svg";
  ASSERT_EQ(RunProgram({"inspect", document, "--svg", picture, "--depth", "1"}).status, 0);
  const veyra_tests::Document svg(ReadFile(picture));
  ASSERT_NE(svg.Root(), nullptr);
  std::string texts;
  KxVeyra_940::ForEachElementBelow(*svg.Root(), "text", [&](const xercesc::DOMElement& text) {
    std::u16string buffer;
    texts += KxVeyra_940::PMMLTranslator::ToString(KxVeyra_940::TextOf(text, buffer)) + "|";
  });
  EXPECT_EQ(
      texts,
      "always|down|9|a <b> \u2264 0.33333|1.5||c not in {x y}, else (c is \u2026|2||1 node below|down|up|");
}

TEST(TreeDrawing, NeedsATree) {
  const ProgramRun run = RunProgram({"inspect", Document("iris.pmml"), "--tree"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("there is no TreeModel to draw"), std::string::npos) << run.err;
}

}  // namespace
