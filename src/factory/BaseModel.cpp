#include "factory/BaseModel.h"

#include <memory>

#include "transform/TransformationDictionary.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"

namespace KxVeyra_940 {

namespace {

struct MiningFunctionRow {
  const char* name;
  BaseModel::FUNCNAME_TYPE function;
};

constexpr MiningFunctionRow kMiningFunctions[] = {
    {PMMLStandardTags::XML_VAL_ASSOCIATIONRULES, BaseModel::kAssociationRules},
    {PMMLStandardTags::XML_VAL_SEQUENCES, BaseModel::kSequences},
    {PMMLModelTags::XML_VAL_MINING_CLASSIFICATION, BaseModel::kClassification},
    {PMMLModelTags::XML_VAL_MINING_REGRESSION, BaseModel::kRegression},
    {PMMLModelTags::XML_VAL_FUNCCLUSTERING, BaseModel::kClustering},
    {PMMLModelTags::XML_ATT_TIMESERIES, BaseModel::kTimeSeries},
};

// Result kinds that take no probability of each category, as a mask over the kinds 0 to 26.
constexpr unsigned kKindsWithoutProbabilities = 0x2CB7BA2;
constexpr int kLastKindWithProbabilities = 26;

bool TakesProbabilities(int kind) {
  if (kind < 0 || kind > kLastKindWithProbabilities) return false;
  return (kKindsWithoutProbabilities >> kind & 1U) == 0;
}

template <class Part>
std::unique_ptr<Part> CloneOf(const Part* part) {
  return std::unique_ptr<Part>(part == nullptr ? nullptr : part->Clone());
}

}  // namespace

BaseModel::BaseModel() = default;

BaseModel::BaseModel(const BaseModel& other)
    : ScoreModel(other),
      fRoles(other.fRoles),
      fMissingValuePolicy(other.fMissingValuePolicy),
      fTargetName(other.fTargetName),
      fAlgorithmName(other.fAlgorithmName),
      fMiningFunction(other.fMiningFunction) {
  // All or none, when memory runs out.
  std::unique_ptr<ScoreDictionary> dictionary = CloneOf(other.fDictionary);
  std::unique_ptr<ScoreDictionary> transformations =
      CloneOf<ScoreDictionary>(other.fTransformationDictionary);
  std::unique_ptr<ScoreDictionary> results = CloneOf(other.fResultDictionary);
  fVersionInfo = CloneOf(other.fVersionInfo).release();
  fDictionary = dictionary.release();
  fTransformationDictionary = static_cast<TransformationDictionary*>(transformations.release());
  fResultDictionary = results.release();
}

BaseModel::~BaseModel() {
  delete fVersionInfo;
  fRoles.clear();
  if (fOwnsDictionary) delete fDictionary;
  if (fOwnsTransformationDictionary) delete fTransformationDictionary;
  delete fResultDictionary;
}

void BaseModel::SetScoreDictionary(ScoreDictionary* dictionary) { fDictionary = dictionary; }

void BaseModel::SetScoreDictionary(ScoreDictionary* dictionary, bool owned) {
  fDictionary = dictionary;
  fOwnsDictionary = owned;
}

void BaseModel::SetTransformationScoreDictionary(TransformationDictionary* dictionary) {
  fTransformationDictionary = dictionary;
}

void BaseModel::SetTransformationScoreDictionary(TransformationDictionary* dictionary, bool owned) {
  fTransformationDictionary = dictionary;
  fOwnsTransformationDictionary = owned;
}

void BaseModel::SetResultScoreDictionary(ScoreDictionary* dictionary) { fResultDictionary = dictionary; }
void BaseModel::SetVersionInfo(ScoreVersionInfo* info) { fVersionInfo = info; }
void BaseModel::SetMissingValuePolicy(MVPolicy policy) { fMissingValuePolicy = policy; }

ScoreVersionInfo* BaseModel::GetVersionInfo() const { return fVersionInfo; }
ScoreDictionary* BaseModel::GetDictionary() const { return fDictionary; }
TransformationDictionary* BaseModel::GetTransformationDictionary() const { return fTransformationDictionary; }
ScoreDictionary* BaseModel::GetResultDictionary() const { return fResultDictionary; }
ScoreModel::MVPolicy BaseModel::GetMissingValuePolicy() const { return fMissingValuePolicy; }

bool BaseModel::SetVarRole(const ScoreDictVar* var, VarRole role) {
  return var != nullptr && SetVarRole(var->GetName(), role);
}

bool BaseModel::SetVarRole(const std::string& name, VarRole role) {
  if (name.empty()) return false;
  const bool isField = fDictionary != nullptr && fDictionary->GetVar(name) != nullptr;
  const bool isDerivedField =
      fTransformationDictionary != nullptr && fTransformationDictionary->GetVar(name) != nullptr;
  if (!isField && !isDerivedField) return false;
  if (role == kTargetRole) fTargetName = name;
  fRoles[name] = role;
  return true;
}

ScoreModel::VarRole BaseModel::GetVarRole(const ScoreDictVar* var) const {
  return var == nullptr ? kNoRole : GetVarRole(var->GetName());
}

ScoreModel::VarRole BaseModel::GetVarRole(const std::string& name) const {
  const auto found = fRoles.find(name);
  return found == fRoles.end() ? kNoRole : found->second;
}

ScoreDictVar* BaseModel::GetTargetVar() const {
  return fDictionary == nullptr ? nullptr : fDictionary->GetVar(fTargetName);
}

BaseModel::FUNCNAME_TYPE BaseModel::MiningFunctionFromString(const std::string& name) {
  for (const MiningFunctionRow& row : kMiningFunctions) {
    if (name == row.name) return row.function;
  }
  return kNoMiningFunction;
}

bool BaseModel::NeedToMakeupATarget() const {
  return fMiningFunction == kRegression && GetTargetVar() == nullptr;
}

bool BaseModel::isKMorPDF() const {
  return fAlgorithmName == "KM" || fAlgorithmName == "Parametric Distribution Fitting";
}

KxScore::KxStatus BaseModel::HandleMissingValue(ScoreResult* result) {
  if (result == nullptr) return {};
  const ScoreDictVar* target = GetTargetVar();
  if (target == nullptr) return {kNoAnswer, false};
  if (target->GetMLevel() != ScoreDictVar::kContinuous) return AnswerFromPriors(*target, *result);
  if (target->GetDefValue() == nullptr) return {kNoAnswer, false};
  result->SetPredictedValue(target->GetDefValue()->Clone());
  return {};
}

KxScore::KxStatus BaseModel::AnswerFromPriors(const ScoreDictVar& target, ScoreResult& result) const {
  const ScoreValueProbabilitySet* priors = target.GetValueProbabilities();
  if (priors == nullptr) {
    result.SetPredictedValue(nullptr);
    return {kNoAnswer, false};
  }
  const bool addProbabilities = TakesProbabilities(result.GetResultKind()) && !HasNoProbabilityOutput();
  const ScoreValueProbability* best = nullptr;
  for (const ScoreValueProbability* prior : priors->GetAllValueProbabilities()) {
    if (prior->GetValue() == nullptr) continue;  // no category
    if (prior->GetProbability() > (best == nullptr ? 0.0 : best->GetProbability())) best = prior;
    if (addProbabilities) result.AddValueProbability(prior->GetValue()->Clone(), prior->GetProbability());
  }
  if (best != nullptr) {
    result.SetPredictedValue(best->GetValue()->Clone());
    result.SetProbability(best->GetProbability());
  }
  return {};
}

}  // namespace KxVeyra_940
