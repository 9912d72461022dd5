// What becomes of missing, invalid and extreme values: every combination of the mining schema's treatments,
// against the order that the documentation gives.

#include <cmath>
#include <limits>
#include <optional>

#include "plugins/Scoring.h"

namespace {

using namespace VeyraTest;

struct Treatments {
  std::string invalid;             // invalidValueTreatment
  std::optional<double> ownValue;  // of asValue
  std::string outliers;            // beyond 3 and 9
  std::string missing;             // missingValueTreatment
  std::optional<double> replacement;

  std::string Text() const {
    const auto number = [](const char* name, const std::optional<double>& value) {
      return value.has_value() ? std::string(" ") + name + "='" + NumericValue(*value).GetString() + "'" : "";
    };
    return "invalidValueTreatment='" + invalid + "'" + number("invalidValueReplacement", ownValue) +
           " outliers='" + outliers + "' lowValue='3' highValue='9' missingValueTreatment='" + missing + "'" +
           number("missingValueReplacement", replacement);
  }
};

std::vector<Treatments> AllTreatments() {
  std::vector<Treatments> all;
  for (const char* invalid : {"returnInvalid", "asIs", "asMissing", "asValue", "asValue of 500"}) {
    for (const char* outliers : {"asIs", "asMissingValues", "asExtremeValues"}) {
      for (const char* missing : {"asIs", "returnInvalid"}) {
        for (const std::optional<double> replacement : {std::optional<double>(), std::optional(77.0)}) {
          const std::string name = invalid;
          const bool isOwn = name.starts_with("asValue");
          const std::optional<double> own =
              isOwn ? std::optional(name == "asValue" ? 4.0 : 500.0) : std::nullopt;
          all.push_back({isOwn ? "asValue" : name, own, outliers, missing, replacement});
        }
      }
    }
  }
  return all;
}

// A field with the interval [0, 10], -1 for missing and 5 for invalid values.  Its value is the answer, read
// as a number or through a derived field; the fallback answers 42.
std::string Document(const Treatments& treatments, const char* predictor) {
  return "<PMML version='4.4'><DataDictionary numberOfFields='2'>"
         "<DataField name='z' optype='continuous' dataType='double'>"
         "<Interval closure='closedClosed' leftMargin='0' rightMargin='10'/>"
         "<Value value='-1' property='missing'/><Value value='5' property='invalid'/></DataField>"
         "<DataField name='y' optype='continuous' dataType='double'/></DataDictionary>"
         "<RegressionModel functionName='regression'><MiningSchema><MiningField name='z' " +
         treatments.Text() +
         "/><MiningField name='y' usageType='target'/></MiningSchema>"
         "<Targets><Target field='y' optype='continuous'><TargetValue defaultValue='42'/></Target></Targets>"
         "<LocalTransformations><DerivedField name='d' optype='continuous' dataType='double'>"
         "<Apply function='+'><FieldRef field='z'/><Constant>0</Constant></Apply></DerivedField>"
         "</LocalTransformations><RegressionTable intercept='0'><NumericPredictor name='" +
         predictor + "' coefficient='1'/></RegressionTable></RegressionModel></PMML>";
}

// Slow and plain: one step after the other.
std::string Expected(const Treatments& treatments, const std::string& cell, bool isDerived) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  const bool isText = cell == "abc";
  const double given = cell.empty() || isText ? kNone : std::stod(cell);
  const bool isMissing = cell.empty() || cell == "-1";
  const bool isInvalid = !isMissing && (isText || cell == "5" || given < 0 || given > 10);
  double value = isMissing ? kNone : given;
  if (isInvalid) {
    if (treatments.invalid == "returnInvalid") return "missing";
    if (treatments.invalid == "asMissing") value = kNone;
    if (treatments.invalid == "asValue") value = treatments.ownValue.value_or(kNone);
  }
  if (value < 3 || value > 9) {
    const double bound = value < 3 ? 3 : 9;
    if (treatments.outliers == "asExtremeValues") value = bound;
    if (treatments.outliers == "asMissingValues") value = kNone;
  }
  if (std::isnan(value)) {
    if (treatments.missing == "returnInvalid") return "missing";
    value = treatments.replacement.value_or(kNone);
  }
  // Derived fields see what the dictionary calls missing.
  if (std::isnan(value) && cell == "-1" && isDerived) return cell;
  return NumericValue(std::isnan(value) ? 42 : value).GetString();
}

// A value of 11 was scored as it stood, in spite of its own treatment, when it was also beyond the bounds.
TEST(Treatments, AllCombinations) {
  for (const Treatments& treatments : AllTreatments()) {
    for (const char* predictor : {"z", "d"}) {
      const std::unique_ptr<ScoreModel> model = MakeModel(Document(treatments, predictor), "RegressionModel");
      for (const char* cell : {"6", "2", "9.5", "11", "-3", "5", "-1", "", "abc"}) {
        SCOPED_TRACE(treatments.Text() + ", " + predictor + "=" + cell);
        EXPECT_EQ(Answer(*Scored(*model, std::string("z=") + cell)),
                  Expected(treatments, cell, predictor == std::string("d")));
      }
    }
  }
}

// Whether there was the fallback's answer or none depended on the order of the predictors.
TEST(Treatments, AnInvalidValueEndsTheCaseWhereverItStands) {
  const std::string a = "<NumericPredictor name='a' coefficient='1'/>";
  const std::string b = "<NumericPredictor name='b' coefficient='1'/>";
  for (const std::string& predictors : {a + b, b + a}) {
    const std::string document =
        "<PMML version='4.4'><DataDictionary numberOfFields='3'>"
        "<DataField name='a' optype='continuous' dataType='double'><Interval closure='closedOpen' "
        "leftMargin='1'/></DataField><DataField name='b' optype='continuous' dataType='double'/>"
        "<DataField name='y' optype='continuous' dataType='double'/></DataDictionary>"
        "<RegressionModel functionName='regression'><MiningSchema><MiningField name='a'/>"
        "<MiningField name='b'/><MiningField name='y' usageType='target'/></MiningSchema><Targets>"
        "<Target field='y' optype='continuous'><TargetValue defaultValue='5'/></Target></Targets>"
        "<RegressionTable intercept='0'>" +
        predictors + "</RegressionTable></RegressionModel></PMML>";
    const std::unique_ptr<ScoreModel> model = MakeModel(document, "RegressionModel");
    for (const auto& [data, want] : {std::pair("a=0, b=", "missing"), std::pair("a=1, b=", "5"),
                                     std::pair("a=, b=", "5"), std::pair("a=1, b=1", "2")})
      EXPECT_EQ(Answer(*Scored(*model, data)), want) << predictors << data;
  }
}

}  // namespace
