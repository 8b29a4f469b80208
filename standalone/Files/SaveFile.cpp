#include "standalone/Files/SaveFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <optional>
#include <random>
#include <vector>

#include "standalone/Files/Descriptor.h"

namespace velahost {
namespace {

constexpr int kMostLinks = 40;      // as many as the system itself follows
constexpr int kMostAttempts = 100;  // at a name that no file has, and at a look at one file
constexpr mode_t kPermissionBits = 07777;
constexpr const char* kAccessList = "system.posix_acl_access";

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

// While it lives, the signals by which people and systems end a program wait.
class SignalsHeld {
 public:
  SignalsHeld() {
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) sigaddset(&held, signal);
    pthread_sigmask(SIG_BLOCK, &held, &before_);
  }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;
  ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_;
};

// The file to replace: the one that all links lead to.
struct Target {
  std::string folder;  // "." for a path without one
  std::string name;
  bool isThere = false;
  struct stat status = {};  // of the file that is there

  std::string Path() const { return folder == "/" ? "/" + name : folder + "/" + name; }
};

void Split(const std::string& path, Target& target) {
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
Target TargetOf(const std::string& path) {
  Target target;
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
      if (attempt == kMostAttempts) {
        Fail(path, "the file has no path of its own", "name it by its path");
      }
    }
  } else if (errno != ENOENT) {
    FailBySystem(path, "it cannot be reached");
  }
  return target;
}

// The target of the path, which can be replaced as far as that can be told.
Target CheckedTarget(const std::string& path) {
  Target target = TargetOf(path);
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

// A file beside the target, under a name of its own, until it takes the target's place. Destroyed
// before that, it is removed.
class TemporaryFile {
 public:
  TemporaryFile(const std::string& path, const Target& target)
      : path_(path),
        unchanged_(target.isThere ? "the file is as it was" : "no file was made"),
        folder_(open(target.folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)),
        file_(folder_.IsOpen() ? Create(target) : -1) {
    if (!file_.IsOpen()) {
      FailBySystem(path, "no file can be made in " + target.folder);
    }
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!name_.empty()) unlinkat(folder_.Number(), name_.c_str(), 0);
  }

  void Write(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t written = write(file_.Number(), bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) FailBySystem(path_, "writing failed", unchanged_);
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
  }

  // Gives the file the permissions of the one that it will replace.
  void TakePermissionsOf(const Target& target) {
    const int file = file_.Number();
    mode_t mode = target.status.st_mode & kPermissionBits;
    bool hasGroup = true;
    if (fchown(file, target.status.st_uid, target.status.st_gid) != 0) {
      hasGroup = fchown(file, static_cast<uid_t>(-1), target.status.st_gid) == 0;
      mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
    }
    const bool hasList = CopyAccessList(target);
    if (!hasGroup || !hasList) {
      // Another group gets no more than everyone does.
      mode &= ~static_cast<mode_t>(S_IRWXG) | ((mode & S_IRWXO) << 3);
    }
    if (fchmod(file, mode) != 0) FailBySystem(path_, "its permissions cannot be kept");
  }

  // Makes it the target, to last.
  void Replace(const Target& target) {
    if (fsync(file_.Number()) != 0) FailBySystem(path_, "writing failed", unchanged_);
    if (file_.Close() != 0) FailBySystem(path_, "writing failed", unchanged_);
    if (renameat(folder_.Number(), name_.c_str(), folder_.Number(), target.name.c_str()) != 0) {
      FailBySystem(path_, "it cannot be replaced");
    }
    name_.clear();
    // The file stands already; a folder that cannot be read or flushed takes nothing from that.
    const Descriptor folder(open(target.folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.IsOpen()) fsync(folder.Number());
  }

 private:
  int Create(const Target& target) {
    // A file that replaces another is nobody else's to read until it has that one's permissions.
    const mode_t mode = target.isThere ? 0600 : 0666;
    std::random_device random;
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
      std::string name = ".applydic-" + std::to_string(getpid()) + "-" + std::to_string(random());
      const int file = openat(folder_.Number(), name.c_str(),
                              O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
      if (file >= 0) {
        name_ = std::move(name);
        return file;
      }
      if (errno != EEXIST) return -1;
    }
    return -1;
  }

  // Copies the target's access list; true also when it has none.
  bool CopyAccessList(const Target& target) {
    const std::string from = target.Path();
    const ssize_t size = getxattr(from.c_str(), kAccessList, nullptr, 0);
    if (size <= 0) return true;
    std::vector<char> list(static_cast<std::size_t>(size));
    const ssize_t length = getxattr(from.c_str(), kAccessList, list.data(), list.size());
    return length > 0 && fsetxattr(file_.Number(), kAccessList, list.data(),
                                   static_cast<std::size_t>(length), 0) == 0;
  }

  const std::string& path_;
  const char* const unchanged_;  // what a failure left behind
  std::string name_;             // empty once there is nothing to remove
  Descriptor folder_;
  Descriptor file_;
};

}  // namespace

void SaveFile(const std::string& path, const std::function<void(const ByteSink& sink)>& write) {
  const Target target = CheckedTarget(path);
  const SignalsHeld held;
  TemporaryFile file(path, target);
  write([&](std::string_view bytes) { file.Write(bytes); });
  if (target.isThere) file.TakePermissionsOf(target);
  file.Replace(target);
}

void SaveFile(const std::string& path, std::string_view bytes) {
  SaveFile(path, [bytes](const ByteSink& sink) { sink(bytes); });
}

void CheckCanSave(const std::string& path) { CheckedTarget(path); }

}  // namespace velahost
