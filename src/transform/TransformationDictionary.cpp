#include "transform/TransformationDictionary.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "data/Identity.h"
#include "transform/CaseContext.h"
#include "transform/DerivedValuesInternal.h"

namespace KxVeyra_940 {

TransformationDictionary::TransformationDictionary() = default;

TransformationDictionary::TransformationDictionary(const TransformationDictionary& other)
    : BaseDictionary(other),
      fDerivedVarNames(other.fDerivedVarNames),
      fValues(other.fValues == nullptr ? nullptr : std::make_unique<DerivedValues>(*other.fValues)),
      fCase(other.fCase) {
  if (fValues != nullptr) fValues->Refresh(*this);
}

TransformationDictionary& TransformationDictionary::operator=(const TransformationDictionary& other) {
  if (this == &other) return *this;
  TransformationDictionary copy(other);
  BaseDictionary::operator=(copy);
  fDerivedVarNames.swap(copy.fDerivedVarNames);
  fValues.swap(copy.fValues);
  fCase = copy.fCase;
  if (fValues != nullptr) fValues->Refresh(*this);
  return *this;
}

TransformationDictionary::~TransformationDictionary() = default;

ScoreDictionary* TransformationDictionary::Clone() const { return new TransformationDictionary(*this); }

void TransformationDictionary::KeepOnly(const std::vector<std::string>& names) {
  std::set<std::string> needed;
  std::vector<std::string> open(names);
  while (!open.empty()) {
    const std::string name = std::move(open.back());
    open.pop_back();
    const auto* const var = dynamic_cast<const TransformVar*>(std::as_const(*this).GetVar(name));
    if (var == nullptr || !needed.insert(name).second) continue;
    std::ranges::move(var->GetReads(), std::back_inserter(open));
  }
  std::erase_if(fDerivedVarNames, [&](const std::string& name) { return !needed.contains(name); });
}

void TransformationDictionary::SetUpDerivedCaseRecord() {
  if (fValues != nullptr) return;
  fValues = std::make_unique<DerivedValues>(*this, fDerivedVarNames);
  fValues->Refresh(*this);
}

ScoreCaseRecord* TransformationDictionary::GetValuesForDerivedVars(const ScoreCaseRecord* input,
                                                                   const ScoreDictionary* dataDictionary) {
  if (fValues == nullptr) return nullptr;
  if (input != nullptr) {
    fValues->Refresh(*this);
    fValues->ForgetAll();
    OpenCase();
    CaseContext context(input, dataDictionary, this, fCase);
    fValues->ComputeAll(context);
  }
  return &fValues->Record();
}

void TransformationDictionary::AddVarCaseValue(const ScoreDictVar* var, const std::string& name,
                                               ScoreValue* value) {
  if (fValues == nullptr) return;
  fValues->Record().Add(name, value);
  if (var != nullptr) fValues->SetComputed(var->GetValueIndex());
}

void TransformationDictionary::AddVarCaseValue(const ScoreDictVar* var, const std::string& name,
                                               double value) {
  if (fValues != nullptr && fValues->Record().SetValue(name, value) && var != nullptr)
    fValues->SetComputed(var->GetValueIndex());
}

void TransformationDictionary::AddVarCaseValue(const ScoreDictVar* var, const std::string& name, double value,
                                               ScoreDictVar::DateTimeType type) {
  if (fValues != nullptr && fValues->Record().SetValue(name, value, type) && var != nullptr)
    fValues->SetComputed(var->GetValueIndex());
}

void TransformationDictionary::AddVarCaseValue(const ScoreDictVar* var, const std::string& name,
                                               const std::string& text) {
  if (fValues != nullptr && fValues->Record().SetValue(name, text) && var != nullptr)
    fValues->SetComputed(var->GetValueIndex());
}

const ScoreValue* TransformationDictionary::GetVarValue(const std::string& name) const {
  return fValues == nullptr ? nullptr : fValues->Record().Get(name);
}

bool TransformationDictionary::IsVarValueComputed(const ScoreDictVar* var) const {
  return fValues != nullptr && var != nullptr && fValues->IsComputed(var->GetValueIndex());
}

// Numbers that no other dictionary has, but for its copies, and that no single ask has.
void TransformationDictionary::OpenCase() {
  constexpr int kRoomForCases = 32;
  fCase = fCase == 0 ? NextIdentity() << kRoomForCases : fCase + 1;
}

void TransformationDictionary::Reset() {
  OpenCase();
  if (fValues != nullptr) fValues->ForgetAll();
}

bool TransformationDictionary::FindStored(const TransformVar& var, const ScoreValue*& value) const {
  if (fValues == nullptr) return false;
  fValues->Refresh(*this);
  return fValues->FindStored(var, value);
}

}  // namespace KxVeyra_940
