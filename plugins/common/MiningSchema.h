// The MiningSchema of a model: which fields it uses, and what becomes of missing, invalid and extreme values.

#ifndef VEYRA_PLUGINS_MININGSCHEMA_H_
#define VEYRA_PLUGINS_MININGSCHEMA_H_

#include <limits>
#include <memory>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "translate/PMMLTranslator.h"
#include "veyra/ScoreDictionary.h"

namespace KxVeyra_940::Plugin {

enum class Usage { kActive, kTarget, kSupplementary };
enum class OutlierTreatment { kAsIs, kAsMissing, kAsExtreme };
enum class InvalidTreatment { kReturnInvalid, kAsIs, kAsMissing, kAsValue };

struct MiningField {
  ScoreDictVar* var = nullptr;  // lent by the dictionary
  Usage usage = Usage::kActive;
  OutlierTreatment outliers = OutlierTreatment::kAsIs;
  double lowValue = -std::numeric_limits<double>::infinity();
  double highValue = std::numeric_limits<double>::infinity();
  std::shared_ptr<const ScoreValue> lowBound;  // of kAsExtreme: what stands for values beyond the bounds
  std::shared_ptr<const ScoreValue> highBound;
  InvalidTreatment invalidTreatment = InvalidTreatment::kReturnInvalid;
  bool missingIsInvalid = false;                         // missingValueTreatment="returnInvalid"
  std::shared_ptr<const ScoreValue> missingReplacement;  // immutable, so that copies of a model share it
  std::shared_ptr<const ScoreValue> invalidReplacement;  // of kAsValue
};

using MiningSchema = std::vector<MiningField>;

// Reads the "MiningSchema" child of the model element.  Raises 260114 without one, 260124 for a field that
// the dictionary does not have, 260202 for a field given twice, 260258 for a low value above the high one,
// and 260120, 260151, 260152 and 260285 for attributes.
MiningSchema ReadMiningSchema(const PMMLTranslator& translator, const xercesc::DOMElement& model,
                              ScoreDictionary& dictionary);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_MININGSCHEMA_H_
