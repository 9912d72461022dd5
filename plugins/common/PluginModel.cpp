#include "common/PluginModel.h"

#include "transform/TransformationDictionary.h"

namespace KxVeyra_940::Plugin {

using KxScore::KxStatus;

PluginModel::PluginModel(std::string kind) : fKind(std::move(kind)) {}

PluginModel::PluginModel(const PluginModel& other)
    : BaseModel(other),
      fKind(other.fKind),
      fInputs(other.fInputs),
      fTargetRules(other.fTargetRules),
      fOutputs(other.fOutputs),
      fUsesTransformations(other.fUsesTransformations),
      fTreated(other.fTreated) {
  if (GetDictionary() != nullptr) fInputs.Resolve(*GetDictionary(), GetTransformationDictionary());
  for (const auto& category : other.fCategories) fCategories.emplace_back(category->Clone());
  fInputs.Size(fValues);
}

PluginModel::~PluginModel() = default;

void PluginModel::SetCategories(std::vector<std::unique_ptr<ScoreValue>> categories) {
  fCategories = std::move(categories);
}

void PluginModel::SetOutputs(OutputFields outputs) {
  fOutputs = std::move(outputs);
  SetResultScoreDictionary(fOutputs.MakeDictionary().release());
}

void PluginModel::UseTransformations() {
  fUsesTransformations = true;
  fTreated = fInputs.MakeRecordForDerived();
  GetTransformationDictionary()->SetUpDerivedCaseRecord();
}

KxStatus PluginModel::PrepareForCases(const ScoreCaseRecord& layout) {
  fInputs.Size(fValues);
  fOutputs.Prepare(layout, GetTargetVar());
  return fInputs.Prepare(layout) ? KxStatus() : KxStatus(kInputWithoutSlot, false);
}

ScoreModel::VarRole PluginModel::GetVarRole(const ScoreDictVar* var) const {
  if (var == nullptr) return kNoRole;
  if (var->GetEncodedValueIndex() >= 0 && GetDictionary()->GetVar(var->GetName()) == var)
    return kPredictorRole;
  return BaseModel::GetVarRole(var->GetName());
}

ScoreModel::VarRole PluginModel::GetVarRole(const std::string& name) const {
  const ScoreDictVar* var = GetDictionary()->GetVar(name);
  return var == nullptr ? BaseModel::GetVarRole(name) : GetVarRole(var);
}

std::unique_ptr<PluginResult> PluginModel::NewBareResult() const {
  auto result = std::make_unique<PluginResult>(fCategories.empty() ? ScoreResult::kValueResult
                                                                   : ScoreResult::kCategoryResult);
  for (const auto& category : fCategories) result->AddCategory(*category);
  result->SetExtras(GetExtras());
  return result;
}

ScoreResult* PluginModel::NewResult() const {
  std::unique_ptr<PluginResult> result = NewBareResult();
  fOutputs.AddTo(*result);
  return result.release();
}

CaseOutcome PluginModel::OutcomeOf(const ScoreCaseRecord& input, PluginResult& answer) {
  const ScoreCaseRecord* derived = nullptr;
  if (fUsesTransformations) {
    if (!fInputs.ReadForDerived(input, fTreated)) return CaseOutcome::kUndefined;
    derived = GetTransformationDictionary()->GetValuesForDerivedVars(&fTreated, GetDictionary());
  }
  switch (fInputs.Read(input, derived, fValues)) {
    case Inputs::Outcome::kMissing:
      return CaseOutcome::kMissing;
    case Inputs::Outcome::kInvalid:
      return CaseOutcome::kUndefined;
    case Inputs::Outcome::kComplete:
      break;
  }
  return ScoreCase(fValues, answer);
}

KxStatus PluginModel::Score(const ScoreCaseRecord& input, ScoreResult& result) {
  auto& answer = static_cast<PluginResult&>(result);
  answer.Reset();
  KxStatus status;
  switch (OutcomeOf(input, answer)) {
    case CaseOutcome::kAnswered:
      if (fCategories.empty()) {
        answer.SetPredictedNumber(fTargetRules.Apply(answer.GetPredictedNumber()));
      }
      break;
    case CaseOutcome::kMissing:
      status = HandleMissingValue(&answer);
      break;
    case CaseOutcome::kUndefined:
      status = KxStatus(kNoAnswer, false);
      break;
  }
  fOutputs.Fill(input, answer);
  return status;
}

}  // namespace KxVeyra_940::Plugin
