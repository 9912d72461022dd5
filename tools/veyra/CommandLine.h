// The commands of the program and their options, in one place: they are parsed, and help, manual page and
// completion are made from them.

#ifndef VEYRA_TOOLS_COMMANDLINE_H_
#define VEYRA_TOOLS_COMMANDLINE_H_

#include <CLI/CLI.hpp>

#include "veyra/DeriveCommand.h"
#include "veyra/DoctorCommand.h"
#include "veyra/Failures.h"
#include "veyra/InspectCommand.h"
#include "veyra/ScoreCommand.h"

namespace VeyraTool {

struct Options {
  ScoreOptions score;
  DeriveOptions derive;
  InspectOptions inspect;
  DoctorOptions doctor;
  ExitStatus status = kDone;  // of the command that ran
};

// Adds all commands; parsing runs the one that is given.  `options` outlives the parsing.
void AddCommands(CLI::App& app, Options& options);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_COMMANDLINE_H_
