// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowBackdrops.h"

namespace vantorel {

/// A Wayland compositor always composes windows with what lies behind them, sharp, and gives those
/// that stand on layers no shadow. A shadow of ours belongs to its window, and so needs no place
/// among the others.
class WaylandBackdrops : public WindowBackdrops {
 public:
  [[nodiscard]] Backdrop available() const override { return Backdrop::translucent; }
  [[nodiscard]] bool shadesWindows() const override { return false; }
  [[nodiscard]] std::unique_ptr<Observation> observe(
      std::function<void()> /*changed*/) const override {
    return std::make_unique<Observation>();
  }
  void blurBehind(WindowNumber /*window*/,
                  const std::vector<PixelRect>& /*pixels*/) const override {}
  void placeBelow(WindowNumber /*window*/, WindowNumber /*other*/) const override {}
};

}  // namespace vantorel
