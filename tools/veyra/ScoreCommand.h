// veyra score MODEL [DATA]

#ifndef VEYRA_TOOLS_SCORECOMMAND_H_
#define VEYRA_TOOLS_SCORECOMMAND_H_

#include <string>

#include "veyra/CaseReader.h"

namespace VeyraTool {

struct ScoreOptions {
  std::string model;
  std::string data;    // empty: standard input
  std::string output;  // empty: standard output
  std::string catalog;
  std::string encoding;
  CellRules cells;
  char delimiter = ',';
  bool append = false;
  bool quiet = false;
};

// Scores every row.  Throws CommandFailure or ClosedPipe.
void RunScore(const ScoreOptions& options);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_SCORECOMMAND_H_
