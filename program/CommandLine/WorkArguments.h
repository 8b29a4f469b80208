#pragma once

#include <string>

#include "program/CommandLine/Arguments.h"

namespace applydic {

// The arguments of a command that runs commands on working codebooks: which codebooks, which
// commands, how many at the same time.
class WorkArguments : public Arguments {
 protected:
  // The options live as long as this object.
  WorkArguments(CLI::App& program, const char* name, const char* description, const char* examples,
                WorkOptions& options);

  // Sets the options to what the user asks. Throws Failure for wrong usage.
  void ReadWork(WorkOptions& options) const;

 private:
  std::string command_;
  std::string syntaxFile_;
  std::string jobs_;
};

}  // namespace applydic
