// A named collection of variables: found by hash, listed in the order of addition or sorted by name.
//
// Threads: const operations may be called by any number of threads once the dictionary is built.
// Nothing throws.

#ifndef VEYRA_DATA_BASEDICTIONARY_H_
#define VEYRA_DATA_BASEDICTIONARY_H_

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

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

 private:
  // Nodes keep their place: fOrder points to the names in it.
  using Vars = std::unordered_map<std::string, std::unique_ptr<ScoreDictVar>>;

  ScoreDictVar* Find(const std::string& name) const;
  // Takes the variable under a name that is new.
  void Take(const std::string& name, ScoreDictVar* var);
  void CopyFrom(const BaseDictionary& other);

  Vars fVars;
  std::vector<const std::string*> fOrder;  // of addition
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_BASEDICTIONARY_H_
