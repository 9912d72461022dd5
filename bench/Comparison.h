// Times something and its floor in turn, so that both meet the same machine, and prints their ratio.

#ifndef VEYRA_BENCH_COMPARISON_H_
#define VEYRA_BENCH_COMPARISON_H_

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

namespace VeyraBench {

// Processor time of this thread: what other processes do to the clock does not count.
inline double Seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

template <class Function>
double SecondsOf(Function function) {
  const double start = Seconds();
  function();
  return Seconds() - start;
}

inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// Runs both in turn for as long as `state` wants, reports the time of `subject`, and returns the ratio of the
// median times.
template <class Floor, class Subject>
double Compare(benchmark::State& state, Floor floor, Subject subject) {
  std::vector<double> floors;
  std::vector<double> subjects;
  for ([[maybe_unused]] const auto iteration : state) {
    floors.push_back(SecondsOf(floor));
    subjects.push_back(SecondsOf(subject));
    state.SetIterationTime(subjects.back());
  }
  const double ratio = Median(subjects) / Median(floors);
  state.counters["ratio"] = ratio;
  return ratio;
}

// The last lines of a program.
inline void PrintRatio(const std::string& what, double ratio) {
  std::printf("%s = %.2f\n", what.c_str(), ratio);
}
inline void PrintRatio(const std::string& what, double ratio, double limit) {
  std::printf("%s = %.2f (limit %g)\n", what.c_str(), ratio, limit);
}

// A wrong answer ends the program before anything is timed.
inline void Require(bool isRight, const char* what) {
  if (isRight) return;
  std::fprintf(stderr, "wrong answer: %s\n", what);
  std::exit(EXIT_FAILURE);
}

}  // namespace VeyraBench

#endif  // VEYRA_BENCH_COMPARISON_H_
