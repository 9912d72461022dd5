// The listed categories of a variable, with their labels, in order.
//
// Look-ups go through an index, so a set may hold many categories.  A held label may be edited through its
// own setters: from then on, until a label is added or removed, look-ups compare the categories one by one.
// Threads: const operations may be called by several threads.  Nothing throws.

#ifndef VEYRA_DATA_VALUELABELSET_H_
#define VEYRA_DATA_VALUELABELSET_H_

#include "data/ValueLbl.h"
#include "data/ValuedParts.h"
#include "veyra/Export.h"
#include "veyra/ScoreValueLabel.h"

namespace KxVeyra_940 {

class VEYRA_API ValueLabelSet : public ValuedPartSet<ScoreValueLabelSet, ScoreValueLabel, ValueLbl> {
 public:
  ValueLabelSet() = default;
  ValueLabelSet(const ValueLabelSet& other) = default;
  ValueLabelSet& operator=(const ValueLabelSet& other) = default;
  ~ValueLabelSet() override;

  ScoreValueLabelSet* Clone() const override;
  const std::vector<ScoreValueLabel*>& GetAllValueLabels() const override;
  std::string GetLabelOfValue(const ScoreValue* value) const override;
  void Display(std::ostream& out) const override;

  using ValuedPartSet::Find;
  // The same with the equality of a string variable's options.
  int FindEqual(const ScoreValue* value, bool noSpaceTrim, bool emptyStringOK) const;
  // Whether some label holds this very object.
  bool HoldsObject(const ScoreValue* value) const;
  // Both for any set, through the index of one of this very class.
  static int Find(const ScoreValueLabelSet& set, const ScoreValue* value);
  static int FindEqual(const ScoreValueLabelSet& set, const ScoreValue* value, bool noSpaceTrim,
                       bool emptyStringOK);
  // Equal numbers stand for the same labels with the same values, whatever was done in between; 0 for labels
  // of which nothing can be said, because one was edited or is of a host's class.
  std::uint64_t GetContentId() const { return Parts().GetContentId(); }
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_VALUELABELSET_H_
