#pragma once

namespace vantorel {

/// What is seen through the parts of a window that it leaves transparent.
enum class Backdrop {
  none,         // nothing: they come out black, so a window has to be opaque and shaped
  translucent,  // what lies behind the window, sharp
};

/// What the desktop composes windows with. It may change while the program runs. Main thread.
class WindowBackdrops {
 public:
  virtual ~WindowBackdrops() = default;
  /// For a window that is shown now.
  [[nodiscard]] virtual Backdrop available() const = 0;
};

}  // namespace vantorel
