// The vocabulary of model documents: every element name, attribute name and keyword as a named constant.
//
// Each constant is a null-terminated text; comparisons with it are exact.  Its text is known when a table of
// words is compiled.  The library defines and exports every one of them, as it always did.  The rows stand in
// vocabulary/PMMLModelTags.def.

#ifndef VEYRA_VOCABULARY_PMMLMODELTAGS_H_
#define VEYRA_VOCABULARY_PMMLMODELTAGS_H_

#include "veyra/Export.h"

namespace KxVeyra_940::PMMLModelTags {

#define VEYRA_TAG(name, text) inline constexpr VEYRA_API char name[] = text;
#include "vocabulary/PMMLModelTags.def"
#undef VEYRA_TAG

}  // namespace KxVeyra_940::PMMLModelTags

#endif  // VEYRA_VOCABULARY_PMMLMODELTAGS_H_
