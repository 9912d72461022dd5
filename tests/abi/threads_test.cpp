// Many threads make and score models at once.  Each compares every answer with the expected one.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <thread>

#include "abi/Outcome.h"
#include "data/CaseRecord.h"
#include "data/NumericValue.h"
#include "error/ProcessState.h"
#include "error/ScoringLog.h"
#include "tools/RunProgram.h"

namespace {

using namespace KxVeyra_940;
using namespace VeyraTest;

constexpr int kThreads = 8;

void RunThreads(const std::function<void(int)>& work) {
  std::atomic<int> waiting{kThreads};
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      // All set off together, so that first uses meet.
      for (--waiting; waiting > 0;) std::this_thread::yield();
      work(i);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// A model's document, 30 cases of it, and the answers of the program that trained it: the category, then the
// probability of each.
struct Sample {
  explicit Sample(const std::string& name)
      : path(Document(name + ".pmml")),
        text(ReadFile(path)),
        data(ReadCells(ReadFile(Document(name + ".csv")))),
        expected(ReadCells(ReadFile(Document(name + ".expected.csv")))) {
    if (data.size() > 31) data.resize(31);
  }

  std::string path;
  std::string text;
  Table data;
  Table expected;
};

// The number of wrong answers; -1 when a case was not scored at all.
int CountWrongAnswers(ScoreModel& model, const Sample& sample) {
  const std::vector<std::string>& names = sample.data[0];
  CaseRecord record(static_cast<int>(names.size()));
  std::vector<NumericValue*> slots;
  for (const std::string& name : names) {
    slots.push_back(new NumericValue());
    record.Add(name, slots.back());
  }
  if (!model.PrepareForCases(record).IsOK()) return -1;
  const std::unique_ptr<ScoreResult> result(model.NewResult());
  int wrong = 0;
  for (std::size_t row = 1; row < sample.data.size(); ++row) {
    for (std::size_t i = 0; i < slots.size(); ++i) slots[i]->FromString(sample.data[row][i]);
    if (!model.Score(record, *result).IsOK()) return -1;
    const std::vector<std::string>& want = sample.expected[row];
    bool isRight = result->GetPredictedValue()->GetString() == want[0];
    for (int i = 0; i < result->GetNumberOfCategories(); ++i) {
      const std::string column = "probability(" + result->GetCategory(i)->GetString() + ")";
      const auto found = std::find(sample.expected[0].begin(), sample.expected[0].end(), column);
      if (found == sample.expected[0].end()) return -1;
      const double expected = std::stod(want[static_cast<std::size_t>(found - sample.expected[0].begin())]);
      isRight = isRight && std::abs(result->GetCategoryProbability(i) - expected) < 1e-12;
    }
    if (!isRight) ++wrong;
  }
  return wrong;
}

class Threads : public InitializedOrNot {};
INSTANTIATE_TEST_SUITE_P(Factory, Threads, testing::Bool(), Threads::Name);

TEST_P(Threads, MakeAndScoreModels) {
  const Sample samples[] = {Sample("iris"), Sample("breast_cancer")};
  ASSERT_GT(samples[0].data.size(), 20U);
  const TemporaryDirectory files;
  const std::string catalogue = files.Write("names", "TreeModel RegressionModel");
  std::atomic<int> wrong = 0;
  RunThreads([&](int thread) {
    for (int round = 0; round < 4; ++round) {
      const Sample& sample = samples[(thread + round) % 2];
      std::istringstream in(sample.text);
      const std::unique_ptr<ScoreModel> model(
          round % 2 == 0 ? ModelFactory::MakeModelFromXML(in, Names{"RegressionModel"}, "")
                         : ModelFactory::MakeModelFromXML(sample.path, catalogue, ""));
      wrong += std::abs(CountWrongAnswers(*model, sample));
      const std::string refused = OutcomeOf("<PMML><x></PMML>", {"RegressionModel"});
      if (!refused.starts_with("260109|")) ++wrong;
    }
  });
  EXPECT_EQ(wrong, 0);
}

TEST(Clones, ScoreInThreadsOfTheirOwn) {
  const Sample sample("breast_cancer");
  std::istringstream in(sample.text);
  const std::unique_ptr<ScoreModel> model(ModelFactory::MakeModelFromXML(in, Names{"RegressionModel"}, ""));
  std::vector<std::unique_ptr<ScoreModel>> clones;
  for (int i = 0; i < kThreads; ++i) clones.emplace_back(model->Clone());
  std::atomic<int> wrong = 0;
  RunThreads([&](int thread) {
    const auto own = static_cast<std::size_t>(thread);
    for (int round = 0; round < 10; ++round) wrong += std::abs(CountWrongAnswers(*clones[own], sample));
    const std::unique_ptr<ScoreModel> copy(model->Clone());  // threads may copy one model at once
    wrong += std::abs(CountWrongAnswers(*copy, sample));
    clones[own].reset();
  });
  EXPECT_EQ(wrong, 0);
}

TEST(FirstUse, OfTraceFormatterAndPlugin) {
  const TemporaryDirectory files;
  files.Write("sc.cfg", "trace_leve,3\n");
  std::filesystem::current_path(files.Path(""));
  ModelFactory::Initialize("");
  std::string outcomes[kThreads];
  std::string texts[kThreads];
  RunThreads([&](int thread) {
    const std::string number = std::to_string(thread);
    outcomes[thread] = OutcomeOf("<PMML><TreeModel/></PMML>", {"TreeModel", number});
    try {
      std::istringstream in("<x" + number + "/>");
      ModelFactory::MakeModelFromXML(in, Names{"x"}, "");
    } catch (const VYException& exception) {
      texts[thread] = exception.GetErrorMessage();
    }
  });
  for (int i = 0; i < kThreads; ++i) {
    const std::string number = std::to_string(i);
    EXPECT_EQ(outcomes[i], "TreeModel: names(TreeModel," + number + ") document(PMML, '')");
    EXPECT_EQ(texts[i], "Unsupported model: 'x" + number + "'.");
  }
  int logs = 0;
  for (const auto& file : std::filesystem::directory_iterator(files.Path("log" + std::to_string(getpid())))) {
    ++logs;
    const std::string lines = ReadFile(file.path().string());
    EXPECT_NE(lines.find("Unsupported model: 'x"), std::string::npos) << lines;
  }
  EXPECT_EQ(logs, kThreads) << "one file a thread";
  ModelFactory::Terminate();
  std::filesystem::current_path("/");
}

}  // namespace
