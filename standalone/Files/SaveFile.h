#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "standalone/Files/File.h"

namespace velahost {

// A file that cannot be written. what() names the file and says what failed, why, and what to do
// where that is not plain.
class SaveError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Writes a whole file: afterwards it holds the bytes that `write` gave the sink, or something was
// thrown (SaveError, or what `write` threw) and the file is unchanged, or still absent. No one who
// reads it sees a part of it.
//
// Links are followed, also to a file that is not there yet, and stay. A file that was there keeps
// its permissions and, where the system lets us, its owner and group; a new one gets what the
// process gives new files. What is there and no regular file, or write-protected, is refused.
// An interrupt that comes meanwhile takes effect when the file is whole.
void SaveFile(const std::string& path, const std::function<void(const ByteSink& sink)>& write);
void SaveFile(const std::string& path, std::string_view bytes);

// Throws the SaveError that SaveFile would throw as far as that can be told without writing: the
// folder is not there or takes no files, or what is there cannot be replaced.
void CheckCanSave(const std::string& path);

}  // namespace velahost
