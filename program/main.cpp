#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <new>
#include <variant>

#include "program/Apply.h"
#include "program/CommandLine.h"
#include "program/Failure.h"
#include "program/Output.h"
#include "program/Show.h"

namespace applydic {
namespace {

// A closed pipe and a full quota are failures of the write that meets them, to be told.
void IgnoreSignalsOfWriting() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

// Sees to it that no file that is opened takes the place of a closed standard stream: what is
// written for people would go into it. What stands there instead fails when it is used.
void KeepStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) != -1) continue;
    // The lowest number that is free: this stream's.
    const int mode = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (open("/dev/null", mode) != stream) std::terminate();
  }
}

ExitStatus Run(const Request& request) {
  if (const auto* apply = std::get_if<ApplyOptions>(&request)) return RunApply(*apply);
  if (const auto* show = std::get_if<ShowOptions>(&request)) return RunShow(*show);
  WriteOutput(std::get<Answer>(request).text);
  return kDone;
}

}  // namespace
}  // namespace applydic

int main(int argc, char** argv) {
  applydic::IgnoreSignalsOfWriting();
  applydic::KeepStandardStreams();
  try {
    return applydic::Run(applydic::ReadCommandLine(argc, argv));
  } catch (const std::bad_alloc&) {
    applydic::WriteError("There is not enough memory.");
  } catch (const std::exception& exception) {
    applydic::WriteError(exception.what());
  }
  return applydic::kCannotRun;
}
