// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "platform/Observers.h"
#include "platform/SessionLock.h"

namespace vantorel {

/// Unlocked unless the test says otherwise.
class FakeSessionLock : public SessionLock {
 public:
  [[nodiscard]] bool isLocked() const override { return isLocked_; }
  [[nodiscard]] std::unique_ptr<Observation> observe(std::function<void()> changed) const override {
    return observers_.add(std::move(changed));
  }

  // The test's side. Observers are told at once.

  void setLocked(bool isLocked) {
    isLocked_ = isLocked;
    observers_.notify();
  }

 private:
  bool isLocked_ = false;
  mutable ChangeObservers observers_;
};

}  // namespace vantorel
