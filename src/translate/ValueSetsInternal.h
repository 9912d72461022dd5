// Adding to the value sets of a variable, which take what they add and leave the rest to the caller.

#ifndef VEYRA_TRANSLATE_VALUESETSINTERNAL_H_
#define VEYRA_TRANSLATE_VALUESETSINTERNAL_H_

#include <memory>
#include <string>

#include "data/ValueLbl.h"
#include "veyra/ScoreMissingValueSet.h"
#include "veyra/ScoreValueLabel.h"

namespace KxVeyra_940 {

inline void AddRange(ScoreMissingValueSet& set, std::unique_ptr<ScoreValueRange> range) {
  if (set.Add(range.get())) static_cast<void>(range.release());
}

inline void AddLabel(ScoreValueLabelSet& set, std::unique_ptr<ScoreValue> value, std::string text) {
  auto label = std::make_unique<ValueLbl>(value.get(), std::move(text));
  static_cast<void>(value.release());
  if (set.Add(label.get())) static_cast<void>(label.release());
}

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_VALUESETSINTERNAL_H_
