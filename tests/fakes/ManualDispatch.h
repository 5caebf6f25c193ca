// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/Dispatch.h"

namespace vantorel {

/// A clock and queues that move only when the test moves them. Work given to serial queues waits
/// like the main queue's, in one line, until the test runs it.
class ManualDispatch : public Dispatch {
 public:
  /// Starts at 2025-03-14T09:26:53Z.
  ManualDispatch();
  ~ManualDispatch() override;

  [[nodiscard]] Date now() const override;
  void async(Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> after(Seconds delay, Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> every(Seconds interval, Work work) override;
  /// Waits in the same line as everything else.
  void detach(Work work) override;
  [[nodiscard]] std::unique_ptr<SerialQueue> serialQueue(const std::string& label) override;

  // The test's side.

  /// Moves the clock, running every timer that falls due at its own moment, and all queued work
  /// before and after each.
  void advance(Seconds interval);
  /// Sets the clock without running anything, as a suspended machine does, or a user. Timers wait
  /// as much longer or shorter: they count the time that the machine runs.
  void setNow(Date now);
  /// Runs queued work, and what it queues, until nothing is left. Answers how many pieces ran.
  int runQueued();
  /// Runs one piece of queued work; false when there is none.
  bool runOne();
  [[nodiscard]] std::size_t queuedCount() const;
  /// Whether there is no thread for a new serial queue.
  void refuseQueues(bool refuses) { refusesQueues_ = refuses; }
  /// Timers that are armed, repeating ones included.
  [[nodiscard]] std::size_t timerCount() const;
  /// Intervals of the armed repeating timers.
  [[nodiscard]] std::vector<Seconds> repeatingIntervals() const;

 private:
  struct Queue;
  struct Entry;
  class ManualTimer;
  class ManualSerialQueue;
  std::shared_ptr<Queue> queue_;
  bool refusesQueues_ = false;
};

}  // namespace vantorel
