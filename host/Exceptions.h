#pragma once

#include <string>

// The exception that a host operation throws to report a failure with a text.
//
// Any host operation except a destructor may throw it. The library catches it in one place,
// applydic_, and issues its message as an error of level 4 with the flag of a message text (see
// BpString), so a backslash that is meant to be seen stands twice in the message. It is not caught
// where the run has not begun or has ended: from the constructors of UserCaseFileSpec and
// BpProcedure, and from the BpString and the BpError that report another one. From there it passes
// through the library to the host unchanged, with everything that the run held released, as an
// exception of any other type always does.
class ErrorText {
 public:
  explicit ErrorText(std::string text);
  ErrorText(const ErrorText& other);
  ErrorText& operator=(const ErrorText&) = delete;
  virtual ~ErrorText();

  std::string message;
};
