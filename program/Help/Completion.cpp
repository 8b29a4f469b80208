#include <algorithm>
#include <cstddef>

#include "program/Help/Declarations.h"
#include "program/Help/ProgramPages.h"

namespace applydic {
namespace {

constexpr const char* kColors = "auto always never";

std::string Joined(const std::vector<std::string>& words) {
  std::string joined;
  for (const std::string& word : words) joined += (joined.empty() ? "" : " ") + word;
  return joined;
}

std::vector<std::string> NamesOf(const std::vector<DeclaredCommand>& commands) {
  std::vector<std::string> names;
  names.reserve(commands.size());
  for (const DeclaredCommand& command : commands) names.push_back(command.name);
  return names;
}

// What `help` explains, besides the commands.
constexpr const char* kTopics = "command messages";

// A text in single quotes, for a shell.
std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

// The text of an argument to _arguments: colons and brackets mean something there.
std::string Plain(const std::string& text) {
  std::string plain;
  for (const char c : text) {
    if (c == ':' || c == '[' || c == ']' || c == '\\') plain += '\\';
    plain += c;
  }
  return plain;
}

bool IsFile(const DeclaredOption& option) { return option.kind == "FILE"; }
bool IsColor(const DeclaredOption& option) { return option.kind == "WHEN"; }

// The patterns of the options of a kind, for `case`.
std::string PatternOf(const std::vector<DeclaredCommand>& commands,
                      bool (*isWanted)(const DeclaredOption&)) {
  std::vector<std::string> names;
  for (const DeclaredCommand& command : commands) {
    for (const DeclaredOption& option : command.options) {
      if (!isWanted(option)) continue;
      for (const std::string& name : option.names) {
        const bool isNew = std::find(names.begin(), names.end(), name) == names.end();
        if (isNew) names.push_back(name);
      }
    }
  }
  std::string pattern;
  for (const std::string& name : names) pattern += (pattern.empty() ? "" : " | ") + name;
  return pattern;
}

std::string ZshAction(const DeclaredOption& option) {
  if (option.kind.empty()) return "";
  const std::string text = (option.isTextOptional ? "::" : ":") + option.kind + ":";
  if (IsFile(option)) return text + "_files";
  return IsColor(option) ? text + "(" + kColors + ")" : text;
}

}  // namespace

std::string BashCompletion(const CLI::App& program) {
  const std::vector<DeclaredCommand> commands = CommandsOf(program);
  std::string script =
      "# Completes the arguments of applydic in bash.\n_applydic() {\n"
      "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} options=\n"
      "  COMPREPLY=()\n  if [ \"$COMP_CWORD\" -eq 1 ]; then\n";
  std::vector<std::string> first = NamesOf(commands);
  for (const DeclaredOption& option : OptionsOf(program)) {
    first.insert(first.end(), option.names.begin(), option.names.end());
  }
  script += "    mapfile -t COMPREPLY < <(compgen -W '" + Joined(first) +
            "' -- \"$word\")\n    return\n  fi\n";
  script += "  case $before in\n    " + PatternOf(commands, IsColor) +
            ")\n      mapfile -t COMPREPLY < <(compgen -W '" + kColors +
            "' -- \"$word\")\n      return\n      ;;\n    " +
            PatternOf(commands,
                      [](const DeclaredOption& option) {
                        return !option.kind.empty() && !option.isTextOptional && !IsFile(option) &&
                               !IsColor(option);
                      }) +
            ")\n      return\n      ;;\n  esac\n  case ${COMP_WORDS[1]} in\n";
  for (const DeclaredCommand& command : commands) {
    std::vector<std::string> words;
    for (const DeclaredOption& option : command.options) {
      words.insert(words.end(), option.names.begin(), option.names.end());
    }
    script += "    " + command.name + ") options='" + Joined(words) + "' ;;\n";
  }
  script +=
      "  esac\n  if [ \"${COMP_WORDS[1]}\" = help ]; then\n"
      "    mapfile -t COMPREPLY < <(compgen -W '" +
      Joined(NamesOf(commands)) + " " + kTopics +
      "' -- \"$word\")\n  elif [[ $word == -* ]]; then\n"
      "    mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$word\")\n  else\n"
      "    compopt -o filenames 2>/dev/null\n"
      "    mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n  fi\n}\n"
      "complete -F _applydic applydic\n";
  return script;
}

std::string ZshCompletion(const CLI::App& program) {
  const std::vector<DeclaredCommand> commands = CommandsOf(program);
  std::string script =
      "#compdef applydic\n# Completes the arguments of applydic in zsh.\n\n_applydic() {\n"
      "  local -a commands\n  commands=(\n";
  for (const DeclaredCommand& command : commands) {
    script += "    " + Quoted(command.name + ":" + command.description) + "\n";
  }
  script +=
      "  )\n  if (( CURRENT == 2 )); then\n    _describe command commands\n    return\n  fi\n"
      "  local command=${words[2]}\n  shift words\n  (( CURRENT-- ))\n  case $command in\n";
  for (const DeclaredCommand& command : commands) {
    script += "    " + command.name + ")\n      _arguments -s";
    for (const DeclaredOption& option : command.options) {
      for (const std::string& name : option.names) {
        const std::string end = option.isTextOptional ? "=-" : "";
        script += " \\\n        " +
                  Quoted(name + end + "[" + Plain(option.description) + "]" + ZshAction(option));
      }
    }
    const bool isHelp = command.name == "help";
    script += " \\\n        " +
              Quoted(isHelp ? "*:topic:(" + Joined(NamesOf(commands)) + " " + kTopics + ")"
                            : std::string("*:file:_files")) +
              "\n      ;;\n";
  }
  return script + "  esac\n}\n\n_applydic \"$@\"\n";
}

std::string FishCompletion(const CLI::App& program) {
  const std::vector<DeclaredCommand> commands = CommandsOf(program);
  std::string script = "# Completes the arguments of applydic in fish.\n";
  for (const DeclaredCommand& command : commands) {
    script += "complete -c applydic -n __fish_use_subcommand -f -a " + command.name + " -d " +
              Quoted(command.description) + "\n";
  }
  for (const DeclaredCommand& command : commands) {
    const std::string start =
        "complete -c applydic -n '__fish_seen_subcommand_from " + command.name + "'";
    for (const DeclaredOption& option : command.options) {
      script += start;
      for (const std::string& name : option.names) {
        script += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
      }
      if (!option.kind.empty() && !option.isTextOptional)
        script += IsFile(option) ? " -r -F" : " -x";
      if (IsColor(option)) script += std::string(" -a '") + kColors + "'";
      script += " -d " + Quoted(option.description) + "\n";
    }
    if (command.name == "help") {
      script += start + " -f -a '" + Joined(NamesOf(commands)) + " " + kTopics + "'\n";
    }
  }
  return script;
}

}  // namespace applydic
