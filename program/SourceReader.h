#pragma once

#include <future>
#include <string>
#include <vector>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Files/File.h"
#include "standalone/Syntax/Tokenizer.h"

namespace applydic {

// Opens the sources of a run. The first command's is opened on a thread of its own while the
// program reads the working file: reading is most of what a run does, and neither file needs the
// other.
class SourceReader {
 public:
  // Starts to open the file that FROM names in the command, if it names one, with its labels in the
  // language that the run seems to have. If no thread can be started, Open opens it. The destructor
  // waits for the thread.
  SourceReader(const velahost::Command& first, std::string language);

  // Opens the file that a specification names, path or path#ID, with its labels in the run's
  // language, or waits for the one that was begun. Throws FileError.
  velahost::CodebookFile Open(const std::string& specification, const std::string& language);

  // The files that Open returned.
  const std::vector<velahost::FileIdentity>& Opened() const { return opened_; }

 private:
  std::string first_;
  std::string firstLanguage_;
  std::future<velahost::CodebookFile> reading_;
  std::vector<velahost::FileIdentity> opened_;
};

}  // namespace applydic
