#include "vocabulary/PMMLModelTags.h"

#include <algorithm>
#include <string_view>

namespace KxVeyra_940::PMMLModelTags {

namespace {

constexpr std::string_view kNames[] = {
#define VEYRA_TAG(name, text) #name,
#include "vocabulary/PMMLModelTags.def"
#undef VEYRA_TAG
};

// An inline constant is defined where it is used: here all of them are.
[[gnu::used]] constexpr const char* kDefined[] = {
#define VEYRA_TAG(name, text) name,
#include "vocabulary/PMMLModelTags.def"
#undef VEYRA_TAG
};

consteval auto CountOf(std::string_view prefix) {
  return std::ranges::count_if(kNames, [prefix](std::string_view name) { return name.starts_with(prefix); });
}

// That names are unique needs no proof: a second definition would not compile.
static_assert(CountOf("XML_ELE_") == 189);
static_assert(CountOf("XML_ATT_") == 290);
static_assert(CountOf("XML_VAL_") == 183);
static_assert(CountOf("XML_ZENT_TRANFUNC_") == 75);
static_assert(CountOf("XML_EXT_") == 21);
static_assert(CountOf("XML_ELM_") == 3);
static_assert(CountOf("XML_MSTAT_") == 2);
static_assert(std::size(kNames) == 189 + 290 + 183 + 75 + 21 + 3 + 2);

}  // namespace

}  // namespace KxVeyra_940::PMMLModelTags
