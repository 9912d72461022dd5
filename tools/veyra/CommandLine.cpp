#include "veyra/CommandLine.h"

#include <cstdio>
#include <string>

#include "veyra/Adaptations.h"
#include "veyra/FunctionsCommand.h"
#include "veyra/ManualPage.h"

namespace VeyraTool {

namespace {

constexpr int kMostThreads = 1024;
constexpr int kMostMegabytes = 1 << 30;
constexpr std::size_t kAdaptationColumn = 18;

constexpr const char* kExitStatus =
    "Exit status: 0 done, 1 wrong usage, 2 the document or a plug-in was refused,\n"
    "3 the data was refused, or rows of it with --keep-going.";

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

std::string ListAdaptations() {
  std::string text = "What veyra score --lenient adapts:";
  for (const Adaptation& adaptation : AllAdaptations()) {
    std::string name = std::string("\n  ") + adaptation.name;
    name.resize(kAdaptationColumn, ' ');
    text.append(name).append(adaptation.meaning);
  }
  return text;
}

// The options of every command that goes over rows.
void AddRowOptions(CLI::App& command, RowOptions& rows) {
  command
      .add_option("DATA", rows.data, "The rows as CSV, packed by gzip or not; standard input when left out")
      ->type_name(" ");
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
  CLI::Option* noHeader = command.add_flag_callback(
      "--no-header", [&rows] { rows.hasHeader = false; },
      "The data has no header; --columns names the columns");
  columns->needs(noHeader);
  noHeader->needs(columns);
  command.add_option("--threads", rows.threads, "How many threads work (default: one for each processor)")
      ->type_name("N")
      ->check(CLI::Range(1, kMostThreads).description(""));
  command.add_flag("--append", rows.append, "Write the input columns first, the results after them");
  command.add_flag("--keep-going", rows.keepGoing,
                   "Pass over rows that fail: an empty result, and the reason in a column \"error\"");
  command.add_flag("--quiet", rows.quiet, "No line of progress, no line at the end");
}

void AddDocument(CLI::App& command, const char* name, DocumentFile& document) {
  command.add_option(name, document.path, "The PMML document, packed by gzip or not")
      ->type_name(" ")
      ->required();
  command
      .add_option_function<std::uint64_t>(
          "--unpack-limit",
          [&document](std::uint64_t megabytes) {
            document.limit = {megabytes << 20U, UnpackLimit::kNone};
          },
          "Refuse a packed document that unpacks to more than N MiB (default: 1024, and 200 times its size)")
      ->type_name("N")
      ->check(CLI::Range(1, kMostMegabytes).description(""));
}

void AddModelOptions(CLI::App& command, DocumentFile& model, std::string& catalog, std::string& auxPath) {
  AddDocument(command, "MODEL", model);
  command
      .add_option("--catalog", catalog,
                  "The catalogue of model names (default: modeldll.txt here, else the installed one)")
      ->type_name("FILE");
  command
      .add_option("--aux", auxPath,
                  "The file with the training data of a nearest-neighbour model that holds none itself")
      ->type_name("PATH");
}

void AddLenient(CLI::App& command, bool& isLenient) {
  command.add_flag("--lenient", isLenient,
                   "Adapt a document that the library refuses, and say what was adapted (see veyra doctor)");
}

void AddCellRules(CLI::App& command, CellRules& cells) {
  command
      .add_option("--missing", cells.missingTexts,
                  "A cell text that means missing; may be repeated (default: the empty cell)")
      ->type_name("TEXT")
      ->allow_extra_args(false)
      ->take_all();
  command.add_flag("--lax-columns", cells.absentColumnsAreMissing,
                   "A needed column that is absent counts as missing instead of stopping");
}

void AddScore(CLI::App& app, Options& options) {
  ScoreOptions& score = options.score;
  CLI::App* command = app.add_subcommand("score", "Score the rows of a CSV file with a model");
  AddModelOptions(*command, score.model, score.catalog, score.auxPath);
  AddRowOptions(*command, score.rows);
  AddLenient(*command, score.isLenient);
  AddCellRules(*command, score.cells);
  command->footer(
      "Example:\n  veyra score model.pmml data.csv.gz --append --threads 4 -o results.csv\n\n"
      "The results are a column named after the target, for a classification the\n"
      "probability of each category, and the document's output fields.");
  command->callback([&options] { options.status = RunScore(options.score); });
}

void AddDerive(CLI::App& app, Options& options) {
  DeriveOptions& derive = options.derive;
  CLI::App* command =
      app.add_subcommand("derive", "Compute the derived fields of a document for the rows of a CSV file");
  AddDocument(*command, "DOCUMENT", derive.document);
  AddRowOptions(*command, derive.rows);
  command->add_option("--only", derive.only, "The derived fields to write (default: all of them)")
      ->type_name("NAME,NAME,...")
      ->delimiter(',');
  AddLenient(*command, derive.isLenient);
  command->add_flag("--trust-dtd", derive.trustsDtd,
                    "Read a document that declares entities or refers to a DTD");
  AddCellRules(*command, derive.cells);
  command->footer(
      "Example:\n  veyra derive model.pmml data.csv --only age_group,log_income --append -o fields.csv\n\n"
      "The results are a column for each derived field, in the order of evaluation.\n"
      "No plug-in is needed.");
  command->callback([&options] { options.status = RunDerive(options.derive); });
}

void AddFunctions(CLI::App& app, Options&) {
  CLI::App* command = app.add_subcommand("functions", "List the built-in functions of derived fields");
  command->footer("Example:\n  veyra functions | grep date");
  command->callback(RunFunctions);
}

void AddInspect(CLI::App& app, Options& options) {
  CLI::App* command = app.add_subcommand("inspect", "Show what a document holds");
  InspectOptions& inspect = options.inspect;
  AddDocument(*command, "DOCUMENT", inspect.document);
  CLI::Option* json = command->add_flag("--json", inspect.json, "The same as JSON, for programs");
  command->add_flag("--display", inspect.display, "The library's own display of the dictionaries")
      ->excludes(json);
  command->add_flag("--tree", inspect.tree, "Draw the nodes of a tree as indented text")->excludes(json);
  command->add_option("--depth", inspect.treeDepth, "The deepest level that is drawn (the root is 0)")
      ->type_name("N")
      ->check(CLI::NonNegativeNumber);
  command->add_option("--svg", inspect.svg, "Write a picture of the tree to FILE (6 levels unless --depth)")
      ->type_name("FILE");
  command->footer(
      "Example:\n  veyra inspect --json model.pmml | jq '.fields[].name'\n"
      "  veyra inspect --tree --depth 3 --svg tree.svg model.pmml");
  command->callback([&inspect] { RunInspect(inspect); });
}

void AddDoctor(CLI::App& app, Options& options) {
  CLI::App* command = app.add_subcommand("doctor", "Say all that keeps a document from being scored");
  AddModelOptions(*command, options.doctor.model, options.doctor.catalog, options.doctor.auxPath);
  command->footer("Example:\n  veyra doctor model.pmml && veyra score model.pmml data.csv\n\n" +
                  ListAdaptations());
  command->callback([&options] { options.status = RunDoctor(options.doctor); });
}

// What is made from the commands themselves; packages install it.
void AddPapers(CLI::App& app, Options&) {
  CLI::App* manual = app.add_subcommand("manual", "Write the manual page, for man -l -");
  manual->footer("Example:\n  veyra manual | man -l -");
  manual->callback([&app] { std::fputs(ManualPage(app).c_str(), stdout); });
  CLI::App* completion = app.add_subcommand("completion", "Write the completion of the commands for bash");
  completion->footer("Example:\n  source <(veyra completion)");
  completion->callback([&app] { std::fputs(BashCompletion(app).c_str(), stdout); });
}

}  // namespace

void AddCommands(CLI::App& app, Options& options) {
  app.require_subcommand(1);
  app.footer("Example:\n  veyra score model.pmml data.csv -o results.csv\n\n" + std::string(kExitStatus));
  AddScore(app, options);
  AddDerive(app, options);
  AddInspect(app, options);
  AddDoctor(app, options);
  AddFunctions(app, options);
  AddPapers(app, options);
}

}  // namespace VeyraTool
