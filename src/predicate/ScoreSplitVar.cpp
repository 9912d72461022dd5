#include "veyra/ScoreSplitVar.h"

namespace KxVeyra_940 {

namespace {

const std::string& NoText() {
  static const std::string text;
  return text;
}

}  // namespace

ScoreSplitVar::ScoreSplitVar(const ScoreDictVar* variable) : fSplitVar(variable) {}
ScoreSplitVar::~ScoreSplitVar() = default;

void ScoreSplitVar::SetSplitVar(const ScoreDictVar* variable) { fSplitVar = variable; }

void ScoreSplitVar::SetMissvalMap(int child) { fMissvalMap = child; }

const ScoreDictVar* ScoreSplitVar::GetSplitVar() const { return fSplitVar; }

const std::string& ScoreSplitVar::GetSplitName() const {
  return fSplitVar == nullptr ? NoText() : fSplitVar->GetName();
}

const std::string& ScoreSplitVar::GetSplitLabel() const {
  return fSplitVar == nullptr ? NoText() : fSplitVar->GetLabel();
}

ScoreDictVar::VariableType ScoreSplitVar::GetSplitType() const {
  return fSplitVar == nullptr ? ScoreDictVar::kNUMERIC_VAR : fSplitVar->GetVarType();
}

ScoreDictVar::MeasureLevel ScoreSplitVar::GetSplitMLevel() const {
  return fSplitVar == nullptr ? ScoreDictVar::kContinuous : fSplitVar->GetMLevel();
}

int ScoreSplitVar::GetMissvalMap() const { return fMissvalMap; }

}  // namespace KxVeyra_940
