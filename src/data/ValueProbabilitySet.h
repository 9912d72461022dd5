// The prior probabilities of a variable's categories, in order.
//
// Look-ups go through an index, as those of labels do (ValueLabelSet.h).
// Threads: const operations may be called by several threads.  Nothing throws.

#ifndef VEYRA_DATA_VALUEPROBABILITYSET_H_
#define VEYRA_DATA_VALUEPROBABILITYSET_H_

#include "data/ValueProbability.h"
#include "data/ValuedParts.h"
#include "veyra/Export.h"
#include "veyra/ScoreValueProbability.h"

namespace KxVeyra_940 {

class VEYRA_API ValueProbabilitySet
    : public ValuedPartSet<ScoreValueProbabilitySet, ScoreValueProbability, ValueProbability> {
 public:
  ValueProbabilitySet() = default;
  ValueProbabilitySet(const ValueProbabilitySet& other) = default;
  ValueProbabilitySet& operator=(const ValueProbabilitySet& other) = default;
  ~ValueProbabilitySet() override;

  ScoreValueProbabilitySet* Clone() const override;
  const std::vector<ScoreValueProbability*>& GetAllValueProbabilities() const override;
  double GetProbabilityOfValue(const ScoreValue* value) const override;
  void Display(std::ostream& out) const override;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_VALUEPROBABILITYSET_H_
