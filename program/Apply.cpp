#include "program/Apply.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "program/Account.h"
#include "program/Library.h"
#include "program/Output.h"
#include "program/SourceReader.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Files/SaveFile.h"
#include "standalone/Host/Host.h"
#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Tokenizer.h"

namespace applydic {
namespace {

// The most that a syntax file may have: a pipe or a device may have no end.
constexpr std::size_t kMostMegabytes = 16;

// Reads a whole syntax file; "-" is standard input. Throws Failure.
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
  return text;
}

std::vector<velahost::Command> ReadCommands(const ApplyOptions& options) {
  return velahost::SplitCommands(options.command ? *options.command
                                                 : ReadSyntax(*options.syntaxFile));
}

// The path to write the codebook to; nothing for a dry run.
std::optional<std::string> Destination(const ApplyOptions& options,
                                       const velahost::CodebookFile& working) {
  if (options.inPlace) return working.path;
  return options.output;
}

// Throws Failure if the destination is a file that the run read as a source, except the working
// file.
void RefuseSource(const std::string& destination, const velahost::FileIdentity& working,
                  const std::vector<velahost::FileIdentity>& sources) {
  const std::optional<velahost::FileIdentity> there = velahost::IdentityAt(destination);
  if (!there || *there == working) return;
  if (std::find(sources.begin(), sources.end(), *there) == sources.end()) return;
  throw Failure("Cannot write " + destination +
                ": the dictionary was read from this file; write to another file.");
}

// Writes the diagnostics of a run to standard error, each one once.
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

// Calls the library once. Reports what it throws as an error of the run.
void Call(EntryPoint applyDictionary, velahost::Diagnostics& diagnostics) {
  const auto fail = [&diagnostics](const std::string& message) {
    diagnostics.Report(velahost::Severity::Failure, {velahost::EscapeMessage(message)});
  };
  try {
    applyDictionary();
  } catch (const std::bad_alloc&) {
    fail("There is not enough memory to carry the command out.");
  } catch (const std::exception& exception) {
    fail(std::string("The command could not be carried out: ") + exception.what());
  }
}

// Runs the commands in order; the first error ends the run.
void RunCommands(velahost::Host& host, std::vector<velahost::Command> commands,
                 EntryPoint applyDictionary) {
  DiagnosticsWriter diagnostics(host.diagnostics);
  diagnostics.WriteNew();
  for (velahost::Command& command : commands) {
    host.SetCommand(std::move(command));
    Call(applyDictionary, host.diagnostics);
    diagnostics.WriteNew();
    if (host.diagnostics.FatalError()) return;
  }
}

// A dry run writes too, to nowhere, so that it meets what cannot be written.
void WriteWorking(const velahost::CodebookFile& working, const Outcome& outcome,
                  bool isCodebookOutput) {
  const auto write = [&](const velahost::ByteSink& sink) {
    velahost::WriteCodebook(working, outcome.dictionary, outcome.changes, sink);
  };
  if (!outcome.written) return write([](std::string_view) {});
  if (isCodebookOutput) return write(WriteOutput);
  velahost::SaveFile(*outcome.written, write);
}

// Tells the user what came of the run, on standard output, unless the codebook itself goes there.
void TellUser(const ApplyOptions& options, const std::vector<velahost::Diagnostic>& diagnostics,
              const std::optional<Outcome>& outcome, bool isCodebookOutput) {
  if (options.isQuiet) return;
  const Page page = PageOfOutput(options.color, isCodebookOutput);
  const AccountStyle style{options.dryRun || options.difference, options.isVerbose};
  WriteForReader(isCodebookOutput ? Stream::Aside : Stream::Output,
                 [&](const velahost::ByteSink& sink) {
                   if (options.json) {
                     WriteOutcomeJson(diagnostics, outcome, sink);
                   } else if (outcome) {
                     WriteAccount(*outcome, style, page, sink);
                   } else {
                     sink("An error was reported: nothing written\n");
                   }
                 });
}

// Tells what has changed. If that fails, the codebook is written already, and the message says so.
void TellOutcome(const Outcome& outcome, const ApplyOptions& options,
                 const std::vector<velahost::Diagnostic>& diagnostics, bool isCodebookOutput) {
  const auto written = [&outcome] {
    return outcome.written ? " " + *outcome.written + " is written." : std::string();
  };
  try {
    TellUser(options, diagnostics, outcome, isCodebookOutput);
  } catch (const std::bad_alloc&) {
    throw Failure("There is not enough memory to tell what has changed." + written());
  } catch (const Failure& failure) {
    throw Failure(failure.what() + written());
  }
}

std::vector<std::string> Strings(const std::vector<velahost::Text>& texts) {
  return {texts.begin(), texts.end()};
}

// What came of the commands.
Outcome OutcomeOf(velahost::Host& host, std::optional<std::string> destination) {
  const velahost::CodebookFile& working = host.WorkingFile();
  Outcome outcome{working, host.WorkingDictionary(), {}, {}, {}, std::move(destination)};
  outcome.changes = velahost::ChangesBetween(working.dictionary, outcome.dictionary);
  const velahost::Reach& reach = host.ReachOfRun();
  outcome.notPaired = Strings(reach.NotPaired());
  for (const std::size_t column : reach.NotReached(working.dictionary.variables.size())) {
    outcome.notReached.push_back(working.dictionary.variables[column]->name.String());
  }
  return outcome;
}

}  // namespace

ExitStatus RunApply(const ApplyOptions& options, velahost::Host& host) {
  const EntryPoint applyDictionary = LoadLibrary();
  std::vector<velahost::Command> commands = ReadCommands(options);
  velahost::CodebookBytes bytes = velahost::ReadCodebook(options.working);
  const auto sources = std::make_shared<SourceReader>(
      commands.front(), options.language ? *options.language : bytes.GuessLanguage());
  host.SetWorking(
      velahost::OpenCodebook(std::move(bytes), velahost::OpenFor::Writing, options.language));
  const velahost::CodebookFile& working = host.WorkingFile();
  host.openSource = [sources, &working](const std::string& file) {
    return sources->Open(file, working.language);
  };
  const std::optional<std::string> destination = Destination(options, working);
  const bool isCodebookOutput = options.output && IsStandardOutput(*options.output);
  if (destination && !isCodebookOutput) velahost::CheckCanSave(*destination);
  RunCommands(host, std::move(commands), applyDictionary);

  const std::vector<velahost::Diagnostic>& diagnostics = host.diagnostics.All();
  if (host.diagnostics.FatalError()) {
    TellUser(options, diagnostics, std::nullopt, isCodebookOutput);
    return kErrorReported;
  }

  if (destination) RefuseSource(*destination, working.identity, sources->Opened());
  const Outcome outcome = OutcomeOf(host, destination);
  WriteWorking(working, outcome, isCodebookOutput);
  TellOutcome(outcome, options, diagnostics, isCodebookOutput);
  return kDone;
}

}  // namespace applydic
