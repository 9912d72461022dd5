// From a description to linear predictors: which categories of the target have an equation, and which columns
// with which coefficients each equation has.

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_EQUATIONS_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_EQUATIONS_H_

#include <memory>
#include <optional>
#include <vector>

#include "common/Inputs.h"
#include "generalregression/Description.h"
#include "generalregression/LinearPredictor.h"
#include "generalregression/Vocabulary.h"
#include "veyra/ScoreDictVar.h"

namespace KxVeyra_940::Plugin {

// The categories that a model tells apart, in its order: the target's, or those that the document names.
struct TargetCategories {
  std::vector<std::unique_ptr<ScoreValue>> values;
  std::vector<int> positions;            // in `values`, by category of the description
  std::optional<std::size_t> reference;  // whose equation is 0
};

// Orders them.  `target` may be null; `reference` is the category that the document calls so, or null.  An
// ordered model's reference is its last category.  Takes the description's categories.  Raises 260128 for a
// category that has no estimates and is no reference, 260174 when nothing tells the reference, 260176 for
// fewer than two categories.
TargetCategories OrderCategories(Description& description, const Vocabulary& words,
                                 const ScoreDictVar* target, std::unique_ptr<ScoreValue> reference,
                                 bool isOrdered);

// The equation of a model of a number.
LinearPredictor MakeEquation(const Description& description, const Inputs& inputs);
// An equation for each of the categories that `hasEquation` marks, in their order; that of the reference has
// no terms.
LinearPredictor MakeEquations(const Description& description, const Inputs& inputs,
                              const TargetCategories& categories, const std::vector<bool>& hasEquation);

// The columns of the parameters, where they are the same for all categories.
std::vector<Column> MakeColumns(const Description& description, const Inputs& inputs);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_EQUATIONS_H_
