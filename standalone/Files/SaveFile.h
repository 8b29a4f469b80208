#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Files/File.h"

namespace velahost {

// A file that cannot be written. what() names the file and says what failed, why, and what to do
// where that is not plain.
class SaveError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// What became of the file that was there.
struct Saved {
  bool isReplaced = false;            // false: there was none
  std::optional<std::string> backup;  // the path at which the old file is kept
  // What the new file could not take over from it, such as "the owner".
  std::vector<std::string> notKept;
};

// Writes a whole file: afterwards it holds the bytes that `write` gave the sink, or something was
// thrown (SaveError, or what `write` threw) and the file is unchanged, or still absent. No one who
// reads it sees a part of it.
//
// Links are followed, also to a file that is not there yet, and stay. A file that was there keeps
// its permissions and, where the system lets us, its owner and group, its access list and its
// extended attributes; a new one gets what the process gives new files. What is there and no
// regular file, or write-protected, is refused. An interrupt that comes meanwhile takes effect when
// the file is whole.
//
// With a suffix, the old file is kept beside the new one under its name with the suffix, in place
// of what bore that name. The path holds a whole file, the old or the new one, at every moment.
Saved SaveFile(const std::string& path, const std::function<void(const ByteSink& sink)>& write,
               const std::optional<std::string>& backupSuffix = {});
Saved SaveFile(const std::string& path, std::string_view bytes);

// Throws the SaveError that SaveFile would throw as far as that can be told without writing: the
// folder is not there or takes no files, or what is there cannot be replaced.
void CheckCanSave(const std::string& path, const std::optional<std::string>& backupSuffix = {});

// The paths that SaveFile would write to: that of the file, and that of its backup, whether the
// file is there or not. They begin at the root and have no links, so that two that lead to one
// place are equal. Throws SaveError.
std::vector<std::string> PathsWritten(const std::string& path,
                                      const std::optional<std::string>& backupSuffix);

}  // namespace velahost
