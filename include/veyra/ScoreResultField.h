// Named result values of one case.

#ifndef VEYRA_SCORERESULTFIELD_H_
#define VEYRA_SCORERESULTFIELD_H_

#include <map>
#include <string>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreResultField {
 public:
  // What an output field holds.
  enum ResultFeature : int {
    kNoFeature = 0,
    kPredictedValue = 1,
    kPredictedDisplayValue = 2,
    kProbability = 3,
    kResidual = 4,
    kStandardError = 5,
    kClusterId = 6,
    kClusterAffinity = 7,
    kEntityId = 8,
    kEntityAffinity = 9,
    kWarning = 10,
    kRuleValue = 11,
    kStandardDeviation = 12,
  };

  virtual ~ScoreResultField();
  // Takes the values as they are; the values held before are deleted unless they are among the new ones.
  virtual void SetMapResultValue(const std::map<std::string, ScoreValue*>& values) = 0;
  virtual const std::map<std::string, ScoreValue*>& GetMapResultValue() const = 0;  // lent
  virtual ScoreValue* GetResultValue(const std::string& name) const = 0;            // lent; null when unknown
  // False when the entry holds a value of another kind.
  virtual bool SetResultValue(const std::string& name, double value) = 0;
  virtual bool SetResultValue(const std::string& name, const std::string& text) = 0;
  // Stores a clone or the content; false for null and for another kind.
  virtual bool SetResultValue(const std::string& name, const ScoreValue* value) = 0;
  virtual int GetResultType(const std::string& name) const = 0;  // 0 for every name
  // Takes the value when the name is new; otherwise nothing happens and it stays the caller's.
  virtual void AddResultField(const std::string& name, ScoreValue* value) = 0;
  virtual std::vector<std::string> GetResultFields() const = 0;  // the names, sorted
  virtual int GetResultSize() const = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCORERESULTFIELD_H_
