#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "standalone/Text/Message.h"

namespace velahost {

// A file that cannot be read, or whose content cannot be used. what() names the file, the place
// where there is one, the reason, and what to do where that is not plain.
class FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  FileError(const std::string& what, MarkedLine errorLine)
      : std::runtime_error(what), line(std::move(errorLine)) {}

  MarkedLine line;
};

// Which file it is, however its path is spelled.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;

  bool operator==(const FileIdentity&) const = default;
};

// The bytes of a document in memory; they stay where they are until this object is gone.
class Bytes {
 public:
  Bytes() = default;
  explicit Bytes(std::string_view copied);
  // Room for so many bytes, whose content is not set, and which are not taken from the system
  // before they are written to.
  static Bytes Room(std::size_t size);

  std::string_view View() const { return {bytes_.get(), bytes_ ? size_ : 0}; }
  char* Data() { return bytes_.get(); }
  // Keeps the first bytes only.
  void CutTo(std::size_t size) { size_ = size; }

 private:
  struct Free {
    void operator()(char* bytes) const { std::free(bytes); }
  };
  std::unique_ptr<char, Free> bytes_;
  std::size_t size_ = 0;
};

// Takes bytes, piece by piece, in order.
using ByteSink = std::function<void(std::string_view bytes)>;

// A file as it was read.
struct FileBytes {
  Bytes bytes;
  FileIdentity identity;
};

// Reads a whole regular file of at most so many bytes. The function is shown the first bytes before
// the rest is read, and may throw. Throws FileError.
FileBytes ReadFile(const std::string& path, std::size_t most,
                   const std::function<void(std::string_view first)>& look);

// Does the same with what an open file has from its place on; it may be a pipe. The name is what
// messages name.
FileBytes ReadInput(int file, const std::string& name, std::size_t most,
                    const std::function<void(std::string_view first)>& look);

// Which file stands at the path, links followed; nothing when there is none.
std::optional<FileIdentity> IdentityAt(const std::string& path);
// Which file is open; nothing when none is.
std::optional<FileIdentity> IdentityOf(int file);

}  // namespace velahost
