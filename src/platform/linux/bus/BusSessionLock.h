// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/Observers.h"
#include "platform/SessionLock.h"
#include "platform/linux/bus/LoginSession.h"
#include "platform/linux/bus/ScreenSavers.h"

namespace vantorel {

/// Locked when a screen saver on the session bus or the log-in manager on the system bus says so.
/// The first answers come a moment after the construction. Main thread; needs the application
/// object.
class BusSessionLock : public SessionLock {
 public:
  /// Both outlive this.
  BusSessionLock(Dispatch& dispatch, SessionBus& bus);

  [[nodiscard]] bool isLocked() const override { return isLocked_; }
  [[nodiscard]] std::unique_ptr<Observation> observe(std::function<void()> changed) const override {
    return observers_.add(std::move(changed));
  }

 private:
  void know();

  bool isLocked_ = false;
  bool isHinted_ = false;  // by the log-in manager
  mutable ChangeObservers observers_;
  ScreenSavers savers_;
  Lifetime life_;
  LoginSession login_;
};

}  // namespace vantorel
