// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace vantorel {

/// Where threads of a test wait, as those do whose disk does not answer, until the test opens it.
/// Threads that nobody joins share it; a test opens it before it ends, so that none of them speaks
/// up in the next one.
class Gate {
 public:
  /// Waits until the gate is open. The limit only bounds a failure: a test that needs it to go on
  /// has not shown what it says.
  void pass() {
    std::unique_lock lock(mutex_);
    ++waiting_;
    changed_.notify_all();
    if (!changed_.wait_for(lock, limit, [this] { return open_; })) {
      ADD_FAILURE() << "nobody has opened the gate";
    }
    --waiting_;
    ++passed_;
    changed_.notify_all();
  }

  // The test's side.

  void open() {
    const std::lock_guard lock(mutex_);
    open_ = true;
    changed_.notify_all();
  }
  /// Whether so many wait in front of the gate, by now or soon.
  [[nodiscard]] bool isReachedBy(int count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [&] { return waiting_ == count; });
  }
  /// Whether so many have gone through, by now or soon.
  [[nodiscard]] bool isPassedBy(int count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [&] { return passed_ == count; });
  }

 private:
  static constexpr std::chrono::seconds limit{20};

  std::mutex mutex_;
  std::condition_variable changed_;
  bool open_ = false;
  int waiting_ = 0;
  int passed_ = 0;
};

}  // namespace vantorel
