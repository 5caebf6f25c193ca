// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/Observation.h"
#include "platform/WindowNumber.h"

namespace vantorel {

/// The whole keyboard for one window. Main thread.
class KeyboardGrabs {
 public:
  virtual ~KeyboardGrabs() = default;

  /// Every key now goes to that window, also those that the window manager or a registered hot key
  /// (this program's own too) would have taken, until the result is destroyed, the window is hidden
  /// or it is gone. Null when the keyboard cannot be had now: another program has it, or the window
  /// is not the one that is typed into; asking again later may succeed.
  [[nodiscard]] virtual std::unique_ptr<Observation> grabKeyboard(WindowNumber window) = 0;
};

}  // namespace vantorel
