// The words of model documents that PMMLModelTags does not have: of the standard, of older documents, and of
// extensions that the library understands.
//
// The same manner: null-terminated texts, exact comparisons, exported.  A word stands in one of the two
// tables, and here only once.  The rows stand in vocabulary/PMMLStandardTags.def.

#ifndef VEYRA_VOCABULARY_PMMLSTANDARDTAGS_H_
#define VEYRA_VOCABULARY_PMMLSTANDARDTAGS_H_

#include "veyra/Export.h"

namespace KxVeyra_940::PMMLStandardTags {

#define VEYRA_TAG(name, text) inline constexpr VEYRA_API char name[] = text;
#include "vocabulary/PMMLStandardTags.def"
#undef VEYRA_TAG

}  // namespace KxVeyra_940::PMMLStandardTags

#endif  // VEYRA_VOCABULARY_PMMLSTANDARDTAGS_H_
