// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "platform/Dispatch.h"
#include "platform/Workspace.h"

namespace vantorel {

/// Remembers the application that a paste should go to: the last one in front that is not this
/// program and is no background agent. Main thread.
class FocusTracker {
 public:
  static constexpr Seconds interval{0.4};

  /// Both outlive this object.
  FocusTracker(Workspace& workspace, Dispatch& dispatch);
  ~FocusTracker();
  FocusTracker(const FocusTracker&) = delete;
  FocusTracker& operator=(const FocusTracker&) = delete;

  /// Listens to activations, and looks by itself for those that nobody announced, which rests while
  /// the desktop announces each. Starts anew when it runs already.
  void startFocusTracking();
  /// Keeps the last target.
  void stop();

  /// Where a paste should go now: the application in front when it may receive one, else the last
  /// that was seen in front and might.
  [[nodiscard]] std::optional<RunningApplication> currentPasteTarget();

  [[nodiscard]] bool isPasteTarget(const RunningApplication& application) const;

  [[nodiscard]] const std::optional<RunningApplication>& lastPasteTarget() const {
    return lastPasteTarget_;
  }

 private:
  void remember(const std::optional<RunningApplication>& application);

  Workspace& workspace_;
  Dispatch& dispatch_;
  std::optional<RunningApplication> lastPasteTarget_;
  std::unique_ptr<Observation> activationObserver_;
  std::unique_ptr<Timer> focusTimer_;
};

}  // namespace vantorel
