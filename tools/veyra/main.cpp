// The program: parses the command line, runs the command, says what failed.

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string>

#include "veyra/CommandLine.h"
#include "veyra/Export.h"
#include "veyra/Failures.h"

namespace {

using namespace VeyraTool;

int Run(int argc, char** argv) {
  Options options;
  CLI::App app("Scores data with PMML models.", "veyra");
  app.set_version_flag("--version", std::string("veyra ") + VEYRA_VERSION);
  AddCommands(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    const auto commands = app.get_subcommands();
    const std::string command = commands.empty() ? "" : " " + commands.front()->get_name();
    const bool isUnknown = commands.empty() && argc > 1 && argv[1][0] != '-';
    const std::string fault = isUnknown ? std::string("there is no command '") + argv[1] + "'" : error.what();
    std::fprintf(stderr, "veyra: %s (see veyra%s --help)\n", fault.c_str(), command.c_str());
    return kWrongUsage;
  }
  return options.status;
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return Run(argc, argv);
  } catch (const CommandFailure& failure) {
    std::fprintf(stderr, "veyra: %s\n", failure.what());
    return failure.GetStatus();
  } catch (const ClosedPipe&) {
    return kDone;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "veyra: %s\n", error.what());
    return kWrongUsage;
  }
}
