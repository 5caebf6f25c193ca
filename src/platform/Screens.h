// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

namespace vantorel {

/// Points, from the top left of the desktop, y growing downwards.
struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  [[nodiscard]] double midX() const { return x + width / 2; }
  [[nodiscard]] double midY() const { return y + height / 2; }
  [[nodiscard]] double maxX() const { return x + width; }
  [[nodiscard]] double maxY() const { return y + height; }
  /// Left and top edges belong to the rectangle, right and bottom ones do not.
  [[nodiscard]] bool contains(Point point) const {
    return point.x >= x && point.x < maxX() && point.y >= y && point.y < maxY();
  }
  friend bool operator==(const Rect&, const Rect&) = default;
};

/// Outside of every screen and window.
inline constexpr Point unknownPlace{-1e6, -1e6};

struct Screen {
  Rect frame;
  Rect visibleFrame;  // without what docks and bars cover
  double scale = 1;   // pixels per point
};

/// The screens and the pointer. Main thread.
class Screens {
 public:
  virtual ~Screens() = default;
  /// In the desktop's own order.
  [[nodiscard]] virtual std::vector<Screen> screens() const = 0;
  [[nodiscard]] virtual std::optional<Screen> mainScreen() const = 0;
  /// `unknownPlace` while the desktop does not tell.
  [[nodiscard]] virtual Point mouseLocation() const = 0;
};

/// The first screen whose frame contains the point.
[[nodiscard]] std::optional<Screen> screenContaining(const Screens& screens, Point point);
/// The same, else the main one.
[[nodiscard]] std::optional<Screen> screenNear(const Screens& screens, Point point);
/// The same for the pointer.
[[nodiscard]] std::optional<Screen> screenUnderMouse(const Screens& screens);

}  // namespace vantorel
