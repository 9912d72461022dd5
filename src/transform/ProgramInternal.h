// An expression tree as a flat program: fields are loaded, then one step per function runs over operands that
// are made once.
//
//   Program program(root);          // the tree outlives the program and no longer changes
//   program.Bind(context);          // once per binding
//   const Operand& result = program.Run(context);
//
// Where every field holds a number, and every function has a short form and a finite result, nothing needs to
// be treated: those cases take the short cut of transform/NumberStepsInternal.h.
//
// How a step treats what is missing and invalid:
//   1. A field's own replacement stands in when its variable counts the value as missing.
//   2. A missing operand decides as the function's row says: the node's replacement, else its default value,
//      else the result is missing.
//   3. An operand that its variable calls invalid gives, when invalid values count as missing, the default
//      value, else a missing result.
//   4. The function runs.  No result: the default value, else missing.  A domain error, NaN and infinity
//   among
//      them: missing, or the default value when invalid values count as missing.

#ifndef VEYRA_TRANSFORM_PROGRAMINTERNAL_H_
#define VEYRA_TRANSFORM_PROGRAMINTERNAL_H_

#include <memory>
#include <vector>

#include "transform/CaseContext.h"
#include "transform/FunctionCallInternal.h"
#include "transform/FunctionTree.h"
#include "transform/NumberStepsInternal.h"
#include "transform/Operand.h"

namespace KxVeyra_940 {

class Program {
 public:
  explicit Program(FunctionTree& root);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // Resolves the fields and notes variable and slot in the statistics of their nodes.
  void Bind(const CaseContext& context);
  const Operand& Run(const CaseContext& context);

 private:
  struct Load {
    FunctionTree* node;
    FieldSource source;
    Operand* operand;
    const ScoreValue* replacement;  // of a missing value; null for none
    bool asksAccount;               // someone asks whether the variable counts the value as missing
    bool asksValidity;

    void Execute(const CaseContext& context);
  };

  struct Step {
    const FunctionRow* function;
    std::vector<const Operand*> given;
    std::vector<const Operand*> seen;      // what the function sees: texts as numbers where those are due
    std::unique_ptr<Operand[]> converted;  // made on first need
    Operand* result;
    // Null for none.  Of the field's type at the root, elsewhere of the kind that the function gives.
    std::unique_ptr<const ScoreValue> replacement;
    std::unique_ptr<const ScoreValue> fallback;
    bool invalidIsMissing;
    FunctionMemory memory;

    void Execute(std::vector<double>& numbers);
    const Operand* Converted(std::size_t i);
    bool IsSettled(bool anyMissing, bool anyInvalid);
    bool IsConditionSettled();
    void AnswerMissing();
    void AnswerDefault();
    void AnswerNothing();
    void Answer(const ScoreValue& value);
  };

  void Flatten(FunctionTree& root);
  void AddLeaf(FunctionTree& node, const FunctionTree* parent, Operand& operand);
  void AddStep(FunctionTree& node, bool isRoot, const std::vector<Operand*>& operands, Operand& result);
  NumberSteps MakeNumberSteps() const;
  bool RunOverNumbers(const CaseContext& context);
  void BindImputation(Step& step);
  const ScoreDictVar* VariableOf(const Operand* operand) const;  // null for what is no field

  std::vector<Operand> fOperands;  // one per node; the last one is the result
  std::vector<Load> fLoads;
  std::vector<Step> fSteps;
  std::vector<double> fNumbers;
  NumberSteps fNumberSteps;  // the short cut for cases in which everything is a number that is there
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_PROGRAMINTERNAL_H_
