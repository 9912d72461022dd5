// A category value with its prior probability.

#ifndef VEYRA_DATA_VALUEPROBABILITY_H_
#define VEYRA_DATA_VALUEPROBABILITY_H_

#include "data/ValuedParts.h"
#include "veyra/Export.h"
#include "veyra/ScoreValueProbability.h"

namespace KxVeyra_940 {

class VEYRA_API ValueProbability : public ValuedPart<ScoreValueProbability> {
 public:
  // Takes the value, which may be null: then the entry cannot be compared.  The probability is not checked.
  ValueProbability(ScoreValue* value, double probability);
  ValueProbability(const ValueProbability& other) = default;
  ValueProbability& operator=(const ValueProbability& other) = default;
  ~ValueProbability() override;

  // Deletes the value that it replaces; the value held already stays, whose content may be another by now.
  bool SetValueProbability(ScoreValue* value, double probability) override;
  bool SetProbability(double probability) override;
  ScoreValueProbability* Clone() const override;
  double GetProbability() const override;
  void Display(std::ostream& out) const override;

 private:
  double fProbability;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_VALUEPROBABILITY_H_
