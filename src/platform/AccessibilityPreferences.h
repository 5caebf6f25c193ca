// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "platform/Observation.h"

namespace vantorel {

/// What the user asked the desktop to leave out. Read afresh at each use; main thread.
class AccessibilityPreferences {
 public:
  virtual ~AccessibilityPreferences() = default;
  [[nodiscard]] virtual bool reduceMotion() const = 0;
  [[nodiscard]] virtual bool reduceTransparency() const = 0;

  /// Calls `changed` on the main thread after an answer has changed, until the result is destroyed.
  [[nodiscard]] virtual std::unique_ptr<Observation> observe(
      std::function<void()> changed) const = 0;
};

}  // namespace vantorel
