// Derives the fields of a document without a plug-in, and computes them for a few rows, each twice: with the
// values of the case forgotten between, or not.

#include <memory>
#include <sstream>
#include <string_view>

#include "Cases.h"
#include "Host.h"
#include "transform/TransformVar.h"
#include "transform/TransformationDictionary.h"

namespace {

using namespace KxVeyra_940;

std::string ShownFields(const TransformationDictionary& transformations) {
  std::string text;
  for (const std::string& name : transformations.GetDerivedVarNames())
    text.append(name).append("=").append(VeyraFuzz::Shown(transformations.GetVarValue(name)));
  return text;
}

void RequireFinite(const TransformationDictionary& transformations) {
  for (const std::string& name : transformations.GetDerivedVarNames())
    VeyraFuzz::RequireFinite(name.c_str(), transformations.GetVarValue(name));
}

std::string Compute(TransformationDictionary& transformations, const CaseRecord& record,
                    const ScoreDictionary& fields) {
  transformations.GetValuesForDerivedVars(&record, &fields);
  return ShownFields(transformations);
}

void AskDirectly(const TransformationDictionary& transformations, const CaseRecord& record,
                 const ScoreDictionary& fields) {
  for (const ScoreDictVar* var : transformations.GetScoreDictVars()) {
    const auto* const derived = dynamic_cast<const TransformVar*>(var);
    if (derived != nullptr)
      VeyraFuzz::Shown(derived->GetTransformedValue(&record, &fields, &transformations));
  }
}

void DeriveRows(TransformationDictionary& transformations, const ScoreDictionary& fields, unsigned seed) {
  std::ostringstream shown;
  fields.Display(shown);
  transformations.Display(shown);
  const std::unique_ptr<ScoreDictionary> clone(transformations.Clone());
  auto& copy = dynamic_cast<TransformationDictionary&>(*clone);
  CaseRecord record = VeyraFuzz::MakeRecord(fields);
  for (unsigned row = 0; row < VeyraFuzz::kRows; ++row) {
    VeyraFuzz::FillRow(record, fields, row, seed);
    for (int time = 0; time < 2; ++time) {
      const std::string values = Compute(transformations, record, fields);
      VeyraFuzz::RequireEqual("derived fields and their copy", values, Compute(copy, record, fields));
      if (row < VeyraFuzz::kFiniteRows) RequireFinite(transformations);
      if (seed % 2 == 0) transformations.Reset();
    }
  }
  AskDirectly(transformations, record, fields);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const VeyraFuzz::Host kHost;
  std::string document(reinterpret_cast<const char*>(data), size);
  // The service expands entities: hosts give it documents that they trust.
  if (document.find("<!") != std::string::npos) return -1;
  std::istringstream in(std::move(document));
  ScoreDictionary* fields = nullptr;
  std::unique_ptr<TransformationDictionary> transformations;
  VeyraFuzz::Refusable([&] {
    transformations.reset(ModelFactory::GetTransformationDictionaryFromXML(in, fields, std::string()));
  });
  const std::unique_ptr<ScoreDictionary> owned(fields);
  if (transformations != nullptr) DeriveRows(*transformations, *owned, VeyraFuzz::SeedOf(data, size));
  return 0;
}
