#include "veyra/ManualPage.h"

#include <vector>

#include "veyra/Export.h"

namespace VeyraTool {

namespace {

constexpr auto kAll = [](const CLI::App*) { return true; };

// The text as man reads it: its own characters escaped, no line that looks like a request.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    const bool startsLine = escaped.empty() || escaped.back() == '\n';
    if (startsLine && (c == '.' || c == '\'')) escaped += "\\&";
    if (c == '\\') {
      escaped += "\\e";
    } else if (c == '-') {
      escaped += "\\-";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::vector<const CLI::Option*> NamedOptions(const CLI::App& command) {
  std::vector<const CLI::Option*> options;
  for (const CLI::Option* option : command.get_options()) {
    if (option->nonpositional()) options.push_back(option);
  }
  return options;
}

std::vector<std::string> OptionNames(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

std::string Synopsis(const CLI::App& command) {
  std::string text = "\\fBveyra " + Escaped(command.get_name()) + "\\fR [\\fIoptions\\fR]";
  for (const CLI::Option* option : command.get_options()) {
    if (option->nonpositional()) continue;
    const std::string name = "\\fI" + Escaped(option->get_name()) + "\\fR";
    text += option->get_required() ? " " + name : " [" + name + "]";
  }
  return text;
}

std::string Describe(const CLI::Option& option) {
  std::string text = ".TP\n";
  const char* separator = "";
  for (const std::string& name : OptionNames(option)) {
    text.append(separator).append("\\fB").append(Escaped(name)).append("\\fR");
    separator = ", ";
  }
  if (option.get_items_expected_max() > 0)
    text.append(" \\fI").append(Escaped(option.get_type_name())).append("\\fR");
  return text.append("\n").append(Escaped(option.get_description())).append("\n");
}

// Lines that begin with blanks are shown as they are.
std::string Footer(const std::string& footer) {
  return footer.empty() ? "" : ".PP\n.nf\n" + Escaped(footer) + "\n.fi\n";
}

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text.append(text.empty() ? "" : " ").append(word);
  return text;
}

}  // namespace

std::string ManualPage(const CLI::App& app) {
  std::string page = ".TH VEYRA 1 \"\" \"veyra " + std::string(VEYRA_VERSION) + "\"\n.SH NAME\nveyra \\- " +
                     Escaped(app.get_description()) + "\n.SH SYNOPSIS\n.nf\n";
  const std::vector<const CLI::App*> commands = app.get_subcommands(kAll);
  for (const CLI::App* command : commands) page += Synopsis(*command) + "\n";
  page += ".fi\n";
  for (const CLI::App* command : commands) {
    page +=
        ".SH \"veyra " + Escaped(command->get_name()) + "\"\n" + Escaped(command->get_description()) + "\n";
    for (const CLI::Option* option : command->get_options()) {
      if (option->nonpositional()) continue;
      page +=
          ".TP\n\\fI" + Escaped(option->get_name()) + "\\fR\n" + Escaped(option->get_description()) + "\n";
    }
    for (const CLI::Option* option : NamedOptions(*command)) page += Describe(*option);
    page += Footer(command->get_footer());
  }
  return page + ".SH NOTES\n" + Footer(app.get_footer());
}

std::string BashCompletion(const CLI::App& app) {
  std::vector<std::string> names;
  std::string cases;
  for (const CLI::App* command : app.get_subcommands(kAll)) {
    names.push_back(command->get_name());
    std::vector<std::string> words;
    for (const CLI::Option* option : NamedOptions(*command)) {
      for (const std::string& name : OptionNames(*option)) words.push_back(name);
    }
    cases += "    " + command->get_name() + ") words='" + Joined(words) + "' ;;\n";
  }
  return "# Completion of veyra for bash.\n"
         "_veyra() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} words=''\n"
         "  case ${COMP_WORDS[1]} in\n" +
         cases +
         "  esac\n"
         "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
         "    words='" +
         Joined(names) +
         " --help --version'\n"
         "  elif [[ $current != -* ]]; then\n"
         "    mapfile -t COMPREPLY < <(compgen -f -- \"$current\")\n"
         "    return\n"
         "  fi\n"
         "  mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
         "}\n"
         "complete -o filenames -F _veyra veyra\n";
}

}  // namespace VeyraTool
