// Predicates: three-valued answers in both forms, copies, ownership, what they keep, threads.

#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "AllocationCounter.h"
#include "data/CaseRecord.h"
#include "data/DictVar.h"
#include "data/MissingValueSet.h"
#include "data/NumericValue.h"
#include "data/Range.h"
#include "data/ScoreCatNumericEncoder.h"
#include "data/ScoreCatStringEncoder.h"
#include "data/Shown.h"
#include "data/StringValue.h"
#include "data/ValueLabelSet.h"
#include "data/ValueLbl.h"
#include "predicate/CompoundPredicate.h"
#include "predicate/ConstantPredicates.h"
#include "predicate/DiscreteSplit.h"
#include "predicate/ScaleSplit.h"
#include "predicate/SetPredicate.h"
#include "predicate/SimplePredicate.h"

namespace {

using namespace KxVeyra_940;

constexpr auto kT = ScorePredicate::kTrue;
constexpr auto kF = ScorePredicate::kFalse;
constexpr auto kU = ScorePredicate::kUnknown;
constexpr auto kS = ScorePredicate::kTrueBySurrogate;
constexpr double kMissing = NumericValue::gSysmisValue;

// Answers what it is told to.
class Fixed : public TruePredicate {
 public:
  explicit Fixed(PredicateResult result) : fResult(result) {}
  ScorePredicate* Clone() const override { return new Fixed(fResult); }
  PredicateResult Evaluate(const ScoreCaseRecord*, const ScoreCaseRecord*) const override { return fResult; }
  PredicateResult Evaluate(const std::vector<double>&) const override { return fResult; }

 private:
  PredicateResult fResult;
};

TEST(CompoundPredicate, Logic) {
  const auto kOr = ScorePredicate::kOr;
  const auto kAnd = ScorePredicate::kAnd;
  const auto kXor = ScorePredicate::kXor;
  const auto kFirst = ScorePredicate::kSurrogate;
  const struct {
    ScorePredicate::CompoundBoolOperator boolOperator;
    std::vector<ScorePredicate::PredicateResult> children;
    ScorePredicate::PredicateResult want;
  } rows[] = {
      {kOr, {}, kF},
      {kOr, {kF, kU}, kU},
      {kOr, {kU, kT}, kT},
      {kOr, {kF, kF}, kF},
      {kOr, {kF, kS}, kT},
      {kAnd, {}, kT},
      {kAnd, {kT, kU}, kU},
      {kAnd, {kU, kF}, kF},
      {kAnd, {kT, kT}, kT},
      {kAnd, {kS, kT}, kT},
      {kXor, {}, kF},
      {kXor, {kT, kT, kT}, kT},
      {kXor, {kT, kU}, kU},
      {kXor, {kT, kF, kT}, kF},
      {kXor, {kS, kF}, kT},
      {kFirst, {}, kU},
      {kFirst, {kU}, kU},
      {kFirst, {kU, kU, kF}, kF},
      {kFirst, {kU, kT}, kS},
      {kFirst, {kF, kT}, kF},
      {kFirst, {kT, kF}, kT},
      {kFirst, {kU, kU}, kU},
      {kFirst, {kS, kF}, kS},
      {kFirst, {kU, kS}, kS},
      {static_cast<ScorePredicate::CompoundBoolOperator>(9), {kT}, kU},
  };
  for (const auto& row : rows) {
    CompoundPredicate compound(row.boolOperator);
    for (const auto child : row.children) compound.AddPredicate(new Fixed(child));
    SCOPED_TRACE(std::to_string(row.boolOperator) + " of " + std::to_string(row.children.size()));
    const std::unique_ptr<ScorePredicate> clone(compound.Clone());
    EXPECT_EQ(compound.Evaluate(nullptr, nullptr), row.want);
    EXPECT_EQ(clone->Evaluate(std::vector<double>()), row.want);
  }
}

TEST(CompoundPredicate, EvaluateSurrogateStartsLater) {
  CompoundPredicate compound(ScorePredicate::kSurrogate);
  for (const auto result : {kF, kU, kT, kU}) compound.AddPredicate(new Fixed(result));
  const ScorePredicate::PredicateResult want[] = {kF, kS, kT, kU};
  for (int start = 0; start < 4; ++start)
    EXPECT_EQ(compound.EvaluateSurrogate({}, start), want[start]) << start;
  EXPECT_EQ(compound.EvaluateSurrogate({}, -1), kF);
  EXPECT_EQ(compound.EvaluateSurrogate({}, 4), kF);
  compound.SetBoolOperator(ScorePredicate::kOr);
  EXPECT_EQ(compound.EvaluateSurrogate({}, 2), kF);
}

TEST(CompoundPredicate, RemovesWithoutDeleting) {
  CompoundPredicate compound;
  compound.AddPredicate(nullptr);
  compound.AddPredicate(new Fixed(kU));
  const std::unique_ptr<ScorePredicate> other(new Fixed(kT));
  EXPECT_FALSE(compound.RemovePredicate(other.get()));
  ASSERT_EQ(compound.GetCount(), 1);
  const std::unique_ptr<ScorePredicate> removed(compound.GetPredicates().front());
  EXPECT_TRUE(compound.RemovePredicate(removed.get()));
  EXPECT_EQ(compound.GetCount(), 0);
  EXPECT_EQ(removed->Evaluate({}), kU);
}

enum class Encoder { kNone, kNumbers };

// Values 1 and 2 are listed; 9 counts as missing.
DictVar Grade(ScoreDictVar::MeasureLevel level, Encoder encoder) {
  DictVar grade("grade", ScoreDictVar::kNUMERIC_VAR);
  grade.SetMLevel(level);
  auto* missing = new MissingValueSet;
  missing->Add(new Range(new NumericValue(9)));
  grade.SetMissingValues(missing);
  if (level != ScoreDictVar::kContinuous) {
    auto* labels = new ValueLabelSet;
    for (const double value : {1., 2.}) labels->Add(new ValueLbl(new NumericValue(value), "label"));
    grade.SetValueLabels(labels);
  }
  if (encoder == Encoder::kNumbers) grade.SetEncoder(new ScoreCatNumericEncoder({1, 2}));
  return grade;
}

// Holds for the value 1, or its code 0.
ScoreSplitVar* SplitOf(const DictVar& variable, bool isDiscrete, int missingChild) {
  ScoreSplitVar* made = nullptr;
  if (isDiscrete) {
    auto* split = new DiscreteSplit(&variable);
    split->PutSplit(new NumericValue(1), 0);
    split->PutSplit(0.0, 0);
    made = split;
  } else {
    auto* split = new ScaleSplit(&variable);
    split->PutSplit(new Range(1, 1, true, true), 0);
    made = split;
  }
  made->SetMissvalMap(missingChild);
  return made;
}

// A number, a text that stands for a value of another kind, or an empty slot, by name in a record.
CaseRecord RecordOf(double number) {
  CaseRecord record(2);
  record.Add("other", new NumericValue(1));
  record.Add("grade", number == kMissing ? nullptr : new NumericValue(number));
  return record;
}

TEST(SplitPredicates, InACaseRecord) {
  const auto kScale = ScoreDictVar::kContinuous;
  const auto kOrdinal = ScoreDictVar::kOrdinal;
  const auto kNominal = ScoreDictVar::kNominal;
  const auto kPlain = Encoder::kNone;
  const auto kCoded = Encoder::kNumbers;
  const struct {
    const char* what;
    ScoreDictVar::MeasureLevel level;
    Encoder encoder;
    bool isDiscrete;
    double number;
    // simple without and with a missing child, set with one
    ScorePredicate::PredicateResult simple, simpleWithMissing, set;
  } rows[] = {
      {"a number inside", kScale, kPlain, false, 1, kT, kT, kT},
      {"a number outside", kScale, kPlain, false, 5, kF, kF, kF},
      {"declared missing", kScale, kPlain, false, 9, kU, kT, kU},
      {"an empty slot", kScale, kPlain, false, kMissing, kU, kT, kU},
      {"a coded continuous variable, by value", kScale, kCoded, false, 1, kT, kT, kT},
      {"a listed category", kNominal, kPlain, true, 1, kT, kT, kT},
      {"another category", kNominal, kPlain, true, 2, kF, kF, kF},
      {"an unlisted category is invalid", kNominal, kPlain, true, 5, kU, kT, kU},
      {"a missing category", kNominal, kPlain, true, 9, kU, kT, kU},
      {"by code", kNominal, kCoded, true, 1, kT, kT, kT},
      {"by code, another one", kNominal, kCoded, true, 2, kF, kF, kF},
      {"a category without a code", kNominal, kCoded, true, 5, kU, kT, kU},
      {"an ordered category", kOrdinal, kPlain, true, 1, kT, kT, kT},
      {"an unlisted ordered category", kOrdinal, kPlain, true, 5, kF, kF, kU},
      {"an ordered category without a code", kOrdinal, kCoded, true, 5, kF, kF, kU},
      {"a coded ordered category", kOrdinal, kCoded, true, 1, kT, kT, kT},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    DictVar grade = Grade(row.level, row.encoder);
    const SimplePredicate simple(SplitOf(grade, row.isDiscrete, -1));
    const SimplePredicate simpleWithMissing(SplitOf(grade, row.isDiscrete, 0));
    const SetPredicate set(SplitOf(grade, row.isDiscrete, 0));
    const CaseRecord record = RecordOf(row.number);
    for (const int index : {-1, 1, 7}) {  // the slot is found by name when the index gives nothing
      grade.SetValueIndex(index);
      EXPECT_EQ(simple.Evaluate(&record, nullptr), row.simple);
      EXPECT_EQ(simpleWithMissing.Evaluate(&record, nullptr), row.simpleWithMissing);
      EXPECT_EQ(set.Evaluate(&record, nullptr), row.set);
    }
  }
}

TEST(SplitPredicates, InAVectorOfNumbers) {
  const auto kScale = ScoreDictVar::kContinuous;
  const auto kOrdinal = ScoreDictVar::kOrdinal;
  const auto kNominal = ScoreDictVar::kNominal;
  const struct {
    ScoreDictVar::MeasureLevel level;
    std::vector<double> numbers;
    ScorePredicate::PredicateResult simple, simpleWithMissing, set;
  } rows[] = {
      {kScale, {7, 1}, kT, kT, kT},    {kScale, {7, 2}, kF, kF, kF},    {kScale, {7, kMissing}, kU, kT, kU},
      {kScale, {7}, kU, kT, kU},       {kScale, {7, -2}, kF, kF, kF},   {kScale, {7, 9}, kF, kF, kF},
      {kNominal, {7, 0}, kT, kT, kT},  {kNominal, {7, 1}, kF, kF, kF},  {kNominal, {7, -1}, kF, kT, kF},
      {kNominal, {7, -2}, kU, kT, kU}, {kNominal, {7}, kF, kT, kF},     {kOrdinal, {7, 0}, kT, kT, kT},
      {kOrdinal, {7, -1}, kF, kF, kF}, {kOrdinal, {7, -2}, kU, kT, kU}, {kOrdinal, {7}, kF, kF, kF},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.level) + " of " + testing::PrintToString(row.numbers));
    DictVar grade = Grade(row.level, Encoder::kNone);
    grade.SetEncodedValueIndex(1);
    const bool isDiscrete = row.level != kScale;
    EXPECT_EQ(SimplePredicate(SplitOf(grade, isDiscrete, -1)).Evaluate(row.numbers), row.simple);
    EXPECT_EQ(SimplePredicate(SplitOf(grade, isDiscrete, 0)).Evaluate(row.numbers), row.simpleWithMissing);
    EXPECT_EQ(SetPredicate(SplitOf(grade, isDiscrete, 0)).Evaluate(row.numbers), row.set);
  }
}

TEST(SplitPredicates, WithoutASplitAreUnknown) {
  const CaseRecord record = RecordOf(1);
  EXPECT_EQ(SimplePredicate().Evaluate(&record, nullptr), kU);
  EXPECT_EQ(SimplePredicate().Evaluate({1.}), kU);
  EXPECT_EQ(SetPredicate().Evaluate(&record, nullptr), kU);
  EXPECT_EQ(SetPredicate().Evaluate({1.}), kU);
}

class Derived : public DictVar {
 public:
  Derived() : DictVar("grade", ScoreDictVar::kNUMERIC_VAR) {}
  bool IsDerivedVariable() const override { return true; }
};

TEST(SplitPredicates, FindDerivedValuesInTheDerivedRecord) {
  const Derived derived;
  const DictVar plain("grade", ScoreDictVar::kNUMERIC_VAR);
  const CaseRecord one = RecordOf(1);
  const CaseRecord two = RecordOf(2);
  const SimplePredicate ofDerived(SplitOf(derived, false, -1));
  const SimplePredicate ofPlain(SplitOf(plain, false, -1));
  EXPECT_EQ(ofDerived.Evaluate(&two, &one), kT);
  EXPECT_EQ(ofDerived.Evaluate(&one, &two), kF);
  EXPECT_EQ(ofDerived.Evaluate(&one, nullptr), kT);
  EXPECT_EQ(ofPlain.Evaluate(&one, &two), kT);
  EXPECT_EQ(ofPlain.Evaluate(nullptr, &one), kU);
  EXPECT_TRUE(ofDerived.IsDerivedPredictor());
  EXPECT_FALSE(ofPlain.IsDerivedPredictor());
  CompoundPredicate compound;
  compound.AddPredicate(ofPlain.Clone());
  EXPECT_FALSE(compound.IsDerivedPredictor());
  compound.AddPredicate(ofDerived.Clone());
  EXPECT_TRUE(compound.IsDerivedPredictor());
}

TEST(SimplePredicate, KeepsOperatorAndValue) {
  DictVar age("age", ScoreDictVar::kNUMERIC_VAR);
  SimplePredicate predicate(new ScaleSplit(&age));
  EXPECT_EQ(predicate.GetPredValueByDouble(), kMissing);
  const std::pair<const char*, int> operators[] = {
      {"equal", 0},          {"notEqual", 1},  {"lessThan", 2},     {"lessOrEqual", 3}, {"greaterThan", 4},
      {"greaterOrEqual", 5}, {"isMissing", 6}, {"isNotMissing", 7}, {"Equal", 7}};
  for (const auto& [text, code] : operators) {
    predicate.SetPredicateOperator(text);
    EXPECT_EQ(predicate.GetPredicateOperator(), code) << text;
  }
  predicate.SetPredicateValue("2.5");
  EXPECT_EQ(predicate.GetPredValueByString(), "2.5");
  EXPECT_EQ(predicate.GetPredValueByDouble(), 2.5);
  predicate.SetValueToMissing(true);
  const SimplePredicate copy = predicate;
  EXPECT_TRUE(copy.IsMissingValue());
  EXPECT_NE(copy.GetSplit(), predicate.GetSplit());
  age.SetVarType(ScoreDictVar::kDATETIME_VAR);
  predicate.SetPredicateValue("3");
  EXPECT_EQ(predicate.GetPredValueByDouble(), kMissing);
  age.SetVarType(ScoreDictVar::STRING_VAR);
  age.SetEncoder(new ScoreCatStringEncoder(std::vector<std::string>{"a", "b"}));
  predicate.SetPredicateValue("b");
  EXPECT_EQ(predicate.GetPredValueByDouble(), 1);
  predicate.SetPredicateValue("c");
  EXPECT_EQ(predicate.GetPredValueByDouble(), -1);
}

TEST(SetPredicate, KeepsOperatorAndArray) {
  SetPredicate predicate;
  predicate.SetArrayData({1, 2});
  predicate.SetArrayData({});
  EXPECT_EQ(predicate.GetArrayData(), (std::vector<double>{1, 2}));
  EXPECT_EQ(predicate.GetPredicateOperator(), 0);
  predicate.SetPredicateOperator("isNotIn");
  EXPECT_EQ(predicate.GetPredicateOperator(), 1);
  predicate.SetPredicateOperator("isIn");
  EXPECT_EQ(predicate.GetPredicateOperator(), 0);
}

TEST(Predicates, SayWhatTheyAre) {
  const TruePredicate always;
  const FalsePredicate never;
  EXPECT_EQ(always.Evaluate({}), kT);
  EXPECT_EQ(never.Evaluate(nullptr, nullptr), kF);
  const CompoundPredicate compound;
  const SimplePredicate simple;
  const SetPredicate set;
  const std::pair<const ScorePredicate&, const char*> rows[] = {
      {compound, "Compound Predicate: \n"}, {simple, "Simple Predicate: \n"}, {set, "Set Predicate: \n"},
      {always, "Constant TRUE\n"},          {never, "Constant FALSE\n"},
  };
  int type = 0;
  for (const auto& [predicate, text] : rows) {
    EXPECT_EQ(Shown(predicate), text);
    EXPECT_EQ(predicate.GetPredType(), type++);
    const std::unique_ptr<ScorePredicate> clone(predicate.Clone());
    EXPECT_EQ(Shown(*clone), text);
    EXPECT_EQ(clone->GetSplit(), nullptr);
  }
}

TEST(PredicateThreads, EvaluateOneObjectAtOnceAndAllocateNothing) {
  DictVar grade = Grade(ScoreDictVar::kNominal, Encoder::kNumbers);
  grade.SetValueIndex(1);
  CompoundPredicate compound(ScorePredicate::kSurrogate);
  compound.AddPredicate(new SimplePredicate(SplitOf(grade, true, -1)));
  compound.AddPredicate(new SetPredicate(SplitOf(grade, true, -1)));
  std::vector<std::thread> threads;
  std::vector<int> sums(4, 0);
  std::vector<long> allocations(4, -1);
  for (std::size_t thread = 0; thread < sums.size(); ++thread) {
    threads.emplace_back([&, thread] {
      CaseRecord record = RecordOf(1);
      const AllocationCounter counter;
      for (int i = 0; i < 2000; ++i) {
        record.SetValue(1, 1.0 + i % 2);
        sums[thread] += compound.Evaluate(&record, nullptr);
      }
      allocations[thread] = counter.Count();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(sums, std::vector<int>(4, 1000));
  EXPECT_EQ(allocations, std::vector<long>(4, 0));
}

}  // namespace
