// An expression over numbers as steps over registers: its short cut for the cases, nearly all of them, in
// which every field holds a number and every function has a finite result.  Any other case it leaves alone.
//
// Registers are known by the positions of the expression's operands.  Threads: one thread at a time.

#ifndef VEYRA_TRANSFORM_NUMBERSTEPSINTERNAL_H_
#define VEYRA_TRANSFORM_NUMBERSTEPSINTERNAL_H_

#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "data/NumericValue.h"
#include "transform/FunctionTable.h"

namespace KxVeyra_940 {

class NumberSteps {
 public:
  // Takes no case.
  NumberSteps() = default;
  // No register has a number yet.
  explicit NumberSteps(std::size_t registers) : fRegisters(registers), fPlaces(registers, kNoPlace) {}

  void SetConstant(std::size_t place, double number);
  // The field that `load` stands for; a field that was loaded before is not loaded again.
  void AddLoad(std::size_t load, const std::string& name, std::size_t place);
  // False for a function without a short form for these operands, and for an operand without a number.
  bool AddStep(const FunctionBody& body, std::span<const std::size_t> operands, std::size_t result);

  // Computes the last step.  `valueOf(load)` gives a field's value, which may be null.  False for a case that
  // is none of these.
  template <class ValueOf>
  bool Run(ValueOf valueOf, double& number) {
    if (fSteps.empty()) return false;
    double* const registers = fRegisters.data();
    for (const Load& load : fLoads) {
      const ScoreValue* const value = valueOf(load.load);
      if (value == nullptr || value->GetType() != ScoreValue::kNumericValueType) return false;
      registers[load.place] = static_cast<const NumericValue*>(value)->GetNumber();
      if (NumericValue::IsSystemMissingValue(registers[load.place])) return false;
    }
    for (const Step& step : fSteps) {
      const double result =
          step.function(registers[step.first], registers[step.second], registers[step.third]);
      if (!IsOrdinary(result)) return false;
      registers[step.result] = result;
    }
    number = registers[fSteps.back().result];
    return true;
  }

 private:
  struct Load {
    std::size_t load;
    std::uint32_t place;
  };
  struct Step {
    NumberFunction function;
    std::uint32_t first, second, third;  // those that it does not look at are the first one
    std::uint32_t result;
  };
  static constexpr std::uint32_t kNoPlace = UINT32_MAX;

  // Finite, and not the missing number, which is the smallest one.
  static bool IsOrdinary(double number) { return std::fabs(number) < std::numeric_limits<double>::max(); }

  std::vector<double> fRegisters;
  std::vector<std::uint32_t> fPlaces;  // by operand: its register, kNoPlace for none
  std::vector<std::string> fNames;     // of the fields loaded, in the order of fLoads
  std::vector<Load> fLoads;
  std::vector<Step> fSteps;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_NUMBERSTEPSINTERNAL_H_
