// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "platform/Workspace.h"

namespace vantorel {

/// Input that goes to other programs. Main thread.
class EventMonitors {
 public:
  virtual ~EventMonitors() = default;

  /// Calls `handler` on the main queue after each left or right mouse-down anywhere on the desktop,
  /// until the result is destroyed. Null when the desktop does not tell.
  [[nodiscard]] virtual std::unique_ptr<Observation> addGlobalMouseDownMonitor(
      std::function<void()> handler) = 0;
};

}  // namespace vantorel
