// The lists of categories that the splits of one document share.

#ifndef VEYRA_TRANSLATE_CATEGORYLISTSINTERNAL_H_
#define VEYRA_TRANSLATE_CATEGORYLISTSINTERNAL_H_

#include <cstdint>
#include <map>
#include <memory>
#include <utility>

#include "data/CategoryList.h"
#include "veyra/ScoreDictVar.h"

namespace KxVeyra_940 {

class CategoryLists {
 public:
  enum class Codes { kNone, kEncoded, kNumbers };

  // The listed categories of the variable as they are now, without codes, with those of its encoder, which
  // learns them, or with their own numbers.  REQUIRES: for the codes of an encoder, that it has one.
  std::shared_ptr<const CategoryList> Of(ScoreDictVar& variable, Codes codes);

 private:
  struct Entry {
    std::uint64_t contentId;  // of the labels; 0: nothing is known of them
    const ScoreEncoder* encoder;
    std::shared_ptr<const CategoryList> list;
  };

  std::map<std::pair<const ScoreDictVar*, Codes>, Entry> fEntries;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_CATEGORYLISTSINTERNAL_H_
