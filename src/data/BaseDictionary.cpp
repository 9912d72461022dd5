#include "data/BaseDictionary.h"

#include <algorithm>
#include <ostream>

namespace KxVeyra_940 {

BaseDictionary::BaseDictionary(const BaseDictionary& other) : ScoreDictionary(other) { CopyFrom(other); }

BaseDictionary& BaseDictionary::operator=(const BaseDictionary& other) {
  if (this == &other) return *this;
  BaseDictionary copy(other);
  fVars.swap(copy.fVars);
  fOrder.swap(copy.fOrder);
  return *this;
}

BaseDictionary::~BaseDictionary() = default;

ScoreDictionary* BaseDictionary::Clone() const { return new BaseDictionary(*this); }

bool BaseDictionary::AddVar(const std::string& name, ScoreDictVar* var) {
  if (name.empty() || var == nullptr || Find(name) != nullptr) return false;
  const std::string& ownName = var->GetName();
  if (ownName != name && Find(ownName) == var) return false;
  Take(name, var);
  return true;
}

bool BaseDictionary::AddVar(const ScoreDictionary* dictionary) {
  if (dictionary == nullptr) return false;
  for (const std::string& name : dictionary->GetVarNames()) {
    const ScoreDictVar* const var = dictionary->GetVar(name);
    if (var == nullptr || name.empty() || Find(name) != nullptr) continue;
    Take(name, var->Clone());
  }
  return false;
}

bool BaseDictionary::RemoveVar(const std::string& name) {
  const auto entry = fVars.find(name);
  if (entry == fVars.end()) return false;
  // `name` may be a part of what goes, so nothing reads it from here on.
  fOrder.erase(std::find(fOrder.begin(), fOrder.end(), &entry->first));
  fVars.erase(entry);
  return true;
}

const ScoreDictVar* BaseDictionary::GetVar(const std::string& name) const { return Find(name); }

ScoreDictVar* BaseDictionary::GetVar(const std::string& name) { return Find(name); }

int BaseDictionary::Size() const { return static_cast<int>(fVars.size()); }

std::vector<ScoreDictVar*> BaseDictionary::GetScoreDictVars() const {
  std::vector<const std::string*> names = fOrder;
  std::sort(names.begin(), names.end(),
            [](const std::string* left, const std::string* right) { return *left < *right; });
  std::vector<ScoreDictVar*> vars;
  vars.reserve(names.size());
  for (const std::string* name : names) vars.push_back(Find(*name));
  return vars;
}

std::vector<std::string> BaseDictionary::GetVarNames() const {
  std::vector<std::string> names;
  names.reserve(fOrder.size());
  for (const std::string* name : fOrder) names.push_back(*name);
  return names;
}

void BaseDictionary::Display(std::ostream& out) const {
  out << "\n ############ Begin dictionary display ################ \n";
  for (const ScoreDictVar* var : GetScoreDictVars()) var->Display(out);
  out << "End Of ScoreDictionary display.\n\n";
}

ScoreDictVar* BaseDictionary::Find(const std::string& name) const {
  const auto entry = fVars.find(name);
  return entry == fVars.end() ? nullptr : entry->second.get();
}

void BaseDictionary::Take(const std::string& name, ScoreDictVar* var) {
  const auto entry = fVars.emplace(name, var).first;
  fOrder.push_back(&entry->first);
}

void BaseDictionary::CopyFrom(const BaseDictionary& other) {
  fVars.reserve(other.fVars.size());
  fOrder.reserve(other.fOrder.size());
  for (const std::string* name : other.fOrder) Take(*name, other.Find(*name)->Clone());
}

}  // namespace KxVeyra_940
