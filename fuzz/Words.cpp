#include "Words.h"

#include <string_view>

#include "transform/FunctionTable.h"

namespace VeyraFuzz {

namespace {

struct Row {
  std::string_view name;  // of the constant, whose prefix tells what it names
  const char* text;
};

constexpr Row kTags[] = {
#define VEYRA_TAG(name, text) {#name, text},
#include "vocabulary/PMMLModelTags.def"
#include "vocabulary/PMMLStandardTags.def"
#include "vocabulary/ZENTModelTags.def"
#undef VEYRA_TAG
};

constexpr const char* kOddTexts[] = {
    "",
    " ",
    "0",
    "-0",
    "1",
    "-1",
    "2",
    "0.5",
    "1e-320",
    "1e308",
    "-1e308",
    "1e999",
    "-1e999",
    "NaN",
    "INF",
    "-INF",
    "0x10",
    "1,5",
    "2147483647",
    "2147483648",
    "-2147483648",
    "4294967296",
    "9223372036854775808",
    "1000000000",
    "65536",
    "true",
    "false",
    "2024-02-29",
    "0000-00-00",
    "25:61:61",
    "9999-12-31T23:59:59",
    "&quot;a b&quot; &quot;&quot; \\&quot;",
    "&quot;never closed",
    "\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80",
    "&#x10FFFF;&#9;&#10;",
    "(a|a)*b",
    "((((((((((((((((((((",
    "a{1000}{1000}",
    "-1.7976931348623157e308",
    "4.9406564584124654e-324",
};

bool IsElement(std::string_view name) {
  return name.find("_ELE_") != name.npos || name.find("_ELM_") != name.npos ||
         name.find("MSTAT") != name.npos;
}

Words Collect() {
  Words words;
  for (const Row& row : kTags) {
    const bool isElement = IsElement(row.name) && row.name.find("_ATT_") == row.name.npos;
    auto& group = isElement                                 ? words.elements
                  : row.name.find("_ATT_") != row.name.npos ? words.attributes
                                                            : words.values;
    // Some constants hold a title, which is no name.
    if (std::string_view(row.text).find_first_of(" <&\"") == std::string_view::npos)
      group.emplace_back(row.text);
  }
  for (const auto& row : KxVeyra_940::AllFunctions()) {
    // Arithmetic signs are words too; the comparison signs are not among them.
    words.values.emplace_back(row.name);
    if (row.alternative != nullptr) words.values.emplace_back(row.alternative);
  }
  words.odd.assign(std::begin(kOddTexts), std::end(kOddTexts));
  return words;
}

}  // namespace

const Words& AllWords() {
  static const Words kWords = Collect();
  return kWords;
}

}  // namespace VeyraFuzz
