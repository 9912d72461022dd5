#include "generalregression/LinearPredictor.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>

namespace KxVeyra_940::Plugin {

namespace {

double Raised(double number, double exponent) {
  if (exponent == 1) return number;
  if (exponent == 2) return number * number;
  return std::pow(number, exponent);
}

// Which columns share a table: those over the same powers and the same factors.
using Signature = std::pair<std::vector<Column::Power>, std::vector<int>>;

Signature SignatureOf(const Column& column) {
  Signature signature;
  signature.first = column.powers;
  for (const Column::Factor& factor : column.factors) signature.second.push_back(factor.input);
  return signature;
}

void Sort(Column& column) {
  std::sort(column.powers.begin(), column.powers.end());
  std::sort(column.factors.begin(), column.factors.end(),
            [](const Column::Factor& left, const Column::Factor& right) { return left.input < right.input; });
}

std::size_t RowsOf(const Column& column) {
  constexpr std::size_t kMore = std::size_t{1} << 40;
  std::size_t rows = 1;
  for (const Column::Factor& factor : column.factors) rows = std::min(rows * (factor.codes + 1), kMore);
  return rows;
}

// Tables of a few kilobytes always pay; larger ones when enough of their rows come from the document.
bool DeservesTable(std::size_t rows, std::size_t equations, std::size_t terms) {
  constexpr std::size_t kSmall = 4096;
  constexpr std::size_t kRowsPerTerm = 16;
  return rows * equations <= kSmall || rows <= kRowsPerTerm * terms;
}

// Adds weight x betas of one column to the rows of its table, going through the codes of its factors from
// `factor` on that have a weight.
class TableFiller {
 public:
  TableFiller(const LinearPredictor::Term& term, const std::vector<std::size_t>& strides, double* betas)
      : fTerm(term), fStrides(strides), fBetas(betas) {}

  void Fill(std::size_t factor = 0, std::size_t row = 0, double weight = 1) {
    if (factor == fStrides.size()) {
      double* const betas = fBetas + row * fTerm.betas.size();
      for (std::size_t e = 0; e < fTerm.betas.size(); ++e) {
        // A weight that is no number spoils only the equations that the column is part of.
        if (fTerm.betas[e] != 0) betas[e] += weight * fTerm.betas[e];
      }
      return;
    }
    const auto& [input, codes, category, weights] = fTerm.column.factors[factor];
    if (weights == nullptr) return Fill(factor + 1, row + category * fStrides[factor], weight);
    for (std::size_t code = 0; code <= codes; ++code) {
      const double own = (*weights)[code];
      if (own != 0) Fill(factor + 1, row + code * fStrides[factor], weight * own);
    }
  }

 private:
  const LinearPredictor::Term& fTerm;
  const std::vector<std::size_t>& fStrides;
  double* fBetas;
};

}  // namespace

// A code of -1 is beyond every table.
double Column::Factor::WeightOf(int code) const {
  const auto position = std::min(static_cast<std::size_t>(code), codes);
  if (weights == nullptr) return position == category ? 1 : 0;
  return (*weights)[position];
}

double Column::Of(const CaseValues& values) const {
  double product = 1;
  for (const Power& power : powers) {
    product *= Raised(values.numbers[static_cast<std::size_t>(power.input)], power.exponent);
  }
  for (const Factor& factor : factors) {
    product *= factor.WeightOf(values.codes[static_cast<std::size_t>(factor.input)]);
  }
  return product;
}

LinearPredictor::LinearPredictor(std::vector<Term> terms, std::size_t equations) : fConstants(equations) {
  std::map<Signature, std::vector<Term*>> groups;
  for (Term& term : terms) {
    Sort(term.column);
    groups[SignatureOf(term.column)].push_back(&term);
  }
  for (const auto& [signature, group] : groups) {
    const auto& [powers, factors] = signature;
    const bool isNumber = factors.empty() && powers.size() == 1 && powers[0].exponent == 1;
    if (!isNumber && !(factors.empty() && powers.empty())) {
      if (DeservesTable(RowsOf(group.front()->column), equations, group.size())) {
        AddTable(group);
      } else {
        for (Term* term : group) fColumns.push_back(std::move(*term));
      }
      continue;
    }
    if (isNumber) {
      fNumbers.push_back({static_cast<std::size_t>(powers[0].input), fBetas.size()});
      fBetas.resize(fBetas.size() + equations);
    }
    double* const betas = isNumber ? fBetas.data() + fNumbers.back().betas : fConstants.data();
    for (const Term* term : group) {
      for (std::size_t e = 0; e < equations; ++e) betas[e] += term->betas[e];
    }
  }
}

void LinearPredictor::AddTable(const std::vector<Term*>& terms) {
  const Column& first = terms.front()->column;
  Table table{fPowers.size(), 0, fPlaces.size(), 0, fBetas.size()};
  fPowers.insert(fPowers.end(), first.powers.begin(), first.powers.end());
  std::size_t rows = 1;
  std::vector<std::size_t> strides;
  for (const Column::Factor& factor : first.factors) {
    fPlaces.push_back({static_cast<std::size_t>(factor.input), factor.codes, rows});
    strides.push_back(rows);
    rows *= factor.codes + 1;
  }
  fBetas.resize(fBetas.size() + rows * GetEquations());
  for (const Term* term : terms) TableFiller(*term, strides, fBetas.data() + table.betas).Fill();
  table.endPower = fPowers.size();
  table.endPlace = fPlaces.size();
  fTables.push_back(table);
}

void LinearPredictor::SetOffset(int input, std::vector<bool> isOffset) {
  fOffset = input;
  fIsOffset = std::move(isOffset);
}

double LinearPredictor::ProductOf(const Table& table, const CaseValues& values) const {
  double product = 1;
  for (std::size_t i = table.firstPower; i < table.endPower; ++i) {
    product *= Raised(values.numbers[static_cast<std::size_t>(fPowers[i].input)], fPowers[i].exponent);
  }
  return product;
}

std::size_t LinearPredictor::RowOf(const Table& table, const CaseValues& values) const {
  std::size_t row = 0;
  for (std::size_t i = table.firstPlace; i < table.endPlace; ++i) {
    // A code of -1 is beyond every table.
    const auto code = static_cast<std::size_t>(values.codes[fPlaces[i].input]);
    row += std::min(code, fPlaces[i].other) * fPlaces[i].stride;
  }
  return row;
}

// Most models have one equation.
double LinearPredictor::EvaluateOne(const CaseValues& values) const {
  double eta = fConstants[0];
  for (const Number& number : fNumbers) eta += values.numbers[number.input] * fBetas[number.betas];
  for (const Table& table : fTables) {
    eta += ProductOf(table, values) * fBetas[table.betas + RowOf(table, values)];
  }
  for (const Term& term : fColumns) eta += term.column.Of(values) * term.betas[0];
  return fOffset < 0 ? eta : eta + values.numbers[static_cast<std::size_t>(fOffset)];
}

void LinearPredictor::Evaluate(const CaseValues& values, std::vector<double>& etas) const {
  const std::size_t equations = fConstants.size();
  if (equations == 1) {
    etas[0] = EvaluateOne(values);
    return;
  }
  std::copy(fConstants.begin(), fConstants.end(), etas.begin());
  const auto add = [&](double factor, std::size_t first) {
    const double* const betas = fBetas.data() + first;
    for (std::size_t e = 0; e < equations; ++e) etas[e] += factor * betas[e];
  };
  for (const Number& number : fNumbers) add(values.numbers[number.input], number.betas);
  for (const Table& table : fTables) {
    add(ProductOf(table, values), table.betas + RowOf(table, values) * equations);
  }
  for (const Term& term : fColumns) {
    const double column = term.column.Of(values);
    for (std::size_t e = 0; e < equations; ++e) {
      if (term.betas[e] != 0) etas[e] += column * term.betas[e];
    }
  }
  if (fOffset < 0) return;
  for (std::size_t e = 0; e < equations; ++e) {
    if (fIsOffset[e]) etas[e] += values.numbers[static_cast<std::size_t>(fOffset)];
  }
}

}  // namespace KxVeyra_940::Plugin
