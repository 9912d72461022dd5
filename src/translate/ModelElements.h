// Which children of a document's root are models.

#ifndef VEYRA_TRANSLATE_MODELELEMENTS_H_
#define VEYRA_TRANSLATE_MODELELEMENTS_H_

#include <xercesc/dom/DOMElement.hpp>

#include "veyra/Export.h"

namespace KxVeyra_940 {

// Every child is one but headers, build tasks, dictionaries and extensions.
VEYRA_API bool IsModelElement(const xercesc::DOMElement& childOfRoot);

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_MODELELEMENTS_H_
