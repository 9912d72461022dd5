// What every model has: dictionaries and their owners, roles, the answer for a case without one.

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <optional>
#include <vector>

#include "data/BaseDictionary.h"
#include "data/CountedValue.h"
#include "data/DictVar.h"
#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "data/ValueProbability.h"
#include "data/ValueProbabilitySet.h"
#include "factory/BaseModel.h"
#include "factory/VersionInfo.h"
#include "transform/TransformationDictionary.h"

namespace {

using namespace KxVeyra_940;

class Model final : public BaseModel {
 public:
  Model() = default;

  KxScore::KxStatus PrepareForCases(const ScoreCaseRecord&) override { return {}; }
  std::string GetModelKind() const override { return "Model"; }
  ScoreResult* NewResult() const override { return nullptr; }
  KxScore::KxStatus Score(const ScoreCaseRecord&, ScoreResult&) override { return {}; }
  bool HasNoProbabilityOutput() const override { return fNoProbabilities; }
  Model* Clone() const override { return new Model(*this); }

  bool fNoProbabilities = false;

 private:
  Model(const Model& other) = default;
};

// What the model tells it, as a text: "p(b 0.5) value b probability 0.5 ".
class Result final : public ScoreResult {
 public:
  explicit Result(int kind) : fKind(kind) {}

  void SetPredictedValue(ScoreValue* value) override {
    const std::unique_ptr<ScoreValue> owner(value);
    fStory += value == nullptr ? "value null " : "value " + value->GetString() + " ";
  }
  void SetProbability(double probability) override { fStory += "probability " + Number(probability) + " "; }
  int GetResultKind() const override { return fKind; }
  void AddValueProbability(ScoreValue* value, double probability) override {
    const std::unique_ptr<ScoreValue> owner(value);
    fStory += "p(" + value->GetString() + " " + Number(probability) + ") ";
  }
  const ScoreValue* GetPredictedValue() const override { return nullptr; }
  double GetProbability() const override { return 0; }
  int GetNumberOfCategories() const override { return 0; }
  const ScoreValue* GetCategory(int) const override { return nullptr; }
  double GetCategoryProbability(int) const override { return 0; }
  int GetNumberOfOutputs() const override { return 0; }
  const std::string& GetOutputName(int) const override { return fStory; }
  const ScoreValue* GetOutputValue(int) const override { return nullptr; }
  void Reset() override { fStory.clear(); }

  const std::string& GetStory() const { return fStory; }

 private:
  static std::string Number(double number) { return NumericValue(number).GetString(); }

  int fKind;
  std::string fStory;
};

using Priors = std::vector<std::pair<const char*, double>>;

// A model whose target "y" has this level and these priors and default, when there are any.  Null is a prior
// of no value.
std::unique_ptr<Model> ModelOf(ScoreDictVar::MeasureLevel level, const std::optional<Priors>& priors,
                               std::optional<double> defaultValue = std::nullopt) {
  auto model = std::make_unique<Model>();
  auto* const dictionary = new BaseDictionary;
  model->SetScoreDictionary(dictionary);
  auto* const target = new DictVar("y", ScoreDictVar::STRING_VAR);
  target->SetMLevel(level);
  if (priors) {
    auto* const set = new ValueProbabilitySet;
    for (const auto& [text, probability] : *priors) {
      set->Add(new ValueProbability(text == nullptr ? nullptr : new StringValue(text), probability));
    }
    target->SetValueProbabilities(set);
  }
  if (defaultValue) target->SetDefValue(new NumericValue(*defaultValue));
  dictionary->AddVar("y", target);
  model->SetVarRole("y", ScoreModel::kTargetRole);
  return model;
}

TEST(FallbackAnswer, ComesFromPriorsOrTheDefault) {
  const auto kNominal = ScoreDictVar::kNominal;
  const auto kContinuous = ScoreDictVar::kContinuous;
  const Priors ties = {{"a", 0.2}, {"b", 0.5}, {"c", 0.5}};
  const Priors one = {{"a", 1}};
  const Priors zeros = {{"a", 0}, {"b", 0}};
  const std::string ofTies = "p(a 0.2) p(b 0.5) p(c 0.5) value b probability 0.5 ";
  const std::string ofOne = "p(a 1) value a probability 1 ";
  const struct {
    const char* what;
    std::unique_ptr<Model> model;
    long wantCode;
    std::string want;
  } kRows[] = {
      {"ties keep the earlier value", ModelOf(kNominal, ties), 0, ofTies},
      {"ordinal like nominal; a default plays no part", ModelOf(ScoreDictVar::kOrdinal, one, 3), 0, ofOne},
      {"all zero: nothing is predicted", ModelOf(kNominal, zeros), 0, "p(a 0) p(b 0) "},
      {"a prior of no value plays no part", ModelOf(kNominal, Priors{{nullptr, 0.6}, {"a", 0.4}}), 0,
       "p(a 0.4) value a probability 0.4 "},
      {"an empty set", ModelOf(kNominal, Priors{}), 0, ""},
      {"an entry without a value is no category", ModelOf(kNominal, Priors{{nullptr, 0.9}, {"a", 1}}), 0,
       ofOne},
      {"no priors", ModelOf(kNominal, {}, 3), 90027, "value null "},
      {"continuous with a default; priors play no part", ModelOf(kContinuous, ties, 3), 0, "value 3 "},
      {"continuous without a default", ModelOf(kContinuous, ties), 90027, ""},
      {"no target", std::make_unique<Model>(), 90027, ""},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    Result result(0);
    const KxScore::KxStatus status = row.model->HandleMissingValue(&result);
    EXPECT_EQ(status.GetErrorCode(), row.wantCode);
    EXPECT_EQ(status.IsError(), row.wantCode != 0);
    EXPECT_EQ(result.GetStory(), row.want);
    EXPECT_TRUE(row.model->HandleMissingValue(nullptr).IsOK());
  }
}

TEST(FallbackAnswer, AddsProbabilitiesToTheKindsThatTakeThem) {
  const std::unique_ptr<Model> model = ModelOf(ScoreDictVar::kNominal, Priors{{"a", 1}});
  const int kTaking[] = {0, 2, 3, 4, 6, 10, 15, 18, 20, 21, 24, 26};
  for (int kind = 0; kind < 60; ++kind) {
    for (const bool noProbabilities : {false, true}) {
      model->fNoProbabilities = noProbabilities;
      Result result(kind);
      EXPECT_TRUE(model->HandleMissingValue(&result).IsOK());
      const bool takes =
          !noProbabilities && std::find(std::begin(kTaking), std::end(kTaking), kind) != std::end(kTaking);
      EXPECT_EQ(result.GetStory().starts_with("p(a 1) "), takes) << kind;
      EXPECT_NE(result.GetStory().find("value a"), std::string::npos) << kind;
    }
  }
}

// A dictionary that counts how many of its kind there are.
class CountedDictionary final : public BaseDictionary {
 public:
  explicit CountedDictionary(int& count) : fCount(count) { ++fCount; }
  ~CountedDictionary() override { --fCount; }
  ScoreDictionary* Clone() const override { return new CountedDictionary(fCount); }

 private:
  int& fCount;
};

class UncopiedTransformations final : public TransformationDictionary {
 public:
  ScoreDictionary* Clone() const override { throw std::bad_alloc(); }
};

TEST(CopiedModels, LeaveNothingBehindWhenMemoryRunsOut) {
  int count = 0;
  {
    Model model;
    model.SetScoreDictionary(new CountedDictionary(count));
    model.SetTransformationScoreDictionary(new UncopiedTransformations);
    EXPECT_THROW(model.Clone(), std::bad_alloc);
    EXPECT_EQ(count, 1);
  }
  EXPECT_EQ(count, 0);
}

TEST(Roles, BelongToVariables) {
  Model model;
  EXPECT_FALSE(model.SetVarRole("x", ScoreModel::kTargetRole)) << "no dictionary yet";
  BaseDictionary fields;
  TransformationDictionary derived;
  auto* const x = new DictVar("x", ScoreDictVar::kNUMERIC_VAR);
  fields.AddVar("x", x);
  fields.AddVar("y", new DictVar("y", ScoreDictVar::kNUMERIC_VAR));
  derived.AddVar("d", new DictVar("d", ScoreDictVar::kNUMERIC_VAR));
  model.SetScoreDictionary(&fields, false);
  EXPECT_FALSE(model.SetVarRole("d", ScoreModel::kPredictorRole)) << "no derived fields yet";
  model.SetTransformationScoreDictionary(&derived, false);
  EXPECT_FALSE(model.SetVarRole("", ScoreModel::kTargetRole));
  EXPECT_FALSE(model.SetVarRole("z", ScoreModel::kTargetRole));
  EXPECT_FALSE(model.SetVarRole(static_cast<const ScoreDictVar*>(nullptr), ScoreModel::kTargetRole));
  EXPECT_EQ(model.GetTargetVar(), nullptr) << "a refused name became the target";
  EXPECT_TRUE(model.SetVarRole("d", ScoreModel::kPredictorRole));
  EXPECT_TRUE(model.SetVarRole(x, ScoreModel::kTargetRole));
  EXPECT_EQ(model.GetTargetVar(), x);
  EXPECT_TRUE(model.SetVarRole("y", ScoreModel::kTargetRole));
  EXPECT_EQ(model.GetTargetVar(), fields.GetVar("y")) << "the last one is the target";
  EXPECT_TRUE(model.SetVarRole("x", static_cast<ScoreModel::VarRole>(7)));
  const std::pair<const char*, int> kRows[] = {{"d", 0}, {"x", 7}, {"y", 1}, {"z", -1}, {"", -1}};
  for (const auto& [name, want] : kRows) EXPECT_EQ(model.GetVarRole(name), want) << name;
  EXPECT_EQ(model.GetVarRole(x), 7);
  EXPECT_EQ(model.GetVarRole(static_cast<const ScoreDictVar*>(nullptr)), -1);
  EXPECT_TRUE(model.SetVarRole("d", ScoreModel::kTargetRole));
  EXPECT_EQ(model.GetTargetVar(), nullptr) << "a derived field is looked up among the fields";
}

int gDeleted = 0;

template <typename Base>
class Counted final : public Base {
 public:
  ~Counted() override { ++gDeleted; }
};

// A model and what its setters take, in raw memory of its own: what the model does not delete is deleted at
// the end, unless the test says that the model has done so.
struct Owned {
  using Fields = Counted<BaseDictionary>;
  std::unique_ptr<Model> model = std::make_unique<Model>();
  std::unique_ptr<Fields> fields{new Fields};
  std::unique_ptr<Fields> results{new Fields};
  std::unique_ptr<Counted<TransformationDictionary>> derived{new Counted<TransformationDictionary>};
  std::unique_ptr<Counted<VersionInfo>> version{new Counted<VersionInfo>};

  void SetAll() {
    model->SetScoreDictionary(fields.get());
    model->SetTransformationScoreDictionary(derived.get());
    model->SetResultScoreDictionary(results.get());
    model->SetVersionInfo(version.get());
  }
  int CountDeleted() {
    gDeleted = 0;
    model.reset();
    return gDeleted;
  }
};

TEST(Ownership, OfEverythingAtFirst) {
  Owned owned;
  owned.SetAll();
  EXPECT_EQ(owned.CountDeleted(), 4);
  owned.fields.release(), owned.results.release(), owned.derived.release(), owned.version.release();
}

TEST(Ownership, SettersDeleteNothingThatTheyReplace) {
  Owned owned;
  owned.SetAll();
  gDeleted = 0;
  owned.model->SetScoreDictionary(nullptr);
  owned.model->SetTransformationScoreDictionary(nullptr);
  owned.model->SetResultScoreDictionary(nullptr);
  owned.model->SetVersionInfo(nullptr);
  EXPECT_EQ(gDeleted, 0);
  EXPECT_EQ(owned.CountDeleted(), 0);
}

TEST(Ownership, FollowsTheLastSetterThatSaysSo) {
  Owned owned;
  owned.model->SetScoreDictionary(nullptr, false);
  owned.model->SetScoreDictionary(owned.fields.get());
  owned.model->SetTransformationScoreDictionary(owned.derived.get(), false);
  owned.model->SetTransformationScoreDictionary(nullptr, true);
  owned.model->SetTransformationScoreDictionary(owned.derived.get());
  EXPECT_EQ(owned.CountDeleted(), 1) << "the derived fields alone";
  owned.derived.release();
}

TEST(Clone, SharesNothing) {
  std::unique_ptr<Model> original = ModelOf(ScoreDictVar::kNominal, Priors{{"a", 1}});
  original->SetTransformationScoreDictionary(new TransformationDictionary);
  original->SetResultScoreDictionary(new BaseDictionary);
  original->SetVersionInfo(new VersionInfo("4.4"));
  original->SetAlgorithmName("KM");
  original->SetMiningFunction(BaseModel::kClassification);
  original->SetMissingValuePolicy(static_cast<ScoreModel::MVPolicy>(2));
  const std::unique_ptr<Model> clone(original->Clone());
  EXPECT_NE(clone->GetDictionary(), original->GetDictionary());
  EXPECT_NE(clone->GetTransformationDictionary(), original->GetTransformationDictionary());
  EXPECT_NE(clone->GetResultDictionary(), original->GetResultDictionary());
  original.reset();
  EXPECT_EQ(clone->GetVarRole("y"), ScoreModel::kTargetRole);
  EXPECT_EQ(clone->GetTargetVar(), clone->GetDictionary()->GetVar("y"));
  EXPECT_EQ(clone->GetVersionInfo()->GetVersionInfo(), "4.4");
  EXPECT_TRUE(clone->isKMorPDF());
  EXPECT_EQ(clone->GetMiningFunction(), BaseModel::kClassification);
  EXPECT_EQ(clone->GetMissingValuePolicy(), 2);

  // A copy owns its dictionary even when the other's was lent.
  BaseDictionary lent;
  Model lender;
  lender.SetScoreDictionary(&lent, false);
  const std::unique_ptr<Model> copy(lender.Clone());
  EXPECT_NE(copy->GetDictionary(), &lent);
  EXPECT_NE(copy->GetDictionary(), nullptr);
}

// Cannot be copied for lack of memory.
class TooLarge final : public BaseDictionary {
 public:
  ScoreDictionary* Clone() const override { throw std::bad_alloc(); }
};
class TooLargeVar final : public DictVar {
 public:
  TooLargeVar() : DictVar("z", kNUMERIC_VAR) {}
  ScoreDictVar* Clone() const override { throw std::bad_alloc(); }
};

TEST(Clone, LeaksNothingWhenMemoryRunsOut) {
  const NoneSurvives check;
  const std::unique_ptr<Model> model = ModelOf(ScoreDictVar::kContinuous, {});
  model->GetTargetVar()->SetDefValue(new CountedValue(1));
  model->SetResultScoreDictionary(new TooLarge);
  EXPECT_THROW(static_cast<void>(model->Clone()), std::bad_alloc);
  EXPECT_EQ(CountedValue::gLiving, 1) << "the dictionary that was copied before";
  model->GetDictionary()->AddVar("z", new TooLargeVar);
  EXPECT_THROW(static_cast<void>(model->Clone()), std::bad_alloc);
  EXPECT_EQ(CountedValue::gLiving, 1) << "the variable that was copied before";
}

TEST(MiningFunction, ByNameAndWithATargetForARegression) {
  const std::pair<const char*, int> kRows[] = {
      {"associationRules", 1}, {"sequences", 2},  {"classification", 3}, {"regression", 4}, {"clustering", 5},
      {"timeSeries", 6},       {"Regression", 0}, {"regression ", 0},    {"regress", 0},    {"", 0},
  };
  Model bare;
  EXPECT_EQ(bare.GetMissingValuePolicy(), 1);
  EXPECT_EQ(bare.GetMiningFunction(), 0);
  for (const auto& [name, want] : kRows) {
    EXPECT_EQ(BaseModel::MiningFunctionFromString(name), want) << name;
    bare.SetMiningFunction(static_cast<BaseModel::FUNCNAME_TYPE>(want));
    EXPECT_EQ(bare.NeedToMakeupATarget(), want == 4) << name;
  }
  const std::unique_ptr<Model> model = ModelOf(ScoreDictVar::kContinuous, {});
  model->SetMiningFunction(BaseModel::kRegression);
  EXPECT_FALSE(model->NeedToMakeupATarget());
}

TEST(AlgorithmName, TellsSurvivalModels) {
  const std::pair<const char*, bool> kRows[] = {
      {"KM", true}, {"Parametric Distribution Fitting", true}, {"km", false}, {"KM ", false}, {"", false}};
  Model model;
  for (const auto& [name, want] : kRows) {
    model.SetAlgorithmName(name);
    EXPECT_EQ(model.isKMorPDF(), want) << name;
  }
}

// Two of the class were ambiguous to compare: clang++ warned in every host.
TEST(VersionInfo, IsAValue) {
  VersionInfo first;
  EXPECT_EQ(first.GetVersionInfo(), "2.1");
  const VersionInfo second("4.4");
  EXPECT_FALSE(first == second);
  const std::unique_ptr<VersionInfo> clone(second.Clone());
  first = second;
  EXPECT_TRUE(first == second && *clone == second);
  const ScoreVersionInfo& interface = *clone;
  EXPECT_TRUE(interface == second && second == interface);
  first.SetVersionInfo("4.4 ");
  EXPECT_FALSE(first == second);
}

}  // namespace
