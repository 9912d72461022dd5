// The words of general regression models in the two formats that have them.
//
// Both write the same structure: a list of parameters, the predictors, which product of predictors makes each
// parameter's column of the design matrix, the covariances of the estimates, and the estimates.

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_VOCABULARY_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_VOCABULARY_H_

namespace KxVeyra_940::Plugin {

struct Vocabulary {
  // Elements.
  const char* model;
  const char* parameterList;
  const char* parameter;
  const char* factorList;
  const char* covariateList;
  const char* predictor;
  const char* designMatrix;
  const char* designCell;
  const char* covarianceMatrix;
  const char* covarianceCell;
  const char* estimates;
  const char* estimate;
  // Attributes.
  const char* name;
  const char* value;
  const char* predictorName;
  const char* parameterName;
  const char* targetCategory;
  const char* referenceCategory;  // what tells which category is the reference
  const char* beta;
  const char* degreesOfFreedom;
  const char* rowParameter;
  const char* columnParameter;
  const char* rowCategory;
  const char* columnCategory;
};

const Vocabulary& PmmlWords();
const Vocabulary& ZentWords();

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_VOCABULARY_H_
