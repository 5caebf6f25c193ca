#include "platform/Screens.h"

#include <algorithm>

namespace vantorel {

std::optional<Screen> screenUnderMouse(const Screens& screens) {
  const auto all = screens.screens();
  const auto mouse = screens.mouseLocation();
  const auto found = std::find_if(
      all.begin(), all.end(), [&](const Screen& screen) { return screen.frame.contains(mouse); });
  return found != all.end() ? std::optional(*found) : screens.mainScreen();
}

}  // namespace vantorel
