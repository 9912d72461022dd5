// The command line: options, commands, exit statuses.

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <functional>
#include <string>

#include "veyra/DoctorCommand.h"
#include "veyra/Export.h"
#include "veyra/Failures.h"
#include "veyra/InspectCommand.h"
#include "veyra/ScoreCommand.h"

namespace {

using namespace VeyraTool;

struct Options {
  ScoreOptions score;
  InspectOptions inspect;
  DoctorOptions doctor;
  ExitStatus status = kDone;  // of the command that ran
};

constexpr int kMostThreads = 1024;

// The delimiter that the option's text stands for.
std::string ReadDelimiter(const std::string& text, char& delimiter) {
  const std::string character = text == "\\t" ? "\t" : text;
  const bool isCharacter = character.size() == 1 &&
                           std::string("\"\r\n").find(character[0]) == std::string::npos &&
                           static_cast<unsigned char>(character[0]) < 0x80 && character[0] != '\0';
  if (!isCharacter) return "takes one ASCII character, or \\t";
  delimiter = character[0];
  return {};
}

// The options of every command that goes over rows.
void AddRowOptions(CLI::App& command, RowOptions& rows) {
  command.add_option("DATA", rows.data,
                     "The rows as CSV, packed by gzip or not; standard input when left out");
  command.add_option("-o,--output", rows.output, "Write the results to FILE, complete or not at all")
      ->type_name("FILE");
  command.add_option("--encoding", rows.encoding, "The encoding of the data (default: UTF-8)")
      ->type_name("NAME");
  command
      .add_option_function<std::string>(
          "--delimiter",
          [&rows](const std::string& text) {
            const std::string fault = ReadDelimiter(text, rows.delimiter);
            if (!fault.empty()) throw CLI::ValidationError("--delimiter", fault);
          },
          "The character between cells (default: comma)")
      ->type_name("CHAR");
  CLI::Option* columns = command.add_option("--columns", rows.columns, "The names of the columns")
                             ->type_name("NAME,NAME,...")
                             ->delimiter(',');
  CLI::Option* noHeader = command.add_flag("--no-header{false}", rows.hasHeader,
                                           "The data has no header; --columns names the columns");
  columns->needs(noHeader);
  noHeader->needs(columns);
  command.add_option("--threads", rows.threads, "How many threads work (default: one for each processor)")
      ->type_name("N")
      ->check(CLI::Range(1, kMostThreads));
  command.add_flag("--append", rows.append, "Write the input columns first, the results after them");
  command.add_flag("--keep-going", rows.keepGoing,
                   "Pass over rows that fail: an empty result, and the reason in a column \"error\"");
  command.add_flag("--quiet", rows.quiet, "No line of progress, no line at the end");
}

void AddModelOptions(CLI::App& command, std::string& model, std::string& catalog) {
  command.add_option("MODEL", model, "The PMML document, packed by gzip or not")->required();
  command
      .add_option("--catalog", catalog,
                  "The catalogue of model names (default: modeldll.txt here, else the installed one)")
      ->type_name("FILE");
}

void AddScore(CLI::App& app, Options& options) {
  ScoreOptions& score = options.score;
  CLI::App* command = app.add_subcommand("score", "Score the rows of a CSV file with a model");
  AddModelOptions(*command, score.model, score.catalog);
  AddRowOptions(*command, score.rows);
  command->add_flag("--lenient", score.isLenient,
                    "Adapt a document that the library refuses, and say what was adapted (see veyra doctor)");
  command
      ->add_option("--missing", score.cells.missingTexts,
                   "A cell text that means missing; may be repeated (default: the empty cell)")
      ->type_name("TEXT")
      ->allow_extra_args(false)
      ->take_all();
  command->add_flag("--lax-columns", score.cells.absentColumnsAreMissing,
                    "A needed column that is absent counts as missing instead of stopping");
  command->callback([&options] { options.status = RunScore(options.score); });
}

void AddInspect(CLI::App& app, Options& options) {
  CLI::App* command = app.add_subcommand("inspect", "Show what a document holds");
  InspectOptions& inspect = options.inspect;
  command->add_option("DOCUMENT", inspect.document, "The PMML document, packed by gzip or not")->required();
  CLI::Option* json = command->add_flag("--json", inspect.json, "The same as JSON, for programs");
  command->add_flag("--display", inspect.display, "The library's own display of the dictionaries")
      ->excludes(json);
  command->callback([&inspect] { RunInspect(inspect); });
}

void AddDoctor(CLI::App& app, Options& options) {
  CLI::App* command = app.add_subcommand("doctor", "Say all that keeps a document from being scored");
  AddModelOptions(*command, options.doctor.model, options.doctor.catalog);
  command->callback([&options] { options.status = RunDoctor(options.doctor); });
}

int Run(int argc, char** argv) {
  Options options;
  CLI::App app("Scores data with PMML models.", "veyra");
  app.set_version_flag("--version", std::string("veyra ") + VEYRA_VERSION);
  app.require_subcommand(1);
  AddScore(app, options);
  AddInspect(app, options);
  AddDoctor(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    const auto commands = app.get_subcommands();
    const std::string command = commands.empty() ? "" : " " + commands.front()->get_name();
    std::fprintf(stderr, "veyra: %s (see veyra%s --help)\n", error.what(), command.c_str());
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
