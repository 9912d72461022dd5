#include "translate/ModelElements.h"

#include <algorithm>
#include <iterator>

#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/ZENTModelTags.h"

namespace KxVeyra_940 {

namespace {

constexpr const char* kOtherChildren[] = {
    PMMLModelTags::XML_ELE_HEADER,         PMMLModelTags::XML_ELE_MININGBUILDTASK,
    PMMLModelTags::XML_ELE_DATADICTIONARY, PMMLModelTags::XML_ELE_TRANSFORMATION,
    PMMLModelTags::XML_ELE_EXTENSION,
};

}  // namespace

bool IsModelElement(const xercesc::DOMElement& childOfRoot) {
  if (HasTag(childOfRoot, ZENTModelTags::XML_ELE_DICTIONARY.c_str())) return false;
  return std::none_of(std::begin(kOtherChildren), std::end(kOtherChildren),
                      [&](const char* tag) { return HasTag(childOfRoot, tag); });
}

}  // namespace KxVeyra_940
