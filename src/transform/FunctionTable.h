// The built-in functions of derived fields: one row each, read by everything that concerns them: the map of
// names, the classifiers, the checks of parameters, the evaluation and the command line's list.
//
// Threads: constant data.

#ifndef VEYRA_TRANSFORM_FUNCTIONTABLE_H_
#define VEYRA_TRANSFORM_FUNCTIONTABLE_H_

#include <cstddef>
#include <span>
#include <string_view>

#include "veyra/Export.h"
#include "veyra/TransformFunction.h"

namespace KxVeyra_940 {

class ScoreDictVar;
struct FunctionCall;

// The classes that type checks go by; a function may be in several.
enum FunctionClass : unsigned {
  kNoFunctionClass = 0,
  kArithmeticFunction = 1U << 0,
  kMathematicsFunction = 1U << 1,
  kStatisticFunction = 1U << 2,
  kDateTimeFunction = 1U << 3,
  kStringFunction = 1U << 4,
  kLogicFunction = 1U << 5,
  kMixedInputFunction = 1U << 6,
  kNumericInputFunction = 1U << 7,
  kStringInputFunction = 1U << 8,
  kNumericOutputFunction = 1U << 9,
  kStringOutputFunction = 1U << 10,
  kMixedOutputFunction = 1U << 11,
};

// What a document may write as parameters.
enum class ParameterRule : unsigned char { kAnything, kNumbers, kTexts, kTextThenNumbers };

// How the evaluation looks at operands: a text in the place of a number counts as the number it writes.
enum class OperandRule : unsigned char {
  kAsTheyAre,
  kNumbers,
  kTexts,
  kTextThenNumbers,
  kFirstIsNumber,
  kThenNumbers,  // the first one as it is
};

// When a missing operand decides the result, before the function is called.
enum class MissingRule : unsigned char {
  kAnyDecides,    // one is enough
  kSkipped,       // the others count, as long as there is one
  kFirstDecides,  // members that are missing are skipped
  kConjunction,   // unless another one decides "and"
  kDisjunction,   // unless another one decides "or"
  kCondition,     // the condition, then the branch that it takes
  kNeverDecides,  // the function answers
};

enum class ResultRule : unsigned char { kNumber, kText, kOfTheOperand };

// What the function did.
enum class Outcome : unsigned char {
  kDone,
  kNoResult,
  kDomainError,
  kMissingOperand,  // one that it needed, of a function that settles nothing before
};

// A function of numbers that are there; it looks at the first one, two or three.
using NumberFunction = double (*)(double, double, double);

struct FunctionBody {
  Outcome (*evaluate)(FunctionCall& call);
  // The same for operands that are all numbers and there; null when there is no such short form.  A result
  // that is missing or not finite leaves the answer to `evaluate`.
  NumberFunction ofNumbers = nullptr;
  std::size_t numberCount = 0;  // of operands, where there is a short form
};

struct FunctionRow {
  static constexpr int kAnyCount = -1;
  static constexpr int kUncheckedCount = -2;

  TransformFunction function;
  const char* name;         // the first one, which messages show
  const char* alternative;  // another accepted one; null when there is none
  unsigned classes;         // of FunctionClass
  int parameterCount;
  ParameterRule parameters;
  OperandRule operands;
  MissingRule missing;
  ResultRule result;
  // A missing number as result says that an operand lay outside the function's domain.
  bool missingIsDomainError;
  FunctionBody body;
};

// By number.
VEYRA_API std::span<const FunctionRow, kTransformFunctionCount> AllFunctions();
// Null for a number outside the table.
VEYRA_API const FunctionRow* FindFunction(int number);
// By one of its names, letter for letter; null when there is none.
VEYRA_API const FunctionRow* FindFunction(std::string_view name);
// "<not defined>" for a number outside the table.
VEYRA_API const char* FunctionName(int number);

// Of the two fields of an imputation, either of which may be unknown (null), the one that is imputed: the one
// that is not continuous, the first one when that does not tell.
VEYRA_API std::size_t ImputedParameter(const ScoreDictVar* first, const ScoreDictVar* second);

inline bool IsInClass(int number, FunctionClass which) {
  const FunctionRow* const row = FindFunction(number);
  return row != nullptr && (row->classes & which) != 0;
}

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_FUNCTIONTABLE_H_
