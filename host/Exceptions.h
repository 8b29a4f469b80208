#pragma once

#include <string>

// The exception that a host operation throws to report a failure with a text.
//
// Any host operation except a destructor may throw it. The library catches it in one place,
// applydic_, and issues its message as an error of level 4 with the flag of a message text (see
// BpString), so the message needs two backslashes to show one.
//
// The library does not catch it from the constructors of UserCaseFileSpec and BpProcedure, which
// come before the run, nor from the BpString and the BpError that report another ErrorText. From
// there it passes through to the host unchanged, after everything that the run held is released. So
// does an exception of any other type, from wherever it comes.
class ErrorText {
 public:
  explicit ErrorText(std::string text);
  ErrorText(const ErrorText& other);
  ErrorText& operator=(const ErrorText&) = delete;
  virtual ~ErrorText();

  std::string message;
};
