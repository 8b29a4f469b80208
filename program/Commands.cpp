#include "program/Commands.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "program/Failure.h"
#include "standalone/Files/FileKind.h"

namespace applydic {
namespace {

// The most that a syntax file may have: a pipe or a device may have no end.
constexpr std::size_t kMostMegabytes = 16;

// Throws Failure where a text is plainly no text of commands: each of its characters would be an
// error of its own.
void RequireCommands(const std::string& name, std::string_view text) {
  const std::string_view first = text.substr(0, 4096);
  const std::optional<std::string> kind = velahost::KindOfOther(first);
  if (!kind) {
    throw Failure("Cannot read commands from " + name +
                  ": this is a codebook or another XML document; name a codebook as WORKING, or in "
                  "a command after FROM.");
  }
  if (first.find('\0') != std::string_view::npos) {
    throw Failure("Cannot read commands from " + name + ": this is " + *kind +
                  "; give a text file in UTF-8.");
  }
}

std::string ReadSyntax(const std::string& path) {
  const bool isInput = path == "-";
  const std::string name = isInput ? "standard input" : path;
  const auto closeFile = [](std::FILE* file) {
    if (file != stdin) std::fclose(file);
  };
  const std::unique_ptr<std::FILE, decltype(closeFile)> file(
      isInput ? stdin : std::fopen(path.c_str(), "rbe"), closeFile);
  std::string text;
  std::array<char, 1 << 16> buffer;
  while (file != nullptr) {
    const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get());
    text.append(buffer.data(), count);
    if (text.size() > kMostMegabytes << 20) {
      throw Failure("Cannot read commands from " + name + ": it has more than " +
                    std::to_string(kMostMegabytes) +
                    " MB; give the commands in several smaller files.");
    }
    if (count < buffer.size()) break;
  }
  if (file == nullptr || std::ferror(file.get()) != 0) {
    throw Failure("Cannot read commands from " + name + ": " + std::strerror(errno) +
                  "; give a file of commands after --syntax, or a command after --command.");
  }
  RequireCommands(name, text);
  return text;
}

}  // namespace

std::vector<velahost::Command> ReadCommands(const WorkOptions& options) {
  return velahost::SplitCommands(options.command ? *options.command
                                                 : ReadSyntax(*options.syntaxFile));
}

}  // namespace applydic
