// How the value of one variable selects a child: by ranges of values (ScaleSplit) or by categories
// (DiscreteSplit).
//
// Threads: const operations may be called by any number of threads once the split is filled.
// Nothing here throws.

#ifndef VEYRA_SCORESPLITVAR_H_
#define VEYRA_SCORESPLITVAR_H_

#include <iosfwd>
#include <string>

#include "veyra/Export.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreSplitVar {
 public:
  enum SplitVarType : int {
    kScaleSplit = 0,
    kDiscreteSplit = 1,
  };
  // The index of no child.
  static constexpr int kNoChild = -1;

  ScoreSplitVar() = default;  // no variable yet
  // Lends the variable, which belongs to a dictionary and outlives the split.
  explicit ScoreSplitVar(const ScoreDictVar* variable);
  ScoreSplitVar(const ScoreSplitVar& other) = default;
  ScoreSplitVar& operator=(const ScoreSplitVar& other) = default;
  virtual ~ScoreSplitVar();

  virtual ScoreSplitVar* Clone() const = 0;  // new, with the same variable; the caller owns it
  virtual void SetSplitVar(const ScoreDictVar* variable);
  // The child that missing values go to; kNoChild, as at the beginning, when they go to none.
  virtual void SetMissvalMap(int child);
  virtual const ScoreDictVar* GetSplitVar() const;  // lent; null when there is none
  // The variable's; empty, numeric and continuous without a variable.
  virtual const std::string& GetSplitName() const;
  virtual const std::string& GetSplitLabel() const;
  virtual ScoreDictVar::VariableType GetSplitType() const;
  virtual int GetSplitVarType() const = 0;
  virtual ScoreDictVar::MeasureLevel GetSplitMLevel() const;
  virtual int GetMissvalMap() const;
  // The child of the value, or kNoChild.  What counts as missing is each kind's own: see there.
  virtual int GetSplitChildIndex(const ScoreValue* value) const = 0;
  virtual int GetSplitChildIndex(double number) const = 0;
  virtual void Display(std::ostream& out) const = 0;

 protected:
  const ScoreDictVar* fSplitVar = nullptr;  // lent
  int fMissvalMap = kNoChild;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCORESPLITVAR_H_
