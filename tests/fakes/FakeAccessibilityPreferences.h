// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "platform/AccessibilityPreferences.h"
#include "platform/Observers.h"

namespace vantorel {

/// Nothing reduced unless the test says so.
class FakeAccessibilityPreferences : public AccessibilityPreferences {
 public:
  [[nodiscard]] bool reduceMotion() const override { return reduceMotion_; }
  [[nodiscard]] bool reduceTransparency() const override { return reduceTransparency_; }
  [[nodiscard]] std::unique_ptr<Observation> observe(std::function<void()> changed) const override {
    return observers_.add(std::move(changed));
  }

  // The test's side. Observers are told at once.

  void setReduceMotion(bool reduce) {
    reduceMotion_ = reduce;
    observers_.notify();
  }
  void setReduceTransparency(bool reduce) {
    reduceTransparency_ = reduce;
    observers_.notify();
  }

 private:
  bool reduceMotion_ = false;
  bool reduceTransparency_ = false;
  mutable ChangeObservers observers_;
};

}  // namespace vantorel
