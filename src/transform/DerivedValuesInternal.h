// The values of derived fields for one case, and the order in which they are computed.
//
// A field is known by its slot in the record.  Threads: one thread at a time.

#ifndef VEYRA_TRANSFORM_DERIVEDVALUESINTERNAL_H_
#define VEYRA_TRANSFORM_DERIVEDVALUESINTERNAL_H_

#include <cstdint>
#include <string>
#include <vector>

#include "data/CaseRecord.h"
#include "transform/CaseContext.h"
#include "transform/TransformVar.h"

namespace KxVeyra_940 {

class DerivedValues {
 public:
  // A slot per name, in order, with the value that its variable starts with.  Gives each variable its slot.
  DerivedValues(TransformationDictionary& dictionary, const std::vector<std::string>& names);

  CaseRecord& Record() { return fRecord; }
  // Learns anew which variables there are, when that has changed.
  void Refresh(const TransformationDictionary& dictionary);
  void ForgetAll();

  bool IsComputed(int slot) const { return IsSlot(slot) && fIsComputed[static_cast<std::size_t>(slot)] != 0; }
  void SetComputed(int slot);
  // Computes every field and keeps its value.
  void ComputeAll(CaseContext& context);
  // Whether the field of this very variable is computed; `value` becomes what is kept, null for a text
  // without value.
  bool FindStored(const TransformVar& var, const ScoreValue*& value) const;

 private:
  struct Field {
    const TransformVar* var = nullptr;  // null for a name without a derived variable
    std::vector<std::size_t> reads;     // slots
  };

  bool IsSlot(int slot) const { return slot >= 0 && static_cast<std::size_t>(slot) < fFields.size(); }
  void OrderFields();
  void Compute(std::size_t slot, const CaseContext& context);
  void Store(std::size_t slot, const TransformVar& var, const ScoreValue& value);

  CaseRecord fRecord;
  CaseRecord fReference;  // what every field starts with
  std::vector<Field> fFields;
  std::vector<std::size_t> fOrder;  // every field after those that it reads
  std::uint64_t fContentId = 0;     // of the dictionary that the fields were learned from
  CaseContext::Binding fBinding;    // of the last case, and the number that stands for it
  std::uint64_t fBindingId = 0;
  std::vector<unsigned char> fIsComputed;
  std::vector<unsigned char> fIsTextMissing;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_DERIVEDVALUESINTERNAL_H_
