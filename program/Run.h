#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "program/Library.h"
#include "program/Outcome.h"
#include "program/SourceReader.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Host/Host.h"
#include "standalone/Syntax/Tokenizer.h"

namespace applydic {

// Where the changed codebook goes: to a file, to standard output by some path, or, without a path,
// nowhere.
struct Destination {
  std::optional<std::string> path;
  bool isStandardOutput = false;
};

// One run: commands on one working codebook. Its steps are its operations, in order; each throws
// where the program cannot go on: Failure, velahost::FileError, velahost::SaveError.
class Run {
 public:
  // Opens the codebook, path or path#ID, and makes it the host's working file. The first command's
  // source is read meanwhile. Labels are those in the language; where none is given, in that of the
  // codebook's first. The host, new, outlives this object.
  // REQUIRES: at least one command.
  Run(velahost::Host& host, const std::string& working, std::vector<velahost::Command> commands,
      const std::optional<std::string>& language);
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  const velahost::CodebookFile& Working() const { return host_.WorkingFile(); }

  // Sets where the outcome goes, and throws what can be known to refuse that already.
  void SetDestination(Destination destination);

  // Runs the commands in order. Diagnostics are kept by the host, and go to standard error as they
  // come. The first error ends the run: then nothing comes of it.
  std::optional<Outcome> RunCommands(EntryPoint applyDictionary);

  // Writes the outcome to its destination; without one, to nowhere, which throws all the same what
  // cannot be written. A file that was read as a source is refused, except the working file.
  void Write(const Outcome& outcome) const;

 private:
  Outcome OutcomeNow() const;
  void RefuseSource() const;

  velahost::Host& host_;
  std::vector<velahost::Command> commands_;
  std::shared_ptr<SourceReader> sources_;
  Destination destination_;
};

}  // namespace applydic
