#include "nearestneighbor/CaseCoordinates.h"

#include <limits>

#include "data/NumericValue.h"
#include "error/Raise.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;

namespace {

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

double BinaryOf(const ScoreValue& value, const std::string& place) {
  const std::string text = value.GetString();
  if (text == "0" || text == StandardTags::XML_VAL_FALSE) return 0;
  if (text == "1" || text == Tags::XML_ATT_EXT_VALUE_VALUE_TRUE) return 1;
  Raise(MessageId::kInvalidValueOfType, {text, StandardTags::XML_VAL_BOOLEAN}, place);
}

bool IsText(const ScoreDictVar& var) { return var.GetVarType() == ScoreDictVar::STRING_VAR; }

}  // namespace

CaseCoordinates::CaseCoordinates(std::vector<ComparedField> fields, bool isBinary, Inputs& inputs)
    : fFields(std::move(fields)), fReadings(fFields.size()), fIsBinary(isBinary) {
  for (std::size_t i = 0; i < fFields.size(); ++i) {
    const int input = fFields[i].input;
    fReadings[i].isCategory =
        isBinary ? IsText(inputs.GetVar(input)) : ComparesCategories(fFields[i].function);
    fReadings[i].isCategory ? static_cast<void>(inputs.UseAsCategory(input)) : inputs.UseAsNumber(input);
  }
  Learn(inputs, std::string());
}

void CaseCoordinates::Learn(const Inputs& inputs, const std::string& place) {
  if (!fIsBinary) return;
  for (std::size_t i = 0; i < fFields.size(); ++i) {
    Reading& reading = fReadings[i];
    if (!reading.isCategory) continue;
    const CategoryTable& table = *inputs.GetCategories(fFields[i].input);
    for (int code = static_cast<int>(reading.numbers.size()); code < table.Size(); ++code)
      reading.numbers.push_back(BinaryOf(table.GetValue(code), place));
  }
}

void CaseCoordinates::GetPlace(const CaseValues& values, std::vector<double>& place) const {
  for (std::size_t i = 0; i < fFields.size(); ++i) place[i] = CoordinateOf(i, values);
}

// A category that no instance has is none of theirs; where categories stand for 0 and 1 it is a missing
// value.
double CaseCoordinates::CoordinateOf(std::size_t field, const CaseValues& values) const {
  const Reading& reading = fReadings[field];
  const auto input = static_cast<std::size_t>(fFields[field].input);
  if (!reading.isCategory) {
    const double number = values.numbers[input];
    if (NumericValue::IsSystemMissingValue(number)) return kMissing;
    return fIsBinary && number != 0 ? 1 : number;
  }
  const int code = values.codes[input];
  if (code == kMissingCategory) return kMissing;
  if (!fIsBinary) return code;
  return code == kNoCategory ? kMissing : reading.numbers[static_cast<std::size_t>(code)];
}

}  // namespace KxVeyra_940::Plugin
