// A category value with its prior probability.

#ifndef VEYRA_DATA_VALUEPROBABILITY_H_
#define VEYRA_DATA_VALUEPROBABILITY_H_

#include "data/HeldPart.h"
#include "data/Owned.h"
#include "veyra/Export.h"
#include "veyra/ScoreValueProbability.h"

namespace KxVeyra_940 {

class VEYRA_API ValueProbability : public ScoreValueProbability, public HeldPart {
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
  bool operator==(const ScoreValueProbability& other) const override;
  bool operator>(const ScoreValueProbability& other) const override;
  bool operator<(const ScoreValueProbability& other) const override;
  bool operator<=(const ScoreValueProbability& other) const override;
  bool operator>=(const ScoreValueProbability& other) const override;
  double GetProbability() const override;
  ScoreValue* GetValue() const override;
  void Display(std::ostream& out) const override;

 private:
  OwnedPart<ScoreValue> fValue;
  double fProbability;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_VALUEPROBABILITY_H_
