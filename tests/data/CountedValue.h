// A number that counts its living instances: what is deleted twice, or never, shows.

#ifndef VEYRA_TESTS_DATA_COUNTEDVALUE_H_
#define VEYRA_TESTS_DATA_COUNTEDVALUE_H_

#include <gtest/gtest.h>

#include "data/NumericValue.h"

class CountedValue : public KxVeyra_940::NumericValue {
 public:
  explicit CountedValue(double number) : NumericValue(number) { ++gLiving; }
  CountedValue(const CountedValue& other) : NumericValue(other) { ++gLiving; }
  ~CountedValue() override { --gLiving; }
  KxVeyra_940::ScoreValue* Clone() const override { return new CountedValue(*this); }

  static inline int gLiving = 0;
};

// Declared before the owners of counted values: none of these must outlive them.
struct NoneSurvives {
  ~NoneSurvives() { EXPECT_EQ(CountedValue::gLiving, 0); }
};

#endif  // VEYRA_TESTS_DATA_COUNTEDVALUE_H_
