#include "common/CategoryTable.h"

#include <cmath>

#include "data/DateTimeValue.h"
#include "data/DictVar.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"

namespace KxVeyra_940::Plugin {

namespace {

double StoredNumber(const ScoreValue& value) { return static_cast<const NumericValue&>(value).GetNumber(); }

}  // namespace

CategoryTable::CategoryTable(const ScoreDictVar& field)
    : fNoSpaceTrim(field.GetNoSpaceTrim()), fEmptyStringOK(field.GetEmptyStringOK()) {
  if (const ScoreValueLabelSet* labels = field.GetValueLabels()) {
    for (const ScoreValueLabel* label : labels->GetAllValueLabels()) Add(*label->GetValue());
  }
  fListedCount = Size();
}

CategoryTable::~CategoryTable() = default;

// The text as it stands in the index: equal texts have one form.
std::string_view CategoryTable::Normalised(std::string_view text) const {
  if (fNoSpaceTrim) return text;
  const std::size_t last = text.find_last_not_of(' ');
  if (last != std::string_view::npos) return text.substr(0, last + 1);
  return fEmptyStringOK && !text.empty() ? kBlank : std::string_view();
}

int CategoryTable::Add(const ScoreValue& value) {
  const int known = Find(value);
  if (known != kNoCategory) return known;
  const int code = Size();
  const ScoreValue& added = *fValues.emplace_back(value.Clone());
  if (const StringValue* text = AsString(&added)) {
    fTexts.emplace(Normalised(text->GetText()), code);
  } else {
    fNumbers.emplace(StoredNumber(added), code);
  }
  return code;
}

int CategoryTable::Find(const ScoreValue& value) const {
  const StringValue* text = AsString(&value);
  return text != nullptr ? FindText(text->GetText()) : FindNumber(StoredNumber(value));
}

int CategoryTable::FindText(std::string_view text) const {
  const auto found = fTexts.find(Normalised(text));
  return found == fTexts.end() ? kNoCategory : found->second;
}

int CategoryTable::FindNumber(double number) const {
  if (std::isnan(number)) return kNoCategory;
  // The tolerance reaches the nearest neighbours at most.
  const auto above = fNumbers.lower_bound(number);
  if (above != fNumbers.end() && (above->first == number || NumericValue::IsEqual(above->first, number))) {
    return above->second;
  }
  if (above == fNumbers.begin()) return kNoCategory;
  const auto below = std::prev(above);
  return NumericValue::IsEqual(below->first, number) ? below->second : kNoCategory;
}

std::unique_ptr<CategoryTable> MakeTargetTable(const ScoreDictVar* target) {
  if (target != nullptr) return std::make_unique<CategoryTable>(*target);
  return std::make_unique<CategoryTable>(DictVar(std::string(), ScoreDictVar::STRING_VAR));
}

}  // namespace KxVeyra_940::Plugin
