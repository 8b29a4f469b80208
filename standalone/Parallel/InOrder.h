#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <future>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "standalone/Parallel/Beside.h"

namespace velahost {

// Makes a row of results on all threads, for one that takes them in their order.
template <class Make>
class InOrder {
 public:
  using Result = std::invoke_result_t<Make, std::size_t>;

  // make(place) makes the result of a place from 0 to count - 1. It is called on several threads at
  // once.
  InOrder(std::size_t count, Make make)
      : make_(std::move(make)), count_(count), ahead_(Threads() + kWaiting), results_(ahead_) {}
  InOrder(const InOrder&) = delete;
  InOrder& operator=(const InOrder&) = delete;
  // Waits for what is being made.
  ~InOrder() {
    const std::lock_guard lock(mutex_);
    next_ = count_;
    hasRoom_.notify_all();
  }

  // Calls take(result) for each place in turn, on this thread. Throws what making a result throws,
  // when its turn comes, and what take throws. To be called once.
  template <class Take>
  void TakeAll(Take take) {
    const std::size_t most = std::min(Threads(), count_);
    for (std::size_t i = 0; most > 1 && i < most; ++i) {
      workers_.push_back(RunBeside(&InOrder::MakeAll, this));
    }
    for (; taken_ < count_; PassOn()) take(Get());
  }

 private:
  // So many results may wait to be taken besides those that are being made.
  static constexpr std::size_t kWaiting = 2;

  struct Made {
    std::optional<Result> result;
    std::exception_ptr failure;
  };

  bool IsMade(std::size_t place) const {
    const Made& made = results_[place % ahead_];
    return made.result || made.failure;
  }

  void MakeAll() {
    std::unique_lock lock(mutex_);
    for (;;) {
      hasRoom_.wait(lock, [this] { return next_ >= count_ || next_ < taken_ + ahead_; });
      if (next_ >= count_) return;
      MakeNext(lock);
    }
  }

  // Makes the next result that nobody is at.
  void MakeNext(std::unique_lock<std::mutex>& lock) {
    const std::size_t place = next_++;
    lock.unlock();
    Made made;
    try {
      made.result.emplace(make_(place));
    } catch (...) {
      made.failure = std::current_exception();
    }
    lock.lock();
    results_[place % ahead_] = std::move(made);
    isMade_.notify_one();
  }

  // The result whose turn it is; made here where no thread has begun it, as where there are none.
  Result Get() {
    std::unique_lock lock(mutex_);
    if (next_ == taken_) MakeNext(lock);
    isMade_.wait(lock, [this] { return IsMade(taken_); });
    Made& made = results_[taken_ % ahead_];
    if (made.failure) std::rethrow_exception(made.failure);
    return *std::exchange(made.result, std::nullopt);
  }

  void PassOn() {
    const std::lock_guard lock(mutex_);
    ++taken_;
    hasRoom_.notify_one();
  }

  Make make_;
  const std::size_t count_;
  const std::size_t ahead_;
  std::mutex mutex_;                 // for all that follows
  std::condition_variable hasRoom_;  // for another result, or there is no more to make
  std::condition_variable isMade_;
  std::vector<Made> results_;  // by place, modulo ahead_
  std::size_t next_ = 0;       // place that nobody has begun
  std::size_t taken_ = 0;      // so many
  std::vector<std::future<void>> workers_;
};

}  // namespace velahost
