#pragma once

#include "platform/AccessibilityPreferences.h"

namespace vantorel {

/// Nothing reduced unless the test says so.
class FakeAccessibilityPreferences : public AccessibilityPreferences {
 public:
  [[nodiscard]] bool reduceMotion() const override { return reduceMotion_; }
  [[nodiscard]] bool reduceTransparency() const override { return reduceTransparency_; }

  // The test's side.

  void setReduceMotion(bool reduce) { reduceMotion_ = reduce; }
  void setReduceTransparency(bool reduce) { reduceTransparency_ = reduce; }

 private:
  bool reduceMotion_ = false;
  bool reduceTransparency_ = false;
};

}  // namespace vantorel
