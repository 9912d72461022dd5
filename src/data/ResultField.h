// Named result values of one case, ordered by the bytes of their names.
//
// An entry keeps the kind of its value.  A null value counts as no value: it may be set to any kind.
// Threads: one at a time.  Nothing throws.

#ifndef VEYRA_DATA_RESULTFIELD_H_
#define VEYRA_DATA_RESULTFIELD_H_

#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreResultField.h"

namespace KxVeyra_940 {

class VEYRA_API ResultField : public ScoreResultField {
 public:
  ResultField() = default;
  ResultField(const ResultField& other) = delete;
  ResultField& operator=(const ResultField& other) = delete;
  ~ResultField() override;  // deletes every value, once whatever the number of its names

  void SetMapResultValue(const std::map<std::string, ScoreValue*>& values) override;
  const std::map<std::string, ScoreValue*>& GetMapResultValue() const override;
  ScoreValue* GetResultValue(const std::string& name) const override;
  bool SetResultValue(const std::string& name, double value) override;
  bool SetResultValue(const std::string& name, const std::string& text) override;
  // An entry takes the content of a number or a text of its own kind; without an entry a clone is stored.
  bool SetResultValue(const std::string& name, const ScoreValue* value) override;
  int GetResultType(const std::string& name) const override;
  // A value held under another name stays where it is.
  void AddResultField(const std::string& name, ScoreValue* value) override;
  std::vector<std::string> GetResultFields() const override;
  int GetResultSize() const override;

 private:
  using Values = std::map<std::string, ScoreValue*>;

  // Takes the value for a name that has none.
  bool Store(const std::string& name, std::unique_ptr<ScoreValue> value);

  Values fValues;
  std::unordered_set<const ScoreValue*> fOwned;  // the values of all entries; null among them plays no part
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_RESULTFIELD_H_
