// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "panel/RowCommands.h"
#include "platform/Screens.h"

namespace vantorel {

/// A row as the drag of a pin sees it, within the document of the list.
struct DropRow {
  Uuid id;
  Rect frame;
  bool pinned = false;
};

/// The row that a dragged pin would be put beside.
struct PinDropTarget {
  std::size_t row = 0;
  DropPlace place = DropPlace::before;
  friend bool operator==(const PinDropTarget&, const PinDropTarget&) = default;
};

/// What the pointer points at: the upper half of another pinned row means before it, the lower half
/// after it. Nothing where the pin cannot go.
[[nodiscard]] std::optional<PinDropTarget> pinDropTarget(const std::vector<DropRow>& rows,
                                                         Uuid dragged, Point pointer);

/// What is seen of the document while a pin is dragged.
struct DragView {
  double offset = 0;      // of what is seen from the document's top
  double height = 0;      // of what is seen
  double pinsBottom = 0;  // where the pinned rows end in the document
};

/// How far the list has to scroll for one step of a drag at `pointerY` from the top of what is
/// seen: towards pins that are out of sight when the pointer is near that edge, else 0. Points;
/// downwards is positive.
[[nodiscard]] double dragScrollStep(const DragView& view, double pointerY);

}  // namespace vantorel
