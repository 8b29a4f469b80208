#include "program/Output.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "program/Failure.h"
#include "program/MarkedText.h"
#include "program/Progress.h"
#include "standalone/Syntax/Subcommands.h"
#include "standalone/Text/Utf8.h"

namespace applydic {
namespace {

// The reader of standard output has closed the pipe.
class PipeClosed : public Failure {
 public:
  using Failure::Failure;
};

// Returns false, with errno set, when it cannot write all.
bool WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string fileInMessages;  // with ": " behind it, or empty

void WriteLine(const char* kind, std::string_view message) {
  std::string_view file = fileInMessages;
  if (message.starts_with(file)) file = "";
  const Progress::Pause pause;
  WriteAll(STDERR_FILENO,
           fmt::format("applydic: {}: {}{}\n", kind, MakeVisible(file), MakeVisible(message)));
}

bool IsHidden(int code) {
  return code < 0x20 || (code >= 0x7F && code <= 0x9F) ||  // control characters
         code == 0x2028 || code == 0x2029 ||               // line and paragraph separators
         (code >= 0x202A && code <= 0x202E) ||             // direction of writing
         (code >= 0x2066 && code <= 0x2069);
}

std::string Spell(int code) {
  switch (code) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      return fmt::format("\\u{:04X}", code);
  }
}

}  // namespace

void WriteOutput(std::string_view text) {
  if (WriteAll(STDOUT_FILENO, text)) return;
  const int error = errno;
  const std::string why =
      std::string("Cannot write to standard output: ") + std::strerror(error) + ".";
  if (error == EPIPE) throw PipeClosed(why);
  throw Failure(why);
}

void WriteForReader(Stream stream,
                    const std::function<void(const velahost::ByteSink& sink)>& write) {
  constexpr std::size_t kAtOnce = std::size_t{1} << 16;
  std::string text;
  const auto flush = [&] {
    if (stream == Stream::Aside) {
      WriteAside(text);
    } else {
      WriteOutput(text);
    }
    text.clear();
  };
  try {
    write([&](std::string_view piece) {
      text += piece;
      if (text.size() >= kAtOnce) flush();
    });
    flush();
  } catch (const PipeClosed&) {
    return;
  }
}

void WriteAside(std::string_view text) {
  if (text.empty()) return;
  const Progress::Pause pause;
  WriteAll(STDERR_FILENO, text);
}

bool IsStandardOutput(const std::string& path) {
  struct stat named = {};
  struct stat output = {};
  return stat(path.c_str(), &named) == 0 && fstat(STDOUT_FILENO, &output) == 0 &&
         named.st_dev == output.st_dev && named.st_ino == output.st_ino;
}

void NameInMessages(const std::string& file) { fileInMessages = file + ": "; }

void WriteWarning(std::string_view message) { WriteLine("warning", message); }

void WriteError(std::string_view message) { WriteLine("error", message); }

void WriteFileError(const velahost::FileError& error) {
  WriteError(error.what());
  WriteAll(STDERR_FILENO, MarkedText(error.line));
}

void WriteDiagnostic(const velahost::Diagnostic& diagnostic, const velahost::Command* command) {
  if (diagnostic.level >= velahost::Severity::Error) {
    WriteError(diagnostic.shown);
  } else {
    WriteWarning(diagnostic.shown);
  }
  std::string below = MarkedText(diagnostic.fileLine);
  if (diagnostic.place && command != nullptr && command->text) {
    const bool hasPassword =
        std::any_of(command->tokens.begin(), command->tokens.end(), velahost::IsPasswordKeyword);
    if (!hasPassword) below += MarkedText(*command->text, *diagnostic.place);
  }
  if (!diagnostic.advice.empty()) below += "  " + MakeVisible(diagnostic.advice) + "\n";
  const Progress::Pause pause;
  WriteAll(STDERR_FILENO, below);
}

std::string MakeVisible(std::string_view text) {
  std::string visible;
  visible.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const velahost::Character character = velahost::CharacterAt(text, position);
    if (character.code < 0) {
      visible += fmt::format("\\x{:02X}", static_cast<unsigned char>(text[position]));
    } else if (IsHidden(character.code)) {
      visible += Spell(character.code);
    } else {
      visible += text.substr(position, character.length);
    }
    position += character.length;
  }
  return visible;
}

std::size_t WidthOf(std::string_view text) {
  std::size_t width = 0;
  for (std::size_t position = 0; position < text.size();) {
    const velahost::Character character = velahost::CharacterAt(text, position);
    width += velahost::ColumnsOf(character.code);
    position += character.length;
  }
  return width;
}

std::string JoinVisible(const std::vector<std::string>& texts) {
  std::string list;
  for (const std::string& text : texts) {
    if (!list.empty()) list += ", ";
    list += MakeVisible(text);
  }
  return list;
}

}  // namespace applydic
