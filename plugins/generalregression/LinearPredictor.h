// The linear predictors of a case: offset + sum over parameters of column x coefficient, for one equation or
// several over the same columns.
//
// A column is a product of powers of numbers and of weights that stand for categories.  When a model is made,
// columns over the same numbers and the same factors become one table: a case looks its coefficients up by
// the codes of its categories instead of asking every column.  Threads: const operations may run in several
// threads.

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_LINEARPREDICTOR_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_LINEARPREDICTOR_H_

#include <cstddef>
#include <memory>
#include <vector>

#include "common/Inputs.h"

namespace KxVeyra_940::Plugin {

// A column of the design matrix; without any part it is 1, the intercept.  Inputs are indexes into
// CaseValues.
struct Column {
  struct Power {
    int input;
    double exponent;

    bool operator<(const Power& other) const {
      return input < other.input || (input == other.input && exponent < other.exponent);
    }
  };
  struct Factor {
    int input;
    std::size_t codes;     // of the input; every other code counts as this one
    std::size_t category;  // the code that has weight 1, where no weights are given
    // By code, up to the one of all others; null: none are given.  Shared by the columns of one contrast.
    std::shared_ptr<const std::vector<double>> weights;

    double WeightOf(int code) const;
  };

  double Of(const CaseValues& values) const;

  std::vector<Power> powers;
  std::vector<Factor> factors;
};

class LinearPredictor {
 public:
  struct Term {
    Column column;
    std::vector<double> betas;  // by equation
  };

  LinearPredictor() = default;
  // Each input stands at most once among the powers and once among the factors of a column.
  LinearPredictor(std::vector<Term> terms, std::size_t equations);

  std::size_t GetEquations() const { return fConstants.size(); }
  void Add(double constant, std::size_t equation) { fConstants[equation] += constant; }
  // The input, a number, is added to each of the equations that `isOffset` marks; the one of a single
  // equation is marked.
  void SetOffset(int input, std::vector<bool> isOffset);

  // Sets the first GetEquations() numbers of `etas`.  Allocates nothing.
  void Evaluate(const CaseValues& values, std::vector<double>& etas) const;

 private:
  struct Number {
    std::size_t input;
    std::size_t betas;  // where they begin in fBetas
  };
  struct Place {  // of a factor in a table
    std::size_t input;
    std::size_t other;  // the row of codes that have none of their own
    std::size_t stride;
  };
  struct Table {
    std::size_t firstPower, endPower;  // in fPowers
    std::size_t firstPlace, endPlace;  // in fPlaces
    std::size_t betas;                 // where its rows begin in fBetas
  };

  void AddTable(const std::vector<Term*>& terms);
  double ProductOf(const Table& table, const CaseValues& values) const;
  std::size_t RowOf(const Table& table, const CaseValues& values) const;
  double EvaluateOne(const CaseValues& values) const;

  std::vector<double> fConstants;  // by equation
  std::vector<Number> fNumbers;    // columns that are one number
  std::vector<Table> fTables;
  std::vector<Column::Power> fPowers;
  std::vector<Place> fPlaces;
  std::vector<double> fBetas;
  std::vector<Term> fColumns;  // what tables would hold too thinly
  int fOffset = -1;
  std::vector<bool> fIsOffset;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_LINEARPREDICTOR_H_
