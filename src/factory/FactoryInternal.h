// The factory's own steps: reading the catalogue, parsing the document, finding the model element, getting a
// translator.  Not exported.

#ifndef VEYRA_FACTORY_FACTORYINTERNAL_H_
#define VEYRA_FACTORY_FACTORYINTERNAL_H_

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "veyra/ScoreTranslator.h"

namespace KxVeyra_940 {

// Replaces `names` by the names in the catalogue file, in their order; an empty path means "modeldll.txt".
// Raises 260103 when the file cannot be opened or read.
void GetModelNames(const std::string& file, std::vector<std::string>& names);

// The path in the encoding of the file system; the path itself when it cannot be converted.
std::string ConvertedPath(const std::string& path);

bool IsDirectory(const std::string& path);

// KxXML_940::ParseDocument; `name` is not used.
xercesc::DOMDocument* GetDocElement(xercesc::XercesDOMParser& parser, std::istream& in,
                                    const std::string& name);

// The first element below the root for the first catalogue name that occurs at all; null when none does.
// `firstElements` are those of a DocumentParser.
const xercesc::DOMElement* FindModelElement(const std::vector<const xercesc::DOMElement*>& firstElements,
                                            const std::vector<std::string>& names);

// The translator of the plug-in for `modelName`, which the catalogue must hold.  Raises 260113.  Null when
// the plug-in hands out none.
std::unique_ptr<ScoreTranslator> GetScoreTranslator(const std::vector<std::string>& names,
                                                    const std::string& modelName);

// The translator of the plug-in for `modelName`, whatever the catalogue holds; the plug-in is told the
// catalogue.  Raises 260113, also when the plug-in hands out none.
std::unique_ptr<ScoreTranslator> GetNamedTranslator(const std::vector<std::string>& names,
                                                    const std::string& modelName);

}  // namespace KxVeyra_940

#endif  // VEYRA_FACTORY_FACTORYINTERNAL_H_
