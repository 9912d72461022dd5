#include "common/PluginModel.h"

#include "transform/TransformationDictionary.h"

namespace KxVeyra_940::Plugin {

using KxScore::KxStatus;

PluginModel::PluginModel(std::string kind) : fKind(std::move(kind)), fTargets(1) {}

PluginModel::PluginModel(const PluginModel& other)
    : BaseModel(other),
      fKind(other.fKind),
      fInputs(other.fInputs),
      fOutputs(other.fOutputs),
      fUsesTransformations(other.fUsesTransformations),
      fTreated(other.fTreated) {
  if (GetDictionary() != nullptr) fInputs.Resolve(*GetDictionary(), GetTransformationDictionary());
  for (const Target& target : other.fTargets) {
    Target& copy = fTargets.emplace_back(Target{target.name, {}, target.rules});
    for (const auto& category : target.categories) copy.categories.emplace_back(category->Clone());
  }
  fInputs.Size(fValues);
}

PluginModel::~PluginModel() = default;

void PluginModel::SetCategories(std::vector<std::unique_ptr<ScoreValue>> categories, int target) {
  TargetAt(target).categories = std::move(categories);
}

// The name that gets the role last is the model's target.
void PluginModel::AddFurtherTarget(const std::string& name) {
  const std::string first = GetTargetVar()->GetName();
  SetVarRole(name, kTargetRole);
  SetVarRole(first, kTargetRole);
  fTargets.push_back({name, {}, {}});
}

std::vector<const ScoreDictVar*> PluginModel::GetTargetVars() const {
  std::vector<const ScoreDictVar*> targets;
  if (GetTargetVar() == nullptr) return targets;
  targets.push_back(GetTargetVar());
  for (std::size_t i = 1; i < fTargets.size(); ++i)
    targets.push_back(GetDictionary()->GetVar(fTargets[i].name));
  return targets;
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
  fOutputs.Prepare(layout, GetTargetVars());
  return PrepareInputs(layout) ? KxStatus() : KxStatus(kInputWithoutSlot, false);
}

bool PluginModel::PrepareInputs(const ScoreCaseRecord& layout) {
  fInputs.Size(fValues);
  return fInputs.Prepare(layout);
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

std::unique_ptr<PluginResult> PluginModel::NewResultOf(const Target& target) {
  const bool hasCategories = !target.categories.empty();
  auto result = std::make_unique<PluginResult>(hasCategories ? ScoreResult::kCategoryResult
                                                             : ScoreResult::kValueResult);
  for (const auto& category : target.categories) result->AddCategory(*category);
  return result;
}

std::unique_ptr<PluginResult> PluginModel::NewBareResult() const {
  std::unique_ptr<PluginResult> result = NewResultOf(fTargets.front());
  for (std::size_t i = 1; i < fTargets.size(); ++i) result->AddTarget(NewResultOf(fTargets[i]));
  result->SetExtras(GetExtras());
  result->ReserveEntities(GetMostEntities());
  return result;
}

ScoreResult* PluginModel::NewResult() const {
  std::unique_ptr<PluginResult> result = NewBareResult();
  fOutputs.AddTo(*result);
  return result.release();
}

bool PluginModel::Derive(const ScoreCaseRecord& input, const ScoreCaseRecord*& derived) {
  derived = nullptr;
  if (!fUsesTransformations) return true;
  if (!fInputs.ReadForDerived(input, fTreated)) return false;
  derived = GetTransformationDictionary()->GetValuesForDerivedVars(&fTreated, GetDictionary());
  return true;
}

Inputs::Outcome PluginModel::ReadInputs(const ScoreCaseRecord& input) {
  const ScoreCaseRecord* derived = nullptr;
  return Derive(input, derived) ? fInputs.Read(input, derived, fValues) : Inputs::Outcome::kInvalid;
}

Inputs::Outcome PluginModel::LearnInputs(const ScoreCaseRecord& input) {
  const ScoreCaseRecord* derived = nullptr;
  if (!Derive(input, derived)) return Inputs::Outcome::kInvalid;
  fInputs.LearnCategories(input, derived);
  return fInputs.Read(input, derived, fValues);
}

CaseOutcome PluginModel::OutcomeOf(const ScoreCaseRecord& input, PluginResult& answer) {
  switch (ReadInputs(input)) {
    case Inputs::Outcome::kMissing:
      return CaseOutcome::kMissing;
    case Inputs::Outcome::kInvalid:
      return CaseOutcome::kUndefined;
    case Inputs::Outcome::kComplete:
      break;
  }
  return ScoreCase(fValues, answer);
}

bool PluginModel::ApplyRules(PluginResult& answer) const {
  const bool hasAnswer = ApplyRules(fTargets.front().rules, answer);
  for (std::size_t i = 1; i < fTargets.size(); ++i)
    ApplyRules(fTargets[i].rules, answer.OfTarget(static_cast<int>(i)));
  return hasAnswer;
}

// Bounds would make a plausible number of an infinite one: it is dropped before them.
bool PluginModel::ApplyRules(const TargetRules& rules, PluginResult& answer) {
  if (!answer.HasPredictedNumber()) return true;
  if (answer.IsPredictionFinite()) {
    answer.SetPredictedNumber(rules.Apply(answer.GetPredictedNumber()));
    answer.SetStandardError(rules.ApplyToError(answer.GetStandardError()));
    if (answer.IsPredictionFinite()) return true;
  }
  answer.DropPrediction();
  return false;
}

KxStatus PluginModel::Answer(const ScoreCaseRecord& input, PluginResult& answer) {
  switch (OutcomeOf(input, answer)) {
    case CaseOutcome::kAnswered:
      if (ApplyRules(answer)) return {};
      break;
    case CaseOutcome::kMissing: {
      const KxStatus status = HandleMissingValue(&answer);
      if (answer.IsPredictionFinite()) return status;
      answer.DropPrediction();
      break;
    }
    case CaseOutcome::kUndefined:
      break;
  }
  return {kNoAnswer, false};
}

// Working state is made anew for every case, so that one that was broken off leaves nothing behind.
KxStatus PluginModel::Score(const ScoreCaseRecord& input, ScoreResult& result) noexcept {
  auto& answer = static_cast<PluginResult&>(result);
  answer.Reset();
  try {
    const KxStatus status = Answer(input, answer);
    fOutputs.Fill(input, answer);
    return status;
  } catch (...) {  // std::bad_alloc, or the std::length_error of a text beyond all memory
    answer.Reset();
    return {kOutOfMemory, false};
  }
}

}  // namespace KxVeyra_940::Plugin
