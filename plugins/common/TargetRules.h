// What a document does with a predicted number before it is the answer: bounds, rescaling, casting.

#ifndef VEYRA_PLUGINS_TARGETRULES_H_
#define VEYRA_PLUGINS_TARGETRULES_H_

#include <limits>
#include <xercesc/dom/DOMElement.hpp>

#include "veyra/ScoreDictVar.h"

namespace KxVeyra_940::Plugin {

struct TargetRules {
  enum class Cast { kNone, kRound, kCeiling, kFloor };

  // Bounds first, then number x factor + constant, then the cast to a whole number.  Halves round away from
  // zero.
  double Apply(double number) const;
  // The standard error of the answer from that of the predicted number: rescaled, the rest leaves it alone.
  // A missing one stays missing.
  double ApplyToError(double error) const;

  double min = -std::numeric_limits<double>::infinity();
  double max = std::numeric_limits<double>::infinity();
  double factor = 1;
  double constant = 0;
  Cast cast = Cast::kNone;
};

// Reads the "Target" of the model's target from its "Targets" child; rules that change nothing when there is
// none. Raises 260151, 260152, and 260258 for a minimum above the maximum.
TargetRules ReadTargetRules(const xercesc::DOMElement& model, const ScoreDictVar* target);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_TARGETRULES_H_
