// The result object of every plug-in.  A case allocates nothing once the first one has been scored.

#ifndef VEYRA_PLUGINS_PLUGINRESULT_H_
#define VEYRA_PLUGINS_PLUGINRESULT_H_

#include <memory>
#include <string>
#include <vector>

#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "veyra/ScoreResult.h"

namespace KxVeyra_940::Plugin {

class PluginResult final : public ScoreResult {
 public:
  // What some model kinds give besides a value and probabilities.
  enum Extra : unsigned {
    kEntityIds = 1,       // which part of the model decided
    kConfidences = 2,     // of each category
    kAffinities = 4,      // of the case to each part that decided
    kStandardErrors = 8,  // of the predicted number
  };

  // A part of the model that decided: a node, a neighbour.
  struct Entity {
    const std::string* id;  // lent, outlives the case
    double affinity;        // distance or similarity; system-missing when the model has none
  };

  explicit PluginResult(ResultKind kind);
  ~PluginResult() override;

  void SetPredictedValue(ScoreValue* value) override;
  void SetProbability(double probability) override { fProbability = probability; }
  int GetResultKind() const override { return fKind; }
  void AddValueProbability(ScoreValue* value, double probability) override;
  const ScoreValue* GetPredictedValue() const override { return fPredicted; }
  double GetProbability() const override { return fProbability; }
  int GetNumberOfCategories() const override { return static_cast<int>(fCategories.size()); }
  const ScoreValue* GetCategory(int index) const override;
  double GetCategoryProbability(int index) const override;
  int GetNumberOfOutputs() const override { return static_cast<int>(fOutputs.size()); }
  const std::string& GetOutputName(int index) const override;
  const ScoreValue* GetOutputValue(int index) const override;
  void Reset() override;

  // Lay the result out; a clone of `value` is kept.
  void AddCategory(const ScoreValue& value);
  void AddOutput(const std::string& name);
  void SetExtras(unsigned extras) { fExtras = extras; }
  unsigned GetExtras() const { return fExtras; }
  // The answer for a further target, without output fields of its own.
  void AddTarget(std::unique_ptr<PluginResult> answer) { fFurther.push_back(std::move(answer)); }
  // The targets are counted from 0, which is this result itself.
  PluginResult& OfTarget(int target);
  const PluginResult& OfTarget(int target) const;

  // For scoring: nothing is allocated.
  void SetPredictedNumber(double number);
  bool HasPredictedNumber() const { return fPredicted == &fNumber; }
  double GetPredictedNumber() const { return fNumber.GetNumber(); }  // REQUIRES: a number was set
  // False for a predicted number that is infinite or none.
  bool IsPredictionFinite() const;
  // Takes the answer back: there is none.
  void DropPrediction();
  void SetPredictedText(const std::string& text);
  void SetPredictedCategory(int index);  // also its probability
  void SetCategoryProbability(int index, double probability);
  void SetCategoryConfidence(int index, double confidence);
  double GetCategoryConfidence(int index) const;  // system-missing when there is none
  // What decided, the first one first; nothing when no part of the model did.  Nothing is allocated for as
  // many as were reserved.
  void ReserveEntities(std::size_t count) { fEntities.reserve(count); }
  void AddEntity(const std::string* id, double affinity = NumericValue::gSysmisValue) {
    fEntities.push_back({id, affinity});
  }
  // REQUIRES: rank > 0.  Null when there is none of that rank.
  const Entity* GetEntity(int rank) const;
  // Of the predicted number; system-missing when there is none.
  void SetStandardError(double error) { fStandardError = error; }
  double GetStandardError() const { return fStandardError; }
  // The index of the predicted category, or -1.
  int GetPredictedCategory() const { return fPredictedCategory; }
  int FindCategory(const ScoreValue& value) const;  // -1 when there is none

  // A number that is not finite is missing.
  void SetOutputNumber(int index, double number);
  void SetOutputText(int index, const std::string& text);
  // Lends a value of this result, or null for a missing one, as the output's value.
  void SetOutputValue(int index, const ScoreValue* value);

 private:
  struct Category {
    std::unique_ptr<ScoreValue> value;
    double probability;
    double confidence = NumericValue::gSysmisValue;
  };
  struct Output {
    std::string name;
    NumericValue number;
    StringValue text;
    const ScoreValue* value;  // null: missing
  };

  Category& At(int index) { return fCategories[static_cast<std::size_t>(index)]; }
  Output& OutputAt(int index) { return *fOutputs[static_cast<std::size_t>(index)]; }

  ResultKind fKind;
  const ScoreValue* fPredicted = nullptr;  // fNumber, fText, a category, or fGivenValue
  int fPredictedCategory = -1;
  NumericValue fNumber;
  StringValue fText{""};
  std::unique_ptr<ScoreValue> fGivenValue;
  double fProbability = NumericValue::gSysmisValue;
  unsigned fExtras = 0;
  std::vector<Entity> fEntities;  // by rank
  double fStandardError = NumericValue::gSysmisValue;
  std::vector<Category> fCategories;
  std::vector<std::unique_ptr<Output>> fOutputs;  // at fixed addresses: values point inside
  std::vector<std::unique_ptr<PluginResult>> fFurther;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_PLUGINRESULT_H_
