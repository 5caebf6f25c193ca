// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <vector>

#include "base/FileDescriptor.h"
#include "platform/Dispatch.h"

namespace vantorel {

/// The work and the timers of a thread that otherwise sleeps over descriptors, such as that of a
/// connection to the window system. Nothing that runs in it may throw.
class WorkLine {
 public:
  using Clock = std::chrono::steady_clock;
  using TimerId = std::uint64_t;  // 0 is none

  WorkLine();

  // Any thread.

  /// Has the thread run `work`, in the order posted. False, and `work` is dropped, after `stop()`.
  bool post(Work work);
  /// Has it run and waits for that. False when it could not run. Not on the thread.
  [[nodiscard]] bool runAndWait(const Work& work);
  /// Nothing more is taken. What was posted and has not begun is dropped.
  void stop();

  // On the thread.

  /// Runs `work` once, `delay` from now.
  TimerId after(Clock::duration delay, Work work);
  /// Does nothing for a timer that has run.
  void cancel(TimerId timer);
  /// Runs what is posted and due. False when it is time to end.
  [[nodiscard]] bool run();
  /// How long `poll()` may sleep: until the next timer; -1 without one.
  [[nodiscard]] int sleepMilliseconds() const;
  /// Readable when there is something to run.
  [[nodiscard]] int descriptor() const { return wakeUp_.get(); }
  /// After the sleep: the descriptor is not readable any more.
  void wokenUp() const;

 private:
  void runPosted();
  void runDueTimers();
  void wake() const;

  struct PendingTimer {
    TimerId id;
    Work work;
  };

  const FileDescriptor wakeUp_;
  std::mutex mutex_;  // the two below
  std::vector<Work> posted_;
  enum class State { accepting, stopping } state_ = State::accepting;

  // On the thread.
  std::multimap<Clock::time_point, PendingTimer> timers_;
  TimerId lastTimer_ = 0;
};

}  // namespace vantorel
