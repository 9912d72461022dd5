#include "veyra/KnownFunctions.h"

#include <algorithm>
#include <iterator>

namespace VeyraTool {

namespace {

struct Word {
  std::string_view name;
  std::string_view text;
};

// The whole vocabulary, in which the functions have names of their own.  When the library has a table of its
// functions (src/transform/FunctionTable.h), that is what to ask.
constexpr Word kVocabulary[] = {
#define VEYRA_TAG(name, text) {#name, text},
#include "translate/PMMLModelTags.def"
#undef VEYRA_TAG
};

}  // namespace

bool IsKnownFunction(std::string_view name) {
  return std::any_of(std::begin(kVocabulary), std::end(kVocabulary), [name](const Word& word) {
    return word.text == name && word.name.find("_TRANFUNC_") != std::string_view::npos;
  });
}

}  // namespace VeyraTool
