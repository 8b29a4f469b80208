#include "standalone/Files/SaveTarget.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <vector>

#include "standalone/Files/File.h"
#include "standalone/Files/SaveFile.h"

namespace velahost {
namespace {

constexpr int kMostLinks = 40;   // as many as the system itself follows
constexpr int kMostLooks = 100;  // at one file

[[noreturn]] void Fail(const std::string& path, const std::string& what,
                       const std::string& advice) {
  throw SaveError("Cannot write " + path + ": " + what + (advice.empty() ? "" : "; " + advice) +
                  ".");
}

// REQUIRES: errno says why.
[[noreturn]] void FailBySystem(const std::string& path, const std::string& what,
                               const std::string& advice = "") {
  Fail(path, what + ": " + std::strerror(errno), advice);
}

void Split(const std::string& path, SaveTarget& target) {
  const std::size_t slash = path.rfind('/');
  target.name = slash == std::string::npos ? path : path.substr(slash + 1);
  target.folder = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

std::optional<std::string> LinkAt(const std::string& path) {
  std::vector<char> text(256);
  for (;;) {
    const ssize_t length = readlink(path.c_str(), text.data(), text.size());
    if (length < 0) return std::nullopt;
    if (static_cast<std::size_t>(length) < text.size()) {
      return std::string(text.data(), static_cast<std::size_t>(length));
    }
    text.resize(text.size() * 2);
  }
}

// Follows the links. The system does the same for a file that is there; one that is not there yet
// has to be found link by link.
SaveTarget TargetOf(const std::string& path) {
  SaveTarget target;
  Split(path, target);
  for (int links = 0;; ++links) {
    const std::optional<std::string> link = LinkAt(target.Path());
    if (!link) break;
    if (links == kMostLinks) Fail(path, "the links lead in a circle", "");
    Split(link->starts_with('/') ? *link : target.folder + "/" + *link, target);
  }
  if (target.name.empty() || target.name == "." || target.name == "..") {
    Fail(path, "this is a folder", "name a file");
  }
  if (stat(path.c_str(), &target.status) == 0) {
    target.isThere = true;
    if (S_ISDIR(target.status.st_mode)) Fail(path, "this is a folder", "name a file");
    if (!S_ISREG(target.status.st_mode)) {
      Fail(path, "this is not a regular file", "write to a file and send that on");
    }
    // A link that the system makes up (an open file by its number) has a text that leads elsewhere.
    // So it seems too where another process replaces the file between the two looks, but not long.
    for (int attempt = 0; IdentityAt(path) != IdentityAt(target.Path()); ++attempt) {
      if (attempt == kMostLooks) {
        Fail(path, "the file has no path of its own", "name it by its path");
      }
    }
  } else if (errno != ENOENT) {
    FailBySystem(path, "it cannot be reached");
  }
  return target;
}

}  // namespace

SaveTarget FindSaveTarget(const std::string& path) {
  SaveTarget target = TargetOf(path);
  struct stat folder = {};
  if (stat(target.folder.c_str(), &folder) != 0) {
    FailBySystem(path, "the folder " + target.folder,
                 errno == ENOENT ? "make the folder first" : "");
  }
  if (!S_ISDIR(folder.st_mode)) Fail(path, target.folder + " is not a folder", "");
  if (target.isThere && faccessat(AT_FDCWD, target.Path().c_str(), W_OK, AT_EACCESS) != 0) {
    FailBySystem(path, "the file is write-protected", "make it writable, or name another file");
  }
  if (faccessat(AT_FDCWD, target.folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
    FailBySystem(path, "the folder " + target.folder + " takes no new files",
                 "make it writable, or name a file in another folder");
  }
  return target;
}

}  // namespace velahost
