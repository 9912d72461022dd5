// The derived fields of a model, in the order in which they are evaluated, and the built-in functions that
// their expressions call.
//
//   dictionary->SetUpDerivedCaseRecord();                                  // once, when all fields are added
//   for each case:
//     const ScoreCaseRecord* derived = dictionary->GetValuesForDerivedVars(&record, dataDictionary);
//
// GetValuesForDerivedVars and Reset open a case.  Fields may refer to each other in any order; one that
// depends on itself finds no value there.  A single field that is asked for its value (TransformVar::
// GetTransformedValue) computes it from the record that it is given; expressions take the fields that are
// computed for the case as they are.  The history of a lag moves once per case, whoever asks and how often;
// in a dictionary that has opened no case it moves at every ask. Threads: a dictionary holds the values of
// one case and serves one thread; copies share nothing.  The built-in functions are free of state. Nothing
// throws: what cannot be computed is the system-missing number or a text without value.

#ifndef VEYRA_TRANSFORM_TRANSFORMATIONDICTIONARY_H_
#define VEYRA_TRANSFORM_TRANSFORMATIONDICTIONARY_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "data/BaseDictionary.h"
#include "data/StringValue.h"
#include "veyra/Export.h"
#include "veyra/ScoreCaseRecord.h"
#include "veyra/ScoreValueLabel.h"
#include "veyra/TransformFunction.h"

namespace KxVeyra_940 {

class DerivedValues;
class TransformVar;

class VEYRA_API TransformationDictionary : public BaseDictionary {
 public:
  using TransformFunction = KxVeyra_940::TransformFunction;
  using enum KxVeyra_940::TransformFunction;

  enum TransExpression : int {
    TE_CONSTANT = 0,
    TE_FIELDREF = 1,
    TE_NORMCONTINUOUS = 2,
    TE_NORMDISCRETE = 3,
    TE_DISCRETIZE = 4,
    TE_MAPVALUES = 5,
    TE_APPLY = 6,
    TE_LAG = 7,
    TE_NONE = 8,
  };

  TransformationDictionary();
  // Copies clone every variable, both records and the flags.
  TransformationDictionary(const TransformationDictionary& other);
  TransformationDictionary& operator=(const TransformationDictionary& other);
  ~TransformationDictionary() override;

  ScoreDictionary* Clone() const override;

  // Appends a name to the derived fields; the variable itself is added with AddVar.
  void AddDerievedVarName(const std::string& name) { fDerivedVarNames.push_back(name); }
  const std::vector<std::string>& GetDerivedVarNames() const { return fDerivedVarNames; }

  // Leaves of the derived fields those of these names and what they depend on; the variables stay.  Before
  // the set-up only.
  void KeepOnly(const std::vector<std::string>& names);

  // Makes the record of derived values, once: later calls change nothing.  Fields must be added before.
  void SetUpDerivedCaseRecord();
  bool IsSetUp() const { return fValues != nullptr; }
  // Computes every derived field and lends their record, which is valid until the next call or Reset.
  // Without an input record nothing is computed; null before the set-up.  Other names and other slots in a
  // later record are noticed.
  ScoreCaseRecord* GetValuesForDerivedVars(const ScoreCaseRecord* input,
                                           const ScoreDictionary* dataDictionary);
  // Store a computed value under the field's name and, when that succeeded, mark `var` (which may be null) as
  // computed for this case.  The first one takes the value, unless nothing is set up yet.
  void AddVarCaseValue(const ScoreDictVar* var, const std::string& name, ScoreValue* value);
  void AddVarCaseValue(const ScoreDictVar* var, const std::string& name, double value);
  void AddVarCaseValue(const ScoreDictVar* var, const std::string& name, double value,
                       ScoreDictVar::DateTimeType type);
  void AddVarCaseValue(const ScoreDictVar* var, const std::string& name, const std::string& text);
  // The value of a derived field in this case, lent; null for an unknown one.
  const ScoreValue* GetVarValue(const std::string& name) const;
  bool IsVarValueComputed(const ScoreDictVar* var) const;
  // Opens a case: nothing counts as computed.  Whoever asks single variables for their values calls it before
  // each case.
  void Reset();
  // The number of the case that is open; 0 before the first one.
  std::uint64_t GetCase() const { return fCase; }
  // Whether the value of the variable is kept here and computed for the case; it becomes `value`, lent, null
  // for a text without value.
  bool FindStored(const TransformVar& var, const ScoreValue*& value) const;

  // --- Built-in functions: the system-missing number for a wrong count, a missing operand and an operand
  // outside the domain, where nothing else is said.

  static double Plus(double left, double right);
  static double Plus(const std::vector<double>& values);       // exactly two
  static double Minus(const std::vector<double>& values);      // exactly two
  static double Multiply(const std::vector<double>& values);   // exactly two
  static double Divided(const std::vector<double>& values);    // exactly two
  static double Sum(const std::vector<double>& values);        // missing values are skipped
  static double Max(const std::vector<double>& values);        // missing values are skipped
  static double Min(const std::vector<double>& values);        // missing values are skipped
  static double Mean(const std::vector<double>& values);       // missing values are skipped
  static double Sd(const std::vector<double>& values);         // of the sample; missing values are skipped
  static double Variance(const std::vector<double>& values);   // of the sample; missing values are skipped
  static double CdfNormal(const std::vector<double>& values);  // x, mean, standard deviation
  static double IdfNormal(const std::vector<double>& values);  // p, mean, standard deviation
  static double PdfNormal(const std::vector<double>& values);  // x, mean, standard deviation
  static double AndOperator(const std::vector<double>& values);
  static double OrOperator(const std::vector<double>& values);
  static double NotOperator(const std::vector<double>& values);
  static double MedianOperator(const std::vector<double>& values);   // missing values are skipped
  static double ProductOperator(const std::vector<double>& values);  // missing values are skipped
  static double stdNormalCDF(const std::vector<double>& values);
  static double stdNormalIDF(const std::vector<double>& values);
  static double stdNormalPDF(const std::vector<double>& values);
  static double Erf(const std::vector<double>& values);
  // Exactly two values, else 0.  A missing value is compared as the number that it is.
  static double lessThan(const std::vector<double>& values);
  static double lessOrEqual(const std::vector<double>& values);
  static double greaterThan(const std::vector<double>& values);
  static double greaterOrEqual(const std::vector<double>& values);
  // A text and a regular expression: 1 when it is found anywhere in the text, else 0.
  static double Matches(const std::vector<std::string>& texts);

  // 1 for n = 0 and any x below 1e-14.
  static double Pow(double x, int n);
  static double Abs(double x);
  static double Sqrt(double x);
  static double Ln(double x);
  static double Log10(double x);
  static double Trunc(double x);  // within the range of 32 bits, ends excluded
  static double Exp(double x);    // 0 up to -708, missing above 709
  static double Mod(double a, double b);
  static double Rnd(double x);  // halves away from zero
  static double Floor(double x);
  static double Ceil(double x);
  static double CdfNorm(double x);
  static double Threshold(double x, double threshold);

  // Delete every value that they are given and leave the vector empty.
  static double equal(std::vector<ScoreValue*>& values);
  static double notEqual(std::vector<ScoreValue*>& values);
  static double isIn(std::vector<ScoreValue*>& values, ScoreValue* value);
  static double isNotIn(std::vector<ScoreValue*>& values, ScoreValue* value);

  // `length` becomes the declared length of the result.
  static std::string Ltrim(const StringValue* value, int& length);
  static std::string Rtrim(const StringValue* value, int& length);
  static std::string ToLowerCase(const StringValue* value, int& length);
  static std::string ToUpperCase(const StringValue* value, int& length);
  static std::string Substring(const StringValue* value, int start, int& length);  // to the end
  static std::string Substring(const StringValue* value, int start, int count, int& length);
  static std::string Substring_unicode(const StringValue* value, int start, int count, int& length);
  // Text, regular expression, replacement; the text itself for an expression that does not compile.
  static std::string Replace(const std::vector<std::string>& texts, int& length);
  // Each text is cut or filled with blanks to its length; a text without one has its own.
  static std::string Concat(const std::vector<std::string>& texts, const std::vector<int>& lengths,
                            int& length);

  // The valid band reaches a * b / sqrt(c) to both sides of the centre; method 2 answers its nearer end for a
  // value outside, every other one the system-missing number.
  static double OutlierHandle(double x, int method, double centre, double a, double b, double c);
  // The value, lent, of the category whose mean lies nearest to the target in standard deviations; null
  // without categories.
  static ScoreValue* ImputeCatFieldMissingAgainstConTargetHandle(
      double target, const std::vector<ScoreValueLabel*>& categories, const std::vector<double>& means,
      const std::vector<double>& variances);

 private:
  void OpenCase();

  std::vector<std::string> fDerivedVarNames;  // in evaluation order
  std::unique_ptr<DerivedValues> fValues;     // null until the set-up
  std::uint64_t fCase = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_TRANSFORMATIONDICTIONARY_H_
