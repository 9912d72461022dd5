// Translating derived fields: what is refused and with which message, what is built, the function table.

#include <gtest/gtest.h>

#include "transform/DerivedFields.h"
#include "transform/FunctionTable.h"
#include "transform/MapValues.h"

namespace {

using namespace veyra_tests;
using namespace KxVeyra_940;

const std::string kX = Ref("x"), kY = Ref("y"), kS = Ref("s");

std::string Bin(const std::string& content, const std::string& value = "1") {
  return "<DiscretizeBin binValue='" + value + "'>" + content + "</DiscretizeBin>";
}
std::string Interval(const std::string& closure, const std::string& margins) {
  return "<Interval closure='" + closure + "' " + margins + "/>";
}
std::string Bins(const std::string& content) {
  return Field("<Discretize field='x'>" + content + "</Discretize>");
}
std::string Map(const std::string& content, const std::string& dataType = "double") {
  return Field("<MapValues outputColumn='out'>" + content + "</MapValues>", dataType);
}
const std::string kPair = "<FieldColumnPair field='x' column='k'/>";

std::string Row(const std::string& cells) { return "<InlineTable><row>" + cells + "</row></InlineTable>"; }

std::string Nested(int depth) {
  std::string open, close;
  for (int i = 0; i < depth; ++i) {
    open += "<Apply function='abs'>";
    close += "</Apply>";
  }
  return Field(open + kX + close);
}

TEST(DerivedFieldTranslation, RefusesWithTheMessageOfTheRule) {
  struct Case {
    const char* what;
    std::string derived;
    const char* refusal;
  };
  const std::string left0 = "leftMargin='0' ", right9 = "rightMargin='9'",
                    aroundTwo = "leftMargin='-2.5' rightMargin='2'";
  const std::string inverted = Bin(Interval("closedOpen", "leftMargin='99' rightMargin='1'"));
  for (const Case& row : {
           Case{"empty name", "<DerivedField name='' optype='continuous' dataType='double'/>",
                "260285 name|DerivedField"},
           {"no name", "<DerivedField optype='continuous' dataType='double'/>", "260120 name|DerivedField"},
           {"name of a data field", Field(kX, "double", "x"), "260202 x|DataDictionary"},
           {"name twice", Field(kX) + Field(kX), "260202 v|DataDictionary"},
           {"no optype", "<DerivedField name='v' dataType='double'/>", "260285 optype|DerivedField"},
           {"unknown optype", "<DerivedField name='v' optype='nominal' dataType='double'/>",
            "260152 nominal|optype"},
           {"no dataType", "<DerivedField name='v' optype='continuous'/>", "260120 dataType|DerivedField"},
           {"continuous text", "<DerivedField name='v' optype='continuous' dataType='string'/>",
            "260211 continuous|optype|string|dataType"},
           {"two expressions", Field(kX + kX), "260274 DerivedField"},
           {"aggregate", Field("<Aggregate field='x' function='sum'/>"), "260303 Aggregate|name"},
           {"unknown element", Field("<TextIndex/>"), "260152 TextIndex|name"},
           {"unknown element after a value", Field("<Value value='1' property='valid'/><TextIndex/>"),
            "nothing"},
           {"value without property", Field("<Value value='1'/>"), "260120 property|Value"},
           {"value that is not valid", Field("<Value value='1' property='missing'/>"),
            "260153 missing|property|Value"},
           {"value that is no number", Field("<Value value='a' property='valid'/>"), "260151 a|double"},
           {"value that is missing",
            Field("<Extension name='MissingValues'><Value value='q'/></Extension><Value value='q' "
                  "displayValue='one' property='valid'/>",
                  "string"),
            "260294 one|v"},
           {"width", Field("<Extension name='width' value='x'/>"), "260151 x|integer"},
           {"unknown field", Field(Ref("u")), "260125 u|DataDictionary|TransformationDictionary"},
           {"field defined later", Field(Ref("w")) + Field(kX, "double", "w"),
            "260125 w|DataDictionary|TransformationDictionary"},
           {"field of another type", Field(kS), "260215 s|v"},
           {"constant without text", Field("<Constant/>"), "260114 Constant"},
           {"constant that is no number", Field(Call("+", kX + "<Constant>abc</Constant>")),
            "260151 abc|double"},
           {"constant text of a text function", Field(Call("concat", "<Constant>abc</Constant>"), "string"),
            "nothing"},
           {"typed constant of a text function", Field(Call("concat", Num("1")), "string"),
            "260153 double|dataType|Constant"},
           {"wrong case", Field(Call("Pow", kX + kY)), "260303 Pow|function"},
           {"two for one", Field(Call("sqrt", kX + kY)), "260173 1"},
           {"two for three", Field(Call("substring", kS + Num("1")), "string"), "260173 3"},
           {"unchecked count", Field(Call("floor", kX + kY)), "nothing"},
           {"text for a number", Field(Call("abs", kS)), "260245 abs|s"},
           {"number for a text", Field(Call("ltrim", kX), "string"), "260245 ltrim|x"},
           {"date for a number", Field(Call("+", Ref("d") + Num("1"))), "nothing"},
           {"text constant for a number", Field(Call("+", kX + Txt("1"))), "260245 +|Constant_S_"},
           {"text position", Field(Call("substr", kS + Txt("1")), "string"), "260245 substr|Constant_S_"},
           {"nested number for a text", Field(Call("ltrim", Call("abs", kX)), "string"), "260243 ltrim|abs"},
           {"nested text for a number", Field(Call("abs", Call("ltrim", kS))), "260243 abs|ltrim"},
           {"nested text for a position", Field(Call("substr", kS + Call("ltrim", kS)), "string"),
            "260243 substr|ltrim"},
           {"nested substring", Field(Call("length", Call("substring", kS + Num("1") + Num("2")))),
            "nothing"},
           {"nested greaterOrEqual", Field(Call("+", Call("greaterOrEqual", kX + kY) + Num("1"))), "nothing"},
           {"nested date-time", Field(Call("abs", Call("year-from-date", Ref("d")))), "nothing"},
           {"anything in logic", Field(Call("equal", Call("ltrim", kS) + Num("1"))), "nothing"},
           {"value of no field", Field(Call("value", Call("abs", kX))), "260174 FieldRef|Apply"},
           {"value of another type", Field(Call("value", kS)), "260215 s|v"},
           {"sysmis of a text", Field(Call("sysmis", kS)), "260245 sysmis|s"},
           {"outlier word",
            Field(Call("outlierHandle", kX + Txt("asis") + Num("1") + Num("1") + Num("1") + Num("1"))),
            "260303 asis|string"},
           {"imputation without arrays",
            Field(Call("imputeCatFieldMissingAgainstConTarget", Ref("c") + kX), "string"),
            "260221 imputeCatFieldMissingAgainstConTarget"},
           {"deepest", Nested(500), "nothing"},
           {"too deep", Nested(501), "260221 Apply"},
           {"one point", Field("<NormContinuous field='x'><LinearNorm orig='0' norm='0'/></NormContinuous>"),
            "260176 LinearNorm|DerivedField"},
           {"normalised category",
            Field("<NormContinuous field='c'><LinearNorm orig='0' norm='0'/><LinearNorm orig='1' "
                  "norm='1'/></NormContinuous>"),
            "260180 continuous|optype|c"},
           {"encoded number", Field("<NormDiscrete field='x' value='1'/>"),
            "260214 continuous|optype|x|NormDiscrete|name|x"},
           {"no bins", Bins(""), "260115 DiscretizeBin|DerivedField"},
           {"bin without interval", Bins(Bin("")), "260115 Interval|DiscretizeBin"},
           {"bin with two intervals", Bins(Bin(Interval("openOpen", left0) + Interval("openOpen", left0))),
            "260272 Interval|DiscretizeBin"},
           {"bin with something else", Bins(Bin("<Value/>")),
            "260178 Value|Extension, Interval|DiscretizeBin"},
           {"something else beside bins", Bins(Bin(Interval("openOpen", left0)) + "<Value/>"),
            "260178 Value|Extension, DiscretizeBin|DiscretizeBin"},
           {"unknown closure", Bins(Bin(Interval("closed", left0))), "260153 closed|closure|Interval"},
           {"third without margins",
            Bins(Bin(Interval("openOpen", "rightMargin='0'")) + Bin(Interval("closedOpen", left0 + right9)) +
                 Bin(Interval("openOpen", ""))),
            "260175 rightMargin|leftMargin"},
           {"first without margins", Bins(Bin(Interval("openOpen", ""))), "nothing"},
           {"shared point",
            Bins(Bin(Interval("closedClosed", left0 + right9)) +
                 Bin(Interval("closedOpen", "leftMargin='9'"))),
            "260293 x"},
           {"neighbours",
            Bins(Bin(Interval("closedOpen", "leftMargin='9'")) + Bin(Interval("closedOpen", left0 + right9))),
            "nothing"},
           {"one inside another, far apart",
            Bins(Bin(Interval("openOpen", left0 + "rightMargin='100'")) +
                 Bin(Interval("openOpen", "leftMargin='1' rightMargin='2'")) +
                 Bin(Interval("openOpen", "leftMargin='50' rightMargin='60'"))),
            "260293 x"},
           {"inverted around another's end", Bins(inverted + Bin(Interval("closedOpen", aroundTwo))),
            "260293 x"},
           {"inverted, whatever stands beside",
            Bins(Bin(Interval("openOpen", "leftMargin='200' rightMargin='300'")) +
                 Bin(Interval("closedOpen", aroundTwo)) +
                 Bin(Interval("openOpen", "leftMargin='5' rightMargin='7'")) + inverted),
            "260293 x"},
           {"inverted beside others",
            Bins(inverted + Bin(Interval("openOpen", "leftMargin='5' rightMargin='7'"))), "nothing"},
           {"bin value that is no number", Bins(Bin(Interval("openOpen", left0), "a")), "260151 a|double"},
           {"interval without value", Bins(Bin(Interval("openOpen", left0) + "<Extension name='note'/>")),
            "260132 DiscretizeBin|x"},
           {"copy against default",
            Field("<Discretize field='x' defaultValue='1'>" + Bin(Interval("openOpen", left0)) +
                  "<Extension name='recodeElseCopy'/></Discretize>"),
            "260216 defaultValue|recodeElseCopy"},
           {"two replacements",
            Bins(Bin(Interval("openOpen", left0)) +
                 "<Extension name='mapSysmisTo' value='1'/><Extension name='mapSysmisTo' value='2'/>"),
            "260216 mapSysmisTo|mapSysmisTo"},
           {"missing both ways",
            Bins(Bin(Interval("openOpen", left0)) +
                 "<Extension name='mapSysmisTo' value='1'/><Extension name='recodeMissingSysmis'/>"),
            "260216 mapSysmisTo, recodeMissingCopy, mapMissingTo|recodeMissingSysmis"},
           {"no output column", Field("<MapValues>" + kPair + "</MapValues>"),
            "260120 outputColumn|MapValues"},
           {"table before pairs", Map("<InlineTable/>" + kPair), "260122 FieldColumnPair|InlineTable"},
           {"unknown column", Map(kPair + Row("<j>1</j><out>2</out>")),
            "260125 x|DataDictionary|TransformationDictionary"},
           {"row without output", Map(kPair + Row("<k>1</k>")), "260115 out|row"},
           {"row without a key",
            Map(kPair + "<InlineTable><row><k>1</k><out>1</out></row><row><out>2</out></row></InlineTable>"),
            "260115 k|row"},
           {"first row without a key",
            Map(kPair + "<InlineTable><row><out>1</out></row><row><k>1</k><out>2</out></row></InlineTable>"),
            "260115 k|row"},
           {"column twice in the first row", Map(kPair + Row("<k>1</k><out>2</out><k>1</k>")),
            "260272 k|row"},
           {"column twice in a later row",
            Map(kPair + "<InlineTable><row><k>1</k><out>1</out></row>"
                        "<row><k>2</k><k>2</k><out>2</out></row></InlineTable>"),
            "260272 k|row"},
           {"output twice", Map(kPair + Row("<out>5</out><k>1</k><out>7</out>")), "260272 out|row"},
           {"empty table behind a table",
            Map(kPair + Row("<k>1</k><out>2</out>") + "<Extension name='recodeTargetSysmis' value='1'/>"),
            "nothing"},
           {"cell that is no number", Map(kPair + Row("<k>a</k><out>2</out>")), "260151 a|double"},
           {"missing target of a text",
            Map(kPair + "<Extension name='recodeTargetSysmis' value='1'/>", "string"),
            "260244 recodeTargetSysmis|v"},
           {"something else in a map", Map(kPair + "<Value/>"), "260153 Value|name|MapValues"},
           {"table elsewhere", Map(kPair + "<TableLocator/>"), "nothing"},
           {"lag of nothing", Field("<Lag field='x' n='0'/>"), "260151 0|positiveInteger"},
           {"unknown block", Field("<Lag field='x'><BlockIndicator field='u'/></Lag>"),
            "260125 u|DataDictionary|TransformationDictionary"},
           {"a function that nothing calls",
            "<DefineFunction name='f' optype='continuous'><ParameterField name='p'/>" +
                Call("abs", Ref("p")) + "</DefineFunction>" + Field(kX),
            "nothing"},
       }) {
    EXPECT_EQ(Refusal([&] { DerivedFields fields(row.derived); }), row.refusal) << row.what;
  }
}

TEST(DerivedFieldTranslation, AnUnknownFieldOfAMapHasNoMessageNumber) {
  try {
    DerivedFields fields(Map("<FieldColumnPair field='u' column='k'/>"));
    FAIL();
  } catch (const VYException& e) {
    EXPECT_EQ(e.GetErrorCode(), 1);
    EXPECT_EQ(e.GetErrorMessage(), "u: not predefined!");
  }
}

TEST(DerivedFieldTranslation, DescribesWhatItBuilds) {
  DerivedFields fields(
      "<DerivedField name='a' displayName='The bins' optype='categorical' dataType='string'><Discretize "
      "field='x'>" +
      Bin(Interval("closedOpen", "leftMargin='0' rightMargin='9'"), "low") +
      Bin(Interval("closedOpen", "leftMargin='9'"), "high") + "</Discretize></DerivedField>" +
      Field(Call("+", kX + Call("ln", kY)), "double", "b") +
      Field("<NormDiscrete field='s' value='q'/>", "double", "e"));
  EXPECT_EQ(fields.Transformations().GetDerivedVarNames(), (std::vector<std::string>{"a", "b", "e"}));
  const auto& bins = dynamic_cast<const TransformVar&>(*fields.Transformations().GetVar("a"));
  EXPECT_EQ(bins.GetLabel(), "The bins");
  EXPECT_EQ(Labels(bins), "low=low high=high");
  EXPECT_EQ(bins.GetOrigIntervalForBinningValue("low", false), "[0, 9)");
  EXPECT_EQ(bins.GetOrigIntervalForBinningValue("high", true), "9 <= x");
  EXPECT_EQ(Labels(*fields.Data().GetVar("s")), "q=q");

  std::ostringstream shown;
  fields.Transformations().GetVar("b")->Display(shown);
  const std::string tail = shown.str().substr(shown.str().find("EXPRESSION"));
  EXPECT_EQ(
      tail.substr(0, tail.find("End Fun")),
      "EXPRESSION: Apply\nStart FunctionTree Display:\nNode ID = 0\nTransformation function: +\n  Level = "
      "0\n\n"
      "Number of children = 2\nStart FunctionTree Display:\nNode ID = 1\ncode =79\n  Parameter Name: x\n"
      "  Level = 1\n\n");
}

TEST(DerivedFieldTranslation, LocalFieldsExtendADictionary) {
  DerivedFields fields(Field(Call("+", kX + Num("1")), "double", "a"));
  const Document local("<LocalTransformations>" + Field(Call("*", Ref("a") + Num("2")), "double", "b") +
                       "</LocalTransformations>");
  const Document again("<LocalTransformations>" + Field(kX, "double", "a") + "</LocalTransformations>");
  PlainTranslator translator;
  TransformationDictionary all(fields.Transformations());
  EXPECT_EQ(Refusal([&] { translator.ExtendTransformationDictionary(*again.Root(), &fields.Data(), all); }),
            "260202 a|DataDictionary");
  TransformationDictionary extended;
  for (const std::string& name : fields.Transformations().GetDerivedVarNames()) {
    extended.AddVar(name, std::as_const(fields.Transformations()).GetVar(name)->Clone());
    extended.AddDerievedVarName(name);
  }
  translator.ExtendTransformationDictionary(*local.Root(), &fields.Data(), extended);
  extended.SetUpDerivedCaseRecord();
  fields.Fill("x=4");
  EXPECT_EQ(Shown(extended.GetValuesForDerivedVars(&fields.Record(), &fields.Data())->Get("b")), "10");
}

TEST(DerivedFieldTranslation, ANameThatTheEncodingLosesIsRefused) {
  const auto refusal = [](const std::string& fields) {
    const Document document("<T>" + fields + "</T>");
    PlainTranslator translator("ISO-8859-1");
    TransformationDictionary dictionary;
    BaseDictionary data;
    data.AddVar("x", new DictVar("x", ScoreDictVar::kNUMERIC_VAR));
    return Refusal([&] { translator.ExtendTransformationDictionary(*document.Root(), &data, dictionary); });
  };
  EXPECT_EQ(refusal(Field(kX, "double", "\u65e5\u672c")), "260303 \u65e5\u672c|name");
  EXPECT_EQ(refusal(Field(kX, "double", "a\u65e5") + Field(kX, "double", "a\u672c")),
            "260202 a\u672c|DataDictionary");
  EXPECT_EQ(refusal(Field(kX, "double", "a\u65e5")), "nothing");
}

// Tables and bins of the size that real documents have: a mistake of order shows as minutes.
TEST(DerivedFieldTranslation, LargeTablesAndManyBins) {
  std::string rows, bins;
  for (int i = 0; i < 100000; ++i)
    rows += "<row><k>" + std::to_string(i) + "</k><out>" + std::to_string(i % 7) + "</out></row>";
  for (int i = 0; i < 10000; ++i)
    bins += Bin(Interval("closedOpen", "leftMargin='" + std::to_string(i) + "' rightMargin='" +
                                           std::to_string(i + 1) + "'"),
                std::to_string(i * 2));
  DerivedFields fields(Map(kPair + "<InlineTable>" + rows + "</InlineTable>") +
                       Field("<Discretize field='x'>" + bins + "</Discretize>", "double", "w"));
  for (const int i : {0, 1, 4999, 9999}) {
    EXPECT_EQ(fields.ValueFor("x=" + std::to_string(i)), std::to_string(i % 7));
    EXPECT_EQ(fields.Value("w"), std::to_string(i * 2));
  }
  EXPECT_EQ(fields.ValueFor("x=100000"), "missing");
}

TEST(DerivedFieldService, OtherRootsAndMissingParts) {
  const auto read = [](const std::string& text) {
    std::istringstream in(text);
    ScoreDictionary* data = nullptr;
    std::unique_ptr<TransformationDictionary> derived(
        ModelFactory::GetTransformationDictionaryFromXML(in, data, ""));
    const std::unique_ptr<ScoreDictionary> owned(data);
    return std::string(derived == nullptr ? "null" : "fields") + (data == nullptr ? ", null" : ", data");
  };
  const std::string dictionary = "<DataDictionary numberOfFields='0'/>";
  EXPECT_EQ(read("<zent-ml/>"), "null, null");
  EXPECT_EQ(read("<PMML>" + dictionary + "<TransformationDictionary/></PMML>"), "null, data");
  EXPECT_EQ(read(DerivingDocument(Field(kX))), "fields, data");
  EXPECT_EQ(Refusal([&] { read("<PMML>" + dictionary + "</PMML>"); }), "260114 TransformationDictionary");
  EXPECT_EQ(Refusal([&] { read("<PMML><TransformationDictionary/></PMML>"); }), "260114 DataDictionary");
  EXPECT_EQ(Refusal([&] { read("<PMML><a></PMML>"); }).substr(0, 6), "260109");
  ScoreDictionary* data = nullptr;
  EXPECT_EQ(Refusal([&] { ModelFactory::GetTransformationDictionaryFromXML("/no/such.pmml", data, ""); }),
            "260103 /no/such.pmml");
  // The data dictionary is the caller's as soon as it is made.
  std::istringstream broken(DerivingDocument(Field(Call("none", kX))));
  EXPECT_EQ(Refusal([&] { ModelFactory::GetTransformationDictionaryFromXML(broken, data, ""); }),
            "260303 none|function");
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->Size(), 9);
  delete data;
}

std::string Members(bool (*isMember)(TransformFunction)) {
  std::string ranges;
  for (int i = -1; i <= kTransformFunctionCount; ++i) {
    const auto is = [&](int n) { return isMember(static_cast<TransformFunction>(n)); };
    if (!is(i) || is(i - 1)) continue;
    int end = i;
    while (is(end + 1)) ++end;
    ranges += (ranges.empty() ? "" : " ") + std::to_string(i) + (end > i ? "-" + std::to_string(end) : "");
  }
  return ranges;
}

TEST(FunctionTable, ClassesAndNames) {
  using P = PMMLTranslator;
  const std::pair<bool (*)(TransformFunction), const char*> classes[] = {
      {P::IsArithmeticFunction, "0-3"},
      {P::IsMathematicsFunction, "4-15 66-67"},
      {P::IsStatisticFunction, "16-27 72-78"},
      {P::IsDateTimeFunction, "28-39"},
      {P::IsStringFunction, "54-61"},
      {P::IsLogicFunction, "40-46 48-53"},
      {P::IsMixInputFunction, "40-46 48-53 64-65 68-69"},
      {P::IsNumericFunction, "0-39 66-67 70-78"},
      {P::IsInputNumericFunction, "0-39 66-67 70-78"},
      {P::IsInputStringFunction, "54-61 63"},
      {P::IsOutputNumericFunction, "0-46 48-53 63 66-67 70-78"},
      {P::IsOutputStringFunction, "54-61"},
      {P::IsMixOutputFunction, "64-65"},
  };
  for (const auto& [isMember, members] : classes) EXPECT_EQ(Members(isMember), members);
  EXPECT_EQ(FindFunction("lg10"), FindFunction(TF_LOG10));
  EXPECT_EQ(FindFunction("trimend"), FindFunction(TF_RTRIM));
  EXPECT_EQ(FindFunction("Abs"), nullptr);
  EXPECT_EQ(PlainTranslator().ToString(TF_LOG10), "log10");
  EXPECT_EQ(PlainTranslator().ToString(static_cast<TransformFunction>(79)), "<not defined>");
}

}  // namespace
