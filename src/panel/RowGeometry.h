// SPDX-License-Identifier: MIT
#pragma once

#include "panel/RowCommands.h"
#include "platform/Screens.h"
#include "store/ClipItem.h"

/// Where the parts of a row lie, in points from its top left. `width` is the row's; its height is
/// always the same.
namespace vantorel::RowGeometry {

inline constexpr double height = 48;
inline constexpr double cornerRadius = 8;
inline constexpr double pinSide = 28;

/// The picture of an entry, or the symbol that stands in for it.
[[nodiscard]] Rect image(ClipKind kind);
[[nodiscard]] Rect title(ClipKind kind, double width);
[[nodiscard]] Rect sourceIcon(ClipKind kind);
[[nodiscard]] Rect metadata(ClipKind kind, double width);
[[nodiscard]] Rect pin(double width);
[[nodiscard]] Rect divider(ClipKind kind, double width);
/// What marks the selected row at its left edge.
[[nodiscard]] Rect selectionBar();
/// Where a dragged pin would go.
[[nodiscard]] Rect dropLine(DropPlace place, double width);

}  // namespace vantorel::RowGeometry
