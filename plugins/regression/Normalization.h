// From the values of the regression equations to a prediction or to probabilities.
//
// Source: the normalisation methods of the PMML standard's RegressionModel; common/Links.h has the functions.

#ifndef VEYRA_PLUGINS_REGRESSION_NORMALIZATION_H_
#define VEYRA_PLUGINS_REGRESSION_NORMALIZATION_H_

#include <vector>

namespace KxVeyra_940::Plugin {

enum class Normalization { kNone, kSimplemax, kSoftmax, kLogit, kProbit, kCloglog, kExp, kLoglog, kCauchit };

// F(y) of the method.  Softmax and simplemax of one equation are the logistic function.
double InverseLink(Normalization method, double y);

// Replaces the equations' values of all categories, in the model's order, by probabilities; false when they
// give none (a sum of 0, a value that is not finite).
//   softmax     exp(y_j) / sum
//   simplemax   y_j / sum
//   none        y_j, and 1 minus the others for the last category
//   a link      of two categories: F of the equation `decider`, and its complement for the other one;
//               of more: F(y_j) each
bool NormalizeNominal(Normalization method, std::size_t decider, std::vector<double>& values);

// The same for ordered categories of a cumulative model: F(y_1), F(y_j) - F(y_{j-1}), and 1 - F(y_{n-1}).
bool NormalizeOrdinal(Normalization method, std::vector<double>& values);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_REGRESSION_NORMALIZATION_H_
