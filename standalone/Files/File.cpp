#include "standalone/Files/File.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <new>

#include "standalone/Files/Descriptor.h"

namespace velahost {
namespace {

[[noreturn]] void CannotRead(const std::string& path, const std::string& why) {
  throw FileError(path + ": cannot be read: " + why);
}

// Reads up to `most` bytes; fewer only at the end of the file.
std::size_t ReadUpTo(int file, char* into, std::size_t most, const std::string& path) {
  std::size_t length = 0;
  while (length < most) {
    const ssize_t count = read(file, into + length, most - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) CannotRead(path, std::strerror(errno));
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
  }
  return length;
}

[[noreturn]] void FailAsTooLong(const std::string& path, std::size_t most) {
  CannotRead(path, "it has more than " + std::to_string(most >> 20) + " MB");
}

// Reads the rest of an open file, which is likely to have so many bytes.
Bytes ReadRest(int file, std::size_t size, const std::string& path, std::size_t most,
               const std::function<void(std::string_view first)>& look) {
  // One byte more than expected shows the end of the file without another turn.
  std::size_t room = size + 1;
  Bytes bytes = Bytes::Room(room);
  constexpr std::size_t kFirst = 4096;
  std::size_t length = ReadUpTo(file, bytes.Data(), std::min(room, kFirst), path);
  look({bytes.Data(), length});
  length += ReadUpTo(file, bytes.Data() + length, room - length, path);
  while (length == room && length <= most) {  // it has more than it seemed
    room *= 2;
    Bytes more = Bytes::Room(room);
    std::copy_n(bytes.Data(), length, more.Data());
    bytes = std::move(more);
    length += ReadUpTo(file, bytes.Data() + length, room - length, path);
  }
  if (length > most) FailAsTooLong(path, most);
  bytes.CutTo(length);
  return bytes;
}

}  // namespace

Bytes::Bytes(std::string_view copied) : Bytes(Room(copied.size())) {
  std::copy(copied.begin(), copied.end(), Data());
}

Bytes Bytes::Room(std::size_t size) {
  Bytes bytes;
  bytes.bytes_.reset(static_cast<char*>(std::malloc(size + 1)));
  if (!bytes.bytes_) throw std::bad_alloc();
  bytes.size_ = size;
  return bytes;
}

FileBytes ReadFile(const std::string& path, std::size_t most,
                   const std::function<void(std::string_view first)>& look) {
  if (path.find('\0') != std::string::npos) CannotRead(path, "there is a zero byte in its name");
  // Without O_NONBLOCK a pipe that nobody writes to would never be opened.
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.IsOpen()) CannotRead(path, std::strerror(errno));
  struct stat status = {};
  if (fstat(file.Number(), &status) != 0) CannotRead(path, std::strerror(errno));
  if (!S_ISREG(status.st_mode)) {
    CannotRead(path, S_ISDIR(status.st_mode) ? "it is a folder" : "it is not a regular file");
  }
  const auto size = static_cast<std::uintmax_t>(status.st_size);
  if (size > most) FailAsTooLong(path, most);
  return {ReadRest(file.Number(), static_cast<std::size_t>(size), path, most, look),
          {status.st_dev, status.st_ino}};
}

FileBytes ReadInput(int file, const std::string& name, std::size_t most,
                    const std::function<void(std::string_view first)>& look) {
  constexpr std::uintmax_t kOfPipe = std::uintmax_t{1} << 20;
  struct stat status = {};
  if (fstat(file, &status) != 0) CannotRead(name, std::strerror(errno));
  const std::uintmax_t size =
      S_ISREG(status.st_mode) ? static_cast<std::uintmax_t>(status.st_size) : kOfPipe;
  const auto expected = static_cast<std::size_t>(std::min<std::uintmax_t>(size, most));
  return {ReadRest(file, expected, name, most, look), {status.st_dev, status.st_ino}};
}

std::optional<FileIdentity> IdentityAt(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

std::optional<FileIdentity> IdentityOf(int file) {
  struct stat status = {};
  if (fstat(file, &status) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

}  // namespace velahost
