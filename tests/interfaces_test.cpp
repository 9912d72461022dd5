// Numbers that leave the process are fixed: hosts and plug-ins compiled earlier rely on them.

#include <gtest/gtest.h>

#include "veyra/TransformFunction.h"
#include "veyra/veyra.h"

namespace {

using namespace KxVeyra_940;

static_assert(ScoreValue::kDateTimeValueType == 5 && ScoreDictVar::kDATETIME_VAR == 4);
static_assert(ScoreModel::kTargetRole == 1 && ScoreModel::kNoRole == -1);
static_assert(TF_STDNORMALIDF == 78 && kTransformFunctionCount == 79);

TEST(HostsHeader, ReachesTheExportedData) {
  EXPECT_EQ(gErrorFormater.GetParameterNumber(260120), 2);
  EXPECT_EQ(fgErrorKeys[0], "kE_PARSE");
}

TEST(KxStatus, SeverityDecidesTheKind) {
  EXPECT_TRUE(KxScore::KxStatus().IsOK());
  EXPECT_TRUE(KxScore::KxStatus(5, true).IsWarning());
  EXPECT_TRUE(KxScore::KxStatus(5, false).IsError());
}

}  // namespace
