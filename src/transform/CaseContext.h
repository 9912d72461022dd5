// One case, and the dictionaries whose names it is read by.
//
//   CaseContext context(&record, dataDictionary, transformations);   // lives as long as the case is
//   evaluated
//
// Names are resolved once: what an expression found stays found as long as the binding is the same.  A
// context stands for one ask: what a derived field has computed for it is not computed again. Threads: a
// context belongs to one evaluation.

#ifndef VEYRA_TRANSFORM_CASECONTEXT_H_
#define VEYRA_TRANSFORM_CASECONTEXT_H_

#include <cstdint>
#include <string>
#include <vector>

#include "transform/TransformationDictionary.h"
#include "veyra/Export.h"
#include "veyra/ScoreCaseRecord.h"
#include "veyra/ScoreDictionary.h"

namespace KxVeyra_940 {

class TransformVar;

// The variable in the first dictionary, else in the second one; either may be null.  Null when neither has
// it.
VEYRA_API const ScoreDictVar* FindField(const std::string& name, const ScoreDictionary* dataDictionary,
                                        const ScoreDictionary* transformations);

class VEYRA_API CaseContext {
 public:
  // What names were resolved against.  A record, or dictionary, that does not tell its state is known by 0.
  struct Binding {
    std::uint64_t layout = 0;
    std::uint64_t dataContent = 0;
    std::uint64_t derivedContent = 0;
    const ScoreDictionary* data = nullptr;
    const ScoreDictionary* derived = nullptr;

    bool operator==(const Binding&) const = default;
  };

  // Each may be null.  `ask` is a number that no other ask of these variables has; 0 for a new one.
  CaseContext(const ScoreCaseRecord* input, const ScoreDictionary* dataDictionary,
              const ScoreDictionary* transformations, std::uint64_t ask = 0);

  const Binding& GetBinding() const { return fBinding; }
  // A number that stands for the binding wherever it is not 0; who keeps values knows whether it is the same
  // binding as for the case before.
  std::uint64_t GetBindingId() const { return fBindingId; }
  void SetBindingId(std::uint64_t id) { fBindingId = id; }
  const ScoreCaseRecord* GetInput() const { return fInput; }
  const ScoreDictionary* GetDataDictionary() const { return fBinding.data; }
  const ScoreDictionary* GetTransformations() const { return fBinding.derived; }
  std::uint64_t GetAsk() const { return fAsk; }
  // The case that the transformations have opened; 0 when they have opened none.
  std::uint64_t GetCase() const { return fCase; }
  // Whether the transformations keep the variable's value for their case; it becomes `value`, null for a text
  // without value.
  bool FindStored(const TransformVar& var, const ScoreValue*& value) const;
  // The variable in the data dictionary, else in the transformations; null when it is in neither.
  const ScoreDictVar* FindVariable(const std::string& name) const;
  // Slots found stay valid for every record of the binding.
  bool KeepsSlots() const { return fBinding.layout != 0; }

  const ScoreValue* InputAt(int slot) const {
    return slot >= 0 && static_cast<std::size_t>(slot) < fValues->size()
               ? (*fValues)[static_cast<std::size_t>(slot)]
               : nullptr;
  }

 private:
  const ScoreCaseRecord* fInput;
  const std::vector<ScoreValue*>* fValues;                   // never null
  const TransformationDictionary* fDerivedValues = nullptr;  // the transformations when they keep values
  Binding fBinding;
  std::uint64_t fBindingId = 0;
  std::uint64_t fAsk;
  std::uint64_t fCase = 0;
};

// A field that an expression reads, by name.  REQUIRES of ValueIn: bound to the binding of that context.
class VEYRA_API FieldSource {
 public:
  // When a derived field is asked for its value.
  enum Preference : unsigned char {
    kComputed,     // always
    kStoredFirst,  // unless the transformations keep it for their case
    kInputFirst,   // unless the record has a value of that name
  };

  FieldSource() = default;
  FieldSource(std::string name, Preference preference) : fName(std::move(name)), fPreference(preference) {}

  const std::string& GetName() const { return fName; }
  const ScoreDictVar* GetVariable() const { return fVariable; }  // null when no dictionary has it
  int GetSlot() const { return fSlot; }                          // in the input record; -1
  // Looks the name up; a variable that no dictionary has stays `fallback`.
  void Bind(const CaseContext& context, const ScoreDictVar* fallback = nullptr);
  // The value in this case, lent; null when it is absent, a derived text without value included.
  const ScoreValue* ValueIn(const CaseContext& context) const {
    if (fDerived == nullptr && context.KeepsSlots()) return context.InputAt(fSlot);
    return FindValueIn(context);
  }

 private:
  const ScoreValue* FindValueIn(const CaseContext& context) const;

  std::string fName;
  Preference fPreference = kComputed;
  const ScoreDictVar* fVariable = nullptr;
  const TransformVar* fDerived = nullptr;  // the variable when it is derived
  int fSlot = -1;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_CASECONTEXT_H_
