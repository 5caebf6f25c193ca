// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/Announcer.h"
#include "platform/Dispatch.h"

namespace vantorel {

/// A repeating look at something that may tell of its changes by itself: it rests while it does,
/// so that a desktop where nothing happens is left asleep, and repeats the moment it does not.
/// When rest begins it looks once more. Main thread.
class RestingTimer : public Timer {
 public:
  /// `dispatch` and `announcer` outlive this. An announcer has one resting timer at a time.
  RestingTimer(Dispatch& dispatch, Announcer& announcer, Seconds interval, Work work);
  ~RestingTimer() override;
  RestingTimer(const RestingTimer&) = delete;
  RestingTimer& operator=(const RestingTimer&) = delete;

  void invalidate() override { end(); }

 private:
  void end();
  void restOrRepeat();

  Dispatch& dispatch_;
  Announcer& announcer_;
  Seconds interval_;
  Work work_;
  std::unique_ptr<Timer> repeating_;  // null while it rests
};

}  // namespace vantorel
