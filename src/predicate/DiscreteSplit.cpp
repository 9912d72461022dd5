#include "predicate/DiscreteSplit.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <utility>

namespace KxVeyra_940 {

namespace {

// Comparing with a few values costs less than finding one of them by its hash.
constexpr std::size_t kFewValues = 4;

}  // namespace

void DiscreteSplit::Tables::Put(ScoreValue* value, int child) {
  values.Append(value);
  children.push_back(child);
  index.Append(value);
}

void DiscreteSplit::Tables::Put(double code, int child) {
  if (!std::isnan(code)) codes.emplace(code, child);
}

DiscreteSplit::Selection::Selection(std::shared_ptr<const CategoryList> list, int first, int last,
                                    std::vector<int> without, int ofChild)
    : categories(std::move(list)), start(first), end(last), leftOut(std::move(without)), child(ofChild) {}

bool DiscreteSplit::Selection::Has(int position) const {
  return position >= start && position <= end &&
         !std::binary_search(leftOut.begin(), leftOut.end(), position);
}

template <class Matches>
int DiscreteSplit::Selection::ChildOf(const ScoreValue& value, Matches isEqual) const {
  if (categories->HasCodes()) return kNoChild;
  const int found = categories->FindFirst(
      value, [&](int position) { return Has(position) && isEqual(*categories->ValueAt(position)); });
  return found < 0 ? kNoChild : child;
}

int DiscreteSplit::Selection::ChildOf(double code) const {
  return categories->AnyOfCode(code, [this](int position) { return Has(position); }) ? child : kNoChild;
}

const DiscreteSplit::Tables& DiscreteSplit::Selection::Listed() const {
  std::call_once(isListed, [this] {
    tables = Tables();
    PutInto(tables);
  });
  return tables;
}

void DiscreteSplit::Selection::PutInto(Tables& to) const {
  if (categories->HasCodes()) return ForEachCode([&](double code) { to.Put(code, child); });
  ForEachPosition([&](int position) {
    const ScoreValue* const value = categories->ValueAt(position);
    if (value != nullptr) to.Put(value->Clone(), child);
  });
}

DiscreteSplit::DiscreteSplit(const ScoreDictVar* variable) : ScoreSplitVar(variable) {}
DiscreteSplit::~DiscreteSplit() = default;

void DiscreteSplit::PutSplit(ScoreValue* value, int child) {
  if (value != nullptr) OwnTables().Put(value, child);
}

void DiscreteSplit::PutSplit(double code, int child) { OwnTables().Put(code, child); }

void DiscreteSplit::PutCategories(std::shared_ptr<const CategoryList> categories, int start, int end,
                                  std::vector<int> leftOut, int child) {
  const int most = end - start + 1;
  fSelection.Replace(new Selection(std::move(categories), start, end, std::move(leftOut), child));
  if (most <= static_cast<int>(kFewValues)) OwnTables();
}

DiscreteSplit::Tables& DiscreteSplit::OwnTables() {
  if (fSelection) {
    fSelection->PutInto(fTables);
    fSelection.Replace(nullptr);
  }
  return fTables;
}

std::vector<ScoreValue*> DiscreteSplit::GetSplitValuesFirst() const {
  const Tables& tables = Listed();
  if (tables.values.Size() == 0) return {};
  return {tables.values.At(0)};
}

std::vector<ScoreValue*> DiscreteSplit::GetSplitValuesForIndex(int child) const {
  const Tables& tables = Listed();
  std::vector<ScoreValue*> values;
  for (std::size_t i = 0; i < tables.children.size(); ++i) {
    if (tables.children[i] == child) values.push_back(tables.values.At(i));
  }
  return values;
}

std::vector<ScoreValue*> DiscreteSplit::GetSplitValues() const { return Listed().values.All(); }

void DiscreteSplit::SetStartAndEndIndex(int start, int end) {
  fStart = start;
  fEnd = end;
}

void DiscreteSplit::GetStartAndEndIndex(int& start, int& end) const {
  start = fStart;
  end = fEnd;
}

ScoreSplitVar* DiscreteSplit::Clone() const { return new DiscreteSplit(*this); }

int DiscreteSplit::GetSplitVarType() const { return kDiscreteSplit; }

int DiscreteSplit::GetSplitChildIndex(const ScoreValue* value) const {
  if (value == nullptr) return fMissvalMap;
  const bool isString = GetSplitType() == ScoreDictVar::STRING_VAR;
  const bool noSpaceTrim = isString && fSplitVar->GetNoSpaceTrim();
  const bool emptyStringOK = isString && fSplitVar->GetEmptyStringOK();
  const auto isEqual = [&](const ScoreValue& held) {
    return isString ? held.Equal(value, noSpaceTrim, emptyStringOK) : held == *value;
  };
  if (fSelection) return fSelection->ChildOf(*value, isEqual);
  const std::size_t size = fTables.values.Size();
  if (size > kFewValues) {
    const int found = fTables.index.FindFirst(*value, [&](int position) {
      return isEqual(*fTables.values.At(static_cast<std::size_t>(position)));
    });
    return found < 0 ? kNoChild : fTables.children[static_cast<std::size_t>(found)];
  }
  for (std::size_t i = 0; i < size; ++i) {
    if (isEqual(*fTables.values.At(i))) return fTables.children[i];
  }
  return kNoChild;
}

int DiscreteSplit::GetSplitChildIndex(double code) const {
  if (code < 0 && GetSplitMLevel() == ScoreDictVar::kNominal) return fMissvalMap;
  if (std::isnan(code)) return kNoChild;
  if (fSelection) return fSelection->ChildOf(code);
  const auto found = fTables.codes.find(code);
  return found == fTables.codes.end() ? kNoChild : found->second;
}

void DiscreteSplit::Display(std::ostream& out) const {
  const bool isCategorical = GetSplitMLevel() == ScoreDictVar::kNominal;
  out << "SplitVarName = " << GetSplitName()
      << (isCategorical ? "; Var type: Categorical\n" : "; Var type: Ordinal\n")
      << "Missing Value index: " << fMissvalMap << '\n';
  if (fStart >= 0 && fEnd >= 0) out << "Split value index starts from  " << fStart << " to " << fEnd << '\n';
  const Tables& tables = Listed();
  for (std::size_t i = 0; i < tables.children.size(); ++i) {
    out << "Value = " << tables.values.At(i)->GetString() << "; Index = " << tables.children[i] << '\n';
  }
  out << '\n';
}

}  // namespace KxVeyra_940
