#include "program/Apply.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <future>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "program/Account.h"
#include "program/DictionaryJson.h"
#include "program/Library.h"
#include "program/Output.h"
#include "standalone/Codebook/OpenCodebook.h"
#include "standalone/Files/SaveFile.h"
#include "standalone/Host.h"
#include "standalone/Output/Diagnostics.h"
#include "standalone/Syntax/Tokenizer.h"

namespace applydic {
namespace {

// What a syntax file may have: a pipe or a device need not have an end.
constexpr std::size_t kMostMegabytes = 16;

// A syntax file, whole; "-" is standard input.
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
  constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.erase(0, std::strlen(kByteOrderMark));
  return text;
}

std::vector<velahost::Command> ReadCommands(const ApplyOptions& options) {
  return velahost::SplitCommands(options.command ? *options.command
                                                 : ReadSyntax(*options.syntaxFile));
}

// Where the codebook is to be written; none for a dry run.
std::optional<std::string> Destination(const ApplyOptions& options,
                                       const velahost::OpenedCodebook& working) {
  if (options.inPlace) return working.path;
  return options.output;
}

// A run writes onto none of the files that it has read as a source, save the working file.
void RefuseSource(const std::string& destination, const velahost::FileIdentity& working,
                  const std::vector<velahost::FileIdentity>& sources) {
  const std::optional<velahost::FileIdentity> there = velahost::IdentityAt(destination);
  if (!there || *there == working) return;
  if (std::find(sources.begin(), sources.end(), *there) == sources.end()) return;
  throw Failure("Cannot write " + destination +
                ": the dictionary was read from this file; write to another file.");
}

// Writes the diagnostics of a run to standard error, each when it is new.
class DiagnosticsWriter {
 public:
  explicit DiagnosticsWriter(const velahost::Diagnostics& diagnostics)
      : diagnostics_(diagnostics) {}

  void WriteNew() {
    const std::vector<velahost::Diagnostic>& all = diagnostics_.All();
    for (; written_ < all.size(); ++written_) WriteDiagnostic(all[written_]);
  }

 private:
  const velahost::Diagnostics& diagnostics_;
  std::size_t written_ = 0;
};

void ReportFailure(const std::string& message) {
  velahost::Report(BpShowMessage, BpLevelFailure, velahost::EscapeMessage(message), {});
}

// One call of the library. What it lets through is an error of the run.
void Call(EntryPoint applyDictionary) {
  try {
    applyDictionary();
  } catch (const std::bad_alloc&) {
    ReportFailure("There is not enough memory to carry the command out.");
  } catch (const std::exception& exception) {
    ReportFailure(std::string("The command could not be carried out: ") + exception.what());
  }
}

// Runs the commands in order; the first error ends the run.
void RunCommands(velahost::Host& host, std::vector<velahost::Command> commands,
                 EntryPoint applyDictionary) {
  DiagnosticsWriter diagnostics(host.diagnostics);
  diagnostics.WriteNew();
  for (velahost::Command& command : commands) {
    host.SetCommand(std::move(command));
    Call(applyDictionary);
    diagnostics.WriteNew();
    if (host.diagnostics.FatalError()) return;
  }
}

// A dry run writes too, to nowhere: it shows what cannot be written.
void WriteWorking(const VELA_DataSource& working, const std::optional<std::string>& destination) {
  if (!destination) return velahost::WriteCodebook(working, [](std::string_view) {});
  velahost::SaveFile(*destination, [&](const velahost::ByteSink& sink) {
    velahost::WriteCodebook(working, sink);
  });
}

// Without it the codebook is written none the less, which the user must know.
void WriteAccount(std::future<std::string> account, const std::optional<std::string>& destination) {
  const std::string written = destination ? " " + *destination + " is written." : "";
  try {
    WriteOutput(account.get());
  } catch (const std::bad_alloc&) {
    throw Failure("There is not enough memory to tell what has changed." + written);
  } catch (const Failure& failure) {
    throw Failure(failure.what() + written);
  }
}

// The source of a command while the host opens it ahead. However the run ends, it waits for that.
class SourceAheadOf {
 public:
  SourceAheadOf(velahost::Host& host, const velahost::Command& command) : host_(host) {
    host_.sourceAhead.emplace(command);
  }
  SourceAheadOf(const SourceAheadOf&) = delete;
  SourceAheadOf& operator=(const SourceAheadOf&) = delete;
  ~SourceAheadOf() { host_.sourceAhead.reset(); }

 private:
  velahost::Host& host_;
};

}  // namespace

ExitStatus RunApply(const ApplyOptions& options) {
  const EntryPoint applyDictionary = LoadLibrary();
  std::vector<velahost::Command> commands = ReadCommands(options);
  // Never destroyed: the program ends with the run, and the system takes all of its memory back at
  // once. Its threads have ended before.
  velahost::Host& host = *new velahost::Host;
  const SourceAheadOf ahead(host, commands.front());
  velahost::OpenedCodebook working = velahost::OpenCodebook(options.working);
  const std::optional<std::string> destination = Destination(options, working);
  if (destination) velahost::CheckCanSave(*destination);

  host.SetWorking(std::move(working.dataSource));
  for (const velahost::ReadingWarning& warning : working.warnings) {
    velahost::Report(BpShowMessage, BpLevelTransferWarning, warning.text, warning.arguments);
  }
  RunCommands(host, std::move(commands), applyDictionary);

  const std::vector<velahost::Diagnostic>& diagnostics = host.diagnostics.All();
  if (host.diagnostics.FatalError()) {
    WriteOutput(options.json ? JsonText(OutcomeJson(diagnostics, {}, std::nullopt))
                             : "An error was reported: nothing written\n");
    return kErrorReported;
  }

  if (destination) RefuseSource(*destination, working.identity, host.sourcesRead);
  // The account is made while the codebook is written.
  std::future<std::string> account = std::async([&] {
    const Changes changes = ChangesOf(host.Working());
    return options.json ? JsonText(OutcomeJson(diagnostics, changes, destination))
                        : AccountText(changes, destination);
  });
  WriteWorking(host.Working(), destination);
  WriteAccount(std::move(account), destination);
  return kDone;
}

}  // namespace applydic
