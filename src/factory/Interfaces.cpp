// The destructors of the abstract interfaces that plug-ins implement: one home for each vtable.

#include "veyra/ScoreModel.h"
#include "veyra/ScoreResult.h"
#include "veyra/ScoreTranslator.h"
#include "veyra/ScoreVersionInfo.h"

namespace KxVeyra_940 {

ScoreModel::~ScoreModel() = default;
ScoreResult::~ScoreResult() = default;
ScoreTranslator::~ScoreTranslator() = default;
ScoreVersionInfo::~ScoreVersionInfo() = default;

}  // namespace KxVeyra_940
