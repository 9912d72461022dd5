// The vocabulary of model documents: every element name, attribute name and keyword as a named constant.
//
// Each constant is a null-terminated text; comparisons with it are exact.  The rows stand in
// vocabulary/PMMLModelTags.def.

#ifndef VEYRA_VOCABULARY_PMMLMODELTAGS_H_
#define VEYRA_VOCABULARY_PMMLMODELTAGS_H_

#include "veyra/Export.h"

namespace KxVeyra_940::PMMLModelTags {

#define VEYRA_TAG(name, text) extern VEYRA_API const char name[sizeof(text)];
#include "vocabulary/PMMLModelTags.def"
#undef VEYRA_TAG

}  // namespace KxVeyra_940::PMMLModelTags

#endif  // VEYRA_VOCABULARY_PMMLMODELTAGS_H_
