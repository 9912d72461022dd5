// What --lenient changes in a document before the library sees it: one table of named adaptations.
//
// The library refuses such documents; each adaptation writes out what the document leaves out or says in a
// way that the library does not read, and changes nothing else.

#ifndef VEYRA_TOOLS_ADAPTATIONS_H_
#define VEYRA_TOOLS_ADAPTATIONS_H_

#include <span>
#include <string>
#include <vector>
#include <xercesc/dom/DOMDocument.hpp>

namespace VeyraTool {

// What an adaptation did to one document.
struct Applied {
  const char* name;
  std::string what;       // at the first place
  std::string path;       // the first place
  std::size_t count = 0;  // places
};

struct Adaptation {
  const char* name;
  const char* meaning;  // for people who choose
  // Changes the document wherever the adaptation applies.
  void (*apply)(xercesc::DOMDocument& document, Applied& applied);
};

std::span<const Adaptation> AllAdaptations();

// Applies them all; what did nothing is not in the result.
std::vector<Applied> Adapt(xercesc::DOMDocument& document);

// "field-count: WHAT, in PATH (and 3 more)"
std::string Describe(const Applied& applied);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_ADAPTATIONS_H_
