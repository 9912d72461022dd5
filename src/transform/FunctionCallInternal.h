// One call of a built-in function, as the evaluation makes it.

#ifndef VEYRA_TRANSFORM_FUNCTIONCALLINTERNAL_H_
#define VEYRA_TRANSFORM_FUNCTIONCALLINTERNAL_H_

#include <unicode/regex.h>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "transform/FunctionTable.h"
#include "transform/Operand.h"
#include "veyra/ScoreDictVar.h"

namespace KxVeyra_940 {

// The last regular expression of a call, compiled: in most documents it never changes.
//
// A search takes a limited number of steps and a limited stack, both counted and not timed, so that no
// pattern and no text can hold a case up: an expression that would take more is one that fails.
class RegularExpression {
 public:
  // Null for a pattern that does not compile.  `text` lives as long as the matcher is used.
  icu::RegexMatcher* Matcher(std::string_view pattern, const icu::UnicodeString& text);

 private:
  std::string fPattern;
  std::unique_ptr<icu::RegexMatcher> fMatcher;
  bool fIsKnown = false;
};

bool FindsMatch(RegularExpression& expression, std::string_view text, std::string_view pattern);
// Replaces `out`: every match replaced, or the text itself when the expression or the replacement fails.
// False, with `out` left as it is, for a result of more than `maxSize` bytes.
bool ReplaceMatches(RegularExpression& expression, std::string_view text, std::string_view pattern,
                    std::string_view replacement, std::int64_t maxSize, std::string& out);

// The median of values none of which is missing, which it sorts; system-missing without any and with a NaN.
double MedianOf(std::vector<double>& values);

// Which numbers make a condition take its first branch.
inline bool TakesFirstBranch(double condition) {
  // Nearly all conditions are truths, and which one cannot be foreseen: no branch tells them apart.
  const bool isTruth = (condition == 0) | (condition == 1);
  return isTruth ? condition == 1 : NumericValue::IsEqual(condition, 1);
}

// What a node of an expression keeps from case to case, beside its operands.
struct FunctionMemory {
  RegularExpression expression;
  // The imputation's categories, their means and variances.
  const ScoreDictVar* categorical = nullptr;
  std::size_t categoricalOperand = 0;
  const std::vector<double>* means = nullptr;
  const std::vector<double>* variances = nullptr;
  std::string scratch;
};

// No operand of a rule other than kSkipped, kFirstDecides, kConjunction and kDisjunction is missing, but
// those of a function that settles nothing.
struct FunctionCall {
  std::span<const Operand* const> operands;
  Operand& result;
  std::vector<double>& numbers;  // room for a list of numbers
  FunctionMemory& memory;

  const Operand& operator[](std::size_t i) const { return *operands[i]; }
  std::size_t Count() const { return operands.size(); }
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_FUNCTIONCALLINTERNAL_H_
