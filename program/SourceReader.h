#pragma once

#include <cstddef>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Files/File.h"
#include "standalone/Syntax/Tokenizer.h"
#include "standalone/Text/Hash.h"

namespace applydic {

// Opens the sources of a run, each once: all commands that name it see the same, whatever becomes
// of the file on the disk. The first command's is opened on a thread of its own while the program
// reads the working file: reading is most of what a run does, and neither file needs the other.
class SourceReader {
 public:
  // Starts to open the file that FROM names in the first of the commands, if it names one, with its
  // labels in the language that the run seems to have. If no thread can be started, Open opens it.
  // The destructor waits for the thread. REQUIRES: at least one command.
  SourceReader(const std::vector<velahost::Command>& commands, std::string language);

  // Opens the file that a specification names, path or path#ID, with its labels in the run's
  // language, or gives the one that was opened or begun. Called once for each command, in order: a
  // source is given up with the last command that names it. Throws FileError.
  std::shared_ptr<const velahost::CodebookFile> Open(const std::string& specification,
                                                     const std::string& language);

  // The files that Open returned.
  const std::vector<velahost::FileIdentity>& Opened() const { return opened_; }

 private:
  // A source that commands name.
  struct Source {
    std::size_t commandsLeft = 0;                        // that name it and have not opened it yet
    std::shared_ptr<const velahost::CodebookFile> file;  // once it is open
  };

  velahost::CodebookFile Read(const std::string& specification, const std::string& language);

  velahost::TextMap<Source> sources_;  // by specification
  std::string first_;
  std::string firstLanguage_;
  std::future<velahost::CodebookFile> reading_;
  std::vector<velahost::FileIdentity> opened_;
};

}  // namespace applydic
