#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "program/CommandLine.h"

namespace applydic {

// The arguments of one command of the program: declared to the parser when it is made, read from it
// once the parser has run.
class Arguments {
 public:
  virtual ~Arguments() = default;
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  // Whether the user named this command.
  bool Given() const { return command_.parsed(); }
  // What the user asks of it. Throws Failure for wrong usage. REQUIRES: Given().
  virtual Request Read() const = 0;

  // Throws Failure with the reason and the help to read.
  [[noreturn]] void Refuse(const std::string& reason) const;

 protected:
  Arguments(CLI::App& program, const char* name, const char* description, const char* examples);

  // Declare to the parser; options in a group, if one is named. What is set lives as long as this
  // object.
  void DeclareFile(const char* name, const char* description, std::string& path);
  void DeclareFiles(const char* name, const char* description, std::vector<std::string>& paths);
  void DeclareNames(const char* name, const char* description, std::vector<std::string>& names);
  CLI::Option& DeclareText(const char* names, const char* kind, const char* description,
                           std::string& text, const std::string& group = "");
  CLI::Option& DeclareFlag(const char* names, const char* description, bool& isGiven,
                           const std::string& group = "");
  // A flag that may be given a text, --name=TEXT; names ends with what it is without one in braces.
  void DeclareFlagWithText(const char* names, const char* kind, const char* description,
                           std::string& text);
  void DeclareLanguage();
  void DeclareColor();

  // The value of an option that may be absent.
  std::optional<std::string> ValueOf(const std::string& option, const std::string& value) const;
  // The language that --lang names. It goes into the document, so it must look like one. Throws
  // Failure.
  std::optional<std::string> Language() const;
  // When to write in colour. Throws Failure where --color is none of its values.
  ColorWhen Color() const;

 private:
  CLI::App& command_;
  std::string language_;
  std::string color_ = "auto";
};

// Make the arguments of each command.
std::unique_ptr<Arguments> MakeApplyArguments(CLI::App& program);
std::unique_ptr<Arguments> MakeCheckArguments(CLI::App& program);
std::unique_ptr<Arguments> MakeShowArguments(CLI::App& program);
std::unique_ptr<Arguments> MakeDiffArguments(CLI::App& program);
std::unique_ptr<Arguments> MakeMatchArguments(CLI::App& program);
std::unique_ptr<Arguments> MakeHelpArguments(CLI::App& program);

}  // namespace applydic
