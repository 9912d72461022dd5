// A named collection of variables: a map ordered by the bytes of the names, and the order of addition.
//
// Threads: const operations may be called by any number of threads once the dictionary is built.
// Nothing throws.

#ifndef VEYRA_DATA_BASEDICTIONARY_H_
#define VEYRA_DATA_BASEDICTIONARY_H_

#include <map>
#include <memory>
#include <string>
#include <unordered_set>
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
  // the dictionary holds under another name.
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
  ScoreDictVar* Find(const std::string& name) const;
  void Take(const std::string& name, ScoreDictVar* var);

  std::map<std::string, std::unique_ptr<ScoreDictVar>> fVars;
  std::unordered_set<const ScoreDictVar*> fHeld;  // the variables of fVars
  std::vector<std::string> fNames;                // in the order of addition
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_BASEDICTIONARY_H_
