#include "generalregression/StandardErrors.h"

#include <cmath>

namespace KxVeyra_940::Plugin {

double StandardErrors::Of(const CaseValues& values) {
  for (std::size_t i = 0; i < fColumns.size(); ++i) fRow[i] = fColumns[i].Of(values);
  double variance = 0;
  for (const Covariance& covariance : fCovariances) {
    const double term = covariance.value * fRow[static_cast<std::size_t>(covariance.row)] *
                        fRow[static_cast<std::size_t>(covariance.column)];
    variance += covariance.row == covariance.column ? term : 2 * term;
  }
  return std::sqrt(variance);
}

}  // namespace KxVeyra_940::Plugin
