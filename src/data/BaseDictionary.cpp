#include "data/BaseDictionary.h"

#include <algorithm>
#include <ostream>

namespace KxVeyra_940 {

BaseDictionary::BaseDictionary(const BaseDictionary& other) : ScoreDictionary(other), fNames(other.fNames) {
  for (const auto& [name, var] : other.fVars) Take(name, var->Clone());
}

BaseDictionary& BaseDictionary::operator=(const BaseDictionary& other) {
  if (this == &other) return *this;
  BaseDictionary copy(other);
  fVars.swap(copy.fVars);
  fHeld.swap(copy.fHeld);
  fNames.swap(copy.fNames);
  return *this;
}

BaseDictionary::~BaseDictionary() = default;

ScoreDictionary* BaseDictionary::Clone() const { return new BaseDictionary(*this); }

bool BaseDictionary::AddVar(const std::string& name, ScoreDictVar* var) {
  if (name.empty() || var == nullptr || fHeld.count(var) != 0 || Find(name) != nullptr) return false;
  Take(name, var);
  fNames.push_back(name);
  return true;
}

bool BaseDictionary::AddVar(const ScoreDictionary* dictionary) {
  if (dictionary == nullptr) return false;
  for (const std::string& name : dictionary->GetVarNames()) {
    const ScoreDictVar* const var = dictionary->GetVar(name);
    if (var == nullptr || name.empty() || Find(name) != nullptr) continue;
    Take(name, var->Clone());
    fNames.push_back(name);
  }
  return false;
}

bool BaseDictionary::RemoveVar(const std::string& name) {
  const auto entry = fVars.find(name);
  if (entry == fVars.end()) return false;
  // `name` may be a part of what goes: the order of addition first, the variable last.
  fNames.erase(std::find(fNames.begin(), fNames.end(), name));
  fHeld.erase(entry->second.get());
  fVars.erase(entry);
  return true;
}

const ScoreDictVar* BaseDictionary::GetVar(const std::string& name) const { return Find(name); }

ScoreDictVar* BaseDictionary::GetVar(const std::string& name) { return Find(name); }

int BaseDictionary::Size() const { return static_cast<int>(fVars.size()); }

std::vector<ScoreDictVar*> BaseDictionary::GetScoreDictVars() const {
  std::vector<ScoreDictVar*> vars;
  vars.reserve(fVars.size());
  for (const auto& entry : fVars) vars.push_back(entry.second.get());
  return vars;
}

std::vector<std::string> BaseDictionary::GetVarNames() const { return fNames; }

void BaseDictionary::Display(std::ostream& out) const {
  out << "\n ############ Begin dictionary display ################ \n";
  for (const auto& entry : fVars) entry.second->Display(out);
  out << "End Of ScoreDictionary display.\n\n";
}

ScoreDictVar* BaseDictionary::Find(const std::string& name) const {
  const auto entry = fVars.find(name);
  return entry == fVars.end() ? nullptr : entry->second.get();
}

void BaseDictionary::Take(const std::string& name, ScoreDictVar* var) {
  fVars.emplace(name, var);
  fHeld.insert(var);
}

}  // namespace KxVeyra_940
