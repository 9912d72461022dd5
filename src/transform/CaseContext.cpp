#include "transform/CaseContext.h"

#include <typeinfo>

#include "data/CaseRecord.h"
#include "data/Identity.h"
#include "transform/TransformVar.h"

namespace KxVeyra_940 {

namespace {

// A dynamic_cast that is quick for objects of that very class, as nearly all are.
template <class To, class From>
const To* As(const From* object) {
  if (object == nullptr) return nullptr;
  return typeid(*object) == typeid(To) ? static_cast<const To*>(object) : dynamic_cast<const To*>(object);
}

std::uint64_t ContentOf(const ScoreDictionary* dictionary) {
  const auto* const own = As<BaseDictionary>(dictionary);
  return own == nullptr ? 0 : own->GetContentId();
}

const std::vector<ScoreValue*>& ValuesOf(const ScoreCaseRecord* record) {
  static const std::vector<ScoreValue*> none;
  return record == nullptr ? none : record->GetAllValues();
}

}  // namespace

const ScoreDictVar* FindField(const std::string& name, const ScoreDictionary* dataDictionary,
                              const ScoreDictionary* transformations) {
  const ScoreDictVar* const variable = dataDictionary == nullptr ? nullptr : dataDictionary->GetVar(name);
  if (variable != nullptr || transformations == nullptr) return variable;
  return transformations->GetVar(name);
}

CaseContext::CaseContext(const ScoreCaseRecord* input, const ScoreDictionary* dataDictionary,
                         const ScoreDictionary* transformations, std::uint64_t ask)
    : fInput(input), fValues(&ValuesOf(input)), fAsk(ask == 0 ? NextIdentity() : ask) {
  if (const auto* const own = As<CaseRecord>(input)) fBinding.layout = own->GetLayoutId();
  fBinding.data = dataDictionary;
  fBinding.derived = transformations;
  fBinding.dataContent = ContentOf(dataDictionary);
  fBinding.derivedContent = ContentOf(transformations);
  if (const auto* const own = As<TransformationDictionary>(transformations)) {
    fCase = own->GetCase();
    if (own->IsSetUp()) fDerivedValues = own;
  }
}

bool CaseContext::FindStored(const TransformVar& var, const ScoreValue*& value) const {
  return fDerivedValues != nullptr && fDerivedValues->FindStored(var, value);
}

const ScoreDictVar* CaseContext::FindVariable(const std::string& name) const {
  return FindField(name, fBinding.data, fBinding.derived);
}

void FieldSource::Bind(const CaseContext& context, const ScoreDictVar* fallback) {
  const ScoreDictVar* const found = fName.empty() ? nullptr : context.FindVariable(fName);
  fVariable = found == nullptr ? fallback : found;
  fDerived = dynamic_cast<const TransformVar*>(fVariable);
  const ScoreCaseRecord* const input = context.GetInput();
  fSlot = input == nullptr || fName.empty() ? -1 : input->GetIndex(fName);
}

const ScoreValue* FieldSource::FindValueIn(const CaseContext& context) const {
  const ScoreCaseRecord* const input = context.GetInput();
  if (fDerived == nullptr || fPreference == kInputFirst) {
    const bool isKept = context.KeepsSlots() || input == nullptr || fName.empty();
    const ScoreValue* const value = context.InputAt(isKept ? fSlot : input->GetIndex(fName));
    if (fDerived == nullptr || value != nullptr) return value;
  }
  const ScoreValue* stored = nullptr;
  if (fPreference == kStoredFirst && context.FindStored(*fDerived, stored)) return stored;
  return fDerived->ValueIn(context);
}

}  // namespace KxVeyra_940
