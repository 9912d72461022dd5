// What a derived field keeps from case to case.

#ifndef VEYRA_TRANSFORM_TRANSFORMVARINTERNAL_H_
#define VEYRA_TRANSFORM_TRANSFORMVARINTERNAL_H_

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
  bool isBeingEvaluated = false;

  bool isBound = false;
  CaseContext::Binding binding;
  std::uint64_t bindingId = 0;  // of the last context; 0 when it had none
  FieldSource source;
  std::unique_ptr<Program> program;
  Operand work;
  BinFinder bins;

  ValueHistory history;
  std::vector<ValueHistory> blockHistories;
  std::vector<FieldSource> blockSources;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_TRANSFORMVARINTERNAL_H_
