// A category value with its display label.

#ifndef VEYRA_DATA_VALUELBL_H_
#define VEYRA_DATA_VALUELBL_H_

#include <string>

#include "data/ValuedParts.h"
#include "veyra/Export.h"
#include "veyra/ScoreValueLabel.h"

namespace KxVeyra_940 {

class VEYRA_API ValueLbl : public ValuedPart<ScoreValueLabel> {
 public:
  // Takes the value, which may be null: then the label cannot be compared.
  ValueLbl(ScoreValue* value, std::string label);
  ValueLbl(const ValueLbl& other) = default;
  ValueLbl& operator=(const ValueLbl& other) = default;
  ~ValueLbl() override;

  // Deletes the value that it replaces; the value held already stays, whose content may be another by now.
  bool SetValueLabel(ScoreValue* value, const std::string& label) override;
  bool SetLabel(const std::string& label) override;
  ScoreValueLabel* Clone() const override;
  const std::string& GetLabel() const override;
  void Display(std::ostream& out) const override;

 private:
  std::string fLabel;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_VALUELBL_H_
