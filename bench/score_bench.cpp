// Scoring case by case, filling of the record included, compared with a hand-written function over arrays.
//
// The floor sums 20 products and looks 5 texts up in a hash table each.  The cases are many and random, so
// that neither branches nor hashes are predictable.

#include <cmath>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

#include "AllocationCounter.h"
#include "Comparison.h"
#include "RegressionDocument.h"
#include "data/CaseRecord.h"
#include "veyra/ModelFactory.h"
#include "veyra/VYException.h"

namespace {

using namespace VeyraBench;
using KxVeyra_940::CaseRecord;
using KxVeyra_940::ModelFactory;
using KxVeyra_940::ScoreModel;
using KxVeyra_940::ScoreResult;

constexpr int kGroups = 5;
constexpr std::size_t kNumbers = kGroups * kNumbersPerGroup;
constexpr std::size_t kTexts = kGroups;
constexpr std::size_t kCases = 10000;
constexpr double kLimit = 4;

struct Case {
  double numbers[kNumbers];
  std::string texts[kTexts];
};

std::vector<Case> MakeCases(const RegressionDocument& document) {
  std::mt19937 random(25);
  std::normal_distribution<double> number(0, 10);
  std::vector<Case> cases(kCases);
  for (Case& one : cases) {
    for (double& value : one.numbers) value = number(random);
    for (std::size_t i = 0; i < kTexts; ++i) {
      const std::vector<Category>& categories = document.Categories()[i];
      one.texts[i] =
          categories[std::uniform_int_distribution<std::size_t>(0, categories.size() - 1)(random)].text;
    }
  }
  return cases;
}

class HandWritten {
 public:
  explicit HandWritten(const RegressionDocument& document)
      : fIntercept(document.Intercept()), fCoefficients(document.Coefficients()), fTables(kTexts) {
    for (std::size_t i = 0; i < kTexts; ++i) {
      for (const Category& category : document.Categories()[i]) {
        fTables[i].emplace(category.text, category.coefficient);
      }
    }
  }

  double Score(const Case& one) const {
    double sum = fIntercept;
    for (std::size_t i = 0; i < kNumbers; ++i) sum += fCoefficients[i] * one.numbers[i];
    for (std::size_t i = 0; i < kTexts; ++i) {
      const auto found = fTables[i].find(one.texts[i]);
      if (found != fTables[i].end()) sum += found->second;
    }
    return sum;
  }

 private:
  double fIntercept;
  std::vector<double> fCoefficients;
  std::vector<std::unordered_map<std::string, double>> fTables;
};

class Scoring {
 public:
  explicit Scoring(const RegressionDocument& document) {
    std::istringstream in(document.Text());
    fModel.reset(ModelFactory::MakeModelFromXML(in, document.ModelName()));
    for (std::size_t i = 0; i < kNumbers; ++i) fRecord.Add(RegressionDocument::NumberName(i), nullptr);
    for (std::size_t i = 0; i < kTexts; ++i) fRecord.Add(RegressionDocument::CategoryName(i), nullptr);
    Require(fModel->PrepareForCases(fRecord).IsOK(), "layout");
    fResult.reset(fModel->NewResult());
  }

  double Score(const Case& one) {
    int slot = 0;
    bool isFilled = true;
    for (const double number : one.numbers) isFilled &= fRecord.SetValue(slot++, number);
    for (const std::string& text : one.texts) isFilled &= fRecord.SetText(slot++, text);
    if (!isFilled || !fModel->Score(fRecord, *fResult).IsOK()) return std::nan("");
    return fResult->GetPredictedValue()->GetDouble();
  }

 private:
  std::unique_ptr<ScoreModel> fModel;
  CaseRecord fRecord{kNumbers + kTexts};
  std::unique_ptr<ScoreResult> fResult;
};

template <class Scorer>
double SumOf(Scorer& scorer, const std::vector<Case>& cases) {
  double sum = 0;
  for (const Case& one : cases) sum += scorer.Score(one);
  return sum;
}

// A document, its two scorers and what was found out about them.
struct Contest {
  Contest(bool hasRules, Kind kind)
      : document(kGroups, hasRules, kind), handWritten(document), scoring(document) {}

  RegressionDocument document;
  HandWritten handWritten;
  Scoring scoring;
  double allocationsPerCase = 0;
  double ratio = 0;
};

void CheckAnswers(Contest& contest, const std::vector<Case>& cases) {
  for (const Case& one : cases) {
    Require(std::fabs(contest.scoring.Score(one) - contest.handWritten.Score(one)) < 1e-9, "prediction");
  }
  const AllocationCounter counter;
  SumOf(contest.scoring, cases);
  contest.allocationsPerCase = static_cast<double>(counter.Count()) / static_cast<double>(kCases);
}

void Register(const char* name, Contest& contest, const std::vector<Case>& cases) {
  const auto run = [&contest, &cases](benchmark::State& state) {
    contest.ratio = Compare(
        state, [&] { benchmark::DoNotOptimize(SumOf(contest.handWritten, cases)); },
        [&] { benchmark::DoNotOptimize(SumOf(contest.scoring, cases)); });
    state.counters["allocations/case"] = contest.allocationsPerCase;
  };
  benchmark::RegisterBenchmark(name, run)->UseManualTime()->MinTime(2)->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) try {
  ModelFactory::Initialize("");
  benchmark::Initialize(&argc, argv);
  const AllocationCounter ofLoading;
  Contest plain(false, Kind::kRegression);
  Contest ruled(true, Kind::kRegression);
  Contest general(false, Kind::kGeneralRegression);
  Require(ofLoading.Count() > 0, "loading allocates, so the counter does not count");
  const std::vector<Case> cases = MakeCases(plain.document);
  CheckAnswers(plain, cases);
  CheckAnswers(ruled, cases);
  CheckAnswers(general, cases);
  Register("10000 cases", plain, cases);
  Register("10000 cases, 5 fields with an interval and a missing value", ruled, cases);
  Register("10000 cases, general regression", general, cases);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("score: heap allocations per case = %g (limit 0)\n", plain.allocationsPerCase);
  PrintRatio("score: scoring / hand-written floor", plain.ratio, kLimit);
  PrintRatio("score: the same with rules for 5 fields / that floor", ruled.ratio);
  PrintRatio("score: the same equation as a general regression / that floor", general.ratio, kLimit);
} catch (const KxVeyra_940::VYException& e) {
  std::fprintf(stderr, "%s\n", e.GetErrorMessage().c_str());
  return EXIT_FAILURE;
}
