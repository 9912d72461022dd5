// Reads "ComparisonMeasure" elements.

#ifndef VEYRA_PLUGINS_NEARESTNEIGHBOR_MEASUREREADER_H_
#define VEYRA_PLUGINS_NEARESTNEIGHBOR_MEASUREREADER_H_

#include <xercesc/dom/DOMElement.hpp>

#include "nearestneighbor/Measure.h"

namespace KxVeyra_940::Plugin {

// Raises 260120, 260151, 260152, 260153 (a measure of counts that is called a distance), 260174 and 260272
// (not one measure), 260182 (a power that is not above 0), 260258 (a minimum above the maximum).
Measure ReadMeasure(const xercesc::DOMElement& element);

// The attribute "compareFunction" of either element; `usual` when it is absent.  Raises 260152 for an unknown
// function, 260303 for "table", for which instances have no element.
CompareFunction ReadCompareFunction(const xercesc::DOMElement& element, CompareFunction usual);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_NEARESTNEIGHBOR_MEASUREREADER_H_
