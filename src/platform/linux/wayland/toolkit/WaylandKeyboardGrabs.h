// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyboardGrabs.h"
#include "platform/linux/wayland/toolkit/ToolkitCompositor.h"

namespace vantorel {

/// A window that has the keyboard has all of it but the compositor's own keys; here it is given
/// those, too, where the compositor allows it.
class WaylandKeyboardGrabs : public KeyboardGrabs {
 public:
  /// `compositor` outlives this and every grab.
  explicit WaylandKeyboardGrabs(ToolkitCompositor& compositor) : compositor_(compositor) {}

  [[nodiscard]] std::unique_ptr<Observation> grabKeyboard(WindowNumber window) override;

 private:
  ToolkitCompositor& compositor_;
};

}  // namespace vantorel
