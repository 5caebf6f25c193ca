// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "chrome/PopoverPlacement.h"
#include "platform/Image.h"
#include "platform/Screens.h"

/// How previews are measured, in points.
namespace vantorel::PreviewGeometry {

inline constexpr double cornerRadius = 14;
inline constexpr double textFontPoints = 13.5;
inline constexpr double textInsetX = 16;
inline constexpr double textInsetY = 14;
inline constexpr int rim = 1;  // of the glass, which scrolled text leaves free
inline constexpr double textWidth = 360;
inline constexpr double textLineWidth = textWidth - 2 * textInsetX;
inline constexpr double maxTextHeight = 340;

/// Of a text whose lines, broken at `textLineWidth`, are `measuredHeight` high together.
[[nodiscard]] Size textSize(double measuredHeight);
[[nodiscard]] Size mediaSize();

/// The most that a preview may measure on a screen of which `visibleFrame` can be used; absent when
/// there is no screen.
[[nodiscard]] Size maximumSize(const std::optional<Rect>& visibleFrame);
[[nodiscard]] Size limited(Size size, Size maximum);

/// The side of the window with more room; the right one when both have the same.
[[nodiscard]] PopoverEdge edge(const Rect& window, const Rect& screen);

/// What the preview keeps its distance from: the row, and a little around it so that the preview
/// stands clear of the panel's rim.
[[nodiscard]] Rect anchor(const Rect& row);

/// The parts of the preview of a picture that measures `size`.
[[nodiscard]] Rect mediaImage(Size size);
[[nodiscard]] Rect mediaCaption(Size size);

}  // namespace vantorel::PreviewGeometry
