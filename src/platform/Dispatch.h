// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/Date.h"

namespace vantorel {

using Work = std::function<void()>;

/// A pending or repeating piece of work on the main queue. Destroying it or calling
/// `invalidate()` guarantees that the work does not run again. Main thread.
class Timer {
 public:
  virtual ~Timer() = default;
  virtual void invalidate() = 0;
};

/// Runs what it is given one after the other, in order, on a thread of its own. Destroying it
/// lets the running work end, drops what has not begun, and joins the thread.
class SerialQueue {
 public:
  virtual ~SerialQueue() = default;
  /// Any thread.
  virtual void async(Work work) = 0;
};

/// The clock, the main queue and background queues. Work given to the main queue runs on the main
/// thread in the order given, also while a menu is open, and must not throw.
class Dispatch {
 public:
  virtual ~Dispatch() = default;

  /// The wall clock. Any thread.
  [[nodiscard]] virtual Date now() const = 0;

  /// Runs `work` on the main thread in a later turn of its loop. Any thread.
  virtual void async(Work work) = 0;

  /// Runs `work` once, `delay` from now. Main thread. Dropping the result cancels it.
  [[nodiscard]] virtual std::unique_ptr<Timer> after(Seconds delay, Work work) = 0;

  /// Runs `work` every `interval`, first one interval from now. Missed ticks are not made up for.
  /// Main thread. Dropping the result ends it.
  [[nodiscard]] virtual std::unique_ptr<Timer> every(Seconds interval, Work work) = 0;

  /// Runs `work` on a thread of its own that nobody ever waits for, not even at the end of the
  /// program: for what may never come back, such as a question to a disk behind a dead network.
  /// `work` owns or shares all that it touches. Any thread.
  virtual void detach(Work work) = 0;

  /// A new serial queue; `label` names its thread for debuggers. Throws `std::system_error` when
  /// the system has no thread to give. Any thread.
  [[nodiscard]] virtual std::unique_ptr<SerialQueue> serialQueue(const std::string& label) = 0;
};

}  // namespace vantorel
