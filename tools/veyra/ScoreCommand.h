// veyra score MODEL [DATA]

#ifndef VEYRA_TOOLS_SCORECOMMAND_H_
#define VEYRA_TOOLS_SCORECOMMAND_H_

#include <string>

#include "veyra/ByteSource.h"
#include "veyra/CaseReader.h"
#include "veyra/Failures.h"
#include "veyra/RowPipeline.h"

namespace VeyraTool {

struct ScoreOptions {
  DocumentFile model;
  std::string catalog;
  std::string auxPath;     // of data that belongs to the document
  bool isLenient = false;  // documents are adapted before the library sees them
  RowOptions rows;
  CellRules cells;
};

// Scores every row.  Throws CommandFailure or ClosedPipe.
ExitStatus RunScore(const ScoreOptions& options);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_SCORECOMMAND_H_
