#pragma once

#include <string>

// The exception that a host operation throws to report a failure with a text.
//
// Any host operation may throw it, save destructors. The library catches it in one place,
// applydic_, and issues its message as an error of level 4 with the flag of a message text (see
// BpString), so a backslash that is meant to be seen stands twice in the message. An exception of
// any other type passes through the library to the host unchanged, with everything that the run
// held released.
class ErrorText {
 public:
  explicit ErrorText(std::string text);
  ErrorText(const ErrorText& other);
  ErrorText& operator=(const ErrorText&) = delete;
  virtual ~ErrorText();

  std::string message;
};
