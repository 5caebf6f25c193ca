// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/Screens.h"

namespace vantorel {

/// What a press of the left button on a row becomes: a click, or the drag of a pin. Points are the
/// row's own.
class RowPress {
 public:
  enum class Motion { none, startsDrag, drags };
  enum class End { nothing, click, leftRow, drop };
  enum class Row { pinned, notPinned };

  void begin(Point origin);
  /// The pointer has moved. Only pins are dragged, once it is far enough from where it was pressed.
  [[nodiscard]] Motion moveTo(Point point, Row row);
  /// The button was let go. Nothing comes of a press that was given up, or of no press at all.
  [[nodiscard]] End release(Point point, const Rect& bounds);
  /// Gives the press up: it will be neither a click nor a drop.
  void cancel();
  /// Forgets everything, for a row that has become another's.
  void reset();

  /// Where the press began, while it lasts.
  [[nodiscard]] const std::optional<Point>& origin() const { return origin_; }
  [[nodiscard]] bool isPressed() const { return origin_.has_value(); }
  [[nodiscard]] bool isDragging() const { return isPressed() && didDrag_; }
  /// A drag has started since the last press.
  [[nodiscard]] bool didDrag() const { return didDrag_; }

 private:
  std::optional<Point> origin_;
  bool didDrag_ = false;
};

}  // namespace vantorel
