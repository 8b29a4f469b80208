#include "program/CommandLine/Arguments.h"

#include <algorithm>

#include "program/Failure.h"

namespace applydic {

Arguments::Arguments(CLI::App& program, const char* name, const char* description,
                     const char* examples)
    : command_(*program.add_subcommand(name, description)) {
  command_.footer(examples);
}

void Arguments::DeclareFile(const char* name, const char* description, std::string& path) {
  command_.add_option(name, path, description)->required()->type_name("");
}

void Arguments::DeclareFiles(const char* name, const char* description,
                             std::vector<std::string>& paths) {
  command_.add_option(name, paths, description)->required()->type_name("");
}

void Arguments::DeclareNames(const char* name, const char* description,
                             std::vector<std::string>& names) {
  command_.add_option(name, names, description)->type_name("");
}

CLI::Option& Arguments::DeclareText(const char* names, const char* kind, const char* description,
                                    std::string& text, const std::string& group) {
  CLI::Option& option = *command_.add_option(names, text, description)->type_name(kind);
  if (!group.empty()) option.group(group);
  return option;
}

CLI::Option& Arguments::DeclareFlag(const char* names, const char* description, bool& isGiven,
                                    const std::string& group) {
  CLI::Option& option = *command_.add_flag(names, isGiven, description)->disable_flag_override();
  if (!group.empty()) option.group(group);
  return option;
}

void Arguments::DeclareFlagWithText(const char* names, const char* kind, const char* description,
                                    std::string& text) {
  command_.add_flag(names, text, description)->type_name(kind);
}

void Arguments::DeclareLanguage() {
  DeclareText("--lang", "CODE",
              "The language of the labels, such as en; without it that of the codebook's first",
              language_);
}

void Arguments::DeclareColor() {
  DeclareText("--color", "WHEN",
              "When to write in colour: auto (on a terminal, without NO_COLOR), always or never",
              color_);
}

std::optional<std::string> Arguments::ValueOf(const std::string& option,
                                              const std::string& value) const {
  if (command_.count(option) == 0) return std::nullopt;
  return value;
}

std::optional<std::string> Arguments::Language() const {
  if (command_.count("--lang") == 0) return std::nullopt;
  const bool looksLikeOne =
      !language_.empty() && std::all_of(language_.begin(), language_.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
               c == '-';
      });
  if (!looksLikeOne) {
    Refuse("--lang takes the code of a language, such as en or pt-BR, not '" + language_ + "'");
  }
  return language_;
}

ColorWhen Arguments::Color() const {
  if (color_ == "auto") return ColorWhen::Auto;
  if (color_ == "always") return ColorWhen::Always;
  if (color_ == "never") return ColorWhen::Never;
  Refuse("--color takes auto, always or never, not '" + color_ + "'");
}

void Arguments::Refuse(const std::string& reason) const {
  throw Failure(reason + "; see 'applydic " + command_.get_name() + " --help'.");
}

}  // namespace applydic
