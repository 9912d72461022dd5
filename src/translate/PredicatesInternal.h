// What the readers of both kinds of splits share: comparisons, and what a "SimplePredicate" asks for.

#ifndef VEYRA_TRANSLATE_PREDICATESINTERNAL_H_
#define VEYRA_TRANSLATE_PREDICATESINTERNAL_H_

#include <string>
#include <xercesc/dom/DOMElement.hpp>

#include "translate/BaseTranslator.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreSplitVar.h"

namespace KxVeyra_940 {

inline constexpr int kHolds = 0;  // the child of what satisfies a predicate

inline bool IsString(const ScoreDictVar& variable) {
  return variable.GetVarType() == ScoreDictVar::STRING_VAR;
}

// Which bounds of a comparison its value gives, and whether the value itself is inside.
struct ComparisonRow {
  const char* text;
  bool isLow;
  bool isHigh;
  bool isClosed;
};
// Null for any other word.
const ComparisonRow* FindComparison(const XMLCh* text);

// What a "SimplePredicate" asks for.
struct Question {
  enum Kind { kMissing, kNotMissing, kComparison };
  Kind kind;
  const XMLCh* predicateOperator;
  const XMLCh* value;  // null when it is absent
};

Question ReadQuestion(const xercesc::DOMElement& element, const ScoreDictVar& variable);

// What the reader of either split reports; a question for a missing value is all in the split then.
void TellQuestion(const BaseTranslator& translator, const Question& question, ScoreSplitVar& split,
                  std::string& predicateOperator, bool& isMissing, std::string& value);

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_PREDICATESINTERNAL_H_
