// veyra inspect: for people, for programs, the library's own display, and no more reading than is needed.

#include <nlohmann/json.hpp>

#include "tools/RunProgram.h"
#include "veyra/TextTable.h"

namespace {

using namespace VeyraTest;
using namespace VeyraTool;

// Behind the model's header there is anything: it is not even read.
const char* const kDocument =
    "<PMML version='4.4'><Header description='Wine'><Application name='Trainer' version='1.2'/>"
    "<Timestamp> 2020-01-02 </Timestamp></Header><DataDictionary>"
    "<DataField name='alcohol' displayName='by volume' optype='continuous' dataType='double'>"
    "<Interval closure='closedOpen' leftMargin='8' rightMargin='15.5'/><Interval closure='openOpen' "
    "leftMargin='20'/>"
    "<Value value='-1' property='missing'/><Value value='99' property='invalid'/></DataField>"
    "<DataField name='\xE8\x89\xB2' optype='categorical' dataType='string'><Value value='red' "
    "displayValue='Red wine'/>"
    "<Value value='white'/><Value value=''/></DataField>"
    "<DataField name='quality of the wine as told by experts' optype='ordinal' "
    "dataType='string'/></DataDictionary>"
    "<TransformationDictionary><DerivedField name='strength' optype='continuous' dataType='double'>"
    "<Apply function='ln'><FieldRef field='alcohol'/></Apply></DerivedField></TransformationDictionary>"
    "<AnyModel modelName='m' functionName='classification' algorithmName='a'><MiningSchema>"
    "<MiningField name='alcohol'/><MiningField name='quality of the wine as told by experts' "
    "usageType='predicted'/>"
    "</MiningSchema><Output><OutputField name='p' feature='probability' value='good' dataType='double'/>"
    "<OutputField name='q'/></Output><Content>";

TEST(Inspect, ATableThatFitsATerminal) {
  const TemporaryDirectory files;
  const ProgramRun run = RunProgram({"inspect", files.Write("m.pmml", std::string(kDocument) + "</broken>")});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(
      run.out,
      "PMML 4.4, written by Trainer 1.2, 2020-01-02\nWine\nAnyModel 'm', classification, algorithm a\n\n"
      "Fields (3)\n"
      "  name                        type    level        role    values\n"
      "  alcohol                     double  continuous   active  [8, 15.5), (20, inf);\n"
      "                                                           missing: -1; invalid:\n"
      "                                                           99\n"
      "  \xE8\x89\xB2                          string  categorical  -       red = Red wine,\n"
      "                                                           white, ''\n"
      "  quality of the wine as ...  string  ordinal      target\n\n"
      "Derived fields (1)\n  name      type    level       expression\n"
      "  strength  double  continuous  Apply ln\n\n"
      "Outputs (2)\n  name  type    feature\n  p     double  probability of good\n"
      "  q             predictedValue\n");
}

TEST(Inspect, JsonForPrograms) {
  const TemporaryDirectory files;
  const std::string model = files.Write("m.pmml", std::string(kDocument) + "\xFF");
  const auto got = nlohmann::json::parse(RunProgram({"inspect", "--json", model}).out);
  const auto want = nlohmann::json::parse(R"({
    "document": {"root": "PMML", "version": "4.4", "application": "Trainer", "applicationVersion": "1.2",
                 "description": "Wine", "timestamp": "2020-01-02"},
    "models": [{"kind": "AnyModel", "name": "m", "function": "classification", "algorithm": "a", "type": ""}],
    "fields": [
      {"name": "alcohol", "label": "by volume", "type": "double", "level": "continuous", "role": "active",
       "valid": [], "missing": ["-1"], "invalid": ["99"],
       "intervals": [{"closure": "closedOpen", "left": 8, "right": 15.5},
                     {"closure": "openOpen", "left": 20, "right": null}]},
      {"name": "\u8272", "label": "", "type": "string", "level": "categorical", "role": "",
       "valid": [{"value": "red", "label": "Red wine"}, {"value": "white", "label": ""}, {"value": "", "label": ""}],
       "missing": [], "invalid": [], "intervals": []},
      {"name": "quality of the wine as told by experts", "label": "", "type": "string", "level": "ordinal",
       "role": "target", "valid": [], "missing": [], "invalid": [], "intervals": []}],
    "derivedFields": [{"name": "strength", "type": "double", "level": "continuous", "expression": "Apply ln"}],
    "outputs": [{"name": "p", "feature": "probability", "value": "good", "type": "double", "rank": "", "target": ""},
                {"name": "q", "feature": "", "value": "", "type": "", "rank": "", "target": ""}]})");
  EXPECT_EQ(got, want) << got.dump(2);
}

TEST(Inspect, TheLibrarysOwnDisplayReadsTheWholeDocument) {
  const TemporaryDirectory files;
  const ProgramRun broken = RunProgram({"inspect", "--display", files.Write("m.pmml", kDocument)});
  EXPECT_EQ(broken.status, 2);
  EXPECT_NE(broken.err.find(": line 1, column "), std::string::npos) << broken.err;
  const ProgramRun run = RunProgram({"inspect", "--display", Document("iris.pmml")});
  EXPECT_EQ(
      run.out.find("\n ############ Begin dictionary display ################ \nStart ScoreDictVar Display:"),
      0U);
  EXPECT_NE(run.out.find("Value: setosa;  Label: setosa\n"), std::string::npos);
}

// Behind the predictors there is anything: it is not even read.
const char* const kZent =
    "<zent-ml version='1.2'><dictionary><variable name='age' label='Years' storage-type='NUMERIC' "
    "measurement-level='CONTINUOUS'><missing-values><category value='-1'/><range><category value='200'/>"
    "<category value='999'/></range></missing-values></variable>"
    "<variable name='sex' storage-type='STRING' measurement-level='NOMINAL'><categories>"
    "<category value='f' display-value='female'/><category value='m'/></categories></variable>"
    "<variable name='y' storage-type='NUMERIC' measurement-level='CONTINUOUS'/></dictionary>"
    "<regression-model model-type='general-linear' target-variable-name='y'><parameter-list/>"
    "<factor-list><predictor name='sex'/></factor-list><covariate-list/><pp-matrix>";

TEST(Inspect, ZentDocuments) {
  const TemporaryDirectory files;
  const std::string model = files.Write("m.xml", std::string(kZent) + "</broken>");
  EXPECT_EQ(RunProgram({"inspect", model}).out,
            "zent-ml 1.2\nregression-model, type general-linear\n\nFields (3)\n"
            "  name  type     level       role    values\n"
            "  age   NUMERIC  CONTINUOUS  -       missing: -1, [200, 999]\n"
            "  sex   STRING   NOMINAL     active  f = female, m\n"
            "  y     NUMERIC  CONTINUOUS  target\n");
  const auto json = nlohmann::json::parse(RunProgram({"inspect", "--json", model}).out);
  EXPECT_EQ(json["models"][0]["type"], "general-linear");
  const std::string whole = Document("general_regression/zent_linear.xml");
  EXPECT_NE(RunProgram({"inspect", "--display", whole}).out.find("Var Name = smoker"), std::string::npos);
}

// A version of the format says nothing about PMML.
TEST(Veyra, ScoresZentDocumentsOfAnyVersion) {
  const TemporaryDirectory files;
  std::string document = ReadFile(Document("general_regression/zent_loglinear.xml"));
  const std::string root = "<zent-ml version=\"1.0\"";
  document.replace(document.find(root), root.size(), "<zent-ml version=\"9.4\"");
  const ProgramRun run = RunProgram({"score", files.Write("m.xml", document)}, "ward,smoker\neast,no\n");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.status, 0);
}

// The factory goes by the root: the catalogue need not have the kind.
TEST(Doctor, ZentDocuments) {
  const TemporaryDirectory files;
  const std::string document =
      std::string(kZent) + "</pp-matrix><Magic/><p-table/></regression-model></zent-ml>";
  const std::string catalog = files.Write("names.txt", "TreeModel");
  const ProgramRun run = RunProgram({"doctor", "--catalog", catalog, files.Write("m.xml", document)});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out,
            "unknown element: 'Magic' is no element of zent-ml\n    in /zent-ml/regression-model/Magic\n"
            "refused: error 260283: No child element in Node 'parameter-list'.\n"
            "    in /zent-ml/regression-model/parameter-list\n"
            "data columns needed: 'sex'\nIt cannot be scored.\n");
  const ProgramRun well = RunProgram({"doctor", Document("general_regression/zent_linear.xml")});
  EXPECT_EQ(well.out,
            "data columns needed: 'age' (number), 'ward' (text), 'smoker' (text)\n"
            "Nothing keeps it from being scored.\n");
}

TEST(TextTable, CutsAndBreaksByColumnsOfATerminal) {
  EXPECT_EQ(DisplayWidth("abc"), 3U);
  EXPECT_EQ(DisplayWidth("e\xCC\x81"), 1U);      // a mark takes no column
  EXPECT_EQ(DisplayWidth("\xE8\x89\xB2x"), 3U);  // a wide character takes two
  EXPECT_EQ(FitTo("\xE8\x89\xB2\xE8\x89\xB2\xE8\x89\xB2", 5), "\xE8\x89\xB2...");
  EXPECT_EQ(FitTo("a\tb\n", 9), "a b ");
  TextTable table({"n", "values"}, 9);
  table.AddRow({"abcdefghij", std::string(90, 'w') + " end"});
  std::string out;
  table.WriteTo(out);
  EXPECT_EQ(out, "  n          values\n  abcdef...  " + std::string(64, 'w') + "...\n             end\n");
}

}  // namespace
