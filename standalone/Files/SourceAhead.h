#pragma once

#include <future>
#include <optional>
#include <string>

#include "standalone/Codebook/OpenCodebook.h"
#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

// The source that a command names, opened on a thread of its own while the program reads the
// working file. Reading is most of what a run does, and neither file needs the other.
class SourceAhead {
 public:
  // Starts to open the file that follows FROM in the command, if one does. Without a thread to be
  // had it is opened when it is asked for.
  explicit SourceAhead(const Command& command);

  // What was opened, the first time that this file is asked for; nothing for any other. Waits until
  // it is read, and throws what OpenCodebook threw.
  std::optional<OpenedCodebook> Take(const std::string& file);

 private:
  std::string file_;
  std::future<OpenedCodebook> opened_;
};

}  // namespace velahost
