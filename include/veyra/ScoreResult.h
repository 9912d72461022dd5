// The answer of a model for one case.
//
//   std::unique_ptr<ScoreResult> result(model->NewResult());
//   for each case: model->Score(record, *result); read result
//
// Values are lent by the result and stay until the next Score, Reset or setter.  Threads: one at a time.

#ifndef VEYRA_SCORERESULT_H_
#define VEYRA_SCORERESULT_H_

#include <string>

#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreResult {
 public:
  // What a model answers with.  Kinds that carry no probability of each category are documented by
  // BaseModel::HandleMissingValue, which adds none to them.
  enum ResultKind : int {
    kCategoryResult = 0,  // a predicted category and the probability of each category
    kValueResult = 1,     // a predicted value alone
  };

  virtual ~ScoreResult();
  virtual void SetPredictedValue(ScoreValue* value) = 0;  // takes it; null means missing
  virtual void SetProbability(double probability) = 0;    // of the predicted value
  virtual int GetResultKind() const = 0;
  // Takes the value; sets the probability of that category, which is added when it is not one yet.
  virtual void AddValueProbability(ScoreValue* value, double probability) = 0;

  virtual const ScoreValue* GetPredictedValue() const = 0;  // null when missing
  virtual double GetProbability() const = 0;                // system-missing when there is none
  // The categories in the model's order, with their probabilities (system-missing when there is none).
  // REQUIRES: 0 <= index < GetNumberOfCategories().
  virtual int GetNumberOfCategories() const = 0;
  virtual const ScoreValue* GetCategory(int index) const = 0;
  virtual double GetCategoryProbability(int index) const = 0;
  // The document's output fields in its order.  REQUIRES: 0 <= index < GetNumberOfOutputs().
  virtual int GetNumberOfOutputs() const = 0;
  virtual const std::string& GetOutputName(int index) const = 0;
  virtual const ScoreValue* GetOutputValue(int index) const = 0;  // null when missing
  // No predicted value, no probabilities, no output values; categories and output fields stay.
  virtual void Reset() = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCORERESULT_H_
