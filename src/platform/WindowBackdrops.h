// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/Observation.h"
#include "platform/WindowNumber.h"

namespace vantorel {

/// What is seen through the parts of a window that it leaves transparent.
enum class Backdrop {
  none,         // nothing: they come out black, so a window has to be opaque and shaped
  translucent,  // what lies behind the window, sharp
  blurrable,    // the same, and blurred where a window asks for it
};

/// Pixels of a window, counted from its top left corner.
struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// What the desktop composes windows with. It may change while the program runs. Main thread.
class WindowBackdrops {
 public:
  virtual ~WindowBackdrops() = default;
  /// For a window that is shown now.
  [[nodiscard]] virtual Backdrop available() const = 0;

  /// Whether what composes the windows gives all of them shadows, or leaves that to its user.
  [[nodiscard]] virtual bool shadesWindows() const = 0;

  /// Calls `changed` on the main thread after an answer has changed, until the result is
  /// destroyed.
  [[nodiscard]] virtual std::unique_ptr<Observation> observe(
      std::function<void()> changed) const = 0;

  /// Has what lies behind these pixels of a window of this program blurred from now on, instead of
  /// what it asked for before; without pixels, nothing. Harmless where nothing blurs, and for a
  /// window that is gone.
  virtual void blurBehind(WindowNumber window, const std::vector<PixelRect>& pixels) const = 0;

  /// Puts a window that no window manager manages right below another one of this program, which is
  /// shown. It does not stay there when the other one is raised.
  virtual void placeBelow(WindowNumber window, WindowNumber other) const = 0;
};

}  // namespace vantorel
