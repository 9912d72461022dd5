// Everything that a host uses.

#ifndef VEYRA_VEYRA_H_
#define VEYRA_VEYRA_H_

#include "data/CaseRecord.h"
#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "error/ProcessState.h"
#include "veyra/KxStatus.h"
#include "veyra/ModelFactory.h"
#include "veyra/ScoreCaseRecord.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/ScoreModel.h"
#include "veyra/ScoreResult.h"
#include "veyra/ScoreValue.h"
#include "veyra/VYException.h"

#endif  // VEYRA_VEYRA_H_
