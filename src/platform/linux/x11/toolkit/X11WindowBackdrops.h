// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowBackdrops.h"
#include "platform/linux/x11/X11DesktopSettings.h"

namespace vantorel {

/// Windows are composed with what lies behind them as long as a compositor runs; it is blurred
/// where the compositor knows how. Speaks of windows on the toolkit's own connection, since there
/// they are known to the server as soon as they have a number.
class X11WindowBackdrops : public WindowBackdrops {
 public:
  /// `preferences` outlives this.
  explicit X11WindowBackdrops(const X11DesktopSettings& preferences) : preferences_(preferences) {}

  [[nodiscard]] Backdrop available() const override;
  [[nodiscard]] bool shadesWindows() const override { return preferences_.shadesWindows(); }
  [[nodiscard]] std::unique_ptr<Observation> observe(std::function<void()> changed) const override;
  void blurBehind(WindowNumber window, const std::vector<PixelRect>& pixels) const override;
  void placeBelow(WindowNumber window, WindowNumber other) const override;

 private:
  const X11DesktopSettings& preferences_;
};

}  // namespace vantorel
