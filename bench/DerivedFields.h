// A document of a hundred derived fields, cases for it, and the same fields written by hand over plain
// arrays.
//
// The hand-written function fills its arrays too, finds bins by bisection and looks its maps up in hash
// tables. The cases are many and random, so that neither branches nor hashes are predictable.

#ifndef VEYRA_BENCH_DERIVEDFIELDS_H_
#define VEYRA_BENCH_DERIVEDFIELDS_H_

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

namespace VeyraBench {

inline constexpr int kOfEach = 20;  // arithmetic, comparisons, piecewise linear, bins, maps
inline constexpr std::size_t kNumbers = 20;
inline constexpr std::size_t kTexts = 5;
inline constexpr int kBins = 20;
inline constexpr int kRows = 1000;

struct Case {
  double numbers[kNumbers];
  std::string texts[kTexts];
};

inline std::string Key(int row) { return "key number " + std::to_string(row); }
inline double Output(int row) { return row * 0.5; }
inline double Cut(int bin) { return (bin - kBins / 2) * 2.0; }
inline std::string BinName(int bin) { return "bin " + std::to_string(bin); }
inline constexpr double kOrigs[] = {-20, -5, 0, 5, 20};
inline constexpr double kNorms[] = {0, 0.1, 0.5, 0.9, 1};

inline std::string Number(double x) {
  std::ostringstream out;
  out << x;
  return out.str();
}
inline std::string Ref(int i) { return "<FieldRef field='x" + std::to_string(i) + "'/>"; }
inline std::string Apply(const std::string& function, const std::string& content) {
  return "<Apply function='" + function + "'>" + content + "</Apply>";
}
inline std::string Constant(double x) { return "<Constant dataType='double'>" + Number(x) + "</Constant>"; }
inline std::string Field(const std::string& name, const std::string& type, const std::string& content) {
  return "<DerivedField name='" + name + "' optype='" + (type == "string" ? "categorical" : "continuous") +
         "' dataType='" + type + "'>" + content + "</DerivedField>";
}

inline std::string DocumentText() {
  std::string fields, derived, points, bins, rows;
  for (std::size_t i = 0; i < kNumbers; ++i)
    fields += "<DataField name='x" + std::to_string(i) + "' optype='continuous' dataType='double'/>";
  for (std::size_t i = 0; i < kTexts; ++i)
    fields += "<DataField name='s" + std::to_string(i) + "' optype='categorical' dataType='string'/>";
  for (std::size_t i = 0; i < std::size(kOrigs); ++i)
    points += "<LinearNorm orig='" + Number(kOrigs[i]) + "' norm='" + Number(kNorms[i]) + "'/>";
  for (int i = 0; i < kBins; ++i) {
    const std::string left = i == 0 ? "" : "leftMargin='" + Number(Cut(i)) + "' ";
    const std::string right = i + 1 == kBins ? "" : "rightMargin='" + Number(Cut(i + 1)) + "'";
    bins += "<DiscretizeBin binValue='" + BinName(i) + "'><Interval closure='closedOpen' " + left + right +
            "/></DiscretizeBin>";
  }
  for (int i = 0; i < kRows; ++i) rows += "<row><k>" + Key(i) + "</k><o>" + Number(Output(i)) + "</o></row>";
  for (int i = 0; i < kOfEach; ++i) {
    const int j = (i + 1) % kOfEach;
    const std::string n = std::to_string(i), x = "x" + n;
    derived += Field("a" + n, "double",
                     Apply("+", Apply("*", Ref(i) + Constant(1.5)) + Apply("/", Ref(j) + Constant(3))));
    derived += Field("c" + n, "double",
                     Apply("if", Apply("and", Apply("greaterThan", Ref(i) + Constant(0)) +
                                                  Apply("lessOrEqual", Ref(j) + Ref(i))) +
                                     Ref(i) + Ref(j)));
    derived +=
        Field("n" + n, "double",
              "<NormContinuous field='" + x + "' outliers='asExtremeValues'>" + points + "</NormContinuous>");
    derived += Field("b" + n, "string", "<Discretize field='" + x + "'>" + bins + "</Discretize>");
    derived += Field("m" + n, "double",
                     "<MapValues outputColumn='o' defaultValue='-1'><FieldColumnPair field='s" +
                         std::to_string(i % static_cast<int>(kTexts)) + "' column='k'/><InlineTable>" + rows +
                         "</InlineTable></MapValues>");
  }
  return "<PMML version='4.4'><DataDictionary numberOfFields='25'>" + fields +
         "</DataDictionary><TransformationDictionary>" + derived + "</TransformationDictionary></PMML>";
}

inline std::vector<Case> MakeCases(std::size_t count) {
  std::mt19937 random(1);
  std::normal_distribution<double> number(0, 10);
  std::uniform_int_distribution<int> row(0, kRows + 50);  // some keys are in no row
  std::vector<Case> cases(count);
  for (Case& one : cases) {
    for (double& x : one.numbers) x = number(random);
    for (std::string& text : one.texts) text = Key(row(random));
  }
  return cases;
}

class HandWritten {
 public:
  struct Values {
    double arithmetic[kOfEach], comparison[kOfEach], norm[kOfEach], mapped[kOfEach];
    const std::string* bin[kOfEach];
  };

  HandWritten() : fMaps(kOfEach) {
    for (int i = 0; i < kBins; ++i) fBins.push_back(BinName(i));
    for (int i = 1; i < kBins; ++i) fCuts.push_back(Cut(i));
    for (auto& map : fMaps)
      for (int i = 0; i < kRows; ++i) map.emplace(Key(i), Output(i));
  }

  const Values& Compute(const Case& one) {
    for (std::size_t i = 0; i < kNumbers; ++i) fNumbers[i] = one.numbers[i];
    for (std::size_t i = 0; i < kTexts; ++i) fTexts[i] = one.texts[i];
    for (std::size_t i = 0; i < kOfEach; ++i) {
      const double x = fNumbers[i], y = fNumbers[(i + 1) % kOfEach];
      fValues.arithmetic[i] = x * 1.5 + y / 3;
      fValues.comparison[i] = x > 0 && y <= x ? x : y;
      fValues.norm[i] = Norm(x);
      const auto bin = std::upper_bound(fCuts.begin(), fCuts.end(), x) - fCuts.begin();
      fValues.bin[i] = &fBins[static_cast<std::size_t>(bin)];
      const auto found = fMaps[i].find(fTexts[i % kTexts]);
      fValues.mapped[i] = found == fMaps[i].end() ? -1 : found->second;
    }
    return fValues;
  }

 private:
  static double Norm(double x) {
    if (x <= kOrigs[0]) return kNorms[0];
    for (std::size_t i = 1; i < std::size(kOrigs); ++i)
      if (x <= kOrigs[i])
        return kNorms[i - 1] +
               (x - kOrigs[i - 1]) * (kNorms[i] - kNorms[i - 1]) / (kOrigs[i] - kOrigs[i - 1]);
    return kNorms[std::size(kNorms) - 1];
  }

  double fNumbers[kNumbers]{};
  std::string fTexts[kTexts];
  Values fValues{};
  std::vector<std::string> fBins;
  std::vector<double> fCuts;
  std::vector<std::unordered_map<std::string, double>> fMaps;
};

}  // namespace VeyraBench

#endif  // VEYRA_BENCH_DERIVEDFIELDS_H_
