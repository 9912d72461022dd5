#include "veyra/Number.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <random>

namespace {

std::string Shortest(double number) {
  char text[32];
  return std::string(text, std::to_chars(text, text + sizeof text, number).ptr);
}

std::string Written(double number) {
  std::string text = "before ";
  VeyraTool::AppendNumber(number, text);
  return text.substr(7);
}

// Numbers of few digits are written in a way of their own, which must not show.
TEST(Number, IsWrittenAsTheShortestTextThatReadsBack) {
  std::vector<double> numbers = {0,
                                 -0.0,
                                 1,
                                 -1,
                                 0.001,
                                 0.0009999999,
                                 0.00099,
                                 1e-4,
                                 99999,
                                 99999.5,
                                 99999.9999,
                                 1e5,
                                 100000,
                                 123456,
                                 1e22,
                                 1e15,
                                 0.1,
                                 0.1 + .2,
                                 1.0 / 3,
                                 5e-324,
                                 1e308,
                                 0.3,
                                 10000,
                                 12000,
                                 0.5,
                                 2.5e-3,
                                 0.123456789,
                                 0.1234567891,
                                 4321.000000001,
                                 65535.99999999999};
  std::mt19937 random(3);
  std::uniform_int_distribution<std::int64_t> digits(-999'999'999'999'999, 999'999'999'999'999);
  for (int i = 0; i < 200'000; ++i) {
    const double number = static_cast<double>(digits(random)) / std::pow(10.0, i % 20);
    const double shorter = static_cast<double>(digits(random) % 1'000'000) / std::pow(10.0, i % 10);
    numbers.insert(numbers.end(),
                   {number, shorter, std::nextafter(shorter, 1e9), std::nextafter(shorter, -1e9)});
  }
  for (const double number : numbers) ASSERT_EQ(Written(number), Shortest(number)) << number;
}

}  // namespace
