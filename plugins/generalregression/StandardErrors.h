// The standard error of a predicted mean, from the covariances of the estimates.
//
// Source: the delta method, |dmean/deta| sqrt(x' V x) with the case's row x of the design matrix.

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_STANDARDERRORS_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_STANDARDERRORS_H_

#include <vector>

#include "generalregression/Description.h"
#include "generalregression/LinearPredictor.h"

namespace KxVeyra_940::Plugin {

class StandardErrors {
 public:
  StandardErrors() = default;
  // Columns by parameter.
  StandardErrors(std::vector<Column> columns, std::vector<Covariance> covariances)
      : fColumns(std::move(columns)), fCovariances(std::move(covariances)), fRow(fColumns.size()) {}

  bool IsGiven() const { return !fCovariances.empty(); }
  // The standard error of the linear predictor; NaN when the covariances give none.  Allocates nothing.
  double Of(const CaseValues& values);

 private:
  std::vector<Column> fColumns;
  std::vector<Covariance> fCovariances;  // of each pair of parameters once
  std::vector<double> fRow;              // working state
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_STANDARDERRORS_H_
