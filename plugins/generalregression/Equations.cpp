#include "generalregression/Equations.h"

#include <algorithm>
#include <limits>
#include <map>

#include "error/Raise.h"

namespace KxVeyra_940::Plugin {

namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

std::size_t FindOrAdd(std::vector<std::unique_ptr<ScoreValue>>& values, std::unique_ptr<ScoreValue> value) {
  const auto found = std::ranges::find_if(values, [&](const auto& other) { return *other == *value; });
  const auto position = static_cast<std::size_t>(found - values.begin());
  if (found == values.end()) values.push_back(std::move(value));
  return position;
}

using Weights = std::shared_ptr<const std::vector<double>>;

// A column of contrasts; a category without a row has no weight that is a number.
Weights MakeWeights(const Predictor& predictor, std::size_t column, std::size_t codes) {
  std::vector<double> weights(codes + 1, kNoNumber);
  for (std::size_t row = 0; row < predictor.categories.size(); ++row) {
    weights[static_cast<std::size_t>(predictor.categories[row])] =
        predictor.contrasts[row * predictor.columns + column];
  }
  return std::make_shared<const std::vector<double>>(std::move(weights));
}

// The columns of every parameter, for one category of the target after the other.
class ColumnMaker {
 public:
  ColumnMaker(const Description& description, const Inputs& inputs)
      : fDescription(description), fInputs(inputs), fCells(description.parameters.size()) {
    for (const DesignCell& cell : description.cells) {
      fCells[static_cast<std::size_t>(cell.parameter)].push_back(&cell);
    }
  }

  // Whether the parameter's column is another one for some category.
  bool DependsOnCategory(std::size_t parameter) const {
    return std::ranges::any_of(fCells[parameter],
                               [](const DesignCell* cell) { return cell->targetCategory != kEveryCategory; });
  }

  // A cell of the category stands in place of one for all categories.
  Column Make(std::size_t parameter, int targetCategory) {
    std::map<int, const DesignCell*> ofPredictor;
    for (const DesignCell* cell : fCells[parameter]) {
      if (cell->targetCategory == kEveryCategory) ofPredictor.emplace(cell->predictor, cell);
    }
    for (const DesignCell* cell : fCells[parameter]) {
      const bool isMeant = cell->targetCategory == targetCategory && targetCategory != kEveryCategory;
      if (isMeant) ofPredictor[cell->predictor] = cell;
    }
    Column column;
    for (const auto& [position, cell] : ofPredictor) Add(*cell, column);
    return column;
  }

 private:
  void Add(const DesignCell& cell, Column& column) {
    const Predictor& predictor = fDescription.predictors[static_cast<std::size_t>(cell.predictor)];
    if (!predictor.isFactor) {
      column.powers.push_back({predictor.input, cell.exponent});
      return;
    }
    const auto codes = static_cast<std::size_t>(fInputs.GetCategories(predictor.input)->Size());
    Weights weights;
    if (predictor.columns > 0) {
      Weights& known = fWeights[{cell.predictor, cell.column}];
      if (known == nullptr) known = MakeWeights(predictor, cell.column, codes);
      weights = known;
    }
    column.factors.push_back(
        {predictor.input, codes, static_cast<std::size_t>(cell.category), std::move(weights)});
  }

  const Description& fDescription;
  const Inputs& fInputs;
  std::vector<std::vector<const DesignCell*>> fCells;       // by parameter
  std::map<std::pair<int, std::size_t>, Weights> fWeights;  // by predictor and column
};

// Coefficients by parameter and equation; an estimate of a category stands in place of one for all.
class BetaTable {
 public:
  // Equations by category of the description, -1 for none.
  BetaTable(const Description& description, const std::vector<int>& equations,
            const std::vector<bool>& takesCommon)
      : fEquations(takesCommon.size()), fBetas(description.parameters.size() * fEquations) {
    for (const Estimate& estimate : description.estimates) {
      if (estimate.targetCategory != kEveryCategory) continue;
      for (std::size_t e = 0; e < fEquations; ++e) {
        if (takesCommon[e]) At(estimate.parameter, e) = estimate.beta;
      }
    }
    for (const Estimate& estimate : description.estimates) {
      if (estimate.targetCategory == kEveryCategory) continue;
      const int equation = equations[static_cast<std::size_t>(estimate.targetCategory)];
      if (equation >= 0) At(estimate.parameter, static_cast<std::size_t>(equation)) = estimate.beta;
    }
  }

  std::vector<double> Of(std::size_t parameter) const {
    const auto first = fBetas.begin() + static_cast<std::ptrdiff_t>(parameter * fEquations);
    return {first, first + static_cast<std::ptrdiff_t>(fEquations)};
  }

 private:
  double& At(int parameter, std::size_t equation) {
    return fBetas[static_cast<std::size_t>(parameter) * fEquations + equation];
  }

  std::size_t fEquations;
  std::vector<double> fBetas;
};

// `equations` by category of the description, -1 for none.
LinearPredictor Make(const Description& description, const Inputs& inputs, const std::vector<int>& equations,
                     const std::vector<bool>& takesCommon) {
  ColumnMaker columns(description, inputs);
  const BetaTable betas(description, equations, takesCommon);
  std::vector<LinearPredictor::Term> terms;
  for (std::size_t parameter = 0; parameter < description.parameters.size(); ++parameter) {
    const std::vector<double> all = betas.Of(parameter);
    const auto isUsed = [&](double beta) { return beta != 0; };
    if (std::ranges::none_of(all, isUsed)) continue;
    if (!columns.DependsOnCategory(parameter)) {
      terms.push_back({columns.Make(parameter, kEveryCategory), all});
      continue;
    }
    for (std::size_t e = 0; e < all.size(); ++e) {
      if (!isUsed(all[e])) continue;
      const auto category = std::ranges::find(equations, static_cast<int>(e)) - equations.begin();
      const bool isNamed = static_cast<std::size_t>(category) < equations.size();
      std::vector<double> own(all.size());
      own[e] = all[e];
      terms.push_back(
          {columns.Make(parameter, isNamed ? static_cast<int>(category) : kEveryCategory), std::move(own)});
    }
  }
  return LinearPredictor(std::move(terms), takesCommon.size());
}

}  // namespace

TargetCategories OrderCategories(Description& description, const Vocabulary& words,
                                 const ScoreDictVar* target, std::unique_ptr<ScoreValue> reference,
                                 bool isOrdered) {
  TargetCategories ordered;
  const ScoreValueLabelSet* labels = target == nullptr ? nullptr : target->GetValueLabels();
  if (labels != nullptr) {
    for (const ScoreValueLabel* label : labels->GetAllValueLabels()) {
      ordered.values.emplace_back(label->GetValue()->Clone());
    }
  }
  for (auto& category : description.categories) {
    ordered.positions.push_back(static_cast<int>(FindOrAdd(ordered.values, std::move(category))));
  }
  if (reference != nullptr) ordered.reference = FindOrAdd(ordered.values, std::move(reference));
  const std::size_t count = ordered.values.size();
  if (count < 2) Raise(MessageId::kMoreThanOneRequired, {words.targetCategory, words.estimates});
  if (isOrdered) ordered.reference = count - 1;

  std::vector<bool> hasOwn(count);
  bool hasCommon = false;
  for (const Estimate& estimate : description.estimates) {
    if (estimate.targetCategory == kEveryCategory) {
      hasCommon = true;
    } else {
      const int position = ordered.positions[static_cast<std::size_t>(estimate.targetCategory)];
      hasOwn[static_cast<std::size_t>(position)] = true;
    }
  }
  const auto without = static_cast<std::size_t>(std::ranges::count(hasOwn, false));
  if (!ordered.reference.has_value() && without == 1) {
    ordered.reference = static_cast<std::size_t>(std::ranges::find(hasOwn, false) - hasOwn.begin());
  }
  // Without any estimates all equations are 0.
  const bool isEmpty = description.estimates.empty();
  if (!ordered.reference.has_value() && (hasCommon || isEmpty) && without > 0) {
    Raise(MessageId::kRequiredIn, {words.referenceCategory, words.model});
  }
  // Each threshold of an ordered model is its own.
  const bool needsOwn = isOrdered || !(hasCommon || isEmpty);
  bool isFirst = !ordered.reference.has_value();
  for (std::size_t i = 0; i < count; ++i) {
    if (hasOwn[i] || i == ordered.reference || !needsOwn) continue;
    // One of several is the reference.
    if (!std::exchange(isFirst, false)) {
      Raise(MessageId::kMissingValueDefinition, {ordered.values[i]->GetString(), words.estimates});
    }
  }
  return ordered;
}

LinearPredictor MakeEquation(const Description& description, const Inputs& inputs) {
  return Make(description, inputs, {}, {true});
}

LinearPredictor MakeEquations(const Description& description, const Inputs& inputs,
                              const TargetCategories& categories, const std::vector<bool>& hasEquation) {
  std::vector<int> ofPosition;
  std::vector<bool> takesCommon;
  for (std::size_t i = 0; i < hasEquation.size(); ++i) {
    ofPosition.push_back(hasEquation[i] ? static_cast<int>(takesCommon.size()) : -1);
    if (hasEquation[i]) takesCommon.push_back(i != categories.reference);
  }
  std::vector<int> equations;
  for (const int position : categories.positions) {
    equations.push_back(ofPosition[static_cast<std::size_t>(position)]);
  }
  return Make(description, inputs, equations, takesCommon);
}

std::vector<Column> MakeColumns(const Description& description, const Inputs& inputs) {
  ColumnMaker maker(description, inputs);
  std::vector<Column> columns;
  for (std::size_t parameter = 0; parameter < description.parameters.size(); ++parameter) {
    columns.push_back(maker.Make(parameter, kEveryCategory));
  }
  return columns;
}

}  // namespace KxVeyra_940::Plugin
