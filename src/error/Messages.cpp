#include "error/Messages.h"

#include <algorithm>
#include <string_view>

namespace KxVeyra_940 {

constexpr ScoreContext::MessageItem gVYMessages[kMessageCount] = {
#define VEYRA_MESSAGE(name, id, text) {id, text},
#include "error/Messages.def"
#undef VEYRA_MESSAGE
};

namespace {

struct Block {
  int first;
  int last;
};

constexpr Block kBlocks[] = {
    {260101, 260135},  // files, parsing, missing definitions
    {260151, 260165},  // invalid values and tags
    {260171, 260192},  // violated requirements
    {260201, 260204},  // duplicates
    {260211, 260217},  // conflicts
    {260221, 260227},  // processing
    {260241, 260260},  // sizes and counts that do not match
    {260271, 260274},  // more than allowed
    {260281, 260286},  // empty or false elements
    {260291, 260299},  // value lists and roles of variables
    {260301, 260306},  // unsupported models, failed builds
};

// Every id of every block exists once, in ascending order but for 260260, which stands before 260251.
consteval bool IdsAreSound() {
  std::size_t row = 0;
  for (const Block& block : kBlocks) {
    for (int id = block.first; id <= block.last; ++id) {
      if (id == 260260) continue;
      if (id == 260251 && (row >= kMessageCount || gVYMessages[row++].id != 260260)) return false;
      if (row >= kMessageCount || gVYMessages[row++].id != id) return false;
    }
  }
  return row == kMessageCount;
}

// Placeholders are numbered 0, 1, 2 ... in the order in which they stand, and every brace belongs to one.
constexpr bool PlaceholdersAreSound(std::string_view text) {
  char next = '0';
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '}') return false;
    if (text[i] != '{') continue;
    if (i + 2 >= text.size() || text[i + 1] != next || text[i + 2] != '}') return false;
    ++next;
    i += 2;
  }
  return next <= '9';
}

// A single apostrophe would start a quotation and swallow placeholders: apostrophes stand in pairs.
constexpr bool ApostrophesAreDoubled(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i)
    if (text[i] == '\'' && (++i == text.size() || text[i] != '\'')) return false;
  return true;
}

static_assert(IdsAreSound());
static_assert(std::ranges::all_of(gVYMessages, [](const ScoreContext::MessageItem& row) {
  return PlaceholdersAreSound(row.text) && ApostrophesAreDoubled(row.text);
}));

}  // namespace

}  // namespace KxVeyra_940
