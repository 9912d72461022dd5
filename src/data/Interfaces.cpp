// The destructors of the abstract interfaces of values and dictionaries: one home for each vtable, so that an
// object made in a plug-in has the same type as one made here.

#include "veyra/ScoreCaseRecord.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/ScoreEncoder.h"
#include "veyra/ScoreMissingValueSet.h"
#include "veyra/ScoreResultField.h"
#include "veyra/ScoreValue.h"
#include "veyra/ScoreValueLabel.h"
#include "veyra/ScoreValueProbability.h"
#include "veyra/ScoreValueRange.h"
#include "veyra/ScoreVarStats.h"

namespace KxVeyra_940 {

ScoreValue::~ScoreValue() = default;
ScoreValueRange::~ScoreValueRange() = default;
ScoreMissingValueSet::~ScoreMissingValueSet() = default;
ScoreValueLabel::~ScoreValueLabel() = default;
ScoreValueLabelSet::~ScoreValueLabelSet() = default;
ScoreValueProbability::~ScoreValueProbability() = default;
ScoreValueProbabilitySet::~ScoreValueProbabilitySet() = default;
ScoreVarStats::~ScoreVarStats() = default;
ScoreEncoder::~ScoreEncoder() = default;
ScoreDictVar::~ScoreDictVar() = default;
ScoreDictionary::~ScoreDictionary() = default;
ScoreCaseRecord::~ScoreCaseRecord() = default;
ScoreResultField::~ScoreResultField() = default;

}  // namespace KxVeyra_940
