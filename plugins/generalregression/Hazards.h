// The baseline cumulative hazard of a Cox model: a step function of time, one for each stratum.
//
// Source: the scoring procedure of CoxRegression models in the PMML standard's GeneralRegressionModel: the
// hazard at the last time of the table that is not after the case's; 0 before the first one; none after the
// greatest time that the table is good for.

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_HAZARDS_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_HAZARDS_H_

#include <cstddef>
#include <vector>

namespace KxVeyra_940::Plugin {

struct HazardStep {
  double time;
  double hazard;  // from that time on
};

struct HazardTable {
  // NaN beyond the greatest time, and for NaN.
  double At(double time) const;

  double maxTime = 0;
  std::vector<HazardStep> steps;  // by ascending time
};

class Hazards {
 public:
  // One table for all cases.
  void SetTable(HazardTable table);
  // The table of a category of the stratifying input.
  void SetTable(int code, HazardTable table);

  // `code` plays no part without strata.  NaN for a stratum without a table.
  double At(double time, int code) const;

 private:
  std::vector<HazardTable> fTables;
  std::vector<int> fTableOfCode;  // -1: none; empty without strata
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_HAZARDS_H_
