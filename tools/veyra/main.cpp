// The command line: options, commands, exit statuses.

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string>

#include "veyra/Export.h"
#include "veyra/Failures.h"
#include "veyra/InspectCommand.h"
#include "veyra/ScoreCommand.h"

namespace {

using namespace VeyraTool;

struct Options {
  ScoreOptions score;
  InspectOptions inspect;
  std::string delimiter = ",";
};

void AddScore(CLI::App& app, Options& options) {
  ScoreOptions& score = options.score;
  CLI::App* command = app.add_subcommand("score", "Score the rows of a CSV file with a model");
  command->add_option("MODEL", score.model, "The PMML document")->required();
  command->add_option("DATA", score.data, "The rows, with a header; standard input when it is left out");
  command->add_option("-o,--output", score.output, "Write the results to FILE, complete or not at all")
      ->type_name("FILE");
  command
      ->add_option("--catalog", score.catalog,
                   "The catalogue of model names (default: modeldll.txt here, else the installed one)")
      ->type_name("FILE");
  command->add_option("--encoding", score.encoding, "The encoding of the data (default: UTF-8)")
      ->type_name("NAME");
  command
      ->add_option("--missing", score.cells.missingTexts,
                   "A cell text that means missing; may be repeated (default: the empty cell)")
      ->type_name("TEXT")
      ->allow_extra_args(false)
      ->take_all();
  command->add_option("--delimiter", options.delimiter, "The character between cells (default: comma)")
      ->type_name("CHAR");
  command->add_flag("--append", score.append, "Write the input columns first, the results after them");
  command->add_flag("--lax-columns", score.cells.absentColumnsAreMissing,
                    "A needed column that is absent counts as missing instead of stopping");
  command->add_flag("--quiet", score.quiet, "No progress line");
  command->callback([&options] {
    if (options.delimiter == "\\t") options.delimiter = "\t";
    const bool isCharacter = options.delimiter.size() == 1 &&
                             std::string("\"\r\n").find(options.delimiter[0]) == std::string::npos &&
                             static_cast<unsigned char>(options.delimiter[0]) < 0x80;
    if (!isCharacter) throw CommandFailure(kWrongUsage, "--delimiter takes one ASCII character, or \\t");
    options.score.delimiter = options.delimiter[0];
    RunScore(options.score);
  });
}

void AddInspect(CLI::App& app, Options& options) {
  CLI::App* command = app.add_subcommand("inspect", "Show what a document holds");
  command->add_option("DOCUMENT", options.inspect.document, "The PMML document")->required();
  command->callback([&options] { RunInspect(options.inspect); });
}

int Run(int argc, char** argv) {
  Options options;
  CLI::App app("Scores data with PMML models.", "veyra");
  app.set_version_flag("--version", std::string("veyra ") + VEYRA_VERSION);
  app.require_subcommand(1);
  AddScore(app, options);
  AddInspect(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDone : kWrongUsage;
  }
  return kDone;
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
