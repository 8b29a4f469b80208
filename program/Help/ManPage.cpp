#include <cstddef>

#include "program/Help/Declarations.h"
#include "program/Help/ProgramPages.h"
#include "program/Help/Topics.h"

namespace applydic {
namespace {

// A text as roff takes it for what it is.
std::string Escaped(const std::string& text) {
  std::string escaped;
  bool begins = true;
  for (const char c : text) {
    if (begins && (c == '.' || c == '\'')) escaped += "\\&";
    if (c == '\\') {
      escaped += "\\e";
    } else if (c == '-') {
      escaped += "\\-";
    } else if (c == '\'') {
      escaped += "\\(aq";
    } else {
      escaped += c;
    }
    begins = c == '\n';
  }
  return escaped;
}

// Lines that stay as they are.
std::string Lines(const std::string& text) {
  return ".PP\n.nf\n" + Escaped(text) + (text.ends_with('\n') ? "" : "\n") + ".fi\n";
}

std::string TermOf(const DeclaredOption& option) {
  std::string term;
  for (const std::string& name : option.names) {
    term += (term.empty() ? "" : ", ") + ("\\fB" + Escaped(name) + "\\fR");
  }
  if (option.kind.empty()) return term;
  const std::string kind = "\\fI" + option.kind + "\\fR";
  return term + (option.isTextOptional ? "[=" + kind + "]" : " " + kind);
}

std::string OptionList(const std::vector<DeclaredOption>& options) {
  std::string list;
  for (const DeclaredOption& option : options) {
    list += ".TP\n" + TermOf(option) + "\n" + Escaped(option.description) + ".\n";
  }
  return list;
}

std::string UsageOf(const DeclaredCommand& command) {
  std::string usage = "\\fBapplydic " + command.name + "\\fR [\\fIOPTIONS\\fR]";
  for (const std::string& argument : command.arguments) usage += " \\fI" + argument + "\\fR";
  return usage;
}

}  // namespace

std::string ManPage(const CLI::App& program) {
  const std::vector<DeclaredCommand> commands = CommandsOf(program);
  std::string page = ".TH APPLYDIC 1 \"\" \"applydic " APPLYDIC_VERSION "\"\n";
  page += ".SH NAME\napplydic \\- carry the dictionary of one codebook over to another\n";
  page += ".SH SYNOPSIS\n";
  for (const DeclaredCommand& command : commands) page += UsageOf(command) + "\n.br\n";
  page += ".SH DESCRIPTION\n" + Escaped(program.get_description()) + "\n" +
          OptionList(OptionsOf(program));
  page += ".SH COMMANDS\n";
  for (const DeclaredCommand& command : commands) {
    page += ".SS " + UsageOf(command) + "\n" + Escaped(command.description) + "\n";
    page += OptionList(command.options) + Lines(command.examples);
  }
  page += ".SH \"THE COMMAND APPLY DICTIONARY\"\n" + Lines(CommandHelp());
  page +=
      ".SH ENVIRONMENT\n.TP\n\\fBNO_COLOR\\fR\nIf it is set, nothing is in colour unless "
      "\\fB\\-\\-color always\\fR is given.\n.TP\n\\fBCOLUMNS\\fR\nThe width of the terminal.\n";
  page +=
      ".SH \"SEE ALSO\"\n\\fBapplydic help messages\\fR tells of every message what happened, "
      "why, and what to do.\n";
  return page;
}

}  // namespace applydic
