// Documents that the library refuses: what is said about them, what --lenient adapts, what the doctor finds.

#include "tools/RunProgram.h"

namespace {

using namespace VeyraTest;

// A document with one thing that real ones do otherwise than the library wants; the rest is as it wants it.
struct Parts {
  std::string dictionary = "<DataDictionary numberOfFields='3'>";
  std::string x = "<DataField name='x' optype='continuous' dataType='double'/>";
  std::string flag = "<DataField name='flag' optype='categorical' dataType='string'/>";
  std::string derived;
  std::string targets;

  std::string GetText() const {
    return "<PMML version='4.4'>" + dictionary + x + flag +
           "<DataField name='y' optype='continuous' dataType='double'/></DataDictionary>" +
           "<TransformationDictionary>" + derived + "</TransformationDictionary>" +
           "<RegressionModel functionName='regression'><MiningSchema><MiningField name='x' "
           "invalidValueTreatment='asMissing' missingValueReplacement='0'/><MiningField name='flag'/>"
           "<MiningField name='y' usageType='target'/></MiningSchema>" +
           targets +
           "<RegressionTable intercept='1'><NumericPredictor name='x' coefficient='1'/>"
           "<CategoricalPredictor name='flag' value='true' coefficient='100'/></RegressionTable>"
           "</RegressionModel></PMML>";
  }
};

std::string Prefixed(std::string text) {
  for (std::size_t at = 0; (at = text.find('<', at)) != std::string::npos; ++at) {
    text.insert(at + (text[at + 1] == '/' ? 2 : 1), "p:");
  }
  return text;
}

const char* const kData = "x,flag\n1,true\n3,true\n4.5,false\n5,true\n9,true\n";

struct Row {
  const char* what;
  std::string document;
  std::string refusal;  // after "error "; empty when the library lets it through
  std::string place;
  std::string adapted;
  std::string results;
};

TEST(Adaptations, EachLetsItsDocumentThrough) {
  const std::string all = "y\n102\n104\n5.5\n106\n110\n";
  const auto with = [](auto change) {
    Parts parts;
    change(parts);
    return parts.GetText();
  };
  const Row rows[] = {
      {"no number of fields", with([](Parts& p) { p.dictionary = "<DataDictionary>"; }),
       "260120: Missing the attribute 'numberOfFields' of 'DataDictionary'.", "/PMML/DataDictionary",
       "field-count: numberOfFields is missing, set to 3, in /PMML/DataDictionary", all},
      {"a wrong number of fields",
       with([](Parts& p) { p.dictionary = "<DataDictionary numberOfFields='7'>"; }),
       "260242: The value: '7' of attribute 'numberOfFields' does not match the number: '3' of 'DataField' "
       "in "
       "'DataDictionary'.",
       "/PMML/DataDictionary", "field-count: numberOfFields is '7', set to 3, in /PMML/DataDictionary", all},
      {"a boolean", with([](Parts& p) {
         p.flag =
             "<DataField name='flag' optype='categorical' dataType='boolean'><Value value='true'/>"
             "<Value value='false'/></DataField>";
       }),
       "260151: The value: 'true' is invalid of type: 'double'.",
       "/PMML/DataDictionary/DataField[@name='flag']/Value[1]",
       "boolean-field: dataType boolean is read as the texts 'true' and 'false', in "
       "/PMML/DataDictionary/DataField[@name='flag']",
       all},
      // 3 lies in no interval: it is invalid, and replaced by 0; so is 9.
      {"two intervals", with([](Parts& p) {
         p.x =
             "<DataField name='x' optype='continuous' dataType='double'>"
             "<Interval closure='openClosed' leftMargin='3' rightMargin='5.0'/>"
             "<Interval closure='closedOpen' leftMargin='1' rightMargin='3'/></DataField>";
       }),
       "260272: More than one 'Interval' defined in 'DataField'.",
       "/PMML/DataDictionary/DataField[@name='x']/Interval[2]",
       "one-interval: 2 intervals are joined to one, in /PMML/DataDictionary/DataField[@name='x']",
       "y\n102\n101\n5.5\n106\n101\n"},
      {"a target without level",
       with([](Parts& p) { p.targets = "<Targets><Target field='y' rescaleFactor='1'/></Targets>"; }),
       "260120: Missing the attribute 'optype' of 'Target'.",
       "/PMML/RegressionModel/Targets/Target[@field='y']",
       "target-optype: optype is missing, set to 'continuous' as in the DataDictionary, in "
       "/PMML/RegressionModel/Targets/Target[@field='y']",
       all},
      {"prefixes", Prefixed(Parts().GetText()), "260301: Unsupported model: 'p:PMML'.", "/p:PMML",
       "no-prefix: the prefix of 'p:PMML' is dropped, in /p:PMML (and 13 more)", all},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const TemporaryDirectory files;
    const std::string model = files.Write("m.pmml", row.document);
    const std::string start = "veyra: " + model + ": ";
    const ProgramRun strict = RunProgram({"score", model}, kData);
    EXPECT_EQ(strict.err, start + "error " + row.refusal + "\n" + start + "in " + row.place + "\n" + start +
                              "--lenient would let it through (" + row.adapted + ")\n");
    EXPECT_EQ(strict.status, 2);
    const ProgramRun lenient = RunProgram({"score", model, "--lenient"}, kData);
    EXPECT_EQ(lenient.err, start + "adapted: " + row.adapted + "\n");
    EXPECT_EQ(lenient.out, row.results);
    const ProgramRun doctor = RunProgram({"doctor", model});
    EXPECT_EQ(doctor.out, "refused: error " + row.refusal + "\n    in " + row.place + "\n--lenient adapts: " +
                              row.adapted + "\ndata columns needed: 'x' (number), 'flag' (text)\n" +
                              "It can be scored with --lenient only.\n");
    EXPECT_EQ(doctor.status, 2);
  }
}

TEST(Adaptations, ChangeNothingElse) {
  const TemporaryDirectory files;
  Parts parts;
  // A hole between intervals cannot be said otherwise: the refusal stands.
  parts.x =
      "<DataField name='x' optype='continuous' dataType='double'>"
      "<Interval closure='closedClosed' leftMargin='1' rightMargin='2'/>"
      "<Interval closure='closedClosed' leftMargin='3' rightMargin='4'/></DataField>";
  const std::string holes = files.Write("holes.pmml", parts.GetText());
  EXPECT_EQ(RunProgram({"score", holes, "--lenient"}, kData).err.find("veyra: " + holes + ": error 260272"),
            0U);
  // Nothing is said about a document that is as it should be, whatever its data need.
  const std::string plain = files.Write("plain.pmml", Parts().GetText());
  const ProgramRun run = RunProgram({"score", plain, "--lenient"}, "x,flag\n1,a&b\n");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "y\n2\n");
  // What is adapted keeps its texts, with everything that XML has to escape.
  Parts odd;
  odd.dictionary = "<!-- <> --><DataDictionary>";
  odd.flag =
      "<DataField name='flag' optype='categorical' dataType='string'><Value "
      "value='&lt;&amp;&quot;&#9;&#x20AC;'/>"
      "<Value value='true'/></DataField>";
  const ProgramRun texts = RunProgram({"score", files.Write("odd.pmml", odd.GetText()), "--lenient"},
                                      "x,flag\n1,\"<&\"\"\t\xE2\x82\xAC\"\n1,b\n");
  EXPECT_EQ(texts.out, "y\n2\n\n");
}

TEST(Documents, AreReadAsTheyCome) {
  const TemporaryDirectory files;
  std::string newer = Parts().GetText();
  newer.replace(newer.find("4.4"), 3, "4.10");
  const std::string head = "<PMML ";
  const struct {
    const char* what;
    std::string document;
    std::string err;
  } rows[] = {
      {"a byte order mark", "\xEF\xBB\xBF" + Parts().GetText(), ""},
      {"the namespace of an older version",
       "<PMML xmlns='http://www.dmg.org/PMML-3_0' " + Parts().GetText().substr(head.size()), ""},
      {"a namespace by https",
       "<PMML xmlns='https://www.dmg.org/PMML-4_4' " + Parts().GetText().substr(head.size()), ""},
      {"a newer version", newer,
       ": warning: version 4.10 is newer than PMML 4.4, which is all that is known here\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const std::string model = files.Write("m.pmml", row.document);
    const ProgramRun run = RunProgram({"score", model}, kData);
    EXPECT_EQ(run.err, row.err.empty() ? "" : "veyra: " + model + row.err);
    EXPECT_EQ(run.out, "y\n102\n104\n5.5\n106\n110\n");
  }
  const std::string broken = files.Write("broken.pmml", "<PMML version='4.4'>\n<DataDictionary>\n</PMML>\n");
  const ProgramRun run = RunProgram({"score", broken}, kData);
  EXPECT_NE(run.err.find("error 260109: "), std::string::npos);
  EXPECT_NE(run.err.find("\nveyra: " + broken + ": line 3, column 3: "), std::string::npos) << run.err;
}

TEST(Documents, ALagIsScoredByOneThread) {
  const TemporaryDirectory files;
  Parts parts;
  parts.derived =
      "<DerivedField name='before' optype='continuous' dataType='double'><Lag field='x'/></DerivedField>";
  const std::string model = files.Write("lag.pmml", parts.GetText());
  const std::string line =
      "veyra: " + model + ": derived fields look back at earlier rows (Lag): one thread is used\n";
  EXPECT_EQ(RunProgram({"score", model, "--threads", "2"}, kData).err, line);
  EXPECT_EQ(RunProgram({"score", model, "--threads", "1"}, kData).err, "");
  EXPECT_EQ(RunProgram({"score", model}, kData).err, "");
}

TEST(Doctor, FindsEverythingAtOnce) {
  const TemporaryDirectory files;
  Parts parts;
  parts.dictionary = "<DataDictionary><Extension><anything/></Extension>";
  parts.derived =
      "<DerivedField name='d' optype='continuous' dataType='double'><Apply function='magic'><FieldRef "
      "field='x'/>"
      "</Apply></DerivedField><DerivedField name='e' optype='continuous' dataType='double'>"
      "<Apply function='+'><FieldRef field='x'/><Apply function='magic'/><Lag "
      "field='x'/></Apply></DerivedField>"
      "<Wizard/>";
  std::string text = parts.GetText();
  for (const char* tag : {"<RegressionModel", "</RegressionModel"}) {
    text.replace(text.find(tag), std::string(tag).size(),
                 tag[1] == '/' ? "</NaiveBayesModel" : "<NaiveBayesModel");
  }
  const ProgramRun run = RunProgram({"doctor", files.Write("ill.pmml", text)});
  EXPECT_EQ(run.status, 2);
  for (const char* want : {
           "unknown element: 'Wizard' is no element of PMML\n    in /PMML/TransformationDictionary/Wizard\n",
           "unknown function: 'magic' is no function of the library\n    in "
           "/PMML/TransformationDictionary/DerivedField[@name='d']/Apply (and 1 more)\n",
           "dropped operand: 'Lag' below an Apply is passed over: the function lacks an operand\n    in "
           "/PMML/TransformationDictionary/DerivedField[@name='e']/Apply/Lag",
           "no plug-in: 'NaiveBayesModel' needs libNaiveBayesModel940r.dylib: ",
           "/veyra/plugins\n",
           "refused: error 260120: Missing the attribute 'numberOfFields' of 'DataDictionary'.\n",
           "--lenient adapts: field-count: ",
           "data columns needed: 'x', 'flag'\n",
           "It cannot be scored.\n",
       }) {
    EXPECT_NE(run.out.find(want), std::string::npos) << want << "\n" << run.out;
  }
  EXPECT_EQ(run.out.find("anything"), std::string::npos);
  const ProgramRun well = RunProgram({"doctor", Document("iris.pmml")});
  EXPECT_EQ(well.status, 0);
  EXPECT_NE(well.out.find("Nothing keeps it from being scored.\n"), std::string::npos) << well.out;
}

}  // namespace
