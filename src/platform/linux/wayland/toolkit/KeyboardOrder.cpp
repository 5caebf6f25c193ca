// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/KeyboardOrder.h"

#include <algorithm>

namespace vantorel {

void KeyboardOrder::take(Window window) {
  if (holder() == window) return;
  drop(window);
  windows_.push_back({window, isHeld_});
  isHeld_ = true;
}

void KeyboardOrder::drop(Window window) {
  const auto found = std::find_if(windows_.begin(), windows_.end(),
                                  [window](const Entry& each) { return each.window == window; });
  if (found == windows_.end()) return;
  const auto next = found + 1;
  if (next == windows_.end()) {
    isHeld_ = isHeld_ && found->isFromBelow;
  } else {
    next->isFromBelow = next->isFromBelow && found->isFromBelow;
  }
  windows_.erase(found);
}

void KeyboardOrder::release() {
  for (auto& each : windows_) each.isFromBelow = false;
  isHeld_ = false;
}

}  // namespace vantorel
