#include "standalone/Files/SaveFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <memory>

#include "standalone/Files/CallFailure.h"
#include "standalone/Files/Descriptor.h"
#include "standalone/Files/KeptProperties.h"
#include "standalone/Files/NewFile.h"
#include "standalone/Files/SaveTarget.h"

namespace velahost {
namespace {

// A file that replaces another is nobody else's to read until it has that one's permissions.
constexpr mode_t kPrivate = 0600;
constexpr mode_t kUsual = 0666;

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

// Copies the target to a name beside it, with all that it has.
void CopyTo(const std::string& name, const SaveTarget& target) {
  const Descriptor from(open(target.Path().c_str(), O_RDONLY | O_CLOEXEC));
  if (!from.IsOpen()) throw CallFailure("reading failed");
  NewFile copy(target.folder, kPrivate);
  std::array<char, 1 << 16> buffer;
  for (;;) {
    const ssize_t length = read(from.Number(), buffer.data(), buffer.size());
    if (length < 0 && errno == EINTR) continue;
    if (length < 0) throw CallFailure("reading failed");
    if (length == 0) break;
    copy.Write({buffer.data(), static_cast<std::size_t>(length)});
  }
  KeepProperties(target, copy.Number());
  copy.Flush();
  copy.TakeName(name);
}

// Keeps the target under one name more, which is on the disk before the target is replaced. Where
// the file system has one name for a file, that is a copy.
std::string KeepBackup(const std::string& path, const SaveTarget& target,
                       const std::string& suffix) {
  const std::string name = target.name + suffix;
  try {
    if (!LinkOver(target.folder, target.name, name)) CopyTo(name, target);
  } catch (const CallFailure& error) {
    throw SaveError("Cannot write " + path + ": its backup " + target.PathOf(name) +
                    " cannot be made: " + error.what() + "; the file is as it was.");
  }
  FlushFolder(target.folder);
  return target.PathOf(name);
}

void CheckBackup(const std::string& path, const SaveTarget& target, const std::string& suffix) {
  struct stat status = {};
  const std::string backup = target.PathOf(target.name + suffix);
  if (lstat(backup.c_str(), &status) == 0) {
    if (S_ISREG(status.st_mode) || S_ISLNK(status.st_mode)) return;
    throw SaveError("Cannot write " + path + ": there is no room for its backup: " + backup +
                    " is not a regular file; name another suffix.");
  }
  if (errno == ENAMETOOLONG) {
    throw SaveError("Cannot write " + path + ": the name of its backup, " + backup +
                    ", is too long; name a shorter suffix.");
  }
}

}  // namespace

Saved SaveFile(const std::string& path, const std::function<void(const ByteSink& sink)>& write,
               const std::optional<std::string>& backupSuffix) {
  const SaveTarget target = FindSaveTarget(path);
  const SignalsHeld held;
  Saved saved;
  saved.isReplaced = target.isThere;
  try {
    NewFile file(target.folder, target.isThere ? kPrivate : kUsual);
    write([&file](std::string_view bytes) { file.Write(bytes); });
    if (target.isThere) saved.notKept = KeepProperties(target, file.Number());
    file.Flush();
    if (target.isThere && backupSuffix) saved.backup = KeepBackup(path, target, *backupSuffix);
    file.TakeName(target.name);
  } catch (const CallFailure& error) {
    throw SaveError("Cannot write " + path + ": " + error.what() + "; " +
                    (target.isThere ? "the file is as it was" : "no file was made") + ".");
  }
  FlushFolder(target.folder);  // the file stands already, so a failure takes nothing from that
  return saved;
}

Saved SaveFile(const std::string& path, std::string_view bytes) {
  return SaveFile(path, [bytes](const ByteSink& sink) { sink(bytes); });
}

void CheckCanSave(const std::string& path, const std::optional<std::string>& backupSuffix) {
  const SaveTarget target = FindSaveTarget(path);
  if (backupSuffix) CheckBackup(path, target, *backupSuffix);
}

std::vector<std::string> PathsWritten(const std::string& path,
                                      const std::optional<std::string>& backupSuffix) {
  SaveTarget target = FindSaveTarget(path);
  const std::unique_ptr<char, decltype(&std::free)> folder(realpath(target.folder.c_str(), nullptr),
                                                           &std::free);
  if (folder) target.folder = folder.get();
  std::vector<std::string> paths = {target.Path()};
  if (backupSuffix) paths.push_back(target.PathOf(target.name + *backupSuffix));
  return paths;
}

}  // namespace velahost
