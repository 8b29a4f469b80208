#pragma once

#include <functional>
#include <stdexcept>

namespace applydic {

// The exit statuses of the program.
enum ExitStatus : int {
  kDone = 0,           // warnings included
  kErrorReported = 1,  // the run reported an error; nothing is written
  kDifferent = 1,      // of diff: the dictionaries differ
  kCannotRun = 2,      // wrong usage, or a file that cannot be read or written
};

// Why the program ends with kCannotRun; what() says what to do about it.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

inline constexpr const char* kNoMemory = "There is not enough memory.";

// Does the work and returns its status. What it throws is written as an error; then kCannotRun.
ExitStatus ReportFailures(const std::function<ExitStatus()>& work);

}  // namespace applydic
