// The program that an expression is compiled to answers what a literal walk over its tree answers: random
// well-typed expressions over random cases, missing and invalid values among them.

#include <gtest/gtest.h>

#include <random>

#include "transform/DerivedFields.h"
#include "transform/FunctionTreeImp.h"
#include "transform/ReferenceEvaluator.h"

namespace {

using namespace veyra_tests;

class RandomExpressions {
 public:
  explicit RandomExpressions(unsigned seed) : fEngine(seed) {}

  std::unique_ptr<FunctionTreeImp> Make(bool text, int depth) {
    if (depth == 0 || Chance(0.15)) return text ? TextLeaf() : NumberLeaf();
    struct Shape {
      TransformFunction function;
      const char* operands;  // n number, t text, d date, a any; + repeats the one before
    };
    static constexpr Shape kNumbers[] = {
        {TF_ADDITION, "nn"},
        {TF_SUBTRACTION, "nn"},
        {TF_MULTIPLY, "nn"},
        {TF_DIVISION, "nn"},
        {TF_POW, "nn"},
        {TF_ABS, "n"},
        {TF_LN, "n"},
        {TF_SQRT, "n"},
        {TF_MOD, "nn"},
        {TF_ROUND, "n"},
        {TF_SUM, "n+"},
        {TF_MAX, "n+"},
        {TF_MEDIAN, "n+"},
        {TF_SD, "n+"},
        {TF_STDNORMALCDF, "n"},
        {TF_STDNORMALIDF, "n"},
        {TF_THRESHOLD, "nn"},
        {TF_AND, "n+"},
        {TF_OR, "n+"},
        {TF_NOT, "n"},
        {TF_LESSTHAN, "aa"},
        {TF_LESSTHAN, "nn"},
        {TF_GREATEROREQUAL, "tt"},
        {TF_EQUAL, "aa"},
        {TF_NOTEQUAL, "nn"},
        {TF_ISIN, "n+"},
        {TF_ISNOTIN, "t+"},
        {TF_MATCHES, "tt"},
        {TF_LENGTH, "t"},
        {TF_ISMISSING, "a"},
        {TF_ISNOTMISSING, "a"},
        {TF_SYSMIS, "n"},
        {TF_IF, "nnn"},
        {TF_IF, "naa"},
        {TF_IF, "nn"},
        {TF_DATE_DAYS_DIFFERENCE, "dd"},
        {TF_YEAR_FROM_DATE, "d"},
    };
    static constexpr Shape kTexts[] = {
        {TF_UPPERCASE, "t"}, {TF_LTRIM, "t"},       {TF_RTRIM, "t"}, {TF_CONCAT, "t+"},
        {TF_REPLACE, "ttt"}, {TF_SUBSTRING, "tnn"}, {TF_IF, "ntt"},  {TF_IF, "nta"},
    };
    const Shape& shape = text ? kTexts[Index(std::size(kTexts))] : kNumbers[Index(std::size(kNumbers))];
    auto node = std::make_unique<FunctionTreeImp>(true);
    ApplyNodeStats stats;
    stats.SetNodeID(std::to_string(fNodes++));
    stats.SetTransformFunction(shape.function);
    if (Chance(0.2)) stats.SetRecodeMissValueTo(Keep(*node, text != Chance(0.3)));
    if (Chance(0.2)) stats.SetDefaultValue(Keep(*node, text != Chance(0.3)));
    if (Chance(0.4)) stats.SetInvalidValueTreatment(ApplyNodeStats::kAsMissing);
    node->SetNodeStats(stats);
    char kind = 'n';
    for (const char* operand = shape.operands; *operand != 0; ++operand) {
      const int count = *operand == '+' ? static_cast<int>(Index(3)) : 1;
      if (*operand != '+') kind = *operand;
      for (int i = 0; i < count; ++i) node->Add(Operand(kind, depth - 1).release());
    }
    return node;
  }

  void Fill(CaseRecord& record) {
    for (int i = 0; i < record.Size(); ++i) record.Clear(i);
    const double numbers[] = {0, 1, 2, -3.5, 50, -9, 1e300, 1e-300, 12};
    for (const char* name : {"x", "y", "z"})
      if (Chance(0.75)) record.SetValue(name, numbers[Index(std::size(numbers))]);
    if (Chance(0.05)) record.SetValue("x", NumericValue::SYSMIS);
    const std::string texts[] = {
        "", "a", "b", "?", " ab ", "12", "a\xC3\xA4", "(", "long enough to be stored elsewhere"};
    for (const char* name : {"s", "t", "c"})
      if (Chance(0.75)) record.SetValue(name, texts[Index(std::size(texts))]);
    for (const auto& [name, type] : {std::pair("d", ScoreDictVar::kDateDaysSince1970),
                                     std::pair("m", ScoreDictVar::kDateTimeSecondsSince1970)})
      if (Chance(0.75)) record.SetValue(name, static_cast<double>(Index(100000)) - 5000, type);
  }

 private:
  bool Chance(double p) { return std::uniform_real_distribution<>(0, 1)(fEngine) < p; }
  std::size_t Index(std::size_t size) {
    return std::uniform_int_distribution<std::size_t>(0, size - 1)(fEngine);
  }

  ScoreValue* Value(bool text) {
    if (text) return new StringValue(Chance(0.5) ? "a" : " 7 ");
    const double numbers[] = {0, 1, 2.5, -4, 7, NumericValue::SYSMIS};
    return new NumericValue(numbers[Index(std::size(numbers))]);
  }
  ScoreValue* Keep(FunctionTreeImp& node, bool text) {
    ScoreValue* const value = Value(text);
    node.KeepValue(value);
    return value;
  }
  std::unique_ptr<FunctionTreeImp> Leaf(const char* field, bool text) {
    auto leaf = std::make_unique<FunctionTreeImp>(false);
    ApplyNodeStats stats;
    stats.SetNodeID(std::to_string(fNodes++));
    if (field == nullptr) {
      stats.SetConstNode(true);
      stats.SetValue(Keep(*leaf, text));
    } else {
      stats.SetParameterName(field);
      if (Chance(0.2)) stats.SetFieldrefRecodeMissValueTo(Keep(*leaf, text));
    }
    leaf->SetNodeStats(stats);
    return leaf;
  }
  std::unique_ptr<FunctionTreeImp> NumberLeaf() {
    const char* const fields[] = {"x", "y", "z", nullptr};
    return Leaf(fields[Index(4)], false);
  }
  std::unique_ptr<FunctionTreeImp> TextLeaf() {
    const char* const fields[] = {"s", "t", "c", nullptr};
    return Leaf(fields[Index(4)], true);
  }
  std::unique_ptr<FunctionTreeImp> Operand(char kind, int depth) {
    if (kind == 'd') return Leaf(Chance(0.5) ? "d" : "m", false);
    if (kind == 'a') kind = "ntd"[Index(3)];
    if (kind == 'd') return Leaf(Chance(0.5) ? "d" : "m", false);
    return Make(kind == 't', depth);
  }

  std::mt19937 fEngine;
  int fNodes = 0;
};

TEST(Evaluation, AnswersLikeAWalkOverTheTree) {
  DerivedFields fields(Field(Ref("x")));
  CaseRecord& record = fields.Record();
  RandomExpressions random(940);
  int present = 0;
  for (int i = 0; i < 6000; ++i) {
    const bool text = i % 3 == 0;
    TransformVar variable("v", text ? ScoreDictVar::STRING_VAR : ScoreDictVar::kNUMERIC_VAR);
    variable.AddFieldNameAndTransExpression("", TransformationDictionary::TE_APPLY);
    FunctionTree* const root = random.Make(text, 1 + i % 5).release();
    variable.SetRoot(root);
    for (int n = 0; n < 6; ++n) {
      random.Fill(record);
      const ReferenceEvaluator::Result expected = ReferenceEvaluator(record, fields.Data()).Traverse(*root);
      const ScoreValue* const value = variable.GetTransformedValue(&record, &fields.Data(), nullptr);
      bool agrees = text ? value->GetString() == ReferenceEvaluator::Text(expected) &&
                               variable.IsTextMissing() == (expected.value == nullptr)
                         : value->GetDouble() == ReferenceEvaluator::Number(expected);
      present += expected.value != nullptr ? 1 : 0;
      if (agrees) continue;
      std::ostringstream shown;
      root->Display(shown);
      record.Display(shown);
      FAIL() << Shown(value) << " instead of '" << ReferenceEvaluator::Text(expected) << "'\n" << shown.str();
    }
  }
  // Not everything is missing.
  EXPECT_GT(present, 12000);
}

}  // namespace
