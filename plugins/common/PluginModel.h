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
  KxScore::KxStatus Score(const ScoreCaseRecord& input, ScoreResult& result) override;
  bool HasNoProbabilityOutput() const override { return fCategories.empty(); }

  // For translators.  The model has its dictionaries by then.
  Inputs& GetInputs() { return fInputs; }
  // Takes the categories that the model tells apart, in its order; without any it predicts numbers.
  void SetCategories(std::vector<std::unique_ptr<ScoreValue>> categories);
  void SetOutputs(OutputFields outputs);
  // What becomes of a predicted number; answers of HandleMissingValue stay as they are.
  void SetTargetRules(const TargetRules& rules) { fTargetRules = rules; }
  // To be called when the model knows what it reads: the transformations are evaluated for every case from
  // here on.
  void UseTransformations();
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

 private:
  CaseOutcome OutcomeOf(const ScoreCaseRecord& input, PluginResult& answer);

  std::string fKind;
  Inputs fInputs;
  std::vector<std::unique_ptr<ScoreValue>> fCategories;
  TargetRules fTargetRules;
  OutputFields fOutputs;
  CaseValues fValues;
  bool fUsesTransformations = false;
  CaseRecord fTreated;  // what derived fields see
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_PLUGINMODEL_H_
