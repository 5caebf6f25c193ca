// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "capture/PrivacyPreferences.h"
#include "platform/Dispatch.h"

namespace vantorel {

/// Notices when a pause of the capture has run out by the wall clock, also when the machine slept
/// meanwhile. Main thread.
class PauseExpiry {
 public:
  /// A timer does not count the time that a machine sleeps: the clock is looked at this often while
  /// a pause lasts, and never otherwise.
  static constexpr Seconds longestWait{10};

  /// Both outlive this object.
  PauseExpiry(PrivacyPreferences& privacy, Dispatch& dispatch)
      : privacy_(privacy), dispatch_(dispatch) {}

  std::function<void()> onExpired;

  /// Watches the pause that is in force now, if one is; to be called whenever it was changed.
  void watch();
  void stop() { timer_.reset(); }

 private:
  void look();

  PrivacyPreferences& privacy_;
  Dispatch& dispatch_;
  std::unique_ptr<Timer> timer_;
};

}  // namespace vantorel
