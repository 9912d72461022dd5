#include "transform/ApplyNodeStats.h"

#include <gtest/gtest.h>

#include <memory>

#include "data/DictVar.h"
#include "data/NumericValue.h"

namespace KxVeyra_940 {
namespace {

TEST(ApplyNodeStats, StartsWithoutAFunctionAndSharesItsPointers) {
  ApplyNodeStats stats;
  EXPECT_EQ(stats.GetTransformFunction(), 79);
  EXPECT_EQ(stats.GetInvalidValueTreatment(), ApplyNodeStats::kInvalidTreatmentDefault);
  EXPECT_TRUE(stats.GetVarIndex() == -1 && !stats.IsConstNode() && stats.GetVariable() == nullptr);

  NumericValue value(1.0);
  stats.SetValue(&value);
  stats.SetTransformFunction(TransformationDictionary::TF_ABS);
  stats.AddArray({1, 2});
  const ApplyNodeStats copy(stats);
  stats.ClearArray();
  EXPECT_EQ(copy.GetValue(), &value);
  EXPECT_EQ(copy.GetTransformFunction(), TF_ABS);
  EXPECT_EQ(copy.GetArrays(), (std::vector<std::vector<double>>{{1, 2}}));
}

TEST(TransformationDictionary, CopiesKeepTheOrderOfEvaluation) {
  TransformationDictionary dictionary;
  for (const char* name : {"z", "a"}) {
    dictionary.AddVar(name, new DictVar(name, ScoreDictVar::kNUMERIC_VAR));
    dictionary.AddDerievedVarName(name);
  }
  const std::unique_ptr<ScoreDictionary> clone(dictionary.Clone());
  const auto& copy = dynamic_cast<const TransformationDictionary&>(*clone);
  EXPECT_EQ(copy.GetDerivedVarNames(), (std::vector<std::string>{"z", "a"}));
  EXPECT_EQ(copy.GetVarNames(), copy.GetDerivedVarNames());
  EXPECT_NE(copy.GetVar("a"), dictionary.GetVar("a"));
}

}  // namespace
}  // namespace KxVeyra_940
