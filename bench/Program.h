// Running the command line and measuring what it takes.

#ifndef VEYRA_BENCH_PROGRAM_H_
#define VEYRA_BENCH_PROGRAM_H_

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

#include "Comparison.h"

namespace VeyraBench {

struct Usage {
  double peakMegabytes;
  double processorSeconds;
};

// Runs the command; `input` is a descriptor for its standard input.
inline Usage RunCommand(const std::vector<std::string>& arguments, int input) {
  std::vector<char*> words = {const_cast<char*>(VEYRA_BENCH_PROGRAM)};
  for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    dup2(input, 0);
    execv(words[0], words.data());
    _exit(127);
  }
  close(input);
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  Require(WIFEXITED(status) && WEXITSTATUS(status) == 0, "the command fails");
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return {static_cast<double>(usage.ru_maxrss) / 1024, seconds(usage.ru_utime) + seconds(usage.ru_stime)};
}

template <class Function>
double WallSecondsOf(Function function) {
  const auto start = std::chrono::steady_clock::now();
  function();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace VeyraBench

#endif  // VEYRA_BENCH_PROGRAM_H_
