// What a derived field keeps from case to case.

#ifndef VEYRA_TRANSFORM_TRANSFORMVARINTERNAL_H_
#define VEYRA_TRANSFORM_TRANSFORMVARINTERNAL_H_

#include <cstdint>
#include <memory>
#include <vector>

#include "transform/BinFinder.h"
#include "transform/CaseContext.h"
#include "transform/ProgramInternal.h"
#include "transform/TransformVar.h"
#include "transform/ValueHistory.h"

namespace KxVeyra_940 {

struct TransformVar::State {
  std::unique_ptr<ScoreValue> own;  // of the variable's type; null before it is needed
  ScoreValue* result = nullptr;     // what holds the last result: `own`, or the place that was given for it
  bool isTextMissing = false;
  bool isConstantSet = false;
  std::uint64_t enteredIn = 0;   // the ask that last came here
  std::uint64_t computedIn = 0;  // the ask that `result` answers

  bool isBound = false;
  CaseContext::Binding binding;
  std::uint64_t bindingId = 0;  // of the last context; 0 when it had none
  FieldSource source;
  std::vector<const TransformVar*> reads;
  std::unique_ptr<Program> program;
  Operand work;
  BinFinder bins;

  std::uint64_t lagCase = 0;  // the case whose answer of the lag is in `own`
  ValueHistory history;
  std::vector<ValueHistory> blockHistories;
  std::vector<FieldSource> blockSources;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_TRANSFORMVARINTERNAL_H_
