#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "program/Outcome.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Files/File.h"
#include "standalone/Syntax/Diagnostics.h"

namespace applydic {

// The report of a run, to be handed to somebody who is to approve it: a page that opens in any
// browser and needs nothing else. It tells the commands, the files, the messages and the old and
// new values of all that changed. Texts of codebooks and commands are data in it, never markup.
class Report {
 public:
  // A file of the run.
  struct OfFile {
    const char* role;
    std::string path;                                // or path#ID
    std::optional<velahost::FileIdentity> identity;  // of a file, rather than a pipe, that is there
    std::optional<std::time_t> modified;
    std::optional<std::uintmax_t> bytes;
    std::optional<std::size_t> variables;  // of a codebook
    // The IDs of the data files in a codebook that has several, and of the one that the run is on.
    std::vector<std::string> dataFiles = {};
    std::string dataFile = {};
  };

  // A report to this path of commands, as text. Throws velahost::SaveError where it can be told
  // already that the path cannot be written.
  Report(std::string path, std::string commands);

  // Add a file that the run has read, as it is now. One that was added is passed over.
  void AddFile(const char* role, const std::string& path);
  void AddCodebook(const char* role, const std::string& specification,
                   const velahost::CodebookFile& file);

  // Throws Failure if the report would replace a file that was added, or the output of the run.
  void RefuseFilesOfRun(const std::optional<std::string>& output) const;
  // Writes the report, whole or not at all. Without an outcome it says that nothing was written,
  // and why. Throws velahost::SaveError.
  void Write(const std::vector<velahost::Diagnostic>& diagnostics,
             const std::optional<Outcome>& outcome) const;

 private:
  void Add(OfFile file);

  std::string path_;
  std::string commands_;
  std::vector<OfFile> files_;
};

}  // namespace applydic
