// Prints docs/accuracy.md: the worst error of every function at the reference points, and where it occurs.

#include <cstdio>

#include "accuracy/Accuracy.h"

namespace {

using namespace KxMath_940::Accuracy;

void PrintRow(const char* function, const Worst& worst) {
  if (worst.points == 0) return;
  std::printf("| %s | %d | %.1e | %.0e | %.3f | %s |\n", function, worst.points, worst.error, worst.limit,
              worst.error / worst.limit, worst.where.c_str());
}

void PrintTable(Worst Result::*part) {
  std::puts(
      "| function | points | worst error | limit there | error / limit | at |\n|---|---|---|---|---|---|");
  for (const Subject& subject : kSubjects) PrintRow(subject.function, Measure(subject).*part);
}

}  // namespace

int main() {
  std::puts(
      "# Accuracy of the distribution functions\n\n"
      "Written by `measure_accuracy` (`cmake --build --preset release --target measure_accuracy`, then\n"
      "`build/release/bin/measure_accuracy > docs/accuracy.md`) from the points in `tests/math/reference`, "
      "which\n"
      "`tools/accuracy/make_reference_points.py` computes with 45 digits and more, from positive series or "
      "sums.\n"
      "`tests/math/accuracy_test.cpp` holds every function to its limit at every point.\n\n"
      "An error is |result - value|, less what a change of the point by four units in its last place does to "
      "the\n"
      "value, relative to the value. For a quantile it is the distance from the exact quantile, less four "
      "units in\n"
      "its last place, times the density, relative to min(p, 1 - p). For a search it is the same with the "
      "slope by\n"
      "the parameter that is looked for, relative to the probability. Each row shows the point where the "
      "error\n"
      "comes nearest to its limit.\n\n"
      "## Parameters up to 1000\n");
  PrintTable(&Result::ordinary);
  std::puts(
      "\n## Larger parameters\n\nThe limit is 1e-15 times the largest parameter, 1e-10 for quantiles and "
      "what is "
      "non-central.\n");
  PrintTable(&Result::large);
}
