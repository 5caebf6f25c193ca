#pragma once

namespace vantorel {

/// What the user asked the desktop to spare them. Read afresh at each use; main thread.
class AccessibilityPreferences {
 public:
  virtual ~AccessibilityPreferences() = default;
  [[nodiscard]] virtual bool reduceMotion() const = 0;
  [[nodiscard]] virtual bool reduceTransparency() const = 0;
};

}  // namespace vantorel
