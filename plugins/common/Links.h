// Link functions of regression models: from a linear predictor to a mean, or to probabilities.
//
// Sources: the link functions of the PMML standard's GeneralRegressionModel and the normalisation methods of
// its RegressionModel.  The functions are written so that neither tail overflows or cancels: the complement
// of a probability is computed, never 1 minus it.
// Threads: everything here may be called by any number of threads.  Nothing throws or allocates.

#ifndef VEYRA_PLUGINS_LINKS_H_
#define VEYRA_PLUGINS_LINKS_H_

#include <vector>

namespace KxVeyra_940::Plugin {

enum class LinkFunction {
  kIdentity,
  kLog,
  kLogc,  // log(1 - mean)
  kLogit,
  kProbit,
  kCloglog,
  kLoglog,  // -log(-log(mean))
  kCauchit,
  kPower,      // mean^d, log(mean) for d = 0
  kOddspower,  // (odds^d - 1) / d, log(odds) for d = 0
  kNegbin,     // log(mean / (mean + 1 / k))
};

struct Link {
  LinkFunction function = LinkFunction::kIdentity;
  double parameter = 0;  // d of kPower and kOddspower, k of kNegbin

  // The mean of a linear predictor; NaN where the link has none, and for NaN.
  double Mean(double eta) const;
  // 1 - Mean(eta).
  double Complement(double eta) const;
  // The derivative of Mean.
  double Slope(double eta) const;
};

bool AreNumbers(const std::vector<double>& values);

// Divides by the sum; false when it is 0 or not finite.
bool DivideBySum(std::vector<double>& values);

// Replaces the values by exp(y_j) / sum; false when the largest is not finite.
bool Softmax(std::vector<double>& values);

// Replaces the linear predictors of ordered categories by their probabilities: F(y_1), F(y_j) - F(y_{j-1}),
// and 1 - F(y_{n-1}) for the last one, whose own value plays no part.  False when one is no number.
// REQUIRES: two values or more.
bool DivideCumulative(const Link& link, std::vector<double>& values);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_LINKS_H_
