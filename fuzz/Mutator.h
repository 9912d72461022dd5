// Changes to documents that keep most of them readable: a fuzzer that flips bytes seldom gets past the
// parser.

#ifndef VEYRA_FUZZ_MUTATOR_H_
#define VEYRA_FUZZ_MUTATOR_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace VeyraFuzz {

// Some changes to the elements, attributes and texts of `document`, the same ones for the same seed.
std::string MutateDocument(std::string_view document, unsigned seed);
// The same with an element of `other` put into it first.
std::string CrossDocuments(std::string_view document, std::string_view other, unsigned seed);

}  // namespace VeyraFuzz

#endif  // VEYRA_FUZZ_MUTATOR_H_
