// What expressions answer: by function, by what is missing or invalid, by kind of derived field.

#include <gtest/gtest.h>

#include <thread>

#include "AllocationCounter.h"
#include "transform/DerivedFields.h"

namespace {

using namespace veyra_tests;

struct Row {
  const char* what;
  std::string field;
  const char* values;
  const char* expected;
};

void Check(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what + std::string(": ") + row.field);
    DerivedFields fields(row.field);
    // Twice, for what is left over from a case must not show in the next.
    EXPECT_EQ(fields.ValueFor(row.values), row.expected) << row.values;
    EXPECT_EQ(fields.ValueFor(row.values), row.expected) << row.values << " again";
  }
}

const std::string kX = Ref("x"), kY = Ref("y"), kS = Ref("s"), kT = Ref("t"), kZ = Ref("z"), kD = Ref("d"),
                  kM = Ref("m"), kC = Ref("c");
const char* const kR = "mapMissingTo='7'";
const char* const kRD = "mapMissingTo='7' defaultValue='8'";
const char* const kDef = "defaultValue='8'";

TEST(Evaluation, FunctionsAnswer) {
  Check({
      {"plus", Field(Call("+", kX + kY)), "x=1 y=2.5", "3.5"},
      {"minus", Field(Call("-", kX + kY)), "x=1 y=2.5", "-1.5"},
      {"pow is real", Field(Call("pow", kX + kY)), "x=2 y=0.5", "1.4142135623730951"},
      {"remainder has the sign of the dividend", Field(Call("mod", kX + kY)), "x=-7 y=3", "-1"},
      {"halves round away from zero", Field(Call("round", kX)), "x=-2.5", "-3"},
      {"round beyond 32 bits", Field(Call("round", kX)), "x=3e9", "missing"},
      {"trunc at the end of its range", Field(Call("trunc", kX)), "x=2147483646.5", "2147483646"},
      {"exp of a small number", Field(Call("exp", kX)), "x=-708", "0"},
      {"lists skip missing", Field(Call("mean", kX + kY + kZ)), "x=1 z=100", "50.5"},
      {"median of two", Field(Call("median", kX + kY + kZ)), "x=3 y=1", "2"},
      {"sample deviation", Field(Call("sd", kX + kY)), "x=1 y=3", "1.4142135623730951"},
      {"deviation of one", Field(Call("sd", kX + kY)), "x=1", "missing"},
      {"nested", Field(Call("+", Call("*", kX + Num("2")) + Call("max", kX + kY))), "x=3 y=4", "10"},
      {"threshold", Field(Call("threshold", kX + kY)), "x=3 y=4", "0"},
      {"ordering of numbers", Field(Call("lessOrEqual", kX + kY)), "x=3 y=3.000000000000001", "1"},
      {"numbers very close are not less", Field(Call("lessThan", kX + kY)), "x=3 y=3.000000000000001", "0"},
      {"ordering of texts", Field(Call("greaterThan", kS + kT)), "s='b' t='a'", "1"},
      {"ordering of dates in seconds", Field(Call("lessThan", kD + kM)), "d=1 m=86401", "1"},
      {"three operands of an ordering", Field(Call("lessThan", kX + kY + kX)), "x=1 y=2", "0"},
      {"trailing blanks do not count", Field(Call("equal", kS + Txt("ab"))), "s='ab  '", "1"},
      {"a number is no text", Field(Call("equal", kX + kS)), "x=1 s='1'", "0"},
      {"member", Field(Call("isIn", kS + Txt("a") + Txt("b"))), "s='b'", "1"},
      {"no member", Field(Call("isNotIn", kX + Num("1") + Num("2"))), "x=3", "1"},
      {"search", Field(Call("matches", kS + Txt("b+c"))), "s='abbcd'", "1"},
      {"broken pattern", Field(Call("matches", kS + Txt("("))), "s='('", "0"},
      {"replace", Field(Call("replace", kS + Txt("[aeiou]") + Txt("-")), "string"), "s='banana'", "'b-n-n-'"},
      {"broken pattern replaces nothing", Field(Call("replace", kS + Txt("(") + Txt("-")), "string"),
       "s='b('", "'b('"},
      {"concat", Field(Call("concat", kS + Txt("-") + kT), "string"), "s='ab' t='c'", "'ab-c'"},
      {"substr", Field(Call("substr", kS + Num("3")), "string"), "s='abcdef'", "'cdef'"},
      {"substr from the last", Field(Call("substr", kS + Num("6")), "string"), "s='abcdef'", "''"},
      {"substring from the last", Field(Call("substring", kS + Num("6") + Num("1")), "string"), "s='abcdef'",
       "'f'"},
      {"substring in units", Field(Call("substring", kS + Num("2") + Num("2")), "string"), "s='äöü'", "'öü'"},
      {"negative count", Field(Call("substring", kS + Num("2") + Num("-1")), "string"), "s='abc'", "''"},
      {"computed position", Field(Call("substr", kS + Call("+", kX + Num("1"))), "string"), "s='abc' x=1",
       "'bc'"},
      {"length", Field(Call("length", Call("concat", kS + kT))), "s='ab' t='cde'", "5"},
      {"upper", Field(Call("uppercase", kS), "string"), "s='aBc'", "'ABC'"},
      {"blanks and tabs at the start", Field(Call("ltrim", kS), "string"), "s=' \tx '", "'x '"},
      {"blanks at the end", Field(Call("rtrim", kS), "string"), "s='x\t  '", "'x\t'"},
      {"if true", Field(Call("if", Call("greaterThan", kX + Num("0")) + kX + kY)), "x=2 y=5", "2"},
      {"if false", Field(Call("if", Call("greaterThan", kX + Num("0")) + kX + kY)), "x=-2 y=5", "5"},
      {"if of texts", Field(Call("if", Call("equal", kS + Txt("a")) + Txt("yes") + kT), "string"), "s='a'",
       "'yes'"},
      {"days between dates", Field(Call("date_days_difference", kD + kM)), "d=10 m=86400", "9"},
      {"hours between", Field(Call("time_hours_difference", kM + kD)), "m=90000 d=0", "25"},
      {"year before the epoch", Field(Call("year-from-date", kD)), "d=-1", "1969"},
      {"month of a leap day", Field(Call("month-from-date", kD)), "d=11016", "2"},
      {"seconds to the number of a text",
       Field(Call("time_seconds_difference", kM + Call("if", Num("1") + kS + kS), kR)), "m=100 s='40'", "60"},
      {"seconds to a text that is no number",
       Field(Call("time_seconds_difference", kM + Call("if", Num("1") + kS + kS), kR)), "m=100 s='x'", "7"},
      {"median of no number", Field(Call("median", kX + kY + Num("1"))), "x=nan y=3", "missing"},
      {"second of a day", Field(Call("second-from-time", kM)), "m=-1", "59"},
      {"outlier inside",
       Field(Call("outlierHandle", kX + Txt("asExtremeValues") + Num("0") + Num("2") + Num("3") + Num("4"))),
       "x=3", "3"},
      {"outlier beyond",
       Field(Call("outlierHandle", kX + Txt("asExtremeValues") + Num("0") + Num("2") + Num("3") + Num("4"))),
       "x=4", "3"},
      {"outlier as missing",
       Field(Call("outlierHandle", kX + Txt("asMissingValues") + Num("0") + Num("2") + Num("3") + Num("4"))),
       "x=4", "missing"},
      {"standard normal", Field(Call("stdNormalCDF", kX)), "x=0", "0.5"},
      {"density by its printed constant", Field(Call("stdNormalPDF", kX)), "x=0", "0.39894228062936166"},
      {"quantile outside its range", Field(Call("stdNormalIDF", kX)), "x=1", "missing"},
  });
}

TEST(Evaluation, MissingOperandsDecideByFunction) {
  const std::string strict = Call("+", kX + kY, kRD), list = Call("sum", kX + kY, kDef);
  Check({
      {"replacement", Field(strict), "x=1", "7"},
      {"default without replacement", Field(Call("+", kX + kY, kDef)), "x=1", "8"},
      {"nothing", Field(Call("+", kX + kY)), "x=1", "missing"},
      {"one operand too", Field(Call("ln", kX, kR)), "", "7"},
      {"a missing replacement is none",
       Field(Call("+", kX + kY, "mapMissingTo='-1.7976931348623157e308' defaultValue='8'")), "x=1", "8"},
      {"list with replacement", Field(Call("sum", kX + kY, kRD)), "x=1", "7"},
      {"list of the others", Field(list), "x=1", "1"},
      {"list of none", Field(list), "", "8"},
      {"first of a membership", Field(Call("isIn", kX + kY + Num("3"), kR)), "y=3", "7"},
      {"members are skipped", Field(Call("isNotIn", kX + kY + Num("3"), kR)), "x=4", "1"},
      {"and is decided by a zero", Field(Call("and", kX + kY, kDef)), "y=0", "0"},
      {"and is not decided by a one", Field(Call("and", kX + kY, kDef)), "y=1", "8"},
      {"or is decided by a one", Field(Call("or", kX + kY, kDef)), "y=1", "1"},
      {"or is not decided by a zero", Field(Call("or", kX + kY)), "y=0", "missing"},
      {"replacement before decision", Field(Call("or", kX + kY, kR)), "y=1", "7"},
      {"condition", Field(Call("if", kX + kY + kZ, kRD)), "y=1 z=0", "7"},
      {"branch not taken", Field(Call("if", kX + kY + kZ, kRD)), "x=1 y=5", "5"},
      {"branch taken", Field(Call("if", kX + kY + kZ, kRD)), "x=1 z=50", "7"},
      {"no third branch", Field(Call("if", kX + kY, kRD)), "x=0 y=5", "8"},
      {"isMissing of a field", Field(Call("isMissing", kZ)), "z=-9", "1"},
      {"isMissing of a replaced field", Field(Call("isMissing", Ref("z", "mapMissingTo='5'"))), "z=-9", "0"},
      {"isMissing of a nested text", Field(Call("isMissing", Call("concat", kS + kT))), "s='a'", "1"},
      {"an empty text is there", Field(Call("isMissing", Call("concat", kS + kT))), "s='' t=''", "0"},
      {"isNotMissing of a nested number", Field(Call("isNotMissing", Call("ln", kX))), "x=-1", "0"},
      {"sysmis of a user-missing number", Field(Call("sysmis", kZ)), "z=-9", "0"},
      {"sysmis of an absent one", Field(Call("sysmis", kZ)), "", "1"},
      {"user-missing computes", Field(Call("+", kZ + Num("1"))), "z=-9", "-8"},
      {"field's own replacement first", Field(Call("+", Ref("z", "mapMissingTo='5'") + Num("1"), kR)), "z=-9",
       "6"},
      {"text of a number", Field(Call("if", Num("1") + kS + kX)), "s=' 12 '", "12"},
      {"text of no number", Field(Call("+", Call("if", Num("1") + kS + kX) + Num("1"), kR)), "s='12a'", "7"},
      {"text field from a number", Field(Call("if", Num("1") + kX + kY), "string"), "x=0.5", "'0.5'"},
      {"missing text", Field(Call("uppercase", kS), "string"), "", "''"},
  });
}

// A replacement is made as a value of the field's type; what another function is handed is of the kind that
// the node gives.
TEST(Evaluation, ANestedReplacementIsOfItsNodesKind) {
  const auto lowOrHigh = [](const std::string& difference) {
    return Field(Call("if", Call("lessThan", difference + Num("5")) + Txt("low") + Txt("high")), "string");
  };
  const std::string days = "dateDaysSince[1970]";
  Check({
      {"number in a text field", lowOrHigh(Call("-", kX + kY, "mapMissingTo='0'")), "y=1", "'low'"},
      {"default in a text field", lowOrHigh(Call("-", kX + kY, "defaultValue='0'")), "y=1", "'low'"},
      {"length in a text field", lowOrHigh(Call("length", kS, "mapMissingTo=' 7 '")), "", "'high'"},
      {"no number", lowOrHigh(Call("-", kX + kY, "mapMissingTo='none' defaultValue='0'")), "y=1", "'low'"},
      {"a missing operand is no condition", lowOrHigh(Call("-", kX + kY, "mapMissingTo='none'")), "y=1",
       "''"},
      {"text in a numeric field", Field(Call("length", Call("lowercase", kS, "mapMissingTo='500'"))), "",
       "3"},
      {"branch of the field's type",
       Field(Call("concat", Call("if", kX + kS + kT, "mapMissingTo='a'") + Txt("!")), "string"), "", "'a!'"},
      {"seconds in a date field",
       Field(Call("if", Call("equal", Call("-", kX + kY, "mapMissingTo='1'") + Num("86400")) + kD + kM),
             days),
       "d=3 m=0", "1970-1-4"},
      {"the root's stays", Field(Call("lg10", kX, "mapMissingTo='none'"), "string"), "", "'none'"},
      {"the root's default stays", Field(Call("lg10", kX, "defaultValue='none'"), "string"), "", "'none'"},
  });
}

// Patterns and texts that would hold a case up, or fill the memory, fail.
TEST(Evaluation, NoCaseTakesUnboundedTimeOrRoom) {
  const std::string letters(41, 'a');
  const std::string manyLetters(20000, 'a');
  std::string references;
  for (int i = 0; i < 1000; ++i) references += "$0";
  const auto wide = [](const std::string& name) {
    return "<DerivedField name='" + name +
           "' optype='categorical' dataType='string'><Extension name='stringLength' value='1000000000'/>" +
           kS + "</DerivedField>";
  };
  std::string doubling = Field(kS, "string", "d0");
  for (int i = 1; i <= 24; ++i) {
    const std::string half = Ref("d" + std::to_string(i - 1));
    doubling += Field(Call("concat", half + half), "string", "d" + std::to_string(i));
  }
  const auto lengthOf = [](const std::string& name) { return Field(Call("length", Ref(name), kDef)); };
  const std::string inOne = Field(Call("concat", Ref("p") + Ref("q") + Ref("r")), "string", "all");
  const std::string a = "s='" + letters + "'";
  const std::string many = "s='" + manyLetters + "'";
  Check({
      {"nested repetition", Field(Call("matches", kS + Txt("(.*)*b"))), a.c_str(), "0"},
      {"alternatives that are one", Field(Call("matches", kS + Txt("(a|a)*b"))), a.c_str(), "0"},
      {"replacement that fails", Field(Call("length", Call("replace", kS + Txt("(a+)+$|b") + Txt("-")))),
       (a.substr(0, a.size() - 1) + "!'").c_str(), "42"},
      {"a short search in a long text", Field(Call("matches", kS + Txt("a$"))), many.c_str(), "1"},
      {"many references", Field(Call("length", Call("replace", kS + Txt("a+") + Txt(references)), kDef)),
       many.c_str(), "8"},
      {"references that fit", Field(Call("length", Call("replace", kS + Txt("a+") + Txt("$0\\$$0")))),
       many.c_str(), "40001"},
      {"wide fields", wide("p") + wide("q") + wide("r") + inOne + lengthOf("all"), "s='x'", "8"},
      {"doubled up to the limit", doubling + lengthOf("d22"), "s='abcd'", "16777216"},
      {"doubled beyond it", doubling + lengthOf("d24"), "s='abcd'", "8"},
  });
}

TEST(Evaluation, InvalidOperandsAndDomainErrors) {
  const std::string asMissing = "invalidValueTreatment='asMissing' ", asIs = "invalidValueTreatment='asIs' ";
  Check({
      {"division by zero", Field(Call("/", kX + kY, kDef)), "x=1 y=0", "missing"},
      {"division by zero as missing", Field(Call("/", kX + kY, asMissing + kDef)), "x=1 y=0", "8"},
      {"infinity", Field(Call("*", kX + kX, kDef)), "x=1e200", "missing"},
      {"no number", Field(Call("pow", kX + kY, asMissing)), "x=-1 y=0.5", "missing"},
      {"a result that is missing", Field(Call("trunc", kX, kDef)), "x=3e9", "8"},
      {"invalid category", Field(Call("+", kZ + Num("1"), asMissing + kRD)), "z=51", "8"},
      {"invalid category without default", Field(Call("+", kZ + Num("1"), asMissing)), "z=51", "missing"},
      {"invalid computes as it is", Field(Call("+", kZ + Num("1"), asIs + kDef)), "z=51", "52"},
      {"missing before invalid", Field(Call("+", kZ + kX, asMissing + kRD)), "z=51", "7"},
      {"invalid branch that is not taken", Field(Call("if", kX + kZ + kY, asMissing + kDef)), "x=0 y=2 z=51",
       "2"},
      {"invalid text", Field(Call("uppercase", kC, asMissing + "defaultValue='no'"), "string"), "c='x'",
       "'no'"},
      {"isMissing answers for invalid ones", Field(Call("isMissing", kZ, asMissing + kDef)), "z=51", "0"},
  });
}

std::string Bins(const std::string& attributes, const std::string& bins) {
  return "<Discretize field='x' " + attributes + ">" + bins + "</Discretize>";
}
std::string Bin(const std::string& value, const std::string& closure, const std::string& margins) {
  return "<DiscretizeBin binValue='" + value + "'><Interval closure='" + closure + "' " + margins +
         "/></DiscretizeBin>";
}

TEST(Evaluation, KindsOfFields) {
  const std::string points =
      "<LinearNorm orig='0' norm='0'/><LinearNorm orig='10' norm='1'/><LinearNorm orig='20' norm='3'/>";
  const auto norm = [&](const std::string& attributes) {
    return Field("<NormContinuous field='x' " + attributes + ">" + points + "</NormContinuous>");
  };
  const std::string ab = Bin("a", "openClosed", "leftMargin='0' rightMargin='10'") +
                         Bin("b", "openOpen", "leftMargin='10' rightMargin='20'");
  const std::string extension = "<Extension name='recodeElseCopy'/>";
  const std::string map =
      "<FieldColumnPair field='x' column='k'/><FieldColumnPair field='s' column='l'/><InlineTable>"
      "<row><k>1</k><l>a</l><out>11</out></row><row><l>b</l><out>12</out><k>1</k></row>"
      "<row><k>1</k><l>b</l><out>99</out></row></InlineTable>";
  const auto mapped = [&](const std::string& attributes) {
    return Field("<MapValues outputColumn='out' " + attributes + ">" + map + "</MapValues>");
  };
  const std::string dated = "<row><k>q</k><l>b</l><out>1</out></row><row><k>p</k><l>a</l><out>2</out></row>";
  const auto byDate = [](const std::string& pair, const std::string& rows) {
    return Field("<MapValues outputColumn='out'><FieldColumnPair field='d' column='k'/>" + pair +
                 "<InlineTable>" + rows + "</InlineTable></MapValues>");
  };
  Check({
      {"constant", Field("<Constant>2.5</Constant>"), "", "2.5"},
      {"text constant", Field(Txt("abc"), "string"), "", "'abc'"},
      {"date constant", Field("<Constant dataType='dateDaysSince[1960]'>1</Constant>", "date"), "",
       "1960-1-2"},
      {"reference", Field(kX), "x=3", "3"},
      {"reference without value", Field(kX), "", "missing"},
      {"replaced reference", Field(Ref("z", "mapMissingTo='4'")), "z=-9", "4"},
      {"user-missing passes", Field(kZ), "z=-9", "-9"},
      {"date", Field(kD, "date"), "d=3", "1970-1-4"},
      {"shared point", norm(""), "x=10", "1"},
      {"inside", norm(""), "x=15", "2"},
      {"extrapolated", norm(""), "x=25", "4"},
      {"extreme above", norm("outliers='asExtremeValues'"), "x=25", "3"},
      {"extreme below", norm("outliers='asExtremeValues'"), "x=-5", "0"},
      {"outlier as replacement", norm("outliers='asMissingValues' mapMissingTo='99'"), "x=25", "99"},
      {"outlier as missing", norm("outliers='asMissingValues'"), "x=25", "missing"},
      {"missing replaced", norm("mapMissingTo='99'"), "", "99"},
      {"encoded", Field("<NormDiscrete field='c' value='b' mapMissingTo='5'/>"), "c='b'", "1"},
      {"other category", Field("<NormDiscrete field='c' value='b' mapMissingTo='5'/>"), "c='a'", "0"},
      {"missing category", Field("<NormDiscrete field='c' value='b' mapMissingTo='5'/>"), "c='?'", "5"},
      {"absent category", Field("<NormDiscrete field='c' value='b'/>"), "", "missing"},
      {"unlisted categories", Field("<NormDiscrete field='s' value='b'/>"), "s='b'", "1"},
      {"indicator of no category", Field("<NormDiscrete field='c' value=''/>"), "c='a'", "0"},
      {"infinite line", norm("").replace(norm("").find("norm='3'"), 8, "norm='1e308'"), "x=1e9", "missing"},
      {"first bin", Field(Bins("", ab), "string"), "x=10", "'a'"},
      {"open end", Field(Bins("defaultValue='other'", ab), "string"), "x=20", "'other'"},
      {"no bin", Field(Bins("", ab), "string"), "x=20", "''"},
      {"else copy", Field(Bins("", ab + extension), "string"), "x=20.5", "'20.5'"},
      {"no value", Field(Bins("mapMissingTo='none'", ab), "string"), "", "'none'"},
      {"row", mapped(""), "x=1 s='a'", "11"},
      {"columns in another order, first row wins", mapped(""), "x=1 s='b '", "12"},
      {"no row", mapped("defaultValue='0'"), "x=2 s='a'", "0"},
      {"missing key", mapped("defaultValue='0' mapMissingTo='-1'"), "x=1", "-1"},
      {"no number as key", mapped("defaultValue='0'"), "x=nan s='a'", "0"},
      {"a date passes", byDate("", "<row><k>q</k><out>1</out></row>"), "d=3", "1"},
      {"the rest of the key decides", byDate("<FieldColumnPair field='s' column='l'/>", dated), "d=3 s='b'",
       "1"},
      {"whichever row it is", byDate("<FieldColumnPair field='s' column='l'/>", dated), "d=3 s='a'", "2"},
      {"no row has it", byDate("<FieldColumnPair field='s' column='l'/>", dated), "d=3 s='c'", "missing"},
      {"a date whose seconds are no number", Field("<Lag field='d'/>"), "d=1e308", "missing"},
      {"width",
       "<DerivedField name='v' optype='categorical' dataType='string'><Extension name='width' value='3'/>" +
           kS + "</DerivedField>",
       "s='abcdef'", "'abc'"},
  });
}

TEST(Evaluation, DeclaredLengthsOfTexts) {
  DerivedFields fields(
      "<DerivedField name='w' optype='categorical' dataType='string'><Extension name='width' value='5'/>" +
      kS + "</DerivedField>" + Field(Call("concat", Ref("w") + Txt("|")), "string") +
      Field(Call("length", Ref("w")), "double", "n"));
  for (const char* text : {"abcdefgh", "ab", ""}) {
    const std::string padded = (std::string(text) + "     ").substr(0, 5);
    EXPECT_EQ(fields.ValueFor("s='" + std::string(text) + "'"), "'" + padded + "|'");
    EXPECT_EQ(fields.Value("n"), "5");
  }
}

const KxVeyra_940::TransformVar& Variable(const KxVeyra_940::ScoreDictionary& dictionary,
                                          const std::string& name) {
  return dynamic_cast<const KxVeyra_940::TransformVar&>(*dictionary.GetVar(name));
}

TEST(Evaluation, ALagMovesOncePerCaseWhoeverAsks) {
  DerivedFields fields(Field("<Lag field='x' n='2'/>", "double", "lag") +
                       Field("<Lag field='x'><BlockIndicator field='s'/></Lag>", "double", "inBlock") +
                       Field(Call("+", Ref("lag") + Call("*", Ref("lag") + Num("10"))), "double", "twice"));
  struct Case {
    const char* values;
    const char* lag;
    const char* inBlock;
    const char* twice;
  };
  for (const Case& row :
       {Case{"x=1 s='p'", "missing", "missing", "missing"}, Case{"x=2 s='p'", "missing", "1", "missing"},
        Case{"s='q'", "1", "missing", "11"}, Case{"x=4 s='q'", "2", "missing", "22"},
        Case{"x=5 s='q'", "missing", "4", "missing"}, Case{"x=6", "4", "missing", "44"}}) {
    EXPECT_EQ(fields.ValueFor(row.values, "lag"), row.lag) << row.values;
    EXPECT_EQ(fields.Value("inBlock"), row.inBlock) << row.values;
    EXPECT_EQ(fields.Value("twice"), row.twice) << row.values;
    // Asking again for the same case changes nothing.
    const KxVeyra_940::TransformVar& lag = Variable(fields.Transformations(), "lag");
    EXPECT_EQ(Shown(lag.GetTransformedValue(&fields.Record(), &fields.Data(), &fields.Transformations())),
              row.lag);
  }
}

TEST(Evaluation, ImputesTheMissingCategory) {
  const std::string arrays =
      "<Extension><Array type='real' n='3'>0 10 20</Array></Extension>"
      "<Extension><Array type='real' n='3'>1 1 100</Array></Extension>";
  const std::string field = Field(Call("imputeCatFieldMissingAgainstConTarget", Ref("g") + kX + arrays));
  Check({{"nearest", field, "x=9", "2"},
         {"nearest in deviations", field, "x=13", "3"},
         {"present", field, "x=9 g=1", "1"},
         {"no target", field, "", "missing"},
         {"no target, replaced",
          Field(Call("imputeCatFieldMissingAgainstConTarget", Ref("g") + kX + arrays, kRD)), "", "7"}});
}

// A chain that reads "x", its first field at the end.
void AddChain(TransformationDictionary& dictionary, int fields) {
  using namespace KxVeyra_940;
  for (int i = 0; i < fields; ++i) {
    const std::string name = "f" + std::to_string(i);
    auto* const variable = new TransformVar(name, ScoreDictVar::kNUMERIC_VAR);
    variable->AddFieldNameAndTransExpression(i + 1 == fields ? "x" : "f" + std::to_string(i + 1),
                                             TransformationDictionary::TE_FIELDREF);
    dictionary.AddVar(name, variable);
    dictionary.AddDerievedVarName(name);
  }
}

TEST(Evaluation, LongChainsAreComputedOnceInAnyOrder) {
  using namespace KxVeyra_940;
  TransformationDictionary dictionary;
  AddChain(dictionary, 60000);
  CaseRecord record(1);
  record.Add("x", new NumericValue(4));
  // A single field, asked for on its own, brings in what it reads, whether the dictionary is set up or not.
  const TransformVar& first = Variable(dictionary, "f0");
  EXPECT_EQ(Shown(first.GetTransformedValue(&record, nullptr, &dictionary)), "4");
  dictionary.SetUpDerivedCaseRecord();
  record.SetValue(0, 5.0);
  EXPECT_EQ(Shown(dictionary.GetValuesForDerivedVars(&record, nullptr)->Get("f0")), "5");
  record.SetValue(0, 6.0);
  EXPECT_EQ(Shown(first.GetTransformedValue(&record, nullptr, &dictionary)), "6");
  const std::unique_ptr<ScoreDictionary> copy(dictionary.Clone());
  EXPECT_EQ(Shown(Variable(*copy, "f0").GetTransformedValue(&record, nullptr, copy.get())), "6");
}

// Fields that read two fields each, these two more, and so on: each is computed once for an ask.
TEST(Evaluation, AnAskComputesAFieldOnce) {
  std::string derived = Field("<Lag field='x'/>", "double", "v0");
  for (int i = 1; i <= 60; ++i) {
    const std::string below = Ref("v" + std::to_string(i - 1));
    derived += Field(Call("-", Call("*", below + Num("2")) + below), "double", "v" + std::to_string(i));
  }
  DerivedFields fields(derived);
  const auto& top = Variable(fields.Transformations(), "v60");
  for (const auto& [values, expected] : {std::pair("x=1", "missing"), std::pair("x=2", "1")}) {
    fields.Fill(values);
    EXPECT_EQ(Shown(top.GetTransformedValue(&fields.Record(), &fields.Data(), &fields.Transformations())),
              expected);
  }
}

// A single field is computed from the record that it is given; an expression takes what is computed for the
// case.
TEST(Evaluation, ASingleAskReadsItsOwnRecord) {
  DerivedFields fields(Field(Call("*", kX + Num("10")), "double", "a") + Field(Ref("a"), "double", "b") +
                       Field(Call("+", Ref("a") + kX)));
  const auto ask = [&fields](const std::string& name) {
    return Shown(Variable(fields.Transformations(), name)
                     .GetTransformedValue(&fields.Record(), &fields.Data(), &fields.Transformations()));
  };
  const auto all = [&] { return ask("a") + " " + ask("b") + " " + ask("v"); };
  fields.Fill("x=1");
  EXPECT_EQ(all(), "10 10 11");
  fields.Fill("x=2");
  EXPECT_EQ(all(), "20 20 22");
  fields.Compute();
  EXPECT_EQ(fields.Value("v"), "22");
  fields.Fill("x=3");
  EXPECT_EQ(all(), "30 30 23");
  EXPECT_EQ(fields.Value("v"), "22") << "what is kept for the case stays";
  fields.Transformations().Reset();
  EXPECT_EQ(all(), "30 30 33");
}

// Who asks a lag, and what opens a case: "g" gets the values of all fields, "r" resets, "a" asks for the lag
// alone, "c" goes on with a copy.  The record counts the letters.
TEST(Evaluation, ALagMovesOncePerOpenedCase) {
  for (const auto& [script, expected] : {
           std::pair("gggg", "missing 1 2 3"),
           {"gaga", "missing missing 1 1"},
           {"raaraa", "missing missing 2 2"},
           {"rgrg", "missing 2"},
           {"aaa", "missing 1 2"},
           {"rara", "missing 2"},
           {"rarca", "missing 2"},
           {"raca", "missing missing"},
           {"raraca", "missing 2 2"},
       }) {
    for (const bool isSetUp : {true, false}) {
      if (!isSetUp && std::string(script).find('g') != std::string::npos) continue;
      DerivedFields fields(Field("<Lag field='x'/>", "double", "lag"));
      std::unique_ptr<TransformationDictionary> dictionary;
      if (isSetUp) {
        dictionary = std::make_unique<TransformationDictionary>(fields.Transformations());
      } else {
        dictionary = std::make_unique<TransformationDictionary>();
        dictionary->AddVar("lag", Variable(fields.Transformations(), "lag").Clone());
        dictionary->AddDerievedVarName("lag");
      }
      std::string answers;
      int letters = 0;
      for (const char letter : std::string(script)) {
        fields.Fill("x=" + std::to_string(++letters));
        const ScoreValue* value = nullptr;
        if (letter == 'r') dictionary->Reset();
        if (letter == 'c') dictionary = std::make_unique<TransformationDictionary>(*dictionary);
        if (letter == 'g')
          value = dictionary->GetValuesForDerivedVars(&fields.Record(), &fields.Data())->Get("lag");
        if (letter == 'a')
          value = Variable(*dictionary, "lag")
                      .GetTransformedValue(&fields.Record(), &fields.Data(), dictionary.get());
        if (value != nullptr) answers += (answers.empty() ? "" : " ") + Shown(value);
      }
      EXPECT_EQ(answers, expected) << script << (isSetUp ? "" : ", not set up");
    }
  }
}

TEST(Evaluation, AFieldThatReadsItselfHasNoValue) {
  using namespace KxVeyra_940;
  TransformationDictionary dictionary;
  for (const auto& [name, reads] : {std::pair("a", "b"), std::pair("b", "a"), std::pair("c", "c")}) {
    auto* const variable = new TransformVar(name, ScoreDictVar::kNUMERIC_VAR);
    variable->AddFieldNameAndTransExpression(reads, TransformationDictionary::TE_FIELDREF);
    dictionary.AddVar(name, variable);
    dictionary.AddDerievedVarName(name);
  }
  CaseRecord record(1);
  record.Add("x", new NumericValue(5));
  // Before the set-up, and with it.
  const auto* const a = static_cast<const TransformVar*>(std::as_const(dictionary).GetVar("a"));
  EXPECT_EQ(Shown(a->GetTransformedValue(&record, nullptr, &dictionary)), "missing");
  dictionary.SetUpDerivedCaseRecord();
  const ScoreCaseRecord* const values = dictionary.GetValuesForDerivedVars(&record, nullptr);
  for (const char* name : {"a", "b", "c"}) EXPECT_EQ(Shown(values->Get(name)), "missing") << name;
}

TEST(Evaluation, AnotherLayoutOfTheRecordIsNoticed) {
  DerivedFields fields(Field(Call("+", kX + kY)) + Field(kX, "double", "w"));
  EXPECT_EQ(fields.ValueFor("x=1 y=2"), "3");
  for (int shift = 0; shift < 3; ++shift) {
    CaseRecord other(4);
    for (int i = 0; i < shift; ++i) other.Add("other" + std::to_string(i), nullptr);
    other.Add("y", new KxVeyra_940::NumericValue(20));
    other.Add("x", new KxVeyra_940::NumericValue(10));
    const auto* const values = fields.Transformations().GetValuesForDerivedVars(&other, &fields.Data());
    EXPECT_EQ(Shown(values->Get("v")), "30");
    EXPECT_EQ(Shown(values->Get("w")), "10");
  }
}

TEST(Evaluation, ACaseAllocatesNothingOnceWarm) {
  std::string rows;
  for (int i = 0; i < 50; ++i)
    rows += "<row><k>" + std::to_string(i) + "</k><o>" + std::to_string(i * i) + "</o></row>";
  DerivedFields fields(
      Field(Call("+", Call("*", kX + kY) + Call("ln", kX)), "double", "a") +
      Field(Call("if", Call("and", Call("greaterThan", kX + kY) + Call("isMissing", kZ)) + kX + kY), "double",
            "b") +
      Field(Call("concat", Call("uppercase", kS) + Txt(", or what stands for it")), "string", "e") +
      Field(
          Bins("", Bin("a long name of the first bin", "closedOpen", "leftMargin='0' rightMargin='1'") +
                       Bin("a long name of the second bin", "closedOpen", "leftMargin='1' rightMargin='9'")),
          "string", "f") +
      Field("<MapValues outputColumn='o'><FieldColumnPair field='x' column='k'/><InlineTable>" + rows +
                "</InlineTable></MapValues>",
            "double", "h") +
      Field("<Lag field='s' n='2'/>", "string", "i") + Field(Call("median", kX + kY), "double", "j"));
  const auto run = [&fields](int i) {
    CaseRecord& record = fields.Record();
    record.SetValue(0, 1.0 + i % 7);
    record.SetValue(1, 2.0);
    record.SetText(3, i % 2 == 0 ? "one text that is long enough" : "another text, which is as long as that");
    fields.Compute();
  };
  for (int i = 0; i < 10; ++i) run(i);
  const AllocationCounter counter;
  for (int i = 0; i < 100; ++i) run(i);
  EXPECT_EQ(counter.Count(), 0);
}

TEST(Evaluation, CopiesOfADictionaryRunInThreads) {
  DerivedFields fields(Field(Call("*", kX + kX), "double", "a") + Field(Call("+", Ref("a") + Num("1"))));
  std::vector<std::thread> threads;
  std::vector<std::string> results(4);
  for (std::size_t i = 0; i < results.size(); ++i) {
    threads.emplace_back([&, i] {
      const std::unique_ptr<KxVeyra_940::ScoreDictionary> data(fields.Data().Clone());
      TransformationDictionary own(fields.Transformations());
      CaseRecord record(1);
      record.Add("x", nullptr);
      for (int n = 0; n < 1000; ++n) {
        record.SetValue(0, static_cast<double>(i));
        results[i] = Shown(own.GetValuesForDerivedVars(&record, data.get())->Get("v"));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(results, (std::vector<std::string>{"1", "2", "5", "10"}));
}

}  // namespace
