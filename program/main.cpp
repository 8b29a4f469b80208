#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <new>
#include <variant>

#include "program/Apply.h"
#include "program/Check.h"
#include "program/CommandLine.h"
#include "program/Diff.h"
#include "program/Failure.h"
#include "program/Match.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "program/Show.h"
#include "standalone/Files/File.h"

namespace applydic {
namespace {

// Without the signals, a write to a closed pipe or beyond a limit fails, and the program reports
// it.
void IgnoreSignalsOfWriting() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

// Opens something in the place of each closed standard stream: else the next file that is opened
// would take that place, and messages would go into it. What is opened here fails when it is used.
void KeepStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) != -1) continue;
    // A new file takes the lowest free number, which is this stream's.
    const int mode = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (open("/dev/null", mode) != stream) std::terminate();
  }
}

// Ends the program with a message where memory runs out in a place that lets nothing pass, such as
// before main.
[[noreturn]] void EndWithoutMemory() {
  WriteError(kNoMemory);
  std::_Exit(kCannotRun);
}

// Set before the other objects of the program are made.
struct TerminateHandler {
  TerminateHandler() { std::set_terminate(EndWithoutMemory); }
};
[[gnu::init_priority(101)]] const TerminateHandler terminateHandler;

ExitStatus Run(const Request& request) {
  if (const auto* apply = std::get_if<ApplyOptions>(&request)) return RunApply(*apply);
  if (const auto* check = std::get_if<CheckOptions>(&request)) return RunCheck(*check);
  if (const auto* show = std::get_if<ShowOptions>(&request)) return RunShow(*show);
  if (const auto* diff = std::get_if<DiffOptions>(&request)) return RunDiff(*diff);
  if (const auto* match = std::get_if<MatchOptions>(&request)) return RunMatch(*match);
  WriteForReader(Stream::Output, [&request](const velahost::ByteSink& sink) {
    sink(std::get<Answer>(request).text);
  });
  return kDone;
}

}  // namespace
}  // namespace applydic

int main(int argc, char** argv) {
  applydic::IgnoreSignalsOfWriting();
  applydic::KeepStandardStreams();
  // Everything is written then, and a source that is not needed may still be read beside.
  std::_Exit(applydic::ReportFailures([argc, argv] {
    const applydic::Request request = applydic::ReadCommandLine(argc, argv);
    const applydic::Progress progress;
    return applydic::Run(request);
  }));
}
