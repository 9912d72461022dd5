// What every model has: dictionaries and their owners, roles, the answer for a case without one.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "data/BaseDictionary.h"
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

// A model whose target "y" has this level and these priors and default, when there are any.
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
      set->Add(new ValueProbability(new StringValue(text), probability));
    }
    target->SetValueProbabilities(set);
  }
  if (defaultValue) target->SetDefValue(new NumericValue(*defaultValue));
  dictionary->AddVar("y", target);
  model->SetVarRole("y", ScoreModel::kTargetRole);
  return model;
}

TEST(FallbackAnswer, ComesFromPriorsOrTheDefault) {
  const Priors kTies = {{"a", 0.2}, {"b", 0.5}, {"c", 0.5}};
  const struct {
    const char* what;
    ScoreDictVar::MeasureLevel level;
    std::optional<Priors> priors;
    std::optional<double> defaultValue;
    long wantCode;
    std::string want;
  } kRows[] = {
      {"ties keep the earlier value",
       ScoreDictVar::kNominal,
       kTies,
       {},
       0,
       "p(a 0.2) p(b 0.5) p(c 0.5) value b probability 0.5 "},
      {"ordinal like nominal; a default plays no part", ScoreDictVar::kOrdinal, Priors{{"a", 1}}, 3.0, 0,
       "p(a 1) value a probability 1 "},
      {"all zero: nothing is predicted",
       ScoreDictVar::kNominal,
       Priors{{"a", 0}, {"b", 0}},
       {},
       0,
       "p(a 0) p(b 0) "},
      {"an empty set", ScoreDictVar::kNominal, Priors{}, {}, 0, ""},
      {"no priors", ScoreDictVar::kNominal, {}, 3.0, 90027, "value null "},
      {"continuous with a default; priors play no part", ScoreDictVar::kContinuous, kTies, 3.0, 0,
       "value 3 "},
      {"continuous without a default", ScoreDictVar::kContinuous, kTies, {}, 90027, ""},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    const std::unique_ptr<Model> model = ModelOf(row.level, row.priors, row.defaultValue);
    Result result(0);
    const KxScore::KxStatus status = model->HandleMissingValue(&result);
    EXPECT_EQ(status.GetErrorCode(), row.wantCode);
    EXPECT_EQ(status.IsError(), row.wantCode != 0);
    EXPECT_EQ(result.GetStory(), row.want);
    EXPECT_TRUE(model->HandleMissingValue(nullptr).IsOK());
  }
}

TEST(FallbackAnswer, NeedsATarget) {
  Model model;
  Result result(0);
  EXPECT_EQ(model.HandleMissingValue(&result).GetErrorCode(), 90027);
  EXPECT_EQ(result.GetStory(), "");
  EXPECT_TRUE(model.HandleMissingValue(nullptr).IsOK());
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

TEST(Ownership, FollowsTheSetters) {
  using Fields = Counted<BaseDictionary>;
  using Derived = Counted<TransformationDictionary>;
  const struct {
    const char* what;
    int want;
    void (*set)(Model&, Fields&, Derived&, Fields&, Counted<VersionInfo>&);
  } kRows[] = {
      {"everything is owned at first", 4,
       [](Model& model, Fields& fields, Derived& derived, Fields& results, Counted<VersionInfo>& version) {
         model.SetScoreDictionary(&fields);
         model.SetTransformationScoreDictionary(&derived);
         model.SetResultScoreDictionary(&results);
         model.SetVersionInfo(&version);
       }},
      {"lent dictionaries stay", 0,
       [](Model& model, Fields& fields, Derived& derived, Fields&, Counted<VersionInfo>&) {
         model.SetScoreDictionary(&fields, false);
         model.SetTransformationScoreDictionary(&derived, false);
       }},
      {"the one-argument setters keep the owner", 1,
       [](Model& model, Fields& fields, Derived& derived, Fields&, Counted<VersionInfo>&) {
         model.SetScoreDictionary(nullptr, false);
         model.SetScoreDictionary(&fields);
         model.SetTransformationScoreDictionary(nullptr, true);
         model.SetTransformationScoreDictionary(&derived);
       }},
      {"setters delete nothing that they replace", 0,
       [](Model& model, Fields& fields, Derived& derived, Fields& results, Counted<VersionInfo>& version) {
         model.SetScoreDictionary(&fields);
         model.SetScoreDictionary(nullptr);
         model.SetTransformationScoreDictionary(&derived);
         model.SetTransformationScoreDictionary(nullptr);
         model.SetResultScoreDictionary(&results);
         model.SetResultScoreDictionary(nullptr);
         model.SetVersionInfo(&version);
         model.SetVersionInfo(nullptr);
       }},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    // Raw memory of its own: what the model does not delete is deleted here.
    std::unique_ptr<Fields> fields(new Fields), results(new Fields);
    std::unique_ptr<Derived> derived(new Derived);
    std::unique_ptr<Counted<VersionInfo>> version(new Counted<VersionInfo>);
    gDeleted = 0;
    {
      Model model;
      row.set(model, *fields, *derived, *results, *version);
    }
    EXPECT_EQ(gDeleted, row.want);
    if (row.want == 4) fields.release(), results.release(), version.release();
    if (row.want >= 1) derived.release();
  }
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

TEST(MiningFunction, ByName) {
  const std::pair<const char*, int> kRows[] = {
      {"associationRules", 1}, {"sequences", 2},  {"classification", 3}, {"regression", 4}, {"clustering", 5},
      {"timeSeries", 6},       {"Regression", 0}, {"regression ", 0},    {"regress", 0},    {"", 0},
  };
  for (const auto& [name, want] : kRows) EXPECT_EQ(BaseModel::MiningFunctionFromString(name), want) << name;
}

TEST(MiningFunction, ARegressionNeedsATarget) {
  Model bare;
  EXPECT_EQ(bare.GetMissingValuePolicy(), 1);
  EXPECT_EQ(bare.GetMiningFunction(), 0);
  for (int function = 0; function <= 6; ++function) {
    bare.SetMiningFunction(static_cast<BaseModel::FUNCNAME_TYPE>(function));
    EXPECT_EQ(bare.NeedToMakeupATarget(), function == 4) << function;
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
    EXPECT_EQ(model.GetAlgorithmName(), name);
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
