#include "transform/MapValues.h"

#include "transform/TransformVar.h"

namespace KxVeyra_940 {

MapValues::~MapValues() = default;

void MapValues::AddFieldColumnPair(const std::string& field, const std::string& column) {
  fFieldOfColumn[column] = field;
}

void MapValues::AddRefVar(const ScoreDictVar* variable) {
  fRefVars.push_back(variable);
  fSources.emplace_back(variable->GetName(), FieldSource::kComputed);
}

void MapValues::AppendReads(std::vector<std::string>& names) const {
  for (const FieldSource& source : fSources) names.push_back(source.GetName());
  if (fTable) fTable->AppendReads(names);
}

const ScoreValue* MapValues::getValue(const ScoreCaseRecord* input, const ScoreDictionary* dataDictionary,
                                      const ScoreDictionary* transformations) {
  return getValue(CaseContext(input, dataDictionary, transformations));
}

const ScoreValue* MapValues::getValue(const CaseContext& context) {
  if (!fTable) return ValueOfOnlyField(context);
  const ScoreValue* const output = fTable->getValue(context);
  switch (fTable->GetInfoCode()) {
    case InlineTable::kFound:
      return output;
    case InlineTable::kNoRow:
      return UnmatchedValue(context);
    case InlineTable::kInputMissing:
      return fMissingValue.Get();
    default:
      return nullptr;
  }
}

const ScoreValue* MapValues::UnmatchedValue(const CaseContext& context) const {
  const auto* const derived = dynamic_cast<const TransformVar*>(fDerivedVar);
  if (derived == nullptr || !derived->IsRecodeElseCopy()) return fDefaultValue.Get();
  if (fFieldOfColumn.empty() || context.GetInput() == nullptr) return nullptr;
  return context.GetInput()->Get(fFieldOfColumn.begin()->second);
}

const ScoreValue* MapValues::ValueOfOnlyField(const CaseContext& context) {
  if (fRefVars.empty()) return fMissingValue ? fMissingValue.Get() : fDefaultValue.Get();
  if (fRefVars.size() > 1) return nullptr;
  FieldSource& source = fSources[0];
  source.Bind(context, fRefVars[0]);
  const ScoreDictVar& variable = *source.GetVariable();
  const int slot = variable.IsDerivedVariable() ? -1 : variable.GetValueIndex();
  const ScoreValue* const value = slot < 0 ? source.ValueIn(context) : context.InputAt(slot);
  return variable.IsMissingValue(value) ? fMissingValue.Get() : value;
}

}  // namespace KxVeyra_940
