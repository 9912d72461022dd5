// A named collection of variables: found by hash, listed in the order of addition or sorted by name.
//
// Threads: const operations may be called by any number of threads once the dictionary is built.
// Nothing throws.

#ifndef VEYRA_DATA_BASEDICTIONARY_H_
#define VEYRA_DATA_BASEDICTIONARY_H_

#include <memory>
#include <string>
#include <vector>

#include "data/Identity.h"
#include "data/NameIndex.h"
#include "veyra/Export.h"
#include "veyra/ScoreDictionary.h"

namespace KxVeyra_940 {

class VEYRA_API BaseDictionary : public ScoreDictionary {
 public:
  BaseDictionary() = default;
  // Copies clone every variable and keep the order of addition; assignment deletes the own variables.
  BaseDictionary(const BaseDictionary& other);
  BaseDictionary& operator=(const BaseDictionary& other);
  ~BaseDictionary() override;

  ScoreDictionary* Clone() const override;
  // Refused, the variable stays whose it was: an empty name, null, a name held already, and a variable that
  // the dictionary holds under the variable's own name.
  bool AddVar(const std::string& name, ScoreDictVar* var) override;
  bool AddVar(const ScoreDictionary* dictionary) override;
  bool RemoveVar(const std::string& name) override;
  const ScoreDictVar* GetVar(const std::string& name) const override;
  ScoreDictVar* GetVar(const std::string& name) override;
  int Size() const override;
  std::vector<ScoreDictVar*> GetScoreDictVars() const override;
  std::vector<std::string> GetVarNames() const override;
  void Display(std::ostream& out) const override;

  // Changes whenever a variable is added or removed, and is no other dictionary's: what was found by name is
  // still there as long as the number stays.
  std::uint64_t GetContentId() const { return fContentId; }

  // The variable that was added as number `position`, from 0; null beyond the last one.
  ScoreDictVar* GetVarAt(std::size_t position) const {
    return position < fEntries.size() ? fEntries[position].var.get() : nullptr;
  }

 private:
  struct Entry {
    std::string name;
    std::unique_ptr<ScoreDictVar> var;
  };

  std::uint32_t PositionOf(const std::string& name) const;
  ScoreDictVar* Find(const std::string& name) const;
  // Takes the variable, unless the name is held: false.
  bool Take(const std::string& name, ScoreDictVar* var);
  void TakeClone(const std::string& name, const ScoreDictVar& var);

  std::vector<Entry> fEntries;  // in the order of addition
  NameIndex fIndex;
  std::uint64_t fContentId = NextIdentity();
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_BASEDICTIONARY_H_
