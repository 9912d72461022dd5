// Scoring a document that a test writes as text, through the factory and the real plug-in.

#ifndef VEYRA_TESTS_PLUGINS_SCORING_H_
#define VEYRA_TESTS_PLUGINS_SCORING_H_

#include <gtest/gtest.h>

#include <charconv>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "abi/Outcome.h"
#include "data/CaseRecord.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"

namespace VeyraTest {

using KxVeyra_940::CaseRecord;
using KxVeyra_940::NumericValue;
using KxVeyra_940::ScoreResult;
using KxVeyra_940::ScoreValue;
using KxVeyra_940::StringValue;

inline std::unique_ptr<ScoreModel> MakeModel(const std::string& document, const std::string& modelName) {
  std::istringstream in(document);
  return std::unique_ptr<ScoreModel>(ModelFactory::MakeModelFromXML(in, modelName));
}

// "x=1.5, color=red, y=": numbers and texts by name; an empty text is an empty slot.
inline CaseRecord MakeCase(const std::string& text) {
  CaseRecord record(8);
  std::istringstream in(text);
  for (std::string item; std::getline(in >> std::ws, item, ',');) {
    const std::size_t equals = item.find('=');
    const std::string value = item.substr(equals + 1);
    const char* const end = value.data() + value.size();
    double number = 0;
    ScoreValue* made = nullptr;
    if (std::from_chars(value.data(), end, number).ptr == end && !value.empty()) {
      made = new NumericValue(number);
    } else if (!value.empty()) {
      made = new StringValue(value);
    }
    record.Add(item.substr(0, equals), made);
  }
  return record;
}

// "7", "red", "missing".
inline std::string Text(const ScoreValue* value) {
  if (value == nullptr || value->IsSystemMissingValue()) return "missing";
  return value->GetString();
}

// The predicted value, then "|name=value" for each output field.
inline std::string Answer(const ScoreResult& result) {
  std::string text = Text(result.GetPredictedValue());
  for (int i = 0; i < result.GetNumberOfOutputs(); ++i) {
    text.append("|").append(result.GetOutputName(i)).append("=").append(Text(result.GetOutputValue(i)));
  }
  return text;
}

// The result of one case, which the model is prepared for.
inline std::unique_ptr<ScoreResult> Scored(ScoreModel& model, const std::string& data) {
  const CaseRecord record = MakeCase(data);
  model.PrepareForCases(record);
  std::unique_ptr<ScoreResult> result(model.NewResult());
  model.Score(record, *result);
  return result;
}

// A document, what a case holds, and the answer to it.
template <class Document>
struct AnswerRow {
  const char* what;
  Document document;
  const char* data;
  const char* want;
};

template <class Document, std::size_t kCount>
void ExpectAnswersOf(const std::string& modelName, const AnswerRow<Document> (&rows)[kCount]) {
  for (const AnswerRow<Document>& row : rows) {
    SCOPED_TRACE(row.what);
    const std::unique_ptr<ScoreModel> model = MakeModel(row.document.Text(), modelName);
    EXPECT_EQ(Answer(*Scored(*model, row.data)), row.want);
  }
}

// Clones in threads of their own answer the cases as they should: pairs of data and answer.
inline void ExpectAnswersOfClones(const ScoreModel& model,
                                  const std::vector<std::pair<const char*, const char*>>& cases) {
  std::vector<std::thread> threads;
  std::vector<int> wrong(4, 0);
  for (std::size_t thread = 0; thread < wrong.size(); ++thread) {
    threads.emplace_back([&, thread] {
      const std::unique_ptr<ScoreModel> clone(model.Clone());
      for (int round = 0; round < 50; ++round) {
        for (const auto& [data, want] : cases)
          if (Answer(*Scored(*clone, data)) != want) ++wrong[thread];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4, 0));
}

// The probabilities of the categories in the model's order.
inline std::vector<double> Probabilities(const ScoreResult& result) {
  std::vector<double> probabilities;
  for (int i = 0; i < result.GetNumberOfCategories(); ++i) {
    probabilities.push_back(result.GetCategoryProbability(i));
  }
  return probabilities;
}

// "260125: age, DataDictionary".
inline std::string Refusal(const std::string& document, const std::string& modelName) {
  return OutcomeOf(document, {modelName});
}

}  // namespace VeyraTest

#endif  // VEYRA_TESTS_PLUGINS_SCORING_H_
