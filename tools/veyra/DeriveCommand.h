// veyra derive DOCUMENT [DATA]

#ifndef VEYRA_TOOLS_DERIVECOMMAND_H_
#define VEYRA_TOOLS_DERIVECOMMAND_H_

#include <string>
#include <vector>

#include "veyra/ByteSource.h"
#include "veyra/CaseReader.h"
#include "veyra/Failures.h"
#include "veyra/RowPipeline.h"

namespace VeyraTool {

struct DeriveOptions {
  DocumentFile document;
  std::vector<std::string> only;  // the derived fields to write; empty: all of them
  bool trustsDtd = false;         // documents that declare entities or refer to a DTD are read
  bool isLenient = false;         // documents are adapted before the library sees them
  RowOptions rows;
  CellRules cells;
};

// Computes the derived fields for every row.  Throws CommandFailure or ClosedPipe.
ExitStatus RunDerive(const DeriveOptions& options);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_DERIVECOMMAND_H_
