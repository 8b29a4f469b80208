#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

namespace applydic {

// Shows on a terminal what the program is at: on one line of standard error, which a thread of its
// own paints once the work has taken a while, and which is wiped away. Where standard error is no
// terminal nothing is shown, and there is no thread. The work itself only names its stages and
// counts.
class Progress {
 public:
  // REQUIRES: there is no other one.
  Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  // What is told of a stage besides its name: how long it takes, how many bytes are done, or which
  // of so many items it is at.
  enum class Count : std::uint8_t { Time, Bytes, Items };

  // A stage of the work, as long as this object lives. Stages are begun and ended on one thread,
  // the innermost is shown. Without a Progress it does nothing.
  class Stage {
   public:
    // what is safe for one line of a terminal.
    explicit Stage(std::string what, Count count = Count::Time, std::size_t total = 0);
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage();

    // So much more is done. May be called on any thread.
    void Advance(std::size_t done) { done_.fetch_add(done, std::memory_order_relaxed); }

   private:
    friend class Progress;
    std::string Text() const;

    const std::string what_;
    const Count count_;
    const std::size_t total_;
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
    std::atomic<std::size_t> done_ = 0;
    Stage* outer_ = nullptr;
  };

  // While it lives the line is wiped away and not painted: for what else goes to the terminal.
  class Pause {
   public:
    Pause();

   private:
    std::unique_lock<std::mutex> lock_;
  };

 private:
  void Paint();
  void Wipe();
  void PaintUntilDone();

  std::mutex mutex_;  // of all that follows
  std::condition_variable isDone_;
  bool ends_ = false;
  bool isPainted_ = false;
  Stage* stage_ = nullptr;  // the innermost
  std::thread painter_;
};

}  // namespace applydic
