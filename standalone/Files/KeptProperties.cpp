#include "standalone/Files/KeptProperties.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include "standalone/Files/CallFailure.h"

namespace velahost {
namespace {

constexpr mode_t kPermissionBits = 07777;
constexpr const char* kAccessList = "system.posix_acl_access";

// What speaks of the old bytes: capabilities of a program, and signatures.
constexpr std::array<std::string_view, 3> kOfBytes = {"security.capability", "security.ima",
                                                      "security.evm"};

bool IsKept(std::string_view attribute) {
  if (attribute.starts_with("user.")) return true;
  return attribute.starts_with("security.") &&
         std::find(kOfBytes.begin(), kOfBytes.end(), attribute) == kOfBytes.end();
}

// Calls a function that fills a buffer, or asked with none says how large it must be. Nothing, with
// errno set, if it fails.
template <typename Function>
std::optional<std::string> ReadAll(const Function& fill) {
  for (;;) {
    const ssize_t size = fill(nullptr, std::size_t{0});
    if (size < 0) return std::nullopt;
    std::string buffer(static_cast<std::size_t>(size), '\0');
    const ssize_t length = size == 0 ? 0 : fill(buffer.data(), buffer.size());
    if (length < 0 && errno == ERANGE) continue;  // it has grown meanwhile
    if (length < 0) return std::nullopt;
    buffer.resize(static_cast<std::size_t>(length));
    return buffer;
  }
}

std::optional<std::string> AttributeAt(const std::string& path, const char* name) {
  return ReadAll(
      [&](char* to, std::size_t room) { return getxattr(path.c_str(), name, to, room); });
}

std::optional<std::string> AttributeOf(int file, const char* name) {
  return ReadAll([&](char* to, std::size_t room) { return fgetxattr(file, name, to, room); });
}

// Copies the attributes; adds the names of those that cannot be kept.
void CopyAttributes(const std::string& from, int file, std::vector<std::string>& notKept) {
  const std::optional<std::string> names =
      ReadAll([&](char* to, std::size_t room) { return listxattr(from.c_str(), to, room); });
  if (!names) return;  // the file system has none
  for (std::size_t at = 0; at < names->size(); at += std::strlen(names->c_str() + at) + 1) {
    const char* const name = names->c_str() + at;
    if (!IsKept(name)) continue;
    const std::optional<std::string> value = AttributeAt(from, name);
    // The system may have given the new file the same label already, and refuse to be told so.
    if (value && AttributeOf(file, name) == value) continue;
    if (!value || fsetxattr(file, name, value->data(), value->size(), 0) != 0) {
      notKept.push_back(std::string("the attribute ") + name);
    }
  }
}

// Copies the access list; true also if there is none.
bool CopyAccessList(const std::string& from, int file) {
  const std::optional<std::string> list = AttributeAt(from, kAccessList);
  return !list || list->empty() || fsetxattr(file, kAccessList, list->data(), list->size(), 0) == 0;
}

}  // namespace

std::vector<std::string> KeepProperties(const SaveTarget& target, int file) {
  std::vector<std::string> notKept;
  // The attributes come first, while the file is the process's own to change.
  CopyAttributes(target.Path(), file, notKept);
  mode_t mode = target.status.st_mode & kPermissionBits;
  bool hasGroup = true;
  if (fchown(file, target.status.st_uid, target.status.st_gid) != 0) {
    hasGroup = fchown(file, static_cast<uid_t>(-1), target.status.st_gid) == 0;
    mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
    if (target.status.st_uid != geteuid()) notKept.emplace_back("the owner");
    if (!hasGroup) notKept.emplace_back("the group");
  }
  const bool hasList = CopyAccessList(target.Path(), file);
  if (!hasList) notKept.emplace_back("the access list");
  if (!hasGroup || !hasList) {
    // Another group gets no more than everyone does.
    mode &= ~static_cast<mode_t>(S_IRWXG) | ((mode & S_IRWXO) << 3);
  }
  if (fchmod(file, mode) != 0) {
    throw CallFailure("its permissions cannot be kept");
  }
  return notKept;
}

}  // namespace velahost
