#pragma once

#include <optional>
#include <string>
#include <variant>

namespace applydic {

// applydic apply: apply a dictionary to the working codebook.
struct ApplyOptions {
  std::string working;  // a path, or path#ID

  // Exactly one of the two.
  std::optional<std::string> command;
  std::optional<std::string> syntaxFile;  // "-" is standard input

  // Exactly one of the three.
  std::optional<std::string> output;
  bool inPlace = false;
  bool dryRun = false;

  bool json = false;
  std::optional<std::string> language;  // of the labels; the working file's if there is none
};

// applydic show: the dictionary of a codebook.
struct ShowOptions {
  std::string file;  // a path, or path#ID
  bool json = false;
  std::optional<std::string> language;  // of the labels; the file's own if there is none
};

// applydic diff: what differs between two dictionaries.
struct DiffOptions {
  std::string before;  // a path, or path#ID
  std::string now;     // the same
  bool json = false;
  std::optional<std::string> language;  // of the labels; that of the new file if there is none
};

// The answer to a question about the program itself: help, or the version.
struct Answer {
  std::string text;
};

using Request = std::variant<Answer, ApplyOptions, ShowOptions, DiffOptions>;

// Reads what the user asks for. Throws Failure for wrong usage; the message names the help to read.
Request ReadCommandLine(int argc, const char* const* argv);

}  // namespace applydic
