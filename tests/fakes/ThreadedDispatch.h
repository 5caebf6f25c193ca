// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>

#include "base/DetachedThread.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {

/// A main queue and a clock that the test moves, with real threads for what nobody waits for.
class ThreadedDispatch : public ManualDispatch {
 public:
  void detach(Work work) override {
    ++detached_;
    ASSERT_TRUE(runDetached("probe", [work = std::move(work), ended = ended_] {
      work();
      ++*ended;
    }));
  }

  // The test's side.

  /// Runs what arrives on the main queue until the condition holds. The limit only bounds a
  /// failure: false when it was reached.
  template <class Condition>
  [[nodiscard]] bool runUntil(Condition condition) {
    return waitUntil([&] {
      if (condition()) return true;
      (void)runOne();
      return condition();
    });
  }
  /// The same, but leaves what arrives on the main queue.
  template <class Condition>
  [[nodiscard]] static bool waitUntil(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      std::this_thread::yield();
    }
    return true;
  }
  /// Threads started so far.
  [[nodiscard]] int detachedCount() const { return detached_; }
  /// How many of them have done their work.
  [[nodiscard]] int endedCount() const { return *ended_; }

 private:
  int detached_ = 0;
  // Shared with threads that may outlive this.
  std::shared_ptr<std::atomic<int>> ended_ = std::make_shared<std::atomic<int>>(0);
};

}  // namespace vantorel
