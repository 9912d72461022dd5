#include "data/BaseDictionary.h"

#include <algorithm>
#include <ostream>

namespace KxVeyra_940 {

BaseDictionary::BaseDictionary(const BaseDictionary& other) : ScoreDictionary(other) {
  fEntries.reserve(other.fEntries.size());
  for (const Entry& entry : other.fEntries) TakeClone(entry.name, *entry.var);
}

BaseDictionary& BaseDictionary::operator=(const BaseDictionary& other) {
  if (this == &other) return *this;
  BaseDictionary copy(other);
  fEntries.swap(copy.fEntries);
  std::swap(fIndex, copy.fIndex);
  fContentId = NextIdentity();
  return *this;
}

BaseDictionary::~BaseDictionary() = default;

ScoreDictionary* BaseDictionary::Clone() const { return new BaseDictionary(*this); }

bool BaseDictionary::AddVar(const std::string& name, ScoreDictVar* var) {
  if (name.empty() || var == nullptr) return false;
  const std::string& ownName = var->GetName();
  if (ownName != name && Find(ownName) == var) return false;
  return Take(name, var);
}

bool BaseDictionary::AddVar(const ScoreDictionary* dictionary) {
  if (dictionary == nullptr) return false;
  for (const std::string& name : dictionary->GetVarNames()) {
    const ScoreDictVar* const var = dictionary->GetVar(name);
    if (var == nullptr || name.empty() || Find(name) != nullptr) continue;
    TakeClone(name, *var);
  }
  return false;
}

bool BaseDictionary::RemoveVar(const std::string& name) {
  const std::uint32_t position = PositionOf(name);
  if (position == NameIndex::kNone) return false;
  // `name` may be a part of what goes, so nothing reads it from here on.
  fEntries.erase(fEntries.begin() + position);
  fIndex.Clear();
  for (const Entry& entry : fEntries) fIndex.Append(entry.name);
  fContentId = NextIdentity();
  return true;
}

const ScoreDictVar* BaseDictionary::GetVar(const std::string& name) const { return Find(name); }

ScoreDictVar* BaseDictionary::GetVar(const std::string& name) { return Find(name); }

int BaseDictionary::Size() const { return static_cast<int>(fEntries.size()); }

std::vector<ScoreDictVar*> BaseDictionary::GetScoreDictVars() const {
  std::vector<const Entry*> sorted;
  sorted.reserve(fEntries.size());
  for (const Entry& entry : fEntries) sorted.push_back(&entry);
  std::sort(sorted.begin(), sorted.end(),
            [](const Entry* left, const Entry* right) { return left->name < right->name; });
  std::vector<ScoreDictVar*> vars;
  vars.reserve(sorted.size());
  for (const Entry* entry : sorted) vars.push_back(entry->var.get());
  return vars;
}

std::vector<std::string> BaseDictionary::GetVarNames() const {
  std::vector<std::string> names;
  names.reserve(fEntries.size());
  for (const Entry& entry : fEntries) names.push_back(entry.name);
  return names;
}

void BaseDictionary::Display(std::ostream& out) const {
  out << "\n ############ Begin dictionary display ################ \n";
  for (const ScoreDictVar* var : GetScoreDictVars()) var->Display(out);
  out << "End Of ScoreDictionary display.\n\n";
}

std::uint32_t BaseDictionary::PositionOf(const std::string& name) const {
  return fIndex.Find(name,
                     [this](std::uint32_t position) -> std::string_view { return fEntries[position].name; });
}

ScoreDictVar* BaseDictionary::Find(const std::string& name) const {
  const std::uint32_t position = PositionOf(name);
  return position == NameIndex::kNone ? nullptr : fEntries[position].var.get();
}

// Takes the variable when nothing is left that could fail: it stays the caller's when memory runs out.
bool BaseDictionary::Take(const std::string& name, ScoreDictVar* var) {
  if (PositionOf(name) != NameIndex::kNone) return false;
  Entry entry{name, nullptr};
  if (fEntries.size() == fEntries.capacity()) fEntries.reserve(2 * fEntries.size() + 1);
  fIndex.Append(entry.name);
  entry.var.reset(var);
  fEntries.push_back(std::move(entry));
  fContentId = NextIdentity();
  return true;
}

void BaseDictionary::TakeClone(const std::string& name, const ScoreDictVar& var) {
  std::unique_ptr<ScoreDictVar> clone(var.Clone());
  if (Take(name, clone.get())) static_cast<void>(clone.release());
}

}  // namespace KxVeyra_940
