// The fields that a model reads, made ready for its mathematics: numbers, and codes of categories.
//
// Missing, invalid and extreme values are dealt with here, in Treat alone, as the mining schema has it:
//   1. An empty slot, a missing number and what the dictionary counts as missing are missing; what the
//      document calls invalid, or does not list for a field with listed values, is invalid.
//   2. An invalid value is taken as it is, becomes missing, is replaced, or ends the case.
//   3. What came of it, when it is beyond lowValue or highValue, is taken as it is, becomes missing, or
//   becomes
//      that bound.
//   4. What is missing by then, for whatever reason, ends the case when the schema says so, or else is
//   replaced
//      when there is a replacement.  Otherwise it is a missing input, which the fallback answers, unless the
//      model deals with missing values itself.

#ifndef VEYRA_PLUGINS_INPUTS_H_
#define VEYRA_PLUGINS_INPUTS_H_

#include <memory>
#include <string>
#include <vector>

#include "common/CategoryTable.h"
#include "common/InvalidValues.h"
#include "common/MiningSchema.h"
#include "common/PlainNumbers.h"
#include "data/CaseRecord.h"
#include "veyra/ScoreCaseRecord.h"
#include "veyra/ScoreDictionary.h"

namespace KxVeyra_940::Plugin {

// The values of one case, by input; reused from case to case.
struct CaseValues {
  std::vector<double> numbers;
  std::vector<int> codes;  // kNoCategory for a category that the table does not have
                           // missing values, where the model accepts them: system-missing, kMissingCategory
};

class Inputs {
 public:
  enum class Outcome { kComplete, kMissing, kInvalid };

  Inputs() = default;
  // A copy has no variables until Resolve gives it those of its own dictionary.
  Inputs(const Inputs& other) = default;
  Inputs& operator=(const Inputs& other) = delete;

  // Adds an active field and returns its index, which is also the variable's encoded value index.
  // `invalidValues` may be null.
  int Add(MiningField field, std::shared_ptr<const InvalidValues> invalidValues);
  void Reserve(std::size_t size) { fInputs.reserve(size); }
  int Size() const { return static_cast<int>(fInputs.size()); }
  const ScoreDictVar& GetVar(int index) const { return *fInputs[static_cast<std::size_t>(index)].field.var; }

  // Adds a derived field, whose values the transformations compute; the mining schema does not concern it.
  int AddDerived(ScoreDictVar& variable);
  bool HasDerived() const { return fHasDerived; }
  // The data fields that are read, by the model or by its derived fields: names in the order of their
  // indexes.
  std::vector<std::string> GetFieldNames() const;
  // Whether the value is invalid for its field, before any treatment.
  bool IsInvalid(int index, const ScoreValue& value) const {
    return Judge(fInputs[static_cast<std::size_t>(index)], value) == Standing::kInvalid;
  }
  // Why Read, or ReadForDerived, called the case invalid: the name of the data field; empty when none is to
  // blame.
  std::string FindInvalid(const ScoreCaseRecord& record) const;
  // Says that derived fields read the input.
  void UseInDerived(int index);

  // Says that the model reads the input as a number, or as a category of the table.  An input that it never
  // reads plays no part in a case.
  void UseAsNumber(int index);
  // As a number that is compared with ranges: see FieldNumber.h.
  void UseAsRangeNumber(int index) {
    UseAsNumber(index);
    fInputs[static_cast<std::size_t>(index)].isForRanges = true;
  }
  CategoryTable& UseAsCategory(int index);
  // The table of an input that is read as a category, else null.
  CategoryTable* GetCategories(int index) const {
    return fInputs[static_cast<std::size_t>(index)].categories.get();
  }

  // Says that the model deals with missing values of the inputs added so far itself: they do not end a case.
  // Infinite numbers then become the largest finite ones, for ranges are open at infinity.
  void AcceptMissing();
  // Says that a missing category of the input does not end a case; a missing number of it still does.
  void AcceptMissingCategory(int index) {
    fInputs[static_cast<std::size_t>(index)].acceptsMissingCategory = true;
  }

  // Points to the variables of these dictionaries, clones of the ones before, by name; there may be no
  // transformations.
  void Resolve(ScoreDictionary& dictionary, ScoreDictionary* transformations);
  // Resolves names to the slots of `layout` and finds the plain numbers; false when one of the inputs that
  // are read has no slot.
  bool Prepare(const ScoreCaseRecord& layout);
  // Sizes `values` for Read.
  void Size(CaseValues& values) const;

  // What derived fields see of a case: the inputs that they read, dealt with as the mining schema has it.
  // Makes the record, with a slot for each of them.
  CaseRecord MakeRecordForDerived() const;
  // Fills it.  False for an invalid value that ends the case.  Allocates nothing once warm.
  bool ReadForDerived(const ScoreCaseRecord& record, CaseRecord& treated) const;

  // Reads a case; `derived` holds the values of derived fields, where there are any.  An invalid value that
  // ends the case ends it wherever its field stands.  Unless the case is complete, `values` holds nothing of
  // use.  Allocates nothing.
  Outcome Read(const ScoreCaseRecord& record, const ScoreCaseRecord* derived, CaseValues& values) const;

  // Gives the tables of the inputs that are read as categories the case's values, as they are treated.  For
  // models that are under construction.
  void LearnCategories(const ScoreCaseRecord& record, const ScoreCaseRecord* derived) const;

 private:
  struct Input {
    MiningField field;
    std::shared_ptr<const InvalidValues> invalidValues;
    bool isNumber = false;
    bool isForRanges = false;
    std::shared_ptr<CategoryTable> categories;  // null: not read as a category; fixed once the model is built
    bool hasMissingValues = false;              // the variable has values that count as missing
    bool hasListedValues = false;               // the variable is categorical with listed values
    PlainNumbers plain;                         // none for a field that is more than a number
    ScoreValue::ValueType kind = ScoreValue::kNumericValueType;
    int slot = -1;
    bool acceptsMissing = false;
    bool acceptsMissingCategory = false;
    bool isDerived = false;

    const ScoreDictVar& Var() const { return *field.var; }
    bool TakesMissing() const { return acceptsMissing || (acceptsMissingCategory && !isNumber); }
  };

  enum class Standing { kValid, kMissing, kInvalid };

  static const ScoreValue* DerivedValueOf(const Input& input, const ScoreCaseRecord& derived);
  // Null for an empty slot and for a derived field without value.
  static const ScoreValue* ValueOf(const Input& input, const std::vector<ScoreValue*>& slots,
                                   const ScoreCaseRecord* derived);
  // What comes of a value by the rules of its field.
  struct Treated {
    Outcome outcome;
    // Of a complete outcome never null.  Of a missing one what the dictionary counts as missing, if that is
    // why; derived fields see it.
    const ScoreValue* value;
  };
  static Treated Treat(const Input& input, const ScoreValue* given);
  static const ScoreValue* TakeInvalid(const Input& input, const ScoreValue& value);
  static const ScoreValue* Bound(const Input& input, const ScoreValue& value);

  static void StoreForDerived(const Input& input, const ScoreValue& value, int slot, CaseRecord& record);
  static bool ReadPlain(const Input& input, std::size_t index, const ScoreValue& value, CaseValues& values);
  static Outcome ReadByRules(const Input& input, std::size_t index, const ScoreValue* value,
                             CaseValues& values);
  static void Store(const Input& input, std::size_t index, const ScoreValue& value, CaseValues& values);
  static Standing Judge(const Input& input, const ScoreValue& value);

  std::vector<Input> fInputs;
  std::vector<std::size_t> fRead;  // indexes of the inputs that the model reads
  std::vector<std::size_t> fReadForDerived;
  bool fHasDerived = false;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_INPUTS_H_
