// Where an element stands in its document, and which element a refusal of the library is about.

#ifndef VEYRA_TOOLS_ELEMENTPATH_H_
#define VEYRA_TOOLS_ELEMENTPATH_H_

#include <string>
#include <xercesc/dom/DOMElement.hpp>

#include "veyra/VYException.h"

namespace VeyraTool {

// "/PMML/DataDictionary/DataField[@name='x']/Value[2]": a step names its element by its name or field, or
// else counts it among its equals when there are several.
std::string PathOf(const xercesc::DOMElement& element);

// The first element below `root` (or the root) that the refusal can be about, judged by the arguments of its
// message; null when they do not tell.  The library itself does not say which element it was.
const xercesc::DOMElement* FindRefused(const xercesc::DOMElement& root,
                                       const KxVeyra_940::VYException& exception);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_ELEMENTPATH_H_
