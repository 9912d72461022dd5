// Nearest neighbours: documents that are refused, with the place; training data in files; streams that end
// early.

#include "plugins/NeighborDocument.h"
#include "tools/RunProgram.h"

namespace {

using namespace VeyraTest;

struct Row {
  const char* what;
  NeighborDocument document;
  const char* want;
};

NeighborDocument With(std::string NeighborDocument::*part, const std::string& text) {
  NeighborDocument document;
  document.*part = text;
  return document;
}

NeighborDocument Inputs(const std::string& inputs) { return With(&NeighborDocument::inputs, inputs); }
NeighborDocument MeasuredBy(const std::string& measure) { return With(&NeighborDocument::measure, measure); }
NeighborDocument Compared(const std::string& comparison) {
  return With(&NeighborDocument::comparison, comparison);
}
NeighborDocument Called(const std::string& attributes) {
  return With(&NeighborDocument::attributes, attributes);
}
NeighborDocument Rows(const std::string& rows) { return With(&NeighborDocument::rows, rows); }
NeighborDocument Instances(const std::string& attributes) {
  return With(&NeighborDocument::instances, attributes);
}
NeighborDocument Outputs(const std::string& output) {
  return With(&NeighborDocument::content, "<Output><OutputField name='o' " + output + "/></Output>");
}

NeighborDocument Predicting(const std::string& function, const std::string& target,
                            const std::string& row = "") {
  NeighborDocument document = Called("functionName='" + function + "' numberOfNeighbors='1'");
  if (!target.empty()) document.targets = "<MiningField name='" + target + "' usageType='target'/>";
  if (!row.empty())
    document.rows = "<InlineTable><row><id>1</id><x>1</x><z>1</z>" + row + "</row></InlineTable>";
  return document;
}

NeighborDocument OneRow(const std::string& cells) {
  return Rows("<InlineTable><row><id>1</id>" + cells + "</row></InlineTable>");
}

TEST(NeighborRefusals, ModelsAndMeasures) {
  const std::string scaled = "<KNNInput field='x' compareFunction='gaussSim' ";
  NeighborDocument weights;
  weights.last = "<MissingValueWeights><Array type='real'>1</Array></MissingValueWeights>";
  NeighborDocument negative;
  negative.last = "<MissingValueWeights><Array type='real'>1 -1</Array></MissingValueWeights>";
  NeighborDocument twoTargets = Predicting("regression", "y");
  twoTargets.targets += "<MiningField name='k' usageType='target'/>";
  const Row rows[] = {
      {"another function", Called("functionName='associationRules' numberOfNeighbors='1'"),
       "260303: associationRules, functionName"},
      {"no number of neighbours", Called("functionName='clustering'"),
       "260120: numberOfNeighbors, NearestNeighborModel"},
      {"no neighbours", Called("functionName='clustering' numberOfNeighbors='0'"),
       "260182: 0, numberOfNeighbors"},
      {"half a neighbour", Called("functionName='clustering' numberOfNeighbors='0.5'"),
       "260151: 0.5, integer"},
      {"a negative threshold", Called("functionName='clustering' numberOfNeighbors='1' threshold='-1'"),
       "260183: -1, threshold"},
      {"an unknown average",
       Called("functionName='clustering' numberOfNeighbors='1' continuousScoringMethod='mode'"),
       "260152: mode, continuousScoringMethod"},
      {"an unknown vote",
       Called("functionName='clustering' numberOfNeighbors='1' categoricalScoringMethod='veto'"),
       "260152: veto, categoricalScoringMethod"},
      {"not to be scored", Called("functionName='clustering' numberOfNeighbors='1' isScorable='false'"),
       "260303: false, isScorable"},
      {"nothing to predict", Predicting("regression", ""), "260133"},
      {"numbers of a category", Predicting("regression", "k"),
       "260254: regression, functionName, NearestNeighborModel, k, MiningSchema"},
      {"categories of a number", Predicting("classification", "y"),
       "260254: classification, functionName, NearestNeighborModel, y, MiningSchema"},
      {"one target of two", twoTargets,
       "260254: regression, functionName, NearestNeighborModel, k, MiningSchema"},
      {"a target of neighbours alone", Predicting("clustering", "y"),
       "260254: clustering, functionName, NearestNeighborModel, y, MiningSchema"},
      {"no kind", Compared(""), "260120: kind, ComparisonMeasure"},
      {"another kind", Compared("kind='taste'"), "260152: taste, kind"},
      {"a minimum above the maximum", Compared("kind='distance' minimum='2' maximum='1'"),
       "260258: 2, minimum, 1, maximum, ComparisonMeasure"},
      {"an unknown function for all", Compared("kind='distance' compareFunction='guess'"),
       "260152: guess, compareFunction"},
      {"no measure", MeasuredBy(""), "260283: ComparisonMeasure"},
      {"two measures", MeasuredBy("<euclidean/><cityBlock/>"), "260272: cityBlock, ComparisonMeasure"},
      {"a power is wanted", MeasuredBy("<minkowski/>"), "260120: p-parameter, minkowski"},
      {"a power of 0", MeasuredBy("<minkowski p-parameter='0'/>"), "260182: 0, p-parameter"},
      {"counts of bits are no distance", MeasuredBy("<jaccard/>"), "260153: distance, kind, jaccard"},
      {"a weight of counts is wanted",
       {.measure = "<binarySimilarity c11-parameter='1'/>", .comparison = "kind='similarity'"},
       "260120: c10-parameter, binarySimilarity"},
      {"no inputs", Inputs(""), "260174: KNNInput, KNNInputs"},
      {"an input twice", Inputs("<KNNInput field='x'/><KNNInput field='x'/>"),
       "260203: KNNInput, x, KNNInputs"},
      {"an input that is no field", Inputs("<KNNInput field='q'/>"),
       "260125: q, DataDictionary, TransformationDictionary"},
      {"an input that is none of the schema", Inputs("<KNNInput field='y'/>"), "260161: y"},
      {"differences of texts", Inputs("<KNNInput field='c'/>"), "260187: c"},
      {"a negative weight", Inputs("<KNNInput field='x' fieldWeight='-1'/>"), "260183: -1, fieldWeight"},
      {"a table of similarities", Inputs("<KNNInput field='c' compareFunction='table'/>"),
       "260303: table, compareFunction"},
      {"an unknown function", Inputs("<KNNInput field='c' compareFunction='guess'/>"),
       "260152: guess, compareFunction"},
      {"a scale is wanted", Inputs(scaled + "/>"), "260120: similarityScale, KNNInput"},
      {"a scale of 0", Inputs(scaled + "similarityScale='0'/>"), "260182: 0, similarityScale"},
      {"too few weights of missing values", weights,
       "260251: 1, Value, MissingValueWeights, 2, KNNInput, KNNInputs"},
      {"a negative weight of missing values", negative, "260183: -1.000000, MissingValueWeights"},
      {"a rank of 0", Outputs("feature='entityId' rank='0'"), "260182: 0, rank"},
      {"a probability without categories", Outputs("feature='probability'"), "260303: probability, feature"},
      {"the output of another target",
       [] {
         NeighborDocument document = Predicting("regression", "y");
         document.content = "<Output><OutputField name='o' targetField='k'/></Output>";
         return document;
       }(),
       "260124: k, MiningSchema"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Refusal(row.document.Text(), kNeighborModel), row.want);
  }
}

TEST(NeighborRefusals, TrainingInstances) {
  NeighborDocument derived = Inputs("<KNNInput field='side'/>");
  derived.content =
      "<LocalTransformations><DerivedField name='side' optype='continuous' dataType='double'>"
      "<FieldRef field='x'/></DerivedField></LocalTransformations>";
  derived.instances = "isTransformed='true'";
  NeighborDocument listed = Inputs("<KNNInput field='c' compareFunction='delta'/>");
  listed.rows = "<InlineTable><row><id>1</id><c>q</c></row></InlineTable>";
  listed.instances = "isTransformed='true'";
  NeighborDocument transformed = OneRow("<x>2000</x><z>1</z>");
  transformed.instances = "isTransformed='true'";
  NeighborDocument target = OneRow("<x>2000</x><z>1</z>");
  target.attributes = "functionName='regression' numberOfNeighbors='1'";
  target.targets = "<MiningField name='x' usageType='target'/>";
  target.schema = "<MiningField name='z'/>";
  target.inputs = "<KNNInput field='z'/>";
  NeighborDocument refused = listed;
  refused.instances = "";
  refused.schema = "<MiningField name='c'/>";
  NeighborDocument unknown = Predicting("classification", "free", "<free/>");
  unknown.schema = "<MiningField name='x'/><MiningField name='z'/>";
  NeighborDocument bits = {
      .inputs = "<KNNInput field='free'/>", .measure = "<jaccard/>", .comparison = "kind='similarity'"};
  const std::string row = "<row><id>1</id><x>1</x><z>1</z></row>";
  const Row rows[] = {
      {"no table", Rows(""), "260175: InlineTable, TableLocator"},
      {"two tables", Rows("<InlineTable/><TableLocator/>"), "260175: InlineTable, TableLocator"},
      {"no rows", Rows("<InlineTable/>"), "260174: row, TrainingInstances"},
      {"a table elsewhere, and no path", Rows("<TableLocator/>"), "260174: auxiliary path, TableLocator"},
      {"another number of records", Instances("recordCount='3'"),
       "260242: 3, recordCount, 4, row, TrainingInstances"},
      {"another number of fields", Instances("fieldCount='3'"),
       "260242: 3, fieldCount, 9, InstanceField, TrainingInstances"},
      {"neither yes nor no", Instances("isTransformed='maybe'"), "260152: maybe, isTransformed"},
      {"an input that instances do not have", derived, "260122: side, InstanceFields"},
      {"a column that no row has", OneRow("<x>1</x>"), "260122: z, InlineTable"},
      {"a cell twice", OneRow("<x>1</x><x>1</x><z>1</z>"), "260272: x, row"},
      {"no number", Rows("<InlineTable>" + row + "<row><x>1</x><z>much</z></row></InlineTable>"),
       "260151: much, double| (row 2, column 'z')"},
      {"an unlisted category", listed, "260127: q, c| (row 1, column 'c')"},
      {"beyond the interval of transformed instances", transformed, "260158: 2000, x| (row 1, column 'x')"},
      {"beyond the interval of a target", target, "260158: 2000, x| (row 1, column 'x')"},
      {"an invalid value", refused, "260158: q, c| (row 1)"},
      {"beyond the interval", OneRow("<x>2000</x><z>1</z>"), "260158: 2000, x| (row 1)"},
      {"a target that is no number", Predicting("regression", "y", "<y>much</y>"),
       "260151: much, double| (row 1, column 'y')"},
      {"a target that is no category", Predicting("classification", "k", "<k>maybe</k>"),
       "260127: maybe, k| (row 1, column 'k')"},
      {"no category at all", unknown, "260126: free"},
      {"a text that is no bit", bits, "260151: p, boolean| (row 1)"},
  };
  for (const Row& one : rows) {
    SCOPED_TRACE(one.what);
    EXPECT_EQ(Refusal(one.document.Text(), kNeighborModel), one.want);
  }
  NeighborDocument document;
  std::string text = document.Text();
  text.insert(text.find("</InstanceFields>"), "<InstanceField field='x'/>");
  EXPECT_EQ(Refusal(text, kNeighborModel), "260203: InstanceField, x, InstanceFields");
}

std::string MadeWith(const std::string& document, const std::string& auxPath) {
  std::istringstream in(document);
  return Made(in, Names{kNeighborModel}, std::string(), auxPath);
}

TEST(NeighborFiles, HoldTheTrainingData) {
  const TemporaryDirectory files;
  NeighborDocument elsewhere = Rows("<TableLocator/>");
  elsewhere.content = "<Output><OutputField name='d' feature='affinity'/></Output>";
  const std::string document = elsewhere.Text();
  const std::pair<const char*, std::string> good[] = {
      {"columns in any order", "z,other,id,x\n4,?,B,3\n0,,A,0\n"},
      {"a byte order mark, CR LF, no line end at the end", "\xEF\xBB\xBFid,x,z\r\nB,3,4\r\nA,0,0"},
      {"tabs", "id\tx\tz\nB\t3\t4\nA\t0\t0\n"},
      {"semicolons", "id;x;z\nB;3;4\nA;0;0\n"},
      {"quotes and blank lines", "id,\"x\",z\n\n\"B\",3,4\n\nA,\"0\",0\n"},
      {"missing cells", "id,x,z\nB,3,4\nA,0,0\nC,,\n"},
  };
  for (const auto& [what, data] : good) {
    SCOPED_TRACE(what);
    const std::string path = files.Write("data.csv", data);
    std::istringstream in(document);
    const std::unique_ptr<ScoreModel> model(
        ModelFactory::MakeModelFromXML(in, Names{kNeighborModel}, std::string(), path));
    const CaseRecord record = MakeCase("x=3, z=1");
    model->PrepareForCases(record);
    const std::unique_ptr<ScoreResult> result(model->NewResult());
    model->Score(record, *result);
    EXPECT_EQ(Answer(*result), "B|d=3");
  }
  const struct {
    const char* what;
    std::string data;
    std::string want;
  } bad[] = {
      {"a column that is absent", "id,x\nB,3\n", "260122: z, PATH"},
      {"a column twice", "id,x,z,x\n", "260272: x, PATH"},
      {"no rows", "id,x,z\n", "260174: row, TrainingInstances"},
      {"an empty file", "", "260103: PATH"},
      {"a cell too many", "id,x,z\nB,3,4\nA,0,0,0\n", "260156: 4 cells instead of 3, PATH, line 3"},
      {"no number, behind a row of two lines", "id,x,z\n\"B\nb\",3,4\nA,0,o\n",
       "260151: o, double| (PATH, line 4, column 'z')"},
      {"a quote that does not end", "id,x,z\nA,\"0,0\n",
       "260156: a quoted cell that does not end, PATH, line 2"},
      {"a quote within a cell", "id,x,z\nA,0\"0,0\n", "260156: a quote in a wrong place, PATH, line 2"},
      {"a NUL byte", std::string("id,x,z\nA,0,0\nB,3,") + '\0' + "4\n",
       "260156: text that is not UTF-8, PATH, line 3"},
      {"no UTF-8", "id,x,z\n\xC4,0,0\n", "260156: text that is not UTF-8, PATH, line 2"},
  };
  for (const auto& [what, data, want] : bad) {
    SCOPED_TRACE(what);
    const std::string path = files.Write("data.csv", data);
    std::string wanted = want;
    if (const std::size_t place = wanted.find("PATH"); place != std::string::npos)
      wanted.replace(place, 4, path);
    EXPECT_EQ(MadeWith(document, path), wanted);
  }
  // Packed files are told by how they begin; what is cut off is refused, wherever it ends.
  const std::string plain = files.Write("data.csv", "id,x,z\nB,3,4\nA,0,0\n");
  ASSERT_EQ(std::system(("gzip -n -k " + plain).c_str()), 0);
  const std::string packed = ReadFile(plain + ".gz");
  EXPECT_EQ(MadeWith(document, plain + ".gz"), kNeighborModel);
  for (const std::size_t lost : {1U, 9U, 20U}) {
    const std::string cut = files.Write("cut.csv", packed.substr(0, packed.size() - lost));
    const std::string refusal = MadeWith(document, cut);
    EXPECT_TRUE(refusal == "260156: packed data that is cut off or damaged, " + cut ||
                refusal == "260103: " + cut)
        << refusal;
  }
  EXPECT_EQ(MadeWith(document, files.Path("none.csv")), "260103: " + files.Path("none.csv"));
  EXPECT_EQ(MadeWith(document, files.Path("")), "260103: " + files.Path(""));
}

// The pre-scan sees the model's tag and stops there; what is wrong behind it is the plug-in's to find.
TEST(NeighborStreams, AreReadLikeOtherDocuments) {
  const std::string text = NeighborDocument().Text();
  const std::string inner = text.substr(text.find("<NearestNeighborModel"));
  const std::size_t row = text.find("<row>");
  const std::string notWellFormed[] = {
      text.substr(0, text.size() - 20),
      text.substr(0, row) + "&none;" + text.substr(row),
      "<!DOCTYPE PMML [<!ENTITY e SYSTEM '/etc/hostname'>]>" + text.substr(0, row) + "&e;" + text.substr(row),
  };
  for (const std::string& document : notWellFormed) {
    SCOPED_TRACE(document);
    const std::string refusal = Refusal(document, kNeighborModel);
    EXPECT_TRUE(refusal.starts_with("260109|")) << refusal;  // and the parser's text
  }
  const std::string inside =
      "<PMML><MiningModel>" + inner.substr(0, inner.size() - 7) + "</MiningModel></PMML>";
  EXPECT_EQ(Refusal(inside, kNeighborModel), "260178: MiningModel, NearestNeighborModel, PMML");
}

}  // namespace
