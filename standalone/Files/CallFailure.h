#pragma once

#include <cerrno>
#include <string>
#include <system_error>

namespace velahost {

// A call of the system on a file that failed. what() says what was tried, and the system's reason.
class CallFailure : public std::system_error {
 public:
  // REQUIRES: errno says why.
  explicit CallFailure(const std::string& what)
      : std::system_error(errno, std::generic_category(), what) {}
};

}  // namespace velahost
