// The vocabulary of zent-ml documents: every element name, attribute name and keyword as a named constant.
//
// The constants are made when the library is loaded and never change; comparisons with them are exact.
// Objects with static storage of the library itself must not read them while they are made.  The rows stand
// in vocabulary/ZENTModelTags.def.

#ifndef VEYRA_VOCABULARY_ZENTMODELTAGS_H_
#define VEYRA_VOCABULARY_ZENTMODELTAGS_H_

#include <string>

#include "veyra/Export.h"

namespace KxVeyra_940::ZENTModelTags {

#define VEYRA_TAG(name, text) extern VEYRA_API const std::string name;
#include "vocabulary/ZENTModelTags.def"
#undef VEYRA_TAG

}  // namespace KxVeyra_940::ZENTModelTags

#endif  // VEYRA_VOCABULARY_ZENTMODELTAGS_H_
