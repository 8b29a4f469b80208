#include "program/Progress.h"

#include <pthread.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include "program/Listing.h"

namespace applydic {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 500ms;  // work that is done sooner shows nothing
constexpr auto kInterval = 100ms;  // between two paintings
constexpr const char* kWipe = "\r\x1b[K";

Progress* current = nullptr;

bool IsPaintable() {
  const char* const terminal = std::getenv("TERM");
  return isatty(STDERR_FILENO) == 1 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

// A program in the background leaves the terminal to the one that is in front.
bool IsInFront() { return tcgetpgrp(STDERR_FILENO) == getpgrp(); }

std::size_t LineWidth() {
  winsize size = {};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col < 2) return 79;
  return size.ws_col - std::size_t{1};  // behind the last column a terminal may begin a line
}

// Nothing depends on whether it is shown.
void WriteToTerminal(const std::string& text) {
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

// While it lives no signal comes to this thread, nor to those that it starts: one that ends the
// program must wait where the main thread lets it wait.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_;
};

}  // namespace

Progress::Progress() {
  if (!IsPaintable()) return;
  const SignalsBlocked blocked;
  try {
    painter_ = std::thread([this] { PaintUntilDone(); });
  } catch (const std::system_error&) {
    return;  // the work is done without
  }
  current = this;
  // A process that is forked has no such thread; what it does is not shown.
  pthread_atfork(nullptr, nullptr, [] { current = nullptr; });
}

Progress::~Progress() {
  if (!painter_.joinable()) return;
  if (current != this) {
    painter_.detach();
    return;
  }
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  isDone_.notify_one();
  painter_.join();
  Wipe();
  current = nullptr;
}

void Progress::PaintUntilDone() {
  std::unique_lock lock(mutex_);
  auto next = std::chrono::steady_clock::now() + kPatience;
  while (!isDone_.wait_until(lock, next, [this] { return ends_; })) {
    if (stage_ != nullptr && IsInFront()) Paint();
    next += kInterval;
  }
}

void Progress::Paint() {
  WriteToTerminal(kWipe + Cut(stage_->Text(), LineWidth()));
  isPainted_ = true;
}

void Progress::Wipe() {
  if (isPainted_) WriteToTerminal(kWipe);
  isPainted_ = false;
}

Progress::Stage::Stage(std::string what, Count count, std::size_t total)
    : what_(std::move(what)), count_(count), total_(total) {
  if (current == nullptr) return;
  const std::lock_guard lock(current->mutex_);
  outer_ = std::exchange(current->stage_, this);
}

Progress::Stage::~Stage() {
  if (current == nullptr) return;
  const std::lock_guard lock(current->mutex_);
  current->stage_ = outer_;
  current->Wipe();
}

std::string Progress::Stage::Text() const {
  const std::size_t done = done_.load(std::memory_order_relaxed);
  if (count_ == Count::Bytes) return what_ + ", " + CountText(done / 1'000'000) + " MB";
  if (count_ == Count::Items) return what_ + " " + CountText(done) + " of " + CountText(total_);
  const auto time = std::chrono::steady_clock::now() - begin_;
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
  if (seconds == 0) return what_;
  return what_ + ", " + CountText(static_cast<std::size_t>(seconds)) + " s";
}

Progress::Pause::Pause() {
  if (current == nullptr) return;
  lock_ = std::unique_lock(current->mutex_);
  current->Wipe();
}

}  // namespace applydic
