// Linear predictors by tables and column by column.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "generalregression/LinearPredictor.h"

namespace {

using KxVeyra_940::Plugin::CaseValues;
using KxVeyra_940::Plugin::Column;
using KxVeyra_940::Plugin::LinearPredictor;

constexpr int kInputs = 4;  // each as a number and as a category
constexpr std::size_t kEquations = 3;

class Random {
 public:
  int Below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(fEngine); }
  double Number() { return std::uniform_real_distribution<double>(-2, 2)(fEngine); }

  LinearPredictor::Term MakeTerm(std::size_t codes) {
    LinearPredictor::Term term;
    for (int input = 0; input < kInputs; ++input) {
      if (Below(3) == 0) term.column.powers.push_back({input, static_cast<double>(Below(4))});
      if (Below(3) == 0) term.column.factors.push_back(MakeFactor(input, codes));
    }
    // In any order.
    if (Below(2) == 0) std::reverse(term.column.factors.begin(), term.column.factors.end());
    if (Below(2) == 0) std::reverse(term.column.powers.begin(), term.column.powers.end());
    for (std::size_t e = 0; e < kEquations; ++e) term.betas.push_back(Number());
    return term;
  }

  CaseValues MakeCase(std::size_t codes) {
    CaseValues values;
    for (int i = 0; i < kInputs; ++i) {
      values.numbers.push_back(Number());
      values.codes.push_back(Below(static_cast<int>(codes) + 3) - 2);  // also -2, -1, and one too many
    }
    return values;
  }

 private:
  Column::Factor MakeFactor(int input, std::size_t codes) {
    Column::Factor factor{input, codes, static_cast<std::size_t>(Below(static_cast<int>(codes))), {}};
    if (Below(2) == 0) return factor;
    std::vector<double> weights(codes + 1);
    std::ranges::generate(weights, [this] { return Number(); });
    factor.weights = std::make_shared<const std::vector<double>>(std::move(weights));
    return factor;
  }

  std::mt19937 fEngine{1815};
};

// Few codes make tables; with many, products of factors are too large for one.
TEST(LinearPredictor, TablesEqualColumns) {
  for (const std::size_t codes : {2U, 5U, 400U}) {
    SCOPED_TRACE(codes);
    Random random;
    std::vector<LinearPredictor::Term> terms;
    for (int i = 0; i < 60; ++i) terms.push_back(random.MakeTerm(codes));
    LinearPredictor predictor(terms, kEquations);
    predictor.Add(0.5, 1);
    predictor.SetOffset(2, {false, true, true});
    std::vector<LinearPredictor::Term> first = terms;
    for (LinearPredictor::Term& term : first) term.betas.resize(1);
    LinearPredictor single(first, 1);
    single.SetOffset(2, {true});
    std::vector<double> etas(kEquations + 1, 77);
    for (int i = 0; i < 300; ++i) {
      const CaseValues values = random.MakeCase(codes);
      std::vector<double> want = {0, 0.5 + values.numbers[2], values.numbers[2]};
      double size = 1;
      for (const LinearPredictor::Term& term : terms) {
        const double column = term.column.Of(values);
        for (std::size_t e = 0; e < kEquations; ++e) want[e] += column * term.betas[e];
        size += std::abs(column);
      }
      predictor.Evaluate(values, etas);
      for (std::size_t e = 0; e < kEquations; ++e) ASSERT_NEAR(etas[e], want[e], 1e-13 * size);
      ASSERT_EQ(etas.back(), 77);
      single.Evaluate(values, etas);
      ASSERT_NEAR(etas[0], want[0] + values.numbers[2], 1e-13 * size);
    }
  }
}

}  // namespace
