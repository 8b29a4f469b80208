#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "program/Terminal.h"

namespace applydic {

// What commands to run on which working codebooks.
struct WorkOptions {
  // At least one: a path, or path#ID. A single one may be standard input: "-", or "-#ID".
  std::vector<std::string> working;

  // Exactly one of the two.
  std::optional<std::string> command;
  std::optional<std::string> syntaxFile;  // "-" is standard input

  std::optional<std::string> language;  // of the labels; the working file's if there is none
  std::size_t jobs = 1;                 // so many working files at the same time
};

// applydic apply: apply a dictionary to working codebooks.
struct ApplyOptions : WorkOptions {
  // Exactly one of the three.
  std::optional<std::string> output;  // a file, a folder, or "-" for standard output
  bool inPlace = false;
  bool dryRun = false;

  std::optional<std::string> backupSuffix;  // of the name that keeps a file that is replaced

  // What is told of the run: an account, by default a screenful, or JSON.
  std::optional<std::string> report;  // a page of it is written to this file
  bool json = false;
  bool isQuiet = false;     // nothing
  bool isVerbose = false;   // the whole account
  bool difference = false;  // with old and new values, as a dry run has it
  ColorWhen color = ColorWhen::Auto;
};

// applydic check: tell what apply would refuse or warn about.
struct CheckOptions : WorkOptions {
  bool isStrict = false;  // warnings too make the status kErrorReported
  bool json = false;
};

// applydic show: the dictionary of a codebook.
struct ShowOptions {
  std::string file;                    // a path, or path#ID
  std::vector<std::string> variables;  // only these, in full; empty for all
  bool json = false;
  ColorWhen color = ColorWhen::Auto;
  std::optional<std::string> language;  // of the labels; the file's own if there is none
};

// applydic diff: what differs between two dictionaries.
struct DiffOptions {
  std::string before;  // a path, or path#ID
  std::string now;     // the same
  bool json = false;
  bool isQuiet = false;  // only the exit status tells
  ColorWhen color = ColorWhen::Auto;
  std::optional<std::string> language;  // of the labels; that of the new file if there is none
};

// applydic match: which variables of an older codebook those of a newer one come from.
struct MatchOptions {
  std::string before;                 // a path, or path#ID
  std::string now;                    // the same
  std::optional<std::string> output;  // where the syntax file goes; none is written without it
  bool json = false;
  std::optional<std::string> language;  // of the labels; that of the new file if there is none
};

// The answer to a question about the program itself: help, or the version.
struct Answer {
  std::string text;
};

using Request =
    std::variant<Answer, ApplyOptions, CheckOptions, ShowOptions, DiffOptions, MatchOptions>;

// Reads what the user asks for. Throws Failure for wrong usage; the message names the help to read.
Request ReadCommandLine(int argc, const char* const* argv);

}  // namespace applydic
