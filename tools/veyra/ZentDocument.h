// What the command needs to know of zent-ml documents beside PMML ones.

#ifndef VEYRA_TOOLS_ZENTDOCUMENT_H_
#define VEYRA_TOOLS_ZENTDOCUMENT_H_

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "veyra/DocumentSummary.h"

namespace VeyraTool {

bool IsZent(const xercesc::DOMElement& root);

// The children of a model that say what goes in.
bool IsZentHeader(const xercesc::DOMNode& childOfModel);

// The first regression model below the root, or null.
const xercesc::DOMElement* FindZentModel(const xercesc::DOMElement& root);
// The predictors' names, in document order.
std::vector<std::string> PredictorsOf(const xercesc::DOMElement& model);

// Every element name of the format.
std::set<std::string_view> ZentVocabulary();

// Adds models and fields.
void SummariseZent(const xercesc::DOMElement& root, DocumentSummary& summary);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_ZENTDOCUMENT_H_
