#pragma once

#include <unistd.h>

#include <utility>

namespace velahost {

// An open file, closed at the end of its life.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }

  int Number() const { return number_; }
  // Takes an open file over, or -1 for none. REQUIRES: it has none yet.
  void Take(int number) { number_ = number; }
  bool IsOpen() const { return number_ >= 0; }
  // Closes it and returns what close returned: some file systems report a failed write only then.
  int Close() {
    const int result = close(number_);
    number_ = -1;
    return result;
  }

 private:
  int number_ = -1;
};

}  // namespace velahost
