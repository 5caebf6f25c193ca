// SPDX-License-Identifier: MIT
#include "platform/Screens.h"

#include <algorithm>

namespace vantorel {

std::optional<Screen> screenContaining(const Screens& screens, Point point) {
  const auto all = screens.screens();
  const auto found = std::find_if(
      all.begin(), all.end(), [&](const Screen& screen) { return screen.frame.contains(point); });
  return found != all.end() ? std::optional(*found) : std::nullopt;
}

std::optional<Screen> screenNear(const Screens& screens, Point point) {
  const auto found = screenContaining(screens, point);
  return found ? found : screens.mainScreen();
}

std::optional<Screen> screenUnderMouse(const Screens& screens) {
  return screenNear(screens, screens.mouseLocation());
}

}  // namespace vantorel
