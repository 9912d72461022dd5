// Prints the vocabulary as a dictionary of the fuzzer.

#include <cstdio>

#include "Words.h"

int main() {
  const VeyraFuzz::Words& words = VeyraFuzz::AllWords();
  for (const auto* group : {&words.elements, &words.attributes, &words.values}) {
    for (const std::string& word : *group) std::printf("\"%s\"\n", word.c_str());
  }
  return 0;
}
