// The model that plug-ins derive from: reads the inputs of a case, falls back when there is no answer, fills
// the output fields.  A plug-in adds ScoreCase, its mathematics.

#ifndef VEYRA_PLUGINS_PLUGINMODEL_H_
#define VEYRA_PLUGINS_PLUGINMODEL_H_

#include <memory>
#include <string>
#include <vector>

#include "common/Inputs.h"
#include "common/OutputFields.h"
#include "common/PluginResult.h"
#include "common/TargetRules.h"
#include "data/CaseRecord.h"
#include "factory/BaseModel.h"

namespace KxVeyra_940::Plugin {

// What became of a case whose inputs were read.
enum class CaseOutcome {
  kAnswered,
  kUndefined,  // the mathematics give no answer
  kMissing,    // for want of a value: the fallback answers
};

class PluginModel : public BaseModel {
 public:
  // Status code of a layout in which an input has no slot.
  static constexpr long kInputWithoutSlot = 90028;

  explicit PluginModel(std::string kind);
  ~PluginModel() override;

  KxScore::KxStatus PrepareForCases(const ScoreCaseRecord& layout) override;
  std::string GetModelKind() const override { return fKind; }
  // The inputs are predictors; other roles are kept by name.
  VarRole GetVarRole(const ScoreDictVar* var) const override;
  VarRole GetVarRole(const std::string& name) const override;
  ScoreResult* NewResult() const override;
  KxScore::KxStatus Score(const ScoreCaseRecord& input, ScoreResult& result) noexcept override;
  bool HasNoProbabilityOutput() const override { return fTargets.front().categories.empty(); }

  // For translators.  The model has its dictionaries by then.
  Inputs& GetInputs() { return fInputs; }
  // Takes the categories that the model tells apart, in its order; without any it predicts numbers.
  // `target` counts the targets from 0, the model's target.
  void SetCategories(std::vector<std::unique_ptr<ScoreValue>> categories, int target = 0);
  // REQUIRES: the model has a target, and the name is a field of its dictionary.
  void AddFurtherTarget(const std::string& name);
  // The model's target, where there is one, and the further ones.
  std::vector<const ScoreDictVar*> GetTargetVars() const;
  void SetOutputs(OutputFields outputs);
  // What becomes of a predicted number; answers of HandleMissingValue stay as they are.
  void SetTargetRules(const TargetRules& rules, int target = 0) { TargetAt(target).rules = rules; }
  // To be called when the model knows what it reads: the transformations are evaluated for every case from
  // here on.
  void UseTransformations();
  // Reading cases without scoring them, such as the rows that a model was trained with.  A clone does it, so
  // that derived fields that look back at earlier cases start anew.  PrepareInputs answers whether the layout
  // has all that is read.
  bool PrepareInputs(const ScoreCaseRecord& layout);
  // As Score reads the case.  Values of categorical inputs whose fields list none become categories, of this
  // model and of those that it was cloned from.
  Inputs::Outcome LearnInputs(const ScoreCaseRecord& input);
  const CaseValues& GetValues() const { return fValues; }  // what was read
  // A result with the categories and no output fields.
  std::unique_ptr<PluginResult> NewBareResult() const;

 protected:
  // A copy with a dictionary of its own.
  PluginModel(const PluginModel& other);

  // Scores a case that has been read: sets the predicted value and, for categories, their probabilities.
  // `values` may be changed.  Allocates nothing.
  virtual CaseOutcome ScoreCase(CaseValues& values, PluginResult& result) = 0;
  // What the model's results hold besides, as PluginResult::Extra flags.
  virtual unsigned GetExtras() const { return 0; }
  // How many parts of the model may decide together.
  virtual std::size_t GetMostEntities() const { return 1; }

 private:
  struct Target {
    std::string name;  // of a further target
    std::vector<std::unique_ptr<ScoreValue>> categories;
    TargetRules rules;
  };

  Target& TargetAt(int target) { return fTargets[static_cast<std::size_t>(target)]; }
  static std::unique_ptr<PluginResult> NewResultOf(const Target& target);
  // False for a value that ends the case; `derived` is null when no derived fields are read.
  bool Derive(const ScoreCaseRecord& input, const ScoreCaseRecord*& derived);
  Inputs::Outcome ReadInputs(const ScoreCaseRecord& input);
  // False when the model's own target is left without an answer.
  bool ApplyRules(PluginResult& answer) const;
  static bool ApplyRules(const TargetRules& rules, PluginResult& answer);
  KxScore::KxStatus Answer(const ScoreCaseRecord& input, PluginResult& answer);
  CaseOutcome OutcomeOf(const ScoreCaseRecord& input, PluginResult& answer);

  std::string fKind;
  Inputs fInputs;
  std::vector<Target> fTargets;  // at least one
  OutputFields fOutputs;
  CaseValues fValues;
  bool fUsesTransformations = false;
  CaseRecord fTreated;  // what derived fields see
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_PLUGINMODEL_H_
