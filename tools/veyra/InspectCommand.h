// veyra inspect DOCUMENT

#ifndef VEYRA_TOOLS_INSPECTCOMMAND_H_
#define VEYRA_TOOLS_INSPECTCOMMAND_H_

#include <optional>
#include <string>

#include "veyra/ByteSource.h"

namespace VeyraTool {

struct InspectOptions {
  DocumentFile document;
  bool json = false;             // for programs: docs/inspect-json.md
  bool display = false;          // the library's own display of the dictionaries
  bool tree = false;             // the nodes of a tree as well
  std::optional<int> treeDepth;  // the deepest level that is drawn
  std::string svg;               // the file of a picture; empty for none
};

// Writes what the document holds to standard output.  Throws CommandFailure or ClosedPipe.
void RunInspect(const InspectOptions& options);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_INSPECTCOMMAND_H_
