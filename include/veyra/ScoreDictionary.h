// A named collection of variables, in the order in which they were added.
//
// Threads: const operations may be called by any number of threads once the dictionary is built.

#ifndef VEYRA_SCOREDICTIONARY_H_
#define VEYRA_SCOREDICTIONARY_H_

#include <iosfwd>
#include <string>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreDictVar.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreDictionary {
 public:
  virtual ~ScoreDictionary();
  virtual ScoreDictionary* Clone() const = 0;  // new; the caller owns it
  // Takes the variable.  False for an empty name, a null variable and a name held already; the variable
  // then stays the caller's.
  virtual bool AddVar(const std::string& name, ScoreDictVar* var) = 0;
  // Adds clones of the other's variables under names that are new.  Always returns false.
  virtual bool AddVar(const ScoreDictionary* dictionary) = 0;
  virtual bool RemoveVar(const std::string& name) = 0;  // deletes the variable; false for an unknown name
  virtual const ScoreDictVar* GetVar(const std::string& name) const = 0;  // lent; null when unknown
  virtual ScoreDictVar* GetVar(const std::string& name) = 0;
  virtual int Size() const = 0;
  virtual std::vector<ScoreDictVar*> GetScoreDictVars() const = 0;  // lent, sorted by name
  virtual std::vector<std::string> GetVarNames() const = 0;         // in the order of addition
  virtual void Display(std::ostream& out) const = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREDICTIONARY_H_
