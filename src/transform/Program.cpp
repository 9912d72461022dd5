#include <algorithm>
#include <cmath>

#include "transform/ProgramInternal.h"

namespace KxVeyra_940 {

namespace {

// The nodes in the order of their evaluation: children before their parent, from left to right.
std::vector<FunctionTree*> PostOrder(FunctionTree& root) {
  std::vector<FunctionTree*> nodes;
  std::vector<FunctionTree*> open{&root};
  // Parents before children, from right to left, is the reverse of what is wanted.
  while (!open.empty()) {
    FunctionTree* const node = open.back();
    open.pop_back();
    nodes.push_back(node);
    for (FunctionTree* child : node->Children())
      if (child != nullptr) open.push_back(child);
  }
  std::ranges::reverse(nodes);
  return nodes;
}

bool IsFunction(const FunctionTree& node) {
  return FindFunction(node.GetNodeStats().GetTransformFunction()) != nullptr;
}

// What "isMissing" answers of a field is its variable's account.
bool AsksAccount(const FunctionTree* parent) {
  if (parent == nullptr) return false;
  const int function = parent->GetNodeStats().GetTransformFunction();
  return function == TF_ISMISSING || function == TF_ISNOTMISSING ||
         function == TF_IMPUTECATFIELDMISSINGAGAINSTCONTARGET;
}

bool InvalidIsMissing(const FunctionTree* node) {
  return node != nullptr && node->GetNodeStats().GetInvalidValueTreatment() == ApplyNodeStats::kAsMissing;
}

// A value as text, as it is shown.
std::string ShownText(const Operand& value) {
  return value.kind == Operand::kNumber ? NumericValue(value.number).GetString()
                                        : DateTimeValue(value.number, value.dateTimeKind).GetString();
}

// A replacement of the field's type as an operand of another function has it: of the kind that the functions
// of its node give.  Null when it is no such value.
std::unique_ptr<ScoreValue> AsOperand(const ScoreValue* replacement, ResultRule result) {
  Operand value;
  value.Lend(replacement);
  if (value.isMissing) return nullptr;
  const bool isText = value.kind == Operand::kText;
  if (result == ResultRule::kNumber && value.kind != Operand::kNumber)
    value.SetNumber(isText ? NumberOfText(value.text) : value.number);
  if (value.isMissing) return nullptr;
  if (result == ResultRule::kText && !isText) return std::make_unique<StringValue>(ShownText(value));
  if (result == ResultRule::kNumber) return std::make_unique<NumericValue>(value.number);
  return std::unique_ptr<ScoreValue>(replacement->Clone());
}

// The field's value as it stands.
std::unique_ptr<ScoreValue> AsResult(const ScoreValue* replacement) {
  return std::unique_ptr<ScoreValue>(replacement == nullptr ? nullptr : replacement->Clone());
}

bool NeedsNumber(OperandRule rule, std::size_t i) {
  switch (rule) {
    case OperandRule::kNumbers:
      return true;
    case OperandRule::kTextThenNumbers:
    case OperandRule::kThenNumbers:
      return i > 0;
    case OperandRule::kFirstIsNumber:
      return i == 0;
    case OperandRule::kAsTheyAre:
    case OperandRule::kTexts:
      break;
  }
  return false;
}

bool NeedsText(OperandRule rule, std::size_t i) {
  return rule == OperandRule::kTexts || (rule == OperandRule::kTextThenNumbers && i == 0);
}

// Two nested functions pass their operands on; what they lend lives as long as the case.
bool IsConverted(OperandRule rule, std::size_t i, const Operand& operand) {
  return operand.kind == Operand::kText ? NeedsNumber(rule, i) : NeedsText(rule, i) && !operand.isMissing;
}

}  // namespace

Program::~Program() = default;

Program::Program(FunctionTree& root) {
  Flatten(root);
  fNumberSteps = MakeNumberSteps();
}

void Program::Flatten(FunctionTree& root) {
  const std::vector<FunctionTree*> nodes = PostOrder(root);
  fOperands = std::vector<Operand>(nodes.size());
  std::vector<Operand*> waiting;  // operands whose parent is still to come
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    FunctionTree& node = *nodes[i];
    const auto isThere = [](const FunctionTree* child) { return child != nullptr; };
    const auto count = static_cast<std::size_t>(std::ranges::count_if(node.Children(), isThere));
    const std::vector<Operand*> operands(waiting.end() - static_cast<std::ptrdiff_t>(count), waiting.end());
    waiting.resize(waiting.size() - count);
    if (IsFunction(node)) {
      AddStep(node, &node == &root, operands, fOperands[i]);
    } else {
      AddLeaf(node, &node == &root ? nullptr : node.GetParent(), fOperands[i]);
    }
    waiting.push_back(&fOperands[i]);
  }
}

void Program::AddLeaf(FunctionTree& node, const FunctionTree* parent, Operand& operand) {
  const ApplyNodeStats& stats = node.GetNodeStats();
  if (stats.IsConstNode()) return operand.Lend(stats.GetValue());
  if (stats.GetParameterName().empty()) return;
  fLoads.push_back({&node, FieldSource(stats.GetParameterName(), FieldSource::kStoredFirst), &operand,
                    stats.GetFieldrefRecodeMissValueRep(), AsksAccount(parent), InvalidIsMissing(parent)});
}

void Program::AddStep(FunctionTree& node, bool isRoot, const std::vector<Operand*>& operands,
                      Operand& result) {
  const ApplyNodeStats& stats = node.GetNodeStats();
  Step step;
  step.function = FindFunction(stats.GetTransformFunction());
  step.given.assign(operands.begin(), operands.end());
  step.seen = step.given;
  step.result = &result;
  const ScoreValue* const replacement = stats.GetRecodeMissValueRep();
  const ScoreValue* const fallback = stats.GetDefaultValue();
  const ResultRule rule = step.function->result;
  step.replacement = isRoot ? AsResult(replacement) : AsOperand(replacement, rule);
  if (step.replacement != nullptr && step.replacement->IsSystemMissingValue()) step.replacement.reset();
  step.fallback = isRoot ? AsResult(fallback) : AsOperand(fallback, rule);
  step.invalidIsMissing = InvalidIsMissing(&node);
  const std::vector<std::vector<double>>& arrays = stats.GetArrays();
  if (arrays.size() == 2) {
    step.memory.means = &arrays[0];
    step.memory.variances = &arrays[1];
  }
  fSteps.push_back(std::move(step));
}

void Program::Bind(const CaseContext& context) {
  for (Load& load : fLoads) {
    load.source.Bind(context);
    ApplyNodeStats stats = load.node->GetNodeStats();
    stats.SetVariable(load.source.GetVariable());
    stats.SetVarIndex(load.source.GetSlot());
    load.node->SetNodeStats(stats);
  }
  for (Step& step : fSteps)
    if (step.function->function == TF_IMPUTECATFIELDMISSINGAGAINSTCONTARGET) BindImputation(step);
}

const ScoreDictVar* Program::VariableOf(const Operand* operand) const {
  const auto load = std::ranges::find(fLoads, operand, &Load::operand);
  return load == fLoads.end() ? nullptr : load->source.GetVariable();
}

void Program::BindImputation(Step& step) {
  step.memory.categorical = nullptr;
  if (step.memory.means == nullptr || step.given.size() != 2) return;
  const ScoreDictVar* const variables[] = {VariableOf(step.given[0]), VariableOf(step.given[1])};
  step.memory.categoricalOperand = ImputedParameter(variables[0], variables[1]);
  step.memory.categorical = variables[step.memory.categoricalOperand];
}

// None when a field asks for more than its value, or a function has no short form.
NumberSteps Program::MakeNumberSteps() const {
  const auto positionOf = [this](const Operand* operand) {
    return static_cast<std::size_t>(operand - fOperands.data());
  };
  const auto isPlain = [](const Load& load) {
    return load.replacement == nullptr && !load.asksAccount && !load.asksValidity;
  };
  if (fSteps.empty() || !std::ranges::all_of(fLoads, isPlain)) return {};
  NumberSteps steps(fOperands.size());
  for (std::size_t i = 0; i < fOperands.size(); ++i)
    if (fOperands[i].kind == Operand::kNumber && !fOperands[i].isMissing)
      steps.SetConstant(i, fOperands[i].number);
  for (std::size_t i = 0; i < fLoads.size(); ++i)
    steps.AddLoad(i, fLoads[i].source.GetName(), positionOf(fLoads[i].operand));
  for (const Step& step : fSteps) {
    std::vector<std::size_t> operands;
    for (const Operand* operand : step.given) operands.push_back(positionOf(operand));
    if (!steps.AddStep(step.function->body, operands, positionOf(step.result))) return {};
  }
  return steps;
}

const Operand& Program::Run(const CaseContext& context) {
  if (RunOverNumbers(context)) return fOperands.back();
  for (Load& load : fLoads) load.Execute(context);
  for (Step& step : fSteps) step.Execute(fNumbers);
  return fOperands.back();
}

bool Program::RunOverNumbers(const CaseContext& context) {
  double number = 0;
  const auto valueOf = [&](std::size_t load) { return fLoads[load].source.ValueIn(context); };
  if (!fNumberSteps.Run(valueOf, number)) return false;
  fOperands.back().SetNumber(number);
  fOperands.back().isInvalid = false;
  return true;
}

void Program::Load::Execute(const CaseContext& context) {
  const ScoreValue* const value = source.ValueIn(context);
  operand->Lend(value);
  if (replacement == nullptr && !asksAccount && !asksValidity) return;
  const ScoreDictVar* const variable = source.GetVariable();
  const bool isMissing = variable == nullptr ? operand->isMissing : variable->IsMissingValue(value);
  if (isMissing && replacement != nullptr) return operand->Lend(replacement);
  operand->isCountedMissing = isMissing;
  operand->isInvalid = asksValidity && !isMissing && variable != nullptr && !variable->IsValidValue(value);
}

void Program::Step::Execute(std::vector<double>& numbers) {
  bool anyMissing = false;
  bool anyInvalid = false;
  for (std::size_t i = 0; i < given.size(); ++i) {
    const Operand* operand = given[i];
    if (IsConverted(function->operands, i, *operand)) operand = Converted(i);
    seen[i] = operand;
    anyMissing |= operand->isMissing;
    anyInvalid |= operand->isInvalid;
  }
  if ((anyMissing || (anyInvalid && invalidIsMissing)) && IsSettled(anyMissing, anyInvalid)) return;

  FunctionCall call{seen, *result, numbers, memory};
  Outcome outcome = function->body.evaluate(call);
  if (outcome == Outcome::kDone && result->kind == Operand::kNumber) {
    if (result->isMissing) {
      outcome = function->missingIsDomainError ? Outcome::kDomainError : Outcome::kNoResult;
    } else if (!std::isfinite(result->number)) {
      outcome = Outcome::kDomainError;
    }
  }
  if (outcome == Outcome::kMissingOperand) return AnswerMissing();
  if (outcome == Outcome::kNoResult) return AnswerDefault();
  if (outcome == Outcome::kDomainError) return invalidIsMissing ? AnswerDefault() : AnswerNothing();
  result->isCountedMissing = result->isMissing;
  result->isInvalid = false;
}

const Operand* Program::Step::Converted(std::size_t i) {
  if (converted == nullptr) converted = std::make_unique<Operand[]>(given.size());
  const Operand& from = *given[i];
  Operand& to = converted[i];
  if (from.kind == Operand::kText) {
    to.SetNumber(from.isMissing ? NumericValue::gSysmisValue : NumberOfText(from.text));
  } else {
    to.buffer = ShownText(from);
    to.SetBufferAsText(static_cast<int>(to.buffer.size()));
  }
  to.isInvalid = from.isInvalid;
  return &to;
}

// Whether what is missing or invalid gives the result.
bool Program::Step::IsSettled(bool anyMissing, bool anyInvalid) {
  const auto decides = [this](bool conjunction) {
    return std::ranges::any_of(seen, [conjunction](const Operand* operand) {
      return !operand->isMissing && (operand->number == 0) == conjunction;
    });
  };
  switch (function->missing) {
    case MissingRule::kNeverDecides:
      return false;
    case MissingRule::kCondition:
      return IsConditionSettled();
    case MissingRule::kAnyDecides:
      if (anyMissing) return AnswerMissing(), true;
      break;
    case MissingRule::kSkipped:
      if (anyMissing && replacement != nullptr) return AnswerMissing(), true;
      break;
    case MissingRule::kFirstDecides:
      if (seen[0]->isMissing) return AnswerMissing(), true;
      break;
    case MissingRule::kConjunction:
    case MissingRule::kDisjunction: {
      if (!anyMissing) break;
      const bool conjunction = function->missing == MissingRule::kConjunction;
      if (replacement != nullptr || !decides(conjunction)) return AnswerMissing(), true;
      return result->SetNumber(conjunction ? 0 : 1), true;
    }
  }
  if (!anyInvalid || !invalidIsMissing) return false;
  AnswerDefault();
  return true;
}

// The branch that is not taken does not count.
bool Program::Step::IsConditionSettled() {
  const Operand& condition = *seen[0];
  if (condition.isMissing) return AnswerMissing(), true;
  const std::size_t branch = TakesFirstBranch(condition.number) ? 1 : 2;
  const Operand* const taken = branch < seen.size() ? seen[branch] : nullptr;
  if (taken != nullptr && taken->isMissing) return AnswerMissing(), true;
  const bool isInvalid = condition.isInvalid || (taken != nullptr && taken->isInvalid);
  if (!isInvalid || !invalidIsMissing) return false;
  AnswerDefault();
  return true;
}

void Program::Step::AnswerMissing() { replacement != nullptr ? Answer(*replacement) : AnswerDefault(); }

void Program::Step::AnswerDefault() { fallback != nullptr ? Answer(*fallback) : AnswerNothing(); }

void Program::Step::AnswerNothing() {
  result->isInvalid = false;
  function->result == ResultRule::kText ? result->SetMissingText() : result->SetMissingNumber();
}

void Program::Step::Answer(const ScoreValue& value) { result->Lend(&value); }

}  // namespace KxVeyra_940
