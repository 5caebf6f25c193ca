// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/Dispatch.h"

namespace vantorel {

/// The main queue of a test that has real threads around it: the thread that calls `runUntil` is
/// the main thread.
class MainLoop : public Dispatch {
 public:
  [[nodiscard]] Date now() const override;
  void async(Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> after(Seconds delay, Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> every(Seconds interval, Work work) override;
  void detach(Work work) override;
  [[nodiscard]] std::unique_ptr<SerialQueue> serialQueue(const std::string& label) override;

  /// Runs what falls due until `condition` holds after a piece of work. The limit only bounds a
  /// failure: false when it was reached.
  [[nodiscard]] bool runUntil(const std::function<bool()>& condition,
                              std::chrono::seconds limit = std::chrono::seconds(30));
  /// Runs what is queued by now.
  void runQueued();

 private:
  using Clock = std::chrono::steady_clock;
  struct Entry;
  class LoopTimer;

  bool runOne(Clock::time_point limit);
  std::unique_ptr<Timer> schedule(Seconds delay, Seconds interval, Work work);

  std::mutex mutex_;
  std::condition_variable condition_;
  std::deque<Work> queue_;
  std::multimap<Clock::time_point, std::shared_ptr<Entry>> timers_;
};

}  // namespace vantorel
