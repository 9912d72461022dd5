// What a document says about a general regression model, whatever its vocabulary: names are resolved, nothing
// is computed yet.

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_DESCRIPTION_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_DESCRIPTION_H_

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "veyra/ScoreValue.h"

namespace KxVeyra_940::Plugin {

// Parameters, predictors and categories are meant by their positions in the lists of the description.
constexpr int kEveryCategory = -1;

struct Parameter {
  std::string name;
  double referencePoint = 0;  // of Cox models: the column's value that has hazard ratio 1
};

// Categories are codes of the input's table of categories.
struct Predictor {
  std::string name;
  int input = 0;
  bool isFactor = false;
  std::vector<int> categories;    // of a factor that lists its own
  std::size_t columns = 0;        // of the contrasts; 0 without any
  std::vector<double> contrasts;  // by row and column; a row for each of `categories`
};

// A predictor that takes part in the column of a parameter.
struct DesignCell {
  int parameter = 0;
  int predictor = 0;
  int targetCategory = kEveryCategory;
  double exponent = 1;     // of a covariate
  int category = 0;        // of a factor without contrasts: its code
  std::size_t column = 0;  // of a factor with contrasts
};

struct Estimate {
  int parameter = 0;
  int targetCategory = kEveryCategory;
  double beta = 0;
};

struct Covariance {
  int row = 0;
  int column = 0;
  double value = 0;
};

struct Description {
  std::vector<Parameter> parameters;
  std::vector<Predictor> predictors;
  std::vector<DesignCell> cells;
  std::vector<Estimate> estimates;
  std::vector<Covariance> covariances;  // of a model of a number; empty without a matrix
  // Categories of the target that cells and estimates name, in the order of their first appearance.
  std::vector<std::unique_ptr<ScoreValue>> categories;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_DESCRIPTION_H_
