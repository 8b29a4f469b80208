// A whole run: commands, the source and the working document, cut at lines of four dashes. In the
// commands 'source' is the source's path. What is in memory after the run comes back from the saved
// document, and to run one command again changes nothing.

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/Expect.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Host/Host.h"
#include "standalone/Syntax/Tokenizer.h"

extern "C" void applydic_();

namespace {

using fuzz::Expect;

// A file without a name that is written anew for each run.
class SourceFile {
 public:
  std::string Path() const { return "/proc/self/fd/" + std::to_string(number_); }
  void Write(const std::string& bytes) const {
    Expect(ftruncate(number_, 0) == 0, "the source cannot be emptied");
    Expect(pwrite(number_, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
           "the source cannot be written");
  }

 private:
  const int number_ = memfd_create("source", MFD_CLOEXEC);
};

// Cuts the first part off the text.
std::string TakePart(std::string& text) {
  const std::string separator = "\n----\n";
  const std::size_t end = std::min(text.find(separator), text.size());
  std::string part = text.substr(0, end);
  text.erase(0, end + separator.size());
  return part;
}

std::string WithPath(std::string command, const std::string& path) {
  const std::string name = "'source";
  for (std::size_t at = 0; (at = command.find(name, at)) != std::string::npos; at += path.size()) {
    command.replace(at, name.size(), "'" + path);
  }
  return command;
}

std::optional<velahost::CodebookFile> Open(const std::string& text,
                                           const std::optional<std::string>& language) {
  try {
    return velahost::OpenCodebook("working", velahost::Bytes(text), std::nullopt,
                                  velahost::OpenFor::Writing, language);
  } catch (const velahost::FileError&) {
    return std::nullopt;
  }
}

// Runs the commands up to the first error; not more than a few, since the fuzzer repeats them.
void RunCommands(velahost::Host& host, const std::string& text) {
  constexpr std::size_t kMost = 4;
  std::vector<velahost::Command> commands = velahost::SplitCommands(text);
  for (std::size_t i = 0; i < std::min(commands.size(), kMost); ++i) {
    host.SetCommand(std::move(commands[i]));
    applydic_();
    Expect(host.openFrames.empty(), "a frame is left open");
    if (host.diagnostics.FatalError()) return;
  }
}

// Whether there are strings that count as long as their longest value: with that goes their type.
bool HasLongUnstatedStrings(const velahost::Dictionary& dictionary) {
  return std::any_of(dictionary.variables.begin(), dictionary.variables.end(),
                     [](const auto& variable) {
                       return !variable->IsNumeric() && !variable->hasStatedWidth &&
                              variable->type > velahost::kDefaultWidth;
                     });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const SourceFile source;
  std::string text(reinterpret_cast<const char*>(data), size);
  const std::string command = WithPath(TakePart(text), source.Path());
  source.Write(TakePart(text));
  std::optional<velahost::CodebookFile> working = Open(text, std::nullopt);
  if (!working) return 0;

  std::optional<velahost::CodebookFile> again;
  std::string saved;
  bool mayRunAgain = velahost::SplitCommands(command).size() == 1;
  {
    velahost::Host host;
    host.SetWorking(std::move(*working));
    RunCommands(host, command);
    const velahost::Dictionary now = host.WorkingDictionary();
    saved = velahost::WriteCodebook(host.WorkingFile(), now);
    again = Open(saved, host.WorkingFile().language);
    Expect(again.has_value(), "what was saved is refused:\n" + saved);
    fuzz::ExpectSameDictionary(now, again->dictionary);
    Expect(velahost::WriteCodebook(*again, again->dictionary) == saved,
           "other bytes the second time");
    mayRunAgain = mayRunAgain && !host.diagnostics.FatalError() && !HasLongUnstatedStrings(now);
  }
  if (!mayRunAgain) return 0;
  velahost::Host host;
  host.SetWorking(std::move(*again));
  RunCommands(host, command);
  Expect(velahost::WriteCodebook(host.WorkingFile(), host.WorkingDictionary()) == saved,
         "a second run changes something:\n" + saved);
  return 0;
}
