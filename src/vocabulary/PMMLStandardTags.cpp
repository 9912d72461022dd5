#include "vocabulary/PMMLStandardTags.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace KxVeyra_940::PMMLStandardTags {

namespace {

// An inline constant is defined where it is used: here all of them are.
[[gnu::used]] constexpr const char* kDefined[] = {
#define VEYRA_TAG(name, text) name,
#include "vocabulary/PMMLStandardTags.def"
#undef VEYRA_TAG
};

constexpr std::string_view kTexts[] = {
#define VEYRA_TAG(name, text) text,
#include "vocabulary/PMMLStandardTags.def"
#undef VEYRA_TAG
};

constexpr std::string_view kListedTexts[] = {
#define VEYRA_TAG(name, text) text,
#include "vocabulary/PMMLModelTags.def"
#undef VEYRA_TAG
};

// Rising: no text stands twice.
static_assert(std::ranges::adjacent_find(kTexts, std::ranges::greater_equal()) == std::end(kTexts));
// Nor does one stand in both tables.
static_assert(std::ranges::none_of(kListedTexts, [](std::string_view text) {
  return std::ranges::binary_search(kTexts, text);
}));

}  // namespace

}  // namespace KxVeyra_940::PMMLStandardTags
