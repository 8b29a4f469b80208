#include "standalone/Files/NewFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <random>

#include "standalone/Files/CallFailure.h"

namespace velahost {
namespace {

constexpr int kMostAttempts = 100;  // at a name that no file has

int OpenFolder(const std::string& folder) {
  return open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
}

// Calls a function with names until it does not say that a file has that name. Returns the name;
// empty, with errno set, if it fails.
template <typename Function>
std::string FindName(const Function& take) {
  std::random_device random;
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    std::string name = ".applydic-" + std::to_string(getpid()) + "-" + std::to_string(random());
    if (take(name.c_str())) return name;
    if (errno != EEXIST) break;
  }
  return {};
}

}  // namespace

NewFile::NewFile(const std::string& folder, mode_t mode) : folder_(OpenFolder(folder)) {
  if (folder_.IsOpen()) {
    // A file without a name gets one by its path there.
    const bool canBeLinked = faccessat(AT_FDCWD, "/proc/self/fd", X_OK, AT_EACCESS) == 0;
    if (canBeLinked) {
      file_.Take(openat(folder_.Number(), ".", O_WRONLY | O_TMPFILE | O_CLOEXEC, mode));
    }
    if (!file_.IsOpen()) OpenNamed(mode);
  }
  if (!file_.IsOpen()) throw CallFailure("no file can be made in " + folder);
}

NewFile::~NewFile() {
  if (!ownName_.empty()) unlinkat(folder_.Number(), ownName_.c_str(), 0);
}

void NewFile::OpenNamed(mode_t mode) {
  ownName_ = FindName([&](const char* name) {
    file_.Take(
        openat(folder_.Number(), name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    return file_.IsOpen();
  });
}

void NewFile::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file_.Number(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw CallFailure("writing failed");
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void NewFile::Flush() {
  if (fsync(file_.Number()) != 0) throw CallFailure("writing failed");
  // Some file systems report a failed write only when a descriptor of the file is closed.
  Descriptor second(fcntl(file_.Number(), F_DUPFD_CLOEXEC, 0));
  if (!second.IsOpen() || second.Close() != 0) throw CallFailure("writing failed");
}

bool NewFile::Link(const char* name) const {
  const std::string self = "/proc/self/fd/" + std::to_string(file_.Number());
  return linkat(AT_FDCWD, self.c_str(), folder_.Number(), name, AT_SYMLINK_FOLLOW) == 0;
}

// Linking replaces nothing. So a file without a name that is to replace another is linked under a
// name of its own and renamed at once: only between these two calls does a process that is killed
// leave a name behind.
void NewFile::TakeName(const std::string& name) {
  if (ownName_.empty()) {
    if (Link(name.c_str())) return;
    if (errno == EEXIST) ownName_ = FindName([&](const char* own) { return Link(own); });
    if (ownName_.empty()) throw CallFailure("it cannot be named");
  }
  if (renameat(folder_.Number(), ownName_.c_str(), folder_.Number(), name.c_str()) != 0) {
    throw CallFailure("it cannot be replaced");
  }
  ownName_.clear();
}

bool LinkOver(const std::string& folder, const std::string& name, const std::string& further) {
  const Descriptor at(OpenFolder(folder));
  if (!at.IsOpen()) throw CallFailure("the folder " + folder);
  const auto link = [&](const char* to) {
    return linkat(at.Number(), name.c_str(), at.Number(), to, 0) == 0;
  };
  if (link(further.c_str())) return true;
  if (errno != EEXIST) return false;
  const std::string own = FindName(link);
  if (own.empty()) return false;
  const bool isRenamed = renameat(at.Number(), own.c_str(), at.Number(), further.c_str()) == 0;
  const int error = errno;
  // It is still there if that failed, and if both were names of one file, which renaming leaves.
  unlinkat(at.Number(), own.c_str(), 0);
  errno = error;
  if (!isRenamed) throw CallFailure("renaming failed");
  return true;
}

void FlushFolder(const std::string& folder) {
  const Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.IsOpen()) fsync(opened.Number());
}

}  // namespace velahost
