// Scores cases of numbers one by one with a model made of a document; filling of the record belongs to it.

#ifndef VEYRA_BENCH_NUMBERSCORING_H_
#define VEYRA_BENCH_NUMBERSCORING_H_

#include <cmath>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "Comparison.h"
#include "Loading.h"
#include "data/CaseRecord.h"

namespace VeyraBench {

class NumberScoring {
 public:
  // `fields` name the numbers of a case in their order.
  NumberScoring(const std::string& document, const std::string& modelName,
                const std::vector<std::string>& fields)
      : fRecord(static_cast<int>(fields.size())) {
    std::istringstream in(document);
    fModel = MakeModel(in, modelName);
    for (const std::string& field : fields) fRecord.Add(field, nullptr);
    Require(fModel->PrepareForCases(fRecord).IsOK(), "layout");
    fResult.reset(fModel->NewResult());
  }

  // NaN for a case without an answer.
  double Score(std::span<const double> numbers) {
    int slot = 0;
    bool isFilled = true;
    for (const double number : numbers) isFilled &= fRecord.SetValue(slot++, number);
    if (!isFilled || !fModel->Score(fRecord, *fResult).IsOK()) return std::nan("");
    return fResult->GetPredictedValue()->GetDouble();
  }

 private:
  Model fModel;
  KxVeyra_940::CaseRecord fRecord;
  std::unique_ptr<KxVeyra_940::ScoreResult> fResult;
};

template <class Scorer, class Case>
double SumOf(Scorer& scorer, const std::vector<Case>& cases) {
  double sum = 0;
  for (const Case& one : cases) sum += scorer.Score(one);
  return sum;
}

}  // namespace VeyraBench

#endif  // VEYRA_BENCH_NUMBERSCORING_H_
