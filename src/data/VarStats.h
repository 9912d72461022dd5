// Summary statistics of one variable, and the value that replaces missing ones.

#ifndef VEYRA_DATA_VARSTATS_H_
#define VEYRA_DATA_VARSTATS_H_

#include "data/NumericValue.h"
#include "data/Owned.h"
#include "veyra/Export.h"
#include "veyra/ScoreVarStats.h"

namespace KxVeyra_940 {

class VEYRA_API VarStats : public ScoreVarStats {
 public:
  // Minimum system-missing, maximum the largest finite double, mean 0, standard deviation 1.
  VarStats() = default;
  VarStats(double min, double max, double mean, double stddev);
  VarStats(const VarStats& other) = default;
  VarStats& operator=(const VarStats& other) = default;
  ~VarStats() override;

  ScoreVarStats* Clone() const override;
  void SetMin(double value) override;
  void SetMax(double value) override;
  void SetStddev(double value) override;
  void SetMean(double value) override;
  // Stores a clone and deletes the replacement held before; the caller keeps `value`.
  void SetMissingReplacement(const ScoreValue* value) override;
  double GetMin() const override;
  double GetMax() const override;
  double GetStddev() const override;
  double GetMean() const override;
  ScoreValue* GetMissingReplacement() const override;

 private:
  double fMin = NumericValue::gSysmisValue;
  double fMax = std::numeric_limits<double>::max();
  double fMean = 0;
  double fStddev = 1;
  OwnedPart<ScoreValue> fMissingReplacement;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_VARSTATS_H_
