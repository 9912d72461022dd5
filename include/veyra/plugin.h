// Everything that a plug-in uses: what hosts use, and the base classes and building blocks of the library.

#ifndef VEYRA_PLUGIN_H_
#define VEYRA_PLUGIN_H_

#include "data/BaseDictionary.h"
#include "data/DictVar.h"
#include "data/MissingValueSet.h"
#include "data/Range.h"
#include "data/ResultField.h"
#include "data/ResultVar.h"
#include "data/ScoreBinningEncoder.h"
#include "data/ScoreCatNumericEncoder.h"
#include "data/ScoreCatStringEncoder.h"
#include "data/ValueLabelSet.h"
#include "data/ValueLbl.h"
#include "data/ValueProbability.h"
#include "data/ValueProbabilitySet.h"
#include "data/VarStats.h"
#include "error/Raise.h"
#include "error/ScoringLog.h"
#include "factory/BaseModel.h"
#include "factory/VersionInfo.h"
#include "predicate/CompoundPredicate.h"
#include "predicate/ConstantPredicates.h"
#include "predicate/DiscreteSplit.h"
#include "predicate/ScaleSplit.h"
#include "predicate/SetPredicate.h"
#include "predicate/SimplePredicate.h"
#include "transform/TransformationDictionary.h"
#include "translate/DOMElemUtility.h"
#include "translate/DomReader.h"
#include "translate/ModelElements.h"
#include "translate/PMMLModelTags.h"
#include "translate/PMMLTranslator.h"
#include "veyra/ScoreTranslator.h"
#include "veyra/veyra.h"

#endif  // VEYRA_PLUGIN_H_
