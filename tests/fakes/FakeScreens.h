// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "platform/Screens.h"

namespace vantorel {

/// One screen of 1920 × 1080 points with a bar of 30 at the top, the pointer in its middle, unless
/// the test says otherwise. The first screen is the main one.
class FakeScreens : public Screens {
 public:
  [[nodiscard]] std::vector<Screen> screens() const override { return screens_; }
  [[nodiscard]] std::optional<Screen> mainScreen() const override {
    return screens_.empty() ? std::nullopt : std::optional(screens_.front());
  }
  [[nodiscard]] Point mouseLocation() const override { return mouse_; }

  // The test's side.

  void setScreens(std::vector<Screen> screens) { screens_ = std::move(screens); }
  void setMouseLocation(Point mouse) { mouse_ = mouse; }

 private:
  std::vector<Screen> screens_ = {{{0, 0, 1920, 1080}, {0, 30, 1920, 1050}, 1}};
  Point mouse_{960, 540};
};

}  // namespace vantorel
