// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "platform/AccessibilityPreferences.h"
#include "platform/Dispatch.h"

namespace vantorel {

/// How far the background of a row has got on its way to another colour. Main thread.
class BackgroundFade {
 public:
  BackgroundFade(Dispatch& dispatch, const AccessibilityPreferences& accessibility);

  /// There is more to see of the way.
  std::function<void()> onStep;

  /// Begins anew; ends at once when the user has asked for less motion.
  void start();
  void finish();

  /// From 0 to 1, which is where it rests.
  [[nodiscard]] double progress() const { return progress_; }

 private:
  void step();

  Dispatch& dispatch_;
  const AccessibilityPreferences& accessibility_;
  Date started_{};
  double progress_ = 1;
  std::unique_ptr<Timer> steps_;
};

}  // namespace vantorel
