#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "program/Library.h"
#include "program/Outcome.h"
#include "program/SourceReader.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Host/Host.h"
#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Tokenizer.h"

namespace applydic {

// Where the changed codebook goes: to a file, to standard output by some path or "-", or, without a
// path, nowhere.
struct Destination {
  std::optional<std::string> path;
  bool isStandardOutput = false;
  std::optional<std::string> backupSuffix;  // of the name that keeps the file that is replaced
  // Other runs read the same sources: the working file too is not replaced if it is one of them.
  bool isShared = false;
};

enum class AfterError : std::uint8_t { Stop, GoOn };

// Takes a diagnostic and the command that it was issued by; null where a file was read before the
// first.
using DiagnosticReport =
    std::function<void(const velahost::Diagnostic& diagnostic, const velahost::Command* command)>;

// Writes the diagnostic to standard error.
void ReportAside(const velahost::Diagnostic& diagnostic, const velahost::Command* command);

// One run: commands on one working codebook. Its steps are its operations, in order; each throws
// where the program cannot go on: Failure, velahost::FileError, velahost::SaveError.
class Run {
 public:
  // Opens the codebook, path or path#ID or standard input (see Input.h), and makes it the host's
  // working file. The first command's source is read meanwhile. Labels are those in the language;
  // where none is given, in that of the codebook's first. The host, new, outlives this object.
  // REQUIRES: at least one command.
  Run(velahost::Host& host, const std::string& working, std::vector<velahost::Command> commands,
      const std::optional<std::string>& language);
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  const velahost::CodebookFile& Working() const { return host_.WorkingFile(); }

  // Sets where the outcome goes, and throws what can be known to refuse that already.
  void SetDestination(Destination destination);

  // Runs the commands in order. Diagnostics are kept by the host and reported as they come. Nothing
  // comes of a run with an error; whether the commands behind it are still run, to see their errors
  // too, is the caller's to say. They meet the working file as the one with the error left it.
  std::optional<Outcome> RunCommands(EntryPoint applyDictionary, AfterError afterError,
                                     const DiagnosticReport& report);

  // Writes the outcome to its destination; without one, to nowhere, which throws all the same what
  // cannot be written. A file that was read as a source is refused, except the working file.
  void Write(Outcome& outcome) const;

 private:
  Outcome OutcomeNow() const;
  // Throws Failure if writing would replace a source.
  void RefuseSource() const;
  // What it would replace: each path with the file that stands there.
  std::vector<std::pair<std::string, velahost::FileIdentity>> Replaced() const;

  velahost::Host& host_;
  std::vector<velahost::Command> commands_;
  std::shared_ptr<SourceReader> sources_;
  Destination destination_;
};

}  // namespace applydic
