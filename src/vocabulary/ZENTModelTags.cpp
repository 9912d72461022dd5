#include "vocabulary/ZENTModelTags.h"

namespace KxVeyra_940::ZENTModelTags {

#define VEYRA_TAG(name, text) const std::string name = text;
#include "vocabulary/ZENTModelTags.def"
#undef VEYRA_TAG

}  // namespace KxVeyra_940::ZENTModelTags
