#include "Cases.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <sstream>
#include <string_view>

#include "transform/TransformationDictionary.h"

namespace VeyraFuzz {

using namespace KxVeyra_940;

namespace {

constexpr double kNumbers[] = {
    0,
    1,
    -1,
    2,
    0.5,
    3,
    11,
    1e200,
    -0.0,
    -1e308,
    std::numeric_limits<double>::max(),
    std::numeric_limits<double>::denorm_min(),
    std::numeric_limits<double>::infinity(),
    std::numeric_limits<double>::quiet_NaN(),
};
constexpr std::size_t kFiniteNumbers = std::size(kNumbers) - 2;

constexpr const char* kTexts[] = {
    "",
    " ",
    "a",
    "b",
    "abc ",
    "1",
    "-1e999",
    "2024-02-29",
    "12:30:01",
    "2024-02-29T12:30:01",
    "\xC3\xA9\xE6\x97\xA5",
    "\xFF",
    "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa",
};

unsigned Mix(unsigned a, unsigned b) {
  const std::uint64_t product = (std::uint64_t{a} << 32U | b) * 0x9E3779B97F4A7C15U;
  return static_cast<unsigned>(product >> 32U);
}

// Null for a field without categories.
std::unique_ptr<ScoreValue> Category(const ScoreDictVar& field, unsigned choice) {
  const ScoreEncoder* const encoder = field.GetEncoder();
  const int count = encoder == nullptr ? 0 : encoder->GetNumberOfCategories();
  if (count <= 0) return nullptr;
  return std::unique_ptr<ScoreValue>(
      field.ToMyValue(encoder->Decode(static_cast<int>(choice % static_cast<unsigned>(count)))));
}

void FillSlot(CaseRecord& record, int slot, const ScoreDictVar& field, unsigned choice, bool isFinite) {
  const unsigned which = choice / 8;
  const double number = kNumbers[which % (isFinite ? kFiniteNumbers : std::size(kNumbers))];
  const std::string text = kTexts[which % std::size(kTexts)];
  switch (choice % 8) {
    case 0:
      record.SetMissingValue(slot);
      return;
    case 1:
      record.Clear(slot);
      return;
    case 2:
      record.SetValue(slot, text);
      return;
    case 3:
      record.Add(field.GetName(), field.ToMyValue(text));
      return;
    case 4:
      record.Add(field.GetName(), field.ToMyValue(std::to_string(which % 7)));
      return;
    case 5:
      record.SetValue(slot, number, static_cast<ScoreDictVar::DateTimeType>(which % 13));
      return;
    default:
      break;
  }
  std::unique_ptr<ScoreValue> category = Category(field, which);
  if (category != nullptr) {
    record.Add(field.GetName(), category.release());
  } else if (choice % 8 == 6) {
    record.SetValue(slot, number);
  } else {
    record.SetValue(slot, static_cast<double>(which % 1000) / 100);
  }
}

void Append(std::string& out, double number) {
  char text[64];
  std::snprintf(text, sizeof text, "%a;", number);
  out += text;
}

[[noreturn]] void Fail(const std::string& text) {
  std::fprintf(stderr, "%s\n", text.c_str());
  std::abort();
}

std::string ShownResult(const ScoreResult& result) {
  std::string text = Shown(result.GetPredictedValue());
  Append(text, result.GetProbability());
  for (int i = 0; i < result.GetNumberOfCategories(); ++i) {
    text += Shown(result.GetCategory(i));
    Append(text, result.GetCategoryProbability(i));
  }
  for (int i = 0; i < result.GetNumberOfOutputs(); ++i)
    text.append(result.GetOutputName(i)).append("=").append(Shown(result.GetOutputValue(i)));
  return text;
}

void RequireFinite(const ScoreResult& result) {
  VeyraFuzz::RequireFinite("the answer", result.GetPredictedValue());
  for (int i = 0; i < result.GetNumberOfCategories(); ++i) {
    if (!std::isfinite(result.GetCategoryProbability(i))) Fail("a probability is not finite");
  }
  for (int i = 0; i < result.GetNumberOfOutputs(); ++i)
    VeyraFuzz::RequireFinite(result.GetOutputName(i).c_str(), result.GetOutputValue(i));
}

std::string ShownScore(ScoreModel& model, const CaseRecord& record, ScoreResult& result) {
  const KxScore::KxStatus status = model.Score(record, result);
  return std::to_string(status.GetErrorCode()) + ":" + ShownResult(result);
}

// What a host reads once.
void ReadModel(const ScoreModel& model) {
  std::ostringstream out;
  for (const ScoreDictionary* dictionary :
       {static_cast<const ScoreDictionary*>(model.GetDictionary()),
        static_cast<const ScoreDictionary*>(model.GetTransformationDictionary()),
        static_cast<const ScoreDictionary*>(model.GetResultDictionary())}) {
    if (dictionary == nullptr) continue;
    dictionary->Display(out);
    for (const std::string& name : dictionary->GetVarNames()) out << model.GetVarRole(name);
  }
  if (model.GetTargetVar() != nullptr) out << model.GetTargetVar()->GetName();
  out << model.GetModelKind() << model.HasNoProbabilityOutput() << model.GetMissingValuePolicy();
}

}  // namespace

CaseRecord MakeRecord(const ScoreDictionary& fields) {
  CaseRecord record(fields.Size());
  for (const std::string& name : fields.GetVarNames()) record.Add(name, nullptr);
  return record;
}

void FillRow(CaseRecord& record, const ScoreDictionary& fields, unsigned row, unsigned seed) {
  unsigned field = 0;
  for (const std::string& name : fields.GetVarNames()) {
    const int slot = record.GetIndex(name);
    const ScoreDictVar* const var = fields.GetVar(name);
    ++field;
    if (slot < 0 || var == nullptr) continue;
    if (row == 0) {
      record.Clear(slot);
    } else if (row == 1) {
      FillSlot(record, slot, *var, 7 + 8 * (seed + field), true);  // as a sound case would be
    } else {
      FillSlot(record, slot, *var, Mix(seed + row, field), row < kFiniteRows);
    }
  }
}

void ScoreRows(ScoreModel& model, unsigned seed) {
  ReadModel(model);
  const ScoreDictionary* const fields = model.GetDictionary();
  if (fields == nullptr) return;
  CaseRecord record = MakeRecord(*fields);
  const std::unique_ptr<ScoreModel> clone(model.Clone());
  model.PrepareForCases(record);
  clone->PrepareForCases(record);
  const std::unique_ptr<ScoreResult> result(model.NewResult());
  const std::unique_ptr<ScoreResult> cloneResult(clone->NewResult());
  for (unsigned row = 0; row < kRows; ++row) {
    FillRow(record, *fields, row, seed);
    const std::string answer = ShownScore(model, record, *result);
    RequireEqual("a model and its clone", answer, ShownScore(*clone, record, *cloneResult));
    if (row < kFiniteRows) RequireFinite(*result);
  }
}

std::string Shown(const ScoreValue* value) {
  if (value == nullptr) return "-;";
  std::string text = std::to_string(value->GetType()) + (value->IsSystemMissingValue() ? "missing" : "there");
  text += std::to_string(value->GetInt());
  Append(text, value->GetDouble());
  return text + value->GetString() + ";";
}

void RequireEqual(const char* what, const std::string& left, const std::string& right) {
  if (left == right) return;
  Fail(std::string(what) + " answer differently:\n" + left + "\n" + right);
}

void RequireFinite(const char* what, const ScoreValue* value) {
  if (value == nullptr || value->GetType() != ScoreValue::kNumericValueType) return;
  if (!std::isfinite(value->GetDouble())) Fail(std::string(what) + " is not finite");
}

unsigned SeedOf(const std::uint8_t* data, std::size_t size) {
  unsigned seed = 2166136261U;
  for (std::size_t i = 0; i < size; ++i) seed = (seed ^ data[i]) * 16777619U;
  return seed;
}

}  // namespace VeyraFuzz
