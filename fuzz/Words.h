// The words that mean something in documents, from the tables that the translators read.

#ifndef VEYRA_FUZZ_WORDS_H_
#define VEYRA_FUZZ_WORDS_H_

#include <string>
#include <vector>

namespace VeyraFuzz {

struct Words {
  std::vector<std::string> elements;
  std::vector<std::string> attributes;
  std::vector<std::string> values;  // words of enumerations and names of functions
  std::vector<std::string> odd;     // texts that go to the edge of what is read, or beyond
};

const Words& AllWords();

}  // namespace VeyraFuzz

#endif  // VEYRA_FUZZ_WORDS_H_
