// The manual page and the completion for bash, made from the commands and their options.

#ifndef VEYRA_TOOLS_MANUALPAGE_H_
#define VEYRA_TOOLS_MANUALPAGE_H_

#include <CLI/CLI.hpp>
#include <string>

namespace VeyraTool {

// The page in the language of man.
std::string ManualPage(const CLI::App& app);
// A script that bash reads: names of commands and options, files for everything else.
std::string BashCompletion(const CLI::App& app);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_MANUALPAGE_H_
