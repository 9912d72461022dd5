// Regression documents of any size, made from random numbers with a fixed seed, with the coefficients in
// them.
//
// Fields come in groups: four continuous ones and a categorical one with 8 to 20 listed values.

#ifndef VEYRA_BENCH_REGRESSIONDOCUMENT_H_
#define VEYRA_BENCH_REGRESSIONDOCUMENT_H_

#include <charconv>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace VeyraBench {

constexpr int kNumbersPerGroup = 4;

struct Category {
  std::string text;
  double coefficient;
};

// The same equation as either kind of model.
enum class Kind { kRegression, kGeneralRegression };

class RegressionDocument {
 public:
  // `hasRules`: some numbers have an interval of valid values, and a missing value with a replacement.
  RegressionDocument(int groups, bool hasRules, Kind kind = Kind::kRegression)
      : fHasRules(hasRules), fKind(kind) {
    for (int i = 0; i < groups * kNumbersPerGroup; ++i) fCoefficients.push_back(Number());
    for (int i = 0; i < groups; ++i) fCategories.push_back(MakeCategories());
    Write();
  }

  const std::string& Text() const { return fText; }
  std::string ModelName() const {
    return fKind == Kind::kRegression ? "RegressionModel" : "GeneralRegressionModel";
  }
  double Intercept() const { return 0.25; }
  const std::vector<double>& Coefficients() const { return fCoefficients; }  // by number
  const std::vector<std::vector<Category>>& Categories() const { return fCategories; }

  static std::string NumberName(std::size_t number) { return "measure " + std::to_string(number); }
  static std::string CategoryName(std::size_t group) { return "class " + std::to_string(group); }

 private:
  double Number() { return std::uniform_real_distribution(-2.0, 2.0)(fRandom); }
  int Whole(int low, int high) { return std::uniform_int_distribution(low, high)(fRandom); }

  std::vector<Category> MakeCategories() {
    std::vector<Category> categories;
    for (int i = Whole(8, 20); i > 0; --i) {
      std::string text = "c" + std::to_string(i) + " ";
      for (int length = Whole(2, 16); length > 0; --length) text += static_cast<char>(Whole('a', 'z'));
      categories.push_back({std::move(text), Number()});
    }
    return categories;
  }

  void Add(std::string_view text) { fText += text; }
  void Add(double number) {
    char text[32];
    fText.append(text, std::to_chars(text, text + sizeof text, number).ptr);
  }
  template <class... Parts>
  void Line(const Parts&... parts) {
    (Add(parts), ...);
    fText += '\n';
  }

  static bool IsRuled(std::size_t number) { return number % kNumbersPerGroup == 0; }

  void Write() {
    Line("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    Line("<PMML version=\"4.4\" xmlns=\"http://www.dmg.org/PMML-4_4\">");
    Line("  <Header copyright=\"random numbers\"/>");
    Line("  <DataDictionary numberOfFields=\"", std::to_string(fCoefficients.size() + fCategories.size() + 1),
         "\">");
    for (std::size_t i = 0; i < fCoefficients.size(); ++i) WriteNumericField(i);
    for (std::size_t i = 0; i < fCategories.size(); ++i) WriteCategoricalField(i);
    Line("    <DataField name=\"answer\" optype=\"continuous\" dataType=\"double\"/>");
    Line("  </DataDictionary>");
    Line("  <", ModelName(), " modelName=\"random\" functionName=\"regression\" modelType=\"regression\">");
    WriteMiningSchema();
    fKind == Kind::kRegression ? WriteTable() : WriteParameters();
    Line("  </", ModelName(), ">");
    Line("</PMML>");
  }

  void WriteNumericField(std::size_t number) {
    const bool isRuled = fHasRules && IsRuled(number);
    Line("    <DataField name=\"", NumberName(number), "\" optype=\"continuous\" dataType=\"double\"",
         isRuled ? ">" : "/>");
    if (!isRuled) return;
    Line("      <Interval closure=\"closedClosed\" leftMargin=\"-1000\" rightMargin=\"1000\"/>");
    Line("      <Value value=\"-999\" property=\"missing\"/>");
    Line("    </DataField>");
  }

  void WriteCategoricalField(std::size_t group) {
    Line("    <DataField name=\"", CategoryName(group), "\" optype=\"categorical\" dataType=\"string\">");
    for (const Category& category : fCategories[group]) Line("      <Value value=\"", category.text, "\"/>");
    Line("    </DataField>");
  }

  void WriteMiningSchema() {
    Line("    <MiningSchema>");
    for (std::size_t i = 0; i < fCoefficients.size(); ++i) {
      Line("      <MiningField name=\"", NumberName(i),
           fHasRules && IsRuled(i) ? "\" missingValueReplacement=\"0.5\"/>" : "\" usageType=\"active\"/>");
    }
    for (std::size_t i = 0; i < fCategories.size(); ++i) {
      Line("      <MiningField name=\"", CategoryName(i), "\" usageType=\"active\"/>");
    }
    Line("      <MiningField name=\"answer\" usageType=\"target\"/>");
    Line("    </MiningSchema>");
  }

  void WriteTable() {
    Line("    <RegressionTable intercept=\"", Intercept(), "\">");
    for (std::size_t i = 0; i < fCoefficients.size(); ++i) {
      Line("      <NumericPredictor name=\"", NumberName(i), "\" coefficient=\"", fCoefficients[i], "\"/>");
    }
    for (std::size_t i = 0; i < fCategories.size(); ++i) {
      for (const Category& category : fCategories[i]) {
        Line("      <CategoricalPredictor name=\"", CategoryName(i), "\" value=\"", category.text,
             "\" coefficient=\"", category.coefficient, "\"/>");
      }
    }
    Line("    </RegressionTable>");
  }

  // Calls `write(parameter, field, value, coefficient)` for each term.
  template <class Write>
  void ForEachTerm(Write write) {
    std::size_t parameter = 1;
    for (std::size_t i = 0; i < fCoefficients.size(); ++i) {
      write("p" + std::to_string(parameter++), NumberName(i), std::string("1"), fCoefficients[i]);
    }
    for (std::size_t i = 0; i < fCategories.size(); ++i) {
      for (const Category& category : fCategories[i]) {
        write("p" + std::to_string(parameter++), CategoryName(i), category.text, category.coefficient);
      }
    }
  }

  void WriteParameters() {
    using Text = const std::string&;
    Line("    <ParameterList><Parameter name=\"p0\"/>");
    ForEachTerm([&](Text parameter, Text, Text, double) { Line("<Parameter name=\"", parameter, "\"/>"); });
    Line("    </ParameterList><FactorList>");
    for (std::size_t i = 0; i < fCategories.size(); ++i) Line("<Predictor name=\"", CategoryName(i), "\"/>");
    Line("    </FactorList><CovariateList>");
    for (std::size_t i = 0; i < fCoefficients.size(); ++i) Line("<Predictor name=\"", NumberName(i), "\"/>");
    Line("    </CovariateList><PPMatrix>");
    ForEachTerm([&](Text parameter, Text field, Text value, double) {
      Line("<PPCell parameterName=\"", parameter, "\" predictorName=\"", field, "\" value=\"", value, "\"/>");
    });
    Line("    </PPMatrix><ParamMatrix><PCell parameterName=\"p0\" beta=\"", Intercept(), "\"/>");
    ForEachTerm([&](Text parameter, Text, Text, double beta) {
      Line("<PCell parameterName=\"", parameter, "\" beta=\"", beta, "\"/>");
    });
    Line("    </ParamMatrix>");
  }

  bool fHasRules;
  Kind fKind;
  std::mt19937 fRandom{20};
  std::vector<double> fCoefficients;
  std::vector<std::vector<Category>> fCategories;
  std::string fText;
};

}  // namespace VeyraBench

#endif  // VEYRA_BENCH_REGRESSIONDOCUMENT_H_
