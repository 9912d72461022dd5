// Documents of n items of one kind, the rest as small as it can be.

#ifndef VEYRA_BENCH_GROWTHDOCUMENTS_H_
#define VEYRA_BENCH_GROWTHDOCUMENTS_H_

#include <string>

namespace VeyraBench {

// `write(i)` for each i below n, joined.
template <class Write>
std::string Repeat(int n, Write write) {
  std::string text;
  for (int i = 0; i < n; ++i) text += write(std::to_string(i));
  return text;
}

inline std::string NumberField(const std::string& name) {
  return "<DataField name='" + name + "' optype='continuous' dataType='double'/>";
}

inline std::string TextField(const std::string& name, const std::string& values = "") {
  return "<DataField name='" + name + "' optype='categorical' dataType='string'>" + values + "</DataField>";
}

inline std::string CategoryValues(int n) {
  return Repeat(n, [](const std::string& i) { return "<Value value='category " + i + "'/>"; });
}

inline std::string Document(int count, const std::string& fields, const std::string& rest) {
  return "<PMML version='4.4' xmlns='http://www.dmg.org/PMML-4_4'><Header/><DataDictionary numberOfFields='" +
         std::to_string(count) + "'>" + fields + "</DataDictionary>" + rest + "</PMML>";
}

inline std::string RegressionDocumentOf(int count, const std::string& fields, const std::string& miningFields,
                                        const std::string& predictors) {
  return Document(count + 1, fields + NumberField("answer"),
                  "<RegressionModel functionName='regression'><MiningSchema>" + miningFields +
                      "<MiningField name='answer' usageType='target'/></MiningSchema><RegressionTable "
                      "intercept='1'>" +
                      predictors + "</RegressionTable></RegressionModel>");
}

inline std::string DocumentOfFields(int n) {
  const auto predictor = [](const std::string& i) {
    return "<NumericPredictor name='x" + i + "' coefficient='0.5'/>";
  };
  return RegressionDocumentOf(
      n, Repeat(n, [](const std::string& i) { return NumberField("x" + i); }),
      Repeat(n, [](const std::string& i) { return "<MiningField name='x" + i + "'/>"; }),
      Repeat(n, predictor));
}

inline std::string DocumentOfCategories(int n) {
  const auto predictor = [](const std::string& i) {
    return "<CategoricalPredictor name='c' value='category " + i + "' coefficient='0.5'/>";
  };
  return RegressionDocumentOf(1, TextField("c", CategoryValues(n)), "<MiningField name='c'/>",
                              Repeat(n, predictor));
}

inline std::string DocumentOfMissingValues(int n) {
  const std::string values =
      Repeat(n, [](const std::string& i) { return "<Value value='-" + i + "9' property='missing'/>"; });
  return RegressionDocumentOf(
      1, "<DataField name='x' optype='continuous' dataType='double'>" + values + "</DataField>",
      "<MiningField name='x'/>", "<NumericPredictor name='x' coefficient='0.5'/>");
}

inline std::string DerivedField(const std::string& name, const std::string& dataType,
                                const std::string& expression) {
  return "<DerivedField name='" + name + "' optype='" +
         (dataType == "double" ? "continuous" : "categorical") + "' dataType='" + dataType + "'>" +
         expression + "</DerivedField>";
}

inline std::string DerivingDocument(const std::string& derivedFields) {
  return Document(2, NumberField("x") + TextField("t"),
                  "<TransformationDictionary>" + derivedFields + "</TransformationDictionary>");
}

// Each reads the one before.
inline std::string DocumentOfDerivedFields(int n) {
  std::string read = "x";
  return DerivingDocument(Repeat(n, [&read](const std::string& i) {
    const std::string expression = "<Apply function='+'><FieldRef field='" + read +
                                   "'/><Constant dataType='double'>1</Constant></Apply>";
    read = "d" + i;
    return DerivedField(read, "double", expression);
  }));
}

inline std::string DocumentOfBins(int n) {
  const auto bin = [](const std::string& i) {
    return "<DiscretizeBin binValue='bin " + i + "'><Interval closure='closedOpen' leftMargin='" + i +
           "' rightMargin='" + i + ".999'/></DiscretizeBin>";
  };
  return DerivingDocument(
      DerivedField("d", "string", "<Discretize field='x'>" + Repeat(n, bin) + "</Discretize>"));
}

inline std::string DocumentOfRows(int n) {
  const auto row = [](const std::string& i) { return "<row><k>key " + i + "</k><o>" + i + "</o></row>"; };
  return DerivingDocument(DerivedField(
      "d", "double",
      "<MapValues outputColumn='o' dataType='double'><FieldColumnPair field='t' column='k'/><InlineTable>" +
          Repeat(n, row) + "</InlineTable></MapValues>"));
}

inline std::string TreeDocumentOf(const std::string& nodes, int categories) {
  return Document(
      3, NumberField("x") + TextField("c", CategoryValues(categories)) + NumberField("answer"),
      "<TreeModel functionName='regression' splitCharacteristic='multiSplit'><MiningSchema>"
      "<MiningField name='x'/><MiningField name='c'/><MiningField name='answer' usageType='target'/>"
      "</MiningSchema><Node score='1'><True/>" +
          nodes + "</Node></TreeModel>");
}

inline std::string GreaterThan(const std::string& number) {
  return "<SimplePredicate field='x' operator='greaterThan' value='" + number + "'/>";
}

// One node beside the other.
inline std::string DocumentOfSiblings(int n) {
  return TreeDocumentOf(
      Repeat(n, [](const std::string& i) { return "<Node score='" + i + "'>" + GreaterThan(i) + "</Node>"; }),
      2);
}

// In one compound.
inline std::string DocumentOfPredicates(int n) {
  return TreeDocumentOf("<Node score='2'><CompoundPredicate booleanOperator='or'>" + Repeat(n, GreaterThan) +
                            "</CompoundPredicate></Node>",
                        2);
}

// A set predicate for each category of a field.
inline std::string DocumentOfSets(int n) {
  return TreeDocumentOf(Repeat(n,
                               [](const std::string& i) {
                                 return "<Node score='" + i +
                                        "'><SimpleSetPredicate field='c' booleanOperator='isIn'><Array n='1' "
                                        "type='string'>\"category " +
                                        i + "\"</Array></SimpleSetPredicate></Node>";
                               }),
                        n);
}

// One set predicate of all categories of a field.
inline std::string DocumentOfMembers(int n) {
  return TreeDocumentOf("<Node score='2'><SimpleSetPredicate field='c' booleanOperator='isIn'><Array n='" +
                            std::to_string(n) + "' type='string'>" +
                            Repeat(n, [](const std::string& i) { return "\"category " + i + "\" "; }) +
                            "</Array></SimpleSetPredicate></Node>",
                        n);
}

}  // namespace VeyraBench

#endif  // VEYRA_BENCH_GROWTHDOCUMENTS_H_
