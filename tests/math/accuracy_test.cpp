// Every distribution function at every reference point.

#include <gtest/gtest.h>

#include "accuracy/Accuracy.h"

namespace KxMath_940::Accuracy {

void PrintTo(const Subject& subject, std::ostream* out) { *out << subject.function; }

namespace {

std::string NameOf(const testing::TestParamInfo<Subject>& subject) {
  std::string name = subject.param.function;
  std::erase_if(name, [](char c) { return c == ' ' || c == ','; });
  return name;
}

class AccuracyTest : public testing::TestWithParam<Subject> {};

TEST_P(AccuracyTest, ErrorsAreBelowTheLimits) {
  const Result result = Measure(GetParam());
  EXPECT_GE(result.ordinary.points + result.large.points, 2000);
  for (const Worst& worst : {result.ordinary, result.large}) {
    EXPECT_LE(worst.error, worst.limit) << "at " << worst.where;
  }
}

INSTANTIATE_TEST_SUITE_P(Functions, AccuracyTest, testing::ValuesIn(kSubjects), NameOf);

}  // namespace
}  // namespace KxMath_940::Accuracy
