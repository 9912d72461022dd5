// Finds variables by name, at once when they are asked for in the dictionary's own order, as documents mostly
// do.

#ifndef VEYRA_PLUGINS_FIELDFINDER_H_
#define VEYRA_PLUGINS_FIELDFINDER_H_

#include <string>

#include "data/BaseDictionary.h"

namespace KxVeyra_940::Plugin {

class FieldFinder {
 public:
  // The dictionary is lent.
  explicit FieldFinder(ScoreDictionary& dictionary)
      : fDictionary(dictionary), fOrdered(dynamic_cast<BaseDictionary*>(&dictionary)) {}

  // Null when there is none.
  ScoreDictVar* Find(const std::string& name) {
    ScoreDictVar* next = fOrdered == nullptr ? nullptr : fOrdered->GetVarAt(fNext);
    if (next == nullptr || next->GetName() != name) return fDictionary.GetVar(name);
    ++fNext;
    return next;
  }

  // The next name asked for is expected to be the first one.
  void Restart() { fNext = 0; }

 private:
  ScoreDictionary& fDictionary;
  const BaseDictionary* fOrdered;  // the same, when its order is known
  std::size_t fNext = 0;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_FIELDFINDER_H_
